#include "tests/support/random_addon.h"

#include "platform/windows_path.h"
#include "tests/support/temporary_drive.h"
#include "tests/support/zip_builder.h"

namespace korvadex::test {

namespace {

using Kind = AddonFile::Kind;
using Users = std::set<std::size_t>;

struct Livery {
    std::string model, panel, sound, texture; // as aircraft.cfg names them
};
constexpr const char* Words[] = {"model", "panel", "sound", "texture"};

class AddonMaker {
  public:
    AddonMaker(Dice& addonDice, const GaugePool& gaugePool) : dice(addonDice), pool(gaugePool) {}

    RandomAddon Make() {
        NameIt();
        isNested = dice.OneIn(5);
        PlanLiveries();
        AddTextures();
        AddPanels();
        AddSounds();
        for (const auto& [directory, users] : UsersByDirectory("model", &Livery::model)) {
            Add(directory + "/" + Cased("model.cfg"), Assigned("normal", "kestrel") + "\r\n" + Filler(), users);
            Add(directory + "/kestrel.mdl", Filler(), users);
        }
        Add(addon.directory + Cased("aircraft.cfg"), AircraftCfg(), {}, Kind::AircraftCfg);
        Add(addon.directory + "kestrel.air", Filler());
        AddOthers();
        return std::move(addon);
    }

  private:
    void NameIt() {
        addon.name = dice.Of<std::string>({"Kestrel", "Orvane", "Brindle", "Skerrow", "Tarn"}) +
                     dice.Of<std::string>({" ", "-", "_"}) + std::to_string(dice.Below(90) + 10);
        addon.directory = dice.Of<std::string>({"", addon.name + "/", "Aircraft/" + addon.name + "/"});
        addon.hasStub = dice.OneIn(4);
        addon.archiveName =
            addon.name + (addon.hasStub && dice.OneIn(2) ? ".exe" : dice.Of<std::string>({".zip", ".ZIP"}));
    }

    // --- configurations

    void PlanLiveries() {
        liveries.resize(dice.OneIn(3) ? 1 : 2 + dice.Below(3));
        for (std::size_t i = 0; i < liveries.size(); ++i) {
            const std::string number = std::to_string(i + 1);
            liveries[i].texture = i == 0 && dice.OneIn(2) ? "" : dice.Of<std::string>({"red", "Blue", number});
            if (i > 0 && dice.OneIn(3))
                liveries[i].panel = dice.Of<std::string>({"vc", number});
            if (i > 0 && dice.OneIn(4))
                liveries[i].sound = number;
            if (i > 0 && dice.OneIn(6))
                liveries[i].model = number;
            addon.titles.push_back(addon.name + " livery " + number);
        }
        // A directory that is missing: the plain one serves.
        hasMissingTexture = liveries.size() > 1 && liveries[0].texture.empty() && dice.OneIn(4);
        addon.gauges.resize(liveries.size());
    }

    // "texture.red" beside the aircraft.cfg, and which configurations it serves.
    std::map<std::string, Users> UsersByDirectory(const std::string& word, std::string Livery::*value) {
        std::map<std::string, Users> users;
        for (std::size_t i = 0; i < liveries.size(); ++i) {
            const std::string& own = liveries[i].*value;
            const bool isMissing = word == "texture" && hasMissingTexture && own == liveries.back().texture;
            users[addon.directory + (own.empty() || isMissing ? word : word + "." + own)].insert(i);
        }
        return users;
    }

    std::string AircraftCfg() {
        std::string text = dice.OneIn(3) ? "; made by hand\r\n\r\n" : "";
        for (std::size_t i = 0; i < liveries.size(); ++i) {
            const std::string values[] = {liveries[i].model, liveries[i].panel, liveries[i].sound, liveries[i].texture};
            text += Cased("[fltsim." + std::to_string(i) + "]") + "\r\n";
            text += Spaced("title", addon.titles[i]) + "\r\nsim=kestrel\r\n";
            for (std::size_t word = 0; word < 4; ++word)
                if (!values[word].empty() || dice.OneIn(2))
                    text += Assigned(Words[word], dice.OneIn(3) ? FoldCase(values[word]) : values[word]) + "\r\n";
            text += "atc_id=" + std::to_string(dice.Below(1000)) + "\r\n\r\n";
        }
        text += "[General]\r\n" + Spaced("editable", "1");
        return Ended(text);
    }

    // --- components

    void AddTextures() {
        const std::string shared = Filler();
        for (const auto& [directory, users] : UsersByDirectory("texture", &Livery::texture)) {
            for (const char* name : {"wing_t.bmp", "Fuselage_t.bmp", "glass.0af"})
                Add(directory + "/" + Cased(name), dice.OneIn(5) ? shared : Filler(), users);
            if (dice.OneIn(2))
                Add(directory + "/thumbnail.jpg", dice.OneIn(3) ? shared : Filler(), users);
            if (dice.OneIn(3))
                Add(directory + "/Readme.txt", dice.OneIn(3) ? shared : Filler(), users);
            AddJunk(directory);
        }
    }

    // Some of these directories hold an alias to the plain one, which serves their users too.
    std::set<std::string> MakeStubs(std::map<std::string, Users>& directories, const std::string& plain) {
        std::set<std::string> stubs;
        for (const auto& [directory, users] : std::map(directories))
            if (directory != plain && dice.OneIn(2)) {
                stubs.insert(directory);
                directories[plain].insert(users.begin(), users.end());
            }
        return stubs;
    }
    void AddPanels() {
        const std::string plain = addon.directory + "panel", shared = Filler();
        auto panels = UsersByDirectory("panel", &Livery::panel);
        const auto stubs = MakeStubs(panels, plain);
        for (const auto& [directory, users] : panels) {
            std::set<std::string> named;
            if (stubs.contains(directory)) {
                Add(directory + "/" + Cased("panel.cfg"), Alias("panel"), users, Kind::AliasStub);
            } else {
                const std::string text = PanelCfg(directory, users, named);
                Add(directory + "/" + Cased("panel.cfg"), text, users);
                Add(directory + "/" + Cased("background" + std::to_string(directory.size()) + ".bmp"), Filler(), users);
            }
            for (const std::size_t user : users)
                addon.gauges[user].insert(named.begin(), named.end());
            Add(directory + "/kestrel_check.txt", dice.OneIn(3) ? shared : Filler(), users);
            if (dice.OneIn(3))
                Add(directory + "/hires/night.bmp", dice.OneIn(3) ? shared : Filler(), users);
            AddJunk(directory);
        }
        if (dice.OneIn(3)) // one that no panel names
            AddGauge(addon.directory + dice.Of<std::string>({"", "gauges/"}),
                     "Spare" + std::to_string(dice.Below(9)) + ".gau", Filler());
    }

    std::string PanelCfg(const std::string& directory, const Users& users, std::set<std::string>& named) {
        std::string text = "[Window Titles]\r\nWindow00=Main\r\n\r\n[Window00]\r\n" +
                           Assigned("file", "background" + std::to_string(directory.size()) + ".bmp") + "\r\n";
        for (const auto& [name, versions] : pool) {
            if (!dice.OneIn(3))
                continue;
            const std::string stem = name.substr(0, name.find('.'));
            const bool isCabinet = name.ends_with(".cab");
            text += Spaced("gauge" + std::to_string(10 + named.size()), Cased(stem) + (isCabinet ? "!Altimeter" : "") +
                                                                            dice.Of<std::string>({",", ", ", " , "}) +
                                                                            "10,20") +
                    "\r\n";
            named.insert(FoldCase(stem));
            if (!dice.OneIn(4)) // else it is hoped to be in the simulator
                AddGauge(dice.OneIn(3)   ? directory + "/"
                         : dice.OneIn(2) ? addon.directory + "gauges/"
                                         : "Gauges/",
                         name, dice.Of(versions), users);
        }
        if (dice.OneIn(2))
            text += "// " + std::string(1200, 'x') + "\r\n";
        return dice.OneIn(8) ? TwoByteText(text) : Ended(text);
    }

    void AddSounds() {
        const std::string plain = addon.directory + "sound";
        auto sounds = UsersByDirectory("sound", &Livery::sound);
        const auto stubs = MakeStubs(sounds, plain);
        for (const auto& [directory, users] : sounds) {
            if (stubs.contains(directory)) {
                Add(directory + "/" + Cased("sound.cfg"), Alias("sound"), users, Kind::AliasStub);
                continue;
            }
            Add(directory + "/" + Cased("sound.cfg"), Ended("[SOUND_ENGINE.1]\r\n" + Spaced("filename", "engine")),
                users);
            Add(directory + "/Engine.wav", Filler(), users);
            if (dice.OneIn(3))
                Add(directory + "/gear_warning.wav", Filler(), users);
        }
    }

    void AddOthers() {
        const std::string twin = Filler();
        for (const char* path : {"Readme.txt", "docs/readme.TXT", "docs/more/ReadMe.txt"})
            if (!dice.OneIn(3))
                Add((dice.OneIn(2) ? addon.directory : "") + path, dice.OneIn(3) ? twin : Filler());
        for (const char* path : {"file_id.diz", "flight_model.cfg", "screenshot.jpg", "docs/kestrel_ref.txt",
                                 "effects/kestrel_smoke.fx", "Modules/kestrel.dll", "setup.exe", "kestrel.xyz"})
            if (dice.OneIn(3))
                Add(addon.directory + path, Filler());
        if (dice.OneIn(4))
            Add("__MACOSX/" + addon.directory + "._aircraft.cfg", Filler(), {}, Kind::Junk);
        AddJunk(addon.directory.empty() ? "" : addon.directory.substr(0, addon.directory.size() - 1));
    }

    void AddJunk(const std::string& directory) {
        for (const char* name : {"Thumbs.db", "desktop.ini", ".DS_Store", ".directory"})
            if (dice.OneIn(4))
                Add(directory + (directory.empty() ? "" : "/") + name, Filler(), {}, Kind::Junk);
    }

    void AddGauge(const std::string& directory, const std::string& name, const std::string& bytes,
                  const Users& users = {}) {
        Add(directory + name, bytes, users, Kind::Gauge);
    }

    void Add(std::string path, std::string bytes, const Users& users = {}, Kind kind = Kind::Plain) {
        const std::string plain = addon.directory + "panel/";
        const bool goesNested = isNested && path.starts_with(plain);
        if (goesNested)
            path = "panel/" + path.substr(plain.size());
        for (auto& there : addon.files)
            if (EqualNoCase(there.path, path)) { // a gauge of two panels
                if (!there.users.empty() && !users.empty())
                    there.users.insert(users.begin(), users.end());
                return;
            }
        const std::uint32_t time = 957'000'000 + static_cast<std::uint32_t>(dice.Below(3)) * 3600;
        addon.files.push_back({std::move(path), std::move(bytes), time, users, kind, goesNested});
    }

    // --- texts

    // Bytes that no other file has.
    std::string Filler() {
        return "kestrel " + std::to_string(dice.Below(1'000'000'000)) + std::string(20 + dice.Below(200), ' ');
    }
    std::string Cased(std::string text) {
        const std::size_t way = dice.Below(4);
        if (way == 0)
            for (char& c : text)
                c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        else if (way == 1)
            text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
        return text;
    }
    std::string Spaced(const std::string& key, const std::string& value) {
        return dice.Of<std::string>({"", "", " ", "\t"}) + Cased(key) +
               dice.Of<std::string>({"=", "=", " = ", "\t=\t", "= "}) + value + dice.Of<std::string>({"", "", "  "});
    }
    // For values that end at a comment and may stand in quotes.
    std::string Assigned(const std::string& key, const std::string& value) {
        return Spaced(key, dice.OneIn(6) ? "\"" + value + "\"" : value) +
               dice.Of<std::string>({"", "", "", " ; as before", "\t// mine"});
    }
    std::string Alias(const std::string& kind) {
        std::string own = addon.directory.empty() ? addon.name : addon.directory.substr(0, addon.directory.size() - 1);
        own = own.substr(own.rfind('/') + 1);
        return Ended("[fltsim]\r\n" + Spaced("alias", own + "\\" + kind));
    }
    // With or without a last line end, with or without CR.
    std::string Ended(std::string text) {
        if (dice.OneIn(4))
            std::erase(text, '\r');
        return text + (dice.OneIn(2) ? "\r\n" : "");
    }

    Dice& dice;
    const GaugePool& pool;
    RandomAddon addon;
    std::vector<Livery> liveries;
    bool isNested = false, hasMissingTexture = false;
};

} // namespace

GaugePool MakeGaugePool(Dice& dice) {
    GaugePool pool;
    for (const char* name : {"Avio_Alt.gau", "Avio_Clock.gau", "Brass.cab", "Bronze.gau", "FuelLeft.gau", "Tacho.CAB"})
        for (std::size_t version = 0; version <= dice.Below(2); ++version)
            pool[name].push_back(std::string("MZ ") + name + " " + std::to_string(version) + std::string(60, '.'));
    return pool;
}

RandomAddon MakeAddon(Dice& dice, const GaugePool& pool) {
    return AddonMaker(dice, pool).Make();
}

std::string RandomAddon::Archive() const {
    ZipBuilder whole, nested;
    bool hasNested = false;
    for (const AddonFile& file : files) {
        ZipBuilder::Options options;
        options.unixTime = file.time;
        (file.isNested ? nested : whole).Add(file.path, file.bytes, options);
        hasNested = hasNested || file.isNested;
    }
    if (hasNested)
        whole.Add(directory + NestedArchive, nested.Bytes());
    return (hasStub ? "MZ" + std::string(300, '\x90') : "") + whole.Bytes();
}

} // namespace korvadex::test
