// The commands of the Data menu, as the program runs them.
#include "tests/support/program_fixture.h"

namespace korvadex::test {
namespace {

class DataCommands : public ProgramTest {
  protected:
    DataCommands() {
        drive.Put("Hangar\\Jets\\Lear\\aircraft.cfg", "[fltsim.0]\r\ntitle=Lear\r\n");
        drive.Put("FS\\fs2002.exe", "MZ");
        Start();
    }
};

TEST_F(DataCommands, NotesShowInTheListsAtOnce) {
    for (const std::string directory : {"Hangar\\Jets\\Lear\\", "Staging\\"}) {
        SCOPED_TRACE(directory);
        const std::string notes = drive.At(directory + "Documentation\\kx_note.txt");
        launcher.started.clear();
        if (directory == "Staging\\")
            program->GoToStaging();
        else
            Select("Jets", 0);
        program->RunCommand("mnuCreateNotes");
        ASSERT_EQ(program->Package().ComponentFiles[Documentation].size(), 1u);
        user.Expect("Notes already exist for this package.");
        program->CreatePackageNotes();
        program->RunCommand("ReadNotes");
        program->Explore();
        EXPECT_EQ(launcher.started,
                  (std::vector<std::string>{"edit " + notes, "edit " + notes, "explore " + drive.At(directory)}));
        program->RunCommand("mnuDeleteNotes");
        EXPECT_TRUE(program->Package().ComponentFiles[Documentation].empty());
        user.Expect("No notes exist for this package.");
        program->RunCommand("mnuReadNotes");
    }
}

TEST_F(DataCommands, InformationIsThatOfTheFileAsItIsNow) {
    Select("Jets", 0);
    for (const char* id : {"N1", "N2"}) {
        const std::string cfg = "[fltsim.0]\r\natc_id=" + std::string(id) + "\r\n";
        drive.Put("Hangar\\Jets\\Lear\\aircraft.cfg", cfg);
        user.ExpectInfo([&](const InfoForm& shown) { EXPECT_EQ(shown.info.atcId, id); });
        program->RunCommand("Information");
    }
}

} // namespace
} // namespace korvadex::test
