// The picture gallery with its real window.
#include "tests/support/window_fixture.h"
#include "ui/frmPhotos.h"
#include "ui/photo_grid.h"

namespace korvadex::test {
namespace {

// A gallery of the category Jets, one picture to a package.
class PhotosTest : public testing::Test {
  protected:
    PhotosTest() { gallery.caption = "Packages in Jets"; }
    ~PhotosTest() override { window.close(); }

    void Add(const std::string& package, const QByteArray& bytes, const char* fileName = "shot.jpg") {
        const auto path = "Hangar\\Jets\\" + package + "\\Images\\" + fileName;
        drive.Put(path, bytes.toStdString());
        gallery.pictures.push_back({drive.At(path), {"Jets", package}});
    }
    static QByteArray Picture(const QSize& size, const char* format = "JPG") {
        return QByteArray::fromStdString(PictureBytes(size, format));
    }
    void Show() {
        window.ShowGallery(gallery);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        WaitForPage();
    }
    void WaitForPage() {
        EXPECT_TRUE(QTest::qWaitFor([&] { return window.IsPageComplete(); }));
    }
    PhotoView& Photo(int index) { return Control<PhotoView>(window, ("imgPhoto_" + std::to_string(index)).c_str()); }
    std::string Label(const char* name) { return Control<QLabel>(window, name).text().toStdString(); }
    bool IsEnabled(const char* button) { return Control<QPushButton>(window, button).isEnabled(); }

    TemporaryDrive drive;
    GalleryView gallery;
    frmPhotos window{drive.Files()};
};

TEST_F(PhotosTest, PagesAreTurnedAndPicturesMarkedAndChosen) {
    for (int i = 1; i <= 31; ++i)
        Add("Plane " + std::to_string(i), Picture({300, 200}));
    QSignalSpy chosen(&window, &frmPhotos::PictureChosen);
    Show();
    EXPECT_EQ(window.windowTitle(), "Packages in Jets");
    EXPECT_EQ(Label("lblPage"), "Page 1 of 3");
    EXPECT_FALSE(IsEnabled("cmdPrevious") || IsEnabled("cmdShowPackage"));
    for (int index = 0; index < 15; ++index)
        EXPECT_EQ(Photo(index).Text(), QString("Plane %1").arg(index + 1));
    const QSize decoded = Photo(0).Picture().image.size();
    EXPECT_EQ(decoded, QSize(300, 200).scaled(Photo(0).Box(), Qt::KeepAspectRatio));

    QTest::mouseClick(&Photo(3), Qt::LeftButton);
    EXPECT_TRUE(Photo(3).IsMarked());
    EXPECT_EQ(Label("lblPackage"), "Plane 4");
    EXPECT_EQ(Label("lblPicture"), "Jets  -  shot.jpg");
    const auto& marked = Control<PhotoView>(window, "imgHangar");
    EXPECT_TRUE(QTest::qWaitFor([&] { return marked.Picture().image.width() > decoded.width(); }));
    EXPECT_TRUE(chosen.isEmpty());
    QTest::mouseDClick(&Photo(3), Qt::LeftButton);

    Click(window, "cmdNext");
    Click(window, "cmdNext");
    EXPECT_EQ(Label("lblPage"), "Page 3 of 3");
    EXPECT_FALSE(IsEnabled("cmdNext") || IsEnabled("cmdShowPackage"));
    WaitForPage();
    EXPECT_EQ(Photo(0).Text(), "Plane 31");
    EXPECT_EQ(Photo(1).Text(), "");
    EXPECT_TRUE(Photo(1).Picture().image.isNull());
    QTest::mouseDClick(&Photo(1), Qt::LeftButton); // nobody there
    for (const auto key : {Qt::Key_Down, Qt::Key_PageUp, Qt::Key_Left, Qt::Key_Down, Qt::Key_Return})
        PressKey(window, key); // 31, 16, 15, 20
    EXPECT_EQ(Label("lblPage"), "Page 2 of 3");
    EXPECT_TRUE(Photo(4).IsMarked());
    Click(window, "cmdShowPackage");
    ASSERT_EQ(chosen.size(), 3);
    EXPECT_EQ(chosen[0][0], 3);
    EXPECT_EQ(chosen[1][0], 19);
    EXPECT_EQ(chosen[2][0], 19);

    // Pictures come and go: the mark stays with its picture.
    gallery.pictures.erase(gallery.pictures.begin(), gallery.pictures.begin() + 10);
    window.UpdateGallery(gallery);
    EXPECT_EQ(Label("lblPage"), "Page 1 of 2");
    EXPECT_TRUE(Photo(9).IsMarked());
    window.resize(window.size() + QSize(150, 90));
    EXPECT_TRUE(QTest::qWaitFor([&] { return Photo(0).Picture().image.width() > decoded.width(); }));
    PressKey(window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    Show(); // anew
    EXPECT_FALSE(IsEnabled("cmdShowPackage"));
    gallery.pictures.clear();
    window.UpdateGallery(gallery);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(PhotosTest, AreNarrowedToAPackageAndToWords) {
    for (const char* name : {"Lear", "Beech", "Cub"})
        for (const char* file : {"(first).jpg", "second.jpg"})
            Add(name, Picture({30, 20}), file);
    gallery.pictures[2].isInstalled = gallery.pictures[3].isInstalled = true;
    QSignalSpy chosen(&window, &frmPhotos::PictureChosen);
    Show();
    const auto texts = [&] {
        std::string shown;
        for (int index = 0; index < 7; ++index)
            shown += Photo(index).Text().toStdString() + "|";
        return shown + Label("lblCount");
    };
    QTest::mouseClick(&Photo(3), Qt::LeftButton);
    EXPECT_EQ(Label("lblPicture"), "Jets  -  second.jpg  -  installed in MSFS");
    Control<QCheckBox>(window, "chkOnePerPackage").click();
    EXPECT_EQ(texts(), "Lear|Beech|Cub|||||3 of 6 pictures");
    EXPECT_TRUE(Photo(1).IsMarked());
    QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
    auto& filter = Control<QLineEdit>(window, "txtFilter");
    QTest::keyClicks(&filter, "jets CU");
    EXPECT_EQ(texts(), "Cub|||||||1 of 6 pictures");
    QTest::keyClick(&filter, Qt::Key_Return);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen[0][0], 4);
    filter.setText("second");
    EXPECT_EQ(texts(), "Lear|Beech|Cub|||||3 of 6 pictures");
    QTest::keyClick(&filter, Qt::Key_Escape);
    Control<QCheckBox>(window, "chkOnePerPackage").click();
    EXPECT_EQ(texts(), "Lear|Lear|Beech|Beech|Cub|Cub||");
}

TEST_F(PhotosTest, WhatCannotBeShownHasItsPlace) {
    QByteArray huge = Picture({8, 8}); // claims 20,000 x 20,000
    const auto frame = huge.indexOf("\xFF\xC0");
    ASSERT_GT(frame, 0);
    huge.replace(frame + 5, 4, "\x4E\x20\x4E\x20");
    const QByteArray sound = Picture({200, 100});
    const struct {
        const char* name;
        QByteArray bytes;
        const char* trouble;
        bool isSeen = false;
    } rows[] = {
        {"damaged", sound.left(40), "the file is damaged"},
        {"empty", "", "the file is empty"},
        {"huge", huge, "the picture is too large (20000 x 20000 pixels)"},
        {"drawing", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", "the file holds no picture"},
        {"no picture", "text", "the file holds no picture"},
        {"of another format", Picture({200, 100}, "PNG"), "", true},
        {"gone", sound, "the file is no longer there"},
        {"cut off", sound.chopped(20), "the file is damaged", true},
        {"sound", sound, "", true}};
    for (const auto& row : rows)
        Add(row.name, row.bytes);
    ASSERT_TRUE(drive.Files().Delete(gallery.pictures[6].path));
    Show();
    for (int index = 0; index < int(std::size(rows)); ++index) {
        EXPECT_EQ(Photo(index).Picture().trouble, rows[index].trouble) << rows[index].name;
        EXPECT_EQ(Photo(index).Picture().image.isNull(), !rows[index].isSeen) << rows[index].name;
        EXPECT_EQ(Photo(index).Text(), rows[index].name);
    }
}

} // namespace
} // namespace korvadex::test
