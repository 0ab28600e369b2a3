// The main window: shows what the program tells it and hands on what the user does.
#pragma once

#include "app/commands.h"
#include "app/main_window.h"
#include "app/program.h"
#include "platform/file_system.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <memory>

class QTimer;

namespace Ui {
class frmHangar;
}

namespace korvadex {

class frmFileList;
class frmPhotos;
class Menus;

class frmHangar : public QMainWindow, public MainWindow {
    Q_OBJECT

  public:
    // The disk serves to name picture files to the host.
    explicit frmHangar(const FileSystem& files);
    ~frmHangar() override;

    // Whom the user's commands go to; before this the window only shows.
    void SetProgram(Program* newProgram) { program = newProgram; }

    void ShowView(const MainView& view, const LoadedPackage& package) override;
    void ShowStatus(const std::string& text) override;
    void ShowProgress(int minimum, int maximum) override;
    void SetProgress(int value) override;
    void HideProgress() override;
    void OfferStop(bool isOffered) override;
    void ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) override;
    bool IsFileListVisible() const override;
    void ShowGallery(const GalleryView& gallery) override;
    void UpdateGallery(const GalleryView& gallery) override;
    bool IsGalleryVisible() const override;
    void ComeToFront() override;
    void ShowAbout() override;

    ScreenSize Screen() const override;
    void ApplyGeometry(const SavedGeometry& geometry) override;
    std::optional<WindowGeometry> Geometry() const override;
    void ApplyListGeometry(const WindowGeometry& geometry) override;
    std::optional<WindowGeometry> ListGeometry() const override;
    void ApplyLayout(const WindowLayout& newLayout) override;
    WindowLayout Layout() const override;
    void EndProgram() override;

  signals:
    // The program has ended: the event loop is to be left.
    void Ended();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // Hands a command on when there is a program.
    void Run(const std::function<void(Program&)>& command);
    // The same for one that leads to a package, which the filter is not to hide.
    void Jump(const std::function<void(Program&)>& command);
    void Give(const PackageCommand& command, const std::vector<PackageRef>& packages);
    void ConnectControls();
    void ConnectFilter();
    void ConnectMenus();
    void ConnectCollection();
    void ConnectQueue();
    // Shows the package; the command follows where it is shown then.
    void RunOn(const PackageRef& package, const std::function<void(Program&)>& command);
    void ShowCollection(const MainView& view, const LoadedPackage& package);
    void ShowQueue(const MainView& view);
    void ReadCollection();
    void ShowSide(bool isHangarSide);
    // While a bar is shown all is grey but the status bar.
    void SetBusy(bool isBusy);
    void ShowPackageName(const MainView& view);
    void MarkPackageName();
    void ShowPackage(const LoadedPackage& package);
    void ShowPicture(const MainView& view, const LoadedPackage& package);
    // Of the lists, as long as it is selected. False when there is none that can be shown.
    bool ShowSelectedPicture();
    void ShowFilterCount();

    const FileSystem& files;
    Program* program = nullptr;
    std::unique_ptr<Ui::frmHangar> ui;
    Menus* menus;
    QTimer* checkOpenings;
    QTimer* readCollection;
    std::unique_ptr<frmFileList> fileList;
    std::unique_ptr<frmPhotos> photos;
    int shownRevision = -1, shownOpening = -1;
    int shownImage = 0;
    int collectionReads = 0;
    WindowLayout layout; // as the user had it last
    bool hasEnded = false;
    QPointer<QWidget> focusBefore; // it was busy
};

} // namespace korvadex
