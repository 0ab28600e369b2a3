// The picture area of the main window: its real widgets with the program behind them, and real picture files.
#include "platform/windows_path.h"
#include "tests/support/command_fixture.h"
#include "tests/support/modal_user.h"
#include "tests/support/zip_builder.h"
#include "ui/dialogs.h"
#include "ui/frmHangar.h"
#include "ui/picture_box.h"
#include "ui/picture_files.h"

#include <QtTest>
#include <QtWidgets>

namespace korvadex::test {

namespace {

std::string Encoded(const QImage& picture, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, format, 90);
    return bytes.toStdString();
}
std::string Plain(QSize size, const char* format, QColor colour = Qt::red) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(colour);
    return Encoded(picture, format);
}

// One package with the pictures a, b and c, shown in the window.
class PictureAreaTest : public testing::Test {
  protected:
    PictureAreaTest() {
        for (const char* name : {"a.jpg", "b.jpg", "c.jpg"})
            drive.Put("Hangar\\Jets\\Lear\\Images\\" + std::string(name), Plain({400, 300}, "JPG"));
        for (const char* directory : {"FS\\aircraft", "FS\\gauges", "Staging"})
            drive.MakeDirectory(directory);
        drive.Put("App\\kx.ini", "ALTLOCATION0=Main\r\nALTSTAGINGDIR0=" + drive.At("Staging\\") +
                                     "\r\nALTHANGARDIR0=" + drive.At("Hangar\\") + "\r\nALTMSFSDIR0=" +
                                     drive.At("FS\\") + "\r\nALTFIRSTPACKAGE0=Jets\\Lear\r\n");
        window.SetProgram(&program);
        dialogs.SetMainWindow(&window);
        EXPECT_TRUE(program.Start());
        window.show();
        Activate();
    }
    ~PictureAreaTest() override { window.close(); }

    void Activate() {
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    std::string Text(const char* label) { return Control<QLabel>(window, label).text().toStdString(); }
    bool IsEnabled(const char* button) { return Control<QPushButton>(window, button).isEnabled(); }
    QUrl Url(const std::string& relative) {
        return QUrl::fromLocalFile(QString::fromStdString(drive.Files().HostPath(drive.At(relative))));
    }
    // On the picture; true when it was taken.
    bool Drop(const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&area, &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent drop({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&area, &drop);
        QCoreApplication::processEvents();
        return drop.isAccepted();
    }

    TemporaryDrive drive;
    RecordingLauncher launcher;
    Dialogs dialogs{drive.Files()};
    frmHangar window{drive.Files()};
    Program program{drive.Files(), launcher, dialogs, dialogs, window, drive.At("App\\"), "the executable"};
    ModalUser user;
    PictureBox& area = Control<PictureBox>(window, "picPackage");
    PictureView& shown = Control<PictureView>(window, "imgImageBox");
};

} // namespace

TEST_F(PictureAreaTest, ButtonsKeysAndClicksGoThroughThePictures) {
    const auto at = [&](const char* name, const char* count) {
        EXPECT_EQ(Text("lblImageName"), name);
        EXPECT_EQ(Text("lblImageCount"), count);
    };
    at("a.jpg", "1 of 3");
    Click(window, "cmdImgNext");
    at("b.jpg", "2 of 3");
    Click(window, "imgImageBox");
    at("c.jpg", "3 of 3");
    ASSERT_TRUE(shown.hasFocus());
    QTest::keyClick(&shown, Qt::Key_Right);
    at("a.jpg", "1 of 3");
    Click(window, "cmdImgPrevious");
    at("c.jpg", "3 of 3");
    user.ExpectMessage("Done.*", "OK");
    Click(window, "cmdFirstImage");
    user.Finish();
    at("(c).jpg", "1 of 3");
    user.ExpectMessage("Delete (c).jpg?", "Yes");
    QTest::keyClick(&shown, Qt::Key_Delete);
    at("a.jpg", "1 of 2");
    user.ExpectMessage("Delete a.jpg?", "Yes");
    Click(window, "cmdDeleteImage");
    user.Finish();
    at("b.jpg", "");
    EXPECT_FALSE(IsEnabled("cmdImgNext") || IsEnabled("cmdImgPrevious"));
    EXPECT_TRUE(IsEnabled("cmdFirstImage") && IsEnabled("cmdDeleteImage"));
    Click(window, "imgImageBox");
    user.ExpectMessage("Delete b.jpg?", "Yes");
    Click(window, "cmdDeleteImage");
    user.Finish();
    at("No images currently available for viewing.", "");
    EXPECT_FALSE(IsEnabled("cmdFirstImage") || IsEnabled("cmdDeleteImage"));
    EXPECT_FALSE(drive.Has("Hangar\\Jets\\Lear\\Images"));
}

TEST_F(PictureAreaTest, PicturesComeInByDropPasteAndMenu) {
    drive.Put("from\\new.PNG", Plain({30, 20}, "PNG"));
    drive.Put("from\\text.jpg", "no picture");
    drive.Put("from\\one.zip", ZipBuilder().Add("read.txt", "x").Bytes());
    user.ExpectMessage("This picture was not imported:*", "OK");
    EXPECT_TRUE(Drop({Url("from\\new.PNG"), Url("from\\text.jpg"), Url("from\\read.txt")}));
    user.Finish();
    EXPECT_EQ(Text("lblImageName"), "new.jpg");
    EXPECT_FALSE(Drop({Url("from\\read.txt")}));

    auto* clipboard = QApplication::clipboard();
    const auto paste = [&](QMimeData* content) {
        clipboard->setMimeData(content);
        Activate();
        shown.setFocus();
        QTest::keyClick(&shown, Qt::Key_V, Qt::ControlModifier);
        user.Finish();
    };
    QImage clear(20, 10, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    auto* picture = new QMimeData;
    picture->setImageData(clear);
    paste(picture);
    EXPECT_EQ(Text("lblImageName"), "Lear.jpg");
    EXPECT_EQ(shown.Picture().image.pixelColor(5, 5), QColor(Qt::white));
    auto* file = new QMimeData;
    file->setUrls({Url("from\\new.PNG")});
    paste(file);
    EXPECT_EQ(Text("lblImageName"), "new(1).jpg");
    auto* text = new QMimeData;
    text->setText("words");
    user.ExpectMessage("There is no picture on the clipboard.*", "OK");
    paste(text);
    user.ExpectMessage("There is no picture on the clipboard.*", "OK");
    Control<QAction>(window, "mnuImportImageClipboard").trigger();
    user.Finish();

    const auto choose = [&](const QString& name) {
        user.Expect("pictureFileDialog", [&, name](QWidget& dialog) {
            auto& chooser = dynamic_cast<QFileDialog&>(dialog);
            chooser.setDirectory(Url("from").toLocalFile());
            Type(dialog, "fileNameEdit", name);
            PressKey(dialog, Qt::Key_Return);
        });
        Control<QAction>(window, "mnuImportImage").trigger();
        user.Finish();
    };
    choose("new.PNG");
    EXPECT_EQ(Text("lblImageName"), "new(2).jpg");

    // An archive is for the window, wherever it is dropped.
    EXPECT_TRUE(Drop({Url("from\\one.zip"), Url("from\\new.PNG")}));
    EXPECT_EQ(Text("lblHeader"), StagingHeader);
    EXPECT_TRUE(drive.Has("Staging\\ZIP_one.zip\\read.txt"));
}

TEST_F(PictureAreaTest, WhatCannotBeShownIsNamedWithTheReason) {
    std::string large = Plain({8, 8}, "JPG"); // of which the header says 20,000 x 20,000
    large.replace(large.find("\xff\xc0") + 5, 4, "\x4e\x20\x4e\x20");
    const std::string png = Plain({300, 300}, "PNG", Qt::blue);
    const struct {
        const char* name;
        std::string bytes;
        const char* reason; // "" when it is shown
    } rows[] = {
        {"cut", png.substr(0, 60), "the file is damaged."},
        {"huge", large, "the picture is too large (20000 x 20000 pixels)."},
        {"panorama", Plain({8000, 6000}, "PNG"), ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        drive.Put("Hangar\\Jets\\Lear\\Images\\(" + std::string(row.name) + ").jpg", row.bytes);
        program.ChoosePackage(0);
        const auto name = Text("lblImageName");
        ASSERT_TRUE(name.starts_with("(")) << name;
        const QString reason = row.reason;
        EXPECT_EQ(shown.Picture().image.isNull(), !reason.isEmpty());
        EXPECT_TRUE(reason.isEmpty() ? shown.Trouble().isEmpty() : shown.Trouble().contains(reason))
            << shown.Trouble().toStdString();
        window.grab();
        static_cast<void>(drive.Files().Delete(drive.At("Hangar\\Jets\\Lear\\Images\\" + name)));
    }
    drive.Put("Hangar\\Jets\\Lear\\Images\\(a).jpg", "x");
    program.ChoosePackage(0);
    static_cast<void>(drive.Files().Delete(drive.At("Hangar\\Jets\\Lear\\Images\\(a).jpg")));
    Click(window, "cmdImgNext");
    Click(window, "cmdImgPrevious");
    EXPECT_TRUE(shown.Trouble().startsWith("This picture cannot be shown: the file is no longer there."));
}

} // namespace korvadex::test
