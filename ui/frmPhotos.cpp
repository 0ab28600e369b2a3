#include "ui/frmPhotos.h"

#include "platform/windows_path.h"
#include "ui/icons.h"
#include "ui/picture_loader.h"
#include "ui/qt_text.h"
#include "ui/window_geometry.h"
#include "ui_frmPhotos.h"

#include <QKeyEvent>
#include <QShortcut>
#include <QTimer>

#include <algorithm>
#include <optional>
#include <utility>

namespace korvadex {

namespace {

const char* const Hint = "Click a picture to see it larger.\nDouble click it to go to its package.";

std::optional<GalleryStep> StepOf(int key) {
    switch (key) {
    case Qt::Key_Left:
        return GalleryStep::Left;
    case Qt::Key_Right:
        return GalleryStep::Right;
    case Qt::Key_Up:
        return GalleryStep::Up;
    case Qt::Key_Down:
        return GalleryStep::Down;
    case Qt::Key_PageUp:
        return GalleryStep::PageUp;
    case Qt::Key_PageDown:
        return GalleryStep::PageDown;
    case Qt::Key_Home:
        return GalleryStep::First;
    case Qt::Key_End:
        return GalleryStep::Last;
    default:
        return std::nullopt;
    }
}

// "Jets  -  (shot1).jpg  -  installed in MSFS"
QString Whereabouts(const GalleryPicture& picture) {
    return ToQt(picture.package.category + "  -  " + LastPathComponent(picture.path) +
                (picture.isInstalled ? "  -  installed in MSFS" : ""));
}

} // namespace

frmPhotos::frmPhotos(const FileSystem& files)
    : ui(std::make_unique<Ui::frmPhotos>()), installed(NamedIcon("Installed")),
      thumbnails(new PictureLoader(files, this)), large(new PictureLoader(files, this)), loadAgain(new QTimer(this)) {
    setWindowFlags(Qt::Window);
    ui->setupUi(this);
    connect(ui->grdPhotos, &PhotoGrid::Clicked, this, [this](int thumbnail) {
        ui->grdPhotos->setFocus(Qt::MouseFocusReason);
        if (const int picture = pages.At(thumbnail)) {
            pages.Mark(picture);
            ShowMarked();
        }
    });
    connect(ui->grdPhotos, &PhotoGrid::DoubleClicked, this, [this](int thumbnail) {
        if (pages.At(thumbnail))
            Choose();
    });
    connect(ui->imgHangar, &PhotoView::DoubleClicked, this, &frmPhotos::Choose);
    connect(ui->cmdShowPackage, &QPushButton::clicked, this, &frmPhotos::Choose);
    connect(ui->grdPhotos, &PhotoGrid::Scrolled, this, &frmPhotos::Turn);
    connect(ui->cmdNext, &QPushButton::clicked, this, [this] { Turn(true); });
    connect(ui->cmdPrevious, &QPushButton::clicked, this, [this] { Turn(false); });
    connect(ui->CancelButton, &QPushButton::clicked, this, &QDialog::close);
    connect(ui->txtFilter, &QLineEdit::textChanged, this, &frmPhotos::Narrow);
    connect(ui->chkOnePerPackage, &QCheckBox::toggled, this, &frmPhotos::Narrow);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        ui->txtFilter->setFocus(Qt::ShortcutFocusReason);
        ui->txtFilter->selectAll();
    });

    connect(thumbnails, &PictureLoader::Loaded, this, [this](const std::string& path) {
        for (int index = 0; index < GalleryPages::PageSize; ++index)
            if (const auto* picture = PictureAt(pages.At(index)); picture && picture->path == path)
                ShowThumbnail(index);
    });
    connect(large, &PictureLoader::Loaded, this, &frmPhotos::ShowLarge);
    // While the window is being resized the pictures at hand are stretched.
    loadAgain->setSingleShot(true);
    loadAgain->setInterval(100);
    connect(loadAgain, &QTimer::timeout, this, &frmPhotos::LoadPictures);
    const auto resized = [this] { loadAgain->start(); };
    connect(ui->grdPhotos, &PhotoGrid::Resized, this, resized);
    connect(ui->imgHangar, &PhotoView::Resized, this, resized);
    FitToScreen(*this);
}

frmPhotos::~frmPhotos() = default;

void frmPhotos::ShowGallery(const GalleryView& gallery) {
    if (!isVisible() || gallery.caption != shown.caption) {
        ui->txtFilter->clear();
        pages = GalleryPages();
    }
    UpdateGallery(gallery);
    ui->grdPhotos->setFocus();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void frmPhotos::UpdateGallery(const GalleryView& gallery) {
    TakePictures(gallery);
    if (shown.pictures.empty())
        close();
    setWindowTitle(ToQt(shown.caption));
    ui->lblNotice->setText(ToQt(shown.notice));
    ui->lblNotice->setVisible(!shown.notice.empty());
    ShowPage();
}

void frmPhotos::Follow(const PackageRef& package) {
    if (package == std::exchange(followed, package) || !isVisible() || (Marked() && Marked()->package == package))
        return;
    const auto first =
        std::ranges::find(seen, package, [&](int row) { return shown.pictures[std::size_t(row)].package; });
    if (first == seen.end())
        return;
    pages.Mark(int(first - seen.begin()) + 1);
    ShowPage();
}

void frmPhotos::TakePictures(const GalleryView& gallery) {
    const GalleryPicture marked = Marked() ? *Marked() : GalleryPicture();
    const int start = pages.Start();
    if (!std::ranges::equal(gallery.pictures, shown.pictures, {}, &GalleryPicture::path, &GalleryPicture::path)) {
        thumbnails->Forget();
        large->Forget();
    }
    shown = gallery;
    seen = Seen();
    pages = GalleryPages(int(seen.size()));
    pages.TurnTo(start);
    // The mark stays with its picture, else with the package's only one.
    const auto at = [&](int row) -> const GalleryPicture& { return shown.pictures[std::size_t(row)]; };
    auto now = std::ranges::find(seen, marked.path, [&](int row) { return at(row).path; });
    if (now == seen.end() && ui->chkOnePerPackage->isChecked() && !marked.path.empty())
        now = std::ranges::find(seen, marked.package, [&](int row) { return at(row).package; });
    if (now != seen.end())
        pages.Mark(int(now - seen.begin()) + 1);
}

std::vector<int> frmPhotos::Seen() const {
    const FilterWords words(FromQt(ui->txtFilter->text()));
    std::vector<int> rows;
    for (int row = 0; row < int(shown.pictures.size()); ++row) {
        const GalleryPicture& picture = shown.pictures[std::size_t(row)];
        const bool isFirst = rows.empty() || shown.pictures[std::size_t(rows.back())].package != picture.package;
        if ((isFirst || !ui->chkOnePerPackage->isChecked()) && IsInPicture(words, picture))
            rows.push_back(row);
    }
    return rows;
}

void frmPhotos::Narrow() {
    TakePictures(GalleryView(shown));
    if (!pages.Marked()) {
        pages.TurnTo(1);
        if (!ui->txtFilter->text().trimmed().isEmpty()) // Enter goes to the package of the first that is left
            pages.Mark(1);
    }
    ShowPage();
}

void frmPhotos::ShowOnePerPackage(bool isWanted) {
    ui->chkOnePerPackage->setChecked(isWanted);
}

bool frmPhotos::IsOnePerPackage() const {
    return ui->chkOnePerPackage->isChecked();
}

bool frmPhotos::IsPageComplete() const {
    for (int index = 0; index < GalleryPages::PageSize; ++index)
        if (ui->grdPhotos->Photo(index).IsLoading())
            return false;
    return true;
}

const GalleryPicture* frmPhotos::PictureAt(int number) const {
    return number > 0 ? &shown.pictures[std::size_t(seen[std::size_t(number - 1)])] : nullptr;
}

void frmPhotos::ShowPage() {
    for (int index = 0; index < GalleryPages::PageSize; ++index)
        ShowThumbnail(index);
    ui->lblCount->setText(seen.size() == shown.pictures.size()
                              ? QString()
                              : QString("%1 of %2 pictures").arg(seen.size()).arg(shown.pictures.size()));
    ui->lblPage->setText(QString("Page %1 of %2").arg(pages.Number()).arg(pages.Count()));
    ui->cmdNext->setEnabled(pages.HasNext());
    ui->cmdPrevious->setEnabled(pages.HasPrevious());
    ShowMarked();
}

void frmPhotos::ShowThumbnail(int index) {
    PhotoView& photo = ui->grdPhotos->Photo(index);
    const auto* picture = PictureAt(pages.At(index));
    if (!picture)
        return photo.ShowNothing();
    photo.ShowPicture(thumbnails->Find(picture->path), ToQt(picture->package.name));
    photo.ShowBadge(picture->isInstalled ? installed : QIcon());
    photo.setToolTip(PlainToolTip(ToQt(picture->package.name) + "\n" + Whereabouts(*picture)));
}

void frmPhotos::ShowMarked() {
    for (int index = 0; index < GalleryPages::PageSize; ++index)
        ui->grdPhotos->Photo(index).SetMarked(pages.Marked() && pages.At(index) == pages.Marked());
    const auto* picture = Marked();
    ui->lblPackage->setText(picture ? ToQt(picture->package.name) : QString());
    ui->lblPicture->setText(picture ? Whereabouts(*picture) : Hint);
    ui->grdPhotos->setAccessibleDescription(picture ? ui->lblPackage->text() + "  -  " + ui->lblPicture->text()
                                                    : QString());
    ui->cmdShowPackage->setEnabled(picture);
    ShowLarge();
    LoadPictures();
}

void frmPhotos::ShowLarge() {
    const auto* picture = Marked();
    if (!picture)
        return ui->imgHangar->ShowEmblem(windowIcon());
    // Until it is there, the thumbnail stands for it.
    const LoadedPicture* loaded = large->Find(picture->path);
    ui->imgHangar->ShowPicture(loaded ? loaded : thumbnails->Find(picture->path), {});
    ui->imgHangar->setAccessibleName(ToQt(picture->package.name));
}

void frmPhotos::LoadPictures() {
    loadAgain->stop();
    if (!isVisible())
        return;
    std::vector<std::string> wanted;
    for (const int page : {0, 1, -1}) // what stands on this one first
        for (int index = 0; index < GalleryPages::PageSize; ++index) {
            const int number = pages.Start() + page * GalleryPages::PageSize + index;
            if (number >= 1 && number <= int(seen.size()))
                wanted.push_back(PictureAt(number)->path);
        }
    thumbnails->Want(wanted, ui->grdPhotos->Box());
    if (const auto* picture = Marked())
        large->Want({picture->path}, ui->imgHangar->Box());
    else
        large->Want({}, {});
}

void frmPhotos::Turn(bool isForward) {
    if (isForward ? !pages.HasNext() : !pages.HasPrevious())
        return;
    if (isForward)
        pages.Next();
    else
        pages.Previous();
    ShowPage();
}

void frmPhotos::Choose() {
    if (pages.Marked())
        emit PictureChosen(seen[std::size_t(pages.Marked() - 1)]);
}

void frmPhotos::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && ui->txtFilter->hasFocus() && !ui->txtFilter->text().isEmpty())
        return ui->txtFilter->clear();
    const auto step = StepOf(event->key());
    if (!step || (event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return QDialog::keyPressEvent(event);
    const int page = pages.Number();
    pages.Move(*step);
    if (pages.Number() == page)
        ShowMarked();
    else
        ShowPage();
}

void frmPhotos::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    QTimer::singleShot(0, this, &frmPhotos::LoadPictures);
}

void frmPhotos::hideEvent(QHideEvent* event) {
    // Nobody sees them any more. A window that is only minimised keeps them.
    if (!event->spontaneous()) {
        thumbnails->Forget();
        large->Forget();
    }
    QDialog::hideEvent(event);
}

} // namespace korvadex
