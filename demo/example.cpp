#include "demo/example.h"

#include "demo/addon_files.h"
#include "demo/aircraft_pictures.h"
#include "demo/archive_files.h"
#include "demo/media_files.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

namespace korvadex::demo {

namespace {

// Relative paths of a package, laid out as in the Hangar, with their bytes.
using PackageFiles = std::vector<std::pair<std::string, std::string>>;

constexpr Livery BlueOnWhite{{240, 242, 244}, {24, 84, 160}, {222, 226, 230}};
constexpr Livery RedOnCream{{244, 236, 214}, {178, 38, 34}, {214, 208, 196}};
constexpr Livery GreenOnWhite{{238, 242, 236}, {30, 118, 74}, {210, 220, 208}};
constexpr Livery OrangeOnSilver{{214, 218, 222}, {214, 110, 24}, {186, 190, 196}};
constexpr Livery YellowOnBlue{{52, 92, 150}, {244, 200, 60}, {42, 70, 120}};

std::string Picture(AircraftKind kind, const Livery& livery, Scene scene) {
    return Jpeg(DrawAircraft(kind, livery, scene, 640, 400), 85);
}
std::string Texture8(const Livery& livery, int sheet) {
    return Bitmap8(DrawLivery(livery, sheet, 256));
}
std::string Texture24(const Livery& livery, int sheet) {
    return Bitmap24(DrawLivery(livery, sheet, 256));
}
std::string PanelBitmap(const Livery& livery, int dials) {
    return Bitmap8(DrawPanel(livery, dials, 640, 240));
}
std::string Cab(const std::string& name, const Livery& livery) {
    return GaugeCabinet(name, Bitmap8(DrawPanel(livery, 1, 96, 96)));
}

// ---- writing

[[noreturn]] void Fail(const Status& status) {
    throw std::runtime_error(status.path + ": " + DescribeFault(status.fault));
}

void Require(const Status& status) {
    if (!status)
        Fail(status);
}

class Writer {
  public:
    Writer(FileSystem& fileSystem, std::string rootDirectory) : files(fileSystem), root(std::move(rootDirectory)) {}

    // With the directories on the way; ends in a backslash.
    void MakeDirectory(const std::string& relative) {
        for (auto at = relative.find('\\'); at != std::string::npos; at = relative.find('\\', at + 1)) {
            const Status status = files.CreateDirectory(root + relative.substr(0, at));
            if (!status && status.fault != FileFault::Exists)
                Fail(status);
        }
    }

    // Files of one aircraft share a day; each is a minute younger than the one before.
    void BeginDay(int month, int day) {
        using namespace std::chrono;
        time = sys_days{year{2002} / month / day} + 9h;
    }

    void Put(const std::string& relative, const std::string& bytes) {
        MakeDirectory(ParentDirectory(relative));
        const std::string path = root + relative;
        auto file = files.CreateNew(path);
        if (!file)
            Fail(file.status());
        Require((*file)->Write(std::as_bytes(std::span(bytes))));
        Require((*file)->Close(false));
        time += std::chrono::minutes(1);
        Require(files.SetTime(path, time));
    }

    void PutAll(const std::string& directory, const PackageFiles& package) {
        for (const auto& [relative, bytes] : package)
            Put(directory + relative, bytes);
    }

    // A copy with the time of the original, as an installation makes it.
    void Copy(const std::string& from, const std::string& to) {
        MakeDirectory(ParentDirectory(to));
        Require(files.Copy(root + from, root + to));
    }

  private:
    FileSystem& files;
    std::string root;
    FileTime time{};
};

// ---- packages of the Hangar

PackageFiles PellmoorP12() {
    const Livery& livery = GreenOnWhite;
    return {{"aircraft.cfg", AircraftCfg({{"Pellmoor P12", "", "Green on white"}}, "Pellmoor", "P12")},
            {"PellmoorP12.air", FlightModel("pellmoor p12")},
            {"PellmoorP12_check.txt", Checklist("Pellmoor P12")},
            {"Panel\\panel.cfg", PanelCfg("pellmoor_panel.bmp", {"Pellmoor!Airspeed", "Pellmoor!Compass",
                                                                 "generic.clock", "Pellmoor_Flaps"})},
            {"Panel\\pellmoor_panel.bmp", PanelBitmap(livery, 8)},
            {"Gauges\\Pellmoor.cab", Cab("Pellmoor", livery)},
            {"Gauges\\Pellmoor_Flaps.gau", GaugeLibrary("pellmoor flaps")},
            {"Model\\model.cfg", ModelCfg("PellmoorP12")},
            {"Model\\PellmoorP12.mdl", Model3D("pellmoor p12")},
            {"Texture\\pellmoor_fuselage.bmp", Texture8(livery, 0)},
            {"Texture\\pellmoor_wing.bmp", Texture24(livery, 1)},
            {"Sound\\sound.cfg", SoundCfg("pellmoor_engine")},
            {"Sound\\pellmoor_engine.wav", EngineHum(38)},
            {"Images\\Pellmoor P12.jpg", Picture(AircraftKind::LightProp, livery, Scene::Day)},
            {"Images\\Pellmoor P12 at dusk.jpg", Picture(AircraftKind::LightProp, livery, Scene::Dusk)},
            {"Documentation\\readme.txt",
             Text("Pellmoor P12\n\nA four-seat tourer for short strips.  Unpack it, choose a name and\n"
                  "a category for it, and fly.\n")},
            {"Miscellaneous\\pellmoor_dust.fx", Effect("fx_dust.bmp")}};
}

PackageFiles PellmoorP12Floats() {
    const Livery& livery = YellowOnBlue;
    return {
        {"aircraft.cfg", AircraftCfg({{"Pellmoor P12 Floats", "", "On floats"}}, "Pellmoor", "P12 F")},
        {"PellmoorP12F.air", FlightModel("pellmoor p12 floats")},
        {"Panel\\panel.cfg", AliasCfg("Pellmoor P12\\panel")},
        {"Model\\model.cfg", ModelCfg("PellmoorP12F")},
        {"Model\\PellmoorP12F.mdl", Model3D("pellmoor p12 floats")},
        {"Texture\\p12f_fuselage.bmp", Texture8(livery, 0)},
        {"Texture\\p12f_floats.bmp", Texture8(livery, 1)},
        {"Sound\\sound.cfg", AliasCfg("Pellmoor P12\\sound")},
        {"Images\\p12 floats.jpg", Picture(AircraftKind::Amphibian, livery, Scene::Lake)},
        {"Documentation\\readme.txt",
         Text("Pellmoor P12 on floats\n\nPanel and sound are those of the Pellmoor P12: install that one first.\n")}};
}

PackageFiles OrvaneCourier() {
    const Livery& livery = OrangeOnSilver;
    return {{"aircraft.cfg", AircraftCfg({{"Orvane Courier", "", "Post"}}, "Orvane", "Courier")},
            {"courier.air", FlightModel("orvane courier")},
            {"courier_ref.txt", Text("Orvane Courier\n\nCruise 210 kt   Climb 140 kt   Approach 105 kt\n")},
            // Nobody has orvane_radar.gau: the cross-check has something to say.
            {"Panel\\panel.cfg",
             PanelCfg("orvane_panel.bmp", {"Orvane!Airspeed", "Orvane!Compass", "orvane_radar", "generic.clock"})},
            {"Panel\\orvane_panel.bmp", PanelBitmap(livery, 12)},
            {"Gauges\\Orvane.cab", Cab("Orvane", livery)},
            {"Model\\model.cfg", ModelCfg("courier")},
            {"Model\\courier.mdl", Model3D("orvane courier")},
            {"Texture\\courier_l.bmp", Texture8(livery, 0)},
            {"Texture\\courier_r.bmp", Texture8(livery, 2)},
            {"Sound\\sound.cfg", SoundCfg("courier_twin")},
            {"Sound\\courier_twin.wav", EngineHum(31)},
            {"Images\\courier at dusk.jpg", Picture(AircraftKind::HeavyProp, livery, Scene::Dusk)}};
}

PackageFiles QuillonRotor3() {
    const Livery& livery = RedOnCream;
    return {{"aircraft.cfg", AircraftCfg({{"Quillon Rotor 3", "", "Rescue"}}, "Quillon", "Rotor 3")},
            {"quillon3.air", FlightModel("quillon rotor 3")},
            {"quillon3_check.txt", Checklist("Quillon Rotor 3")},
            {"Panel\\panel.cfg",
             PanelCfg("quillon_panel.bmp", {"Quillon!Airspeed", "Quillon!Compass", "quillon_torque", "generic.clock"})},
            {"Panel\\quillon_panel.bmp", PanelBitmap(livery, 8)},
            {"Gauges\\Quillon.cab", Cab("Quillon", livery)},
            {"Gauges\\quillon_torque.gau", GaugeLibrary("quillon torque")},
            {"Model\\model.cfg", ModelCfg("quillon3")},
            {"Model\\quillon3.mdl", Model3D("quillon rotor 3")},
            {"Texture\\quillon_cabin.bmp", Texture8(livery, 1)},
            {"Texture\\quillon_boom.bmp", Texture8(livery, 2)},
            {"Sound\\sound.cfg", SoundCfg("quillon_rotor")},
            {"Sound\\quillon_rotor.wav", EngineHum(22)},
            {"Images\\quillon by day.jpg", Picture(AircraftKind::Helicopter, livery, Scene::Day)},
            {"Images\\quillon at the lake.jpg", Picture(AircraftKind::Helicopter, livery, Scene::Lake)},
            {"Images\\quillon at dusk.jpg", Picture(AircraftKind::Helicopter, livery, Scene::Dusk)},
            {"Documentation\\readme.txt", Text("Quillon Rotor 3\n\nA light helicopter for mountain rescue.\n")},
            {"Documentation\\flying the rotor 3.htm",
             Text("<html><head><title>Flying the Rotor 3</title></head>\n<body><h1>Flying the Rotor 3</h1>\n"
                  "<p>Raise the collective slowly and keep the nose level with the cyclic.</p></body></html>\n")},
            {"Documentation\\Handbuch f\xC3\xBCr Anf\xC3\xA4nger.txt", // für Anfänger
             Text("Quillon Rotor 3\n\nLangsam anheben, ruhig bleiben, weiter \xFC"
                  "ben.\n")},
            {"Miscellaneous\\quillon_dust.fx", Effect("fx_dust.bmp")}};
}

// ---- the simulator

struct StockAircraft {
    std::string directory, maker, type, wave;
    AircraftKind kind;
    Livery livery;
    int turns;
};

void PutStockAircraft(Writer& writer, const StockAircraft& aircraft, const std::string& panelCfg) {
    const std::string directory = SimDirectory + ("aircraft\\" + aircraft.directory) + "\\";
    const std::string title = aircraft.maker + " " + aircraft.type;
    writer.PutAll(directory,
                  {{"aircraft.cfg", AircraftCfg({{title, "", "House colours"}, {title + " Night", "2", "Night mail"}},
                                                aircraft.maker, aircraft.type)},
                   {aircraft.directory + ".air", FlightModel(aircraft.directory)},
                   {aircraft.directory + "_check.txt", Checklist(title)},
                   {"model\\model.cfg", ModelCfg(aircraft.directory)},
                   {"model\\" + aircraft.directory + ".mdl", Model3D(aircraft.directory)},
                   {"panel\\panel.cfg", panelCfg},
                   {"sound\\sound.cfg", SoundCfg(aircraft.wave)},
                   {"sound\\" + aircraft.wave + ".wav", EngineHum(aircraft.turns)},
                   {"texture\\" + aircraft.directory + "_1.bmp", Texture8(aircraft.livery, 0)},
                   {"texture.2\\" + aircraft.directory + "_1.bmp", Texture8(YellowOnBlue, 0)}});
}

void PutSimulator(Writer& writer) {
    const std::string sim = SimDirectory;
    writer.BeginDay(1, 15);
    writer.Put(sim + "fs2002.exe", StandInProgram());
    writer.Put(sim + "readme.txt", Text("A stand-in for a flight simulator, just large enough to try Korvadex on.\n"));
    PutStockAircraft(writer,
                     {"Velmora190", "Velmora", "190", "velmora_engine", AircraftKind::LightProp, BlueOnWhite, 40},
                     PanelCfg("velmora_panel.bmp", {"Velmora!Airspeed", "Velmora!Compass", "generic.clock"}));
    writer.Put(sim + "aircraft\\Velmora190\\panel\\velmora_panel.bmp", PanelBitmap(BlueOnWhite, 6));
    PutStockAircraft(
        writer, {"Brannock40", "Brannock", "Twin 40", "brannock_twin", AircraftKind::HeavyProp, RedOnCream, 34},
        PanelCfg("brannock_panel.bmp", {"Brannock!Airspeed", "Brannock!Compass", "Brannock_Fuel", "generic.clock"}));
    writer.Put(sim + "aircraft\\Brannock40\\panel\\brannock_panel.bmp", PanelBitmap(RedOnCream, 10));
    PutStockAircraft(writer, {"Halden7", "Halden", "Jetliner 7", "halden_fan", AircraftKind::Jet, GreenOnWhite, 90},
                     AliasCfg("Brannock40\\panel"));

    writer.Put(sim + "gauges\\Velmora.cab", Cab("Velmora", BlueOnWhite));
    writer.Put(sim + "gauges\\Brannock.cab", Cab("Brannock", RedOnCream));
    writer.Put(sim + "gauges\\Brannock_Fuel.gau", GaugeLibrary("brannock fuel"));
    writer.Put(sim + "gauges\\generic.clock.gau", GaugeLibrary("generic clock"));
    writer.Put(sim + "effects\\fx_dust.fx", Effect("fx_dust.bmp"));
    writer.Put(sim + "effects\\fx_wake.fx", Effect("fx_wake.bmp"));
    writer.Put(sim + "modules\\panels.dll", GaugeLibrary("module panels"));
    writer.Put(sim + "modules\\weather.dat", FlightModel("module weather"));
    writer.Put(sim + "sound\\click.wav", WarningHorn());
}

// What an installation puts into the simulator.
void InstallInSimulator(Writer& writer, const std::string& packageDirectory, const std::string& name,
                        const PackageFiles& package) {
    const std::string sim = SimDirectory;
    for (const auto& [relative, bytes] : package) {
        const std::string fileName = LastPathComponent(relative);
        if (relative.starts_with("Gauges\\"))
            writer.Copy(packageDirectory + relative, sim + "gauges\\" + fileName);
        else if (relative.starts_with("Miscellaneous\\"))
            writer.Copy(packageDirectory + relative, sim + "effects\\" + fileName);
        else
            writer.Copy(packageDirectory + relative, sim + "aircraft\\" + name + "\\" + relative);
    }
}

// ---- archives

Members Taymere60() {
    const Livery& livery = OrangeOnSilver;
    return {{"Gr\xC3\xBC\xC3\x9F"
             "e vom Autor.txt",
             Text("Viel Spa\xDF mit der Taymere 60!\n")},
            {"Taymere 60.jpg", Picture(AircraftKind::LightProp, livery, Scene::Day)},
            {"Effects/taymere_smoke.fx", Effect("fx_smoke.bmp")},
            {"Gauges/Taymere.cab", Cab("Taymere", livery)},
            {"Gauges/Taymere_ASI.gau", GaugeLibrary("taymere asi")},
            {"Taymere 60/aircraft.cfg", AircraftCfg({{"Taymere 60", "", "Orange on silver"}}, "Taymere", "60")},
            {"Taymere 60/Taymere60.AIR", FlightModel("taymere 60")},
            {"Taymere 60/taymere60_check.txt", Checklist("Taymere 60")},
            {"Taymere 60/Model/model.cfg", ModelCfg("Taymere60")},
            {"Taymere 60/Model/Taymere60.mdl", Model3D("taymere 60")},
            {"Taymere 60/Panel/panel.cfg",
             PanelCfg("Taymere_Panel.bmp", {"Taymere!Airspeed", "Taymere!Compass", "Taymere_ASI", "generic.clock"})},
            {"Taymere 60/Panel/Taymere_Panel.bmp", PanelBitmap(livery, 8)},
            {"Taymere 60/Sound/sound.cfg", SoundCfg("Taymere hum")},
            {"Taymere 60/Sound/Taymere hum.wav", EngineHum(42)},
            {"Taymere 60/Sound/taymere_horn.wav", WarningHorn()},
            {"Taymere 60/Texture/taymere_fuselage.bmp", Texture8(livery, 0)},
            {"Taymere 60/Texture/Taymere_Wing.BMP", Texture24(livery, 1)}};
}

Members SkerrowAmphibian() {
    const Livery& livery = YellowOnBlue;
    const std::string inner = ZipArchive(
        {{"Read Me.txt", Text("Panel for the Skerrow Amphibian.  It belongs into the aircraft's panel directory.\n")},
         {"gauges/", ""},
         {"gauges/Skerrow.cab", Cab("Skerrow", livery)},
         {"gauges/skerrow_water.gau", GaugeLibrary("skerrow water")},
         {"panel/", ""},
         {"panel/panel.cfg", PanelCfg("skerrow_main.bmp", {"Skerrow!Airspeed", "Skerrow!Compass", "skerrow_water"})},
         {"panel/skerrow_main.bmp", PanelBitmap(livery, 6)}});
    const std::string directory = "FS2002/aircraft/Skerrow/";
    return {{"Read Me.txt", Text("Skerrow Amphibian, version 2\n\nThe panel comes as an archive of its own.\n")},
            {"skerrow.jpg", Picture(AircraftKind::Amphibian, livery, Scene::Day)},
            {"skerrow on the lake.jpg", Picture(AircraftKind::Amphibian, livery, Scene::Lake)},
            {InnerArchive, inner},
            {directory, ""},
            {directory + "aircraft.cfg", AircraftCfg({{"Skerrow Amphibian", "", "Lake"}}, "Skerrow", "Amphibian")},
            {directory + "skerrow.air", FlightModel("skerrow")},
            {directory + "model/", ""},
            {directory + "model/model.cfg", ModelCfg("skerrow")},
            {directory + "model/skerrow.mdl", Model3D("skerrow")},
            {directory + "sound/", ""},
            {directory + "sound/sound.cfg", SoundCfg("skerrow_engine")},
            {directory + "sound/skerrow_engine.wav", EngineHum(36)},
            {directory + "texture/", ""},
            {directory + "texture/skerrow_hull.bmp", Texture8(livery, 0)},
            {directory + "texture/skerrow_wing.bmp", Texture8(livery, 1)}};
}

Members Brindle8() {
    return {{"brindle8_blue.jpg", Picture(AircraftKind::Jet, BlueOnWhite, Scene::Day)},
            {"brindle8_red.jpg", Picture(AircraftKind::Jet, RedOnCream, Scene::Dusk)},
            {"brindle8.htm",
             Text("<html><body><h1>Brindle 8</h1>\n<p>One jet, two liveries: blue and red.</p></body></html>\n")},
            {"Brindle8/aircraft.cfg",
             AircraftCfg({{FirstLivery, "", "Blue"}, {SecondLivery, "red", "Red"}}, "Brindle", "8")},
            {"Brindle8/brindle8.air", FlightModel("brindle 8")},
            {"Brindle8/gauges/Brindle.cab", Cab("Brindle", BlueOnWhite)},
            {"Brindle8/model/model.cfg", ModelCfg("brindle8")},
            {"Brindle8/model/brindle8.mdl", Model3D("brindle 8")},
            {"Brindle8/panel/panel.cfg",
             PanelCfg("brindle8_panel.bmp", {"Brindle!Airspeed", "Brindle!Compass", "brindle_radar", "generic.clock"})},
            {"Brindle8/panel/brindle8_panel.bmp", PanelBitmap(BlueOnWhite, 12)},
            {"Brindle8/sound/sound.cfg", SoundCfg("brindle8_turbine")},
            {"Brindle8/sound/brindle8_turbine.wav", EngineHum(96)},
            {"Brindle8/texture/brindle8_fuselage.bmp", Texture8(BlueOnWhite, 0)},
            {"Brindle8/texture/brindle8_tail.bmp", Texture8(BlueOnWhite, 1)},
            {"Brindle8/texture.red/brindle8_fuselage.bmp", Texture8(RedOnCream, 0)},
            {"Brindle8/texture.red/brindle8_tail.bmp", Texture8(RedOnCream, 1)}};
}

// ---- settings

std::string SettingsFile(const std::string& root) {
    const auto bytes =
        JoinLines({std::string("ALTLOCATION0=") + ProfileName, "ALTSTAGINGDIR0=" + root + StagingDirectory,
                   "ALTHANGARDIR0=" + root + HangarDirectory, "ALTMSFSDIR0=" + root + SimDirectory,
                   std::string("ALTFIRSTPACKAGE0=") + LightPropsCategory + "\\" + CompletePackage, "LOCATIONLAST=0",
                   "LOCATIONLASTZIP=" + root + DownloadsDirectory});
    if (!bytes)
        throw std::runtime_error(root + ": the code page has no byte for a character of this path");
    return *bytes;
}

void PutHangar(Writer& writer) {
    const std::string hangar = HangarDirectory;
    for (const char* category :
         {"Aircraft - Heavy Jets", "Aircraft - Heavy Props", "Aircraft - Light Jets", "Aircraft - Light Props",
          "Aircraft - Helicopters", "Aircraft - Military", "Panels - Heavy Jets", "Panels - Light Jets",
          "Panels - Heavy Props", "Panels - Light Props", "Sounds - Heavy Jets", "Sounds - Light Jets",
          "Sounds - Heavy Props", "Sounds - Light Props"})
        writer.MakeDirectory(hangar + category + "\\");
    const auto directoryOf = [&](const char* category, const char* package) {
        return hangar + category + "\\" + package + "\\";
    };
    writer.BeginDay(3, 2);
    writer.PutAll(directoryOf(LightPropsCategory, CompletePackage), PellmoorP12());
    writer.BeginDay(3, 9);
    writer.PutAll(directoryOf(LightPropsCategory, AliasPackage), PellmoorP12Floats());
    writer.BeginDay(4, 20);
    writer.PutAll(directoryOf(HeavyPropsCategory, MissingGaugePackage), OrvaneCourier());
    writer.BeginDay(5, 4);
    const PackageFiles installed = QuillonRotor3();
    const std::string directory = directoryOf(HelicoptersCategory, InstalledPackage);
    writer.PutAll(directory, installed);
    InstallInSimulator(writer, directory, InstalledDirectory, installed);
}

} // namespace

void MakeExample(FileSystem& files, const std::string& root) {
    Writer writer(files, root);
    writer.MakeDirectory(StagingDirectory);
    PutSimulator(writer);
    PutHangar(writer);
    const std::string downloads = DownloadsDirectory;
    writer.BeginDay(5, 18);
    writer.Put(downloads + PlainArchive, ZipArchive(Taymere60()));
    writer.Put(downloads + NestedArchive, ZipArchive(SkerrowAmphibian()));
    writer.Put(downloads + TwoLiveriesArchive, ZipArchive(Brindle8()));
    writer.Put(std::string(AppDirectory) + "kx.ini", SettingsFile(root));
}

} // namespace korvadex::demo
