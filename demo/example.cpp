#include "demo/example.h"

#include "app/default_categories.h"
#include "app/settings.h"
#include "demo/aircraft_files.h"

#include <zip.h>

#include <memory>
#include <span>
#include <stdexcept>

namespace korvadex::demo {

namespace {

const Livery BlueOnWhite{{240, 242, 244}, {24, 84, 160}, {222, 226, 230}};
const Livery RedOnCream{{244, 236, 214}, {178, 38, 34}, {214, 208, 196}};
const Livery GreenOnWhite{{238, 242, 236}, {30, 118, 74}, {210, 220, 208}};
const Livery OrangeOnSilver{{214, 218, 222}, {214, 110, 24}, {186, 190, 196}};
const Livery YellowOnBlue{{52, 92, 150}, {244, 200, 60}, {42, 70, 120}};

// ---- writing

void Require(const Status& status) {
    if (!status)
        throw std::runtime_error(status.path + ": " + DescribeFault(status.fault));
}

// Names are relative to the root, with "/" or "\\" between directories.
class Writer {
  public:
    Writer(FileSystem& fileSystem, std::string rootDirectory) : files(fileSystem), root(std::move(rootDirectory)) {}

    // The path of a name; the directories on the way to it are made.
    std::string Place(const QString& relative) {
        const std::string name = QString(relative).replace('/', '\\').toStdString();
        for (auto at = name.find('\\'); at != std::string::npos; at = name.find('\\', at + 1))
            if (const auto status = files.CreateDirectory(root + name.substr(0, at)); status.fault != FileFault::Exists)
                Require(status);
        return root + name;
    }

    // Files of one aircraft share a day; each is a minute younger than the one before.
    void Put(const QString& directory, int month, int day, const Files& content) {
        using namespace std::chrono;
        FileTime time = sys_days{year{2002} / month / day} + 9h;
        for (const auto& [name, bytes] : content) {
            const std::string path = Place(directory + name);
            auto file = files.CreateNew(path);
            Require(file.status());
            Require((*file)->Write(std::as_bytes(std::span(bytes))));
            Require((*file)->Close(false));
            Require(files.SetTime(path, time += 1min));
        }
    }

    // With the time of the original, as an installation makes it.
    void Copy(const QString& from, const QString& to) { Require(files.Copy(Place(from), Place(to))); }

  private:
    FileSystem& files;
    std::string root;
};

void RequireZip(bool isGood) {
    if (!isGood)
        throw std::runtime_error("an archive of the example could not be made");
}

// With these files in this order, all of one fixed time.
QByteArray ZipArchive(const Files& files, bool hasDirectories) {
    // 18 May 2002, 14:30, as archives store it. Given in this form it does not depend on the time zone.
    constexpr zip_uint16_t Date = (2002 - 1980) << 9 | 5 << 5 | 18, Time = 14 << 11 | 30 << 5;
    const std::unique_ptr<zip_source_t, decltype(&zip_source_free)> archive(
        zip_source_buffer_create(nullptr, 0, 0, nullptr), zip_source_free);
    zip_source_keep(archive.get()); // one for the writer, one to read it back
    std::unique_ptr<zip_t, decltype(&zip_discard)> zip(zip_open_from_source(archive.get(), ZIP_TRUNCATE, nullptr),
                                                       zip_discard);
    RequireZip(zip != nullptr);
    const auto setTime = [&](zip_int64_t index) {
        RequireZip(index >= 0 && zip_file_set_dostime(zip.get(), static_cast<zip_uint64_t>(index), Time, Date, 0) == 0);
    };
    for (const auto& [name, bytes] : files) {
        for (auto at = name.indexOf('/'); hasDirectories && at >= 0; at = name.indexOf('/', at + 1))
            if (const QString directory = name.left(at + 1);
                zip_name_locate(zip.get(), qUtf8Printable(directory), 0) < 0)
                setTime(zip_dir_add(zip.get(), qUtf8Printable(directory), ZIP_FL_ENC_UTF_8));
        setTime(zip_file_add(zip.get(), qUtf8Printable(name),
                             zip_source_buffer(zip.get(), bytes.data(), static_cast<zip_uint64_t>(bytes.size()), 0),
                             ZIP_FL_ENC_UTF_8));
    }
    RequireZip(zip_close(zip.get()) == 0);
    static_cast<void>(zip.release());

    zip_stat_t stat;
    RequireZip(zip_source_open(archive.get()) == 0 && zip_source_stat(archive.get(), &stat) == 0);
    QByteArray bytes(static_cast<qsizetype>(stat.size), '\0');
    RequireZip(zip_source_read(archive.get(), bytes.data(), stat.size) == bytes.size());
    return bytes;
}

// ---- packages of the Hangar

QStringList GaugesOf(const char* cabinet, const QStringList& others) {
    return QStringList{cabinet + QString("!Airspeed"), cabinet + QString("!Compass")} + others;
}

Aircraft One(AircraftKind kind, const char* maker, const char* type, const Look& look, const QStringList& gauges) {
    return {kind, maker, type, {look}, gauges};
}

// Complete.
Files PellmoorP12() {
    return FilesOf(One(AircraftKind::LightProp, "Pellmoor", "P12",
                       {CompletePackage, "", "Green on white", GreenOnWhite},
                       GaugesOf("Pellmoor", {"generic.clock", "Pellmoor_Flaps"})),
                   R"(aircraft.cfg, PellmoorP12.air, PellmoorP12_check.txt
                      Panel: panel.cfg, pellmoor_panel.bmp
                      Gauges: Pellmoor.cab, Pellmoor_Flaps.gau
                      Model: model.cfg, PellmoorP12.mdl
                      Texture: pellmoor_fuselage.bmp, pellmoor_wing.bmp
                      Sound: sound.cfg, pellmoor_engine.wav
                      Images: Pellmoor P12.jpg, Pellmoor P12 at dusk.jpg
                      Miscellaneous: pellmoor_dust.fx)",
                   {{"Documentation/readme.txt", "Pellmoor P12\n\nA four-seat tourer for short strips.  Unpack it, "
                                                 "choose a name and\na category for it, and fly.\n"}});
}

// Panel and sound are those of the one above.
Files PellmoorP12Floats() {
    return FilesOf(
        One(AircraftKind::Amphibian, "Pellmoor", "P12 F", {AliasPackage, "", "On floats", YellowOnBlue}, {}),
        R"(aircraft.cfg, PellmoorP12F.air
           Model: model.cfg, PellmoorP12F.mdl
           Texture: p12f_fuselage.bmp, p12f_floats.bmp
           Images: p12 floats on the lake.jpg)",
        {{"Panel/panel.cfg", "[fltsim]\nalias=Pellmoor P12\\panel\n"},
         {"Sound/sound.cfg", "[fltsim]\nalias=Pellmoor P12\\sound\n"},
         {"Documentation/readme.txt", "Pellmoor P12 on floats\n\n"
                                      "Panel and sound are those of the Pellmoor P12: install that one first.\n"}});
}

// Nobody has orvane_radar.gau: the cross-check has something to say.
Files OrvaneCourier() {
    return FilesOf(One(AircraftKind::HeavyProp, "Orvane", "Courier", {MissingGaugePackage, "", "Post", OrangeOnSilver},
                       GaugesOf("Orvane", {"orvane_radar", "generic.clock"})),
                   R"(aircraft.cfg, courier.air
                      Panel: panel.cfg, orvane_panel.bmp
                      Gauges: Orvane.cab
                      Model: model.cfg, courier.mdl
                      Texture: courier_l.bmp, courier_r.bmp
                      Sound: sound.cfg, courier_twin.wav
                      Images: courier at dusk.jpg)",
                   {{"courier_ref.txt", "Orvane Courier\n\nCruise 210 kt   Climb 140 kt   Approach 105 kt\n"}});
}

// Many documents and pictures; installed in the simulator.
Files QuillonRotor3() {
    return FilesOf(One(AircraftKind::Helicopter, "Quillon", "Rotor 3", {InstalledPackage, "", "Rescue", RedOnCream},
                       GaugesOf("Quillon", {"quillon_torque", "generic.clock"})),
                   R"(aircraft.cfg, quillon3.air, quillon3_check.txt
           Panel: panel.cfg, quillon_panel.bmp
           Gauges: Quillon.cab, quillon_torque.gau
           Model: model.cfg, quillon3.mdl
           Texture: quillon_cabin.bmp, quillon_boom.bmp
           Sound: sound.cfg, quillon_rotor.wav
           Images: quillon by day.jpg, quillon at the lake.jpg, quillon at dusk.jpg
           Miscellaneous: quillon_dust.fx)",
                   {{"Documentation/readme.txt", "Quillon Rotor 3\n\nA light helicopter for mountain rescue.\n"},
                    {"Documentation/flying the rotor 3.htm",
                     "<html><head><title>Flying the Rotor 3</title></head>\n<body><h1>Flying the Rotor 3</h1>\n"
                     "<p>Raise the collective slowly and keep the nose level with the cyclic.</p></body></html>\n"},
                    {"Documentation/Handbuch für Anfänger.txt",
                     "Quillon Rotor 3\n\nLangsam anheben, ruhig bleiben, weiter üben.\n"}});
}

// ---- the simulator

// Its own aircraft, which have a second livery; without gauges the panel is that of Brannock40.
Files StockAircraft(AircraftKind kind, const QString& name, const QString& maker, const QString& type,
                    const Livery& livery, const QStringList& gauges) {
    const QString title = maker + " " + type;
    const QString tree = R"(aircraft.cfg, %1.air, %1_check.txt
                            model: model.cfg, %1.mdl
                            sound: sound.cfg, %1_engine.wav
                            texture: %1_1.bmp
                            texture.2: %1_1.bmp)";
    const Aircraft aircraft{kind,
                            maker,
                            type,
                            {{title, "", "House colours", livery}, {title + " Night", "2", "Night mail", YellowOnBlue}},
                            gauges};
    if (gauges.isEmpty())
        return FilesOf(aircraft, tree.arg(name), {{"panel/panel.cfg", "[fltsim]\nalias=Brannock40\\panel\n"}});
    return FilesOf(aircraft, (tree + "\npanel: panel.cfg, %1_panel.bmp").arg(name));
}

void PutSimulator(Writer& writer) {
    const QString sim = SimDirectory;
    writer.Put(sim + "aircraft/Velmora190/", 1, 15,
               StockAircraft(AircraftKind::LightProp, "Velmora190", "Velmora", "190", BlueOnWhite,
                             GaugesOf("Velmora", {"generic.clock"})));
    writer.Put(sim + "aircraft/Brannock40/", 1, 15,
               StockAircraft(AircraftKind::HeavyProp, "Brannock40", "Brannock", "Twin 40", RedOnCream,
                             GaugesOf("Brannock", {"Brannock_Fuel", "generic.clock"})));
    writer.Put(sim + "aircraft/Halden7/", 1, 15,
               StockAircraft(AircraftKind::Jet, "Halden7", "Halden", "Jetliner 7", GreenOnWhite, {}));
    writer.Put(sim, 1, 15,
               FilesOf({}, R"(fs2002.exe
                              gauges: Velmora.cab, Brannock.cab, Brannock_Fuel.gau, generic.clock.gau
                              effects: fx_dust.fx, fx_wake.fx
                              modules: panels.dll, weather.dat
                              sound: horn.wav)",
                       {{"readme.txt", "A stand-in for a flight simulator, just large enough to try Korvadex on.\n"}}));
}

// What an installation puts into the simulator.
void Install(Writer& writer, const QString& package, const QString& directory, const Files& content) {
    const QString sim = SimDirectory;
    for (const auto& [name, bytes] : content) {
        const QString fileName = name.mid(name.lastIndexOf('/') + 1);
        if (name.startsWith("Gauges/"))
            writer.Copy(package + name, sim + "gauges/" + fileName);
        else if (name.startsWith("Miscellaneous/"))
            writer.Copy(package + name, sim + "effects/" + fileName);
        else
            writer.Copy(package + name, sim + "aircraft/" + directory + "/" + name);
    }
}

// ---- archives

// Plain; no entries for directories, mixed case, a name beyond ASCII, a sound that sound.cfg does not name.
Files Taymere60() {
    return FilesOf(One(AircraftKind::LightProp, "Taymere", "60", {"Taymere 60", "", "Orange on silver", OrangeOnSilver},
                       GaugesOf("Taymere", {"Taymere_ASI", "generic.clock"})),
                   R"(Taymere 60.jpg
                      Effects: taymere_smoke.fx
                      Gauges: Taymere.cab, Taymere_ASI.gau
                      Taymere 60: aircraft.cfg, Taymere60.AIR, taymere60_check.txt
                      Taymere 60/Model: model.cfg, Taymere60.mdl
                      Taymere 60/Panel: panel.cfg, Taymere_Panel.bmp
                      Taymere 60/Sound: sound.cfg, Taymere hum.wav, taymere_horn.wav
                      Taymere 60/Texture: taymere_fuselage.bmp, Taymere_Wing.BMP)",
                   {{"Grüße vom Autor.txt", "Viel Spaß mit der Taymere 60!\n"}});
}

// Its panel comes in an archive of its own; entries for directories.
Files SkerrowAmphibian() {
    const Aircraft aircraft =
        One(AircraftKind::Amphibian, "Skerrow", "Amphibian", {"Skerrow Amphibian", "", "Lake", YellowOnBlue},
            GaugesOf("Skerrow", {"skerrow_water"}));
    const Files panel = FilesOf(
        aircraft, R"(gauges: Skerrow.cab, skerrow_water.gau
                     panel: panel.cfg, skerrow_main.bmp)",
        {{"Read Me.txt", "Panel for the Skerrow Amphibian.  It belongs into the aircraft's panel directory.\n"}});
    Files files =
        FilesOf(aircraft, R"(skerrow.jpg, skerrow on the lake.jpg
                             FS2002/aircraft/Skerrow: aircraft.cfg, skerrow.air
                             FS2002/aircraft/Skerrow/model: model.cfg, skerrow.mdl
                             FS2002/aircraft/Skerrow/sound: sound.cfg, skerrow_engine.wav
                             FS2002/aircraft/Skerrow/texture: skerrow_hull.bmp, skerrow_wing.bmp)",
                {{"Read Me.txt", "Skerrow Amphibian, version 2\n\nThe panel comes as an archive of its own.\n"}});
    files.emplace_back("skerrow panel.zip", ZipArchive(panel, true));
    return files;
}

// Two configurations; its panel names brindle_radar.gau, which is nowhere.
Files Brindle8() {
    return FilesOf({AircraftKind::Jet,
                    "Brindle",
                    "8",
                    {{"Brindle 8 Blue", "", "Blue", BlueOnWhite}, {"Brindle 8 Red", "red", "Red", RedOnCream}},
                    GaugesOf("Brindle", {"brindle_radar", "generic.clock"})},
                   R"(brindle8_blue.jpg, brindle8_red.jpg
           Brindle8: aircraft.cfg, brindle8.air
           Brindle8/gauges: Brindle.cab
           Brindle8/model: model.cfg, brindle8.mdl
           Brindle8/panel: panel.cfg, brindle8_panel.bmp
           Brindle8/sound: sound.cfg, brindle8_turbine.wav
           Brindle8/texture: brindle8_fuselage.bmp, brindle8_tail.bmp
           Brindle8/texture.red: brindle8_fuselage.bmp, brindle8_tail.bmp)",
                   {{"brindle8.htm",
                     "<html><body><h1>Brindle 8</h1>\n<p>One jet, two liveries: blue and red.</p></body></html>\n"}});
}

// ---- all of it

void PutHangar(Writer& writer) {
    const QString hangar = HangarDirectory;
    for (const char* category : DefaultCategories)
        writer.Place(hangar + category + "/");
    const QString lightProps = hangar + LightPropsCategory + "/";
    writer.Put(lightProps + CompletePackage + "/", 3, 2, PellmoorP12());
    writer.Put(lightProps + AliasPackage + "/", 3, 9, PellmoorP12Floats());
    writer.Put(hangar + HeavyPropsCategory + "/" + MissingGaugePackage + "/", 4, 20, OrvaneCourier());
    const Files installed = QuillonRotor3();
    const QString directory = hangar + HelicoptersCategory + "/" + InstalledPackage + "/";
    writer.Put(directory, 5, 4, installed);
    Install(writer, directory, "Quillon_Rotor_3", installed);
}

void PutSettings(FileSystem& files, const std::string& root) {
    Settings settings;
    settings.AppDir = root + AppDirectory;
    settings.locations = {root + StagingDirectory, root + HangarDirectory, root + SimDirectory};
    settings.LocationProfiles[0] = {"FS2002",
                                    settings.locations.StagingDir,
                                    settings.locations.HangarDir,
                                    settings.locations.MsfsDir,
                                    std::string(LightPropsCategory) + "\\" + CompletePackage,
                                    ""};
    settings.LastZipPath = root + DownloadsDirectory;
    Require(SaveSettings(files, settings, std::nullopt));
}

} // namespace

void MakeExample(FileSystem& files, const std::string& root) {
    Writer writer(files, root);
    writer.Place(StagingDirectory);
    writer.Place(AppDirectory);
    PutSimulator(writer);
    PutHangar(writer);
    writer.Put(DownloadsDirectory, 5, 18,
               {{PlainArchive, ZipArchive(Taymere60(), false)},
                {NestedArchive, ZipArchive(SkerrowAmphibian(), true)},
                {TwoLiveriesArchive, ZipArchive(Brindle8(), false)}});
    PutSettings(files, root);
}

} // namespace korvadex::demo
