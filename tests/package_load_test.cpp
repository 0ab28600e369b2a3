// Loading a package or Staging: duplicates, aircraft.cfg, aliases, warnings.
#include "package/aircraft_cfg.h"
#include "package/file_primitives.h"
#include "package/load_package.h"
#include "package/scratch.h"
#include "platform/text_file.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"

namespace korvadex::test {
namespace {

using testing::ElementsAre;

constexpr FileTime Noon{std::chrono::sys_days(std::chrono::year(2001) / 5 / 4) + std::chrono::hours(12)};

constexpr const char* Duplicate = "A duplicate filename condition has occurred...";

class LoadTest : public CommandTest {
  protected:
    LoadOutcome LoadStaging() { return korvadex::LoadStaging(context, package); }
    LoadOutcome LoadHangar() { return LoadPackage(context, {"Jets", "Lear"}, package); }

    void PutAtNoon(const std::string& relative, const std::string& bytes) {
        drive.Put(relative, bytes);
        ASSERT_TRUE(drive.Files().SetTime(drive.At(relative), Noon));
    }
    // What a load says of the tree must be what lies on the disk.
    void ExpectTrueListing() { EXPECT_FALSE(HasChangedOnDisk(drive.Files(), package)); }

    LoadedPackage package;
};

TEST_F(LoadTest, DocumentsOfOneNameAreAllKept) {
    // The air file stands before a document, and after its new name.
    drive.Fill("Staging",
               "a\\readme.txt=one, b\\README.TXT=two, c\\readme.txt=one, d\\readme.txt=three, d\\readme(1).txt=taken, "
               "b\\readme.air=four, a\\index.html=1, b\\index.html=2");
    LoadStaging();
    // Every text is still there, the last keeps its name, and no rename replaces a file.
    EXPECT_EQ(
        drive.Outline("Staging"),
        "a\\index(1).html=1, a\\readme(3).txt=one, b\\README(2).TXT=two, b\\index.html=2, b\\readme.air=four, c\\, "
        "d\\readme(1).txt=taken, d\\readme.txt=three");
    EXPECT_EQ(package.ComponentFiles[Documentation].size(), 6u);
    ExpectTrueListing();
}

// Counts how often a file is opened.
class CountingFiles : public FaultyFiles {
  public:
    using FaultyFiles::FaultyFiles;
    mutable int opened = 0;
    Result<std::unique_ptr<InputFile>> OpenForReading(const std::string& path) const override {
        ++opened;
        return FaultyFiles::OpenForReading(path);
    }
};

TEST_F(LoadTest, EachOfManyDocumentsOfOneNameIsReadAFewTimesOnly) {
    constexpr int Count = 300;
    for (int i = 0; i < Count; ++i) // of one size, and some equal
        drive.Put("Staging\\" + std::to_string(i) + "\\readme.txt", std::to_string(1000 + i % 250));
    CountingFiles files(drive.Files());
    CommandContext counted = On(files);
    korvadex::LoadStaging(counted, package);
    EXPECT_EQ(package.ComponentFiles[Documentation].size(), 250u);
    EXPECT_LT(files.opened, 4 * Count);
    EXPECT_EQ(display.progressShown, 1);
    EXPECT_FALSE(display.isProgressVisible);
    ExpectTrueListing();
}

TEST_F(LoadTest, StagingDuplicatesAreSettledByRuleOrQuestion) {
    const std::string stub = "[fltsim]\r\nalias=x\\panel\r\n", whole(1001, ';');
    const std::pair<const char*, std::string> files[] = {
        {"a\\panel.cfg", stub}, {"b\\panel.cfg", whole}, {"a\\sound.cfg", whole},
        {"b\\sound.cfg", stub}, {"a\\gyro.gau", "same"}, {"b\\gyro.gau", "same"},
        {"a\\odd.gau", "AAAA"}, {"b\\odd.gau", "BBBB"}, // same size and time, other bytes
        {"a\\x.mdl", "1"},      {"b\\X.MDL", "22"},      {"a\\late.gau", "same"},
    };
    for (const auto& [name, bytes] : files)
        PutAtNoon(std::string("Staging\\") + name, bytes);
    drive.Put("Staging\\b\\late.gau", "same"); // at another time
    user.Expect("A duplicate filename condition has occurred.\n\nShould I use this file:\n\n" +
                    drive.At("Staging\\a\\x.mdl") + "  (Size: 1 Date:...)\n\nInstead of this file? :\n\n" +
                    drive.At("Staging\\b\\X.MDL") + "  (Size: 2 Date:...)",
                Answer::No);
    user.Expect(Duplicate, Answer::Yes);
    LoadStaging();
    EXPECT_THAT(drive.Names("Staging"), ElementsAre("a\\", "a\\gyro.gau", "a\\late.gau", "a\\odd.gau", "a\\sound.cfg",
                                                    "b\\", "b\\X.MDL", "b\\panel.cfg"));
    EXPECT_EQ(package.panelText, "None  (Original panel)") << "the stub that went has no say";
    ExpectTrueListing();
}

TEST_F(LoadTest, OneAnswerCanServeAllFurtherDuplicates) {
    for (const char* name : {"1\\a.mdl", "2\\a.mdl", "1\\c.gau", "2\\c.gau"})
        PutAtNoon(std::string("Staging\\") + name, name);
    user.Expect(Duplicate, Answer::No, true);
    LoadStaging();
    EXPECT_THAT(drive.Names("Staging"), ElementsAre("1\\", "2\\", "2\\a.mdl", "2\\c.gau"));
}

TEST_F(LoadTest, DuplicateInTheHangarIsFoundBeforeAnythingIsRenamed) {
    drive.Fill("Hangar\\Jets\\Lear", "a\\readme.txt=1, b\\readme.txt=2, a\\x.gau=same, b\\x.gau=same");
    const auto before = drive.Tree();
    EXPECT_THAT(LoadHangar().twins,
                ElementsAre(drive.At("Hangar\\Jets\\Lear\\a\\x.gau"), drive.At("Hangar\\Jets\\Lear\\b\\x.gau")));
    EXPECT_TRUE(package.ComponentFiles[Documentation].empty());
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(LoadTest, HangarDocumentsNeverEndTheProgram) {
    drive.Fill("Hangar\\Jets\\Lear", "a\\readme.txt=same, b\\readme.txt=same, a\\shot.jpg=1, b\\shot.jpg=2");
    FaultyFiles readOnly(drive.Files());
    readOnly.StopAt(1, FileFault::ReadOnlyDisk);
    CommandContext onDisc = On(readOnly);
    LoadPackage(onDisc, {"Jets", "Lear"}, package);
    EXPECT_EQ(package.ComponentFiles[Documentation].size(), 2u);
    EXPECT_EQ(package.ComponentFiles[Images].size(), 2u);
    LoadHangar();
    EXPECT_EQ(drive.Outline("Hangar\\Jets\\Lear"),
              "a\\readme.txt=same, a\\shot(1).jpg=1, b\\readme.txt=same, b\\shot.jpg=2");
    ExpectTrueListing();
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
              "\r\n  [fltsim.0]\r\n\tx=1\r\n  TITLE= Lear 45 \r\nModel=\r\nsound=\r\n; title=no\r\nlast");
    ExpectTrueListing();

    drive.Put("Staging\\aircraft.cfg", "[fltsim.1]\r\ntitle=Lear\r\ntexture=red\r\n");
    drive.Put("Staging\\KX_MSFSImportName.txt", "Lear_45\r\n");
    EXPECT_FALSE(LoadStaging().isConfigurationChosen) << "an only one is taken unasked";
    EXPECT_EQ(drive.Get("Staging\\aircraft.cfg"), "[fltsim.0]\r\ntitle=Lear\r\ntexture=\r\n");
    EXPECT_TRUE(drive.Has("Staging\\KX_MSFSImportName.txt"));
}

TEST_F(LoadTest, KeysAreFoundHoweverTheyAreSpelt) {
    const struct {
        const char *name, *before, *title, *after;
    } rows[] = {
        {"blanks and tabs", "\n [fltsim.0]\r\n\tTitle\t= Lear 45 ; mine\t\r\n  Texture = 11\n\tmodel=\tx\rsound=s",
         "Lear 45 ; mine", "\n [fltsim.0]\r\n\tTitle\t= Lear 45 ; mine\t\r\n  Texture =\n\tmodel=\rsound="},
        {"quotes", "[fltsim.0]\ntitle=\" The \"Lear\" \"\ntexture=\"11\"\n", "The \"Lear\"",
         "[fltsim.0]\ntitle=\" The \"Lear\" \"\ntexture=\n"},
        {"comments", "[fltsim.0]\n; title=no\n//title=no\ntitle=A // B\ntexture= ;plain\npanel=\t// plain\nmodel=a;b",
         "A // B", "[fltsim.0]\n; title=no\n//title=no\ntitle=A // B\ntexture= ;plain\npanel=\t// plain\nmodel="},
        {"other keys", "[fltsim.0]\ntitle=A\ntitled=B\nthe title=C\ntextures=11\n", "A",
         "[fltsim.0]\ntitle=A\ntitled=B\nthe title=C\ntextures=11\n"},
    };
    const std::function<std::string(std::string_view)> encodings[] = {
        [](std::string_view text) { return std::string(text); },
        [](std::string_view text) { return "\xEF\xBB\xBF" + std::string(text); },
        [](std::string_view text) { return TwoByteText(text); },
        [](std::string_view text) { return TwoByteText(text, true); },
    };
    for (const auto& row : rows) {
        for (const auto& encoded : encodings) {
            SCOPED_TRACE(row.name + std::to_string(&encoded - encodings));
            drive.Put("Staging\\aircraft.cfg", encoded(row.before));
            LoadStaging();
            EXPECT_EQ(package.aircraftTitle, row.title);
            EXPECT_EQ(drive.Get("Staging\\aircraft.cfg"), encoded(row.after));
        }
    }
}

TEST_F(LoadTest, AFileIsWrittenOnlyWhereItChangesAndKeepsLinesBeyondTheLimit) {
    const std::string unchanged = "[fltsim.0]\ntitle=x\n  texture=\n\xE9\n";
    PutAtNoon("Staging\\aircraft.cfg", unchanged);
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
                  "; mine\r\n[fltsim.0]\r\ntitle=Lear\r\ntexture=\r\nmodel=\r\npanel=\r\n\r\n[fltsim.1]\r\n"
                  "title = Lear red \r\ntexture = red ; not blue\r\nmodel=\r\n\tpanel=ifr\r\n\r\n\t[General]\r\n"
                  "; not of [fltsim.2]\r\nmodel=kept\r\n");
        drive.Fill("Staging", "extras\\texture\\other.bmp=of nobody here, KX_MSFSImportName.txt=Lear");
        drive.Fill("Staging\\P", "texture\\skin.bmp=x, texture.red\\skin2.bmp=x, oldtexture.red\\keep.bmp=x, "
                                 "model\\x.mdl=x, panel\\panel.cfg=x, panel\\main.bmp=x, panel.ifr\\p.nel=x, "
                                 "texture.red\\shot.jpg=x");
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
         "[fltsim.0]\r\ntitle=Lear\r\ntexture=\r\nmodel=\r\npanel=\r\n\r\n",
         {"panel.ifr\\p.nel", "texture.red\\shot.jpg", "texture.red\\skin2.bmp"}},
        // Of the plain panel only panel.cfg goes; the model is used by both.
        {1,
         "[fltsim.0]\r\ntitle = Lear red \r\ntexture =\r\nmodel=\r\n\tpanel=\r\n\r\n",
         {"panel\\panel.cfg", "texture\\skin.bmp"}},
    };
    for (const auto& kept : rows) {
        SCOPED_TRACE(kept.row);
        PutAll();
        auto expected = drive.Tree("Staging");
        expected.at("P\\aircraft.cfg") =
            "; mine\r\n" + kept.section + "\t[General]\r\n; not of [fltsim.2]\r\nmodel=kept\r\n";
        for (const auto& file : kept.gone)
            expected.erase("P\\" + file);
        expected.erase("KX_MSFSImportName.txt");
        user.ExpectConfigurations(items, kept.row);
        EXPECT_TRUE(LoadStaging().isConfigurationChosen);
        EXPECT_EQ(drive.Tree("Staging"), expected);
        ExpectTrueListing();
    }
}

// Picks the same configuration whenever it is asked, and agrees to the rest.
struct PickingUser : ScriptedUser {
    explicit PickingUser(int wanted) : row(wanted) { isPatient = true; }
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>&) override { return row; }
    int row;
};

TEST_F(ConfigurationTest, WhicheverChangeFailsTheKeptOneIsWhole) {
    const auto load = [&](FileSystem& files, PickingUser& picking) {
        CommandContext disk{files, launcher, locations, limits, picking, display};
        return korvadex::LoadStaging(disk, package).isConfigurationChosen;
    };
    for (const int row : {0, 1}) {
        PickingUser picking(row);
        PutAll();
        const auto before = drive.Tree("Staging");
        const auto showAgain = [&] { // chosen by then, it is read as a single one
            load(drive.Files(), picking);
            load(drive.Files(), picking);
        };
        showAgain();
        const auto whole = drive.Tree("Staging");
        int change = 0, changes = 0;
        do {
            SCOPED_TRACE(std::to_string(row) + " kept, failed at " + std::to_string(++change));
            PutAll();
            FaultyFiles faulty(drive.Files());
            faulty.FailAt(change, FileFault::InUse);
            const bool isChosen = load(faulty, picking);
            changes = faulty.Changes();
            CleanScratch(drive.Files(), locations);
            if (!isChosen) {
                ASSERT_EQ(drive.Tree("Staging"), before);
            }
            showAgain();
            const auto now = drive.Tree("Staging");
            for (const auto& [path, bytes] : whole) {
                ASSERT_TRUE(path.ends_with('\\') || now.contains(path)) << path;
                ASSERT_TRUE(path.ends_with('\\') || now.at(path) == bytes) << path;
            }
        } while (change <= changes);
        EXPECT_GT(change, 15);
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

TEST_F(ConfigurationTest, NothingChangesUntilOneIsPickedAndTheRestCanGo) {
    PutAll();
    // Equal in both, a document of one name, and two that differ: none of them is a duplicate yet.
    drive.Fill("Staging\\P",
               "texture.red\\skin.bmp=red, texture\\shot.jpg=x, texture\\notes.txt=a, texture.red\\notes.txt=b");
    const auto before = drive.Tree();
    const auto expectOpen = [&] {
        EXPECT_TRUE(package.isChoiceOpen);
        EXPECT_EQ(package.aircraftTitle, ChoiceOpenTitle);
        EXPECT_EQ(package.ComponentFiles[Texture].size(), 6u);
        EXPECT_EQ(package.ComponentFiles[Images].size(), 2u);
        EXPECT_EQ(drive.Tree(), before);
        ExpectTrueListing();
    };
    user.ExpectConfigurations(items, std::nullopt);
    EXPECT_FALSE(LoadStaging().isConfigurationChosen);
    expectOpen();
    korvadex::LoadStaging(context, package, ChoiceQuestion::LeaveOpen);
    expectOpen();
    limits.DirMax = 3;
    user.Expect("The configurations of " + drive.At("Staging\\P\\aircraft.cfg") + " cannot be told apart...");
    LoadStaging();
    expectOpen();
    limits = {};

    const struct {
        const char *change, *part, *message;
    } rows[] = {
        {"Write", "aircraft.cfg", "The file...\\Staging\\P\\aircraft.cfg could not be written (another..."},
        {"Rename", "texture.red", "...\\Staging\\P\\texture.red belongs to a configuration that is not kept..."},
        {"Rename", "panel.ifr", "...\\Staging\\P\\panel.ifr belongs to a configuration that is not kept..."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message);
        FaultyFiles faulty(drive.Files());
        faulty.FailOn(row.change, row.part, FileFault::InUse);
        CommandContext busy = On(faulty);
        user.ExpectConfigurations(items, 0).Expect(row.message, MessageIcon::Exclamation);
        EXPECT_FALSE(korvadex::LoadStaging(busy, package).isConfigurationChosen);
        expectOpen();
    }
    user.ExpectConfigurations(items, 1).Then([&] { drive.Put("Staging\\P\\aircraft.cfg", "[fltsim.1]"); });
    user.Expect("The file " + drive.At("Staging\\P\\aircraft.cfg") + " was changed by another program...");
    LoadStaging();
    EXPECT_EQ(drive.Get("Staging\\P\\aircraft.cfg"), "[fltsim.1]");

    drive.Put("Staging\\P\\aircraft.cfg", before.at("Staging\\P\\aircraft.cfg"));
    ASSERT_TRUE(drive.Files().Rename(drive.At("Staging\\P\\texture.red\\shot.jpg"), drive.At("Staging\\a_RED.jpg")));
    user.ExpectConfigurations(items, 1);
    EXPECT_TRUE(LoadStaging().isConfigurationChosen);
    EXPECT_EQ(drive.Outline("Staging\\P\\texture.red"), "notes.txt=b, skin.bmp=red, skin2.bmp=x");
    ASSERT_EQ(user.configurations.size(), 2u);
    EXPECT_EQ(user.configurations[0].picture, drive.At("Staging\\P\\texture\\shot.jpg"));
    EXPECT_EQ(user.configurations[1].picture, drive.At("Staging\\a_RED.jpg")) << "of that name";
    EXPECT_EQ(user.configurations[1].detail, "Texture: red,  Panel: ifr");
}

TEST_F(LoadTest, AnAliasOfTheKeptConfigurationToItsOwnAircraftCountsAsUse) {
    const std::string whole(1001, ';');
    const struct {
        const char *place, *alias, *kept, *importName = "";
    } rows[] = {
        {"Orvane Two\\", "orvane_two\\panel", "panel"},  {"Orvane Two\\", "Orvane Two\\panel.1", "panel.1"},
        {"", "Orvane\\panel", "panel", "Orvane"},        {"ZIP_x.zip\\", "Unknown\\panel", "panel"},
        {"Orvane Two\\", "Other_Jet\\panel", "panel.2"}, // another aircraft, of the Hangar
    };
    drive.MakeDirectory("Hangar\\Jets\\Other Jet");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.alias);
        const std::string place = std::string("Staging\\") + row.place;
        drive.Put(place + "aircraft.cfg",
                  "[fltsim.0]\r\ntitle=A\r\n[fltsim.1]\r\ntitle=B\r\npanel=1\r\nsound=1\r\n[fltsim.2]\r\ntitle=C\r\n"
                  "panel=2\r\nsound=2\r\n");
        for (const std::string kind : {"panel", "sound"}) {
            std::string alias = std::string("[fltsim]\r\nalias=") + row.alias;
            if (kind == "sound")
                alias.replace(alias.rfind("panel"), 5, "sound");
            drive.Put(place + kind + "\\" + kind + ".cfg", whole + "0");
            drive.Put(place + kind + ".1\\" + kind + ".cfg", whole + "1");
            drive.Put(place + kind + ".2\\" + kind + ".cfg", alias);
            drive.Put(place + kind + "\\" + kind + ".wav", "x");
        }
        if (*row.importName)
            drive.Put("Staging\\KX_MSFSImportName.txt", row.importName);
        user.ExpectConfigurations({"A  (fltsim.0)", "B  (fltsim.1)", "C  (fltsim.2)"}, 2);
        LoadStaging();
        const std::string config = package.FindComponentFile("panel.cfg");
        EXPECT_EQ(config, drive.At(place) + row.kept + "\\panel.cfg");
        std::string sounds = row.kept;
        sounds.replace(0, 5, "sound");
        EXPECT_EQ(package.FindComponentFile("sound.cfg"), drive.At(place) + sounds + "\\sound.cfg");
        EXPECT_EQ(drive.Has(place + "sound\\sound.wav"), sounds == "sound");
        DeleteTree(context, locations.StagingDir);
    }
}

TEST_F(LoadTest, AliasesBitmapsMarkerAndSize) {
    drive.Put(
        "Hangar\\Jets\\Lear\\Panel\\panel.cfg",
        "[Window00]\nfile=MAIN.bmp\n file_1024=sub\\big.BMP ; x.bmp\n[fltsim]\n  Alias= Other\\Panel \nalias=second");
    drive.Put("Hangar\\Jets\\Lear\\Panel\\oldpanel.cfg", "alias=never\r\nfile=older.bmp");
    drive.Put("Hangar\\Jets\\Lear\\KX_Compression.txt", "12 Meg have been compressed. ...\r\n");
    for (const char* bitmap : {"main.bmp", "big.bmp", "older.bmp", "skin.bmp"})
        drive.Put(std::string("Hangar\\Jets\\Lear\\") + bitmap, std::string(400'000, 'x'));
    LoadHangar();
    EXPECT_EQ(package.PackagePanelAlias, "other\\panel");
    EXPECT_EQ(package.panelText, "other\\panel");
    EXPECT_EQ(package.soundText, "None  (No sound)");
    ASSERT_EQ(package.ComponentFiles[Texture].size(), 1u);
    EXPECT_TRUE(package.ComponentFiles[Texture][0].path.ends_with("skin.bmp"));
    EXPECT_TRUE(package.isCompressed);
    EXPECT_EQ(package.compressionCode, "12");
    EXPECT_EQ(package.SizeInMeg(), 2) << "1,600,000 bytes and a little";

    drive.Fill("Staging", "wing.air=x, setup.exe=x, sub\\other.EXE=x");
    user.Expect("An executable file was found in the Staging directory.  It may be an installation executable...",
                MessageIcon::Information);
    LoadStaging();
    EXPECT_EQ(package.PackagePanelAlias, "");
    EXPECT_FALSE(package.isCompressed);
    EXPECT_EQ(package.panelText, "None  (No panel)");
}

TEST_F(LoadTest, APanelOfTwoByteLettersHasAliasAndBitmaps) {
    for (const char* alias :
         {"alias=Other\\Panel", "alias = \"Other\\Panel\" ; \"", "\tAlias\t=\tOther\\Panel\t// the other one"}) {
        drive.Put("Hangar\\Jets\\Lear\\Panel\\panel.cfg",
                  TwoByteText("[Window00]\nfile\t=\tmain.bmp\n" + std::string(alias)));
        drive.Put("Hangar\\Jets\\Lear\\main.bmp", "x");
        LoadHangar();
        EXPECT_EQ(package.PackagePanelAlias, "other\\panel") << alias;
        EXPECT_EQ(package.ComponentFiles[Texture].size(), 0u);
    }
}

TEST_F(LoadTest, NoiseIsRead) {
    std::string noise;
    for (unsigned i = 0; i < 300'000; ++i)
        noise += static_cast<char>((i * 7919u) >> 3);
    for (const char* file : {"Panel\\panel.cfg", "Sound\\sound.cfg", "aircraft.cfg"})
        drive.Put(std::string("Staging\\") + file, noise);
    LoadStaging();
    EXPECT_EQ(package.tree.files.size(), 3u);
}

TEST_F(LoadTest, SeveralAircraftAreCheckedTwiceAtMost) {
    const std::string more = "More than one aircraft configuration file (aircraft.cfg) was detected...";
    const auto putTwo = [&] { drive.Fill("Staging", "a\\aircraft.cfg=1, b\\aircraft.cfg=2"); };
    CheckSingleAircraftCfg(context);
    putTwo();
    user.Expect(more, MessageIcon::Exclamation)
        .Expect("Korvadex cannot handle more than one aircraft.cfg in the Staging directory...", Answer::Yes);
    CheckSingleAircraftCfg(context);
    EXPECT_EQ(drive.Outline("Staging"), "");

    putTwo();
    user.Expect(more).Then([&] { EXPECT_TRUE(drive.Files().Delete(drive.At("Staging\\b\\aircraft.cfg"))); });
    CheckSingleAircraftCfg(context);
    EXPECT_EQ(drive.Outline("Staging"), "a\\aircraft.cfg=1, b\\");
}

} // namespace
} // namespace korvadex::test
