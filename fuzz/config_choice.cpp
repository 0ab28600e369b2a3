// Staging reduced to one of several configurations: what the kept one uses stays, and so does every other line.
#include "fuzz/check.h"
#include "fuzz/drive.h"
#include "package/aircraft_cfg.h"
#include "package/walk.h"
#include "platform/windows_path.h"

namespace korvadex::fuzz {

namespace {

// What belongs to no configuration, as far as it is looked at.
std::vector<std::string> OtherLines(const ConfigText& text) {
    std::vector<std::string> lines;
    bool isInConfiguration = false;
    for (std::size_t i = 0; i < text.lines.size(); ++i) {
        const std::string_view section = i < MaxConfigLines ? SectionOf(text.lines[i].text) : "";
        if (!section.empty())
            isInConfiguration = StartsWithNoCase(section, "fltsim.");
        if (!isInConfiguration)
            lines.push_back(text.lines[i].bytes + text.lines[i].end);
    }
    return lines;
}

// "texture" and "red" -> "texture.red\"
std::string DirectoryFor(const std::string& word, const std::string& value) {
    return FoldCase(word + (value.empty() || value.starts_with("\\") ? "" : ".") + value) + "\\";
}

void CheckKept(const Configuration& kept, const Entries& before, const Entries& after) {
    for (const std::string& directory : {DirectoryFor("texture", kept.texture), DirectoryFor("model", kept.model)})
        for (const auto& [name, bytes] : before)
            if (FoldCase(name).starts_with("staging\\" + directory))
                Require(after.contains(name) && after.at(name) == bytes, "the kept configuration has its files");
}

} // namespace

void Run(std::string_view input) {
    Drive drive;
    drive.Put("Staging\\aircraft.cfg", input);
    for (const char* file : {"texture\\a.bmp", "texture\\red\\a.bmp", "texture.red\\a.bmp", "texture.1\\a.bmp",
                             "model\\a.mdl", "model.1\\a.mdl", "panel\\a.bmp", "panel.1\\a.bmp", "sound\\a.wav",
                             "sound.1\\a.wav", "other\\texture.2\\a.bmp"})
        drive.Put("Staging\\" + std::string(file), file);
    drive.Put("Staging\\panel\\panel.cfg", "[window titles]\r\nfile=a.bmp\r\n");
    drive.Put("Staging\\panel.1\\panel.cfg", "[fltsim]\r\nalias=lear\\panel\r\n");
    drive.Put("Staging\\sound.1\\sound.cfg", "[fltsim]\r\nalias=lear\\sound\r\n");
    drive.user.configuration = static_cast<int>(input.size());

    const Entries before = drive.Tree();
    const AircraftCfg cfg = ReadAircraftCfg(drive.Files(), "C:\\Staging\\aircraft.cfg");
    const auto configurations = ReadConfigurations(cfg);
    const auto kept = ChooseConfiguration(drive.Context(), cfg, WalkTree(drive.Files(), "C:\\Staging\\"));
    const Entries after = drive.Tree();
    if (!kept) {
        Require(after == before, "where nothing is chosen nothing changes");
        return;
    }
    Require(Outside("Staging\\", after) == Outside("Staging\\", before), "nothing changes outside of Staging");
    Require(IsClean(after), "nothing of the program's own is left, and no link");
    for (const auto& entry : after)
        Require(before.contains(entry.first), "nothing is left over");
    const std::size_t row = input.size() % configurations.size();
    Require(kept->title == configurations[row].title, "the chosen one is kept");
    CheckKept(configurations[row], before, after);
    const AircraftCfg written = ReadAircraftCfg(drive.Files(), cfg.path);
    const auto left = ReadConfigurations(written);
    Require(left.size() == 1 && EqualNoCase(left.front().section, "fltsim.0") && left.front().title == kept->title,
            "one configuration is left");
    if (cfg.text.lines.size() <= MaxConfigLines)
        Require(OtherLines(written.text) == OtherLines(cfg.text), "all other lines are as they were");
}

} // namespace korvadex::fuzz
