// Notes and the file manager, on both sides.
#include "media/notes.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {
namespace {

using Started = std::vector<std::string>;

class NotesTest : public SimTest, public testing::WithParamInterface<bool> {
  protected:
    NotesTest() {
        drive.Put("Hangar\\Jets\\Lear\\aircraft.cfg", "title=Lear\r\n");
        drive.Put("Staging\\aircraft.cfg", "title=Lear\r\n");
        Load();
    }
    void Load() {
        if (GetParam())
            LoadStaging(context, package);
        else
            Select("Lear");
    }
    std::string directory = GetParam() ? "Staging\\" : "Hangar\\Jets\\Lear\\";
    std::string notes = directory + "Documentation\\kx_note.txt";
};

TEST_P(NotesTest, AreCreatedReadAndDeleted) {
    const auto before = drive.Tree();
    for (const auto command : {ReadNotes, DeleteNotes}) {
        user.Expect("No notes exist for this package.", Answer::Ok, MessageIcon::Exclamation);
        command(context, package);
    }
    EXPECT_TRUE(CreateNotes(context, package).package);
    auto expected = before;
    expected[directory + "Documentation\\"] = "";
    expected[notes] = "";
    EXPECT_EQ(drive.Tree(), expected);

    drive.Put(notes, "Nosewheel steers badly.");
    Load();
    user.Expect("Notes already exist for this package.", Answer::Ok, MessageIcon::Exclamation);
    CreateNotes(context, package);
    ReadNotes(context, package);
    EXPECT_EQ(launcher.started, Started(2, "edit " + drive.At(notes)));
    EXPECT_EQ(drive.Get(notes), "Nosewheel steers badly.");

    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At(notes), true));
    EXPECT_TRUE(DeleteNotes(context, package).package);
    EXPECT_EQ(drive.Tree(), before) << "no directory is left, for which Staging would count as filled";
}

TEST_P(NotesTest, AFileThatIsThereIsNeverEmptied) {
    // Saved behind the program's back, and again somewhere else under another case.
    drive.Put(notes, "mine");
    CreateNotes(context, package);
    EXPECT_EQ(drive.Get(notes), "mine");
    ASSERT_TRUE(drive.Files().Delete(drive.At(notes)));
    drive.Put(directory + "Old\\KX_NOTE.TXT", "older");
    Load();
    ReadNotes(context, package);
    EXPECT_EQ(launcher.started,
              (Started{"edit " + drive.At(notes), "edit " + drive.At(directory + "Old\\KX_NOTE.TXT")}));
    DeleteNotes(context, package);
    EXPECT_FALSE(drive.Has(directory + "Old\\KX_NOTE.TXT"));
}

TEST_P(NotesTest, NoEditorIsOpenedOnAFileThatCannotBe) {
    drive.Put(directory + "documentation", "a file");
    user.Expect("The notes file " + drive.At(notes) + " could not be created (...", Answer::Ok);
    CreateNotes(context, package);
    EXPECT_EQ(launcher.started, Started());
    EXPECT_EQ(drive.Get(directory + "documentation"), "a file");

    // What lies behind a link is not listed, and stays behind when the package goes elsewhere.
    ASSERT_TRUE(drive.Files().Delete(drive.At(directory + "documentation")));
    drive.MakeDirectory("elsewhere");
    if (!drive.MakeLink(directory + "Documentation", "elsewhere"))
        GTEST_SKIP() << "no links here";
    user.Expect("The notes file " + drive.At(notes) + " could not be created (...", Answer::Ok);
    CreateNotes(context, package);
    EXPECT_EQ(launcher.started, Started());
    EXPECT_FALSE(drive.Has("elsewhere\\kx_note.txt"));
}

TEST_P(NotesTest, TheDirectoryIsShownInTheFileManager) {
    ExplorePackage(context, package);
    drive.MakeDirectory("FS\\aircraft\\Lear");
    if (!GetParam())
        user.Expect(
            "WARNING:  This package is currently installed in MSFS.  "
            "Any manual changes to this package may prevent unused gauges from being removed when you choose to "
            "remove the package from MSFS.",
            Answer::Ok, MessageIcon::Exclamation);
    ExplorePackage(context, package);
    EXPECT_EQ(launcher.started, Started(2, "explore " + drive.At(directory)));

    launcher.hasDesktop = false;
    drive.Put(notes, "x");
    Load();
    user.Expect("No text editor could be started for " + drive.At(notes) + "...", Answer::Ok);
    ReadNotes(context, package);
}

TEST_P(NotesTest, OnlyTheHangarWantsASelection) {
    const auto before = drive.Tree();
    package.ref = {};
    for (const auto command : {CreateNotes, ReadNotes, DeleteNotes}) {
        if (!GetParam())
            user.Expect("Please select a package first.", Answer::Ok, MessageIcon::Exclamation);
        else if (command != CreateNotes)
            user.Expect("No notes exist for this package.", Answer::Ok);
        command(context, package);
    }
    EXPECT_EQ(drive.Tree() == before, !GetParam());
}

INSTANTIATE_TEST_SUITE_P(Sides, NotesTest, testing::Bool(),
                         [](const auto& side) { return side.param ? std::string("Staging") : std::string("Hangar"); });

} // namespace
} // namespace korvadex::test
