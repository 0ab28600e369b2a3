// The picture area of the main window: its real widgets with the program behind them, and real picture files.
#include "tests/support/window_fixture.h"
#include "tests/support/zip_builder.h"
#include "ui/picture_box.h"

namespace korvadex::test {

namespace {

// One package with the pictures a, b and c, shown in the window.
class PictureAreaTest : public WindowTest {
  protected:
    PictureAreaTest() {
        for (const char* name : {"a.jpg", "b.jpg", "c.jpg"})
            drive.Put(Images + name, PictureBytes({400, 300}));
        Start("Jets\\Lear");
    }
    bool IsEnabled(const char* button) { return Control<QPushButton>(window, button).isEnabled(); }

    const std::string Images = "Hangar\\Jets\\Lear\\Images\\";
    PictureBox& area = Control<PictureBox>(window, "picPackage");
    PictureView& shown = Control<PictureView>(window, "imgImageBox");
};

} // namespace

TEST_F(PictureAreaTest, ButtonsKeysAndClicksGoThroughThePictures) {
    const auto at = [&](const char* name, const char* count) {
        user.Finish();
        EXPECT_EQ(Text("lblImageName"), name);
        EXPECT_EQ(Text("lblImageCount"), count);
    };
    at("a.jpg", "1 of 3");
    Click(window, "cmdImgNext");
    Click(window, "imgImageBox");
    at("c.jpg", "3 of 3");
    ASSERT_TRUE(shown.hasFocus());
    QTest::keyClick(&shown, Qt::Key_Right);
    at("a.jpg", "1 of 3");
    Click(window, "cmdImgPrevious");
    user.ExpectMessage("Done.*", "OK");
    Click(window, "cmdFirstImage");
    at("(c).jpg", "1 of 3");
    user.ExpectMessage("Delete (c).jpg?", "Yes");
    QTest::keyClick(&shown, Qt::Key_Delete);
    at("a.jpg", "1 of 2");
    user.ExpectMessage("Delete a.jpg?", "Yes");
    Click(window, "cmdDeleteImage");
    at("b.jpg", "");
    EXPECT_FALSE(IsEnabled("cmdImgNext") || IsEnabled("cmdImgPrevious"));
    EXPECT_TRUE(IsEnabled("cmdFirstImage") && IsEnabled("cmdDeleteImage"));
    user.ExpectMessage("Delete b.jpg?", "Yes");
    Click(window, "cmdDeleteImage");
    at("No images currently available for viewing.", "");
    EXPECT_FALSE(IsEnabled("cmdFirstImage") || IsEnabled("cmdDeleteImage"));
}

TEST_F(PictureAreaTest, APictureThatIsSelectedInAListIsShownAndCannotBeDeletedHere) {
    const std::string texture = "Hangar\\Jets\\Lear\\Texture\\";
    drive.Put(texture + "broken.bmp", "no picture");
    drive.Put(texture + "skin.bmp", PictureBytes({40, 30}, "BMP"));
    drive.Put(texture + "skin.r8", "x");
    drive.Put("Hangar\\Jets\\Cub\\x.air", "x");
    program.Refresh();
    Control<QTabWidget>(window, "tabComponents").setCurrentIndex(Texture);
    auto& list = Control<QListWidget>(window, "lstComponents_5");
    for (const auto& [row, name] : {std::pair(0, "a.jpg"), {1, "skin.bmp"}, {2, "a.jpg"}, {1, "skin.bmp"}}) {
        list.setCurrentRow(row);
        EXPECT_EQ(Text("lblImageName"), name);
        EXPECT_EQ(IsEnabled("cmdDeleteImage") && IsEnabled("cmdFirstImage"), row != 1);
    }
    QTest::keyClick(&shown, Qt::Key_Delete); // not what is seen, nor what was
    user.Finish();
    EXPECT_EQ(Text("lblImageName"), "a.jpg");
    EXPECT_TRUE(list.selectedItems().isEmpty() && IsEnabled("cmdImgNext"));
    list.setCurrentRow(1);
    Control<QTabWidget>(window, "tabComponents").setCurrentIndex(korvadex::Images);
    EXPECT_EQ(Text("lblImageName"), "a.jpg");
    Control<QTabWidget>(window, "tabComponents").setCurrentIndex(Texture);
    EXPECT_EQ(Text("lblImageName"), "skin.bmp");
    program.ShowPackage({"Jets", "Cub"});
    EXPECT_EQ(Text("lblImageName"), "No images currently available for viewing.");
    drive.Put("Hangar\\Jets\\Lear\\KX_Compression.txt", "1 Meg have been compressed.\r\n");
    program.ShowPackage({"Jets", "Lear"});
    Control<QTabWidget>(window, "tabComponents").setCurrentIndex(Texture);
    list.setCurrentRow(1);
    EXPECT_EQ(Text("lblImageName"), "a.jpg");
}

TEST_F(PictureAreaTest, PicturesComeInByDropPasteAndMenu) {
    drive.Put("from\\new.PNG", PictureBytes({30, 20}, "PNG"));
    drive.Put("from\\text.jpg", "no picture");
    for (const char* name : {"one.zip", "TWO.EXE"}) // the other a program that unpacks itself
        drive.Put(std::string("from\\") + name,
                  "MZ program" + ZipBuilder().Add(std::string(name) + ".txt", "x").Bytes());
    user.ExpectMessage("This picture was not imported:*", "OK");
    EXPECT_TRUE(Drop(area, {Url("from\\new.PNG"), Url("from\\text.jpg"), Url("from\\read.txt")}));
    user.Finish();
    EXPECT_EQ(Text("lblImageName"), "new.jpg");
    EXPECT_FALSE(Drop(area, {Url("from\\read.txt")}));

    auto* clipboard = QApplication::clipboard();
    clipboard->clear();
    ASSERT_FALSE(clipboard->mimeData());
    user.ExpectMessage("There is no picture on the clipboard.*", "OK");
    Control<QAction>(window, "mnuImportImageClipboard").trigger();
    user.Finish();
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
    EXPECT_TRUE(Drop(area, {Url("from\\one.zip"), Url("from\\new.PNG"), Url("from\\TWO.EXE")}));
    EXPECT_EQ(Text("lblHeader"), StagingHeader);
    EXPECT_EQ(Text("lblCounts"), "1 package  -  0 installed in MSFS  -  Staging contains files");
    EXPECT_TRUE(drive.Has("Staging\\ZIP_one.zip\\one.zip.txt"));
    EXPECT_EQ(Text("lblQueue"), "1 archive waits");
    user.ExpectMessage("Staging currently contains files.*", "Yes");
    program.AddArchiveToStaging(0);
    EXPECT_TRUE(drive.Has("Staging\\ZIP_TWO.EXE\\TWO.EXE.txt"));
}

TEST_F(PictureAreaTest, WhatNoDriveLeadsToComesInAsWell) {
    TemporaryDrive other;
    other.Put("shot.png", PictureBytes({30, 20}, "PNG"));
    other.Put("one.zip", ZipBuilder().Add("one.txt", "x").Bytes());
    other.Put("two.zip", ZipBuilder().Add("two.txt", "x").Bytes());
    const auto url = [&](const char* name) {
        return QUrl::fromLocalFile(QString::fromStdString(other.Files().HostPath(other.At(name))));
    };
    EXPECT_TRUE(Drop(area, {url("shot.png")}));
    EXPECT_EQ(Text("lblImageName"), "shot.jpg");
    EXPECT_TRUE(Drop(window, {url("one.zip")}));
    EXPECT_TRUE(drive.Has("Staging\\ZIP_one.zip\\one.txt"));
    user.ExpectMessage("Staging currently contains files.*", "Yes");
    user.Expect("zipFileDialog", [&](QWidget& dialog) {
        EXPECT_EQ(dynamic_cast<QFileDialog&>(dialog).directory().path(),
                  QFileInfo(url("one.zip").toLocalFile()).path());
        Type(dialog, "fileNameEdit", "two.zip");
        PressKey(dialog, Qt::Key_Return);
    });
    PressToolbar("ProcessZip");
    EXPECT_TRUE(drive.Has("Staging\\ZIP_two.zip\\two.txt"));
    EXPECT_TRUE(Drop(window, {url("gone.zip")}));
    EXPECT_EQ(Text("lblQueue"), "1 archive waits");
}

TEST_F(PictureAreaTest, APictureIsDecodedAtTheSizeShown) {
    const auto show = [&](const char* name, const std::string& bytes) {
        drive.Put(Images + name, bytes);
        program.ChoosePackage(0);
        EXPECT_EQ(Text("lblImageName"), name);
    };
    const auto isFitting = [&] { return shown.Picture().image.width() == shown.Box().width(); };
    show("(tiny).jpg", PictureBytes({40, 30}));
    EXPECT_EQ(shown.Picture().image.size(), QSize(40, 30));
    show("(panorama).jpg", PictureBytes({8000, 2000}));
    EXPECT_TRUE(QTest::qWaitFor(isFitting));
    EXPECT_NEAR(shown.Picture().image.height(), shown.Box().width() / 4.0, 1);
    window.resize(window.size() + QSize(120, 60));
    EXPECT_TRUE(QTest::qWaitFor(isFitting));
}

TEST_F(PictureAreaTest, WhatCannotBeShownIsNamedWithTheReason) {
    drive.Put(Images + "(cut).jpg", PictureBytes({300, 300}, "PNG").substr(0, 60));
    program.ChoosePackage(0);
    EXPECT_TRUE(shown.Picture().image.isNull());
    EXPECT_TRUE(shown.Trouble().startsWith("This picture cannot be shown: the file is damaged."));
    window.grab();
    ASSERT_TRUE(drive.Files().Delete(drive.At(Images + "(cut).jpg")));
    Click(window, "cmdImgNext");
    Click(window, "cmdImgPrevious");
    EXPECT_TRUE(shown.Trouble().startsWith("This picture cannot be shown: the file is no longer there."));
}

} // namespace korvadex::test
