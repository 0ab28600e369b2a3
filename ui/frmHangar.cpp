#include "ui/frmHangar.h"

#include "platform/windows_path.h"
#include "ui/frmAbout.h"
#include "ui/frmFileList.h"
#include "ui/menus.h"
#include "ui/qt_text.h"
#include "ui/window_geometry.h"
#include "ui_frmHangar.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QMimeData>
#include <QProgressBar>
#include <QShortcut>

namespace korvadex {

namespace {

// A long command paints the window at most this often.
constexpr int PaintInterval = 40; // ms

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

void SetText(QLineEdit* box, const QString& text) {
    if (box->text() == text)
        return;
    box->setText(text);
    box->setCursorPosition(0);
}

// The archive that was dragged here; "" for anything else.
QString DraggedArchive(const QMimeData* data) {
    const auto urls = data->urls();
    if (urls.size() != 1 || !urls.front().isLocalFile())
        return {};
    const QString path = urls.front().toLocalFile();
    return path.endsWith(".zip", Qt::CaseInsensitive) ? path : QString();
}

} // namespace

frmHangar::frmHangar(const FileSystem& fileSystem)
    : files(fileSystem), ui(std::make_unique<Ui::frmHangar>()), lblStatus(new QLabel),
      prbProgress(new QProgressBar) {
    ui->setupUi(this);
    menus = new Menus(ui->mnuBar);
    fileList = std::make_unique<frmFileList>(this);

    lblStatus->setObjectName("lblStatus");
    lblStatus->setTextFormat(Qt::PlainText);
    lblStatus->setSizePolicy(QSizePolicy::Ignored,
                             QSizePolicy::Preferred); // a long text never widens the window
    lblStatus->setContentsMargins(6, 0, 6, 0);
    ui->staBar->addWidget(lblStatus, 1);
    prbProgress->setObjectName("prbProgress");
    prbProgress->setAccessibleName("Progress");
    prbProgress->setMaximumWidth(240);
    prbProgress->hide();
    ui->staBar->addPermanentWidget(prbProgress);

    // The picture and the lists share what a larger window has to give.
    ui->splMain->setStretchFactor(0, 1);
    ui->splMain->setStretchFactor(1, 1);
    ConnectControls();
    ConnectMenus();
    ShowSide(true);
    FitToScreen(*this);
}

frmHangar::~frmHangar() = default;

void frmHangar::Run(const std::function<void(Program&)>& command) {
    if (program)
        command(*program);
}

void frmHangar::ConnectControls() {
    connect(ui->cboPackageCategory, &QComboBox::activated, this,
            [this](int index) { Run([=](Program& to) { to.ChooseCategory(index); }); });
    connect(ui->cboPackageName, &QComboBox::activated, this,
            [this](int index) { Run([=](Program& to) { to.ChoosePackage(index); }); });
    connect(ui->txtPackageName, &QLineEdit::textEdited, this,
            [this](const QString& text) { Run([&](Program& to) { to.SetPackageName(FromQt(text)); }); });
    const auto press = [this](QPushButton* button, void (Program::*command)()) {
        connect(button, &QPushButton::clicked, this,
                [this, command] { Run([=](Program& to) { (to.*command)(); }); });
    };
    press(ui->cmdGoToHangar, &Program::GoToHangar);
    press(ui->cmdGoToStaging, &Program::GoToStaging);
    press(ui->cmdRefresh, &Program::Refresh);
    press(ui->cmdFirstPackage, &Program::SetFirstPackage);
    connect(new QShortcut(QKeySequence::Refresh, this), &QShortcut::activated, ui->cmdRefresh,
            &QPushButton::click);

    connect(ui->tabComponents, &ComponentLists::OpenRequested, this, [this](int group, int position) {
        Run([=](Program& to) { to.OpenComponent(group, position); });
    });
    connect(ui->tabComponents, &ComponentLists::DeleteRequested, this,
            [this](int group, const std::vector<int>& positions) {
                Run([&](Program& to) { to.DeleteComponents(group, positions); });
            });
    connect(fileList.get(), &frmFileList::LineChosen, this,
            [this](const QString& line) { Run([&](Program& to) { to.ChooseFileListLine(FromQt(line)); }); });
}

void frmHangar::ConnectMenus() {
    connect(menus, &Menus::CommandChosen, this,
            [this](Side processor, int code) { Run([=](Program& to) { to.RunCommand(processor, code); }); });
    connect(menus, &Menus::EntryChosen, this, &frmHangar::ChooseEntry);
    connect(ui->Toolbar1, &Toolbar::KeyPressed, this,
            [this](const QString& key) { Run([&](Program& to) { to.PressToolbarKey(FromQt(key)); }); });
}

void frmHangar::ChooseEntry(const QString& name) {
    if (name == "mnuLocations")
        Run([](Program& to) { to.ChangeLocations(); });
    else if (name == "mnuExit")
        close();
    else if (name == "mnuReadMe")
        Run([](Program& to) { to.OpenReadMe(); });
    else if (name == "mnuAbout")
        frmAbout(this).exec();
}

void frmHangar::ShowView(const MainView& view, const LoadedPackage& package) {
    setWindowTitle(ToQt(view.caption));
    ui->lblHeader->setText(ToQt(view.header));
    ShowSide(view.HangarSideShown);
    Fill(ui->cboPackageCategory, view.categories, view.categoryIndex);
    Fill(ui->cboPackageName, view.packages, view.packageIndex);
    SetText(ui->txtPackageName, ToQt(view.packageName));
    ui->lblPackageSize->setText(ToQt(view.sizeText));
    lblStatus->setText(ToQt(view.status));
    if (view.listRevision != shownRevision) {
        shownRevision = view.listRevision;
        ShowPackage(package);
    }
}

void frmHangar::ShowPackage(const LoadedPackage& package) {
    SetText(ui->txtAircraftName, ToQt(package.aircraftTitle));
    SetText(ui->txtPanelAlias, ToQt(package.panelText));
    SetText(ui->txtSoundAlias, ToQt(package.soundText));
    ui->tabComponents->ShowFiles(package);
    if (package.pictures.empty())
        return ui->picPackage->ShowNoPicture();
    const std::string& first = package.pictures.front();
    ui->picPackage->ShowPicture(ToQt(files.HostPath(first)), ToQt(LastPathComponent(first)));
}

void frmHangar::ShowSide(bool isHangarSide) {
    const Side side = isHangarSide ? Side::Hangar : Side::Staging;
    menus->ShowSide(side);
    ui->Toolbar1->ShowSide(side);
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
    ui->cmdFirstPackage->setVisible(isHangarSide);
    ui->cmdPackageNames->setVisible(isHangarSide);
    ui->lblPackageName->setBuddy(isHangarSide ? counterparts[1].first : counterparts[1].second);
}

void frmHangar::ShowStatus(const std::string& text) {
    lblStatus->setText(ToQt(text));
}

void frmHangar::ShowProgress(int minimum, int maximum) {
    prbProgress->setRange(minimum, maximum);
    prbProgress->setValue(minimum);
    prbProgress->show();
    lastPaint.invalidate();
    SetProgress(minimum);
}

void frmHangar::SetProgress(int value) {
    prbProgress->setValue(value);
    if (lastPaint.isValid() && lastPaint.elapsed() < PaintInterval)
        return;
    // Paints; keys and clicks wait until the command has ended.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    lastPaint.start();
}

void frmHangar::HideProgress() {
    prbProgress->hide();
}

void frmHangar::ShowFileList(const std::string& caption, const std::vector<std::string>& lines) {
    fileList->ShowLines(ToQt(caption), lines);
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

void frmHangar::EndProgram() {
    hasEnded = true;
    fileList->close();
    hide();
    emit Ended();
}

void frmHangar::closeEvent(QCloseEvent* event) {
    // Shutting down calls EndProgram. In the middle of a command the window stays.
    Run([](Program& to) { to.Shutdown(); });
    event->setAccepted(hasEnded || !program);
}

void frmHangar::dragEnterEvent(QDragEnterEvent* event) {
    if (!DraggedArchive(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void frmHangar::dropEvent(QDropEvent* event) {
    const auto path = files.PathFromHost(FromQt(DraggedArchive(event->mimeData())));
    if (!path)
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // The program that the file was dragged from waits until this returns.
    QMetaObject::invokeMethod(
        this, [this, path] { Run([&](Program& to) { to.ProcessArchive(*path); }); }, Qt::QueuedConnection);
}

} // namespace korvadex
