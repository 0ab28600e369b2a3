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

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <regex>
#include <span>
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

bool Run(const Work& work) {
    std::vector<Turns> turns;
    for (int round = 0; round < Rounds; ++round) {
        if (const std::string failed = TakeTurns(work, turns); !failed.empty()) {
            std::printf("%-17s %s failed\n", work.name.c_str(), failed.c_str());
            return false;
        }
    }
    for (std::size_t i = 0; i < turns.size(); ++i) {
        const Contender& contender = work.contenders[i];
        const double ratio = turns[0].Median() / turns[i].Median();
        std::printf("%-17s %-11s %9.1f ms", work.name.c_str(), contender.name.c_str(), turns[i].Median() * 1000);
        if (i > 0)
            std::printf("   korvadex takes %.2f of it", ratio);
        if (contender.limit > 0)
            std::printf(" (at most %.2f: %s)", contender.limit, ratio <= contender.limit ? "reached" : "missed");
        std::printf("\n");
        std::fflush(stdout);
    }
    return true;
}

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
              1.4},
             {"find | cat", Shell("find '" + aircraft + "' -name panel.cfg -exec cat {} +")}},
            [] { return true; }};
}

void CopyFresh(const fs::path& from, const fs::path& to) {
    fs::remove_all(to);
    fs::create_directories(to.parent_path());
    if (!MeasureTool({"cp", "-a", from.string(), to.string()}).isGood)
        throw std::runtime_error(from.string() + " could not be copied");
}

// The packages of a Hangar of textures, packed or unpacked in one go.
bool CompressAll(const TemporaryDrive& drive, bool compress) {
    Command command(drive);
    const auto packages = CollectDirectories(*command.files, "C:\\Hangar\\Bench\\", true, command.limits).paths;
    std::vector<std::string> directories;
    for (const std::string& package : packages)
        directories.push_back(AddBackslash(package));
    Compression compression(command.context, compress, directories);
    return std::ranges::all_of(directories, [&](const auto& each) { return compression.Take(each).empty(); }) &&
           !command.user.isWarned;
}

// Runs the script for each bitmap, which is "$f", the n-th.
std::function<Measure()> ForEachBitmap(const fs::path& hangar, const std::string& script) {
    return Shell("find '" + hangar.string() + "' -name '*.bmp' | { n=0; while read -r f; do n=$((n+1)); " + script +
                 " || exit 1; done; }");
}

// Without the markers.
std::uintmax_t BitmapBytes(const fs::path& directory) {
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(directory))
        bytes += entry.path().extension() == ".bmp" ? entry.file_size() : 0;
    return bytes;
}

// Beside the time the size counts: all together, ours and what zip makes.
bool RunCompress(const TemporaryDrive& drive, const std::string& name, TextureKind kind, double timeLimit,
                 double sizeLimit) {
    const fs::path plain = drive.At("Plain"), hangar = drive.At("Hangar/Bench"), byZip = drive.At("ByZip");
    fs::remove_all(plain);
    MakeTextures(plain, kind);
    std::uintmax_t own = 0;
    const Work work{
        name,
        [=] {
            CopyFresh(plain, hangar);
            fs::remove_all(byZip);
            fs::create_directories(byZip);
        },
        {{"korvadex", Ours([&drive] { return CompressAll(drive, true); })},
         {"zip -9 -j", ForEachBitmap(hangar, "zip -9 -j -q '" + byZip.string() + "'/$n.zip \"$f\""), timeLimit}},
        [&] {
            own = BitmapBytes(hangar);
            return own < SizeOf(plain).bytes;
        }};
    if (!Run(work))
        return false;
    const auto zips = SizeOf(byZip).bytes;
    const double ratio = static_cast<double>(own) / static_cast<double>(zips);
    std::printf("%-17s of %.1f MB korvadex makes %.2f MB, zip %.2f MB: %.3f of it (at most %.2f: %s)\n", name.c_str(),
                static_cast<double>(SizeOf(plain).bytes) / 1e6, static_cast<double>(own) / 1e6,
                static_cast<double>(zips) / 1e6, ratio, sizeLimit, ratio <= sizeLimit ? "reached" : "missed");
    return true;
}

Work DecompressWork(const TemporaryDrive& drive) {
    const fs::path plain = drive.At("Plain"), packed = drive.At("Packed"), hangar = drive.At("Hangar/Bench"),
                   unpacked = drive.At("ByUnzip");
    fs::remove_all(plain);
    MakeTextures(plain, TextureKind::Painted);
    CopyFresh(plain, hangar);
    CompressAll(drive, true);
    CopyFresh(hangar, packed);
    return {"decompress",
            [=] {
                CopyFresh(packed, hangar);
                fs::remove_all(unpacked);
                fs::create_directories(unpacked);
            },
            {{"korvadex", Ours([&drive] { return CompressAll(drive, false); })},
             {"unzip", ForEachBitmap(hangar, "unzip -o -q \"$f\" -d '" + unpacked.string() + "'"), 0.35}},
            [=] { return SizeOf(hangar) == SizeOf(plain); }};
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

} // namespace

// Those whose name the regular expression finds.
bool RunAll(const std::regex& wanted) {
    const TemporaryDrive drive;
    const auto run = [&drive](Work (*make)(const TemporaryDrive&)) {
        return [&drive, make](const std::string&) { return Run(make(drive)); };
    };
    const auto compress = [&drive](TextureKind kind, double timeLimit, double sizeLimit) {
        return [=, &drive](const std::string& name) { return RunCompress(drive, name, kind, timeLimit, sizeLimit); };
    };
    const std::pair<std::string, std::function<bool(const std::string&)>> works[] = {
        {"unused gauges", run(UnusedGaugesWork)},
        {"compress painted", compress(TextureKind::Painted, 0.25, 0.97)},
        {"compress flat", compress(TextureKind::Flat, 0.6, 1.0)},
        {"decompress", run(DecompressWork)},
        {"uninstall all", run(UninstallWork)},
        {"install 120", run(InstallEachWork)}};
    bool isGood = true;
    for (const auto& [name, work] : works)
        if (std::regex_search(name, wanted))
            isGood = work(name) && isGood;
    return isGood;
}

} // namespace korvadex::bench

int main(int count, char** arguments) {
    try {
        std::string filter;
        for (const std::string argument : std::span(arguments, static_cast<std::size_t>(count)).subspan(1))
            if (const std::string option = "--benchmark_filter="; argument.starts_with(option))
                filter = argument.substr(option.size());
        return korvadex::bench::RunAll(std::regex(filter)) ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
