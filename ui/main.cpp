#include "app/own_files.h"
#include "app/program.h"
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
#include <QPalette>

namespace korvadex {

namespace {

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

// In dark colours some desktops leave what stands in an empty field black.
void MakePlaceholdersReadable() {
    QColor faint = QApplication::palette().color(QPalette::Text);
    faint.setAlpha(128);
    QPalette palette; // the rest stays the desktop's
    palette.setColor(QPalette::PlaceholderText, faint);
    QApplication::setPalette(palette);
}

int RunProgram() {
    const auto files = MakeHostFileSystem();
    const auto appDir = AppDirectory(*files, RunningExecutable());
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
    korvadex::MakePlaceholdersReadable();
    try {
        return korvadex::RunProgram();
    } catch (const std::exception& trouble) {
        korvadex::TellTrouble(trouble);
        return 1;
    }
}
