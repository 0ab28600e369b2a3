// kx.ini: what was read is saved, and what was saved is read again.
#include "app/settings.h"
#include "fuzz/check.h"
#include "fuzz/drive.h"
#include "package/config_text.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex::fuzz {

namespace {

constexpr ScreenSize Screen{.height = 12000, .width = 16000};

std::optional<WindowGeometry> GeometryOf(const SavedGeometry& saved) {
    return WindowGeometry{.top = saved.top.value_or(0),
                          .left = saved.left.value_or(0),
                          .height = saved.height.value_or(6000),
                          .width = saved.width.value_or(9000)};
}

// As it stands in the file.
SettingsValues Trimmed(SettingsValues values) {
    for (LocationProfile& profile : values.LocationProfiles)
        for (std::string* text :
             {&profile.name, &profile.StagingDir, &profile.HangarDir, &profile.MsfsDir, &profile.firstPackage})
            *text = std::string(Trim(*text));
    values.ListWindowGeometry = {};
    return values;
}

// A line without a key that the settings know is the user's.
void CheckOtherLines(const ConfigText& before, const ConfigText& after) {
    for (const ConfigLine& line : before.lines)
        if (line.text.find('=') == std::string::npos && !line.text.empty() && SettingsCanHold(line.text))
            Require(std::ranges::any_of(after.lines, [&](const ConfigLine& other) { return other.text == line.text; }),
                    "lines of no known key are kept");
}

} // namespace

void Run(std::string_view input) {
    Drive drive;
    drive.Put("App\\kx.ini", input);
    const Entries before = drive.Tree();
    const auto bytes = [&] { return drive.Get("App\\kx.ini"); };

    Settings first;
    first.AppDir = "C:\\App\\";
    Require(LoadSettings(drive.Files(), Screen, first).status().fault == FileFault::None, "the file can be read");
    const SettingsValues read = first;
    const Status status = SaveSettings(drive.Files(), first, GeometryOf(first.mainWindow));
    const bool isWritten = bytes() != input;
    Require(status || !isWritten, "whatever fails, the file is as it was");
    Require(Outside("App\\", drive.Tree()) == Outside("App\\", before), "no other file changes");
    if (!isWritten)
        return;
    CheckOtherLines(ParseConfig(input), ParseConfig(bytes()));

    Settings second;
    second.AppDir = first.AppDir;
    Require(LoadSettings(drive.Files(), Screen, second).status().fault == FileFault::None, "it can be read again");
    Require(Trimmed(second) == Trimmed(read), "the settings are read as they were saved");
    const std::string saved = bytes();
    Require(static_cast<bool>(SaveSettings(drive.Files(), second, GeometryOf(second.mainWindow))) && bytes() == saved,
            "to save them again changes nothing");
}

} // namespace korvadex::fuzz
