// One run of the program: start-up, the restart after a change of the Hangar location, and the end.
#include "app/locations_entry.h"
#include "app/program.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

#include <array>

namespace korvadex {

namespace {

// Tells the next start that the program started it itself: the user has just chosen the locations.
constexpr const char* MarkerName = "LocationChange";

constexpr std::array DefaultCategories = {
    "Aircraft - Heavy Jets",  "Aircraft - Heavy Props", "Aircraft - Light Jets", "Aircraft - Light Props",
    "Aircraft - Helicopters", "Aircraft - Military",    "Panels - Heavy Jets",   "Panels - Light Jets",
    "Panels - Heavy Props",   "Panels - Light Props",   "Sounds - Heavy Jets",   "Sounds - Light Jets",
    "Sounds - Heavy Props",   "Sounds - Light Props"};

} // namespace

bool Program::Start() {
    Run([&] { StartUp(); });
    return !isEnded;
}

void Program::StartUp() {
    const auto loaded = LoadSettings(files, form.Screen(), settings);
    if (!loaded) {
        isSaved = true; // what cannot be read is not written over
        user.Tell("The settings file " + settings.AppDir + std::string(SettingsFileName) +
                      " could not be read (" + DescribeFault(loaded.fault()) +
                      ").  Korvadex will end so that nothing in it is lost.",
                  MessageIcon::Critical);
        throw ProgramEnd{};
    }
    const bool isFirstRun = !*loaded;
    if (isFirstRun)
        user.Tell(
            "It appears as though this is the first time you are running Korvadex.  For Korvadex to function "
            "properly you need to specify three directories:\r\n"
            "\r\n"
            "- Staging directory: A directory where you initially extract/import/copy/move files for a "
            "single "
            "aircraft into.\r\n"
            "- Hangar directory: A 'collection' directory where the files from the Staging directory are "
            "stored "
            "when you choose to accept them into the Hangar.\r\n"
            "- Microsoft Flight Simulator directory: The directory where Flight Simulator is installed.\r\n"
            "\r\n"
            "Note:  The Staging and Hangar directories should initially be empty.  See kxdoc.htm for more "
            "info.",
            MessageIcon::Information);
    form.ApplyGeometry(settings.mainWindow);
    form.ApplyListGeometry(settings.ListWindowGeometry);

    const auto outcome = ValidateLocations(files, user, dialogs,
                                           {.caller = LocationsCaller::StartUp,
                                            .showDialog = isFirstRun,
                                            .RestartedAfterLocationChange = TakeMarker()},
                                           settings);
    if (outcome != LocationsOutcome::Valid)
        throw ProgramEnd{};

    CleanScratch(files, settings.locations);
    CleanScratchIn(files, settings.AppDir);
    CreateDefaultCategories();
    FillCategories();
    ShowFirstPackage();
}

bool Program::TakeMarker() {
    const auto marker = settings.AppDir + MarkerName;
    if (!files.Info(marker))
        return false;
    DeleteFileForced(files, marker);
    return true;
}

void Program::CreateDefaultCategories() {
    if (!SubdirectoryNames(files, settings.locations.HangarDir).empty())
        return;
    for (const auto* category : DefaultCategories)
        static_cast<void>(files.CreateDirectory(settings.locations.HangarDir + category));
}

void Program::ShowFirstPackage() {
    auto& stored = settings.LocationProfiles[static_cast<std::size_t>(settings.CurrentProfile)].firstPackage;
    bool isFound = false;
    try {
        isFound = !settings.FirstPackage.empty() && SelectPackage(settings.FirstPackage);
        if (!isFound) {
            settings.FirstPackage.clear();
            stored.clear();
            ShowHangarSide(false);
        }
    } catch (const ProgramEnd&) {
        // A package that ends the program when it is loaded must not end every start from now on.
        stored.clear();
        throw;
    }
}

void Program::Shutdown() {
    if (!isRunning && !isEnded)
        EndRun();
}

Status Program::Save() {
    if (const auto list = form.ListGeometry())
        settings.ListWindowGeometry = *list;
    return SaveSettings(files, settings, form.Geometry());
}

void Program::EndRun() {
    isEnded = true;
    if (!isSaved) {
        isSaved = true;
        if (const auto status = Save(); !status)
            user.Tell("The settings could not be saved in " + settings.AppDir +
                          std::string(SettingsFileName) + " (" + DescribeFault(status.fault) +
                          ").  The file is as it was before this run.",
                      MessageIcon::Exclamation);
    }
    form.EndProgram();
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
        user.Tell("The settings could not be saved in " + settings.AppDir + std::string(SettingsFileName) +
                      " (" + DescribeFault(status.fault) + ").  The locations stay as they were.",
                  MessageIcon::Exclamation);
        return;
    }
    isSaved = true;
    if (!launcher.StartProgram(executable))
        user.Tell(
            "Korvadex could not be started again.  Please start it yourself; it will use the new locations.",
            MessageIcon::Exclamation);
    throw ProgramEnd{};
}

} // namespace korvadex
