#include "ui/picture_box.h"

#include "ui_picture_box.h"

#include <QImageReader>
#include <QPainter>
#include <QTimer>

namespace korvadex {

namespace {

// A picture that claims to be larger than this is not decoded.
constexpr int MostMegabytes = 64;

} // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent), decodeAgain(new QTimer(this)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    // While the window is being resized the picture at hand is stretched; the file is read again afterwards.
    decodeAgain->setSingleShot(true);
    decodeAgain->setInterval(100);
    connect(decodeAgain, &QTimer::timeout, this, &PictureView::Decode);
}

void PictureView::SetPicture(const QString& hostPath) {
    path = hostPath;
    Decode();
}

void PictureView::Decode() {
    decodeAgain->stop();
    picture = {};
    if (!path.isEmpty()) {
        QImageReader reader(path);
        reader.setDecideFormatFromContent(true);
        reader.setAutoTransform(true);
        const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
        const QSize box = (QSizeF(isTurned ? size().transposed() : size()) * devicePixelRatioF()).toSize();
        const QSize stored = reader.size();
        if (stored.width() > box.width() || stored.height() > box.height())
            reader.setScaledSize(stored.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1}));
        picture = reader.read();
        natural = !stored.isValid() ? picture.size() : isTurned ? stored.transposed() : stored;
    }
    update();
}

void PictureView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (picture.isNull()) {
        if (!path.isEmpty())
            painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, "This picture cannot be shown.");
        return;
    }
    QSizeF shown = natural;
    if (shown.width() > width() || shown.height() > height())
        shown.scale(size(), Qt::KeepAspectRatio);
    QRectF place(QPointF(), shown);
    place.moveCenter(QRectF(rect()).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, picture);
}

void PictureView::resizeEvent(QResizeEvent* /*event*/) {
    if (!path.isEmpty())
        decodeAgain->start();
}

PictureBox::PictureBox(QWidget* parent) : QWidget(parent), ui(std::make_unique<Ui::PictureBox>()) {
    ui->setupUi(this);
    QImageReader::setAllocationLimit(MostMegabytes);
    ShowNoPicture();
}

PictureBox::~PictureBox() = default;

void PictureBox::ShowPicture(const QString& hostPath, const QString& fileName) {
    ui->lblImageName->setText(fileName);
    ui->imgImageBox->setAccessibleDescription(fileName);
    ui->imgImageBox->SetPicture(hostPath);
}

void PictureBox::ShowNoPicture() {
    ui->lblImageName->setText("No images currently available for viewing.");
    ui->imgImageBox->setAccessibleDescription({});
    ui->imgImageBox->SetPicture({});
}

} // namespace korvadex
