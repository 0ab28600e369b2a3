// Loading a package or Staging: duplicates, aircraft.cfg, aliases, warnings.
#include "package/aircraft_cfg.h"
#include "package/load_package.h"
#include "platform/text_file.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"

namespace korvadex::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr FileTime Noon{std::chrono::sys_days(std::chrono::year(2001) / 5 / 4) + std::chrono::hours(12)};

class LoadTest : public CommandTest {
  protected:
    LoadOutcome LoadStaging() { return LoadPackage(context, locations.StagingDir, true, package); }
    LoadOutcome LoadHangar() {
        return LoadPackage(context, locations.HangarDir + "Jets\\Lear\\", false, package);
    }

    void PutAt(const std::string& relative, const std::string& bytes, FileTime time = Noon) {
        drive.Put(relative, bytes);
        ASSERT_TRUE(drive.Files().SetTime(drive.At(relative), time));
    }
    std::vector<std::string> Listed(Group group) const {
        std::vector<std::string> names;
        for (const auto& file : package.ComponentFiles[static_cast<std::size_t>(group)])
            names.push_back(file.path.substr(drive.Root().size()));
        return names;
    }
    // What a load says of the tree must be what lies on the disk.
    void ExpectTrueListing() { EXPECT_FALSE(HasChangedOnDisk(drive.Files(), package)); }

    LoadedPackage package;
};

TEST_F(LoadTest, DocumentsOfOneNameAreAllKept) {
    drive.Put("Staging\\a\\readme.txt", "one");
    drive.Put("Staging\\b\\README.TXT", "two");
    drive.Put("Staging\\c\\readme.txt", "one"); // the bytes of the first
    drive.Put("Staging\\d\\readme.txt", "three");
    drive.Put("Staging\\d\\readme(1).txt", "taken");
    drive.Put("Staging\\b\\readme.air", "four"); // stands before the document, and after its new name
    drive.Put("Staging\\a\\index.html", "1");
    drive.Put("Staging\\b\\index.html", "2");
    LoadStaging();
    const auto tree = drive.Tree("Staging");
    std::vector<std::string> contents;
    for (const auto& [name, bytes] : tree) {
        if (!name.ends_with("\\"))
            contents.push_back(bytes);
    }
    EXPECT_THAT(contents, testing::UnorderedElementsAre("one", "two", "three", "four", "taken", "1", "2"));
    EXPECT_EQ(tree.at("d\\readme.txt"), "three") << "the last keeps its name";
    EXPECT_EQ(tree.at("d\\readme(1).txt"), "taken") << "no rename replaces a file";
    EXPECT_EQ(tree.at("b\\README(2).TXT"), "two");
    EXPECT_EQ(tree.at("a\\index(1).html"), "1");
    EXPECT_EQ(package.ComponentFiles[Documentation].size(), 6u);
    ExpectTrueListing();
}

TEST_F(LoadTest, StagingDuplicatesAreSettledByRuleOrQuestion) {
    const std::string stub = "[fltsim]\r\nalias=x\\panel\r\n", whole(1001, ';');
    PutAt("Staging\\a\\panel.cfg", stub);
    PutAt("Staging\\b\\panel.cfg", whole);
    PutAt("Staging\\a\\sound.cfg", whole);
    PutAt("Staging\\b\\sound.cfg", stub);
    PutAt("Staging\\a\\gyro.gau", "same");
    PutAt("Staging\\b\\gyro.gau", "same");
    PutAt("Staging\\a\\odd.gau", "AAAA");
    PutAt("Staging\\b\\odd.gau", "BBBB"); // same size and time, other bytes
    PutAt("Staging\\a\\x.mdl", "1");
    PutAt("Staging\\b\\X.MDL", "22");
    user.Expect("A duplicate filename condition has occurred.\n\nShould I use this file:\n\n" +
                    drive.At("Staging\\a\\x.mdl") + "  (Size: 1 Date: ...",
                Answer::No);
    user.Expect("A duplicate filename condition has occurred...", Answer::Yes);
    LoadStaging();
    EXPECT_THAT(user.transcript[0], HasSubstr(")\n\nInstead of this file? :\n\n" +
                                              drive.At("Staging\\b\\X.MDL") + "  (Size: 2 Date: "));
    EXPECT_THAT(drive.Names("Staging"), ElementsAre("a\\", "a\\gyro.gau", "a\\odd.gau", "a\\sound.cfg", "b\\",
                                                    "b\\X.MDL", "b\\panel.cfg"));
    EXPECT_EQ(package.PackagePanelAlias, "") << "the stub that went has no say";
    EXPECT_EQ(package.panelText, "None  (Original panel)");
    ExpectTrueListing();
}

TEST_F(LoadTest, OneAnswerCanServeAllFurtherDuplicates) {
    for (const char* name : {"1\\a.mdl", "2\\a.mdl", "1\\c.gau", "2\\c.gau"})
        PutAt(std::string("Staging\\") + name, name);
    user.Expect("A duplicate filename condition has occurred...", Answer::No, true);
    LoadStaging();
    EXPECT_THAT(drive.Names("Staging"), ElementsAre("1\\", "2\\", "2\\a.mdl", "2\\c.gau"));
}

TEST_F(LoadTest, DuplicateInTheHangarEndsTheProgramBeforeAnythingIsRenamed) {
    drive.Put("Hangar\\Jets\\Lear\\a\\readme.txt", "1");
    drive.Put("Hangar\\Jets\\Lear\\b\\readme.txt", "2");
    drive.Put("Hangar\\Jets\\Lear\\a\\x.gau", "1");
    drive.Put("Hangar\\Jets\\Lear\\b\\x.gau", "1");
    const auto before = drive.Tree();
    user.Expect(
        "Your Hangar directory location seems to be invalid as a duplicate filename condition occurred while "
        "loading components for a package:\n\n" +
            drive.At("Hangar\\Jets\\Lear\\a\\x.gau") + "\n\n" + drive.At("Hangar\\Jets\\Lear\\b\\x.gau") +
            "\n\nThis is a dangerous situation.  Korvadex will now stop.  Please restart Korvadex and double "
            "check the Hangar location.",
        Answer::Ok, MessageIcon::Critical);
    EXPECT_THROW(LoadHangar(), ProgramEnd);
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(LoadTest, HangarDocumentsNeverEndTheProgram) {
    drive.Put("Hangar\\Jets\\Lear\\a\\readme.txt", "same");
    drive.Put("Hangar\\Jets\\Lear\\b\\readme.txt", "same");
    drive.Put("Hangar\\Jets\\Lear\\a\\shot.jpg", "1");
    drive.Put("Hangar\\Jets\\Lear\\b\\shot.jpg", "2");
    FaultyFiles readOnly(drive.Files());
    readOnly.StopAt(1, FileFault::ReadOnlyDisk);
    CommandContext onDisc{readOnly, launcher, locations, limits, user, window};
    LoadPackage(onDisc, locations.HangarDir + "Jets\\Lear\\", false, package);
    EXPECT_EQ(package.ComponentFiles[Documentation].size(), 2u);
    EXPECT_EQ(package.ComponentFiles[Images].size(), 2u);
    LoadHangar();
    EXPECT_THAT(Listed(Images),
                ElementsAre("Hangar\\Jets\\Lear\\a\\shot(1).jpg", "Hangar\\Jets\\Lear\\b\\shot.jpg"));
    EXPECT_THAT(Listed(Documentation),
                ElementsAre("Hangar\\Jets\\Lear\\a\\readme.txt", "Hangar\\Jets\\Lear\\b\\readme.txt"));
}

TEST_F(LoadTest, SingleConfigurationLosesItsVariationsInStagingOnly) {
    const std::string text =
        "\r\n  [fltsim.0]\r\n\tx=1\r\n  TITLE= Lear 45 \r\nModel=fancy\r\nsound=\r\n; title=no\r\nlast";
    drive.Put("Hangar\\Jets\\Lear\\aircraft.cfg", text);
    LoadHangar();
    EXPECT_EQ(package.aircraftTitle, "Lear 45");
    EXPECT_EQ(drive.Get("Hangar\\Jets\\Lear\\aircraft.cfg"), text);

    drive.Put("Staging\\aircraft.cfg", text);
    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At("Staging\\aircraft.cfg"), true));
    LoadStaging();
    EXPECT_EQ(drive.Get("Staging\\aircraft.cfg"),
              "[fltsim.0]\r\n\tx=1\r\nTITLE= Lear 45 \r\nModel=\r\nsound=\r\n; title=no\r\nlast\r\n");
    ExpectTrueListing();

    drive.Put("Staging\\aircraft.cfg", "[fltsim.1]\r\ntitle=Lear\r\ntexture=red\r\n");
    drive.Put("Staging\\KX_MSFSImportName.txt", "Lear_45\r\n");
    EXPECT_FALSE(LoadStaging().isConfigurationChosen) << "an only one is taken unasked";
    EXPECT_EQ(drive.Get("Staging\\aircraft.cfg"), "[fltsim.0]\r\ntitle=Lear\r\ntexture=\r\n");
    EXPECT_TRUE(drive.Has("Staging\\KX_MSFSImportName.txt"));
}

TEST_F(LoadTest, AFileIsWrittenOnlyWhereItChangesAndKeepsLinesBeyondTheLimit) {
    const std::string unchanged = "[fltsim.0]\ntitle=x\n  texture=\n\xE9\n";
    PutAt("Staging\\aircraft.cfg", unchanged);
    LoadStaging();
    EXPECT_EQ(drive.Get("Staging\\aircraft.cfg"), unchanged);
    EXPECT_EQ(drive.Files().Info(drive.At("Staging\\aircraft.cfg"))->time, Noon);

    std::string text = "[fltsim.0]\r\ntitle=x\r\nmodel=a\r\n";
    for (int i = 3; i < 2000; ++i)
        text += ";\r\n";
    const std::string beyond = "  model=b\n\xFFlast";
    drive.Put("Staging\\aircraft.cfg", text + beyond);
    LoadStaging();
    const std::string written = drive.Get("Staging\\aircraft.cfg");
    EXPECT_TRUE(written.starts_with("[fltsim.0]\r\ntitle=x\r\nmodel=\r\n"));
    EXPECT_TRUE(written.ends_with(";\r\n" + beyond));
    EXPECT_EQ(written.size(), text.size() - 1 + beyond.size());
}

class ConfigurationTest : public LoadTest {
  protected:
    void PutAll() {
        drive.Put("Staging\\P\\aircraft.cfg",
                  "; mine\r\n[fltsim.0]\r\ntitle=Lear\r\ntexture=\r\nmodel=\r\npanel=\r\n\r\n"
                  "[fltsim.1]\r\ntitle= Lear red \r\ntexture=red\r\nmodel=\r\npanel=ifr\r\n\r\n"
                  "\t[General]\r\n; not of [fltsim.2]\r\nmodel=kept\r\n");
        drive.Put("Staging\\extras\\texture\\other.bmp", "of nobody here");
        for (const char* file :
             {"texture\\skin.bmp", "texture.red\\skin2.bmp", "oldtexture.red\\keep.bmp", "model\\x.mdl",
              "panel\\panel.cfg", "panel\\main.bmp", "panel.ifr\\p.nel", "texture.red\\shot.jpg"})
            drive.Put(std::string("Staging\\P\\") + file, "x");
        drive.Put("Staging\\KX_MSFSImportName.txt", "Lear\r\n");
    }
    const std::vector<std::string> items = {"Lear  (fltsim.0)", "Lear red  (fltsim.1)"};
};

TEST_F(ConfigurationTest, OneIsKeptWithItsDirectories) {
    const struct {
        int row;
        std::string section;
        std::vector<std::string> gone; // below P
    } rows[] = {
        {0,
         "[fltsim.0]\r\ntitle=Lear\r\n",
         {"panel.ifr\\p.nel", "texture.red\\shot.jpg", "texture.red\\skin2.bmp"}},
        // Of the plain panel only panel.cfg goes; the model is used by both.
        {1, "[fltsim.0]\r\ntitle= Lear red \r\n", {"panel\\panel.cfg", "texture\\skin.bmp"}},
    };
    for (const auto& kept : rows) {
        SCOPED_TRACE(kept.row);
        PutAll();
        auto expected = drive.Tree("Staging");
        expected.at("P\\aircraft.cfg") = "; mine\r\n" + kept.section +
                                         "texture=\r\nmodel=\r\npanel=\r\n\r\n"
                                         "\t[General]\r\n; not of [fltsim.2]\r\nmodel=kept\r\n";
        for (const auto& file : kept.gone)
            expected.erase("P\\" + file);
        expected.erase("KX_MSFSImportName.txt");
        user.ExpectConfigurations(items, kept.row);
        EXPECT_TRUE(LoadStaging().isConfigurationChosen);
        EXPECT_EQ(drive.Tree("Staging"), expected);
        ExpectTrueListing();
    }
}

TEST_F(LoadTest, ThePlainDirectoryStaysWhileTheKeptConfigurationHasNoOther) {
    drive.Put("Staging\\aircraft.cfg",
              "[fltsim.0]\r\ntitle=A\r\n[fltsim.1]\r\ntitle=B\r\ntexture=\\red\r\nsound=2\r\n");
    drive.Put("Staging\\texture\\red\\skin.bmp", "inside of the plain one");
    drive.Put("Staging\\sound\\sound.cfg", "sound.2 is missing");
    const auto before = drive.Names("Staging");
    user.ExpectConfigurations({"A  (fltsim.0)", "B  (fltsim.1)"}, 1);
    LoadStaging();
    EXPECT_EQ(drive.Names("Staging"), before);
}

TEST_F(ConfigurationTest, NothingChangesWithoutAChoiceOrWhenTheFileCannotBeWritten) {
    PutAll();
    const auto before = drive.Tree();
    user.ExpectConfigurations(items, std::nullopt);
    EXPECT_FALSE(LoadStaging().isConfigurationChosen);
    EXPECT_EQ(package.aircraftTitle, "MULTI");
    EXPECT_EQ(drive.Tree(), before);

    FaultyFiles faulty(drive.Files());
    faulty.StopAt(1, FileFault::DiskFull);
    CommandContext full{faulty, launcher, locations, limits, user, window};
    user.ExpectConfigurations(items, 0).Expect("The file " + drive.At("Staging\\P\\aircraft.cfg") +
                                                   " could not be written (the disk is full)...",
                                               Answer::Ok);
    EXPECT_FALSE(LoadPackage(full, locations.StagingDir, true, package).isConfigurationChosen);
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(LoadTest, AliasesBitmapsMarkerAndSize) {
    drive.Put("Hangar\\Jets\\Lear\\Panel\\panel.cfg",
              "[Window00]\nfile=MAIN.bmp\n file_1024=sub\\big.BMP ; "
              "x.bmp\n[fltsim]\n  Alias= Other\\Panel \nalias=second");
    drive.Put("Hangar\\Jets\\Lear\\Panel\\oldpanel.cfg", "alias=never\r\nfile=older.bmp");
    drive.Put("Hangar\\Jets\\Lear\\KX_Compression.txt", "12 Meg have been compressed. ...\r\n");
    for (const char* bitmap : {"main.bmp", "big.bmp", "older.bmp", "skin.bmp"})
        drive.Put(std::string("Hangar\\Jets\\Lear\\") + bitmap, std::string(400'000, 'x'));
    LoadHangar();
    EXPECT_EQ(package.PackagePanelAlias, "other\\panel");
    EXPECT_EQ(package.panelText, "other\\panel");
    EXPECT_EQ(package.soundText, "None  (No sound)");
    EXPECT_THAT(Listed(Texture), ElementsAre("Hangar\\Jets\\Lear\\skin.bmp"));
    EXPECT_TRUE(package.isCompressed);
    EXPECT_EQ(package.compressionCode, "12");
    EXPECT_EQ(package.SizeInMeg(), 2) << "1,600,000 bytes and a little";

    drive.Put("Staging\\wing.air", "x");
    drive.Put("Staging\\setup.exe", "x");
    drive.Put("Staging\\sub\\other.EXE", "x");
    user.Expect(
        "An executable file was found in the Staging directory.  It may be an installation executable...",
        Answer::Ok, MessageIcon::Information);
    LoadStaging();
    EXPECT_EQ(package.PackagePanelAlias, "");
    EXPECT_FALSE(package.isCompressed);
    EXPECT_EQ(package.panelText, "None  (No panel)");
}

TEST_F(LoadTest, NoiseIsRead) {
    std::string noise;
    for (unsigned i = 0; i < 300'000; ++i)
        noise += static_cast<char>((i * 7919u) >> 3);
    for (const char* file : {"Panel\\panel.cfg", "Sound\\sound.cfg", "aircraft.cfg"})
        drive.Put(std::string("Staging\\") + file, noise);
    LoadStaging();
    EXPECT_EQ(package.packageFiles.size(), 3u);
}

TEST_F(LoadTest, SeveralAircraftAreCheckedTwiceAtMost) {
    const std::string more = "More than one aircraft configuration file (aircraft.cfg) was detected...";
    const std::string remove =
        "Korvadex cannot handle more than one aircraft.cfg in the Staging directory.  Would you like "
        "to remove all files from the Staging directory?";
    const auto putTwo = [&] {
        drive.Put("Staging\\a\\aircraft.cfg", "1");
        drive.Put("Staging\\b\\aircraft.cfg", "2");
    };
    CheckSingleAircraftCfg(context);
    putTwo();
    user.Expect(more, Answer::Ok, MessageIcon::Exclamation)
        .Expect(remove, Answer::No)
        .Expect("Korvadex will now terminate since it cannot handle more than one aircraft.cfg file in the "
                "Staging directory",
                Answer::Ok);
    EXPECT_THROW(CheckSingleAircraftCfg(context), ProgramEnd);
    EXPECT_EQ(drive.Names("Staging").size(), 4u);
    EXPECT_THAT(launcher.started, ElementsAre("explore " + locations.StagingDir));

    user.Expect(more, Answer::Ok).Expect(remove, Answer::Yes);
    CheckSingleAircraftCfg(context);
    EXPECT_THAT(drive.Names("Staging"), IsEmpty());

    putTwo();
    user.Expect(more, Answer::Ok).Then([&] {
        static_cast<void>(drive.Files().Delete(drive.At("Staging\\b\\aircraft.cfg")));
    });
    CheckSingleAircraftCfg(context);
    EXPECT_THAT(drive.Names("Staging"), ElementsAre("a\\", "a\\aircraft.cfg", "b\\"));
}

} // namespace
} // namespace korvadex::test
