// Commands that change where a package of the Hangar lives, or tell who relies on it.
#include "package/aircraft_cfg.h"
#include "package/file_primitives.h"
#include "sim/run_simulator.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

constexpr const char* AskInstalled =
    "WARNING!  This package is currently installed in MSFS.  Should it be removed from MSFS first?...";
constexpr const char* AskRemove = "Are you sure you want to remove this package from the hangar?";
constexpr const char* AskRemoveCopied = "Done.\n\nWould you like to remove this package from the hangar?";

class HangarTest : public SimTest {
  protected:
    using Tree = std::map<std::string, std::string>;
    HangarTest() {
        PackageBuilder(drive, "Hangar\\Jets\\Lear\\").Packed("Texture\\Lear_t.bmp");
        drive.Put("Hangar\\Jets\\Other\\aircraft.cfg", "title=Other\r\n");
        Select("Lear");
    }
    void AddUser(const char* kind) {
        drive.Put(std::string("Hangar\\Props\\Big Jet\\") + kind + "\\" + kind + ".cfg",
                  std::string("alias=LEAR\\") + kind);
    }
    static Tree Without(Tree tree, const std::string& directory) {
        std::erase_if(tree, [&](const auto& entry) { return entry.first.starts_with(directory); });
        return tree;
    }
};

TEST_F(HangarTest, RemovalAsksAtEveryStep) {
    AddUser("panel");
    AddUser("sound");
    const Tree before = drive.Tree();
    const std::string questions[] = {"WARNING!  The panel in this package...Do you want to cancel this command?",
                                     "WARNING!  The sound configuration...Do you want to cancel this command?",
                                     AskRemove};
    for (const std::string& last : questions) {
        for (const std::string& question : questions) {
            const bool isLast = question == last;
            user.Expect(question, isLast == (question != AskRemove) ? Answer::Yes : Answer::No);
            if (isLast)
                break;
        }
        Run(RemovePackageFromHangar);
        EXPECT_EQ(drive.Tree(), before);
    }
    EXPECT_EQ(display.listLines, std::vector<ListLine>{{PackageRefOf("Big Jet")}});
    user.Expect(questions[0], Answer::No).Expect(questions[1], Answer::No).Expect(AskRemove, Answer::Yes);
    user.Expect("Done.");
    Run(RemovePackageFromHangar);
    EXPECT_EQ(drive.Tree(), Without(before, "Hangar\\Jets\\Lear\\"));
}

TEST_F(HangarTest, AnInstalledPackageIsOfferedToTheOtherRemovalFirst) {
    Install();
    user.Expect(AskInstalled, Answer::Yes);
    ExpectRemoval().Expect("Done.").Expect(AskRemove, Answer::No);
    Run(RemovePackageFromHangar);
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Lear"));
    Install();

    const Tree before = drive.Tree();
    user.Expect(AskInstalled, Answer::No).Expect(AskRemove, Answer::Yes).Expect("Done.");
    Run(RemovePackageFromHangar);
    EXPECT_EQ(drive.Tree(), Without(before, "Hangar\\Jets\\Lear\\"));
}

TEST_F(HangarTest, CopiesToStagingAndRemovesOnlyWhatIsThere) {
    drive.Put("Staging\\notes.txt", "mine");
    const Tree hangar = drive.Tree("Hangar");
    const Tree before = drive.Tree();
    user.Expect("The staging area is not clear.  Are you sure?", Answer::No);
    Run(CopyPackageToStaging);
    EXPECT_EQ(drive.Tree(), before);

    user.Expect("The staging area is not clear.  Are you sure?", Answer::Yes).Expect(AskRemoveCopied, Answer::No);
    Run(CopyPackageToStaging);
    EXPECT_EQ(changes.staged, "Lear");
    EXPECT_EQ(drive.Tree("Hangar"), hangar);
    // A second aircraft is refused, also when the first comes during the question.
    const Tree staged = drive.Tree();
    const std::string refusal = "Staging can hold one aircraft only, and another one is there already:\n\n";
    user.Expect(refusal + drive.At("Staging\\aircraft\\Lear\\aircraft.cfg") + "...");
    Run(CopyPackageToStaging);
    EXPECT_EQ(drive.Tree(), staged);
    const std::string cfg = "Staging\\aircraft\\Lear\\aircraft.cfg", bytes = drive.Get(cfg);
    ASSERT_TRUE(drive.Files().Delete(drive.At(cfg)));
    user.Expect("The staging area is not clear.  Are you sure?", Answer::Yes)
        .Then([&] { drive.Put(cfg, bytes); })
        .Expect(refusal + "...");
    Run(CopyPackageToStaging);
    // A copy that fails, as its directory is taken, is followed by no question about removing.
    ASSERT_TRUE(drive.Files().Delete(drive.At(cfg)));
    user.Expect("The staging area is not clear.  Are you sure?", Answer::Yes)
        .Expect(drive.At("Staging\\aircraft\\Lear\\") + " exists already...");
    Run(CopyPackageToStaging);
    EXPECT_EQ(drive.Tree("Hangar"), hangar);
    ASSERT_TRUE(drive.Files().Rename(drive.At("Staging\\aircraft\\Lear"), drive.At("Staging\\aircraft\\x")));
    user.Expect("The staging area is not clear.  Are you sure?", Answer::Yes)
        .Expect(AskRemoveCopied, Answer::Yes)
        .Expect(AskRemove, Answer::Yes)
        .Expect("Done.");
    Run(CopyPackageToStaging);
    EXPECT_EQ(drive.Tree("Hangar"), Without(hangar, "Jets\\Lear\\"));
}

// What changes while the question about the removal stands.
TEST_F(HangarTest, OnlyWhatIsWholeInStagingGoesFromTheHangar) {
    const struct {
        const char *changed, *bytes; // no bytes: is deleted
        std::string named;
    } rows[] = {
        {"Hangar\\Jets\\Lear\\Documentation\\late.txt", "noted", "Hangar\\Jets\\Lear\\"},
        {"Staging\\aircraft\\Lear\\Model\\lear.mdl", nullptr, "Hangar\\Jets\\Lear\\Model\\lear.mdl"},
        {"Staging\\gauges\\LearClock.gau", "MZ", "Hangar\\Jets\\Lear\\Gauges\\LearClock.gau"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.changed);
        Tree before;
        user.Expect(AskRemoveCopied, Answer::Yes).Expect(AskRemove, Answer::Yes).Then([&] {
            if (row.bytes)
                drive.Put(row.changed, row.bytes);
            else
                ASSERT_TRUE(drive.Files().Delete(drive.At(row.changed)));
            before = drive.Tree();
        });
        user.Expect("The package is not in Staging as it is in the Hangar any more.  It was not removed.\n\n" +
                        drive.At(row.named) + "\n\n...",
                    MessageIcon::Exclamation);
        Run(CopyPackageToStaging);
        EXPECT_EQ(drive.Tree(), before);
        EXPECT_TRUE(DeleteTree(context, locations.StagingDir).empty());
        Select("Lear");
    }
}

TEST_F(HangarTest, ReferencesGaugesAndGuardsAreTold) {
    const auto isTold = [&](std::vector<HangarCommand> commands, const std::string& message) {
        for (const auto command : commands) {
            user.Expect(message);
            Run(command);
        }
    };
    const std::string used = " in this package is used (via alias) by an aircraft(s) in the Hangar as shown.";
    const Tree before = drive.Tree();
    isTold({CheckPackageReferences}, "Done checking for panel and sound aliases to this package.  None found.");
    isTold({CheckPackageGauges, RemovePackageFromSim}, "This package is not currently installed in Flight Simulator.");
    EXPECT_EQ(drive.Tree(), before);

    AddUser("sound");
    user.Expect("The sound configuration" + used).Expect("Done.");
    Run(CheckPackageReferences);
    EXPECT_EQ(display.listCaption, "sound used in ...");
    isTold({RenameHangarPackage}, "Cannot rename.  The sound configuration" + used);
    AddUser("panel");
    user.Expect("The panel" + used).Expect("Continue on to sound alias check?", Answer::No);
    Run(CheckPackageReferences);
    isTold({RenameHangarPackage}, "Cannot rename.  The panel" + used);

    drive.MakeDirectory("FS\\aircraft\\Lear");
    isTold({CheckPackageGauges}, "This package doesn't contain a panel to do a gauge crosscheck with.");
    isTold({RenameHangarPackage}, "Sorry, no renaming allowed while package is installed in MSFS...");
    drive.Put("FS\\aircraft\\Lear\\panel\\panel.cfg", "gauge00=none,1");
    user.ExpectInstallStatus("Lear ...\n\nPossible problem...none.gau\n\nInstallation complete with warning.");
    Run(CheckPackageGauges);
    package.ref = {};
    isTold({InstallPackage, CompressShownPackage, DecompressShownPackage, CheckPackageGauges},
           "Please select a package first.");
}

TEST_F(HangarTest, RenamingRefusesAndKeepsTheDialogOpen) {
    drive.MakeDirectory("Hangar\\Props\\Taken");
    drive.MakeDirectory("Hangar\\Props\\My own Plane");
    drive.MakeDirectory("FS\\aircraft\\Also in_Sim");
    drive.MakeDirectory("FS\\aircraft\\In_Sim");
    const Tree before = drive.Tree();
    struct Row {
        RenameEntry entry;
        const char* message;
        Answer answer = Answer::Ok;
    };
    const Row rows[] = {
        {{"", "x"}, "You must enter a package name."},
        {{" x", "x"}, "Invalid package Name."},
        {{"x", ""}, "You must enter an aircraft name."},
        {{"x", " x"}, "Invalid aircraft name."},
        {{"x", "\xD0\x96"}, "The aircraft name has a character that cannot be kept in aircraft.cfg..."},
        {{"con", "Lear 45"}, "\"con\" cannot be the name of a package.  Please use another name."},
        {{std::string(300, 'x'), "Lear 45"}, "\"xxx..."},
        {{"tAKEN", "New title"}, "Package name already exists in Props.  Please use another name."},
        {{"my own_plane", "Lear 45"},
         "Package name already exists in Props.  Please use another name.  "
         "(\"My own Plane\" and \"my own_plane\" are one name in Flight Simulator.)"},
        {{"Also_in Sim", "Lear 45"}, "Package name already exists in MSFS...", Answer::Cancel},
        {{"Other", "Lear 45 "}, "Package name already exists in Jets.  Please use another name."},
        {{"In Sim", "Lear 45"}, "Package name already exists in MSFS...", Answer::Cancel},
    };
    std::vector<RenameEntry> entries;
    for (const Row& row : rows)
        entries.push_back(row.entry);
    entries.push_back({"Lear", "Lear 45"}); // nothing new: closes
    user.ExpectRename({"Lear", "Lear 45"}, true, entries);
    for (const Row& row : rows)
        user.Expect(row.message, row.answer);
    Run(RenameHangarPackage);
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(HangarTest, RenamingChangesWhatIsNew) {
    drive.Put("Hangar\\Jets\\Lear\\aircraft.cfg", "[fltsim.0]\r\n  Title=A\r\n ; x\r\n[fltsim.1]\r\ntitle=B\r\n");
    Select("Lear");
    Tree hangar = drive.Tree("Hangar");
    user.ExpectRename({"Lear", "MULTI"}, true, {{"Lear", "New: *"}});
    Run(RenameHangarPackage);
    hangar["Jets\\Lear\\aircraft.cfg"] = "[fltsim.0]\r\n  Title=New: *\r\n ; x\r\n[fltsim.1]\r\ntitle=New: *\r\n";
    EXPECT_EQ(drive.Tree("Hangar"), hangar);

    Select("Lear");
    user.ExpectRename({"Lear", "MULTI"}, true, {{"\"LEAR\" 4.5*", "MULTI"}});
    Run(RenameHangarPackage);
    EXPECT_EQ(changes.renamed, PackageRefOf("Jets\\'LEAR' 4_5_"));
    Tree renamed;
    for (const auto& [name, bytes] : hangar)
        renamed[name.starts_with("Jets\\Lear\\") ? "Jets\\'LEAR' 4_5_" + name.substr(9) : name] = bytes;
    EXPECT_EQ(drive.Tree("Hangar"), renamed);

    // What is no text is left alone.
    const std::string odd("title=A\n\0", 9), oddPath = drive.At("Hangar\\Jets\\Odd\\aircraft.cfg");
    drive.Put("Hangar\\Jets\\Odd\\aircraft.cfg", odd);
    EXPECT_FALSE(RewriteTitle(context, ReadAircraftCfg(drive.Files(), oddPath), "New"));
    EXPECT_EQ(drive.Get("Hangar\\Jets\\Odd\\aircraft.cfg"), odd);

    // Of a name and a title both are changed or neither.
    Select("Other");
    hangar = drive.Tree("Hangar");
    const RenameEntry both{"New", "New title"};
    const auto fails = [&](const char* change, const char* part, const std::vector<RenameEntry>& entries) {
        FaultyFiles faulty(drive.Files());
        faulty.FailOn(change, part, FileFault::InUse);
        user.ExpectRename({"Other", "Other"}, true, entries)
            .Expect("A problem occurred during the rename process...", MessageIcon::Exclamation);
        Run(RenameHangarPackage, faulty);
        EXPECT_EQ(drive.Tree("Hangar"), hangar) << change;
        EXPECT_FALSE(changes.renamed);
    };
    fails("Rename", "Jets\\New", {both});
    fails("Replace", "aircraft.cfg", {both, {"Other", "Other"}});

    // A package without aircraft.cfg has no title; a directory that cannot be renamed stays.
    drive.Put("Hangar\\Jets\\Panel only\\Panel\\panel.cfg", "x");
    Select("Panel only");
    FaultyFiles readOnly(drive.Files());
    readOnly.StopAt(1, FileFault::ReadOnlyDisk);
    user.ExpectRename({"Panel only", ""}, false, {{"New", ""}})
        .Expect("A problem occurred during the rename process.  "
                "The file or directories involved may be set to READ ONLY mode (i.e. they're on a CD ROM).",
                MessageIcon::Exclamation);
    Run(RenameHangarPackage, readOnly);
    EXPECT_TRUE(drive.Has("Hangar\\Jets\\Panel only\\Panel\\panel.cfg"));
}

TEST_F(HangarTest, AHeldAliasFollowsItsPackage) {
    user.Expect("Done.\n\nNow you can easily...").ExpectRename({"Lear", "Lear 45"}, true, {{"Lear 2", "Lear 45"}});
    Run(CreateSoundAlias);
    Run(RenameHangarPackage);
    EXPECT_EQ(held.HeldSoundAlias, PackageRefOf("Jets\\Lear 2"));
    Select("Lear 2");
    user.Expect(AskRemove, Answer::Yes).Expect("Done.");
    Run(RemovePackageFromHangar);
    EXPECT_TRUE(held.HeldSoundAlias.IsNone());
}

TEST_F(HangarTest, UsersAreFoundUnderEitherSpelling) {
    PackageBuilder(drive, "Hangar\\Jets\\My own Lear\\");
    Select("My own Lear");
    drive.Put("Hangar\\Jets\\A_Jet\\Panel\\Panel.cfg", "x\r\n\tAlias = my_own_lear\\Panel");
    drive.Put("Hangar\\Jets\\B Jet\\Panel\\panel.cfg", "alias=my_own lear\\panel");
    drive.Put("Hangar\\Jets\\C\\panel.cfg", TwoByteText("; MY own LEAR\\panel\r\nalias=My own Lear\\panel"));
    drive.Put("Hangar\\Jets\\D\\Panel\\panel.cfg", "alias=own lear\\panel");
    drive.Put("Hangar\\Jets\\E\\Panel\\oldpanel.cfg", "alias=my_own_lear\\panel");
    drive.MakeDirectory("FS\\aircraft\\b_jet");
    user.Expect("Cannot rename.  The panel in this package is used...");
    Run(RenameHangarPackage);
    EXPECT_EQ(display.listCaption, "panel used in ...");
    EXPECT_EQ(display.listLines,
              (std::vector<ListLine>{{{"", "A_Jet"}}, {{"", "B Jet"}, true}, {{"", "Jets\\C\\panel.cfg"}}}));

    // What could not be looked at may be a user as well.
    for (const char* file : {"A_Jet\\Panel\\panel.cfg", "B Jet\\Panel\\panel.cfg", "C\\panel.cfg"})
        drive.Put(std::string("Hangar\\Jets\\") + file, "");
    if (!drive.MakeLink("Hangar\\Jets\\C\\x", "gone"))
        GTEST_SKIP() << "no links on this machine";
    const std::string unseen = "It could not be found out whether another aircraft uses the panel in this package, "
                               "because these could not be looked at ...\n\n" +
                               drive.At("Hangar\\Jets\\C\\x") + "  (a link that leads nowhere)\n\n...";
    user.Expect("Cannot rename.  " + unseen).Expect(unseen);
    Run(RenameHangarPackage);
    Run(CheckPackageReferences);
    user.Expect("WARNING!  " + unseen + "Do you want to cancel this command?", Answer::No)
        .Expect(AskRemove, Answer::No);
    Run(RemovePackageFromHangar);
}

TEST_F(HangarTest, RunsTheFirstSimulatorOfTheList) {
    user.Expect("Flight Simulator executable not found.  Please check MSFS location supplied to Korvadex.",
                MessageIcon::Exclamation);
    RunSimulator(context);
    drive.Fill("FS", "fs2002.exe\\, fltsim98.exe=MZ, CFS2.EXE=MZ");
    RunSimulator(context);
    EXPECT_EQ(launcher.started, std::vector<std::string>{"run " + drive.At("FS\\cfs2.exe")});
    EXPECT_EQ(display.status, drive.At("FS\\cfs2.exe is being started."));
    launcher.simulatorRefusal = "Wine is not installed.";
    user.Expect("Wine is not installed.", MessageIcon::Exclamation);
    RunSimulator(context);
}

} // namespace korvadex::test
