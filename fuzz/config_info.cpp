// The information on an aircraft. The input is an aircraft.cfg, a line "%%" and another one, whose information is
// entered for the first.
#include "fuzz/check.h"
#include "fuzz/drive.h"
#include "media/aircraft_info.h"
#include "package/aircraft_cfg.h"
#include "platform/windows_path.h"

namespace korvadex::fuzz {

namespace {

// As it is to be read back: without blanks at the ends.
AircraftInfo Cleaned(AircraftInfo info) {
    const auto clean = [&](const auto& fields) {
        for (const InfoField& field : fields)
            if (field.text)
                info.*field.text = std::string(field.hasLines ? Trim(info.*field.text) : TrimBlanks(info.*field.text));
    };
    clean(ConfigurationFields);
    clean(GeneralFields);
    return info;
}

// What can be entered where there is no [fltsim.N] section.
AircraftInfo GeneralAlone(AircraftInfo info, const AircraftInfo& before) {
    for (const InfoField& field : ConfigurationFields) {
        if (field.text)
            info.*field.text = before.*field.text;
        else
            info.*field.flag = before.*field.flag;
    }
    return info;
}

void CheckRewriting(const ConfigText& text) {
    const AircraftInfo info = ReadAircraftInfo(text).info;
    const std::string again = WithAircraftInfo(text, info);
    const ConfigText read = ParseConfig(again);
    Require(ReadAircraftInfo(read).info == info, "the information is written as it was read");
    Require(WithAircraftInfo(read, info) == again, "to write it again changes nothing");
}

void CheckEditing(std::string_view input, AircraftInfo entered) {
    Drive drive;
    const std::string relative = "Hangar\\Jets\\Lear\\aircraft.cfg", path = "C:\\" + relative;
    drive.Put("FS\\fs2002.exe", "MZ");
    drive.Put(relative, input);
    const Entries before = drive.Tree();
    drive.user.info = [&](const InfoForm& form) {
        if (!form.hasConfiguration)
            entered = GeneralAlone(entered, form.info);
        if (form.accept(entered))
            Require(ReadAircraftInfo(ParseConfig(drive.Get(relative))).info == Cleaned(entered),
                    "what was entered stands in the file");
        else
            Require(drive.Get(relative) == input, "what was refused changes nothing");
    };
    LoadedPackage package;
    package.ref = {"Jets", "Lear"};
    package.ComponentFiles[Aircraft].emplace_back(path, FileInfo{});
    package.aircraftCfg = ReadAircraftCfg(drive.Files(), path);
    EditAircraftInfo(drive.Context(), package);
    Require(Outside(relative, drive.Tree()) == Outside(relative, before), "no other file changes");
}

} // namespace

void Run(std::string_view input) {
    constexpr std::string_view mark = "\n%%\n";
    const std::size_t end = input.find(mark);
    const std::string_view file = input.substr(0, end);
    const ConfigText text = ParseConfig(file);
    if (text.IsText())
        CheckRewriting(text);
    if (end != std::string_view::npos)
        CheckEditing(file, ReadAircraftInfo(ParseConfig(input.substr(end + mark.size()))).info);
}

} // namespace korvadex::fuzz
