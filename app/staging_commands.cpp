// The commands of the Staging side: taking its contents into the Hangar, adding an archive, erasing
// all of it or one kind of component.
#include "app/program.h"
#include "archive/process_zip.h"
#include "package/aircraft_cfg.h"
#include "package/archive_names.h"
#include "package/duplicates.h"
#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/package_name.h"
#include "platform/windows_path.h"
#include "sim/copy_check.h"
#include "sim/copy_package.h"
#include "sim/copy_plan.h"
#include "sim/import.h"

#include <algorithm>
#include <array>

namespace korvadex {

bool Program::IsStagingReady(std::initializer_list<Place> alsoNeeded) {
    if (view.HangarSideShown || !IsShownThere() || !ArePlacesThere(alsoNeeded))
        return false;
    UpdateCaption(); // a name for what is no longer there goes
    view.packageName = CleanPackageName(view.packageName);
    ShowView(); // the user sees the name that will be used
    return true;
}

void Program::RunStagingCommand(const std::string& name, std::initializer_list<Place> alsoNeeded,
                                const std::function<void()>& command) {
    Run(Titled(name), [&] {
        LetStop();
        if (!IsStagingReady(alsoNeeded))
            return;
        SetSubject(view.packageName);
        command();
    });
}

void Program::CopyStagingToHangar() {
    bool isCleared = false;
    RunStagingCommand("Copy to Hangar", {Place::Hangar, Place::Simulator}, [&] { isCleared = CopyToHangar(); });
    if (isCleared && !queue.Entries().empty())
        TakeNextArchive();
}

void Program::ProcessZipIntoStaging() {
    bool isToTake = false;
    Run({"Process ZIP", ""}, [&] {
        EnsureStagingSide();
        if (!IsStagingReady() || !MayAddToStaging())
            return;
        std::vector<QueuedArchive> archives;
        for (const std::string& path : user.ChooseZipFiles("Process ZIP File ...", settings.LastZipPath))
            archives.push_back({path});
        if (archives.size() == 1)
            AddAtOnce(archives.front());
        else
            isToTake = AddOrEnqueue(archives);
    });
    if (isToTake)
        TakeNextArchive();
}

void Program::ProcessLastArchive(int row) {
    auto& archives = settings.lastArchives;
    if (row < 0 || row >= std::ssize(archives))
        return;
    const std::string path = archives[static_cast<std::size_t>(row)];
    bool isThere = false;
    Run([&] {
        const Status found = files.Info(path).status();
        isThere = found.fault == FileFault::None;
        if (isThere)
            return;
        if (found.fault != FileFault::NotFound || !files.IsDirectory(ParentDirectory(path)))
            return user.Tell("The archive " + path + " cannot be read (" + DescribeFault(found) +
                                 ").  Please make sure that its drive and its directory are there and try again.",
                             MessageIcon::Exclamation);
        std::erase(archives, path);
        user.Tell("The archive " + path + " is no longer there.  It was taken off the list of the last archives.",
                  MessageIcon::Exclamation);
    });
    if (isThere)
        OfferArchives({path});
}

void Program::ImportIntoStaging() {
    Run({"Import", ""}, [&] {
        EnsureStagingSide();
        if (IsStagingReady({Place::Simulator}))
            ImportAircraft();
    });
}

void Program::RemoveAllFromStaging() {
    RunStagingCommand("Clear Staging", {}, [&] { EraseStaging(); });
}

void Program::RemovePanelFromStaging() {
    RunStagingCommand("Erase panel", {}, [&] { EraseFromStaging(StagingPart::Panel); });
}

void Program::RemoveAircraftFromStaging() {
    RunStagingCommand("Erase aircraft", {}, [&] { EraseFromStaging(StagingPart::Aircraft); });
}

void Program::RemoveSoundFromStaging() {
    RunStagingCommand("Erase sound", {}, [&] { EraseFromStaging(StagingPart::Sound); });
}

bool Program::CanCopyToHangar(CommandContext& each, const LoadedPackage& loaded, const PackageRef& made,
                              const std::string& ownDirectory) {
    const auto& [category, name] = made;
    const auto refuse = [&](const std::string& text) {
        each.user.Tell(text, MessageIcon::Exclamation);
        return false;
    };
    std::vector<std::string> twins;
    for (const auto& group : loaded.ComponentFiles)
        for (auto& path : FilesOfOneName(group))
            twins.push_back(std::move(path));
    if (!twins.empty())
        return refuse("Staging holds files of one name, which a package cannot.  Nothing was copied.\r\n\r\n" +
                      ListNames(twins) +
                      "\r\n\r\nPlease rename or delete all but one of them and show Staging again (F5).");
    if (name.empty())
        return refuse("Please enter a package name.");
    if (!CanBePackageName(name))
        return refuse("\"" + name + "\" cannot be the name of a package.  Please use another name.");
    if (category.empty())
        return refuse("Please select a package category.");
    if (!files.IsDirectory(settings.locations.HangarDir + category))
        return refuse("The package category " + category + " no longer seems to be in the Hangar.");
    if (!CheckPackageName(each, name, ownDirectory))
        return false;

    struct Warning {
        const char* file;
        const char* text;
    };
    constexpr std::array warnings = {
        Warning{
            "aircraft.cfg",
            "The aircraft.cfg file is missing from the package.  You need this file if this package is an aircraft.  "
            "Are you sure you want to continue?"},
        Warning{"model.cfg",
                "The model.cfg file is missing from the package.  You need this file if this package is an aircraft.  "
                "Are you sure you want to continue?"},
        Warning{"panel.cfg",
                "The panel.cfg file is missing from the package.  "
                "You need this file if this package should contain a panel.  Are you sure you want to continue?"},
        Warning{"sound.cfg", "The sound.cfg file is missing from the package.  "
                             "You need this file if this package is an aircraft and should have sound.  "
                             "Are you sure you want to continue?"}};
    std::string lacking; // all in one, before it is asked about each
    for (const auto& warning : warnings)
        if (!loaded.PackageHasFile(warning.file))
            lacking += std::string(warning.file) + ", ";
    if (loaded.ComponentFiles[Texture].empty())
        lacking += "textures, ";
    if (!lacking.empty() && !unattended)
        each.display.ShowStatus("Missing from this package: " + lacking.substr(0, lacking.size() - 2));
    for (const auto& warning : warnings)
        if (!loaded.PackageHasFile(warning.file) && !each.user.AskOkCancel(warning.text))
            return false;
    return true;
}

bool Program::CopyToHangar() {
    ReloadWhenChanged();
    if (!CheckCopySource(context, package))
        return false;
    if (std::ranges::all_of(package.tree.files, IsProgramFile)) {
        user.Tell("Staging is empty.  There is nothing to copy to the Hangar.", MessageIcon::Exclamation);
        return false;
    }
    if (!IsConfigurationChosen())
        return false;
    view.packageName = CleanPackageName(view.packageName); // the name file may have filled it
    ShowView();
    const PackageRef made{selection.Category(), view.packageName};
    if (!CanCopyToHangar(context, package, made))
        return false;
    SetSubject(made.Text());
    const auto copy = CopyPackageTo(context, package, CopyRoot::Hangar, made.Text());
    if (!copy)
        return false;
    stopsAtStep = false;                            // it is done
    ShowChanges({.hangar = true, .renamed = made}); // what the user will want to see in the Hangar
    if (!user.AskYesNo("Done.\r\n\r\nWould you like to clear the Staging area at this point?"))
        return false;
    EraseStaging(*copy);
    return StagingIsEmpty(files, settings.locations);
}

bool Program::MayAddToStaging() {
    return StagingIsEmpty(files, settings.locations) ||
           user.AskYesNo("Staging currently contains files.  Proceed?  (select 'Yes' if you are adding to a package)");
}

void Program::ImportAircraft() {
    LetStop();
    if (!MayAddToStaging())
        return;
    importedAircraft = ImportFromSim(context, stagedAircraft);
    if (importedAircraft.empty())
        return;
    stagedAircraft = importedAircraft;
    SetSubject(stagedAircraft);
    view.packageName.clear(); // it gives its own
    LoadStagedFiles(ChoiceQuestion::Ask);
}

bool Program::AddArchive(QueuedArchive& archive) {
    LetStop();
    const bool wasEmpty = StagingIsEmpty(files, settings.locations);
    archive.reason.clear();
    if (!archive.part.empty() && !wasEmpty) {
        user.Tell("This is one of several aircraft in an archive.  It can be taken when Staging is empty.",
                  MessageIcon::Exclamation);
        return false;
    }
    SetSubject(LastPathComponent(archive.path));
    const HistoryMark mark = history.Mark();
    const auto unpacked = ProcessZipFile(context, unzip, settings.LastZipPath, archive.path);
    if (!unpacked)
        return false;
    settings.NoteArchive(archive.path);
    const std::string caption = wasEmpty ? KeepOneAircraft(context, *unpacked, archive) : "";
    if (!archive.reason.empty()) {
        std::string text = archive.reason;
        for (const Status& failure : history.TakeBackTo(mark))
            text += "\r\n\r\n" + failure.path + " could not be removed from Staging again (" + DescribeFault(failure) +
                    ").";
        user.Tell(text, MessageIcon::Exclamation);
    }
    LoadStagedFiles(ChoiceQuestion::Ask);
    if (wasEmpty && Trim(view.packageName).empty() && archive.reason.empty())
        ProposeName(NameForArchive(package, caption));
    return archive.reason.empty();
}

// The title of the aircraft, else the name of the archive, which has a directory of its own in Staging.
std::string Program::NameForArchive(const LoadedPackage& loaded, const std::string& caption) const {
    if (!loaded.isChoiceOpen && loaded.aircraftTitle != MultipleTitle)
        if (auto name = NameFromTitle(loaded.aircraftTitle); !name.empty())
            return name;
    if (auto name = NameFromTitle(caption); !name.empty())
        return name;
    constexpr std::string_view mark = "ZIP_";
    for (const auto& name : SubdirectoryNames(files, settings.locations.StagingDir))
        if (name.starts_with(mark))
            return WithoutArchiveEnding(name.substr(mark.size()));
    return "";
}

bool Program::IsConfigurationChosen() {
    if (!package.isChoiceOpen)
        return true;
    LoadStagedFiles(ChoiceQuestion::Ask);
    ShowView();
    if (package.isChoiceOpen)
        user.Tell(DescribeOpenChoice(package) + "  Nothing was copied.", MessageIcon::Exclamation);
    return !package.isChoiceOpen;
}

void Program::EraseStaging(const std::string& copiedTo) {
    // What arrived while the package was copied, or while the user thought about it, is in no package yet; and the
    // package may have gone.
    const auto hasChanged = [&] {
        if (copiedTo.empty())
            return false;
        if (HasChangedOnDisk(files, package)) {
            LoadStagedFiles();
            user.Tell("The Staging directory has changed since the package was copied.  It was not cleared.",
                      MessageIcon::Exclamation);
            return true;
        }
        const auto missing = FirstNotCopied(context, package, CopyRoot::Hangar, copiedTo);
        if (!missing.empty())
            user.Tell("The new package is not complete any more.  Staging was not cleared.\r\n\r\n" + missing +
                          "\r\n\r\nPlease remove it from the Hangar and copy it again, or copy it under another name.",
                      MessageIcon::Exclamation);
        return !missing.empty();
    };
    const auto lasts = [](const DirectoryEntry& entry) { return IsLastingName(entry.name); };
    if (const auto entries = files.List(settings.locations.StagingDir);
        entries && std::ranges::all_of(*entries, lasts)) {
        LoadStagedFiles(); // another program may have emptied it
        user.Tell("Staging is empty already.");
        return;
    }
    if (hasChanged() || !user.AskYesNo("Are you sure you want to erase everything in the staging directory?") ||
        hasChanged())
        return;
    TellDeleted(context, DeleteTree(context, settings.locations.StagingDir));
    LoadStagedFiles();
}

void Program::EraseFromStaging(StagingPart part) {
    if (ErasePartOfStaging(context, part))
        LoadStagedFiles();
}

} // namespace korvadex
