// Opening the picture gallery on 1,000 pictures, beside ImageMagick's montage, which makes a contact sheet of the same
// fifteen files: what a person without the gallery would take. Both decode at the size shown. After that the gallery is
// paged through to its end, for the memory.
//
// Ours and the tool take turns in one run, each in a process of its own; all times include the start of that process.
#include "bench/bench_command.h"
#include "bench/child_process.h"

#include "demo/pictures.h"
#include "ui/frmPhotos.h"

#include <QApplication>
#include <QPushButton>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace korvadex::bench {

namespace {

namespace fs = std::filesystem;

constexpr int PictureCount = 1000, PackagePictureCount = 10, Scenes = 10, Rounds = 5;
constexpr int Width = 1600, Height = 1200;

// Drawn skies are smooth; a photograph has grain in all of it.
std::string GrainyPicture(int number) {
    const demo::Livery livery{{240, 242, 244}, {24, 84, 160}, {222, 226, 230}};
    QImage picture = demo::DrawAircraft(static_cast<demo::AircraftKind>(number % 5), livery,
                                        static_cast<demo::Scene>(number % 3), Width, Height);
    std::uint32_t state = 0x9E3779B9u * static_cast<std::uint32_t>(number + 1);
    for (int y = 0; y < Height; ++y)
        for (auto *pixel = reinterpret_cast<QRgb*>(picture.scanLine(y)), *end = pixel + Width; pixel != end; ++pixel) {
            state = state * 1664525u + 1013904223u;
            const int grain = static_cast<int>(state >> 28);
            *pixel = qRgb(std::max(0, qRed(*pixel) - grain), std::max(0, qGreen(*pixel) - grain),
                          std::max(0, qBlue(*pixel) - grain));
        }
    return demo::Jpeg(picture).toStdString();
}

void MakePictures(const fs::path& category) {
    for (int scene = 0; scene < Scenes; ++scene) {
        const std::string bytes = GrainyPicture(scene);
        for (int number = scene; number < PictureCount; number += Scenes) {
            const int package = number / PackagePictureCount;
            const fs::path images = category / ("Plane " + std::to_string(1000 + package)) / "Images";
            fs::create_directories(images);
            std::ofstream(images / ("shot" + std::to_string(1000 + number) + ".jpg"), std::ios::binary) << bytes;
        }
    }
}

// How many pages were shown until every picture on them stood; 0 when something else was shown.
int OpenGallery(const FileSystem& files, bool isToTheEnd) {
    int argumentCount = 1;
    char name[] = "photos_bench";
    char* arguments[] = {name, nullptr};
    QApplication application(argumentCount, arguments);
    const Locations locations{"C:\\Staging\\", "C:\\Hangar\\", "C:\\FS\\"};
    GalleryView view;
    view.caption = "All Packages";
    view.pictures = CollectGalleryImages(files, locations, locations.HangarDir, WalkLimits{}).pictures;
    frmPhotos window(files);
    window.ShowGallery(view);
    auto& next = *window.findChild<QPushButton*>("cmdNext");
    int pages = 0;
    do {
        if (pages > 0)
            next.click();
        while (!window.IsPageComplete())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        ++pages;
    } while (isToTheEnd && next.isEnabled());
    return view.pictures.size() == PictureCount ? pages : 0;
}

void Add(Turns& turns, const char* name, const Measure& measure) {
    if (!measure.isGood)
        throw std::runtime_error(std::string(name) + " failed");
    turns.Add(measure);
}

void Print(const Turns& turns, const char* name) {
    std::printf("gallery        %-22s %9.1f ms  %7.1f MB", name, turns.Median() * 1000, turns.peakMega);
}

} // namespace

int Run() {
    const TemporaryDrive drive;
    MakePictures(drive.At("Hangar/Bench"));
    const auto files = drive.Files();
    // The size that a thumbnail has in the window as designed.
    std::vector<std::string> montage = {
        "montage", "-define", "jpeg:size=294x220", "-geometry", "147x150+4+4", "-tile", "5x3", "-label", "%f"};
    const Locations locations{"C:\\Staging\\", "C:\\Hangar\\", "C:\\FS\\"};
    const auto gallery = CollectGalleryImages(*files, locations, "C:\\Hangar\\Bench\\", WalkLimits{});
    for (std::size_t i = 0; i < 15; ++i)
        montage.push_back(files->HostPath(gallery.pictures.at(i).path));
    montage.push_back(drive.At("sheet.png").string());

    Turns ours, tool, toTheEnd;
    for (int round = 0; round < Rounds; ++round) {
        Add(ours, "the first page", MeasureWork([&] { return OpenGallery(*files, false) == 1; }));
        Add(tool, "montage", MeasureTool(montage));
    }
    Add(toTheEnd, "all pages", MeasureWork([&] { return OpenGallery(*files, true) == (PictureCount + 14) / 15; }));
    Print(ours, "korvadex, first page");
    std::printf("\n");
    Print(tool, "montage of that page");
    std::printf("   korvadex takes %.2f of it\n", ours.Median() / tool.Median());
    Print(toTheEnd, "korvadex, all 67 pages");
    std::printf("   %.2f of the memory for the first\n", toTheEnd.peakMega / ours.peakMega);
    return 0;
}

} // namespace korvadex::bench

int main() {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    try {
        return korvadex::bench::Run();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
