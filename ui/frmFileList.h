// The list window beside the main window: an overview of the collection, the users of a panel or a sound, or the report
// of a command for many packages, one line each, and a field that narrows what is seen of it. Packages that are
// selected in it can be given commands.
#pragma once

#include "app/commands.h"
#include "app/settings.h"
#include "package/command_context.h"
#include "ui/package_menu.h"

#include <QDialog>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Ui {
class frmFileList;
}

namespace korvadex {

class frmFileList : public QDialog {
    Q_OBJECT

  public:
    explicit frmFileList(QWidget* parent);
    ~frmFileList() override;

    // Opens the window. With the caption that it shows already, the filter and the place in the list stay.
    void ShowLines(const QString& caption, const std::vector<ListLine>& lines);

    // The command that opened the window has come to its end: the keyboard comes back from its message.
    void TakeKeyboard();

    // Another package is shown: its line is the current one, where it is seen and not several are selected.
    void Follow(const PackageRef& package);

    // Height and width of 0 leave the size as designed.
    void ApplyGeometry(const WindowGeometry& geometry);
    // None when the window was never shown.
    std::optional<WindowGeometry> LastGeometry() const;

    CanWorkOn canWork; // for its menu; without it all can

  signals:
    // A click, or Enter, on a line; its position among all lines, those that the filter hides included.
    void LineChosen(int row);
    // One of PackageCommands, for at least one package.
    void CommandGiven(const PackageCommand& command, const std::vector<PackageRef>& packages);

  protected:
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void FillList(const std::vector<ListLine>& newLines);
    // Where the line that stood at this row stands now; -1 in an empty list.
    int RowNow(int row, const ListLine& line) const;
    void ApplyFilter();
    bool IsSeen(int row) const;
    void ShowMenu(const QPoint& at);
    void Give(const PackageCommand& command);
    // Those of the selected lines that are seen, in the order shown, each once.
    std::vector<PackageRef> SelectedPackages() const;

    std::unique_ptr<Ui::frmFileList> ui;
    std::vector<ListLine> lines; // a row for each
    PackageRef followed;
    bool isNew = false;
    std::optional<WindowGeometry> lastGeometry;
};

} // namespace korvadex
