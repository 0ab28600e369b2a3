// The fifteen thumbnails of a gallery page.
#pragma once

#include "media/gallery.h"
#include "ui/photo_view.h"

#include <QWidget>

#include <array>

namespace korvadex {

class PhotoGrid : public QWidget {
    Q_OBJECT

  public:
    explicit PhotoGrid(QWidget* parent = nullptr);

    PhotoView& Photo(int index) { return *imgPhoto[std::size_t(index)]; }
    // How many pixels of the screen a picture may have in every thumbnail.
    QSize Box() const;

  signals:
    void Clicked(int thumbnail);
    void DoubleClicked(int thumbnail);
    void Scrolled(bool isForward); // a notch of the wheel
    void Resized();

  protected:
    void wheelEvent(QWheelEvent* event) override;

  private:
    std::array<PhotoView*, GalleryPages::PageSize> imgPhoto{};
    int wheelAngle = 0;
};

} // namespace korvadex
