// Add-on aircraft as people pack them, made up from a seed: liveries, panels and sounds of several configurations,
// texts typed by hand, gauges that others bring as well, what file managers leave behind.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace korvadex::test {

// The same throws for the same seed on every machine.
class Dice {
  public:
    explicit Dice(std::uint64_t seed) : engine(seed) {}
    std::size_t Below(std::size_t end) { return engine() % end; }
    bool OneIn(std::size_t chances) { return Below(chances) == 0; }
    template<class T>
    const T& Of(const std::vector<T>& choices) {
        return choices[Below(choices.size())];
    }

  private:
    std::mt19937_64 engine;
};

struct AddonFile {
    enum class Kind {
        Plain,
        AircraftCfg, // rewritten when a configuration is chosen
        AliasStub,   // a panel.cfg or sound.cfg that leads to the aircraft's own plain one
        Gauge,
        Junk // of a file manager
    };
    std::string path; // in the archive, with "/"; below the nested one's own directory where it comes in that
    std::string bytes;
    std::uint32_t time = 0;        // in seconds since 1970
    std::set<std::size_t> users{}; // configurations that need it; empty: every one
    Kind kind = Kind::Plain;
    bool isNested = false;

    std::string Name() const { return path.substr(path.rfind('/') + 1); }
    bool IsNeededBy(std::size_t configuration) const {
        return kind != Kind::Junk && (users.empty() || users.contains(configuration));
    }
};

struct RandomAddon {
    std::string name;        // "Kestrel 7"
    std::string archiveName; // "Kestrel_7.ZIP"
    std::string directory;   // of the aircraft in the archive: "", "Kestrel 7/", "Aircraft/Kestrel 7/"
    std::vector<std::string> titles;
    std::vector<std::set<std::string>> gauges; // that each configuration's panel names, lower case, no extension
    std::vector<AddonFile> files;

    std::string Archive() const; // its bytes
    bool hasStub = false;        // before the archive, not counted by its offsets
};
inline constexpr const char* NestedArchive = "Panel.zip";

// Gauges that several add-ons bring, and some of which the simulator has already: file name and bytes.
using GaugePool = std::map<std::string, std::vector<std::string>>;
GaugePool MakeGaugePool(Dice& dice);
RandomAddon MakeAddon(Dice& dice, const GaugePool& pool);

} // namespace korvadex::test
