// A collection of 2,000 packages in 20 categories: how long the program takes to start on it, and to build each of the
// overviews of the list window. "Cold" is a file system that has seen nothing of the disk yet, "warm" one that has just
// done the same.
#include "bench/bench_command.h"
#include "bench/unseen_window.h"

#include "app/program.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>

namespace korvadex::bench {

namespace {

namespace fs = std::filesystem;

constexpr int Categories = 20, PackagesPerCategory = 100;
constexpr int InstalledEvery = 10, PicturelessEvery = 4;

// On a drive of its own; removed at the end.
class Collection {
  public:
    Collection() {
        fs::remove(drive.At("Hangar/Bench"));
        drive.PutSettings();
        for (int number = 0; number < Categories * PackagesPerCategory; ++number)
            MakePackage(number);
    }
    std::unique_ptr<FileSystem> Files() const { return drive.Files(); }

  private:
    void MakePackage(int number) const {
        const std::string name = "Package " + std::to_string(number);
        const fs::path package = drive.At("Hangar/Category " + std::to_string(number % Categories) + "/" + name);
        Put(package / "aircraft.cfg", "[fltsim.0]\r\ntitle=" + name + "\r\n");
        Put(package / "Panel/panel.cfg", "[Window00]\r\n");
        if (number % PicturelessEvery != 0)
            for (const char* picture : {"(first).jpg", "second.jpg"})
                Put(package / "Images" / picture, "");
        if (number % InstalledEvery == 0)
            fs::create_directories(drive.At("FS/aircraft/Package_" + std::to_string(number)));
    }

    TemporaryDrive drive;
};

// ---- a person who is asked nothing

class SilentUser : public AgreeableUser {
  public:
    CheckedAnswer ShowMessage(const std::string& text, MessageButtons, MessageIcon, const MessageOptions&) override {
        throw std::runtime_error("unexpected: " + text);
    }
};

// ---- what is measured

void Start(benchmark::State& state, const Collection& collection, bool isCold) {
    auto files = collection.Files();
    SilentUser user;
    UnseenWindow form;
    UnseenDialogs dialogs;
    UnseenConverter converter;
    NoLauncher launcher;
    for ([[maybe_unused]] auto turn : state) {
        if (isCold)
            files = collection.Files();
        Program program(*files, launcher, user, dialogs, converter, form, "C:\\App\\", "");
        if (!program.Start() ||
            program.View().statusCounts != "2000 packages  -  200 installed in MSFS  -  Staging is empty") {
            state.SkipWithError("the program did not start as it should");
            return;
        }
    }
}

void BuildList(benchmark::State& state, const Collection& collection, std::string_view caption, bool isCold,
               std::size_t expected) {
    const Locations locations{"C:\\Staging\\", "C:\\Hangar\\", "C:\\FS\\"};
    auto files = collection.Files();
    for ([[maybe_unused]] auto turn : state) {
        if (isCold)
            files = collection.Files();
        const auto categories = SubdirectoryNames(*files, locations.HangarDir);
        const auto overview = BuildOverview(caption, ListHangar(*files, locations, categories), *files, locations);
        if (!overview || overview->lines.size() != expected) {
            state.SkipWithError("the overview is not what it should be");
            return;
        }
    }
    state.counters["lines"] = static_cast<double>(expected);
}

} // namespace

int RunAll(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 2;
    const Collection collection;
    struct List {
        std::string caption;
        std::size_t lines;
    };
    constexpr std::size_t All = Categories * PackagesPerCategory, Headings = 3 * Categories;
    // A fourth of the packages, those of every fourth category, have no pictures.
    const List lists[] = {{std::string(PackageListCaption), All + Headings},
                          {std::string(InstalledListCaption), All / InstalledEvery},
                          {std::string(NoImagesListCaption), All / PicturelessEvery + Headings / 4},
                          {std::string(CategoryPackagesCaption) + "Category 7", PackagesPerCategory},
                          {std::string(CategoryListCaption), Categories}};
    for (const bool isCold : {true, false}) {
        const std::string suffix = isCold ? ", cold" : ", warm";
        benchmark::RegisterBenchmark(("Start" + suffix).c_str(), [&collection, isCold](auto& state) {
            Start(state, collection, isCold);
        })->Unit(benchmark::kMillisecond);
        for (const auto& list : lists)
            benchmark::RegisterBenchmark((list.caption + suffix).c_str(), [&collection, list, isCold](auto& state) {
                BuildList(state, collection, list.caption, isCold, list.lines);
            })->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace korvadex::bench

int main(int count, char** arguments) {
    try {
        return korvadex::bench::RunAll(count, arguments);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "lists_bench: %s\n", failure.what());
        return 1;
    }
}
