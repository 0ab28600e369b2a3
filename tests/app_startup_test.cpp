#include "app/own_files.h"
#include "app/profiles.h"
#include "tests/support/faulty_files.h"
#include "tests/support/program_fixture.h"

namespace korvadex::test {
namespace {

class StartUp : public ProgramTest {};

TEST_F(StartUp, FindsItsOwnFilesPortableAndInstalled) {
    const struct {
        const char *before, *user, *settings, *data;
    } rows[] = {
        {"bin\\korvadex=x, share\\korvadex\\kx.ini=x", "share\\korvadex", "bin\\", "bin\\"},
        {"bin\\korvadex=x, share\\korvadex\\kxdoc.htm=x", "home\\data\\korvadex", "home\\data\\korvadex\\",
         "share\\korvadex\\"},
        {"bin\\korvadex=x, bin\\kx.ini=x, share\\korvadex\\kxdoc.htm=x", "home", "bin\\", "share\\korvadex\\"},
    };
    for (const auto& row : rows) {
        TemporaryDrive own;
        own.Fill("", row.before);
        const auto executable = own.Files().HostPath(own.At("bin\\korvadex"));
        const auto usersOwn = own.Files().HostPath(own.At(row.user));
        EXPECT_EQ(*SettingsDirectory(own.Files(), executable, usersOwn), own.At(row.settings)) << row.before;
        EXPECT_EQ(DataDirectory(own.Files(), executable), own.At(row.data)) << row.before;
        EXPECT_TRUE(own.Has(row.settings)) << row.before;
    }
    if (drive.Root() != "C:\\")
        return; // drives that leave out a part of the machine are made up
    drive.Fill("", "bin\\korvadex=x, share\\korvadex\\kxdoc.htm=x");
    const auto executable = drive.Files().HostPath(drive.At("bin\\korvadex"));
    EXPECT_EQ(*SettingsDirectory(drive.Files(), executable, "/elsewhere"), "C:\\Korvadex\\");
}

TEST_F(StartUp, TheMarkerOfARestartKeepsTheDialogAway) {
    PutSettings("", "LOCATIONASK=YES\r\n");
    drive.Put("App\\LocationChange", "LocationChange\r\n");
    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At("App\\LocationChange"), true));
    Start();
    EXPECT_FALSE(drive.Has("App\\LocationChange"));

    dialogs.Enter(locations);
    dialogs.askAtStart = false;
    Start();
    program->Shutdown();
    EXPECT_EQ(SavedSettings(), SettingsText());
}

TEST_F(StartUp, AFirstPackageIsLookedForWhereItBelongs) {
    drive.Fill("", "Hangar\\Jets\\Lear\\Lear.air=x, Hangar2\\Jets\\Cub\\Cub.air=x");
    const std::string asking = "LOCATIONASK=YES\r\n";
    const Locations other = {locations.StagingDir, drive.At("Hangar2\\"), locations.MsfsDir};
    const auto spare = "ALTLOCATION1=Spare\r\nALTSTAGINGDIR1=" + other.StagingDir +
                       "\r\nALTHANGARDIR1=" + other.HangarDir + "\r\nALTMSFSDIR1=" + other.MsfsDir +
                       "\r\nALTFIRSTPACKAGE1=Jets\\Cub\r\n";
    PutSettings("Jets\\Lear", spare + asking);
    const auto before = SavedSettings();
    dialogs.Enter(other, "Spare");
    Start();
    EXPECT_EQ(Shown(), drive.At("Hangar2\\Jets\\Cub\\"));
    program->Shutdown();
    auto expected = before;
    EXPECT_EQ(SavedSettings(), expected.replace(expected.find("LAST=0"), 6, "LAST=1"));

    // What cannot be read is not known to be without it.
    for (const auto* directory : {"Hangar\\", "Hangar\\Jets\\"}) {
        SCOPED_TRACE(directory);
        PutSettings("Jets\\Lear");
        FaultyFiles faulty(drive.Files());
        faulty.unreadable = drive.At(directory);
        ASSERT_TRUE(Make(faulty).Start());
        program->Shutdown();
        EXPECT_EQ(SavedSettings(), SettingsText("Jets\\Lear"));
        EXPECT_FALSE(drive.Has("Hangar\\Aircraft - Military"));
    }
}

TEST_F(StartUp, TheEndOfTheSessionSaves) {
    drive.Fill("Hangar\\Jets", "Lear\\Lear.air=x, Cub\\Cub.air=x");
    PutSettings();
    Start();
    program->EndSession();
    EXPECT_EQ(form.ends, 1);

    // A running command comes to its end first.
    Start();
    Select("Jets", 1);
    drive.Put("App\\kx.ini", "");
    user.Expect("Are you sure...", Answer::No).Then([&] {
        program->EndSession();
        EXPECT_EQ(SavedSettings(), SettingsText() + "LASTPACKAGE0=Jets\\Lear\r\n");
        EXPECT_EQ(form.ends, 1);
    });
    program->RunCommand("RemovePackage");
    EXPECT_EQ(form.ends, 2);
}

TEST_F(StartUp, AClearedProfileLeavesTheSettingsFile) {
    PutSettings("", "ALTLOCATION4=Other\r\nALTHANGARDIR4=C:\\h\\\r\nALTFIRSTPACKAGE4=Jets\\Lear\r\n");
    Start();
    dialogs.editProfiles = [](ProfileEditor& profiles) {
        EXPECT_EQ(profiles.Names()[4], "Other");
        profiles.Clear(4);
    };
    program->RunCommand("mnuLocationProfiles");
    EXPECT_EQ(SavedSettings(), SettingsText());
}

} // namespace
} // namespace korvadex::test
