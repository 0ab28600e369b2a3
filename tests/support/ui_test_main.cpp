// The main routine of the tests that drive real windows, off the screen unless the caller chose a screen.
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setApplicationName("Korvadex");
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
