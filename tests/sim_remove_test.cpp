#include "tests/support/sim_fixture.h"

namespace korvadex::test {

// Though they might use it; what is no configuration by its name is none.
TEST_F(SimTest, NamesWhatItCouldNotLookAt) {
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\");
    Select("Lear");
    Install();
    for (int i = 0; i <= MaxSubdirectoriesPerLevel; ++i)
        drive.MakeDirectory("FS\\aircraft\\A" + std::to_string(i));
    drive.MakeDirectory("FS\\aircraft\\Z");
    if (!drive.MakeLink("FS\\aircraft\\Z\\panel.2", "gone") || !drive.MakeLink("FS\\aircraft\\Z\\t.bmp", "gone"))
        GTEST_SKIP() << "no links on this machine";
    const std::string large = "FS\\aircraft\\Z\\panel\\panel.cfg";
    drive.Put(large, std::string(MaxConfigBytes + 1, ' '));
    const auto before = drive.Tree("FS");
    ExpectRemoval().Expect(
        "Cannot remove.  It could not be found out whether another aircraft uses the panel in this package, "
        "because these could not be looked at ...\n\n" +
        drive.At("FS\\aircraft\\Z\\panel.2") + "  (a link that leads nowhere)\n" + drive.At(large) +
        "  (too large for a configuration file)\n\nPlease make sure that...");
    RunRemoval();
    SimUsage usage(context, {"Lear"});
    knownUsage = &usage;
    QuietMode = true;
    RunRemoval();
    EXPECT_EQ(removal.kept, "it could not be found out whether another aircraft uses it");
    EXPECT_EQ(drive.Tree("FS"), before);
    EXPECT_EQ(display.listCaption, "");
    knownUsage = nullptr;
    QuietMode = false;

    drive.Put(large, "alias=Lear\\panel");
    ExpectRemoval().Expect("Cannot remove.  The panel in this package...as shown.");
    RunRemoval();
    EXPECT_EQ(display.listLines, (std::vector<ListLine>{{{"", "Z"}, true}}));
    ASSERT_TRUE(drive.Files().Delete(drive.At(large)));
    ASSERT_TRUE(drive.Files().Delete(drive.At("FS\\aircraft\\Z\\panel.2")));
    limits.FileMax = 40; // fewer than there are
    drive.Fill("FS\\aircraft", "Y\\panel\\panel.cfg=, X\\panel\\panel.cfg=");
    ExpectRemoval().Expect("Done.");
    RunRemoval();
}

} // namespace korvadex::test
