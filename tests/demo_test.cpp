// The ready-made example is whole: its media can be opened, its packages load without a question, its gauges are
// where its panels look for them, and what stands installed is what an installation makes.
#include "demo/example.h"

#include "archive/compression.h"
#include "archive/process_zip.h"
#include "package/load_package.h"
#include "platform/windows_path.h"
#include "sim/gauges.h"
#include "sim/install.h"
#include "tests/support/command_fixture.h"

#include <algorithm>
#include <iterator>

namespace korvadex::test {
namespace {

using DriveTree = std::map<std::string, std::string>;

class ExampleTest : public CommandTest {
  protected:
    ExampleTest() {
        root = drive.At("Example\\");
        drive.MakeDirectory("Example");
        demo::MakeExample(drive.Files(), root);
        locations = {root + demo::StagingDirectory, root + demo::HangarDirectory, root + demo::SimDirectory};
    }

    LoadedPackage Load(const std::string& category, const std::string& name) {
        window.category = category;
        window.packageText = name;
        LoadedPackage package;
        LoadPackage(context, locations.HangarDir + category + "\\" + name + "\\", false, package);
        return package;
    }

    std::string root;
};

unsigned Little(const std::string& bytes, std::size_t at, std::size_t count) {
    unsigned value = 0;
    for (std::size_t i = 0; i < count && at + i < bytes.size(); ++i)
        value |= unsigned{static_cast<unsigned char>(bytes[at + i])} << (8 * i);
    return value;
}

bool IsWholeBitmap(const std::string& bytes) {
    const std::size_t start = Little(bytes, 10, 4), bits = Little(bytes, 28, 2);
    const std::size_t row = (Little(bytes, 18, 4) * bits / 8 + 3) / 4 * 4;
    return bytes.starts_with("BM") && Little(bytes, 2, 4) == bytes.size() && (bits == 8 || bits == 24) &&
           start + row * Little(bytes, 22, 4) == bytes.size();
}

// From marker to marker up to the coded picture, which holds no marker but its end.
bool IsWholeJpeg(const std::string& bytes) {
    if (!bytes.starts_with("\xFF\xD8") || !bytes.ends_with("\xFF\xD9"))
        return false;
    std::size_t at = 2;
    for (char marker = 0; marker != '\xDA'; at += 2 + Little({bytes[at + 3], bytes[at + 2]}, 0, 2)) {
        if (at + 4 > bytes.size() || bytes[at] != '\xFF')
            return false;
        marker = bytes[at + 1];
    }
    for (; at + 2 < bytes.size(); ++at)
        if (bytes[at] == '\xFF' && bytes[at + 1] != '\0')
            return false;
    return true;
}

bool IsWholeWave(const std::string& bytes) {
    return bytes.starts_with("RIFF") && bytes.substr(8, 8) == "WAVEfmt " &&
           Little(bytes, 4, 4) + 8 == bytes.size() && Little(bytes, 40, 4) + 44 == bytes.size();
}

bool IsWholeCabinet(const std::string& bytes) {
    return bytes.starts_with("MSCF") && Little(bytes, 8, 4) == bytes.size();
}

TEST_F(ExampleTest, IsTheSameEachTime) {
    const DriveTree tree = drive.Tree("Example");
    root = drive.At("Second\\");
    drive.MakeDirectory("Second");
    demo::MakeExample(drive.Files(), root);
    DriveTree second = drive.Tree("Second");
    for (const auto& [name, bytes] : tree)
        EXPECT_TRUE(bytes == second[name] || name == "Korvadex\\kx.ini") << name; // this one names the place
    EXPECT_EQ(tree.size(), second.size());
}

TEST_F(ExampleTest, HasMediaThatCanBeOpened) {
    static constexpr struct {
        const char* extension;
        bool (*isWhole)(const std::string&);
        int least;
    } Kinds[] = {{".bmp", IsWholeBitmap, 20},
                 {".jpg", IsWholeJpeg, 10},
                 {".wav", IsWholeWave, 8},
                 {".cab", IsWholeCabinet, 5}};
    // With what the archives hold.
    modUnzip unzip;
    std::string lastZipPath;
    user.Expect("Found another ZIP file called skerrow panel.zip...", Answer::Yes);
    for (const char* archive : {demo::PlainArchive, demo::NestedArchive, demo::TwoLiveriesArchive})
        EXPECT_TRUE(ProcessZipFile(context, unzip, lastZipPath, root + demo::DownloadsDirectory + archive))
            << archive;
    const DriveTree tree = drive.Tree("Example");
    for (const auto& kind : Kinds) {
        int count = 0;
        for (const auto& [name, bytes] : tree)
            if (EndsWithNoCase(name, kind.extension)) {
                ++count;
                EXPECT_TRUE(kind.isWhole(bytes)) << name;
            }
        EXPECT_GE(count, kind.least) << kind.extension;
    }
    EXPECT_TRUE(tree.contains("Staging\\ZIP_Taymere 60.zip\\Gr\xC3\xBC\xC3\x9F"
                              "e vom Autor.txt"));
}

TEST_F(ExampleTest, HasPackagesThatLoadWithoutAQuestion) {
    static constexpr struct {
        const char *category, *name, *panelAlias;
        std::size_t gauges, pictures;
    } Packages[] = {{demo::LightPropsCategory, demo::CompletePackage, "", 2, 2},
                    {demo::LightPropsCategory, demo::AliasPackage, "pellmoor p12\\panel", 0, 1},
                    {demo::HeavyPropsCategory, demo::MissingGaugePackage, "", 1, 1},
                    {demo::HelicoptersCategory, demo::InstalledPackage, "", 2, 3}};
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

TEST_F(ExampleTest, HasTheGaugesOfTheSimulatorsOwnPanels) {
    std::vector<std::string> used;
    for (const char* aircraft : {"Velmora190", "Brannock40"})
        EXPECT_EQ(CrossCheckPanel(context, locations.MsfsDir + "aircraft\\" + aircraft + "\\panel\\panel.cfg",
                                  used),
                  "")
            << aircraft;
    EXPECT_EQ(CrossCheckPanel(context, locations.MsfsDir + "aircraft\\Halden7\\panel\\panel.cfg", used),
              PanelNoGauges);
}

TEST_F(ExampleTest, InstallsEveryPackageAndWhatStoodInstalledWasInstalledTheSameWay) {
    const DriveTree before = drive.Tree("Example");
    CommandState state;
    user.Expect("Are you sure you want to remove this package from the Flight Simulator directory?",
                Answer::Yes);
    user.Expect("Done.", Answer::Ok);
    RemoveFromSim(context, state, Load(demo::HelicoptersCategory, demo::InstalledPackage));
    EXPECT_FALSE(drive.Has("Example\\FS2002\\gauges\\Quillon.cab"));
    EXPECT_TRUE(drive.Has("Example\\FS2002\\gauges\\generic.clock.gau"));

    const std::string passed = "Crosscheck complete.  PASSED.\n\nInstallation complete.";
    user.ExpectInstallStatus(std::string(demo::InstalledPackage) + " ...\n\n" + passed);
    InstallIntoSim(context, Load(demo::HelicoptersCategory, demo::InstalledPackage));
    DriveTree after = drive.Tree("Example");
    // An effect may belong to others as well: removing leaves it, installing leaves it.
    EXPECT_EQ(after, before);

    user.Expect("This package uses a panel via alias (pellmoor p12\\panel) which is not installed in MSFS...",
                Answer::Ok);
    InstallIntoSim(context, Load(demo::LightPropsCategory, demo::AliasPackage));
    user.ExpectInstallStatus(std::string(demo::CompletePackage) + " ...\n\n" + passed);
    InstallIntoSim(context, Load(demo::LightPropsCategory, demo::CompletePackage));
    user.ExpectInstallStatus(std::string(demo::AliasPackage) +
                             " ...\n\nPanel alias used.  Crosscheck bypassed.\n\nInstallation complete.");
    InstallIntoSim(context, Load(demo::LightPropsCategory, demo::AliasPackage));
    EXPECT_EQ(drive.Get("Example\\FS2002\\aircraft\\Pellmoor_P12_Floats\\Panel\\panel.cfg"),
              "[fltsim]\r\nalias=pellmoor_p12\\panel\r\n");
    user.ExpectInstallStatus(std::string(demo::MissingGaugePackage) + " ...\n\nPossible problem ...\n\n...");
    InstallIntoSim(context, Load(demo::HeavyPropsCategory, demo::MissingGaugePackage));
    EXPECT_TRUE(drive.Has("Example\\FS2002\\aircraft\\Orvane_Courier\\aircraft.cfg"));
}

class ExampleRoundTrip : public ExampleTest {
  protected:
    static constexpr struct {
        const char *category, *name;
    } Packages[] = {{demo::LightPropsCategory, demo::CompletePackage},
                    {demo::LightPropsCategory, demo::AliasPackage}, // needs the one before
                    {demo::HeavyPropsCategory, demo::MissingGaugePackage},
                    {demo::HelicoptersCategory, demo::InstalledPackage}};

    // Installs this package and those behind it and removes them again; gives what they leave.
    std::vector<std::string> InstallAndRemove(std::size_t index = 0) {
        if (index == std::size(Packages))
            return {};
        const auto& [category, name] = Packages[index];
        SCOPED_TRACE(name);
        const auto before = drive.States("Example\\FS2002");
        const std::vector<std::string> names = drive.Names("Example\\FS2002");
        user.ExpectInstallStatus("...");
        InstallIntoSim(context, Load(category, name));
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
    void Remove(std::size_t index) {
        CommandState state;
        state.QuietMode = true;
        RemoveFromSim(context, state, Load(Packages[index].category, Packages[index].name));
        EXPECT_THAT(state.keptPackages, testing::IsEmpty());
    }
};

TEST_F(ExampleRoundTrip, LeavesTheSimulatorAsItWas) {
    Remove(std::size(Packages) - 1);
    EXPECT_THAT(InstallAndRemove(), testing::ElementsAre("effects\\pellmoor_dust.fx"));
    EXPECT_THAT(InstallAndRemove(), testing::IsEmpty()) << "what stays is there now";

    const auto hangar = drive.States("Example\\Hangar");
    for (const bool compress : {true, false}) {
        for (const auto& [category, name] : Packages)
            EXPECT_TRUE(
                CompressPackage(context, locations.HangarDir + category + "\\" + name + "\\", compress));
        EXPECT_EQ(drive.States("Example\\Hangar") == hangar, !compress);
        EXPECT_THAT(InstallAndRemove(), testing::IsEmpty());
    }
}

} // namespace
} // namespace korvadex::test
