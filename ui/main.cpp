#include "app/own_files.h"
#include "app/program.h"
#include "platform/windows_path.h"
#include "ui/dialogs.h"
#include "ui/end_signals.h"
#include "ui/frmHangar.h"
#include "ui/frmSplash.h"
#include "ui/icons.h"
#include "ui/message_box.h"
#include "ui/picture_files.h"
#include "ui/qt_text.h"
#include "ui/single_instance.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include <stdexcept>

namespace korvadex {

namespace {

// $KORVADEX_HOME, as a path of the host or with a drive letter.
Result<std::string> NamedDirectory(const FileSystem& files, const QString& home) {
    const auto host = FromQt(QDir(home).absolutePath());
    const auto path = IsDrivePath(FromQt(home)) ? FromQt(home) : files.PathFromHost(host);
    if (!path)
        return Status{FileFault::BadName, host, 0};
    if (!files.IsDirectory(*path))
        throw std::runtime_error("KORVADEX_HOME names " + FromQt(home) + ", which is not a directory.");
    return AddBackslash(*path);
}

// The directory of kx.ini, ending in a backslash.
std::string AppDirectory(FileSystem& files) {
    const QString home = qEnvironmentVariable("KORVADEX_HOME");
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/korvadex";
    const auto directory =
        home.isEmpty() ? SettingsDirectory(files, RunningExecutable(), FromQt(data)) : NamedDirectory(files, home);
    if (directory)
        return *directory;
    const auto [fault, path, nativeCode] = directory.status();
    throw std::runtime_error("Korvadex keeps its settings in " + path +
                             (fault == FileFault::BadName
                                  ? ", but none of the drives that it knows leads there"
                                  : ", which could not be made (" + DescribeFault(directory.status()) + ")") +
                             ".  Set KORVADEX_HOME to a directory on one of the drives.");
}

void TellTrouble(const std::exception& trouble) {
    const auto text = "Korvadex cannot start.\n\n" + QString::fromUtf8(trouble.what());
    MessageBox(text, MessageButtons::Ok, MessageIcon::Critical, {}, nullptr).Ask();
}

// Another start was made: this one comes to the front, with what it asks at the moment.
void ComeToFront(frmHangar& hangar) {
    if (hangar.isVisible())
        hangar.ComeToFront();
    if (QWidget* dialog = QApplication::activeModalWidget()) {
        dialog->raise();
        dialog->activateWindow();
    }
}

int RunProgram() {
    const auto files = MakeHostFileSystem();
    const auto appDir = AppDirectory(*files);
    SingleInstance instance(ToQt(files->HostPath(appDir)));
    const auto place = instance.Claim();
    if (place == SingleInstance::Outcome::Busy)
        MessageBox("Korvadex is running already and busy at the moment.  Please wait until its command has ended.",
                   MessageButtons::Ok, MessageIcon::Information, {}, nullptr)
            .Ask();
    if (place != SingleInstance::Outcome::First)
        return 0;

    const auto launcher = MakeHostLauncher(*files);
    Dialogs dialogs(*files);
    frmHangar hangar(*files);
    dialogs.SetMainWindow(&hangar);
    QtPictureConverter converter(*files);
    Program program(*files, *launcher, dialogs, dialogs, converter, hangar, appDir, RunningExecutable());
    hangar.SetProgram(&program);
    QObject::connect(&hangar, &frmHangar::Ended, [&] {
        instance.GiveUp();
        QCoreApplication::exit(0);
    });
    QObject::connect(&instance, &SingleInstance::Asked, [&] { ComeToFront(hangar); });
    OnEndSignal(&hangar, [&] { program.EndSession(); });
    QObject::connect(
        qApp, &QGuiApplication::commitDataRequest, &hangar, [&] { program.SaveForSessionEnd(); }, Qt::DirectConnection);

    frmSplash splash([&] {
        try {
            if (program.Start())
                hangar.show();
        } catch (const std::exception& trouble) {
            TellTrouble(trouble);
            QCoreApplication::exit(1);
        }
    });
    splash.show();
    return QCoreApplication::exec();
}

} // namespace

} // namespace korvadex

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("Korvadex");
    QApplication::setApplicationVersion(KORVADEX_VERSION);
    QApplication::setDesktopFileName("korvadex");
    QApplication::setWindowIcon(korvadex::NamedIcon("korvadex"));
    // Between a question at start-up and the main window there is no window; the program itself says when it ends.
    QApplication::setQuitOnLastWindowClosed(false);
    try {
        return korvadex::RunProgram();
    } catch (const std::exception& trouble) {
        korvadex::TellTrouble(trouble);
        return 1;
    }
}
