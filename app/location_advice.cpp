#include "app/location_advice.h"

#include "package/file_primitives.h"
#include "package/meg.h"
#include "package/walk.h"
#include "platform/windows_path.h"
#include "sim/run_simulator.h"

#include <algorithm>

namespace korvadex {

namespace {

constexpr std::uint64_t LittleSpace = 500 * BytesPerMeg; // some aircraft

LocationWord Trouble(std::string text) {
    return {true, std::move(text)};
}
LocationWord Note(std::string text) {
    return {false, std::move(text)};
}

// The one of these directories in which the path lies; "" for none.
std::string DirectoryAbove(const std::string& path, const std::vector<std::string>& directories) {
    const auto found =
        std::ranges::find_if(directories, [&](const std::string& directory) { return IsAtOrBelow(path, directory); });
    return found == directories.end() ? "" : *found;
}

// Services that synchronise name their directory after themselves, or leave a mark in it.
bool IsSynchronised(const FileSystem& files, const UserPlaces& places, const std::string& path) {
    if (!DirectoryAbove(path, places.synchronised).empty())
        return true;
    constexpr std::string_view names[] = {"OneDrive\\", "Dropbox\\",   "Google Drive\\", "iCloudDrive\\",
                                          "My Drive\\", "Nextcloud\\", "ownCloud\\",     "pCloudDrive\\"};
    for (std::string above = path; !above.empty(); above = ParentDirectory(above)) {
        const auto name = LastPathComponent(above);
        if (StartsWithNoCase(name, "OneDrive - ") ||
            std::ranges::any_of(names, [&](std::string_view known) { return EqualNoCase(name, known); }) ||
            files.Info(above + ".stfolder") || files.Info(above + ".dropbox"))
            return true;
    }
    return false;
}

// "" when new entries can be made in the directory and there is space for them.
std::string TroubleWithGround(const FileSystem& files, const UserPlaces& places, const std::string& directory) {
    const Status writable = places.checkWritable(directory);
    if (writable.fault == FileFault::ReadOnlyDisk)
        return "This disk is in READ ONLY mode.";
    if (writable.fault == FileFault::Denied) {
        const auto programs = WithoutBackslash(LastPathComponent(DirectoryAbove(directory, places.programs)));
        return programs.empty() ? "You may not write there." : "Only administrators may write into " + programs + ".";
    }
    if (!writable)
        return "It cannot be looked at (" + DescribeFault(writable) + ").";
    if (IsSynchronised(files, places, directory))
        return "It is synchronised with other machines, which may lose files.";
    const auto space = files.FreeSpace(directory);
    if (space && *space < LittleSpace)
        return "Only " + std::to_string(*space / BytesPerMeg) + " Meg are free on this disk.";
    return "";
}

class Advice {
  public:
    Advice(const FileSystem& fileSystem, const UserPlaces& userPlaces, const Settings& known, const Locations& typed,
           bool mustBeEmpty)
        : files(fileSystem), places(userPlaces), settings(known), entered(typed), stagingMustBeEmpty(mustBeEmpty),
          conflicts(FindConflicts(files, {Judged(typed.StagingDir), Judged(typed.HangarDir), Judged(typed.MsfsDir)},
                                  settings.AppDir)) {}

    LocationWords OnAll() const {
        return {OnOwn(LocationKind::Staging, entered.StagingDir, "c:\\staging"),
                OnOwn(LocationKind::Hangar, entered.HangarDir, "c:\\hangar"), OnMsfs(entered.MsfsDir)};
    }

  private:
    bool IsOnDrive(const std::string& path) const {
        const auto drives = files.Drives();
        return std::ranges::any_of(drives, [&](const auto& drive) { return StartsWithNoCase(path, drive); });
    }
    // What is no path yet is in nobody's way.
    std::string Judged(const std::string& path) const { return IsLocationPath(path) && IsOnDrive(path) ? path : ""; }

    // "" for a path that could be a location.
    std::string TroubleWithPath(const std::string& path, const std::string& example) const {
        if (!IsDrivePath(path))
            return "Enter a whole path that begins with a drive, such as " + example + ".";
        if (!IsOnDrive(path))
            return "There is no drive " + path.substr(0, 2);
        if (path.size() == 3)
            return "A drive alone is no location.  Enter a directory, such as " + example + ".";
        if (!IsLocationPath(path))
            return "No directory can have such a name.";
        if (!SettingsCanHold(path))
            return "The name has a character that cannot be kept in kx.ini.  Choose a simpler one.";
        return "";
    }

    std::string TroubleWithOthers(LocationKind kind) const {
        for (const auto& [conflict, location, other, otherLocation] : conflicts) {
            const bool isHere = location == kind;
            if (conflict == ConflictKind::Same && (isHere || otherLocation == kind))
                return "The same as the " + (isHere ? other : NameOf(location)) + ".  Choose another.";
            if (conflict == ConflictKind::Inside && isHere)
                return "Inside of the " + other + ".  Choose another.";
            if (conflict == ConflictKind::HoldsProgram && isHere)
                return "The Korvadex program lies in it.  Choose another.";
        }
        return "";
    }

    LocationWord OnOwn(LocationKind kind, const std::string& path, const std::string& example) const {
        if (path.empty())
            return Note("Enter a directory, or press Browse.");
        for (const auto& text : {TroubleWithPath(path, example), TroubleWithOthers(kind)})
            if (!text.empty())
                return Trouble(text);
        const bool isThere = files.IsDirectory(path);
        if (!isThere && files.Info(WithoutBackslash(path)))
            return Trouble("A file of this name stands there.  Choose another name.");
        const auto ground = isThere ? path : ParentDirectory(path);
        if (!files.IsDirectory(ground))
            return Trouble("Not there, and neither is the directory above it.  Make that one first.");
        const bool isStaging = kind == LocationKind::Staging;
        if (isThere && isStaging && (stagingMustBeEmpty || !IsKnownStaging(settings, path)) &&
            !StagingIsEmpty(files, {.StagingDir = path, .HangarDir = "", .MsfsDir = ""}))
            return Trouble("There are files in it.  Choose an empty directory for Staging.");
        if (const auto text = TroubleWithGround(files, places, ground); !text.empty())
            return Trouble(text + "  Choose another.");
        if (const auto msfs = Judged(entered.MsfsDir); !msfs.empty() && IsAtOrBelow(path, msfs))
            return Trouble("Inside of the MSFS installation.  Choose another.");
        if (!isThere)
            return Note("Not there yet.  It will be made.");
        return isStaging ? Note("Good.") : OnHangarThatIsThere(path);
    }

    LocationWord OnHangarThatIsThere(const std::string& path) const {
        const auto entries = files.List(path);
        if (!entries)
            return Trouble("It cannot be read (" + DescribeFault(entries.status()) + ").");
        if (std::ranges::all_of(*entries, [](const DirectoryEntry& entry) { return IsLeftOut(entry); }))
            return Note("Good.  It is empty.");
        if (!IsKnownHangar(settings, path) && std::ranges::any_of(*entries, [](const DirectoryEntry& entry) {
                return entry.info.kind == EntryKind::File && !IsLeftOut(entry);
            }))
            return Trouble("There are files in it.  It does not look like a Hangar.");
        const auto count = SubdirectoryNames(files, path).size();
        return Note("Good.  It holds " + std::to_string(count) + (count == 1 ? " category." : " categories."));
    }

    LocationWord OnMsfs(const std::string& path) const {
        if (path.empty())
            return Note("Enter the directory where Flight Simulator is installed, or press Browse.");
        for (const auto& text : {TroubleWithPath(path, "c:\\fs2002"), TroubleWithOthers(LocationKind::Msfs)})
            if (!text.empty())
                return Trouble(text);
        if (!files.IsDirectory(path))
            return Trouble("There is no such directory.");
        const auto aircraft = path + "aircraft\\";
        if (!files.IsDirectory(aircraft))
            return Trouble("No 'aircraft' directory in it.  Choose where Flight Simulator is installed.");
        if (const auto text = TroubleWithGround(files, places, aircraft); !text.empty())
            return Trouble(text + "  Installing may fail.");
        const auto program = FindSimulatorProgram(files, path);
        return program.empty() ? Trouble("No program of Flight Simulator in it, such as fs2002.exe.")
                               : Note("Good.  It holds " + LastPathComponent(program) + ".");
    }

    const FileSystem& files;
    const UserPlaces& places;
    const Settings& settings;
    const Locations& entered;
    const bool stagingMustBeEmpty;
    const std::vector<LocationConflict> conflicts;
};

} // namespace

LocationWords AdviseOn(const FileSystem& files, const UserPlaces& places, const Settings& settings,
                       const Locations& entered, bool stagingMustBeEmpty) {
    return Advice(files, places, settings, entered, stagingMustBeEmpty).OnAll();
}

bool IsGoodGround(const FileSystem& files, const UserPlaces& places, const std::string& directory) {
    return files.IsDirectory(directory) && TroubleWithGround(files, places, directory).empty();
}

} // namespace korvadex
