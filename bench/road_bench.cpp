// The road of an add-on against the tools that a person would otherwise take: loading beside `find`, unpacking beside
// `unzip` and `bsdtar`, installing beside `cp -r` and `sync`, removing beside `rm -r`.
//
// Ours and each tool take turns on the same data in one run, each in a process of its own; all times include the
// start of that process. The table at the end gives medians.
#include "bench/bench_command.h"
#include "bench/bench_data.h"
#include "bench/child_process.h"

#include "archive/process_zip.h"
#include "package/file_primitives.h"
#include "package/load_package.h"
#include "sim/install.h"
#include "sim/remove.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>

namespace korvadex::bench {

namespace {

namespace fs = std::filesystem;

// ---- the data, and a command that works on them

constexpr const char* BitmapPackage = "Bitmaps";
constexpr const char* ManyFilesPackage = "Many files";

// Made in a process of its own, so that its memory does not count as that of what is measured.
class Drive : public TemporaryDrive {
  public:
    Drive() {
        const bool isMade = MeasureWork([this] {
                                MakeBitmapPackage(Package(BitmapPackage));
                                MakeManyFilesPackage(Package(ManyFilesPackage));
                                MakeArchive(Package(BitmapPackage), At("bitmaps.zip"));
                                MakeArchive(Package(ManyFilesPackage), At("many.zip"));
                                MakeHeldFile(At("Held/Noise.bmp"));
                                MakeArchive(At("Held"), At("held.zip"));
                                MakeLargeFile(At("Large/Sheets.bmp"));
                                MakeArchive(At("Large"), At("large.zip"));
                                return true;
                            }).isGood;
        if (!isMade)
            throw std::runtime_error("the data could not be made in " + At("").string());
    }

    fs::path Package(const std::string& name) const { return At("Hangar/Bench") / name; }
};

LoadedPackage Load(Command& command, const std::string& name) {
    LoadedPackage package;
    LoadPackage(command.context, {"Bench", name}, package);
    return package;
}

std::size_t ListedFiles(const LoadedPackage& package) {
    std::size_t count = 0;
    for (const auto& group : package.ComponentFiles)
        count += group.size();
    return count;
}

// ---- the roads

// A command; with the loading of the package, as the window's command looks at the disk again before it begins.
std::function<Measure()> Ours(const Drive& drive, std::function<bool(Command&)> work, bool isJournaled = true) {
    return bench::Ours([&drive, work, isJournaled] {
        Command command(drive);
        return (isJournaled ? command.Journaled(work) : work(command)) && !command.user.isWarned;
    });
}

// The same beside itself without a journal.
constexpr double JournalLimit = 1.1;
std::vector<Contender> BothWays(const Drive& drive, const std::function<bool(Command&)>& work) {
    return {{"korvadex", Ours(drive, work)}, {"no journal", Ours(drive, work, false), JournalLimit}};
}

std::vector<Contender> operator+(std::vector<Contender> ours, const std::vector<Contender>& tools) {
    ours.insert(ours.end(), tools.begin(), tools.end());
    return ours;
}

void MakeEmpty(const fs::path& directory) {
    fs::remove_all(directory);
    fs::create_directories(directory);
}

bool Install(Command& command, const char* package) {
    InstallIntoSim(command.context, Load(command, package));
    return true;
}

Work LoadRoad(const Drive& drive) {
    const std::string package = drive.Package(ManyFilesPackage).string();
    const std::size_t count = SizeOf(package).files;
    return {"load",
            [] {},
            {{"korvadex",
              Ours(drive, [count](Command& command) { return ListedFiles(Load(command, ManyFilesPackage)) == count; })},
             {"find -printf", Tool({"find", package, "-printf", "%p %s %T@\\n"}), 1.5}},
            [] { return true; }};
}

// unzipLimit: of the time of unzip with its files on the disk, as ours are when the command ends.
Work UnpackRoad(const Drive& drive, const std::string& name, const std::string& archive, const fs::path& packed,
                double unzipLimit, double bsdtarLimit = 0) {
    const std::string path = drive.At(archive).string(), staging = drive.At("Staging").string();
    const TreeSize whole = SizeOf(packed);
    return {name,
            [&drive, staging] {
                MakeEmpty(staging);
                Command::ForgetJournal(drive);
            },
            BothWays(drive,
                     [archive](Command& command) {
                         modUnzip unzip;
                         std::string lastZipPath;
                         return ProcessZipFile(command.context, unzip, lastZipPath, "C:\\" + archive).has_value();
                     }) +
                std::vector<Contender>{
                    {"unzip, sync -f",
                     Tool({"sh", "-c", "unzip -q '" + path + "' -d '" + staging + "' && sync -f '" + staging + "'"}),
                     unzipLimit},
                    {"unzip", Tool({"unzip", "-q", path, "-d", staging})},
                    {"bsdtar", Tool({"bsdtar", "-x", "-f", path, "-C", staging}), bsdtarLimit}},
            [staging, whole] { return SizeOf(staging) == whole; }};
}

Work InstallRoad(const Drive& drive, const std::string& road, const char* name) {
    const std::string package = drive.Package(name).string();
    const fs::path installed = drive.At("FS/aircraft") / SpacesToUnderscores(name), gauges = drive.At("FS/gauges");
    const TreeSize whole = SizeOf(package);
    const std::string copy = "cp -r '" + package + "' '" + installed.string() + "'";
    const auto shell = [](const std::string& script) { return Tool({"sh", "-c", script}); };
    return {road,
            [&drive, installed, gauges] {
                fs::remove_all(installed);
                MakeEmpty(gauges);
                Command::ForgetJournal(drive);
            },
            BothWays(drive, [name](Command& command) { return Install(command, name); }) +
                std::vector<Contender>{
                    {"cp -r, sync", shell(copy + " && find '" + installed.string() + "' -exec sync {} +"), 1.5},
                    {"cp -r, sync -f", shell(copy + " && sync -f '" + installed.string() + "'")},
                    {"cp -r", shell(copy)}},
            [installed, gauges, whole] {
                fs::remove(installed / "kx_installed.txt");
                const TreeSize aircraft = SizeOf(installed), shared = SizeOf(gauges);
                return TreeSize{aircraft.files + shared.files, aircraft.bytes + shared.bytes} == whole;
            }};
}

Work RemoveRoad(const Drive& drive, const std::string& road, const char* name) {
    const fs::path installed = drive.At("FS/aircraft") / SpacesToUnderscores(name), gauges = drive.At("FS/gauges");
    const auto work = [name](Command& command) {
        RemoveFromSim(command.context, Load(command, name));
        return true;
    };
    return {road,
            [&drive, installed, gauges, name] {
                MakeEmpty(installed.parent_path()); // another package there would need the gauges as well
                MakeEmpty(gauges);
                Command::ForgetJournal(drive);
                if (!Ours(
                         drive, [name](Command& command) { return Install(command, name); }, false)()
                         .isGood)
                    throw std::runtime_error("nothing to remove could be installed");
            },
            BothWays(drive, work) + std::vector<Contender>{{"rm -r", Tool({"rm", "-r", installed.string()}), 1.0}},
            [installed, gauges] { return !fs::exists(installed) && SizeOf(gauges).files == 0; }};
}

Work ClearRoad(const Drive& drive) {
    const fs::path staging = drive.At("Staging"), package = drive.Package(ManyFilesPackage);
    const auto work = [](Command& command) {
        return DeleteTree(command.context, command.locations.StagingDir).empty();
    };
    return {"clear",
            [&drive, staging, package] {
                Command::ForgetJournal(drive);
                fs::remove_all(staging);
                fs::copy(package, staging, fs::copy_options::recursive);
            },
            BothWays(drive, work) +
                std::vector<Contender>{{"rm -r", Tool({"sh", "-c", "rm -r '" + staging.string() + "'/*"}), 1.0}},
            [staging] { return fs::is_empty(staging); }};
}

// ---- running them

constexpr int Rounds = 7;
constexpr double PeakLimit = 150; // 1,000,000 bytes

struct Line {
    std::string road, contender;
    double seconds = 0, peakMega = 0, ratio = 0, limit = 0;
};

void Run(benchmark::State& state, const Work& road, std::vector<Line>& lines) {
    std::vector<Turns> turns;
    for ([[maybe_unused]] auto turn : state) {
        if (const std::string failed = TakeTurns(road, turns); !failed.empty()) {
            state.SkipWithError((failed + " failed").c_str());
            return;
        }
        state.SetIterationTime(turns[0].seconds.back());
    }
    for (std::size_t i = 0; i < turns.size(); ++i) {
        const Contender& contender = road.contenders[i];
        const double ratio = turns[0].Median() / turns[i].Median();
        lines.push_back({road.name, contender.name, turns[i].Median(), turns[i].peakMega, ratio, contender.limit});
        if (i > 0)
            state.counters["of " + contender.name] = ratio;
    }
    state.counters["peak MB"] = turns[0].peakMega;
}

void PrintTable(const std::vector<Line>& lines) {
    std::printf("\n%-9s %-13s %10s %9s   %s\n", "road", "program", "median ms", "peak MB", "korvadex takes");
    for (const Line& line : lines) {
        std::printf("%-13s %-14s %10.1f %9.1f   ", line.road.c_str(), line.contender.c_str(), line.seconds * 1000,
                    line.peakMega);
        if (line.contender == "korvadex")
            std::printf("%s\n", line.peakMega > PeakLimit ? "more memory than 150 MB" : "");
        else if (line.limit > 0)
            std::printf("%.2f of its time (at most %.2f: %s)\n", line.ratio, line.limit,
                        line.ratio <= line.limit ? "reached" : "missed");
        else
            std::printf("%.2f of its time\n", line.ratio);
    }
}

} // namespace

int RunAll(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 2;
    const Drive drive;
    std::vector<Line> lines;
    for (const Work& road :
         {LoadRoad(drive), UnpackRoad(drive, "unpack", "bitmaps.zip", drive.Package(BitmapPackage), 1.0),
          UnpackRoad(drive, "many", "many.zip", drive.Package(ManyFilesPackage), 1.5),
          UnpackRoad(drive, "held", "held.zip", drive.At("Held"), 0),
          UnpackRoad(drive, "large", "large.zip", drive.At("Large"), 0, 0.6),
          InstallRoad(drive, "install", BitmapPackage), InstallRoad(drive, "install small", ManyFilesPackage),
          RemoveRoad(drive, "remove", BitmapPackage), RemoveRoad(drive, "remove small", ManyFilesPackage),
          ClearRoad(drive)})
        benchmark::RegisterBenchmark(road.name.c_str(),
                                     [road, &lines](benchmark::State& state) { Run(state, road, lines); })
            ->Iterations(Rounds)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    PrintTable(lines);
    return 0;
}

} // namespace korvadex::bench

int main(int count, char** arguments) {
    try {
        return korvadex::bench::RunAll(count, arguments);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "road_bench: %s\n", failure.what());
        return 1;
    }
}
