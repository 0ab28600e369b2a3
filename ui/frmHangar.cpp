#include "ui/frmHangar.h"

#include "app/commands.h"
#include "media/shown_pictures.h"
#include "platform/windows_path.h"
#include "ui/archive_files.h"
#include "ui/collection_panel.h"
#include "ui/focus_sight.h"
#include "ui/frmAbout.h"
#include "ui/frmFileList.h"
#include "ui/frmPhotos.h"
#include "ui/help_keys.h"
#include "ui/menus.h"
#include "ui/picture_files.h"
#include "ui/qt_text.h"
#include "ui/queue_panel.h"
#include "ui/undo_keys.h"
#include "ui/wheel_guard.h"
#include "ui/window_geometry.h"
#include "ui_frmHangar.h"

#include <QCloseEvent>
#include <QMimeData>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string_view>

namespace korvadex {

namespace {

// How often it is looked whether other programs could open what they were given.
constexpr int OpeningsInterval = 200; // ms

// What is known of the packages of the collection is read while nothing else is to be done.
constexpr int ReadInterval = 20; // ms
constexpr std::chrono::milliseconds ReadTime(10);
constexpr int ReadsBetweenShows = 12;
constexpr int CollectionWidthAsDesigned = 240;

constexpr int ButtonMargins = 12;

void Fill(QComboBox* box, const std::vector<std::string>& items, int index) {
    QStringList texts;
    for (const auto& item : items)
        texts.append(ToQt(item));
    QStringList shown;
    for (int i = 0; i < box->count(); ++i)
        shown.append(box->itemText(i));
    if (texts != shown) {
        box->clear();
        box->addItems(texts);
    }
    box->setCurrentIndex(index);
}

// Of the first of the two in it, in per cent.
double FirstShare(const QSplitter& splitter) {
    const auto sizes = splitter.sizes();
    return 100.0 * sizes[0] / std::max(1, sizes[0] + sizes[1]);
}

void SetFirstShare(QSplitter& splitter, double share) {
    const int first = int(std::lround(share * 100));
    splitter.setSizes({first, 10000 - first});
}

void SetText(QLineEdit* box, const QString& text) {
    if (box->text() == text)
        return;
    box->setText(text);
    box->setCursorPosition(0);
}

} // namespace

frmHangar::frmHangar(const FileSystem& fileSystem)
    : files(fileSystem), ui(std::make_unique<Ui::frmHangar>()), checkOpenings(new QTimer(this)),
      readCollection(new QTimer(this)) {
    ui->setupUi(this);
    KeepWheelFromChoices(*this);
    KeepUndoKeysInFields(*this);
    KeepFocusInSight(*this);
    menus = new Menus(ui->mnuBar);
    fileList = std::make_unique<frmFileList>(this);
    photos = std::make_unique<frmPhotos>(files);

    // The two take each other's place.
    ui->txtPackageName->setMinimumHeight(ui->cboPackageName->sizeHint().height());
    QSizePolicy keepsItsPlace = ui->cmdPackageNames->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    ui->cmdPackageNames->setSizePolicy(keepsItsPlace);
    // The picture and the lists share what a larger window has to give.
    ui->splMain->setStretchFactor(0, 1);
    ui->splMain->setStretchFactor(1, 1);
    ui->splCollection->setStretchFactor(0, 0);
    ui->splCollection->setStretchFactor(1, 1);
    ui->splLeft->setStretchFactor(0, 2);
    ui->splLeft->setStretchFactor(1, 1);
    for (QWidget* panel : {static_cast<QWidget*>(ui->pnlCollection), static_cast<QWidget*>(ui->pnlQueue),
                           static_cast<QWidget*>(ui->scrLeft)})
        panel->hide();
    // A small screen has no room for buttons wider than their texts.
    for (auto* button : findChildren<QPushButton*>())
        button->setMinimumWidth(button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width() +
                                ButtonMargins);
    ui->lblPackageName->installEventFilter(this);
    ConnectControls();
    ConnectFilter();
    ConnectMenus();
    ConnectCollection();
    ConnectQueue();
    checkOpenings->setInterval(OpeningsInterval);
    connect(checkOpenings, &QTimer::timeout, this, [this] {
        if (!program || !program->CheckOpenings())
            checkOpenings->stop();
    });
    menus->ShowState({});
    ShowSide(true);
    FitToScreen(*this);
}

frmHangar::~frmHangar() = default;

void frmHangar::Run(const std::function<void(Program&)>& command) {
    if (!program)
        return;
    ui->pnlCollection->Settle();
    command(*program);
}

void frmHangar::Jump(const std::function<void(Program&)>& command) {
    Run(command);
    if (!ui->cboPackageName->IsOffered(ui->cboPackageName->currentIndex()))
        ui->txtPackageFilter->clear();
}

void frmHangar::Give(const PackageCommand& command, const std::vector<PackageRef>& packages) {
    Jump([&](Program& to) { (to.*command.routine)(packages); });
}

void frmHangar::ConnectControls() {
    connect(ui->cboPackageCategory, &QComboBox::activated, this,
            [this](int index) { Run([=](Program& to) { to.ChooseCategory(index); }); });
    connect(ui->cboPackageName, &QComboBox::activated, this,
            [this](int index) { Run([=](Program& to) { to.ChoosePackage(index); }); });
    connect(ui->txtPackageName, &QLineEdit::textEdited, this,
            [this](const QString& text) { Run([&](Program& to) { to.SetPackageName(FromQt(text)); }); });
    const auto press = [this](QPushButton* button, void (Program::*command)()) {
        connect(button, &QPushButton::clicked, this, [this, command] { Run([=](Program& to) { (to.*command)(); }); });
    };
    press(ui->cmdGoToHangar, &Program::GoToHangar);
    press(ui->cmdGoToStaging, &Program::GoToStaging);
    press(ui->cmdRefresh, &Program::Refresh);
    press(ui->cmdExplore, &Program::Explore);
    press(ui->cmdFirstPackage, &Program::SetFirstPackage);
    press(ui->cmdPackageNames, &Program::ListPackagesInCategory);
    press(ui->cmdPackageCategories, &Program::ListCategories);
    connect(new QShortcut(QKeySequence::Refresh, this), &QShortcut::activated, ui->cmdRefresh, &QPushButton::click);
    connect(ui->staBar, &StatusBar::StopRequested, this, [this] { Run([](Program& to) { to.StopAfterThis(); }); });

    connect(ui->tabComponents, &ComponentLists::OpenRequested, this,
            [this](int group, int position) { Run([=](Program& to) { to.OpenComponent(group, position); }); });
    connect(ui->tabComponents, &ComponentLists::ShowInFolderRequested, this,
            [this](int group, int position) { Run([=](Program& to) { to.ShowComponentInFolder(group, position); }); });
    connect(ui->tabComponents, &ComponentLists::DeleteRequested, this,
            [this](int group, const std::vector<int>& positions) {
                Run([&](Program& to) { to.DeleteComponents(group, positions); });
            });
    const auto onPicture = [this](void (PictureBox::*signal)(), void (Program::*command)()) {
        connect(ui->picPackage, signal, this, [this, command] {
            if (ui->picPackage->IsOther())
                return ui->tabComponents->ClearSelection(); // back to the package's own
            Run([=](Program& to) { (to.*command)(); });
        });
    };
    onPicture(&PictureBox::NextRequested, &Program::ShowNextImage);
    onPicture(&PictureBox::PreviousRequested, &Program::ShowPreviousImage);
    onPicture(&PictureBox::DeleteRequested, &Program::DeleteShownImage);
    onPicture(&PictureBox::FirstRequested, &Program::MakeShownImageFirst);
    connect(ui->picPackage, &PictureBox::PasteRequested, this,
            [this] { Run([](Program& to) { to.ImportImageClipboard(); }); });
    connect(ui->tabComponents, &ComponentLists::SelectionChanged, this, [this] {
        if (program && !ShowSelectedPicture() && ui->picPackage->IsOther())
            ShowPicture(program->View(), program->Package());
    });
    connect(ui->picPackage, &PictureBox::PicturesDropped, this, [this](const QStringList& hostPaths) {
        Run([&](Program& to) { to.ImportDroppedImages(OfferFiles(files, hostPaths)); });
    });
    connect(fileList.get(), &frmFileList::LineChosen, this,
            [this](int row) { Jump([=](Program& to) { to.ChooseFileListLine(row); }); });
    connect(fileList.get(), &frmFileList::CommandGiven, this, &frmHangar::Give);
    fileList->canWork =
        ui->pnlCollection->canWork = [this](const PackageCommand& command, const std::vector<PackageRef>& packages) {
            return !program || program->CanWorkOn(command, packages);
        };
    connect(photos.get(), &frmPhotos::PictureChosen, this,
            [this](int row) { Jump([=](Program& to) { to.ChooseGalleryPicture(row); }); });
}

void frmHangar::ConnectFilter() {
    QLineEdit* field = ui->txtPackageFilter;
    PackageChooser* chooser = ui->cboPackageName;
    connect(field, &QLineEdit::textChanged, this, [this, chooser](const QString& text) {
        chooser->SetFilter(text);
        ShowFilterCount();
    });
    // Enter takes the first package that is left, unless the shown one is among them.
    connect(field, &QLineEdit::returnPressed, this, [this, chooser] {
        const int first = chooser->FirstOffered();
        if (first < 0)
            return;
        chooser->setFocus();
        if (!chooser->IsOffered(chooser->currentIndex()))
            Run([=](Program& to) { to.ChoosePackage(first); });
    });
    const auto key = [field](Qt::Key pressed, auto&& command) {
        auto* shortcut = new QShortcut(pressed, field);
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, field, command);
    };
    key(Qt::Key_Escape, [=] {
        field->clear();
        chooser->setFocus();
    });
    key(Qt::Key_Down, [=] {
        chooser->setFocus();
        chooser->showPopup();
    });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, field, [this, field] {
        if (ui->pnlCollection->isVisible())
            return ui->pnlCollection->FocusFilter();
        field->setFocus(Qt::ShortcutFocusReason);
        field->selectAll();
    });
}

void frmHangar::ConnectMenus() {
    const auto start = [this](const char* name) { Run([=](Program& to) { to.RunCommand(name); }); };
    connect(menus, &Menus::Chosen, this, start);
    const auto lookAgain = [this] { Run([](Program& to) { to.LookAgain(); }); };
    connect(menus, &Menus::Opened, this, lookAgain);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [lookAgain](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            lookAgain();
    });
    connect(ui->Toolbar1, &Toolbar::Chosen, this, start);
    new HelpKeys(this, [this](const char* chapter) {
        if (program) // what is shown may be what a dialog is about
            program->OpenHelp(chapter);
        checkOpenings->start();
    });
    connect(ui->txtPackageName, &QLineEdit::returnPressed, this, [start] { start("mnuStagingToHangar"); });
    connect(menus, &Menus::ChoiceMade, this,
            [this](const Command& command, int row) { Run([&](Program& to) { (to.*command.extras.choose)(row); }); });
    connect(ui->cmdProcessZip, &QPushButton::clicked, this, [start] { start("mnuProcessZipFile"); });
}

void frmHangar::ConnectCollection() {
    CollectionPanel* panel = ui->pnlCollection;
    connect(panel, &CollectionPanel::PackageChosen, this,
            [this](const PackageRef& package) { Jump([&](Program& to) { to.ShowPackage(package); }); });
    connect(panel, &CollectionPanel::CommandChosen, this, [this](const PackageRef& package, const char* entry) {
        RunOn(package,
              [=](Program& to) { std::string_view(entry) == "cmdExplore" ? to.Explore() : to.RunCommand(entry); });
    });
    connect(panel, &CollectionPanel::CommandGiven, this, &frmHangar::Give);
    connect(panel, &CollectionPanel::MoveChosen, this,
            [this](const std::vector<PackageRef>& packages, const std::string& category) {
                Jump([&](Program& to) { to.MoveEach(packages, category); });
            });
    connect(panel, &CollectionPanel::RenameChosen, this,
            [this](const std::string& category) { Run([&](Program& to) { to.RenameCategory(category); }); });
    connect(panel, &CollectionPanel::NewCategoryChosen, this, [this] { Run([](Program& to) { to.NewCategory(); }); });
    connect(ui->splCollection, &QSplitter::splitterMoved, this,
            [this] { layout.collectionWidth = ui->scrLeft->width() * TwipsPerPixel; });
    connect(ui->splMain, &QSplitter::splitterMoved, this, [this] { layout.pictureShare = FirstShare(*ui->splMain); });
    connect(ui->splLeft, &QSplitter::splitterMoved, this,
            [this] { layout.queueShare = 100 - FirstShare(*ui->splLeft); });
    readCollection->setInterval(ReadInterval);
    connect(readCollection, &QTimer::timeout, this, &frmHangar::ReadCollection);
}

void frmHangar::ConnectQueue() {
    QueuePanel* panel = ui->pnlQueue;
    const auto on = [&](auto signal, auto command) {
        connect(panel, signal, this,
                [this, command](auto... given) { Run([=](Program& to) { (to.*command)(given...); }); });
    };
    on(&QueuePanel::NextChosen, &Program::TakeNextArchive);
    on(&QueuePanel::SkipChosen, &Program::SkipArchive);
    on(&QueuePanel::TakeAllChosen, &Program::TakeAllArchives);
    on(&QueuePanel::TakeChosen, &Program::TakeArchive);
    on(&QueuePanel::AddChosen, &Program::AddArchiveToStaging);
    on(&QueuePanel::RemoveChosen, &Program::RemoveFromQueue);
}

void frmHangar::RunOn(const PackageRef& package, const std::function<void(Program&)>& command) {
    Jump([&](Program& to) {
        to.ShowPackage(package);
        if (to.View().HangarSideShown && to.Package().ref == package)
            command(to);
    });
}

void frmHangar::ShowCollection(const MainView& view, const LoadedPackage& package) {
    CollectionPanel* panel = ui->pnlCollection;
    if (panel->isHidden() == view.isCollectionShown) {
        const bool hadFocus = panel->isAncestorOf(focusWidget());
        panel->setVisible(view.isCollectionShown);
        if (hadFocus) // it goes with the panel
            ui->cboPackageCategory->setFocus();
    }
    if (!program || !view.isCollectionShown)
        return;
    panel->Show(program->GetCollection(), view.HangarSideShown ? package.ref : PackageRef(), view.HangarSideShown);
    readCollection->start();
}

void frmHangar::ShowQueue(const MainView& view) {
    QueuePanel* panel = ui->pnlQueue;
    panel->Show(view.queue);
    const bool hadFocus = panel->isAncestorOf(focusWidget());
    const bool isNew = panel->isHidden() && !view.queue.empty();
    panel->setVisible(!view.queue.empty());
    if (isNew && layout.queueShare > 0)
        SetFirstShare(*ui->splLeft, 100 - layout.queueShare);
    if (hadFocus && view.queue.empty())
        ui->cboPackageCategory->setFocus();
    ui->scrLeft->setVisible(view.isCollectionShown || !view.queue.empty());
}

void frmHangar::ReadCollection() {
    const bool isMore = program && !ui->pnlCollection->isHidden() && program->ReadCollection(ReadTime);
    if (!isMore)
        readCollection->stop();
    if (!isMore || ++collectionReads % ReadsBetweenShows == 0)
        ui->pnlCollection->Refresh();
}

void frmHangar::ShowView(const MainView& view, const LoadedPackage& package) {
    setWindowTitle(ToQt(view.caption + (view.profile.empty() ? "" : "  -  " + view.profile)));
    ui->lblHeader->setText(ToQt(view.header));
    ShowSide(view.HangarSideShown);
    menus->ShowState(view);
    ui->Toolbar1->ShowState(view);
    ui->cmdFirstPackage->setEnabled(view.present & NeedsPackage);
    Fill(ui->cboPackageCategory, view.categories, view.categoryIndex);
    ui->cboPackageName->ShowPackages(view.packages, view.packageIndex);
    ui->cboPackageName->SetFilter(ui->txtPackageFilter->text());
    ShowFilterCount();
    ShowPackageName(view);
    ui->lblPackageSize->setText(ToQt(view.sizeText));
    ui->lblPackageSize->setToolTip(ToQt(view.sizeDetails));
    const bool isNothingThere = view.HangarSideShown ? view.isHangarEmpty : view.isStagingEmpty;
    ui->stkComponents->setCurrentWidget(isNothingThere ? ui->wgtInvitation : ui->tabComponents);
    ui->staBar->ShowText(ToQt(view.status));
    ui->staBar->ShowCounts(ToQt(view.statusCounts));
    if (view.listRevision != shownRevision)
        ShowPackage(package);
    if (view.listRevision != shownRevision || view.imageIndex != shownImage)
        ShowPicture(view, package);
    if (view.openRevision != shownOpening && view.groupToOpen >= 0)
        ui->tabComponents->setCurrentIndex(view.groupToOpen);
    shownOpening = view.openRevision;
    shownRevision = view.listRevision;
    shownImage = view.imageIndex;
    ShowCollection(view, package);
    ShowQueue(view);
    if (view.HangarSideShown) {
        fileList->Follow(package.ref);
        photos->Follow(package.ref);
    }
    fileList->TakeKeyboard();
    checkOpenings->start(); // a command may have opened something
}

// A name that was proposed is marked: typing replaces it.
void frmHangar::ShowPackageName(const MainView& view) {
    QLineEdit* field = ui->txtPackageName;
    const bool isNew = field->text() != ToQt(view.packageName);
    SetText(field, ToQt(view.packageName));
    if (isNew && !view.packageName.empty() && view.packageName == view.proposedName)
        MarkPackageName();
}

void frmHangar::MarkPackageName() {
    if (!ui->txtPackageName->isVisible())
        return;
    ui->txtPackageName->setFocus(Qt::ShortcutFocusReason);
    ui->txtPackageName->selectAll();
}

bool frmHangar::eventFilter(QObject* watched, QEvent* event) {
    // By itself the label would leave the field as it is where it has the focus already.
    if (watched != ui->lblPackageName || event->type() != QEvent::Shortcut || !ui->txtPackageName->isVisible())
        return QMainWindow::eventFilter(watched, event);
    MarkPackageName();
    return true;
}

void frmHangar::ShowPackage(const LoadedPackage& package) {
    SetText(ui->txtAircraftName, ToQt(package.aircraftTitle));
    SetText(ui->txtPanelAlias, ToQt(package.panelText));
    SetText(ui->txtSoundAlias, ToQt(package.soundText));
    ui->tabComponents->ShowFiles(package);
}

void frmHangar::ShowPicture(const MainView& view, const LoadedPackage& package) {
    const auto path = ImageAt(package, view.imageIndex);
    if (path.empty())
        return ui->picPackage->ShowNoPicture();
    ui->picPackage->ShowPicture(ToQt(files.HostPath(path)), ToQt(LastPathComponent(path)), view.imageIndex,
                                int(package.pictures.size()));
}

bool frmHangar::ShowSelectedPicture() {
    const auto selected = ui->tabComponents->SelectedFile();
    const auto path = selected ? program->PictureInList(selected->first, selected->second) : "";
    return !path.empty() && ui->picPackage->ShowOther(ToQt(files.HostPath(path)), ToQt(LastPathComponent(path)));
}

void frmHangar::ShowFilterCount() {
    const PackageChooser* chooser = ui->cboPackageName;
    const bool isShown = ui->txtPackageFilter->isEnabled() && !ui->txtPackageFilter->text().trimmed().isEmpty();
    ui->lblFilterCount->setText(isShown ? QString("%1 of %2").arg(chooser->OfferedCount()).arg(chooser->count())
                                        : QString());
}

void frmHangar::ShowSide(bool isHangarSide) {
    menus->ShowSide(isHangarSide ? Side::Hangar : Side::Staging);
    const std::pair<QWidget*, QWidget*> counterparts[] = {
        {ui->cmdGoToStaging, ui->cmdGoToHangar},
        {ui->cboPackageName, ui->txtPackageName},
    };
    for (const auto& [hangar, staging] : counterparts) {
        const bool hadFocus = hangar->hasFocus() || staging->hasFocus();
        hangar->setVisible(isHangarSide);
        staging->setVisible(!isHangarSide);
        if (hadFocus)
            (isHangarSide ? hangar : staging)->setFocus();
    }
    // Staging has no packages to choose from; the fields below stay where they are.
    if (ui->txtPackageFilter->hasFocus() && !isHangarSide)
        ui->txtPackageName->setFocus();
    ui->txtPackageFilter->setEnabled(isHangarSide);
    ui->lblPackageFilter->setEnabled(isHangarSide);
    ui->cmdFirstPackage->setVisible(isHangarSide);
    ui->cmdPackageNames->setVisible(isHangarSide);
    ui->lblPackageName->setBuddy(isHangarSide ? counterparts[1].first : counterparts[1].second);
}

void frmHangar::ShowStatus(const std::string& text) {
    ui->staBar->ShowText(ToQt(text));
}

void frmHangar::SetBusy(bool isBusy) {
    if (isBusy != centralWidget()->isEnabled())
        return;
    if (isBusy)
        focusBefore = focusWidget();
    for (QWidget* part : std::initializer_list<QWidget*>{ui->mnuBar, ui->Toolbar1, centralWidget()})
        part->setEnabled(!isBusy);
    if (!isBusy && focusBefore && !focusWidget())
        focusBefore->setFocus();
}

void frmHangar::ShowProgress(int minimum, int maximum) {
    SetBusy(true);
    ui->staBar->ShowProgress(minimum, maximum);
}

void frmHangar::SetProgress(int value) {
    ui->staBar->SetProgress(value);
}

void frmHangar::HideProgress() {
    ui->staBar->HideProgress();
    SetBusy(false);
}

void frmHangar::OfferStop(bool isOffered) {
    ui->staBar->OfferStop(isOffered);
}

void frmHangar::ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) {
    fileList->ShowLines(ToQt(caption), lines);
}

bool frmHangar::IsFileListVisible() const {
    return fileList->isVisible();
}

void frmHangar::ShowGallery(const GalleryView& gallery) {
    photos->ShowGallery(gallery);
}

void frmHangar::UpdateGallery(const GalleryView& gallery) {
    photos->UpdateGallery(gallery);
}

bool frmHangar::IsGalleryVisible() const {
    return photos->isVisible();
}

void frmHangar::ComeToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void frmHangar::ShowAbout() {
    frmAbout(this).exec();
}

ScreenSize frmHangar::Screen() const {
    return ScreenInTwips(*this);
}

void frmHangar::ApplyGeometry(const SavedGeometry& geometry) {
    SetGeometryInTwips(*this, geometry);
}

std::optional<WindowGeometry> frmHangar::Geometry() const {
    if (isMinimized())
        return std::nullopt;
    return GeometryInTwips(*this);
}

void frmHangar::ApplyListGeometry(const WindowGeometry& geometry) {
    fileList->ApplyGeometry(geometry);
}

std::optional<WindowGeometry> frmHangar::ListGeometry() const {
    return fileList->LastGeometry();
}

void frmHangar::ApplyLayout(const WindowLayout& newLayout) {
    layout = newLayout;
    const int width = layout.collectionWidth > 0 ? int(std::lround(layout.collectionWidth / TwipsPerPixel))
                                                 : CollectionWidthAsDesigned;
    ui->splCollection->setSizes({width, std::max(1, this->width() - width)});
    if (layout.pictureShare > 0)
        SetFirstShare(*ui->splMain, layout.pictureShare);
    if (layout.queueShare > 0)
        SetFirstShare(*ui->splLeft, 100 - layout.queueShare);
    photos->ShowOnePerPackage(layout.isOnePicturePerPackage);
    setWindowState(windowState().setFlag(Qt::WindowMaximized, layout.isMaximised));
}

WindowLayout frmHangar::Layout() const {
    WindowLayout now = layout;
    now.isOnePicturePerPackage = photos->IsOnePerPackage();
    now.isMaximised = isMaximized() || windowState().testFlag(Qt::WindowMaximized);
    return now;
}

void frmHangar::EndProgram() {
    hasEnded = true;
    fileList->close();
    photos->close();
    hide();
    emit Ended();
}

void frmHangar::closeEvent(QCloseEvent* event) {
    // Shutting down calls EndProgram. In the middle of a command the window stays.
    Run([](Program& to) { to.Shutdown(); });
    event->setAccepted(hasEnded || !program);
}

void frmHangar::dragEnterEvent(QDragEnterEvent* event) {
    if (!ArchiveFilesIn(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void frmHangar::dropEvent(QDropEvent* event) {
    std::vector<std::string> paths;
    for (const QString& archive : ArchiveFilesIn(event->mimeData()))
        paths.push_back(files.SourceFromHost(FromQt(archive)));
    if (paths.empty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // The program that the file was dragged from waits until this returns.
    QMetaObject::invokeMethod(
        this, [this, paths] { Run([&](Program& to) { to.OfferArchives(paths); }); }, Qt::QueuedConnection);
}

} // namespace korvadex
