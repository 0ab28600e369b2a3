// The commands that go over all packages, and what the program does around an import.
#include "sim/hangar_commands.h"
#include "tests/support/faulty_files.h"
#include "tests/support/package_builder.h"
#include "tests/support/program_fixture.h"

namespace korvadex::test {
namespace {

constexpr const char* AskUninstallAll =
    "Uninstall all packages from Hangar?  If you want to make sure all packages are uninstalled...";

class BatchCommands : public ProgramTest {
  protected:
    BatchCommands() {
        for (const char* package : {"Jets\\A Jet", "Jets\\B Jet", "Jets\\C Jet", "Props\\Cub"})
            drive.Put(std::string("Hangar\\") + package + "\\texture\\t.bmp", std::string(900, 't'));
        drive.MakeDirectory("Hangar\\Empty");
    }
    std::map<std::string, std::string> expected;
};

TEST_F(BatchCommands, UninstallKeepsWhatOthersNeedAndNamesIt) {
    for (const char* name : {"A_Jet", "B Jet", "Cub"})
        drive.Put(std::string("FS\\aircraft\\") + name + "\\texture\\t.bmp", std::string(900, 't'));
    drive.Put("FS\\aircraft\\B Jet\\flights\\my.flt", "saved");
    drive.Put("FS\\aircraft\\Mine\\panel\\panel.cfg", "alias=Cub\\panel");
    Start();
    expected = drive.Tree();
    Select("Jets", 1);
    program->GoToStaging();
    user.Expect(AskUninstallAll, Answer::No).Then([&] { EXPECT_EQ(form.view.header, std::string(HangarHeader)); });
    program->RunCommand("mnuUninstallAll");
    EXPECT_EQ(drive.Tree(), expected);

    // What could not be looked at is named once.
    if (drive.MakeLink("FS\\aircraft\\Mine\\odd", "gone")) {
        const std::string unknown = ": it could not be found out whether another aircraft uses it\n";
        user.Expect(AskUninstallAll, Answer::Yes)
            .Expect("Cannot remove.  The panel in this package...")
            .Expect("The following packages were kept ...\n\nA Jet" + unknown + "B Jet" + unknown +
                        "\nThese could not be looked at, and may use what the packages have ...\n\n" +
                        drive.At("FS\\aircraft\\Mine\\odd") + "  (a link that leads nowhere)\n\nPlease make sure...",
                    MessageIcon::Exclamation)
            .Expect("Done.");
        program->UninstallAll();
        ASSERT_TRUE(drive.Files().Delete(drive.At("FS\\aircraft\\Mine\\odd")));
        EXPECT_EQ(drive.Tree(), expected);
    }

    user.Expect(AskUninstallAll, Answer::Yes)
        .Expect("Cannot remove.  The panel in this package...")
        .Expect("The following packages were kept ...\n\nB Jet: " + drive.At("FS\\aircraft\\B Jet\\") +
                    " holds files that the package doesn't have, such as flights\\my.flt",
                MessageIcon::Exclamation)
        .Expect("Done.");
    program->UninstallAll();
    std::erase_if(expected, [](const auto& entry) { return entry.first.starts_with("FS\\aircraft\\A_Jet"); });
    EXPECT_EQ(drive.Tree(), expected);
    EXPECT_EQ(form.status,
              "1 removed, 1 skipped (not installed), 1 kept because of an alias, 1 kept for other reasons.");
    EXPECT_EQ(form.PackageLines(), (std::vector<std::string>{"A Jet", "< B Jet >", "C Jet"}));
    EXPECT_EQ(form.view.packageIndex, 1);
    EXPECT_EQ(Shown(), drive.At("Hangar\\Jets\\B Jet\\"));

    ASSERT_TRUE(drive.Files().Delete(drive.At("FS\\aircraft\\Mine\\panel\\panel.cfg")));
    user.Expect("Uninstall all packages in current category from Hangar?...", Answer::Yes).Expect("Done.");
    Select("Props", 0);
    program->RunCommand("mnuUninstallCategory");
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Cub"));
    EXPECT_TRUE(drive.Has("FS\\aircraft\\B Jet"));
}

TEST_F(BatchCommands, UninstallTakesBorrowersBeforeTheirLenders) {
    // Cub borrows from A Jet, which borrows from C Jet; B Jet lends to somebody else's.
    const auto put = [&](const std::string& name, const std::string& panel) {
        const std::string category = name == "Cub" ? "Props\\" : "Jets\\";
        for (const auto& place : {"Hangar\\" + category + name, "FS\\aircraft\\" + name}) {
            drive.Put(place + "\\texture\\t.bmp", std::string(900, 't'));
            drive.Put(place + "\\panel\\panel.cfg", panel);
        }
    };
    put("A Jet", "alias=C Jet\\panel\r\n");
    put("B Jet", "x");
    put("C Jet", "x");
    put("Cub", "alias=A Jet\\panel\r\n");
    drive.Put("FS\\aircraft\\Mine\\panel\\panel.cfg", "alias=B Jet\\panel");
    Start();
    user.Expect(AskUninstallAll, Answer::Yes).Expect("Cannot remove.  The panel in this package...").Expect("Done.");
    program->UninstallAll();
    EXPECT_EQ(form.status, "3 removed, 0 skipped (not installed), 1 kept because of an alias.");
    EXPECT_TRUE(drive.Has("FS\\aircraft\\B Jet"));
    EXPECT_FALSE(drive.Has("FS\\aircraft\\C Jet"));
}

TEST_F(BatchCommands, WhatCannotBeGoneThroughIsLeftAndNamed) {
    drive.Fill("Hangar", "Jets\\B Jet\\a\\x.mdl=1, Jets\\B Jet\\b\\x.mdl=2, Props\\A Jet\\a.air=x");
    for (const char* name : {"A_Jet", "B Jet"})
        drive.Put(std::string("FS\\aircraft\\") + name + "\\texture\\t.bmp", std::string(900, 't'));
    drive.Put("FS\\aircraft\\A_Jet\\my.flt", "saved");
    const std::string twins = "Jets\\B Jet: it holds two files of one name, " +
                              drive.At("Hangar\\Jets\\B Jet\\a\\x.mdl") + " and " +
                              drive.At("Hangar\\Jets\\B Jet\\b\\x.mdl"),
                      mine = ": " + drive.At("FS\\aircraft\\A_Jet\\ holds files that the package doesn't have...");
    Start();
    Select("Jets", 0);
    auto before = drive.Tree();
    user.Expect(AskUninstallAll, Answer::Yes)
        .Expect("The following packages were kept ...\n\nJets\\A Jet" + mine + "\n" + twins.substr(5) +
                    "\nProps\\A Jet" + mine,
                MessageIcon::Exclamation)
        .Expect("Done.");
    program->UninstallAll();
    EXPECT_EQ(drive.Tree(), before);
    EXPECT_EQ(form.status,
              "0 removed, 2 skipped (not installed), 0 kept because of an alias, 3 kept for other reasons.");

    user.Expect("Compress all packages in Hangar?...", Answer::Yes)
        .Then([&] { ASSERT_TRUE(drive.Files().Rename(drive.At("Hangar\\Jets\\C Jet"), drive.At("Away"))); })
        .Expect("The following packages were left as they are ...\n\n" + twins.substr(5) +
                    "\nC Jet: it no longer seems to be in the Hangar",
                MessageIcon::Exclamation)
        .Expect("Done.");
    program->RunCommand("mnuCompressAll");
    EXPECT_TRUE(drive.Has("Hangar\\Props\\Cub\\kx_compression.txt"));
    EXPECT_EQ(form.ends, 0);

    user.Expect("Your Hangar directory location seems to be invalid as a duplicate filename condition...\n\n" +
                    drive.At("Hangar\\Jets\\B Jet\\a\\x.mdl") + "\n\n" + drive.At("Hangar\\Jets\\B Jet\\b\\x.mdl") +
                    "\n\nThis is a dangerous situation.  Korvadex will now stop...",
                MessageIcon::Critical);
    program->ChoosePackage(1);
    EXPECT_EQ(form.ends, 1);
}

TEST_F(BatchCommands, UninstallNamesTheGaugesThatStay) {
    drive.Fill("", "Hangar\\Jets\\A Jet\\Gauges\\clock.gau=MZ, FS\\gauges\\clock.gau=MZ");
    drive.Put("FS\\aircraft\\A_Jet\\texture\\t.bmp", std::string(900, 't'));
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Delete", "clock.gau", FileFault::InUse);
    PutSettings();
    ASSERT_TRUE(Make(faulty).Start());
    user.Expect(AskUninstallAll, Answer::Yes)
        .Expect("The following gauges could not be removed ...\n\n" + drive.At("FS\\gauges\\clock.gau") +
                    " (another program is using it)...",
                MessageIcon::Exclamation)
        .Expect("Done.");
    program->UninstallAll();
    EXPECT_EQ(form.status, "1 removed, 3 skipped (not installed), 0 kept because of an alias.");
    EXPECT_TRUE(drive.Has("FS\\gauges\\clock.gau"));

    // Without a gauges directory there is none to name.
    ASSERT_TRUE(drive.Files().Rename(drive.At("FS\\gauges"), drive.At("FS\\elsewhere")));
    drive.Put("FS\\aircraft\\A_Jet\\texture\\t.bmp", std::string(900, 't'));
    user.Expect(AskUninstallAll, Answer::Yes).Expect("Done.");
    program->UninstallAll();
    EXPECT_FALSE(drive.Has("FS\\aircraft\\A_Jet"));
}

TEST_F(BatchCommands, CompressAllDoesWhatIsLeftToDo) {
    drive.Put("Hangar\\Jets\\B Jet\\kx_compression.txt", "3 Meg have..."); // and an unpacked bitmap
    Start();
    const auto before = drive.Tree();
    Select("Jets", 2);
    user.Expect("Compress all packages in Hangar?...", Answer::Yes).Expect("Done.");
    program->CompressAll();
    EXPECT_EQ(form.view.sizeText, "0 Meg (0 Meg compressed)");
    EXPECT_EQ(form.view.packageIndex, 2);
    const auto unpacked = [&] {
        std::vector<std::string> names;
        for (const auto& [name, bytes] : drive.Tree("Hangar"))
            if (name.ends_with(".bmp") && bytes.size() >= 900)
                names.push_back(name);
        return names;
    };
    EXPECT_THAT(unpacked(), testing::IsEmpty());
    program->RunCommand("Compress"); // nothing is left to do: nothing is said
    drive.Put("Hangar\\Jets\\C Jet\\texture\\new.bmp", std::string(900, 'n'));
    user.Expect("Done.");
    program->RunCommand("Compress");
    EXPECT_THAT(unpacked(), testing::IsEmpty());
    ASSERT_TRUE(drive.Files().Delete(drive.At("Hangar\\Jets\\C Jet\\texture\\new.bmp")));

    user.Expect("Done.").Then([&] { EXPECT_EQ(form.view.header, std::string(HangarHeader)); });
    program->GoToStaging();
    program->RunCommand("Decompress"); // of the Hangar on either side
    EXPECT_EQ(form.view.sizeText, "0 Meg");

    user.Expect("Decompress all packages in the Hangar?...", Answer::Yes).Expect("Done.");
    program->RunCommand("mnuDecompressAll");
    expected = before;
    expected.erase("Hangar\\Jets\\B Jet\\kx_compression.txt");
    EXPECT_EQ(drive.Tree(), expected);
}

TEST_F(BatchCommands, AnImportBringsItsGaugesAndItsName) {
    drive.Put("FS\\aircraft\\My_Plane\\aircraft.cfg", "title=x\r\n");
    drive.Put("FS\\aircraft\\My_Plane\\panel\\panel.cfg", "gauge00=both!x\r\ngauge01=gone\r\n");
    for (const char* gauge : {"both.gau", "both.cab", "other.gau"})
        drive.Put(std::string("FS\\gauges\\") + gauge, gauge);
    Start();
    user.ExpectImport({"My_Plane"}, {0})
        .ExpectImportStatus("My_Plane ...\n\nPossible problem ...\n\n...")
        .Expect("Done.");
    program->SetPackageName("The last package"); // the name that is still there is not this one's
    program->RunCommand("ImportFromMSFS");
    EXPECT_EQ(drive.Outline("Staging\\gauges"), "both.cab=both.cab, both.gau=both.gau");
    EXPECT_EQ(form.view.packageName, "My_Plane");
    program->SetPackageName("Mine");
    program->Refresh();
    EXPECT_EQ(form.view.packageName, "Mine");
    EXPECT_EQ(form.view.caption, "Korvadex     (Staging Contains Files)");
    EXPECT_EQ(program->Package().ComponentFiles[Gauges].size(), 2u);

    // A second one is asked about; one that is reduced to a single configuration keeps no name.
    drive.Put("FS\\aircraft\\Twin\\aircraft.cfg",
              "[fltsim.0]\r\ntitle=One\r\nmodel=\r\n[fltsim.1]\r\ntitle=Two\r\nmodel=2\r\n");
    drive.MakeDirectory("FS\\aircraft\\Twin\\model");
    const char* add = "Staging currently contains files.  Proceed?  (select 'Yes' if you are adding to a package)";
    const auto staged = drive.Tree("Staging");
    user.Expect(add, Answer::No);
    program->ImportIntoStaging();
    EXPECT_EQ(drive.Tree("Staging"), staged);
    user.Expect("Are you sure you want to erase everything in the staging directory?", Answer::Yes)
        .Expect("Done.")
        .ExpectImport({"My_Plane", "Twin"}, {1})
        .ExpectConfigurations({"One  (fltsim.0)", "Two  (fltsim.1)"}, 0)
        .Expect("Done.");
    program->RemoveAllFromStaging();
    program->ImportIntoStaging();
    EXPECT_EQ(form.view.packageName, "One");
    EXPECT_FALSE(drive.Has("Staging\\KX_MSFSImportName.txt"));
}

TEST_F(BatchCommands, TheWindowFollowsARenameACopyAndARemoval) {
    Start();
    Select("Jets", 1);
    user.ExpectRename({"B Jet", ""}, false, {{"Zeta", ""}});
    program->RunCommand("mnuRename");
    EXPECT_EQ(form.PackageLines(), (std::vector<std::string>{"A Jet", "C Jet", "Zeta"}));
    EXPECT_EQ(Shown(), drive.At("Hangar\\Jets\\Zeta\\"));
    user.Expect("Done.\n\nWould you like to remove this package from the hangar?", Answer::Yes)
        .Expect("Are you sure you want to remove this package from the hangar?", Answer::Yes)
        .Expect("Done.");
    program->RunCommand("mnuCopyToStaging");
    EXPECT_EQ(form.PackageLines(), (std::vector<std::string>{"A Jet", "C Jet"}));
    EXPECT_EQ(form.view.packageName, "Zeta");
    EXPECT_EQ(form.view.caption, "Korvadex     (Staging Contains Files)");
    EXPECT_TRUE(drive.Has("Staging\\aircraft\\Zeta\\Texture\\t.bmp"));
    drive.Put("FS\\fs2002.exe", "MZ");
    program->RunCommand("RunMSFS");
    EXPECT_EQ(launcher.started, std::vector<std::string>{"run " + drive.At("FS\\fs2002.exe")});
    user.Expect("This may take a minute or two...", Answer::Cancel);
    program->RunCommand("UnusedGauges");
}

} // namespace
} // namespace korvadex::test
