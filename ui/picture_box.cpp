#include "ui/picture_box.h"

#include "ui/archive_files.h"
#include "ui/picture_files.h"
#include "ui_picture_box.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcut>
#include <QTimer>

namespace korvadex {

namespace {

// What is dropped together with an archive is left to the window, which takes archives.
QStringList DroppedPictures(const QMimeData* data) {
    return data && ArchiveFilesIn(data).isEmpty() ? PictureFilesIn(*data) : QStringList();
}

} // namespace

PictureView::PictureView(QWidget* parent) : PhotoView(parent), decodeAgain(new QTimer(this)) {
    setFocusPolicy(Qt::StrongFocus);
    // While the window is being resized the picture at hand is stretched; the file is read again afterwards.
    decodeAgain->setSingleShot(true);
    decodeAgain->setInterval(100);
    connect(decodeAgain, &QTimer::timeout, this, &PictureView::Decode);
    connect(this, &PhotoView::Resized, this, [this] {
        if (!path.isEmpty())
            decodeAgain->start();
    });
}

bool PictureView::SetPicture(const QString& hostPath, const QString& fileName) {
    path = hostPath;
    name = fileName;
    Decode();
    return Trouble().isEmpty();
}

void PictureView::Decode() {
    decodeAgain->stop();
    if (path.isEmpty()) {
        ShowNothing();
    } else {
        const LoadedPicture read = ReadPictureFile(path, Box());
        ShowPicture(&read, name);
    }
    setAccessibleName("Picture of the package");
    setAccessibleDescription(Trouble().isEmpty() ? name : name + ": " + Trouble());
}

void PictureView::paintEvent(QPaintEvent* event) {
    PhotoView::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this); // a line alone: styles fill their focus frames
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PictureView::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(event->button() == Qt::LeftButton); // the release comes here, too
}

void PictureView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit NextRequested();
}

void PictureView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_PageDown:
    case Qt::Key_Space:
        return emit NextRequested();
    case Qt::Key_Left:
    case Qt::Key_PageUp:
        return emit PreviousRequested();
    case Qt::Key_Delete:
        return emit DeleteRequested();
    default:
        QWidget::keyPressEvent(event);
    }
}

PictureBox::PictureBox(QWidget* parent) : QWidget(parent), ui(std::make_unique<Ui::PictureBox>()) {
    ui->setupUi(this);
    setAcceptDrops(true);

    connect(ui->imgImageBox, &PictureView::NextRequested, this, &PictureBox::NextRequested);
    connect(ui->imgImageBox, &PictureView::PreviousRequested, this, &PictureBox::PreviousRequested);
    connect(ui->imgImageBox, &PictureView::DeleteRequested, this, &PictureBox::DeleteRequested);
    connect(ui->cmdImgNext, &QPushButton::clicked, this, &PictureBox::NextRequested);
    connect(ui->cmdImgPrevious, &QPushButton::clicked, this, &PictureBox::PreviousRequested);
    connect(ui->cmdDeleteImage, &QPushButton::clicked, this, &PictureBox::DeleteRequested);
    connect(ui->cmdFirstImage, &QPushButton::clicked, this, &PictureBox::FirstRequested);
    auto* paste = new QShortcut(QKeySequence::Paste, this);
    paste->setContext(Qt::WidgetWithChildrenShortcut);
    connect(paste, &QShortcut::activated, this, &PictureBox::PasteRequested);
    ShowNoPicture();
}

PictureBox::~PictureBox() = default;

void PictureBox::ShowPicture(const QString& hostPath, const QString& fileName, int index, int count) {
    ui->lblImageName->setText(fileName);
    ui->imgImageBox->SetPicture(hostPath, fileName);
    isOther = false;
    ShowCount(index, count);
}

bool PictureBox::ShowOther(const QString& hostPath, const QString& fileName) {
    isOther = true;
    if (!ui->imgImageBox->SetPicture(hostPath, fileName))
        return false;
    ui->lblImageName->setText(fileName);
    ShowCount(0, 0);
    ui->imgImageBox->setToolTip("Click for the picture of the package");
    for (QPushButton* button : {ui->cmdImgNext, ui->cmdImgPrevious}) // both lead back to it
        button->setEnabled(true);
    return true;
}

void PictureBox::ShowNoPicture() {
    ui->lblImageName->setText("No images currently available for viewing.");
    ui->imgImageBox->SetPicture({}, {});
    isOther = false;
    ShowCount(0, 0);
}

void PictureBox::ShowCount(int index, int count) {
    const bool isOneOfMany = count > 1;
    ui->lblImageCount->setText(isOneOfMany ? QString("%1 of %2").arg(index).arg(count) : QString());
    ui->imgImageBox->setCursor(isOneOfMany ? Qt::PointingHandCursor : Qt::ArrowCursor);
    ui->imgImageBox->setToolTip(isOneOfMany  ? "Click for the next picture"
                                : count == 1 ? ""
                                             : "Drop picture files here, or press Ctrl+V to paste a picture");
    // Whoever stands on a button that is about to be disabled stays with the picture.
    for (QPushButton* button : {ui->cmdImgNext, ui->cmdImgPrevious, ui->cmdFirstImage, ui->cmdDeleteImage}) {
        const bool isForMany = button == ui->cmdImgNext || button == ui->cmdImgPrevious;
        const bool isUsable = isForMany ? isOneOfMany : count > 0;
        if (button->hasFocus() && !isUsable)
            ui->imgImageBox->setFocus();
        button->setEnabled(isUsable);
    }
}

void PictureBox::dragEnterEvent(QDragEnterEvent* event) {
    if (DroppedPictures(event->mimeData()).isEmpty())
        return event->ignore();
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void PictureBox::dropEvent(QDropEvent* event) {
    const QStringList pictures = DroppedPictures(event->mimeData());
    if (pictures.isEmpty())
        return event->ignore();
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // The program that they were dragged from waits until this returns.
    QMetaObject::invokeMethod(
        this, [this, pictures] { emit PicturesDropped(pictures); }, Qt::QueuedConnection);
}

} // namespace korvadex
