// A collection of 2,000 packages in 20 categories: how long the program takes to start on it, and to build each of the
// overviews of the list window; then the main window with the collection beside the form and without it: its start, a
// package that is selected, and a key in the filter of the collection, also with all packages selected. "Cold" is a
// file system that has seen nothing of the disk yet, "warm" one that has just done the same.
#include "bench/bench_command.h"
#include "bench/unseen_window.h"

#include "app/program.h"
#include "ui/collection_panel.h"
#include "ui/frmHangar.h"

#include <QApplication>
#include <QLineEdit>
#include <QTreeView>

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
class Ground {
  public:
    Ground() {
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

void Start(benchmark::State& state, const Ground& collection, bool isCold) {
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

void BuildList(benchmark::State& state, const Ground& collection, std::string_view caption, bool isCold,
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

// The program with its main window.
class Desk {
  public:
    Desk(const Ground& data, bool isCollectionShown) : files(data.Files()) {
        window.SetProgram(&program);
        if (!program.Start() ||
            program.View().statusCounts != "2000 packages  -  200 installed in MSFS  -  Staging is empty")
            throw std::runtime_error("the program did not start as it should");
        if (program.View().isCollectionShown != isCollectionShown)
            program.ToggleCollection();
        window.show();
        QCoreApplication::processEvents();
    }
    ~Desk() { window.hide(); }

    std::unique_ptr<FileSystem> files;
    SilentUser user;
    UnseenDialogs dialogs;
    UnseenConverter converter;
    NoLauncher launcher;
    frmHangar window{*files};
    Program program{*files, launcher, user, dialogs, converter, window, "C:\\App\\", ""};
};

void StartWithWindow(benchmark::State& state, const Ground& collection, bool isShown) {
    for ([[maybe_unused]] auto turn : state)
        Desk(collection, isShown);
}

void Select(benchmark::State& state, const Ground& collection, bool isShown) {
    Desk desk(collection, isShown);
    int number = 0;
    for ([[maybe_unused]] auto turn : state) {
        number = (number + 7) % (Categories * PackagesPerCategory);
        const PackageRef package{"Category " + std::to_string(number % Categories),
                                 "Package " + std::to_string(number)};
        desk.program.ShowPackage(package);
        QCoreApplication::processEvents();
        if (desk.program.Package().ref != package) {
            state.SkipWithError("another package is shown");
            return;
        }
    }
}

void Filter(benchmark::State& state, const Ground& collection, bool isAllSelected) {
    Desk desk(collection, true);
    while (desk.program.ReadCollection(std::chrono::seconds(1)))
        continue;
    if (isAllSelected)
        desk.window.findChild<QTreeView*>("treCollection")->selectAll();
    auto& field = *desk.window.findChild<QLineEdit*>("txtCollectionFilter");
    const QString typed = "package 12";
    for ([[maybe_unused]] auto turn : state) {
        field.setText(typed.left(field.text().size() % typed.size() + 1));
        QCoreApplication::processEvents();
    }
}

void ReadAll(benchmark::State& state, const Ground& collection) {
    const auto files = collection.Files();
    const Locations locations{"C:\\Staging\\", "C:\\Hangar\\", "C:\\FS\\"};
    const auto listing = ListHangar(*files, locations, SubdirectoryNames(*files, locations.HangarDir));
    for ([[maybe_unused]] auto turn : state) {
        Collection read(*files, locations);
        read.Take(listing);
        while (read.ReadMore(std::chrono::seconds(1)))
            continue;
    }
}

} // namespace

int RunAll(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 2;
    const Ground collection;
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
    for (const bool isShown : {false, true}) {
        const std::string suffix = isShown ? ", with the collection" : ", without the collection";
        const auto add = [&](const std::string& name, const auto& run) {
            benchmark::RegisterBenchmark((name + suffix).c_str(), [&collection, isShown, run](auto& state) {
                run(state, collection, isShown);
            })->Unit(benchmark::kMillisecond);
        };
        add("Start with the window", StartWithWindow);
        add("Select a package", Select);
    }
    for (const bool isAllSelected : {false, true})
        benchmark::RegisterBenchmark(
            isAllSelected ? "Filter the collection, a key, all selected" : "Filter the collection, a key",
            [&collection, isAllSelected](auto& state) { Filter(state, collection, isAllSelected); })
            ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Read all of the collection", [&collection](auto& state) {
        ReadAll(state, collection);
    })->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace korvadex::bench

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    try {
        return korvadex::bench::RunAll(count, arguments);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "lists_bench: %s\n", failure.what());
        return 1;
    }
}
