#include "package/aircraft_cfg.h"
#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "tests/support/faulty_files.h"
#include "tests/support/package_builder.h"
#include "tests/support/program_fixture.h"
#include "tests/support/zip_builder.h"

#include <set>

namespace korvadex::test {
namespace {

using Names = std::vector<std::string>;

constexpr const char* Erase = "Are you sure you want to erase everything in the staging directory?";
constexpr const char* AskClear = "Done.\n\nWould you like to clear the Staging area at this point?";
constexpr const char* AskAdd =
    "Staging currently contains files.  Proceed?  (select 'Yes' if you are adding to a package)";

class StagingCommands : public ProgramTest {
  protected:
    StagingCommands() { drive.Fill("Hangar", "Jets\\, Props\\Cessna 172\\"); }
    // Shows the Staging side with an aircraft in it.
    void StartInStaging() {
        PackageBuilder(drive, "Staging\\ZIP_lear.zip\\");
        Start();
        program->GoToStaging();
    }
    void Copy(const std::string& name) {
        program->SetPackageName(name);
        program->CopyStagingToHangar();
    }
};

TEST_F(StagingCommands, EveryRefusalOfACopyLeavesTheTreeAsItIs) {
    StartInStaging();
    drive.MakeDirectory("FS\\aircraft\\Big_Bird");
    const auto before = drive.Tree();
    const struct {
        const char *typed, *message, *cleaned;
        Answer answer = Answer::Ok;
    } rows[] = {
        {"   ", "Please enter a package name.", ""},
        {" nul ", "\"nul\" cannot be the name of a package.  Please use another name.", "nul"},
        {"~kx~scratch", "\"~kx~scratch\" cannot be the name...", "~kx~scratch"},
        {"__MACOSX", "\"__MACOSX\" cannot be the name...", "__MACOSX"}, // no list would show it
        {"CESSNA 172", "Package name already exists in Props.  Please use another name.", "CESSNA 172"},
        {"Big Bird", "Package name already exists in MSFS...", "Big Bird", Answer::Cancel},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.typed);
        user.Expect(row.message, row.answer, row.answer == Answer::Ok ? MessageIcon::Exclamation : MessageIcon::None);
        Copy(row.typed);
        EXPECT_EQ(form.view.packageName, row.cleaned);
        EXPECT_EQ(drive.Tree(), before);
    }
    user.Expect(AskClear, Answer::No);
    Copy(" a.b/c*\"d\"\\:?<>| ");
    EXPECT_EQ(form.view.packageName, "a_b_c_'d'______");
    user.Expect("Package name already exists in MSFS...").Expect(AskClear, Answer::No);
    Copy("Big Bird");
    EXPECT_TRUE(drive.Has("Hangar\\Jets\\Big Bird\\aircraft.cfg"));
}

TEST_F(StagingCommands, WithoutACategoryNothingIsCopied) {
    StartInStaging();
    const auto before = drive.Tree("Staging");
    ASSERT_TRUE(drive.Files().RemoveDirectory(drive.At("Hangar\\Jets")));
    user.Expect("The package category Jets no longer seems to be in the Hangar.", MessageIcon::Exclamation);
    Copy("Lear");
    for (const char* directory : {"Hangar\\Props\\Cessna 172", "Hangar\\Props"})
        ASSERT_TRUE(drive.Files().RemoveDirectory(drive.At(directory)));
    program->Refresh();
    user.Expect("Please select a package category.", MessageIcon::Exclamation);
    Copy("Lear");
    EXPECT_EQ(drive.Outline("Hangar"), "");
    EXPECT_EQ(drive.Tree("Staging"), before);
}

TEST_F(StagingCommands, WhatWasSettledWhileLoadingIsCopiedAsItIs) {
    const std::string big(2'000'000, 'x');
    drive.Fill("Staging", "a\\Thumbs.db=1, b\\thumbs.db=22, a\\odd.xyz=1");
    drive.Put("Staging\\b\\odd.xyz", big);
    user.Expect("A duplicate filename condition has occurred...", Answer::No);
    StartInStaging();
    EXPECT_EQ(form.view.sizeText, "2 Meg");
    user.Expect(AskClear, Answer::No);
    Copy("Lear");
    auto expected = PackageBuilder::Files();
    expected["Unrecognized Files\\odd.xyz"] = big;
    for (const auto& [name, bytes] : expected)
        EXPECT_EQ(drive.Get("Hangar\\Jets\\Lear\\" + name), bytes) << name;
    EXPECT_FALSE(drive.Has("Hangar\\Jets\\Lear\\Unrecognized Files\\Thumbs.db"));
}

TEST_F(StagingCommands, ADuplicateThatCannotBeDeletedStaysListedAndKeepsTheCopyBack) {
    drive.Fill("Staging", "a\\x.mdl=1, b\\X.mdl=22");
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Delete", "x.mdl", FileFault::InUse);
    PutSettings();
    ASSERT_TRUE(Make(faulty).Start());
    user.Expect("A duplicate filename condition has occurred...", Answer::No);
    program->GoToStaging();
    EXPECT_EQ(program->Package().ComponentFiles[Model].size(), 2u);
    const auto before = drive.Tree();
    user.Expect("Staging holds files of one name, which a package cannot.  Nothing was copied.\n\n" +
                    drive.At("Staging\\a\\x.mdl") + "\n" + drive.At("Staging\\b\\X.mdl") + "\n\n...",
                MessageIcon::Exclamation);
    Copy("Lear");
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(StagingCommands, WhatCannotBeCopiedIsSaidBeforeAnythingIsAsked) {
    drive.Fill("Staging", "empty\\, KX_MSFSImportName.txt=Lear");
    drive.MakeDirectory("FS\\aircraft\\Lear"); // "exists in MSFS" would be asked
    Start();
    program->GoToStaging();
    const auto expect = [&](const std::string& message) {
        user.Expect(message, MessageIcon::Exclamation);
        Copy("Lear");
        EXPECT_EQ(drive.Outline("Hangar"), "Jets\\, Props\\Cessna 172\\");
    };
    expect("Staging is empty.  There is nothing to copy to the Hangar.");
    drive.Fill("Staging", "a.air=x, b.air=x");
    for (int i = 0; i <= MaxSubdirectoriesPerLevel; ++i)
        drive.MakeDirectory("Staging\\" + std::to_string(i));
    expect("...\n\nNothing was copied.");
}

TEST_F(StagingCommands, NothingIsCopiedBeforeAConfigurationIsChosen) {
    drive.Put("Staging\\aircraft.cfg", "[fltsim.0]\r\ntitle=Blue\r\n[fltsim.1]\r\ntitle=\"Red\"\r\ntexture=red\r\n");
    drive.Fill("Staging", "texture\\skin.bmp=x, texture.red\\skin.bmp=x, model.cfg=, panel.cfg=, sound.cfg=");
    const auto expectQuestion = [&](std::optional<int> row) {
        user.ExpectConfigurations({"Blue  (fltsim.0)", "Red  (fltsim.1)"}, row);
    };
    Start();
    const auto before = drive.Tree();
    expectQuestion(std::nullopt);
    program->GoToStaging();
    EXPECT_EQ(program->Package().aircraftTitle, ChoiceOpenTitle);
    expectQuestion(std::nullopt);
    program->Refresh();
    program->CreatePackageNotes(); // what loads Staging by the way does not ask
    drive.Put("FS\\fs2002.exe", "MZ");
    user.Expect("This aircraft has several configurations.  One of them has to be chosen first.  Please press F5.");
    program->EditInformation();
    program->DeletePackageNotes();
    expectQuestion(std::nullopt);
    user.Expect("This aircraft has several configurations...Nothing was copied.", MessageIcon::Exclamation);
    Copy("");
    ASSERT_TRUE(drive.Files().Delete(drive.At("FS\\fs2002.exe")));
    EXPECT_EQ(drive.Tree(), before);
    expectQuestion(1);
    user.Expect(AskClear, Answer::No);
    program->RunCommand("Install");
    EXPECT_EQ(form.view.packageName, "Red") << "proposed by the choice";
    EXPECT_TRUE(drive.Has("Hangar\\Jets\\Red\\Texture\\skin.bmp"));
}

TEST_F(StagingCommands, WhatComesIntoAnEmptyStagingProposesAName) {
    const struct {
        const char *archive, *typed, *cfg, *name;
        int row = -1;
    } rows[] = {
        {"zipped.zip", "", "[fltsim.0]\r\ntitle= \"Lear: 45\" \r\n", "Lear_ 45"},
        {"Extra v2.0.ZIP", "", nullptr, "Extra v2_0"},
        {"device.zip", "", "[fltsim.0]\r\ntitle=NUL\r\n", "device"},
        {"two.zip", "", "[fltsim.0]\r\ntitle=A\r\n[fltsim.1]\r\ntitle=B\r\n", "B", 1},
        {"two.zip", "Mine", "[fltsim.0]\r\ntitle=A\r\n[fltsim.1]\r\ntitle=B\r\n", "Mine", 1},
    };
    Start();
    program->GoToStaging();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ZipBuilder zip;
        zip.Add("readme.txt", "x");
        if (row.cfg)
            zip.Add("aircraft.cfg", row.cfg);
        const std::string archive = std::string("Downloads\\") + row.archive;
        drive.Put(archive, zip.Bytes());
        program->SetPackageName(row.typed);
        if (row.row >= 0)
            user.ExpectConfigurations({"A  (fltsim.0)", "B  (fltsim.1)"}, row.row);
        program->ProcessArchives({drive.At(archive)});
        EXPECT_EQ(form.view.packageName, row.name);
        EXPECT_EQ(form.view.proposedName == row.name, !*row.typed) << "marked";
        user.Expect(AskAdd, Answer::Yes);
        drive.Put("Downloads\\more.zip", ZipBuilder().Add("more.txt", "x").Bytes());
        program->ProcessArchives({drive.At("Downloads\\more.zip")});
        EXPECT_EQ(form.view.packageName, row.name);
        DeleteTree(context, locations.StagingDir); // by another program
        program->ShowNextImage();
        EXPECT_EQ(form.view.packageName, "");
    }
}

TEST_F(StagingCommands, EachMissingFileIsAskedFor) {
    drive.Put("Staging\\readme.txt", "x");
    Start();
    program->GoToStaging();
    const char* const questions[] = {"The aircraft.cfg file is missing...Are you sure you want to continue?",
                                     "The model.cfg file is missing...if this package is an aircraft...",
                                     "The panel.cfg file is missing...if this package should contain a panel...",
                                     "The sound.cfg file is missing...and should have sound..."};
    const auto before = drive.Tree();
    for (const char* cancelled : questions) {
        for (const char* question : questions) {
            user.Expect(question, question == cancelled ? Answer::Cancel : Answer::Ok, MessageIcon::None);
            if (question == cancelled)
                break;
        }
        Copy("Notes");
        EXPECT_EQ(drive.Tree(), before);
    }
    for (const char* question : questions)
        user.Expect(question);
    user.Expect(AskClear, Answer::No, MessageIcon::None);
    Copy("Notes");
    EXPECT_EQ(drive.Outline("Hangar\\Jets"), "Notes\\Documentation\\readme.txt=x");
    EXPECT_EQ(drive.Outline("Staging"), "readme.txt=x");
}

TEST_F(StagingCommands, WhatWasCopiedToTheHangarIsCleared) {
    StartInStaging();
    drive.Put("Staging\\ZIP_lear.zip\\late.txt", "put there after loading");
    user.Expect(AskClear, Answer::Yes, MessageIcon::None)
        .Expect(Erase, Answer::Yes, MessageIcon::None)
        .Expect("Done.", MessageIcon::None);
    program->SetPackageName("Lear 45");
    program->RunCommand("Install");

    EXPECT_TRUE(drive.Has("Hangar\\Jets\\Lear 45\\Gauges\\LearClock.gau"));
    EXPECT_TRUE(drive.Has("Hangar\\Jets\\Lear 45\\Documentation\\late.txt"));
    EXPECT_TRUE(drive.Names("Staging").empty());
    EXPECT_EQ(form.view.caption, "Korvadex");
    EXPECT_EQ(form.PackageLines(), Names{"Lear 45"});
}

TEST_F(StagingCommands, WhatArrivesDuringTheCopyIsNotCleared) {
    StartInStaging();
    const auto arrives = [this](const char* name) { return [=, this] { drive.Put(name, "x"); }; };
    user.Expect(AskClear, Answer::Yes).Then(arrives("Staging\\ZIP_lear.zip\\late.txt"));
    user.Expect("The Staging directory has changed since the package was copied.  It was not cleared.");
    Copy("Lear");
    EXPECT_TRUE(drive.Has("Staging\\ZIP_lear.zip\\late.txt"));
    EXPECT_FALSE(drive.Has("Hangar\\Jets\\Lear\\Documentation\\late.txt"));
    user.Expect(AskClear, Answer::Yes).Expect(Erase, Answer::Yes).Then(arrives("Staging\\later.txt"));
    user.Expect("The Staging directory has changed since...");
    Copy("Lear 2");
    EXPECT_TRUE(drive.Has("Staging\\later.txt"));
}

TEST_F(StagingCommands, StagingStaysWhenThePackageHasGoneMeanwhile) {
    StartInStaging();
    const auto before = drive.Tree("Staging");
    user.Expect(AskClear, Answer::Yes).Expect(Erase, Answer::Yes).Then([this] {
        EXPECT_TRUE(DeleteTree(context, drive.At("Hangar\\Jets\\Lear\\Model\\")).empty());
    });
    user.Expect("The new package is not complete any more.  Staging was not cleared.\n\n" +
                    drive.At("Staging\\ZIP_lear.zip\\Model\\lear.mdl") +
                    "\n\nPlease remove it from the Hangar and copy it again, or copy it under another name.",
                MessageIcon::Exclamation);
    Copy("Lear");
    EXPECT_EQ(drive.Tree("Staging"), before);
}

TEST_F(StagingCommands, ErasingEverything) {
    StartInStaging();
    const auto before = drive.Tree();
    user.Expect(Erase, Answer::No);
    program->RemoveAllFromStaging();
    EXPECT_EQ(drive.Tree(), before);

    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At("Staging\\ZIP_lear.zip\\Lear.air"), true));
    user.Expect(Erase, Answer::Yes).Expect("Done.");
    program->RunCommand("RemovePackage");
    EXPECT_TRUE(drive.Names("Staging").empty());
    EXPECT_TRUE(program->Package().tree.files.empty());
    EXPECT_EQ(form.view.caption, "Korvadex");
}

TEST_F(StagingCommands, WhatIsNotErasedIsNamed) {
    PackageBuilder(drive, "Staging\\");
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Delete", ".wav", FileFault::InUse);
    PutSettings();
    ASSERT_TRUE(Make(faulty).Start());
    program->GoToStaging();
    const auto expectNames = [&](const std::string& names) {
        user.Expect("The following could not be deleted ...\n\n" + names + "\n\nPlease close the program...",
                    MessageIcon::Exclamation);
    };
    const std::string click = drive.At("Staging\\Sound\\Click.wav (another program is using it)"),
                      engine = drive.At("Staging\\Sound\\Engine.wav (another program is using it)");
    user.Expect("Are you sure you want to erase the sound components...", Answer::Yes);
    expectNames(click + "\n" + engine);
    program->RemoveSoundFromStaging();
    user.Expect(Erase, Answer::Yes);
    expectNames(click + "\n" + engine);
    program->RemoveAllFromStaging();
    EXPECT_EQ(drive.Outline("Staging"), "Sound\\Click.wav=RIFF gauge click, Sound\\Engine.wav=RIFF engine");
}

TEST_F(StagingCommands, ErasingOneKindOfComponent) {
    const struct {
        const char *entry, *question, *afterwards;
        std::set<std::string> erased;
    } rows[] = {
        {"mnuRemovePanelFromStaging",
         "Are you sure you want to erase the panel components from the staging directory?",
         "There may be images of the panel remaining...",
         {"Gauges\\LearCab.cab", "Gauges\\LearClock.gau", "Panel\\LearPanel.bmp", "Panel\\panel.cfg",
          "Sound\\Click.wav", "more\\LAMP.BMP", "more\\oldpanel.cfg"}},
        {"mnuRemoveAircraftFromStaging",
         "Are you sure you want to erase the aircraft body components...",
         "There may be images of the aircraft remaining...",
         {"Lear.air", "Lear_check.txt", "Model\\lear.mdl", "Model\\model.cfg", "Texture\\Lear_t.bmp",
          "Texture\\lear.r8", "aircraft.cfg", "more\\file_id.diz", "more\\red.tx1"}},
        {"mnuRemoveSoundFromStaging",
         "Are you sure you want to erase the sound components...",
         nullptr,
         {"Sound\\Click.wav", "Sound\\Engine.wav", "Sound\\sound.cfg", "more\\oldsound.cfg"}},
    };
    Start();
    program->GoToStaging();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.question);
        PackageBuilder(drive, "Staging\\")
            .With("more\\oldpanel.cfg", "file=lamp.bmp\r\n")
            .With("more\\LAMP.BMP", "BM lamp")
            .With("more\\oldsound.cfg", "filename=click\r\n")
            .With("more\\file_id.diz", "x")
            .With("more\\red.tx1", "x");
        program->Refresh();
        const auto before = drive.Tree("Staging");
        user.Expect(row.question, Answer::No, MessageIcon::None);
        program->RunCommand(row.entry);
        EXPECT_EQ(drive.Tree("Staging"), before);

        user.Expect(row.question, Answer::Yes);
        if (row.afterwards)
            user.Expect(row.afterwards, MessageIcon::Information);
        user.Expect("Done.", MessageIcon::None);
        program->RunCommand(row.entry);
        auto expected = before;
        for (const auto& file : row.erased) {
            EXPECT_EQ(expected.erase(file), 1u) << file;
            EXPECT_FALSE(program->Package().PackageHasFile(LastPathComponent(file))) << file;
        }
        EXPECT_EQ(drive.Tree("Staging"), expected);

        user.Expect(row.question, Answer::Yes)
            .Expect("Staging holds nothing of that kind.  Nothing was deleted.", MessageIcon::None);
        program->RunCommand(row.entry);
    }
    user.Expect(Erase, Answer::Yes).Expect("Done.", MessageIcon::None);
    program->RemoveAllFromStaging();
    user.Expect("Staging is empty already.", MessageIcon::None);
    program->RemoveAllFromStaging();
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

TEST_F(StagingCommands, AnArchiveIsAddedOnRequest) {
    StartInStaging();
    const auto before = drive.Tree();
    user.Expect(AskAdd, Answer::No, MessageIcon::None);
    program->ProcessZipIntoStaging();
    user.Expect(AskAdd, Answer::Yes).ExpectZipFile(std::nullopt);
    program->ProcessZipIntoStaging();
    EXPECT_EQ(drive.Tree(), before);
    EXPECT_EQ(program->GetSettings().LastZipPath, "");

    drive.Put("Downloads\\extra.zip", ZipBuilder().Add("extra.txt", "more").Bytes());
    program->GoToHangar();
    user.Expect(AskAdd, Answer::Yes);
    program->ProcessArchives({drive.At("Downloads\\extra.zip")});
    EXPECT_EQ(drive.Get("Staging\\ZIP_extra.zip\\extra.txt"), "more");
    EXPECT_EQ(form.view.header, "S T A G I N G");
    EXPECT_EQ(program->Package().ComponentFiles[Documentation].size(), 3u);
    program->Shutdown();
    EXPECT_NE(SavedSettings().find("LOCATIONLASTZIP=" + drive.At("Downloads\\") + "\r\n"), std::string::npos);
}

TEST_F(StagingCommands, SeveralArchivesOneAfterTheOther) {
    Names paths;
    for (const std::string name : {"one", "two", "three"}) {
        paths.push_back(drive.At("Downloads\\" + name + ".zip"));
        drive.Put("Downloads\\" + name + ".zip", ZipBuilder().Add(name + ".txt", name).Bytes());
    }
    Start();
    user.Expect(AskAdd, Answer::No)
        .Then([this] { EXPECT_EQ(form.status, "two.zip  (2 of 3)"); })
        .Expect(AskAdd, Answer::Yes);
    program->ProcessArchives(paths);
    EXPECT_EQ(drive.Outline("Staging"), "ZIP_one.zip\\one.txt=one, ZIP_three.zip\\three.txt=three");
    EXPECT_EQ(form.status, "");
}

TEST_F(StagingCommands, TheFirstArchiveFromTheHangarSide) {
    Start();
    drive.Put("Downloads\\two.zip", ZipBuilder()
                                        .Add("a/aircraft.cfg", "[fltsim.0]\r\ntitle=A\r\n")
                                        .Add("b/aircraft.cfg", "[fltsim.0]\r\ntitle=B\r\n")
                                        .Bytes());
    user.ExpectZipFile(drive.At("Downloads\\two.zip"))
        .Expect("More than one aircraft configuration file (aircraft.cfg) was detected...")
        .Expect("Korvadex cannot handle more than one aircraft.cfg...", Answer::No)
        .Expect("Korvadex will now terminate since it cannot handle more than one aircraft.cfg...");
    program->RunCommand("ProcessZip");
    EXPECT_EQ(form.ends, 1);
    EXPECT_EQ(launcher.started, Names{"explore " + locations.StagingDir});
    EXPECT_TRUE(drive.Has("Staging\\ZIP_two.zip\\a\\aircraft.cfg"));
    EXPECT_NE(SavedSettings().find("Downloads"), std::string::npos);
}

} // namespace
} // namespace korvadex::test
