// The ready-made example is whole: its pictures can be opened, its packages load without a question, its gauges are
// where its panels look for them, and what stands installed is what an installation makes.
#include "demo/example.h"

#include "archive/compression.h"
#include "archive/process_zip.h"
#include "package/file_primitives.h"
#include "package/load_package.h"
#include "platform/windows_path.h"
#include "sim/install.h"
#include "sim/remove.h"
#include "tests/support/command_fixture.h"

#include <QImage>

#include <algorithm>
#include <iterator>

namespace korvadex::test {
namespace {

using DriveTree = std::map<std::string, std::string>;

constexpr struct {
    const char *category, *name, *panelAlias, *status;
    std::size_t gauges, pictures;
} Packages[] = {{demo::LightPropsCategory, demo::CompletePackage, "", "Crosscheck complete.  PASSED...", 2, 2},
                // Needs the one before.
                {demo::LightPropsCategory, demo::AliasPackage, "pellmoor p12\\panel", "Panel alias used...", 0, 1},
                {demo::HeavyPropsCategory, demo::MissingGaugePackage, "", "Possible problem...", 1, 1},
                {demo::HelicoptersCategory, demo::InstalledPackage, "", "Crosscheck complete.  PASSED...", 2, 3}};

class ExampleTest : public CommandTest {
  protected:
    ExampleTest() {
        root = drive.At("Example\\");
        drive.MakeDirectory("Example");
        demo::MakeExample(drive.Files(), root);
        locations = {root + demo::StagingDirectory, root + demo::HangarDirectory, root + demo::SimDirectory};
    }

    LoadedPackage Load(const std::string& category, const std::string& name) {
        LoadedPackage package;
        LoadPackage(context, {category, name}, package);
        return package;
    }
    std::string Directory(const std::string& category, const std::string& name) const {
        return locations.HangarDir + category + "\\" + name + "\\";
    }

    std::string root;
};

TEST_F(ExampleTest, IsTheSameEachTime) {
    DriveTree tree = drive.Tree("Example");
    root = drive.At("Second\\");
    drive.MakeDirectory("Second");
    demo::MakeExample(drive.Files(), root);
    DriveTree second = drive.Tree("Second");
    for (DriveTree* each : {&tree, &second})
        EXPECT_EQ(each->erase("Korvadex\\kx.ini"), 1u); // this one names the place
    EXPECT_TRUE(tree == second);
}

TEST_F(ExampleTest, HasPicturesThatCanBeOpened) {
    // With what the archives hold.
    modUnzip unzip;
    std::string lastZipPath;
    user.Expect("Found another ZIP file called skerrow panel.zip...", Answer::Yes);
    for (const char* archive : {demo::PlainArchive, demo::NestedArchive, demo::TwoLiveriesArchive})
        EXPECT_TRUE(ProcessZipFile(context, unzip, lastZipPath, root + demo::DownloadsDirectory + archive)) << archive;
    const DriveTree tree = drive.Tree("Example");
    int count = 0;
    for (const auto& [name, bytes] : tree)
        if (EndsWithNoCase(name, ".jpg") || EndsWithNoCase(name, ".bmp")) {
            ++count;
            EXPECT_FALSE(QImage::fromData(bytes).isNull()) << name;
        }
    EXPECT_EQ(count, 48);
    EXPECT_TRUE(tree.contains("Staging\\ZIP_Taymere 60.zip\\Gr\xC3\xBC\xC3\x9F"
                              "e vom Autor.txt"));
}

TEST_F(ExampleTest, HasPackagesThatLoadWithoutAQuestion) {
    for (const auto& expected : Packages) {
        const LoadedPackage package = Load(expected.category, expected.name);
        EXPECT_EQ(package.aircraftTitle, expected.name);
        EXPECT_EQ(package.PackagePanelAlias, expected.panelAlias) << expected.name;
        EXPECT_EQ(package.ComponentFiles[Gauges].size(), expected.gauges) << expected.name;
        EXPECT_EQ(package.ComponentFiles[Images].size(), expected.pictures) << expected.name;
        EXPECT_TRUE(package.ComponentFiles[Unrecognized].empty()) << expected.name;
        for (const char* name : {"aircraft.cfg", "model.cfg", "panel.cfg", "sound.cfg"})
            EXPECT_TRUE(package.PackageHasFile(name)) << expected.name << " " << name;
    }
}

class ExampleRoundTrip : public ExampleTest {
  protected:
    // Installs this package and those behind it and removes them again; gives what they leave.
    std::vector<std::string> InstallAndRemove(std::size_t index = 0) {
        if (index == std::size(Packages))
            return {};
        SCOPED_TRACE(Packages[index].name);
        const auto before = drive.States("Example\\FS2002");
        const std::vector<std::string> names = drive.Names("Example\\FS2002");
        Install(index);
        InstallAndRemove(index + 1);
        Remove(index);
        const std::vector<std::string> left = drive.Names("Example\\FS2002");
        const auto after = drive.States("Example\\FS2002");
        for (const auto& [path, state] : before)
            EXPECT_TRUE(after.contains(path) && after.at(path) == state) << path;
        std::vector<std::string> added;
        std::set_difference(left.begin(), left.end(), names.begin(), names.end(), std::back_inserter(added));
        EXPECT_EQ(left.size(), names.size() + added.size());
        return added;
    }
    void Install(std::size_t index) {
        const auto& row = Packages[index];
        user.ExpectInstallStatus(row.name + std::string(" ...\n\n") + row.status);
        InstallIntoSim(context, Load(row.category, row.name));
    }
    void Remove(std::size_t index) {
        const auto package = Load(Packages[index].category, Packages[index].name);
        EXPECT_EQ(RemoveFromSim(context, package, nullptr, true).kept, "");
    }
};

TEST_F(ExampleRoundTrip, LeavesTheSimulatorAsItWas) {
    const DriveTree tree = drive.Tree("Example");
    const std::size_t installed = std::size(Packages) - 1;
    Remove(installed);
    EXPECT_FALSE(drive.Has("Example\\FS2002\\gauges\\Quillon.cab"));
    EXPECT_TRUE(drive.Has("Example\\FS2002\\gauges\\generic.clock.gau"));
    Install(installed);
    DriveTree again = drive.Tree("Example");
    const std::string directory = SpacesToUnderscores(Packages[installed].name) + "\\";
    EXPECT_EQ(again.erase("FS2002\\aircraft\\" + directory + "kx_installed.txt"), 1u);
    EXPECT_TRUE(again == tree) << "it stood there as an earlier version has installed it";
    Remove(installed);
    EXPECT_THAT(InstallAndRemove(), testing::ElementsAre("effects\\pellmoor_dust.fx"));
    EXPECT_THAT(InstallAndRemove(), testing::IsEmpty()) << "what stays is there now";

    const auto hangar = drive.States("Example\\Hangar");
    for (const bool compress : {true, false}) {
        for (const auto& row : Packages)
            EXPECT_THAT(CompressPackage(context, Directory(row.category, row.name), compress), testing::IsEmpty());
        EXPECT_EQ(drive.States("Example\\Hangar") == hangar, !compress);
        EXPECT_THAT(InstallAndRemove(), testing::IsEmpty());
    }
}

} // namespace
} // namespace korvadex::test
