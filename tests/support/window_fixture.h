// The main window with the program behind it, on a drive of its own, and a person who uses it.
#pragma once

#include "app/program.h"
#include "tests/support/command_fixture.h"
#include "tests/support/modal_user.h"
#include "ui/dialogs.h"
#include "ui/frmHangar.h"
#include "ui/picture_files.h"

#include <QAccessible>
#include <QtTest>
#include <QtWidgets>

namespace korvadex::test {

// The bytes of a picture in one colour.
inline std::string PictureBytes(QSize size, const char* format = "JPG") {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, format, 90);
    return bytes.toStdString();
}

class WindowTest : public testing::Test {
  protected:
    WindowTest() {
        window.SetProgram(&program);
        dialogs.SetMainWindow(&window);
    }
    ~WindowTest() override { window.close(); }

    // Starts with a settings file that names Staging, Hangar and FS; what is missing there is made.
    void Start(const std::string& firstPackage = "") {
        drive.Fill("", "Staging\\, Hangar\\, FS\\aircraft\\, FS\\gauges\\");
        drive.Put("App\\kx.ini", "ALTLOCATION0=Main\r\nALTSTAGINGDIR0=" + drive.At("Staging\\") + "\r\nALTHANGARDIR0=" +
                                     drive.At("Hangar\\") + "\r\nALTMSFSDIR0=" + drive.At("FS\\") +
                                     "\r\nALTFIRSTPACKAGE0=" + firstPackage + "\r\n");
        ASSERT_TRUE(program.Start());
        window.show();
        Activate();
    }
    // A message box may have been the last.
    void Activate() {
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        Activate();
        QWidget* focus = window.focusWidget();
        QTest::keyClick(focus ? focus : &window, key, modifiers);
        user.Finish();
    }
    void PressToolbar(const char* key) {
        auto& toolbar = Control<QToolBar>(window, "Toolbar1");
        QTest::mouseClick(toolbar.widgetForAction(&Control<QAction>(window, key)), Qt::LeftButton);
        user.Finish();
    }
    void ChooseEntry(const char* entry) {
        Control<QAction>(window, entry).trigger();
        user.Finish();
    }
    // The controls in the order of the key Tab, from this one on. Each has to say what it is.
    static QStringList TabOrder(QWidget& first) {
        QStringList order;
        for (QWidget* widget = &first; order.isEmpty() || widget != &first; widget = widget->nextInFocusChain()) {
            if (!(widget->focusPolicy() & Qt::TabFocus) || widget->objectName().startsWith("qt_"))
                continue;
            EXPECT_FALSE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty())
                << widget->objectName().toStdString();
            order.append(widget->objectName());
        }
        return order;
    }
    std::string Text(const char* label) { return Control<QLabel>(window, label).text().toStdString(); }

    QUrl Url(const std::string& relative) {
        return QUrl::fromLocalFile(QString::fromStdString(drive.Files().HostPath(drive.At(relative))));
    }
    // True when it was taken.
    bool Drop(QWidget& on, const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&on, &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent drop({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&on, &drop);
        QCoreApplication::processEvents();
        user.Finish();
        return drop.isAccepted();
    }

    TemporaryDrive drive;
    RecordingLauncher launcher;
    Dialogs dialogs{drive.Files()};
    QtPictureConverter converter{drive.Files()};
    frmHangar window{drive.Files()};
    Program program{drive.Files(), launcher, dialogs, dialogs, converter, window, drive.At("App\\"), "the executable"};
    ModalUser user;
};

} // namespace korvadex::test
