// The picture gallery beside the main window: a page of fifteen thumbnails, and the marked one larger. A filter narrows
// what is seen, and a tick leaves one picture to each package.
#pragma once

#include "app/main_window.h"
#include "platform/file_system.h"

#include <QDialog>
#include <QIcon>

#include <memory>
#include <vector>

class QTimer;

namespace Ui {
class frmPhotos;
}

namespace korvadex {

class PictureLoader;

// A window of its own, so that the main window can come before it.
class frmPhotos : public QDialog {
    Q_OBJECT

  public:
    explicit frmPhotos(const FileSystem& files);
    ~frmPhotos() override;

    // Opens the window on the first page, or brings it to the front: with the caption that it shows already, page and
    // mark stay where they can.
    void ShowGallery(const GalleryView& gallery);
    // The same, but the window stays where it is. Without a picture it closes.
    void UpdateGallery(const GalleryView& gallery);
    // Another package is shown: its first picture is marked, unless one of its pictures is already.
    void Follow(const PackageRef& package);
    void ShowOnePerPackage(bool isWanted);
    bool IsOnePerPackage() const;
    // Every thumbnail of the page shows what it will show.
    bool IsPageComplete() const;

  signals:
    // A double click, or Enter, on a picture; its position among all.
    void PictureChosen(int row);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void TakePictures(const GalleryView& gallery);
    // Of the pictures, the positions of those that the filter and the tick leave.
    std::vector<int> Seen() const;
    // The filter or the tick has changed.
    void Narrow();
    void ShowPage();
    void ShowThumbnail(int index);
    void ShowMarked();
    void ShowLarge();
    void LoadPictures();
    void Turn(bool isForward);
    void Choose();
    const GalleryPicture* PictureAt(int number) const; // from 1; null for 0
    const GalleryPicture* Marked() const { return PictureAt(pages.Marked()); }

    std::unique_ptr<Ui::frmPhotos> ui;
    const QIcon installed;
    GalleryView shown;
    std::vector<int> seen; // the pages are of these
    GalleryPages pages;
    PackageRef followed;
    PictureLoader* thumbnails; // of the page, and of the pages before and behind it
    PictureLoader* large;      // the marked picture
    QTimer* loadAgain;
};

} // namespace korvadex
