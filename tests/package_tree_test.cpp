// Walks, classification by name, and the deletions that everything relies on.
#include "package/aircraft_parts.h"
#include "package/classification.h"
#include "package/component_files.h"
#include "package/file_primitives.h"
#include "package/load_package.h"
#include "package/package_name.h"
#include "package/pictures.h"
#include "package/scratch.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"

namespace korvadex::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using TreeTest = CommandTest;

TEST_F(TreeTest, WalkListsParentsFirstAndLeavesOutScratchAndLinks) {
    // What file managers write by themselves is no part of a package either.
    drive.Fill("Staging", "b.txt=x, A.txt=x, z\\y\\deep.txt=x, m\\in.txt=x, ~kx~scratch\\1~half.txt=x, "
                          "THUMBS.db=x, m\\desktop.ini=x, z\\.DS_Store=x, z\\y\\.directory=x, "
                          "__macosx\\._b.txt=x, ~kx~kept\\1\\gone.txt=x, ~kx~lock=x, m\\~KX~Kept\\1\\gone.txt=x");
    const Tree tree = WalkTree(drive.Files(), locations.StagingDir);
    std::vector<std::string> files;
    for (const auto& file : tree.files)
        files.push_back(file.path.substr(locations.StagingDir.size()));
    EXPECT_THAT(files, ElementsAre("A.txt", "b.txt", "m\\in.txt", "z\\y\\deep.txt"));
    EXPECT_THAT(tree.directories,
                ElementsAre(drive.At("Staging\\m"), drive.At("Staging\\z"), drive.At("Staging\\z\\y")));

    const WalkLimits two{.DirMax = 2, .FileMax = 2};
    EXPECT_EQ(CollectFiles(tree, "txt", FileMode::Extension, two).cut, ListCut::FileMax);
    EXPECT_EQ(CollectFiles(tree, "txt", FileMode::Extension, two).entries.size(), 2u);
    EXPECT_EQ(CollectDirectories(tree, two).cut, ListCut::DirMax);
    EXPECT_THAT(CollectDirectories(drive.Files(), locations.StagingDir, true, two).paths,
                ElementsAre(drive.At("Staging\\m"), drive.At("Staging\\z")));

    EXPECT_THAT(DeleteTree(context, locations.StagingDir), IsEmpty());
    EXPECT_EQ(drive.Outline("Staging"), "m\\");
    for (const char* kept : {"Staging\\m\\~KX~Kept\\1\\gone.txt", "Staging\\~kx~kept\\1\\gone.txt"})
        EXPECT_EQ(drive.Get(kept), "x");
    EXPECT_EQ(drive.Get("Staging\\~kx~lock"), "x");
}

class WithDiskInStaging : public FaultyFiles {
  public:
    using FaultyFiles::FaultyFiles;
    Result<std::vector<DirectoryEntry>> List(const std::string& directory) const override {
        auto entries = FaultyFiles::List(directory);
        for (DirectoryEntry& entry : *entries)
            entry.isMountPoint = entry.name == "disk";
        return entries;
    }
};

TEST_F(TreeTest, ADiskThatIsMountedInStagingIsNotErased) {
    drive.Fill("Staging", "a.txt=x, disk\\mine.txt=mine, m\\disk\\mine.txt=mine");
    WithDiskInStaging files(drive.Files());
    CommandContext mounted{files, launcher, locations, limits, user, display};
    EXPECT_EQ(DeleteTree(mounted, locations.StagingDir).size(), 2u);
    EXPECT_EQ(drive.Outline("Staging"), "disk\\mine.txt=mine, m\\disk\\mine.txt=mine");
}

TEST_F(TreeTest, EveryNameLandsInItsGroups) {
    const PanelBitmapNames panelBitmaps = {"main.bmp"};
    const struct {
        std::vector<Group> groups;
        std::vector<std::string> names;
    } rows[] = {
        {{Images}, {"Shot.JPG"}},
        {{Aircraft}, {"Aircraft.cfg", "lear.air", "lear_checklist.CFG"}},
        {{Aircraft, Documentation}, {"lear_check.txt"}},
        {{Panel}, {"Panel.CFG", "Main.BMP", "OldPanel.cfg"}},
        {{Gauges}, {"gyro.gau", "pack.CAB"}},
        {{Model}, {"lear.mdl"}},
        {{Texture}, {"wing.bmp", "skin.af1", "skin.cfx", "skin.tx3", "skin.txr", "skin.r8"}},
        {{Sound}, {"oldsound.cfg", "hum.wav"}},
        {{Documentation}, {"read.1st", "index.html"}},
        {{Miscellaneous}, {"smoke.fx"}},
        // "cfg" begins with "cf" and is no texture.
        {{Unrecognized}, {"setup.exe", "gyro.gau.bak", "gau", "other.cfg"}},
        {{}, {"mypanel.cfg", "flightsound.cfg"}}, // recognized, and in no group
    };
    for (const auto& row : rows) {
        for (const auto& name : row.names) {
            Tree tree;
            tree.files.emplace_back("C:\\x\\" + name, FileInfo{});
            std::vector<Group> found;
            for (int group = 0; group < GroupCount; ++group) {
                if (!CollectGroup(tree, static_cast<Group>(group), panelBitmaps, limits).entries.empty())
                    found.push_back(static_cast<Group>(group));
            }
            EXPECT_EQ(found, row.groups) << name;
        }
    }
}

TEST_F(TreeTest, DeleteTreeRefusesEveryDangerousPath) {
    drive.Fill("", "FS\\aircraft\\Lear\\aircraft.cfg=x, Hangar\\Jets\\Lear\\aircraft.cfg=x, other\\file.txt=x");
    const auto before = drive.Tree();
    const std::string aircraft = locations.MsfsDir + "aircraft\\", lear = locations.HangarDir + "Jets\\Lear";
    for (const auto& path : {std::string(), std::string("C:\\"), std::string("C:\\\\x\\"), std::string("C:\\ x\\"),
                             std::string("\\\\server\\share\\"), locations.HangarDir, locations.MsfsDir, aircraft,
                             aircraft + "\\", lear, drive.At("other\\"), drive.Root()}) {
        user.Expect("Critical error.  Please restart Korvadex and verify...", Answer::Ok, MessageIcon::Critical);
        EXPECT_THROW(DeleteTree(context, path), ProgramEnd) << path;
    }
    locations.HangarDir = drive.At("Staging\\Hangar\\");
    user.Expect("Critical error...", Answer::Ok);
    EXPECT_THROW(DeleteTree(context, locations.StagingDir), ProgramEnd) << "a location inside";
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(TreeTest, DeleteTreeTakesReadOnlyFilesAndHasNoBound) {
    drive.Fill("Staging", "a\\b\\c.txt=x, ro.txt=x, Thumbs.db=x, __MACOSX\\a\\._c.txt=x");
    for (int i = 0; i <= MaxSubdirectoriesPerLevel; ++i)
        drive.Put("Staging\\many\\" + std::to_string(i) + "\\x.txt", "x");
    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At("Staging\\ro.txt"), true));
    limits = {.DirMax = 1, .FileMax = 1};
    EXPECT_THAT(DeleteTree(context, locations.StagingDir), IsEmpty());
    EXPECT_THAT(drive.Names("Staging"), IsEmpty());
    EXPECT_TRUE(StagingIsEmpty(drive.Files(), locations));

    drive.Fill("Staging", "shut\\in\\, shut\\last.txt=x");
    FaultyFiles faulty(drive.Files());
    faulty.unreadable = drive.At("Staging\\shut\\in\\");
    EXPECT_THAT(DeleteAll(faulty, drive.At("Staging\\shut\\"), drive.At("Staging\\shut\\last.txt")), IsEmpty());
    EXPECT_THAT(drive.Names("Staging"), IsEmpty());
}

TEST_F(TreeTest, PackageNames) {
    drive.Fill("FS\\aircraft", "My Plane\\, file=x");
    EXPECT_EQ(FindSimAircraftDirectory(drive.Files(), locations, "My Plane"), "My Plane");
    drive.MakeDirectory("FS\\aircraft\\My_Plane");
    EXPECT_EQ(FindSimAircraftDirectory(drive.Files(), locations, "My Plane"), "My_Plane");
    for (const char* name : {"Other", "", "file"})
        EXPECT_EQ(FindSimAircraftDirectory(drive.Files(), locations, name), "") << name;

    EXPECT_EQ(CleanPackageName(" a.b/c*\"d\"\\:?<>| "), "a_b_c_'d'______");
}

TEST_F(TreeTest, MarkedPictureComesFirst) {
    EXPECT_THAT(ListPictures({{"C:\\p\\b.jpg", {}}, {"C:\\p\\(z).jpg", {}}, {"C:\\q\\A.gif", {}}}),
                ElementsAre("C:\\p\\(z).jpg", "C:\\q\\A.gif", "C:\\p\\b.jpg"));
}

TEST_F(TreeTest, ARewrittenFileIsTheOldOneOrTheNewOneWhateverFails) {
    const std::string path = drive.At("Staging\\aircraft.cfg");
    const int stops = StopAtEachChange(drive.Files(), [&](FaultyFiles& faulty) {
        drive.Put("Staging\\aircraft.cfg", "old");
        ASSERT_TRUE(drive.Files().SetReadOnly(path, true));
        const bool isWritten = bool(RewriteBytes(faulty, locations, path, "new"));
        EXPECT_THAT(drive.Get("Staging\\aircraft.cfg"), testing::AnyOf("new", isWritten ? "new" : "old"));
        CleanScratch(drive.Files(), locations);
        EXPECT_THAT(drive.Names("Staging"), ElementsAre("aircraft.cfg"));
    });
    EXPECT_GE(stops, 3);
    EXPECT_EQ(drive.Get("Staging\\aircraft.cfg"), "new");

    ASSERT_TRUE(drive.Files().SetReadOnly(path, true));
    FaultyFiles faulty(drive.Files());
    for (const char* change : {"Close", "Replace"}) {
        faulty.FailOn(change, "", FileFault::DiskFull);
        EXPECT_FALSE(RewriteBytes(faulty, locations, path, "newer"));
        EXPECT_EQ(drive.Get("Staging\\aircraft.cfg"), "new");
        EXPECT_TRUE(drive.Files().Info(path)->readOnly);
    }
}

TEST_F(TreeTest, ComponentFilesOpenAndDelete) {
    const std::string directory = "Hangar\\Jets\\Lear\\Documentation\\";
    drive.Put(directory + "a.txt", "x");
    drive.Put(directory + "b.DIZ", "x");
    LoadedPackage package;
    LoadPackage(context, {"Jets", "Lear"}, package);

    OpenComponentFile(context, package.ComponentFiles[Documentation][1].path);
    launcher.documentCode = 31;
    user.Expect("I don't know what action to take...", Answer::Ok, MessageIcon::Exclamation);
    OpenComponentFile(context, package.ComponentFiles[Documentation][0].path);
    EXPECT_THAT(launcher.started,
                ElementsAre("edit " + drive.At(directory) + "b.DIZ", "open " + drive.At(directory) + "a.txt"));

    user.Expect("Select a file to delete first.", Answer::Ok)
        .Expect("Are you sure you want to delete the 2 files selected?", Answer::No);
    EXPECT_FALSE(DeleteComponentFiles(context, package, Documentation, {}).package);
    EXPECT_FALSE(DeleteComponentFiles(context, package, Documentation, {0, 1}).package);
    drive.MakeDirectory("FS\\aircraft\\Lear");
    user.Expect("This package is currently installed...", Answer::Ok, MessageIcon::Information);
    EXPECT_FALSE(DeleteComponentFiles(context, package, Documentation, {0}).package);
    EXPECT_EQ(drive.Outline(directory), "a.txt=x, b.DIZ=x");
    ASSERT_TRUE(drive.Files().RemoveDirectory(drive.At("FS\\aircraft\\Lear")));
    user.Expect("Are you sure you want to delete the 1 files selected?", Answer::Yes);
    EXPECT_TRUE(DeleteComponentFiles(context, package, Documentation, {1}).package);
    EXPECT_EQ(drive.Outline(directory), "a.txt=x");

    user.Expect("Are you sure you want to delete the 1 files selected?", Answer::Yes)
        .Then([&] { drive.Put(directory + "a.txt", "written meanwhile"); })
        .Expect("The following files were not deleted ...\n\n" + drive.At(directory) +
                    "a.txt (it was changed by another program meanwhile)\n\n...",
                MessageIcon::Exclamation);
    EXPECT_TRUE(DeleteComponentFiles(context, package, Documentation, {0}).package);
    EXPECT_EQ(drive.Outline(directory), "a.txt=written meanwhile");
}

TEST_F(TreeTest, TheFilesOfSeveralAircraftAreToldApart) {
    std::string many, manyOfA;
    for (const char* file : {"a\\1", "a\\2", "b\\1"})
        for (int i = 0; i < 200; ++i) {
            const std::string name = std::string(file) + std::to_string(i) + ".bmp=x, ";
            many += name;
            manyOfA += name.starts_with("a") ? name : "";
        }
    const struct {
        std::string tree;
        std::map<std::string, std::string> nested; // in lower case
        std::vector<std::string> parts;            // name: caption, its configurations, its files
        std::size_t kept;
        std::string left;
    } rows[] = {
        {"Plane\\readme.txt=x", {}, {}, 0, "Plane\\readme.txt=x"},
        {"Jets\\A\\aircraft.cfg=[fltsim.0]\ntitle=Lear, Jets\\A\\empty\\, Jets\\A\\panel\\p.bmp=x, "
         "Jets\\B\\AirCraft.CFG=title=, Jets\\B\\empty\\, Jets\\B\\texture\\t.bmp=x, Jets\\readme.txt=x, "
         "Props\\Caf\xc3\xa9.1\\aircraft.cfg=[fltsim.0]\ntitle=Red\n[fltsim.1]\ntitle=Blue, gauges\\g.gau=x",
         {},
         {"Jets\\A: Lear, 1, 2", "Jets\\B: B, 0, 2", "Props\\Caf\xc3\xa9.1: Red, 2, 1"},
         0,
         "Jets\\A\\aircraft.cfg=[fltsim.0]\ntitle=Lear, Jets\\A\\empty\\, Jets\\A\\panel\\p.bmp=x, "
         "Jets\\readme.txt=x, gauges\\g.gau=x"},
        {"aircraft.cfg=, panel\\panel.cfg=x, Red\\aircraft.cfg=title=Red, Red\\texture\\t.bmp=x",
         {},
         {".: My planes, 0, 2", "Red: Red, 0, 2"},
         1,
         "Red\\aircraft.cfg=title=Red, Red\\texture\\t.bmp=x"},
        {"A\\aircraft.cfg=title=A, NestedZIP1_p.zip\\panel.cfg=of A, NestedZIP2_Two.2.zip\\aircraft.cfg=x, "
         "NestedZIP3_p.zip\\panel.cfg=of Two, NestedZIP4_all.zip\\all.txt=x",
         {{"nestedzip1_p.zip", "A\\p.zip"},
          {"nestedzip2_two.2.zip", "Two.2.zip"},
          {"nestedzip3_p.zip", "NestedZIP2_Two.2.zip\\p.zip"},
          {"nestedzip4_all.zip", "all.zip"}},
         {"A: A, 0, 2", "NestedZIP2_Two.2.zip: Two.2, 0, 2"},
         1,
         "NestedZIP2_Two.2.zip\\aircraft.cfg=x, NestedZIP3_p.zip\\panel.cfg=of Two, NestedZIP4_all.zip\\all.txt=x"},
        {"A\\aircraft.cfg=title=A, B\\aircraft.cfg=title=B, NestedZIP1_b.zip\\1=in a, NestedZIP2_a.zip\\2=circle",
         {{"nestedzip1_b.zip", "NestedZIP2_a.zip\\b.zip"}, {"nestedzip2_a.zip", "NestedZIP1_b.zip\\a.zip"}},
         {"A: A, 0, 1", "B: B, 0, 1"},
         0,
         "A\\aircraft.cfg=title=A, NestedZIP1_b.zip\\1=in a, NestedZIP2_a.zip\\2=circle"},
        {many + "a\\aircraft.cfg=, b\\aircraft.cfg=",
         {},
         {"a: a, 0, 401", "b: b, 0, 201"},
         0,
         manyOfA + "a\\aircraft.cfg="},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tree.substr(0, 60));
        DeleteTree(context, locations.StagingDir);
        ArchiveContents contents{.directory = drive.At("Staging\\ZIP_My planes.zip\\")};
        drive.Fill("Staging\\ZIP_My planes.zip", row.tree);
        for (const auto& [directory, archive] : row.nested)
            contents.nested[FoldCase(contents.directory) + directory + "\\"] = contents.directory + archive;
        const Tree tree = WalkTree(drive.Files(), contents.directory);
        contents.files = tree.files;
        contents.directories = tree.directories;

        const auto parts = FindAircraftParts(drive.Files(), contents);
        std::vector<std::string> found;
        for (const auto& part : parts)
            found.push_back(part.name + ": " + part.caption + ", " + std::to_string(part.configurations) + ", " +
                            std::to_string(part.files));
        EXPECT_EQ(found, row.parts);
        EXPECT_THAT(DeleteOtherParts(drive.Files(), contents, parts, row.kept), IsEmpty());
        const auto left = drive.Tree("Staging\\ZIP_My planes.zip");
        DeleteTree(context, locations.StagingDir);
        drive.Fill("Staging\\ZIP_My planes.zip", row.left);
        EXPECT_EQ(left, drive.Tree("Staging\\ZIP_My planes.zip"));
    }
}

TEST_F(TreeTest, OfTheOtherAircraftOnlyWhatCameFromTheArchiveGoes) {
    drive.Fill("Staging\\ZIP_p.zip",
               "A\\aircraft.cfg=, B\\aircraft.cfg=, B\\held.bmp=x, B\\Thumbs.db=x, B\\old.txt=x, B\\t\\t=x");
    const Tree tree = WalkTree(drive.Files(), drive.At("Staging\\ZIP_p.zip\\"));
    const ArchiveContents contents{tree.root, tree.files, tree.directories, {}};
    const auto parts = FindAircraftParts(drive.Files(), contents);
    drive.Fill("Staging\\ZIP_p.zip", "B\\mine.txt=mine, B\\old.txt=changed, B\\t\\mine\\");
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Delete", "held", FileFault::InUse);
    const std::string b = drive.At("Staging\\ZIP_p.zip\\B\\");
    EXPECT_THAT(DeleteOtherParts(faulty, contents, parts, 0),
                ElementsAre(b + "held.bmp (another program is using it)",
                            b + "old.txt (it was changed by another program meanwhile)"));
    EXPECT_EQ(drive.Outline("Staging\\ZIP_p.zip"),
              "A\\aircraft.cfg=, B\\Thumbs.db=x, B\\held.bmp=x, B\\mine.txt=mine, B\\old.txt=changed, B\\t\\mine\\");
}

} // namespace
} // namespace korvadex::test
