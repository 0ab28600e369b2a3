#include "ui/photo_grid.h"

#include <QGridLayout>
#include <QWheelEvent>

namespace korvadex {

namespace {

constexpr int CaptionLines = 2; // of thumbnails: names are long

} // namespace

PhotoGrid::PhotoGrid(QWidget* parent) : QWidget(parent) {
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(4);
    for (int index = 0; index < GalleryPages::PageSize; ++index) {
        auto* photo = new PhotoView(nullptr, CaptionLines);
        photo->setObjectName(QString("imgPhoto_%1").arg(index));
        imgPhoto[std::size_t(index)] = photo;
        layout->addWidget(photo, index / GalleryPages::RowSize, index % GalleryPages::RowSize);
        connect(photo, &PhotoView::Clicked, this, [this, index] { emit Clicked(index); });
        connect(photo, &PhotoView::DoubleClicked, this, [this, index] { emit DoubleClicked(index); });
        connect(photo, &PhotoView::Resized, this, &PhotoGrid::Resized);
    }
    for (int row = 0; row < layout->rowCount(); ++row)
        layout->setRowStretch(row, 1);
    for (int column = 0; column < layout->columnCount(); ++column)
        layout->setColumnStretch(column, 1);
}

QSize PhotoGrid::Box() const {
    QSize box = imgPhoto[0]->Box(); // what cannot be divided evenly makes one larger than the other
    for (const PhotoView* photo : imgPhoto)
        box = box.boundedTo(photo->Box());
    return box;
}

void PhotoGrid::wheelEvent(QWheelEvent* event) {
    wheelAngle += event->angleDelta().y();
    for (; wheelAngle >= QWheelEvent::DefaultDeltasPerStep; wheelAngle -= QWheelEvent::DefaultDeltasPerStep)
        emit Scrolled(false);
    for (; wheelAngle <= -QWheelEvent::DefaultDeltasPerStep; wheelAngle += QWheelEvent::DefaultDeltasPerStep)
        emit Scrolled(true);
    event->accept();
}

} // namespace korvadex
