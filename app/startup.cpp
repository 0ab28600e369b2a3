// One run of the program: start-up, the restart after a change of the Hangar location, and the end.
#include "app/default_categories.h"
#include "app/program.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace korvadex {

namespace {

// Tells the next start that the program started it itself: the user has just chosen the locations.
constexpr const char* MarkerName = "LocationChange";

// Of the main window, where the user has not said whether the collection is to stand beside the form.
constexpr double WidthForCollection = 1100 * 15;

constexpr const char* NothingChanged =
    "Nothing was changed.  Please end the other one, or wait until it has ended, and try again.";

std::string AtWork(const std::vector<HeldPlace>& held) {
    return "Another Korvadex is at work here ...\r\n\r\n" + ListHeld(held) + "\r\n\r\n";
}

std::string CutOffIn(const std::vector<HeldPlace>& places) {
    return "Another Korvadex was cut off here, and may have left a command half done ...\r\n\r\n" + ListHeld(places) +
           "\r\n\r\nIt is best to start that one first: it puts in order what it has left.  Do you want to work here "
           "all the same?  (If not, you can look at everything, and nothing is changed.)";
}

} // namespace

bool Program::Start(RunFor giver) {
    runsFor = giver;
    Run([&] { StartUp(); });
    return !isEnded;
}

void Program::StartUp() {
    if (runsFor != RunFor::Looking)
        locks.Take(settings.AppDir, {});
    const auto loaded = LoadSettings(files, window.Screen(), settings);
    if (!loaded) {
        isSaved = true; // what cannot be read is not written over
        user.Tell("The settings file " + settings.AppDir + std::string(SettingsFileName) + " could not be read (" +
                      DescribeFault(loaded.status()) + ").  Korvadex will end so that nothing in it is lost.",
                  MessageIcon::Critical);
        throw ProgramEnd{};
    }
    const bool isFirstRun = !*loaded;
    if (isFirstRun)
        user.Tell(
            "It appears as though this is the first time you are running Korvadex.  "
            "For Korvadex to function properly you need to specify three directories:\r\n\r\n"
            "- Staging directory: A directory where you initially extract/import/copy/move files for a single "
            "aircraft into.\r\n"
            "- Hangar directory: A 'collection' directory where the files from the Staging directory are stored when "
            "you choose to accept them into the Hangar.\r\n"
            "- Microsoft Flight Simulator directory: The directory where Flight Simulator is installed.\r\n\r\nNote:  "
            "The Staging and Hangar directories should initially be empty.  See kxdoc.htm for more info.",
            MessageIcon::Information);
    window.ApplyGeometry(settings.mainWindow);
    window.ApplyListGeometry(settings.ListWindowGeometry);
    window.ApplyLayout(settings.layout);
    const auto geometry = window.Geometry();
    view.isCollectionShown = settings.isCollectionShown.value_or(geometry && geometry->width >= WidthForCollection);
    if (runsFor == RunFor::Looking) {
        OpenHistory();
        RefreshSelection();
        ShowHangarSide(false);
        hasStarted = true;
        return;
    }

    // Nobody is there who would see that a directory which is asked to be made only has its drive away.
    const bool isForCommands = runsFor == RunFor::Commands && !isFirstRun;
    if (isForCommands && !ArePlacesThere({Place::Hangar, Place::Staging}))
        throw ProgramEnd{};
    auto request = RequestLocations(LocationsCaller::StartUp, isFirstRun);
    request.RestartedAfterLocationChange = TakeMarker();
    const auto outcome = ValidateLocations(files, user, dialogs, request, settings);
    if (outcome != LocationsOutcome::Valid)
        throw ProgramEnd{};
    if (runsFor == RunFor::Window)
        EnterPlaces();
    else if (!EnterPlaces(NothingChanged))
        throw ProgramEnd{};
    if (settings != settings.kept)
        KeepSettings();
    if (looksOnly)
        OpenQueue(); // otherwise it is open
    RefreshSelection();
    if (runsFor == RunFor::Window)
        ShowFirstPackage();
    else
        ShowHangarSide(false);
    hasStarted = true;
}

bool Program::EnterPlaces(const std::string& advice) {
    auto others = locks.Take(settings.AppDir, settings.locations);
    if (others.atWork.empty() && !others.cutOff.empty()) {
        looksOnly = true;
        if (!user.AskYesNo(CutOffIn(others.cutOff), MessageIcon::Exclamation, Answer::No))
            return false;
        keepsScratch = true;
        others = locks.Take(settings.AppDir, settings.locations, true);
    }
    if (!others.atWork.empty()) {
        looksOnly = true;
        user.Tell(AtWork(others.atWork) + advice, MessageIcon::Exclamation);
        return false;
    }
    if (looksOnly) {
        looksOnly = false;
        PutInOrder();
        if (looksOnly)
            return EnterPlaces(advice);
    }
    locks.Sign();
    return true;
}

void Program::PutInOrder() {
    OpenHistory();
    if (looksOnly)
        return;
    ClearScratch();
    for (const std::string& directory :
         {settings.AppDir, history.Directory()}) // of the queue, and what was taken of it
        CleanScratchIn(files, directory);
    OpenQueue();
    CreateDefaultCategories();
}

void Program::ClearScratch() {
    if (!std::exchange(keepsScratch, false))
        return CleanScratch(files, settings.locations);
    history.Begin({"Clear up", ""});
    for (const std::string& directory : ScratchDirectories(files, settings.locations))
        if (history.Files().SetScratchAside(directory).fault == FileFault::NotKept) // and may go
            CleanScratchIn(files, ParentDirectory(directory));
    EndJournal();
}

bool Program::MayChange() {
    const bool hasLooked = looksOnly;
    if (!EnterPlaces(NothingChanged))
        return false;
    if (!hasLooked)
        return true;
    // Positions in the lists, and the package itself, may be others by now.
    const auto shown = std::tuple(selection.Package(), package.ref, package.ComponentFiles);
    RefreshSelection();
    LoadShownSide();
    EndJournal(); // of what the loading has settled
    if (shown == std::tuple(selection.Package(), package.ref, package.ComponentFiles))
        return true;
    user.Tell("The other Korvadex has ended.  What is shown has changed since you saw it last, and nothing was done.  "
              "Please look at it and give the command again.",
              MessageIcon::Information);
    return false;
}

bool Program::MayKeepSettings() {
    const auto others = locks.Take(settings.AppDir, settings.locations);
    looksOnly = looksOnly || !others.atWork.empty() || !others.cutOff.empty();
    if (!locks.HasSettings())
        user.Tell(AtWork(others.atWork) + NothingChanged, MessageIcon::Exclamation);
    return locks.HasSettings();
}

bool Program::TakeMarker() {
    const auto marker = settings.AppDir + MarkerName;
    if (!locks.HasSettings() || !files.Info(marker))
        return false;
    DeleteFileForced(files, marker);
    return true;
}

void Program::CreateDefaultCategories() {
    // A category may be a link whose place is away, and a Hangar that cannot be read is not an empty one.
    const auto entries = files.List(settings.locations.HangarDir);
    if (!entries || std::ranges::any_of(*entries, [](const DirectoryEntry& entry) {
            return entry.info.kind != EntryKind::File && !IsOwnName(entry.name);
        }))
        return;
    for (const auto* category : DefaultCategories)
        static_cast<void>(files.CreateDirectory(settings.locations.HangarDir + category));
}

void Program::ShowFirstPackage() {
    auto& first = settings.FirstPackage();
    auto& last = settings.ActiveProfile().lastPackage;
    try {
        if (!first.empty() && SelectPackage(PackageRefOf(first)))
            return;
        if (!first.empty() && IsGone(first))
            first.clear();
        if (first.empty() && !last.empty() && SelectPackage(PackageRefOf(last)))
            return;
        ShowHangarSide(false);
    } catch (const ProgramEnd&) {
        // A package that ends the program when it is loaded must not end every start from now on.
        first.clear();
        last.clear();
        throw;
    }
}

// True when the directories where the package would stand were read, and it is in none of them.
bool Program::IsGone(const std::string& line) const {
    const auto lacks = [&](const std::string& directory, std::string_view name) {
        const auto entries = files.List(directory);
        return entries && std::ranges::none_of(*entries, [&](const DirectoryEntry& entry) {
                   return entry.info.kind != EntryKind::File && EqualNoCase(entry.name, name);
               });
    };
    const auto& root = settings.locations.HangarDir;
    if (const auto bar = line.find('\\'); bar != std::string::npos) {
        const auto category = line.substr(0, bar);
        return lacks(root, category) || lacks(root + category + "\\", line.substr(bar + 1));
    }
    const auto categories = files.List(root);
    return categories && std::ranges::all_of(*categories, [&](const DirectoryEntry& entry) {
               return entry.info.kind == EntryKind::File || lacks(root + entry.name + "\\", line);
           });
}

void Program::Shutdown() {
    if (isEnded || (isRunning && isEndWanted))
        return;
    if (!isRunning)
        return EndRun();
    isEndWanted = true;
    ShowStatus((view.status.empty() ? "" : view.status + "  -  ") +
               "Korvadex ends when this command has come to its end.");
}

bool Program::KeepSettings() {
    const auto status = Save();
    if (!status)
        user.Tell("The settings could not be saved in " + settings.AppDir + std::string(SettingsFileName) + " (" +
                      DescribeFault(status) + ").  Korvadex will try again when it ends.",
                  MessageIcon::Exclamation);
    return bool(status);
}

void Program::EndSession() {
    if (!isRunning)
        return Shutdown();
    isEndWanted = true;
    SaveForSessionEnd();
}

void Program::SaveForSessionEnd() {
    if (!isSaved)
        static_cast<void>(Save());
}

Status Program::Save() {
    if (!locks.HasSettings())
        return {}; // another program keeps its own there
    if (runsFor != RunFor::Window && settings == settings.kept)
        return {};
    if (const auto list = window.ListGeometry())
        settings.ListWindowGeometry = *list;
    settings.layout = window.Layout();
    // Before it was shown, a window that the file has no place for has none worth keeping.
    const bool isPlaced = hasStarted || settings.mainWindow.top;
    // Not a part of what the running command does.
    return SaveSettings(history.Disk(), settings, isPlaced ? window.Geometry() : std::nullopt);
}

void Program::EndRun() {
    isEnded = true;
    if (!isSaved) {
        isSaved = true;
        if (const auto status = Save(); !status)
            user.Tell("The settings could not be saved in " + settings.AppDir + std::string(SettingsFileName) + " (" +
                          DescribeFault(status) + ").  The file is as it was.",
                      MessageIcon::Exclamation);
    }
    locks.GiveUp();
    window.EndProgram();
}

void Program::RestartWith(const Settings& oldSettings) {
    const auto marker = settings.AppDir + MarkerName;
    DeleteFileForced(files, marker);
    static_cast<void>(RewriteLines(files, settings.locations, marker, {MarkerName}));

    // The new instance reads what is saved here. Without that it would come up with the old Hangar.
    if (const auto status = Save(); !status) {
        DeleteFileForced(files, marker);
        settings.locations = oldSettings.locations;
        settings.CurrentProfile = oldSettings.CurrentProfile;
        settings.LocationProfiles = oldSettings.LocationProfiles;
        user.Tell("The settings could not be saved in " + settings.AppDir + std::string(SettingsFileName) + " (" +
                      DescribeFault(status) + ").  The locations stay as they were.",
                  MessageIcon::Exclamation);
        return;
    }
    isSaved = true;
    locks.GiveUp(); // the new one needs them
    if (!launcher.StartProgram(executable))
        user.Tell("Korvadex could not be started again.  Please start it yourself; it will use the new locations.",
                  MessageIcon::Exclamation);
    throw ProgramEnd{};
}

} // namespace korvadex
