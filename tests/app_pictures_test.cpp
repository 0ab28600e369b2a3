// The picture commands from the main window's side: what is shown before and after each.
#include "platform/windows_path.h"
#include "tests/support/program_fixture.h"

namespace korvadex::test {

namespace {

class PictureCommandsTest : public ProgramTest {
  protected:
    PictureCommandsTest() {
        drive.Fill("Hangar\\Jets\\Lear\\Images", "a.jpg=a, b.jpg=b, (c).jpg=c");
        // Lear is installed: its pictures may come and go all the same.
        drive.Fill("", "Hangar\\Jets\\Tutor\\, FS\\aircraft\\Lear\\, from\\new.png=x, from\\b.jpg=another");
        Start();
    }
    // The picture as the window is told; "" when there is none.
    std::string Picture() const {
        const auto& pictures = program->Package().pictures;
        const auto index = static_cast<std::size_t>(form.view.imageIndex);
        return index == 0 ? "" : LastPathComponent(pictures.at(index - 1));
    }
    OfferedPictures From(std::vector<std::string> names) const {
        OfferedPictures offered;
        for (const auto& name : names)
            offered.files.push_back(drive.At("from\\" + name));
        return offered;
    }
};

} // namespace

TEST_F(PictureCommandsTest, GoingThroughDeletingAndMakingFirst) {
    Select("Jets", 0);
    EXPECT_EQ(Picture(), "(c).jpg");
    program->ShowPreviousImage();
    EXPECT_EQ(Picture(), "b.jpg");
    program->Refresh();
    EXPECT_EQ(Picture(), "b.jpg");
    user.Expect("Done.\n\nThis image will now be the first to be displayed for this package.");
    program->MakeShownImageFirst();
    EXPECT_EQ(Picture(), "(b).jpg");
    program->ShowNextImage();
    EXPECT_EQ(Picture(), "a.jpg");
    user.Expect("Delete a.jpg?", Answer::Yes, MessageIcon::None);
    program->DeleteShownImage();
    EXPECT_EQ(Picture(), "c.jpg");
    user.Expect("Delete c.jpg?", Answer::Yes);
    program->DeleteShownImage();
    EXPECT_EQ(Picture(), "(b).jpg");
    EXPECT_EQ(drive.Outline("Hangar\\Jets\\Lear"), "Images\\(b).jpg=b");

    // It is gone: nothing else is made first in its place.
    drive.Put("Hangar\\Jets\\Lear\\Images\\d.jpg", "d");
    static_cast<void>(drive.Files().Delete(drive.At("Hangar\\Jets\\Lear\\Images\\(b).jpg")));
    user.Expect("The picture " + drive.At("Hangar\\Jets\\Lear\\Images\\(b).jpg") + " is no longer there.");
    program->MakeShownImageFirst();
    EXPECT_EQ(Picture(), "d.jpg");
    user.Expect("Delete d.jpg?", Answer::Yes);
    program->DeleteShownImage();
    EXPECT_EQ(Picture(), "");
    EXPECT_TRUE(drive.Names("Hangar\\Jets\\Lear").empty());
    program->ShowNextImage();
    program->ShowPreviousImage();
    program->DeleteShownImage();
    program->MakeShownImageFirst();
    EXPECT_EQ(Picture(), "");
}

TEST_F(PictureCommandsTest, OnlyThePictureThatIsSeenIsDeleted) {
    const std::string a = "Hangar\\Jets\\Lear\\Images\\a.jpg", gone = "Hangar\\Jets\\Lear\\Images\\(c).jpg";
    Select("Jets", 0);
    ASSERT_TRUE(drive.Files().Delete(drive.At(gone)));
    user.Expect("The picture " + drive.At(gone) + " is no longer there.", Answer::Ok, MessageIcon::Exclamation);
    program->DeleteShownImage();
    EXPECT_EQ(Picture(), "a.jpg");
    // Another program puts another one in its place, before the question and after it.
    drive.Put(a, "newer");
    const int shown = form.view.listRevision;
    user.Expect("Delete a.jpg?", Answer::Yes).Then([&] {
        EXPECT_NE(form.view.listRevision, shown);
        drive.Put(a, "newest of all");
    });
    user.Expect("The picture " + drive.At(a) + " was changed by another program meanwhile...", Answer::Ok);
    program->DeleteShownImage();
    EXPECT_EQ(drive.Get(a), "newest of all");
    EXPECT_EQ(Picture(), "a.jpg");
}

TEST_F(PictureCommandsTest, StagingKeepsItsImagesDirectory) {
    drive.Put("Staging\\images\\only.gif", "x");
    program->GoToStaging();
    EXPECT_EQ(Picture(), "only.gif");
    user.Expect("Delete only.gif?", Answer::Yes);
    program->DeleteShownImage();
    EXPECT_EQ(drive.Names("Staging"), std::vector<std::string>{"images\\"});
}

TEST_F(PictureCommandsTest, NewPicturesAreShown) {
    Select("Jets", 0);
    dialogs.chosenPictures = From({"new.png", "b.jpg"});
    program->ImportImageFiles();
    EXPECT_EQ(Picture(), "new.jpg");
    EXPECT_EQ(form.status, "2 pictures were imported.");
    EXPECT_EQ(drive.Get("Hangar\\Jets\\Lear\\Images\\b(1).jpg"), "another");
    EXPECT_EQ(dialogs.pictureDirectory, "");
    dialogs.chosenPictures = {};
    program->ImportImageFiles();
    EXPECT_EQ(dialogs.pictureDirectory, drive.At("from\\"));
    EXPECT_EQ(Picture(), "new.jpg");

    user.Expect("There is no picture on the clipboard...", MessageIcon::Exclamation);
    program->ImportImageClipboard();
    dialogs.clipboardPictures.jpeg = "pasted";
    program->ImportImageClipboard();
    EXPECT_EQ(Picture(), "Lear.jpg");
    program->ChoosePackage(1);
    program->ImportDroppedImages(From({"new.png"}));
    EXPECT_EQ(drive.Get("Hangar\\Jets\\Tutor\\Images\\new.jpg"), "a JPEG");

    // Staging: the name as typed, then the title, then a name for any picture.
    drive.Put("Staging\\aircraft.cfg", "[fltsim.0]\r\ntitle=Big: Bird\r\n");
    program->GoToStaging();
    program->ImportImageClipboard();
    EXPECT_EQ(Picture(), "Big_ Bird.jpg");
    EXPECT_EQ(form.view.caption, "Korvadex     (Staging Contains Files)");
    program->SetPackageName(" My: Bird ");
    program->ImportImageClipboard();
    EXPECT_EQ(drive.Get("Staging\\Images\\My_ Bird.jpg"), "pasted");
}

TEST_F(PictureCommandsTest, APackageMustBeSelected) {
    drive.MakeDirectory("Hangar\\Empty");
    program->Refresh();
    Select("Empty", -1);
    for (int i = 0; i < 3; ++i)
        user.Expect("Please select a package first.", MessageIcon::Exclamation);
    program->ImportImageFiles();
    program->ImportImageClipboard();
    program->ImportDroppedImages(From({"new.png"}));
    EXPECT_FALSE(drive.Has("Hangar\\Empty\\Images"));
}

} // namespace korvadex::test
