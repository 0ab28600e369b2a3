// Work on the whole simulator and the whole Hangar against what a person would otherwise do: the search for unused
// gauges beside one plain read of the panels, packing beside `zip -9 -j` and unpacking beside `unzip` file by file,
// removing 500 aircraft beside `rm -r`, installing 120 in one go beside installing them one by one.
//
// Ours and each tool take turns on the same data in one run, each in a process of its own; all times include the
// start of that process. The table at the end gives medians.
#include "bench/bench_command.h"
#include "bench/bench_data.h"
#include "bench/child_process.h"
#include "bench/unseen_window.h"

#include "app/program.h"
#include "archive/compression.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "sim/unused_gauges.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <stdexcept>

namespace korvadex::bench {

namespace {

namespace fs = std::filesystem;

constexpr int GaugeCount = 3000, PanelCount = 1000, InstalledCount = 500, Rounds = 5;

// ---- the data

std::string GaugeOf(int number) {
    static constexpr const char* Kinds[] = {"altimeter", "airspeed", "clock", "radio stack", "horizon"};
    return "maker" + std::to_string(number % 97) + "_" + Kinds[number % 5] + std::to_string(number);
}

// A panel of sixty gauges and the lines between them, about 6 KB.
std::string PanelText(int number) {
    std::string text = "// Panel of aircraft " + std::to_string(number) + "\r\n[Window Titles]\r\n";
    for (int window = 0; window < 4; ++window) {
        text += "[Window0" + std::to_string(window) + "]\r\nfile=Panel_" + std::to_string(window) +
                ".bmp\r\nsize_mm=640\r\nposition=7\r\nvisible=1\r\nident=MAIN_PANEL\r\n\r\n";
        for (int gauge = 0; gauge < 15; ++gauge)
            text += "Gauge" + std::to_string(10 + gauge) + "=" +
                    GaugeOf((number * 7 + window * 400 + gauge * 31) % (GaugeCount - 200)) + "!Needle " +
                    std::to_string(gauge) + ",  " + std::to_string(20 + gauge * 30) + ",410,71,70\r\n";
    }
    return text + "[VIEWS]\r\nVIEW_FORWARD_DIR=3,0,0,0\r\n";
}

// ---- the works

std::function<Measure()> Shell(const std::string& script) {
    return Tool({"sh", "-c", "{ " + script + "; } >/dev/null"});
}

Work UnusedGaugesWork(const TemporaryDrive& drive) {
    for (int gauge = 0; gauge < GaugeCount; ++gauge)
        Put(drive.At("FS/gauges/" + GaugeOf(gauge) + ".gau"), "MZ");
    for (int panel = 0; panel < PanelCount; ++panel)
        Put(drive.At("FS/aircraft/Aircraft " + std::to_string(panel) + "/panel/panel.cfg"), PanelText(panel));
    const std::string aircraft = drive.At("FS/aircraft").string();
    return {"unused gauges",
            [] {},
            {{"korvadex", Ours([&drive] {
                  Command command(drive);
                  ListUnusedGauges(command.context);
                  return command.user.unusedGauges >= 200 && !command.user.isWarned;
              })},
             {"plain read", Ours([&drive] {
                  const auto files = drive.Files();
                  std::size_t bytes = 0;
                  for (const FileEntry& file : WalkTree(*files, "C:\\FS\\aircraft\\").files) {
                      if (file.key == "panel.cfg")
                          bytes += ReadBytes(*files, file.path)->size();
                  }
                  return bytes > 0;
              }),
              2.0},
             {"find | cat", Shell("find '" + aircraft + "' -name panel.cfg -exec cat {} +")}},
            [] { return true; }};
}

void CopyFresh(const fs::path& from, const fs::path& to) {
    fs::remove_all(to);
    fs::create_directories(to.parent_path());
    if (!MeasureTool({"cp", "-a", from.string(), to.string()}).isGood)
        throw std::runtime_error(from.string() + " could not be copied");
}

// The textures of a package, and some of the small pictures that panels are full of.
void MakePictures(const fs::path& directory) {
    MakeBitmapPackage(directory);
    for (int number = 20; number < 67; ++number) // the rest is enough
        fs::remove(directory / "Texture" / ("Sheet " + std::to_string(number) + ".bmp"));
    std::ifstream sheet(directory / "Texture/Sheet 0.bmp", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(sheet), {}};
    for (std::size_t number = 0; number < 60; ++number)
        Put(directory / "Panel" / ("Small " + std::to_string(number) + ".bmp"),
            bytes.substr(0, 54) + bytes.substr(100'000 + number * 30'000, 66'000));
}

Work CompressWork(const TemporaryDrive& drive) {
    const fs::path plain = drive.At("Plain"), package = drive.At("Hangar/Bench/Pictures");
    MakePictures(plain);
    const fs::path byZip = drive.At("ByZip");
    return {
        "compress",
        [=] {
            CopyFresh(plain, package);
            fs::remove_all(byZip);
            fs::create_directories(byZip);
        },
        {{"korvadex", Ours([&drive] {
              Command command(drive);
              return CompressPackage(command.context, "C:\\Hangar\\Bench\\Pictures\\", true).empty() &&
                     !command.user.isWarned;
          })},
         {"zip -9 -j",
          Shell("find '" + package.string() + "' -name '*.bmp' -o -name '*.gau' | while read -r f; do zip -9 -j -q '" +
                byZip.string() + "'/\"${f##*/}\".zip \"$f\" || exit 1; done"),
          0.6}},
        [=] {
            // Together they are not larger than what zip makes of them.
            fs::remove_all(byZip);
            fs::create_directories(byZip);
            std::uintmax_t own = 0, zips = 0;
            for (const auto& entry : fs::recursive_directory_iterator(plain)) {
                const std::string extension = entry.path().extension().string();
                if (extension != ".bmp" && extension != ".gau")
                    continue;
                const fs::path other = byZip / "x.zip";
                fs::remove(other);
                if (!MeasureTool({"zip", "-9", "-j", "-q", other.string(), entry.path().string()}).isGood)
                    return false;
                own += fs::file_size(package / fs::relative(entry.path(), plain));
                zips += fs::file_size(other);
            }
            return own <= zips;
        }};
}

Work DecompressWork(const TemporaryDrive& drive) {
    const fs::path plain = drive.At("Plain"), packed = drive.At("Packed"), package = drive.At("Hangar/Bench/Pictures"),
                   unpacked = drive.At("ByUnzip");
    CopyFresh(plain, package);
    Command command(drive);
    CompressPackage(command.context, "C:\\Hangar\\Bench\\Pictures\\", true);
    CopyFresh(package, packed);
    return {"decompress",
            [=] {
                CopyFresh(packed, package);
                fs::remove_all(unpacked);
                fs::create_directories(unpacked);
            },
            {{"korvadex", Ours([&drive] {
                  Command own(drive);
                  return CompressPackage(own.context, "C:\\Hangar\\Bench\\Pictures\\", false).empty() &&
                         !own.user.isWarned;
              })},
             {"unzip",
              Shell("find '" + package.string() +
                    "' -name '*.bmp' -o -name '*.gau' | while read -r f; do unzip -o -q \"$f\" -d '" +
                    unpacked.string() + "' || exit 1; done"),
              0.35}},
            [=] { return SizeOf(package) == SizeOf(plain); }};
}

Work UninstallWork(const TemporaryDrive& drive) {
    const fs::path made = drive.At("Made"), aircraft = drive.At("FS/aircraft"), gauges = drive.At("FS/gauges");
    fs::remove_all(drive.At("Hangar/Bench"));
    for (int number = 0; number < InstalledCount; ++number) {
        const std::string name = "Plane" + std::to_string(number);
        {
            const fs::path directory = drive.At("Hangar/Bench/" + name);
            Put(directory / "aircraft.cfg", "[fltsim.0]\r\ntitle=" + name + "\r\n");
            Put(directory / "Panel/panel.cfg", PanelText(number));
            Put(directory / "Model/plane.mdl", std::string(20'000, 'm'));
            Put(directory / "Sound/sound.cfg", "[fltsim]\r\nproduct_code=FSIM\r\n");
            for (int texture = 0; texture < 10; ++texture)
                Put(directory / "Texture" / (std::to_string(texture) + ".bmp"), std::string(5000, 't'));
        }
        CopyFresh(drive.At("Hangar/Bench/" + name), made / name);
        Put(drive.At("Hangar/Bench/" + name + "/Gauges/" + GaugeOf(number) + ".gau"), "MZ");
    }
    drive.PutSettings();
    return {"uninstall all",
            [=, &drive] {
                Command::ForgetJournal(drive);
                fs::remove_all(gauges);
                fs::create_directories(gauges);
                for (int number = 0; number < InstalledCount; ++number)
                    Put(gauges / (GaugeOf(number) + ".gau"), "MZ");
                CopyFresh(made, aircraft);
            },
            {{"korvadex", Ours([&drive] {
                  const auto files = drive.Files();
                  NoLauncher launcher;
                  AgreeableUser user;
                  UnseenWindow form;
                  UnseenDialogs dialogs;
                  UnseenConverter converter;
                  Program program(*files, launcher, user, dialogs, converter, form, "C:\\App\\", "");
                  if (!program.Start())
                      return false;
                  program.UninstallAll();
                  return !user.isWarned;
              })},
             {"rm -r", Shell("rm -r '" + aircraft.string() + "'/* '" + gauges.string() + "'/*")}},
            [=] { return fs::is_empty(aircraft); }};
}

Work InstallEachWork(const TemporaryDrive& drive) {
    static constexpr int Count = 120;
    const fs::path simulator = drive.At("FS");
    fs::remove_all(drive.At("Hangar/Bench"));
    for (int number = 0; number < Count; ++number) {
        const fs::path directory = drive.At("Hangar/Bench/Plane" + std::to_string(number));
        Put(directory / "aircraft.cfg", "[fltsim.0]\r\ntitle=Plane\r\n");
        Put(directory / "Panel/panel.cfg", PanelText(number));
        Put(directory / "Model/plane.mdl", std::string(200'000, 'm'));
        Put(directory / "Gauges" / (GaugeOf(number) + ".gau"), "MZ");
        for (int texture = 0; texture < 20; ++texture)
            Put(directory / "Texture" / (std::to_string(texture) + ".bmp"), std::string(66'000, 't'));
    }
    drive.PutSettings();
    const auto install = [&drive](bool atOnce) {
        return Ours([&drive, atOnce] {
            const auto files = drive.Files();
            NoLauncher launcher;
            AgreeableUser user;
            UnseenWindow form;
            UnseenDialogs dialogs;
            UnseenConverter converter;
            Program program(*files, launcher, user, dialogs, converter, form, "C:\\App\\", "");
            if (!program.Start())
                return false;
            std::vector<PackageRef> packages;
            for (const HangarPackage& package : program.View().packages)
                packages.push_back({"Bench", package.name});
            if (atOnce)
                program.InstallEach(packages);
            for (int i = 0; i < std::ssize(packages) && !atOnce; ++i) {
                program.ChoosePackage(i);
                program.InstallPackage();
            }
            return packages.size() == Count && !user.isWarned;
        });
    };
    return {"install 120",
            [&drive, simulator] {
                Command::ForgetJournal(drive);
                for (const char* directory : {"aircraft", "gauges"}) {
                    fs::remove_all(simulator / directory);
                    fs::create_directories(simulator / directory);
                }
            },
            {{"in one go", install(true)}, {"one by one", install(false), 1.2}},
            [simulator] { return std::distance(fs::directory_iterator(simulator / "aircraft"), {}) == Count; }};
}

// ---- running them

bool Run(const Work& work) {
    std::vector<Turns> turns;
    for (int round = 0; round < Rounds; ++round) {
        if (const std::string failed = TakeTurns(work, turns); !failed.empty()) {
            std::printf("%-14s %s failed\n", work.name.c_str(), failed.c_str());
            return false;
        }
    }
    for (std::size_t i = 0; i < turns.size(); ++i) {
        const Contender& contender = work.contenders[i];
        const double ratio = turns[0].Median() / turns[i].Median();
        std::printf("%-14s %-11s %9.1f ms", work.name.c_str(), contender.name.c_str(), turns[i].Median() * 1000);
        if (i > 0)
            std::printf("   korvadex takes %.2f of it", ratio);
        if (contender.limit > 0)
            std::printf(" (at most %.2f: %s)", contender.limit, ratio <= contender.limit ? "reached" : "missed");
        std::printf("\n");
        std::fflush(stdout);
    }
    return true;
}

} // namespace

bool RunAll(const std::string& only) {
    const TemporaryDrive drive;
    const std::vector<std::pair<std::string, Work (*)(const TemporaryDrive&)>> works = {{"gauges", UnusedGaugesWork},
                                                                                        {"compress", CompressWork},
                                                                                        {"decompress", DecompressWork},
                                                                                        {"uninstall", UninstallWork},
                                                                                        {"install", InstallEachWork}};
    bool isGood = true;
    for (const auto& [name, make] : works)
        isGood = (only.empty() || only == name || (name == "compress" && only == "decompress"))
                     ? Run(make(drive)) && isGood
                     : isGood;
    return isGood;
}

} // namespace korvadex::bench

int main(int count, char** arguments) {
    try {
        return korvadex::bench::RunAll(count > 1 ? arguments[1] : "") ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
