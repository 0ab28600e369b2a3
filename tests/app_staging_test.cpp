// What the case files of Staging (cases/staging.case) cannot say: files and directories beyond a limit.
#include "package/config_readers.h"
#include "package/erase_staging.h"
#include "tests/support/package_builder.h"
#include "tests/support/program_fixture.h"
#include "tests/support/zip_builder.h"

namespace korvadex::test {
namespace {

class StagingCommands : public ProgramTest {
  protected:
    StagingCommands() { drive.MakeDirectory("Hangar\\Jets"); }
    void CopyFromStaging() {
        program->SetPackageName("Lear");
        program->RunCommand("Install");
    }
};

TEST_F(StagingCommands, WhatWasSettledWhileLoadingIsCopiedAsItIs) {
    const std::string big(2'000'000, 'x');
    PackageBuilder(drive, "Staging\\ZIP_lear.zip\\");
    drive.Fill("Staging", "a\\Thumbs.db=1, b\\thumbs.db=22, a\\odd.xyz=1");
    drive.Put("Staging\\b\\odd.xyz", big);
    Start();
    user.Expect("A duplicate filename condition has occurred...", Answer::No);
    program->GoToStaging();
    EXPECT_EQ(form.view.sizeText, "2 Meg");
    user.Expect("Done.\n\nWould you like to clear...", Answer::No);
    CopyFromStaging();
    auto expected = PackageBuilder::Files();
    expected["Unrecognized Files\\odd.xyz"] = big;
    for (const auto& [name, bytes] : expected)
        EXPECT_EQ(drive.Get("Hangar\\Jets\\Lear\\" + name), bytes) << name;
    EXPECT_FALSE(drive.Has("Hangar\\Jets\\Lear\\Unrecognized Files\\Thumbs.db"));
}

TEST_F(StagingCommands, AnArchiveThatIsStoppedLeavesNothing) {
    drive.Put("big.zip", ZipBuilder().Add("a.txt", "a").Add("big.bmp", std::string(17 << 20, 'x')).Bytes());
    Start();
    const auto before = drive.Tree("Staging");
    for (const int step : {1, 2}) {
        form.onStep = [&, left = step]() mutable {
            if (--left == 0)
                program->StopAfterThis();
        };
        user.Expect(step == 1 ? "The command was stopped.  Nothing was changed."
                              : "The command was stopped.  Everything that it had changed has been taken back: all is "
                                "as it was before.");
        program->OfferArchives({drive.At("big.zip")});
        EXPECT_TRUE(drive.Tree("Staging") == before) << step;
        EXPECT_EQ(form.view.packageName, "");
        EXPECT_EQ(form.view.undoText, "");
    }
}

TEST_F(StagingCommands, WhatWasCutAtALimitIsNotCopied) {
    drive.Fill("Staging", "a.air=x, b.air=x");
    for (int i = 0; i <= MaxSubdirectoriesPerLevel; ++i)
        drive.MakeDirectory("Staging\\" + std::to_string(i));
    Start();
    program->GoToStaging();
    user.Expect("...\n\nNothing was copied.", MessageIcon::Exclamation);
    CopyFromStaging();
    EXPECT_EQ(drive.Outline("Hangar"), "Jets\\");
}

TEST_F(StagingCommands, NothingIsSettledBesideAnAircraftCfgThatCannotBeRead) {
    // It may speak of several liveries, whose files bear the same names.
    drive.Fill("Staging", "texture\\skin.bmp=same, texture.red\\skin.bmp=same, a.txt=x");
    drive.Put("Staging\\aircraft.cfg", std::string(MaxConfigBytes + 1, ' '));
    const auto before = drive.Names("Staging");
    const std::string unread = "The file " + drive.At("Staging\\aircraft.cfg could not be read (") + "...";
    Start();
    program->GoToStaging();
    EXPECT_EQ(program->Package().aircraftTitle, "aircraft.cfg could not be read  (F5)");
    user.Expect(unread + "  Nothing was copied.", MessageIcon::Exclamation);
    CopyFromStaging();
    EXPECT_EQ(drive.Names("Staging"), before);
    EXPECT_EQ(drive.Outline("Hangar"), "Jets\\");
    // Nor in the middle of many.
    drive.Put("big.zip", ZipBuilder()
                             .Add("aircraft.cfg", std::string(MaxConfigBytes + 1, ' '))
                             .Add("texture/skin.bmp", "same")
                             .Add("texture.red/skin.bmp", "same")
                             .Bytes());
    ASSERT_TRUE(DeleteContents(drive.Files(), drive.At("Staging")).empty());
    dialogs.chosenCategories.push_back("Jets");
    user.Expect("0 of 1 archive was...", MessageIcon::Exclamation);
    program->TakeArchives({drive.At("big.zip")});
    EXPECT_EQ(drive.Outline("Hangar"), "Jets\\");
    EXPECT_EQ(drive.Names("Staging"), std::vector<std::string>());
}

TEST_F(StagingCommands, NothingIsErasedByAConfigurationThatCannotBeRead) {
    PackageBuilder(drive, "Staging\\");
    const auto expectRefusal = [&](StagingPart part, const std::string& message) {
        const auto before = drive.Names();
        user.Expect("Are you sure you want to erase the...", Answer::Yes).Expect(message, MessageIcon::Exclamation);
        EXPECT_FALSE(ErasePartOfStaging(context, part));
        EXPECT_EQ(drive.Names(), before);
    };
    const std::string tooLarge(MaxConfigBytes + 1, ' ');
    for (const char* config : {"Sound\\sound.cfg", "Panel\\panel.cfg"}) {
        drive.Put("Staging\\" + std::string(config), tooLarge);
        expectRefusal(StagingPart::Panel, "The file " + drive.At("Staging\\") + config + " could not...");
    }
    expectRefusal(StagingPart::Aircraft, "The file " + drive.At("Staging\\Panel\\panel.cfg..."));
}

} // namespace
} // namespace korvadex::test
