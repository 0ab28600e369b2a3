#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

class RemoveTest : public SimTest {
  protected:
    void Install(const std::string& name) {
        PackageBuilder(drive, "Hangar\\Jets\\" + name + "\\");
        Select(name);
        user.ExpectInstallStatus(name + " ...\n\nCrosscheck complete.  PASSED.\n\nInstallation complete.");
        Run(InstallPackage);
    }
};

struct RemovalGuard {
    const char* name;
    const char *file, *text; // below the simulator's aircraft directory
    const char* kind;        // what is in use; "" when the package can go
    const char* user;        // how the list names the user
};

class RemoveGuard : public RemoveTest, public testing::WithParamInterface<RemovalGuard> {};

TEST_P(RemoveGuard, KeepsWhatAnotherAircraftUses) {
    const RemovalGuard& row = GetParam();
    Install("My Lear");
    drive.Put(std::string("FS\\aircraft\\") + row.file, row.text);
    const auto before = drive.Tree("FS");
    ExpectRemoval();
    const std::string kind = row.kind;
    if (kind == "panel")
        user.Expect(
            "Cannot remove.  The panel in this package is used (via alias) by an aircraft(s) in the Flight "
            "Simulator directory as shown.",
            Answer::Ok, MessageIcon::Information);
    else if (kind == "sound")
        user.Expect(
            "Cannot remove.  This sound in this package is used (via alias) by an aircraft(s) in the Flight "
            "Simulator directory as shown.",
            Answer::Ok, MessageIcon::Information);
    else
        user.Expect("Done.", Answer::Ok);
    Run(RemovePackageFromSim);
    EXPECT_EQ(drive.Tree("FS") == before, !kind.empty());
    EXPECT_EQ(window.listCaption, kind.empty() ? "" : kind + " used in ...");
    EXPECT_EQ(window.listLines,
              kind.empty() ? std::vector<std::string>{} : std::vector<std::string>{row.user});
}

INSTANTIATE_TEST_SUITE_P(Users, RemoveGuard,
                         testing::Values(RemovalGuard{"PanelByInstalledName", "Big_Jet\\Panel\\panel.cfg",
                                                      "alias=my_lear\\PANEL", "panel", "< Big Jet >"},
                                         RemovalGuard{"PanelByHangarName", "Big Jet\\panel\\PANEL.CFG",
                                                      "alias=My Lear\\panel", "panel", "< Big Jet >"},
                                         RemovalGuard{"PanelMentioned", "Jet\\x\\panel.cfg",
                                                      "; see My Lear\\panel", "panel", "Jet\\x\\panel.cfg"},
                                         RemovalGuard{"SoundByInstalledName", "Jet\\sound\\sound.cfg",
                                                      "[fltsim]\r\nalias=My_Lear\\sound", "sound", "< Jet >"},
                                         RemovalGuard{"SoundByHangarName", "Jet\\Sound\\Sound.cfg",
                                                      "alias=MY LEAR\\sound", "sound", "< Jet >"},
                                         RemovalGuard{"OtherPanel", "Jet\\panel\\panel.cfg",
                                                      "alias=Lear\\panel", "", ""}),
                         RowName<RemovalGuard>);

TEST_F(RemoveTest, APanelThatNamesItselfIsNoUser) {
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\").With("Panel\\panel.cfg", "; Lear\\panel\r\n");
    Select("Lear");
    user.ExpectInstallStatus("Lear ...\n\nPanel alias used.  Crosscheck bypassed.\n\nInstallation complete.");
    Run(InstallPackage);
    ExpectRemoval().Expect("Done.", Answer::Ok);
    Run(RemovePackageFromSim);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Lear"));
}

TEST_F(RemoveTest, ASearchThatCouldNotSeeEverythingCountsAsUsed) {
    Install("Lear");
    drive.Put("FS\\aircraft\\Jet\\panel\\panel.cfg", "");
    limits.FileMax = 1;
    const auto before = drive.Tree("FS");
    ExpectRemoval()
        .Expect("Not every panel.cfg file below " + locations.MsfsDir +
                    "aircraft\\ could be looked at.  To be on...",
                Answer::Ok)
        .Expect("Cannot remove.  The panel in this package...", Answer::Ok);
    Run(RemovePackageFromSim);
    EXPECT_EQ(drive.Tree("FS"), before);
    EXPECT_THAT(window.status, testing::HasSubstr("FILEMAX"));
}

TEST_F(RemoveTest, AGaugeOfTwoPackagesGoesWithTheSecond) {
    Install("Lear");
    Install("Lear Two");
    state.QuietMode = true;
    for (const char* name : {"Lear", "Lear Two"}) {
        EXPECT_TRUE(drive.Has("FS\\gauges\\LearCab.cab"));
        Select(name);
        Run(RemovePackageFromSim);
    }
    EXPECT_EQ(drive.Names("FS\\gauges"), std::vector<std::string>{});
}

TEST_F(RemoveTest, FilesThatOnlyTheSimulatorHasAreAskedAbout) {
    Install("Lear");
    for (int i = 10; i < 32; ++i)
        drive.Put("FS\\aircraft\\Lear\\flights\\" + std::to_string(i) + ".flt", "saved");
    drive.Put("FS\\aircraft\\Lear\\Lear.air", "edited");
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\").Without("Model\\lear.mdl"); // after it was loaded
    const auto before = drive.Tree("FS");
    const std::string question = locations.MsfsDir +
                                 "aircraft\\Lear\\ holds files that this package doesn't have ...\n\n"
                                 "Lear.air  (changed)\nflights\\10.flt\nflights\\11.flt\n...";
    ExpectRemoval().Expect(question, Answer::No, MessageIcon::Exclamation);
    Run(RemovePackageFromSim);
    EXPECT_EQ(drive.Tree("FS"), before);
    EXPECT_THAT(user.transcript.back(),
                testing::HasSubstr("flights\\28.flt\n... and 4 more\n\nThey will be lost."));

    state.QuietMode = true;
    Run(RemovePackageFromSim);
    EXPECT_EQ(drive.Tree("FS"), before);
    ASSERT_EQ(state.keptPackages.size(), 1u);
    EXPECT_TRUE(state.keptPackages[0].starts_with("Lear: "));

    state.QuietMode = false;
    ExpectRemoval().Expect(question, Answer::Yes).Expect("Done.", Answer::Ok);
    Run(RemovePackageFromSim);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Lear"));
}

TEST_F(RemoveTest, AConfigurationInThePlaceOfAnAliasIsAskedAbout) {
    drive.Put("FS\\aircraft\\Big_Jet\\panel\\panel.cfg", "x");
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\")
        .With("Panel\\panel.cfg", "[fltsim]\n alias=Big Jet\\panel\n");
    Select("Lear");
    const auto install = [&] {
        user.ExpectInstallStatus("Lear ...\n\nPanel alias used....");
        Run(InstallPackage);
    };
    install();
    EXPECT_EQ(drive.Get("FS\\aircraft\\Lear\\Panel\\panel.cfg"), "[fltsim]\r\nalias=big_jet\\panel\r\n");
    ExpectRemoval().Expect("Done.", Answer::Ok);
    Run(RemovePackageFromSim);

    install();
    drive.Put("FS\\aircraft\\Lear\\Panel\\panel.cfg", "the user's own");
    // In the Hangar a file has become empty, with its time as it was.
    const std::string model = locations.HangarDir + "Jets\\Lear\\Model\\lear.mdl";
    const FileTime time = drive.Files().Info(model)->time;
    drive.Put("Hangar\\Jets\\Lear\\Model\\lear.mdl", "");
    ASSERT_TRUE(drive.Files().SetTime(model, time));
    ExpectRemoval().Expect(locations.MsfsDir +
                               "aircraft\\Lear\\ holds files that this package doesn't have ...\n\n"
                               "Model\\lear.mdl  (changed)\nPanel\\panel.cfg  (changed)\n\nThey...",
                           Answer::No);
    Run(RemovePackageFromSim);
}

TEST_F(RemoveTest, QuietModeSaysNothing) {
    Install("Lear");
    state.QuietMode = true;
    Run(RemovePackageFromSim);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Lear"));
    Run(RemovePackageFromSim);
    EXPECT_TRUE(state.keptPackages.empty());
    state.QuietMode = false;
    user.Expect("This package is not currently installed in Flight Simulator.", Answer::Ok,
                MessageIcon::Information);
    Run(RemovePackageFromSim);
}

TEST_F(RemoveTest, SaysWhatCouldNotBeRemoved) {
    drive.Put("FS\\gauges\\LearCab.cab", "MSCF cabinet"); // to be there after the second attempt as well
    Install("Lear");
    FaultyFiles faulty(drive.Files());
    faulty.FailWhere([](const std::string& change, const std::string& path) {
        return change == "Delete" && path.ends_with("lear.mdl") ? FileFault::InUse : FileFault::None;
    });
    CommandContext locked{faulty, launcher, locations, limits, user, window};
    state.CommandCode = RemovePackageFromSim;
    ExpectRemoval().Expect(
        "The package could not be removed completely.\n\n" + locations.MsfsDir +
            "aircraft\\Lear\\Model\\lear.mdl could not be removed (another program is using it).\n\n"
            "Please close the program that uses it (Flight Simulator, perhaps) and try again.",
        Answer::Ok, MessageIcon::Exclamation);
    RunHangarCommand(locked, state, memory, package);
    EXPECT_EQ(drive.Names("FS\\aircraft\\Lear"),
              (std::vector<std::string>{"Model\\", "Model\\lear.mdl", "kx_gauges.txt"}));
    EXPECT_TRUE(drive.Has("FS\\gauges\\LearClock.gau"));
    // A gauge that stays is named; in a batch at its end.
    faulty.FailWhere([](const std::string& change, const std::string& path) {
        return change == "Delete" && path.ends_with("LearClock.gau") ? FileFault::InUse : FileFault::None;
    });
    ExpectRemoval()
        .Expect("The following gauges could not be removed ...\n\n" + locations.MsfsDir +
                    "gauges\\LearClock.gau (another program is using it)\n\n...",
                Answer::Ok, MessageIcon::Exclamation)
        .Expect("Done.", Answer::Ok);
    RunHangarCommand(locked, state, memory, package);
    EXPECT_EQ(drive.Names("FS\\gauges"), (std::vector<std::string>{"LearCab.cab", "LearClock.gau"}));
}

TEST_F(RemoveTest, NothingIsLostOnAReadOnlyDisk) {
    Install("Lear");
    const auto before = drive.Tree();
    FaultyFiles faulty(drive.Files());
    faulty.StopAt(1, FileFault::ReadOnlyDisk);
    CommandContext readOnly{faulty, launcher, locations, limits, user, window};
    const auto run = [&](HangarCommand command) {
        state.CommandCode = command;
        RunHangarCommand(readOnly, state, memory, package);
        EXPECT_THAT(user.transcript.back(), testing::HasSubstr("the disk is in READ ONLY mode"));
        EXPECT_EQ(drive.Tree(), before);
    };
    ExpectRemoval().Expect("The package could not be removed completely.\n\n...", Answer::Ok);
    run(RemovePackageFromSim);
    window.packageText = "Other";
    user.Expect("The package could not be copied, and nothing of it was left behind.\n\n...", Answer::Ok);
    run(InstallPackage);
}

TEST_F(RemoveTest, AnAircraftThatIsALinkGoesAsALink) {
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\");
    for (const auto& [relative, bytes] : PackageBuilder::Files())
        drive.Put("Elsewhere\\" + relative, bytes);
    if (!drive.MakeLink("FS\\aircraft\\Lear", "Elsewhere"))
        GTEST_SKIP() << "no links on this machine";
    const auto elsewhere = drive.Tree("Elsewhere");
    Select("Lear");
    state.QuietMode = true;
    Run(RemovePackageFromSim);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Lear"));
    EXPECT_EQ(state.keptPackages.size(), 0u);
    EXPECT_EQ(drive.Tree("Elsewhere"), elsewhere);
}

} // namespace korvadex::test
