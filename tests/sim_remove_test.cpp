#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

#include <filesystem>

namespace korvadex::test {

class RemoveTest : public SimTest {
  protected:
    void Install(const std::string& name) {
        PackageBuilder(drive, "Hangar\\Jets\\" + name + "\\");
        Select(name);
        SimTest::Install();
    }
};

TEST_F(RemoveTest, KeepsWhatAnotherAircraftUses) {
    const struct {
        const char *name, *file, *text; // below the simulator's aircraft directory
        const char* kind;               // what is in use
        ListLine user;
    } rows[] = {
        {"panel by installed name",
         "Big_Jet\\Panel\\panel.cfg",
         "alias=my_own_lear\\PANEL",
         "panel",
         {{"", "Big Jet"}, true}},
        {"panel by Hangar name",
         "Big Jet\\panel\\PANEL.CFG",
         "alias=My Own Lear\\panel",
         "panel",
         {{"", "Big Jet"}, true}},
        {"panel by half of both",
         "Jet\\panel\\panel.cfg",
         "alias = \"my_own Lear\\panel\"",
         "panel",
         {{"", "Jet"}, true}},
        {"panel mentioned", "Jet\\x\\panel.cfg", "; see My Own Lear\\panel", "panel", {{"", "Jet\\x\\panel.cfg"}}},
        {"sound by installed name", "Jet\\sound\\sound.cfg", "alias=My_Own_Lear\\sound", "sound", {{"", "Jet"}, true}},
        {"sound by Hangar name", "Jet\\Sound\\Sound.cfg", "alias=MY OWN LEAR\\sound", "sound", {{"", "Jet"}, true}},
    };
    Install("My Own Lear");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string file = std::string("FS\\aircraft\\") + row.file;
        drive.Put(file, row.text);
        const auto before = drive.Tree("FS");
        ExpectRemoval().Expect(
            "Cannot remove.  Th... " + std::string(row.kind) +
                "... in this package is used (via alias) by an aircraft(s) in the Flight Simulator directory as shown.",
            MessageIcon::Information);
        Run(RemovePackageFromSim);
        EXPECT_EQ(drive.Tree("FS"), before);
        EXPECT_EQ(display.listCaption, std::string(row.kind) + " used in ...");
        EXPECT_EQ(display.listLines, std::vector<ListLine>{row.user});
        ASSERT_TRUE(drive.Files().Delete(drive.At(file)));
    }
    drive.Put("FS\\aircraft\\Jet\\panel\\panel.cfg", "alias=Lear\\panel");            // of another
    drive.Put("FS\\aircraft\\My_Own_Lear\\Panel\\panel.cfg", "; My Own Lear\\panel"); // its own
    ExpectRemoval().Expect("...Panel\\panel.cfg  (changed)...", Answer::Yes).Expect("Done.");
    Run(RemovePackageFromSim);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\My_Own_Lear"));
}

// Though they might use it; what is no configuration by its name is none.
TEST_F(RemoveTest, NamesWhatItCouldNotLookAt) {
    Install("Lear");
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
    Run(RemovePackageFromSim);
    SimUsage usage(context, {"Lear"});
    knownUsage = &usage;
    QuietMode = true;
    Run(RemovePackageFromSim);
    EXPECT_EQ(removal.kept, "it could not be found out whether another aircraft uses it");
    EXPECT_EQ(drive.Tree("FS"), before);
    EXPECT_EQ(display.listCaption, "");
    knownUsage = nullptr;
    QuietMode = false;

    drive.Put(large, "alias=Lear\\panel");
    ExpectRemoval().Expect("Cannot remove.  The panel in this package...as shown.");
    Run(RemovePackageFromSim);
    EXPECT_EQ(display.listLines, (std::vector<ListLine>{{{"", "Z"}, true}}));
    ASSERT_TRUE(drive.Files().Delete(drive.At(large)));
    ASSERT_TRUE(drive.Files().Delete(drive.At("FS\\aircraft\\Z\\panel.2")));
    limits.FileMax = 40; // fewer than there are
    drive.Fill("FS\\aircraft", "Y\\panel\\panel.cfg=, X\\panel\\panel.cfg=");
    ExpectRemoval().Expect("Done.");
    Run(RemovePackageFromSim);
}

TEST_F(RemoveTest, AGaugeOfTwoPackagesGoesWithTheSecond) {
    Install("Lear");
    Install("Lear Two");
    QuietMode = true;
    for (const char* name : {"Lear", "Lear Two"}) {
        EXPECT_TRUE(drive.Has("FS\\gauges\\LearCab.cab"));
        Select(name);
        Run(RemovePackageFromSim);
    }
    EXPECT_EQ(drive.Outline("FS\\gauges"), "");
    Run(RemovePackageFromSim); // gone already: nothing is said
}

TEST_F(RemoveTest, FilesThatOnlyTheSimulatorHasAreAskedAbout) {
    Install("Lear");
    for (int i = 10; i < 32; ++i)
        drive.Put("FS\\aircraft\\Lear\\flights\\" + std::to_string(i) + ".flt", "saved");
    drive.Put("FS\\aircraft\\Lear\\Lear.air", "edited");
    const auto before = drive.Tree("FS");
    const std::string question = locations.MsfsDir +
                                 "aircraft\\Lear\\ holds files that this package doesn't have ...\n\n"
                                 "Lear.air  (changed)\nflights\\10.flt\nflights\\11.flt\n...";
    ExpectRemoval().Expect(question, Answer::No, MessageIcon::Exclamation);
    Run(RemovePackageFromSim);
    EXPECT_EQ(drive.Tree("FS"), before);
    EXPECT_THAT(user.transcript.back(), testing::HasSubstr("flights\\28.flt\n... and 3 more\n\nThey will be lost."));

    QuietMode = true;
    Run(RemovePackageFromSim);
    EXPECT_EQ(drive.Tree("FS"), before);
    EXPECT_THAT(removal.kept, testing::HasSubstr("Lear.air"));

    QuietMode = false;
    ExpectRemoval().Expect(question, Answer::Yes).Expect("Done.");
    Run(RemovePackageFromSim);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Lear"));
}

TEST_F(RemoveTest, AConfigurationInThePlaceOfAnAliasIsAskedAbout) {
    drive.Put("FS\\aircraft\\Big_Jet\\panel\\panel.cfg", "x");
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\").With("Panel\\panel.cfg", "[fltsim]\n alias=Big Jet\\panel\n");
    Select("Lear");
    const auto install = [&] {
        user.ExpectInstallStatus("Lear ...\n\nPanel alias used....");
        Run(InstallPackage);
    };
    install();
    EXPECT_EQ(drive.Get("FS\\aircraft\\Lear\\Panel\\panel.cfg"), "[fltsim]\n alias=big_jet\\panel\n");
    ExpectRemoval().Expect("Done.");
    Run(RemovePackageFromSim);

    install();
    drive.Put("FS\\aircraft\\Lear\\Panel\\panel.cfg", "the user's own");
    // As an earlier version has installed it, without a record.
    ASSERT_TRUE(drive.Files().Delete(drive.At("FS\\aircraft\\Lear\\kx_installed.txt")));
    // In the Hangar a file has become empty, with its time as it was.
    const std::string model = locations.HangarDir + "Jets\\Lear\\Model\\lear.mdl";
    const FileTime time = drive.Files().Info(model)->time;
    drive.Put("Hangar\\Jets\\Lear\\Model\\lear.mdl", "");
    ASSERT_TRUE(drive.Files().SetTime(model, time));
    ExpectRemoval().Expect(
        locations.MsfsDir +
            "aircraft\\Lear\\ holds files that this package doesn't have ...\n\nModel\\lear.mdl  (changed)\n"
            "Panel\\panel.cfg  (changed)\n\nThey...",
        Answer::No);
    Run(RemovePackageFromSim);
}

TEST_F(RemoveTest, SaysWhatCouldNotBeRemoved) {
    drive.Put("FS\\gauges\\LearCab.cab", "MSCF cabinet"); // to be there after the second attempt as well
    Install("Lear");
    FaultyFiles faulty(drive.Files());
    faulty.FailWhere([](const std::string& change, const std::string& path) {
        const bool isUsed = path.ends_with("LearClock.gau") || path.ends_with("lear.mdl");
        return change == "Delete" && isUsed ? FileFault::InUse : FileFault::None;
    });
    // A gauge that stays is named; in a batch at its end.
    const std::string gauges = "The following gauges could not be removed ...\n\n" + locations.MsfsDir +
                               "gauges\\LearClock.gau (another program is using it)\n\n...";
    ExpectRemoval()
        .Expect(gauges, MessageIcon::Exclamation)
        .Expect("The package could not be removed completely.\n\n" + locations.MsfsDir +
                    "aircraft\\Lear\\Model\\lear.mdl could not be removed (another program is using it).\n\n"
                    "Please close the program that uses it (Flight Simulator, perhaps) and try again.",
                MessageIcon::Exclamation);
    Run(RemovePackageFromSim, faulty);
    EXPECT_EQ(drive.Names("FS\\aircraft\\Lear"),
              (std::vector<std::string>{"Model\\", "Model\\lear.mdl", "kx_installed.txt"}));
    faulty.FailOn("Delete", "LearClock.gau", FileFault::InUse);
    ExpectRemoval().Expect(gauges, MessageIcon::Exclamation).Expect("Done.");
    Run(RemovePackageFromSim, faulty);
    EXPECT_EQ(drive.Names("FS\\gauges"), (std::vector<std::string>{"LearCab.cab", "LearClock.gau"}));
}

TEST_F(RemoveTest, NothingIsLostOnAReadOnlyDisk) {
    Install("Lear");
    const auto before = drive.Tree();
    FaultyFiles faulty(drive.Files());
    faulty.StopAt(1, FileFault::ReadOnlyDisk);
    const auto run = [&](HangarCommand command) {
        Run(command, faulty);
        EXPECT_THAT(user.transcript.back(), testing::HasSubstr("the disk is in READ ONLY mode"));
        EXPECT_EQ(drive.Tree(), before);
    };
    ExpectRemoval()
        .Expect("The following gauges could not be removed ...\n\n...")
        .Expect("The package could not be removed completely.\n\n...");
    run(RemovePackageFromSim);
    Select("Other");
    user.Expect("The package could not be copied, and nothing of it was left behind.\n\n...");
    run(InstallPackage);
}

TEST_F(RemoveTest, AnAircraftThatIsALinkGoesAsALink) {
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\");
    PackageBuilder(drive, "Elsewhere\\");
    if (!drive.MakeLink("FS\\aircraft\\Lear", "Elsewhere"))
        GTEST_SKIP() << "no links on this machine";
    const auto elsewhere = drive.Tree("Elsewhere");
    Select("Lear");
    ExpectRemoval().Expect("Done.");
    Run(RemovePackageFromSim);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Lear"));
    EXPECT_EQ(drive.Tree("Elsewhere"), elsewhere);
}

TEST_F(RemoveTest, TheOnlyCopyStays) {
    const std::string hangar = drive.Files().HostPath(drive.At("Hangar\\Jets\\Lear"));
    Install("Lear");
    const auto before = drive.Tree("FS");
    ExpectRemoval().Then([&] { std::filesystem::rename(hangar, hangar + " elsewhere"); });
    user.Expect("The package you've selected no longer seems to be in the Hangar.");
    Run(RemovePackageFromSim);
    EXPECT_EQ(drive.Tree("FS"), before);
    // Another add-on has come under its name.
    drive.Fill("Hangar\\Jets\\Lear", "aircraft.cfg=[fltsim.0], Other.air=other");
    Select("Lear");
    ExpectRemoval().Expect(
        locations.MsfsDir +
            "aircraft\\Lear\\ holds files that this package doesn't have ...\n\naircraft.cfg  (changed)\nLear.air\n...",
        Answer::No);
    Run(RemovePackageFromSim);
    EXPECT_EQ(drive.Tree("FS"), before);

    // The Hangar leads to the simulator.
    std::filesystem::remove_all(drive.Files().HostPath(drive.At("Hangar\\Jets")));
    if (!drive.MakeLink("Hangar\\Jets", "FS\\aircraft"))
        GTEST_SKIP() << "no links on this machine";
    Select("Lear");
    ExpectRemoval().Expect(drive.At("FS\\aircraft\\Lear\\ is the package itself,..."), MessageIcon::Exclamation);
    Run(RemovePackageFromSim);
    user.Expect("The package cannot be removed: the Hangar leads by a link to " + drive.At("FS\\aircraft\\Lear") +
                ", which...");
    Run(RemovePackageFromHangar);
    user.Expect(drive.At("Hangar\\Jets\\Lear\\ cannot be compressed: the Hangar leads by a link to ") +
                    drive.At("FS\\aircraft\\Lear, which..."),
                MessageIcon::Exclamation);
    Run(CompressShownPackage);
    EXPECT_EQ(drive.Tree("FS"), before);
}

} // namespace korvadex::test
