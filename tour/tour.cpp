#include "tour/tour.h"

#include "app/program.h"
#include "demo/example.h"
#include "platform/text_file.h"
#include "tests/support/hands.h"
#include "tests/support/host_drive.h"
#include "tour/camera.h"
#include "tour/inspector.h"
#include "ui/dialogs.h"
#include "ui/frmHangar.h"
#include "ui/frmSplash.h"
#include "ui/picture_files.h"

#include <QApplication>
#include <QDialog>
#include <QKeySequence>
#include <QLineEdit>
#include <QMessageBox>
#include <QtTest>

#include <chrono>
#include <cstdlib>

namespace korvadex::tour {

namespace {

// A window is at rest when it has looked the same so many times, each a moment after the other.
constexpr int EqualLooks = 8;

// Sizes in twips, as the program keeps them: the main window as users find it on a small screen, the list beside it.
constexpr const char* WindowLines =
    "MTOP=450\r\nMLEFT=2400\r\nMHEIGHT=10800\r\nMWIDTH=15600\r\nLTOP=1200\r\nLLEFT=9000\r\nLHEIGHT=6000\r\n"
    "LWIDTH=5400\r\n";

// No other program is to appear.
class NoLauncher : public Launcher {
    bool OpenInEditor(const std::string&) override { return true; }
    bool OpenInFileManager(const std::string&, WindowState) override { return true; }
    int OpenDocument(const std::string&) override { return 33; }
    bool StartProgram(const std::string&) override { return true; }
    std::string RunSimulator(const std::string&) override { return {}; }
};

const std::string SettingsPath = std::string(demo::AppDirectory) + "kx.ini";

void Require(const Status& status) {
    if (!status)
        throw std::runtime_error(status.path + ": " + DescribeFault(status.fault));
}

QWidget* FindWindow(const QString& name) {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal->objectName() == name && modal->isVisible() ? modal : nullptr;
    for (QWidget* shown : ShownWindows())
        if (shown->objectName() == name)
            return shown;
    return nullptr;
}

} // namespace

struct Tour::Example {
    test::HostDrive drive;
    std::string settings;

    explicit Example(const std::string& ground)
        : drive(ground.empty() ? test::MakeHostDrive() : test::HostDrive{{}, ground, MakeHostFileSystem()}) {
        if (ground.empty())
            demo::MakeExample(*drive.files, drive.root);
        const auto bytes = ReadBytes(*drive.files, drive.root + SettingsPath);
        Require(bytes.status());
        settings = *bytes + WindowLines;
    }
    ~Example() { Remove(); }
    void Remove() const {
        if (!drive.hostRoot.empty())
            test::RemoveHostDrive(drive.hostRoot);
    }
    Example(const Example&) = delete;
    Example& operator=(const Example&) = delete;
};

struct Tour::Run {
    explicit Run(const test::HostDrive& drive)
        : dialogs(*drive.files), converter(*drive.files), hangar(*drive.files),
          program(*drive.files, launcher, dialogs, dialogs, converter, hangar, drive.root + demo::AppDirectory, "") {
        dialogs.SetMainWindow(&hangar);
        hangar.SetProgram(&program);
    }
    ~Run() { hangar.close(); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    NoLauncher launcher;
    Dialogs dialogs;
    QtPictureConverter converter;
    frmHangar hangar;
    Program program;
    std::unique_ptr<frmSplash> splash;
};

Tour::Tour(const QDir& directory, const std::string& drive, bool inspects)
    : pictures(directory), ground(drive), isInspecting(inspects) {}
Tour::~Tour() = default;

void Tour::Walk(const Step& newStep) {
    step = &newStep;
    person.See([&] {
        if (!example)
            example = std::make_unique<Example>(ground);
        Remove(SettingsPath);
        Put(SettingsPath, example->settings);
        run = std::make_unique<Run>(example->drive);
    });
    if (step->kind != Kind::Starts) {
        Start();
        AwaitHangar();
    }
    step->walk(*this);
    Leave();
    if (step->kind != Kind::Looks)
        person.See([&] { example.reset(); });
}

// Closes one window after the other, what asks is answered with No, and ends the program.
void Tour::Leave() {
    person.Until("the end of the step", [&] {
        for (QWidget* shown : ShownWindows())
            if (shown->windowType() == Qt::Popup)
                shown->close();
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog)
            dialog->done(0);
        return !dialog;
    });
    person.See([&] { run.reset(); });
}

std::string Tour::At(const std::string& relative) const {
    return example->drive.root + relative;
}

void Tour::Put(const std::string& relative, const std::string& bytes) {
    FileSystem& files = *example->drive.files;
    auto file = files.CreateNew(At(relative));
    Require(file.status());
    Require((*file)->Write(std::as_bytes(std::span(bytes))));
    Require((*file)->Close(false));
    // The same in every run: messages name it.
    Require(files.SetTime(At(relative), FileTime(std::chrono::sys_days(std::chrono::year(2001) / 5 / 18))));
}

void Tour::MakeDirectory(const std::string& relative) {
    Require(example->drive.files->CreateDirectory(At(relative)));
}

std::string Tour::HostPath(const std::string& relative) const {
    return example->drive.files->HostPath(At(relative));
}

void Tour::Remove(const std::string& relative) {
    if (const auto status = example->drive.files->Delete(At(relative)); status.fault != FileFault::NotFound)
        Require(status);
}

void Tour::Start() {
    person.Do([&] {
        if (run->program.Start())
            run->hangar.show();
    });
}

void Tour::StartWithSplash() {
    person.Do([&] {
        run->splash = std::make_unique<frmSplash>([&] {
            if (run->program.Start())
                run->hangar.show();
        });
        run->splash->show();
    });
}

void Tour::Await(const char* name) {
    person.Until(QString("the window ") + name, [&] {
        front = FindWindow(name);
        if (!front || front->isActiveWindow() || front->windowType() == Qt::SplashScreen)
            return front != nullptr;
        front->activateWindow();
        return false;
    });
}

void Tour::AwaitMessage(const QString& text) {
    person.Until("the message \"" + text + '"', [&] {
        const auto* message = qobject_cast<QMessageBox*>(FindWindow("messageBox"));
        return message && message->text().startsWith(text);
    });
    Await("messageBox");
}

QWidget& Tour::Front() const {
    if (!front)
        throw std::runtime_error("the window is closed");
    return *front;
}

void Tour::Press(const char* key) {
    person.Do([this, pressed = QKeySequence(key)[0]] {
        QWidget* menu = QApplication::activePopupWidget();
        QWidget* focus = menu ? menu : Front().focusWidget();
        QTest::keyClick(focus ? focus : &Front(), pressed.key(), pressed.keyboardModifiers());
    });
}

void Tour::Write(const QString& text) {
    person.Do([=, this] {
        if (QWidget* focus = Front().focusWidget())
            QTest::keyClicks(focus, text);
    });
}

void Tour::Use(const std::function<void(QWidget&)>& hands) {
    person.Do([=, this] { hands(Front()); });
}

void Tour::Click(const char* control) {
    Use([=](QWidget& on) { test::Click(on, control); });
}

void Tour::Answer(const QString& button) {
    Use([=](QWidget& on) { test::ClickButton(on, button); });
}

void Tour::OpenMenu(const char* key) {
    Press(key);
    person.Until(QString("the menu of ") + key, [] { return QApplication::activePopupWidget() != nullptr; });
}

void Tour::Choose(const char* menu, const char* entry) {
    OpenMenu(menu);
    Press(entry);
}

void Tour::ProcessZip(const char* archive) {
    Press("Ctrl+O");
    Await("zipFileDialog");
    // Pasted, not typed: the completion of names would join in.
    Use([=](QWidget& dialog) { test::Control<QLineEdit>(dialog, "fileNameEdit").setText(archive); });
    Press("Return");
}

void Tour::GoTo(const char* package) {
    Choose("Alt+T", "L");
    Await("frmFileList");
    Press("Ctrl+F");
    Write(package);
    Press("Return");
    Click("cmdCancel");
    AwaitHangar();
}

void Tour::Photograph(const QSize& part, const QString& name) {
    Take(
        [this] {
            QList<QWidget*> shown{&Front()};
            for (QWidget* other : ShownWindows())
                if (other->windowType() == Qt::Popup)
                    shown.append(other);
            return shown;
        },
        part, name);
}

void Tour::PhotographAll(const QString& name) {
    Take(ShownWindows, {}, name);
}

void Tour::Take(const std::function<QList<QWidget*>()>& windows, const QSize& part, const QString& name) {
    QImage picture;
    int equal = 0;
    person.Until("rest in the window", [&] {
        const auto shown = windows();
        const QImage now = PictureOf(shown);
        equal =
            std::ranges::all_of(shown, [](QWidget* one) { return IsLoaded(*one); }) && now == picture ? equal + 1 : 0;
        picture = now;
        return equal == EqualLooks;
    });
    if (part.isValid())
        picture = picture.copy(QRect(QPoint(), part * picture.devicePixelRatio()));
    const QString path = pictures.filePath((name.isEmpty() ? step->name : name) + ".png");
    if (!picture.save(path))
        throw std::runtime_error("cannot write " + path.toStdString());
    ++pictureCount;
    if (isInspecting)
        Inspect(name.isEmpty() ? step->name : name);
}

void Tour::Inspect(const QString& name) {
    person.See([&] {
        if (!front || QApplication::activePopupWidget())
            return;
        const auto faults = FaultsOf(*front);
        for (const QString& fault : faults)
            std::fprintf(stderr, "tour: %s: %s\n", qPrintable(name), qPrintable(fault));
        faultCount += int(faults.size());
    });
}

void Tour::Abandon() {
    person.See([&] {
        PictureOf(ShownWindows()).save(pictures.filePath(QString(step->name) + "-failed.png"));
        if (example)
            example->Remove();
    });
    std::_Exit(1);
}

} // namespace korvadex::tour
