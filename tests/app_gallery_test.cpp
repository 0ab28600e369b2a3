#include "tests/support/program_fixture.h"

namespace korvadex::test {
namespace {

class GalleryCommands : public ProgramTest {
  protected:
    GalleryCommands() {
        drive.Fill("Hangar", "Jets\\Lear\\Images\\lear.jpg=x, Jets\\Lear\\Images\\other.jpg=x, None\\Lear\\, "
                             "Props\\Lear\\Images\\lear.jpg=x");
    }
    std::size_t Count() const { return form.gallery.pictures.size(); }
};

TEST_F(GalleryCommands, OfACategoryAndOfAll) {
    drive.MakeDirectory("FS\\aircraft\\Lear");
    Start();
    Select("Jets", 0);
    program->RunCommand("mnuPhotosByCategory");
    EXPECT_EQ(form.gallery.caption, "Packages in Jets");
    EXPECT_EQ(Count(), 2U);
    program->RunCommand("mnuPhotosForAll");
    EXPECT_EQ(form.gallery.caption, "All Packages");
    EXPECT_EQ(Count(), 3U);
    program->ChooseGalleryPicture(2); // installed, and of two of that name the right one
    EXPECT_EQ(Shown(), drive.At("Hangar\\Props\\Lear\\"));
    EXPECT_EQ(form.PackageLines()[0], "< Lear >");

    Select("None", 0);
    user.Expect("There are no images to show.", MessageIcon::None);
    program->RunCommand("PhotoGalleryCategory");
    program->GoToStaging();
    for (const char* key : {"PhotoGalleryCategory", "PhotoGalleryAll"})
        program->RunCommand(key);
    EXPECT_EQ(form.galleryShows, 2);
    program->ChooseGalleryPicture(0);
    EXPECT_EQ(form.view.header, "H A N G A R");
    EXPECT_EQ(Shown(), drive.At("Hangar\\Jets\\Lear\\"));
    for (const int row : {-1, 3})
        program->ChooseGalleryPicture(row);
}

TEST_F(GalleryCommands, FollowsWhatHappensToThePackages) {
    Start();
    // A category that is new since the start, and a package that goes.
    drive.Put("Hangar\\Added\\Cub\\Images\\cub.jpg", "x");
    program->ShowPhotosForAll();
    program->ChooseGalleryPicture(0);
    EXPECT_EQ(Shown(), drive.At("Hangar\\Added\\Cub\\"));
    EXPECT_EQ(form.comings, 1);
    ASSERT_TRUE(drive.Files().Rename(drive.At("Hangar\\Added\\Cub"), drive.At("Cub")));
    user.Expect("The package you've selected no longer seems to be in the Hangar.", MessageIcon::Exclamation);
    program->ChooseGalleryPicture(0);
    EXPECT_EQ(Count(), 3U);
    EXPECT_EQ(form.comings, 1);

    Select("Jets", 0);
    user.Expect("Are you sure you want to delete the 1 files selected?", Answer::Yes);
    // What the gallery asks for while the question is open is dropped.
    form.onShow = [&] { program->ChooseGalleryPicture(2); };
    program->DeleteComponents(Images, {0});
    form.onShow = nullptr;
    EXPECT_EQ(Shown(), drive.At("Hangar\\Jets\\Lear\\"));
    EXPECT_EQ(Count(), 2U);
    EXPECT_EQ(form.galleryShows, 1);
}

} // namespace
} // namespace korvadex::test
