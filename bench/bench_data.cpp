#include "bench/bench_data.h"

#include "demo/aircraft_files.h"

#include <zip.h>

#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>

namespace korvadex::bench {

namespace fs = std::filesystem;

namespace {

constexpr int SheetSize = 1024; // pixels; 3 MB with 24 bits each
constexpr int SheetCount = 67;
constexpr int SmallFileCount = 5000;
constexpr int HeaderSize = 54; // of a bitmap without a palette

void Put(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        throw std::runtime_error(path.string() + " could not be written");
}

// Drawn metal is smooth and packs to nothing; a painted one has dirt and scratches, in patches. With these a sheet
// packs to a little more than a quarter, as liveries of that time do.
std::string WornLivery(int sheet) {
    const demo::Livery livery{{240, 242, 244}, {24, 40 + sheet * 2, 160}, {222, 226, 230}};
    std::string bytes = demo::Bitmap24(demo::DrawLivery(livery, sheet, SheetSize)).toStdString();
    std::uint32_t state = 0x9E3779B9u * static_cast<std::uint32_t>(sheet + 1);
    const std::size_t first = bytes.size() - std::size_t{3} * SheetSize * SheetSize;
    for (std::size_t pixel = 0; pixel < std::size_t{SheetSize} * SheetSize; ++pixel) {
        const std::size_t patch = pixel / SheetSize / 64 * 16 + pixel % SheetSize / 64;
        if ((patch * 2654435761u >> 16) % 10 >= 7)
            continue;
        state = state * 1664525u + 1013904223u;
        const unsigned dirt = state >> 29;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            char& value = bytes[first + 3 * pixel + channel];
            const auto old = static_cast<unsigned char>(value);
            const unsigned shade = dirt + (state >> (20 + channel) & 1); // not quite grey
            value = static_cast<char>(old > shade ? old - shade : 0);
        }
    }
    return bytes;
}

// Five bits to a colour.
std::string Bitmap16(const QImage& picture) {
    std::string bytes = demo::Bitmap24(picture).left(HeaderSize).toStdString();
    bytes[28] = 16; // bits to a pixel
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB555).mirrored();
    return bytes.append(reinterpret_cast<const char*>(pixels.constBits()),
                        static_cast<std::size_t>(pixels.sizeInBytes()));
}

// A strip of a sheet, as one of the small pictures that panels are full of.
std::string Piece(const std::string& sheet, std::size_t number) {
    return sheet.substr(0, HeaderSize) + sheet.substr(100'000 + number * 30'000, 66'000);
}

// Everything of a package but its textures.
void PutFrame(const fs::path& directory) {
    const demo::Livery livery{{240, 242, 244}, {24, 84, 160}, {222, 226, 230}};
    const demo::Aircraft aircraft{demo::AircraftKind::LightProp,
                                  "Bench",
                                  "One",
                                  {{"Bench One", "", "Worn", livery}},
                                  {"Bench!Airspeed", "bench_clock"}};
    for (const auto& [name, bytes] : demo::FilesOf(aircraft, R"(aircraft.cfg, bench.air
                                                                Panel: panel.cfg, bench_panel.bmp
                                                                Gauges: Bench.cab, bench_clock.gau
                                                                Model: model.cfg, bench.mdl
                                                                Sound: sound.cfg, bench.wav)"))
        Put(directory / name.toStdString(), bytes.toStdString());
}

} // namespace

void MakeBitmapPackage(const fs::path& directory) {
    PutFrame(directory);
    for (int sheet = 0; sheet < SheetCount; ++sheet)
        Put(directory / "Texture" / ("Sheet " + std::to_string(sheet) + ".bmp"), WornLivery(sheet));
}

void MakeTextures(const fs::path& directory, TextureKind kind) {
    static constexpr int Packages = 4, Sheets = 3, Pieces = 10;
    const auto put = [&](int package, const std::string& name, const std::string& bytes) {
        Put(directory / ("Package " + std::to_string(package)) / "texture" / (name + ".bmp"), bytes);
    };
    for (int package = 0; package < Packages; ++package) {
        for (int sheet = package * Sheets; sheet < (package + 1) * Sheets; ++sheet) {
            const demo::Livery livery{{240, 242, 244}, {24, 40 + sheet * 2, 160}, {222, 226, 230}};
            const std::string number = std::to_string(sheet);
            if (kind == TextureKind::Flat) {
                put(package, "Sheet " + number,
                    demo::Bitmap24(demo::DrawLivery(livery, sheet, SheetSize)).toStdString());
                put(package, "Small sheet " + number,
                    demo::Bitmap8(demo::DrawLivery(livery, sheet, 512)).toStdString());
                put(package, "Panel " + number, demo::Bitmap8(demo::DrawPanel(livery, 1024, 768)).toStdString());
                continue;
            }
            const std::string worn = WornLivery(sheet);
            const auto picture = QImage::fromData(QByteArray::fromStdString(worn));
            const bool isOfMoreColours = sheet % Sheets == 0;
            put(package, "Sheet " + number,
                !isOfMoreColours   ? demo::Bitmap8(picture).toStdString()
                : package % 2 == 0 ? Bitmap16(picture)
                                   : worn);
        }
        const std::string sheet = kind == TextureKind::Flat
                                      ? demo::Bitmap24(demo::DrawLivery({}, package, SheetSize)).toStdString()
                                      : WornLivery(package);
        for (int piece = 0; piece < Pieces; ++piece)
            put(package, "Piece " + std::to_string(piece), Piece(sheet, static_cast<std::size_t>(piece)));
    }
}

void MakeManyFilesPackage(const fs::path& directory) {
    static constexpr struct {
        const char *directory, *extension;
    } Kinds[] = {{"Texture", ".bmp"},       {"Texture", ".r8"}, {"Sound", ".wav"},
                 {"Documentation", ".txt"}, {"Model", ".mdl"},  {"Unrecognized Files", ".pdn"}};
    PutFrame(directory);
    for (auto number = static_cast<int>(SizeOf(directory).files); number < SmallFileCount; ++number) {
        const auto& kind = Kinds[static_cast<std::size_t>(number) % std::size(Kinds)];
        Put(directory / kind.directory / ("File " + std::to_string(number) + kind.extension),
            std::string(static_cast<std::size_t>(200 + number % 1800), 'k'));
    }
}

void MakeHeldFile(const fs::path& path) {
    std::string noise(63'000'000, '\0');
    std::uint32_t state = 1;
    for (char& byte : noise) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<char>(state >> 28); // four bits of eight
    }
    Put(path, noise);
}

void MakeLargeFile(const fs::path& path) {
    std::string sheets;
    const std::string sheet = WornLivery(0);
    while (sheets.size() < 200'000'000)
        sheets += sheet;
    Put(path, sheets);
}

void MakeArchive(const fs::path& directory, const fs::path& archive) {
    zip_t* zip = zip_open(archive.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    if (zip == nullptr)
        throw std::runtime_error(archive.string() + " could not be made");
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
        if (!entry.is_regular_file())
            continue;
        zip_source_t* source = zip_source_file(zip, entry.path().c_str(), 0, -1);
        const std::string name = fs::relative(entry.path(), directory.parent_path()).generic_string();
        if (source == nullptr || zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8) < 0)
            throw std::runtime_error(name + " could not be packed");
    }
    if (zip_close(zip) != 0)
        throw std::runtime_error(archive.string() + " could not be written");
}

TreeSize SizeOf(const fs::path& directory) {
    TreeSize size;
    for (const auto& entry : fs::recursive_directory_iterator(directory))
        if (entry.is_regular_file()) {
            ++size.files;
            size.bytes += entry.file_size();
        }
    return size;
}

} // namespace korvadex::bench
