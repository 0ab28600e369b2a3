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

constexpr FileTime Noon{std::chrono::sys_days(std::chrono::year(2001) / 5 / 4) + std::chrono::hours(12)};

class LoadTest : public CommandTest {
  protected:
    LoadOutcome LoadStaging() { return korvadex::LoadStaging(context, package); }

    void PutAtNoon(const std::string& relative, const std::string& bytes) {
        drive.Put(relative, bytes);
        ASSERT_TRUE(drive.Files().SetTime(drive.At(relative), Noon));
    }
    // What a load says of the tree must be what lies on the disk.
    void ExpectTrueListing() { EXPECT_FALSE(HasChangedOnDisk(drive.Files(), package)); }

    LoadedPackage package;
};

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

TEST_F(ConfigurationTest, EachIsOfferedWithItsPicture) {
    PutAll();
    drive.Fill("Staging", "P\\texture\\shot.jpg=x, a_RED.jpg=x");
    ASSERT_TRUE(drive.Files().Delete(drive.At("Staging\\P\\texture.red\\shot.jpg")));
    const auto before = drive.Tree();
    limits.DirMax = 3;
    user.Expect("The configurations of " + drive.At("Staging\\P\\aircraft.cfg") + " cannot be told apart...");
    LoadStaging();
    EXPECT_TRUE(package.isChoiceOpen);
    EXPECT_EQ(drive.Tree(), before);
    limits = {};
    user.ExpectConfigurations(items, 1);
    EXPECT_TRUE(LoadStaging().isConfigurationChosen);
    ASSERT_EQ(user.configurations.size(), 2u);
    EXPECT_EQ(user.configurations[0].picture, drive.At("Staging\\P\\texture\\shot.jpg"));
    EXPECT_EQ(user.configurations[1].picture, drive.At("Staging\\a_RED.jpg")) << "of that name";
    EXPECT_EQ(user.configurations[1].detail, "Texture: red,  Panel: ifr");
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

} // namespace
} // namespace korvadex::test
