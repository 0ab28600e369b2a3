#include "app/settings.h"

#include "package/config_text.h"
#include "package/scratch.h"
#include "platform/code_page.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <vector>

namespace korvadex {

namespace {

constexpr double LowestPosition = -70, CorrectedPosition = -60;
constexpr double ScreenMargin = 100;
constexpr double MostCollectionWidth = 100'000;

constexpr std::string_view UnnamedProfile = "A Location Profile";

// As much of the beginning as is a number, 0 when there is none: " 12", "+12", "12 twips" and "12abc" are
// all 12.
double NumberIn(std::string_view text) {
    text = TrimLeft(text);
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    // "nan" and "inf" are numbers to the library only.
    return error == std::errc() && std::isfinite(number) ? number : 0;
}

int IntegerIn(std::string_view text) {
    constexpr double lowest = std::numeric_limits<int>::min(), highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(std::nearbyint(NumberIn(text)), lowest, highest));
}

// Window positions are kept in single precision; the shortest text that gives the same value back.
std::string ShortestText(double number) {
    char text[64];
    const auto end =
        std::to_chars(std::begin(text), std::end(text), static_cast<float>(number), std::chars_format::fixed);
    return end.ec == std::errc() ? std::string(text, end.ptr) : "0";
}

std::string IntegerText(double number) {
    return std::to_string(std::llround(number));
}

// One too large for single precision is none.
double Position(double value) {
    if (value > std::numeric_limits<float>::max())
        return 0;
    return value < LowestPosition ? CorrectedPosition : value;
}

std::optional<double> Extent(double value, double screen) {
    if (value > screen)
        value = screen - ScreenMargin;
    return value > 0 ? std::optional(value) : std::nullopt;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// These return false for a key that is none of theirs.
bool ReadProfileLine(std::string_view key, std::string_view value, SettingsValues& values) {
    // The digit before the equals sign tells the profile.
    const char digit = key.back();
    if (!IsDigit(digit))
        return false;
    key.remove_suffix(1);
    auto& profile = values.LocationProfiles[static_cast<std::size_t>(digit - '0')];
    // A name of blanks would be saved as none, and the directories would go with it.
    if (key == "ALTLOCATION")
        profile.name = value.empty() || !Trim(value).empty() ? value : UnnamedProfile;
    else if (key == "ALTSTAGINGDIR")
        profile.StagingDir = AddBackslash(value);
    else if (key == "ALTHANGARDIR")
        profile.HangarDir = AddBackslash(value);
    else if (key == "ALTMSFSDIR")
        profile.MsfsDir = AddBackslash(value);
    else if (key == "ALTFIRSTPACKAGE")
        profile.firstPackage = value;
    else
        return false;
    return true;
}

bool ReadWindowLine(std::string_view key, std::string_view value, const ScreenSize& screen, SavedGeometry& mainWindow,
                    WindowGeometry& list) {
    if (key == "MTOP")
        mainWindow.top = Position(NumberIn(value));
    else if (key == "MLEFT")
        mainWindow.left = Position(NumberIn(value));
    else if (key == "MHEIGHT") {
        if (const auto height = Extent(NumberIn(value), screen.height))
            mainWindow.height = height;
    } else if (key == "MWIDTH") {
        if (const auto width = Extent(NumberIn(value), screen.width))
            mainWindow.width = width;
    } else if (key == "LTOP")
        list.top = Position(IntegerIn(value));
    else if (key == "LLEFT")
        list.left = Position(IntegerIn(value));
    else if (key == "LHEIGHT")
        list.height = IntegerIn(value) > 0 ? IntegerIn(value) : list.height;
    else if (key == "LWIDTH")
        list.width = IntegerIn(value) > 0 ? IntegerIn(value) : list.width;
    else
        return false;
    return true;
}

bool ReadLine(std::string_view line, const ScreenSize& screen, SettingsValues& values, SavedGeometry& mainWindow) {
    const auto equals = line.find('=');
    if (equals == std::string_view::npos)
        return false;
    const auto key = line.substr(0, equals), value = line.substr(equals + 1);
    if (key.starts_with("ALT"))
        return ReadProfileLine(key, value, values);
    if (key == "LOCATIONASK")
        values.AskLocationAtStart = value == "YES";
    else if (key == "LOCATIONLAST")
        values.CurrentProfile = IntegerIn(value);
    else if (key == "LOCATIONLASTZIP")
        values.LastZipPath = value;
    else if (key.starts_with("LASTZIP") && key.size() == 8 && IsDigit(key.back())) {
        if (!Trim(value).empty() && values.lastArchives.size() < MostLastArchives)
            values.lastArchives.emplace_back(value);
    } else if (key == "DIRMAX")
        values.limits.DirMax = IntegerIn(value) > WalkLimits{}.DirMax ? IntegerIn(value) : values.limits.DirMax;
    else if (key == "FILEMAX")
        values.limits.FileMax = IntegerIn(value) > WalkLimits{}.FileMax ? IntegerIn(value) : values.limits.FileMax;
    else if (key == "HISTORYCOMMANDS")
        values.historyLimits.commands =
            IntegerIn(value) > 0 ? std::min(IntegerIn(value), MostHistoryCommands) : values.historyLimits.commands;
    else if (key == "HISTORYMEGABYTES")
        values.historyLimits.bytes = IntegerIn(value) > 0 ? BytesOf(std::min(IntegerIn(value), MostHistoryMegabytes))
                                                          : values.historyLimits.bytes;
    else if (key == "COLLECTION")
        values.isCollectionShown = value == "YES"  ? std::optional(true)
                                   : value == "NO" ? std::optional(false)
                                                   : values.isCollectionShown;
    else if (key == "COLLECTIONWIDTH")
        values.layout.collectionWidth =
            Extent(NumberIn(value), MostCollectionWidth).value_or(values.layout.collectionWidth);
    else if (key == "PICTURESHARE")
        values.layout.pictureShare = std::clamp(NumberIn(value), 0.0, 100.0);
    else if (key == "QUEUESHARE")
        values.layout.queueShare = std::clamp(NumberIn(value), 0.0, 100.0);
    else if (key == "MMAXIMISED")
        values.layout.isMaximised = value == "YES";
    else if (key == "ONEPICTURE")
        values.layout.isOnePicturePerPackage = value == "YES";
    else if (key.starts_with("LASTPACKAGE") && key.size() == 12 && IsDigit(key.back()))
        values.LocationProfiles[static_cast<std::size_t>(key.back() - '0')].lastPackage = value;
    else
        return ReadWindowLine(key, value, screen, mainWindow, values.ListWindowGeometry);
    return true;
}

bool IsNamed(const LocationProfile& profile) {
    return !profile.name.empty();
}

void DeriveActiveProfile(SettingsValues& values) {
    auto& profiles = values.LocationProfiles;
    int& current = values.CurrentProfile;
    const int count = static_cast<int>(profiles.size());
    if (current < 0 || current >= count)
        current = 0;
    for (auto& profile : profiles)
        if (!IsNamed(profile))
            profile = {};
    const auto first = static_cast<int>(std::ranges::find_if(profiles, IsNamed) - profiles.begin());
    // A free slot above 0 stays the active one while others are named: a person may have chosen it so.
    if (current > 0 && first == count)
        current = 0;
    if (current == 0 && first < count)
        current = first;
    auto& active = profiles[static_cast<std::size_t>(current)];
    if (!IsNamed(active))
        active.name = UnnamedProfile;
}

// In whatever encoding an editor has saved the file.
Result<std::vector<std::string>> ReadSettingsLines(const FileSystem& files, const std::string& path) {
    auto text = ReadConfigText(files, path);
    if (!text)
        return text.status();
    std::vector<std::string> lines;
    for (auto& line : text->lines)
        lines.push_back(std::move(line.text));
    return lines;
}

// Where the two agree, this run has changed nothing, and what the file has now holds.
void TakeUnchanged(const SettingsValues& kept, const SettingsValues& onDisk, SettingsValues& values) {
    const auto take = [](auto& value, const auto& keptValue, const auto& newValue) {
        if (value == keptValue)
            value = newValue;
    };
    const auto active = static_cast<std::size_t>(values.CurrentProfile);
    for (std::size_t i = 0; i < values.LocationProfiles.size(); ++i) {
        const auto& newProfile = onDisk.LocationProfiles[i];
        if (i == active && !IsNamed(newProfile))
            continue; // the profile in use stays
        for (const auto part :
             {&LocationProfile::name, &LocationProfile::StagingDir, &LocationProfile::HangarDir,
              &LocationProfile::MsfsDir, &LocationProfile::firstPackage, &LocationProfile::lastPackage})
            take(values.LocationProfiles[i].*part, kept.LocationProfiles[i].*part, newProfile.*part);
    }
    if (IsNamed(onDisk.LocationProfiles[active]))
        take(values.CurrentProfile, kept.CurrentProfile, onDisk.CurrentProfile);
    take(values.AskLocationAtStart, kept.AskLocationAtStart, onDisk.AskLocationAtStart);
    take(values.LastZipPath, kept.LastZipPath, onDisk.LastZipPath);
    take(values.lastArchives, kept.lastArchives, onDisk.lastArchives);
    take(values.ListWindowGeometry, kept.ListWindowGeometry, onDisk.ListWindowGeometry);
    take(values.limits.DirMax, kept.limits.DirMax, onDisk.limits.DirMax);
    take(values.limits.FileMax, kept.limits.FileMax, onDisk.limits.FileMax);
    take(values.historyLimits.commands, kept.historyLimits.commands, onDisk.historyLimits.commands);
    take(values.historyLimits.bytes, kept.historyLimits.bytes, onDisk.historyLimits.bytes);
    take(values.isCollectionShown, kept.isCollectionShown, onDisk.isCollectionShown);
    for (const auto part : {&WindowLayout::collectionWidth, &WindowLayout::pictureShare, &WindowLayout::queueShare})
        take(values.layout.*part, kept.layout.*part, onDisk.layout.*part);
    for (const auto part : {&WindowLayout::isMaximised, &WindowLayout::isOnePicturePerPackage})
        take(values.layout.*part, kept.layout.*part, onDisk.layout.*part);
}

bool IsOneStorableLine(std::string_view text) {
    const auto bytes = ToCodePage(text);
    // Some systems store a character that the code page lacks as one that looks like it.
    return text.find_first_of("\r\n") == std::string_view::npos && bytes && FromCodePage(*bytes) == text;
}

void AddGeometry(const WindowGeometry& window, WindowGeometry list, std::vector<std::string>& lines) {
    lines.push_back("MTOP=" + ShortestText(window.top));
    lines.push_back("MLEFT=" + ShortestText(window.left));
    lines.push_back("MHEIGHT=" + ShortestText(window.height));
    lines.push_back("MWIDTH=" + ShortestText(window.width));
    if (list.height < 1000)
        list.height = 4000;
    if (list.width < 2000)
        list.width = 5000;
    lines.push_back("LTOP=" + IntegerText(list.top));
    lines.push_back("LLEFT=" + IntegerText(list.left));
    lines.push_back("LHEIGHT=" + IntegerText(list.height));
    lines.push_back("LWIDTH=" + IntegerText(list.width));
}

std::vector<std::string> Render(const SettingsValues& values, const std::optional<WindowGeometry>& mainWindow) {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < values.LocationProfiles.size(); ++i) {
        const auto& profile = values.LocationProfiles[i];
        if (!IsNamed(profile))
            continue;
        const auto add = [&, number = std::to_string(i)](const char* key, const std::string& value) {
            lines.push_back(key + number + "=" + std::string(Trim(value)));
        };
        add("ALTLOCATION", profile.name);
        add("ALTSTAGINGDIR", profile.StagingDir);
        add("ALTHANGARDIR", profile.HangarDir);
        add("ALTMSFSDIR", profile.MsfsDir);
        add("ALTFIRSTPACKAGE", profile.firstPackage);
    }
    if (values.AskLocationAtStart)
        lines.push_back("LOCATIONASK=YES");
    lines.push_back("LOCATIONLAST=" + std::to_string(values.CurrentProfile));
    // Where the file choice opens is a convenience; a directory that the file cannot hold must not cost the
    // rest.
    lines.push_back("LOCATIONLASTZIP=" + (IsOneStorableLine(values.LastZipPath) ? values.LastZipPath : ""));
    if (mainWindow)
        AddGeometry(*mainWindow, values.ListWindowGeometry, lines);
    if (values.limits.DirMax > WalkLimits{}.DirMax)
        lines.push_back("DIRMAX=" + std::to_string(values.limits.DirMax));
    if (values.limits.FileMax > WalkLimits{}.FileMax)
        lines.push_back("FILEMAX=" + std::to_string(values.limits.FileMax));
    if (values.historyLimits.commands != HistoryLimits{}.commands)
        lines.push_back("HISTORYCOMMANDS=" + std::to_string(values.historyLimits.commands));
    if (values.historyLimits.bytes != HistoryLimits{}.bytes)
        lines.push_back("HISTORYMEGABYTES=" + std::to_string(MegabytesOf(values.historyLimits.bytes)));
    if (values.isCollectionShown)
        lines.push_back(*values.isCollectionShown ? "COLLECTION=YES" : "COLLECTION=NO");
    if (values.layout.collectionWidth > 0)
        lines.push_back("COLLECTIONWIDTH=" + ShortestText(values.layout.collectionWidth));
    if (values.layout.pictureShare > 0)
        lines.push_back("PICTURESHARE=" + ShortestText(values.layout.pictureShare));
    if (values.layout.queueShare > 0)
        lines.push_back("QUEUESHARE=" + ShortestText(values.layout.queueShare));
    if (values.layout.isMaximised)
        lines.emplace_back("MMAXIMISED=YES");
    if (values.layout.isOnePicturePerPackage)
        lines.emplace_back("ONEPICTURE=YES");
    for (std::size_t i = 0; i < values.LocationProfiles.size(); ++i)
        if (const auto& profile = values.LocationProfiles[i]; IsNamed(profile) && profile.firstPackage.empty() &&
                                                              !profile.lastPackage.empty() &&
                                                              IsOneStorableLine(profile.lastPackage))
            lines.push_back("LASTPACKAGE" + std::to_string(i) + "=" + profile.lastPackage);
    for (std::size_t i = 0; i < values.lastArchives.size(); ++i)
        if (IsOneStorableLine(values.lastArchives[i]))
            lines.push_back("LASTZIP" + std::to_string(i) + "=" + values.lastArchives[i]);
    return lines;
}

} // namespace

Result<bool> LoadSettings(const FileSystem& files, const ScreenSize& screen, Settings& settings) {
    const auto lines = ReadSettingsLines(files, settings.AppDir + std::string(SettingsFileName));
    if (!lines && lines.fault() != FileFault::NotFound)
        return lines.status();
    if (lines)
        for (const auto& line : *lines)
            ReadLine(line, screen, settings, settings.mainWindow);
    DeriveActiveProfile(settings);
    const auto& active = settings.ActiveProfile();
    settings.locations = {active.StagingDir, active.HangarDir, active.MsfsDir};
    settings.kept = settings;
    return static_cast<bool>(lines);
}

std::string Settings::ProfileToName() const {
    const auto& name = LocationProfiles.at(static_cast<std::size_t>(CurrentProfile)).name;
    return std::ranges::count_if(LocationProfiles, IsNamed) > 1 || name != UnnamedProfile ? name : "";
}

void Settings::NoteArchive(const std::string& path) {
    std::erase_if(lastArchives, [&](const std::string& other) { return EqualNoCase(other, path); });
    lastArchives.insert(lastArchives.begin(), path);
    lastArchives.resize(std::min(lastArchives.size(), MostLastArchives));
}

bool SettingsCanHold(std::string_view text) {
    return IsOneStorableLine(text) && Trim(text) == text;
}

Status SaveSettings(FileSystem& files, Settings& settings, const std::optional<WindowGeometry>& mainWindow) {
    const auto& locations = settings.locations;
    if (locations.StagingDir.empty() || locations.HangarDir.empty() || locations.MsfsDir.empty())
        return {};
    const auto path = settings.AppDir + std::string(SettingsFileName);
    const auto lines = ReadSettingsLines(files, path);
    if (!lines && lines.fault() != FileFault::NotFound)
        return lines.status();

    SettingsValues values = settings, onDisk;
    std::vector<std::string> others;
    if (lines) {
        SavedGeometry ignored;
        for (const auto& line : *lines)
            if (!ReadLine(line, {}, onDisk, ignored) && !Trim(line).empty() && IsOneStorableLine(line))
                others.push_back(line);
        // A file that names no profile was lost, not edited.
        if (std::ranges::any_of(onDisk.LocationProfiles, IsNamed)) {
            DeriveActiveProfile(onDisk);
            TakeUnchanged(settings.kept, onDisk, values);
        }
    }
    auto written = Render(values, mainWindow);
    if (!std::ranges::all_of(written, IsOneStorableLine))
        return {FileFault::BadName, path, 0};
    written.insert(written.end(), others.begin(), others.end());
    const auto status = RewriteLines(files, locations, path, written);
    if (status)
        settings.kept = settings;
    return status;
}

} // namespace korvadex
