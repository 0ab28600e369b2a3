// The main routine of the tests that drive real windows, off the screen unless the caller chose a screen.
#include <QApplication>
#include <QFont>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setApplicationName("Korvadex");
    QApplication::setQuitOnLastWindowClosed(false);
#ifdef Q_OS_WIN
    if (QGuiApplication::platformName() == "offscreen") // knows nothing of the system's font for windows
        QApplication::setFont(QFont("MS Shell Dlg 2", 8));
#endif
    return RUN_ALL_TESTS();
}
