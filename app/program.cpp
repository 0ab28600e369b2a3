#include "app/program.h"

#include "app/commands.h"
#include "app/own_files.h"
#include "app/profiles.h"
#include "app/unattended.h"
#include "archive/viewing_copy.h"
#include "media/notes.h"
#include "package/component_files.h"
#include "package/file_primitives.h"
#include "package/opening.h"
#include "package/package_name.h"
#include "package/progress.h"
#include "platform/windows_path.h"
#include "sim/run_simulator.h"
#include "sim/unused_gauges.h"

#include <algorithm>
#include <tuple>

namespace korvadex {

Program::Program(FileSystem& fileSystem, Launcher& programLauncher, UserDialogs& userDialogs,
                 ProgramDialogs& programDialogs, PictureConverter& pictureConverter, MainWindow& mainWindow,
                 std::string appDir, std::string runningExecutable)
    : history(fileSystem, [this](FileSystem&, const std::vector<std::string>& paths,
                                 bool packs) { return RepackFiles(paths, packs); }),
      files(history.Files()), launcher(programLauncher), user(userDialogs), dialogs(programDialogs),
      converter(pictureConverter), window(mainWindow), executable(std::move(runningExecutable)) {
    settings.AppDir = AddBackslash(appDir);
    user.beforeTell = [this] { history.LookAround(); };
}

Program::~Program() {
    user.beforeTell = {};
}

void Program::Run(const CommandTitle& title, const std::function<void()>& command) {
    if (isRunning || isEnded)
        return;
    struct Running {
        bool& flag;
        explicit Running(bool& running) : flag(running) { flag = true; }
        ~Running() { flag = false; }
    } running(isRunning);
    const SubjectScope about(user, title.subject);
    isStopWanted = wasStopped = false;

    try {
        Do(title, command);
        ShowHistoryTexts();
        // What is selected is what is shown, also where a package has gone and its neighbour has followed.
        if (view.HangarSideShown && package.ref != selection.Package())
            LoadSelectedPackage();
        if (isHangarStale) {
            TakeStock();
            if (const auto problem = fileList.RefreshFileList(selection.Hangar()); !problem.empty())
                ShowStatus(problem);
            gallery.Refresh();
        }
        collection.Take(selection.Hangar());
        UpdateCaption();
        UpdateStatusCounts();
        // A list that is not whole is said for as long as it is shown.
        if (view.status.empty())
            view.status = DescribeCut(package.cut, settings.limits);
        window.ShowStatus(view.status);
        ShowView();
        if (isEndWanted)
            EndRun();
    } catch (const ProgramEnd&) {
        EndJournal();
        EndRun();
    }
}

void Program::Do(const CommandTitle& title, const std::function<void()>& command) {
    auto ofStaging = std::tie(view.packageName, view.proposedName, importedAircraft, stagedAircraft);
    const std::tuple<std::string, std::string, std::string, std::string> before = ofStaging;
    stopsAtStep = isUnanswered = false;
    try {
        ShowStatus("");
        followed.clear();
        if (title.name.empty() || MayChange()) {
            if (!title.name.empty())
                history.Begin(title);
            command();
        }
        if (isUnanswered)
            throw Asked{};
        EndJournal();
    } catch (const Stopped& stop) {
        ofStaging = before;
        isUnanswered ? EndUnanswered() : EndStopped(stop);
    } catch (const Asked&) {
        ofStaging = before;
        EndUnanswered();
    } catch (const std::exception& trouble) {
        EndBroken(trouble);
    }
}

CommandTitle Program::Titled(const std::string& name) const {
    if (!view.HangarSideShown)
        return {name, CleanPackageName(view.packageName)};
    return {name, package.ref.IsNone() ? "" : package.ref.Text()};
}

void Program::ShowChanges(const Changes& changes) {
    if (changes.hangar || changes.simulator)
        selection.ReadPackages();
    if (changes.renamed && !changes.renamed->IsNone())
        selection.Select(*changes.renamed);
    if (!changes.staged.empty() && Trim(view.packageName).empty())
        ProposeName(changes.staged);
    // Pictures may have come or gone.
    isHangarStale = isHangarStale || changes.hangar || changes.simulator || (changes.package && view.HangarSideShown);
    if (changes.package) {
        collection.Forget(package.ref);
        LoadShownSide();
    }
    UpdateCaption();
    ShowView();
}

bool Program::ArePlacesThere(std::initializer_list<Place> places) {
    const auto gone = DescribeGone(files, settings.locations, places);
    if (!gone.empty())
        user.Tell(gone + GoneAdvice(), MessageIcon::Exclamation);
    return gone.empty();
}

bool Program::IsShownThere(std::initializer_list<Place> alsoNeeded) {
    if (!view.HangarSideShown)
        return ArePlacesThere({Place::Staging});
    const auto directory = selection.Package().Directory(settings.locations);
    if (directory.empty())
        return true; // each command says so
    auto gone = DescribeGone(files, settings.locations, {Place::Hangar});
    if (gone.empty())
        gone = DescribeGone(files, settings.locations, alsoNeeded);
    if (!gone.empty()) {
        gone += GoneAdvice();
    } else if (const auto listed = files.List(directory).status(); listed.fault == FileFault::NotFound) {
        gone = "The package you've selected no longer seems to be in the Hangar.";
    } else if (!listed) {
        gone = "The directory " + directory + " cannot be read (" + DescribeFault(listed) +
               ").  Please make sure that you may read it and try again.";
    } else {
        return true;
    }
    RefreshSelection();
    LoadShownSide();
    user.Tell(gone, MessageIcon::Exclamation);
    return false;
}

void Program::ShowView() {
    view.categories = selection.Categories();
    view.categoryIndex = selection.CategoryIndex();
    view.packages = selection.Packages();
    view.packageIndex = selection.PackageIndex();
    view.queue = queue.Entries();
    view.present = Present();
    view.lastArchives = settings.lastArchives;
    window.ShowView(view, package);
}

unsigned Program::Present() const {
    const auto isSelected = view.packageIndex >= 0;
    const auto bit = [](Need need, bool isThere) { return isThere ? unsigned(need) : 0u; };
    const bool isInstalled = isSelected && view.packages[static_cast<std::size_t>(view.packageIndex)].isInstalled;
    return bit(NeedsPackage, isSelected) | bit(NeedsInstalled, isInstalled) |
           bit(NeedsNotInstalled, isSelected && !isInstalled) | bit(NeedsShown, isSelected || !view.HangarSideShown) |
           bit(NeedsHangarSide, view.HangarSideShown) | bit(NeedsAnyPackage, !view.isHangarEmpty) |
           bit(NeedsStagedFiles, !view.isStagingEmpty) | bit(NeedsPanelLender, !held.HeldPanelAlias.IsNone()) |
           bit(NeedsSoundLender, !held.HeldSoundAlias.IsNone()) | bit(NeedsQueued, !view.queue.empty());
}

// --- the main window's own controls

void Program::ChooseCategory(int index) {
    Run([&] {
        if (selection.SelectCategory(index) && view.HangarSideShown)
            LoadSelectedPackage();
    });
}

void Program::ChoosePackage(int index) {
    Run([&] {
        if (view.HangarSideShown && selection.SelectPackageAt(index))
            LoadSelectedPackage();
    });
}

void Program::SetPackageName(const std::string& text) {
    if (isRunning)
        return;
    view.packageName = text;
    view.proposedName.clear();
}

void Program::GoToHangar() {
    Run([&] { SwitchToHangar(); });
}

void Program::GoToStaging() {
    Run([&] { ShowStagingSide(); });
}

void Program::Refresh() {
    Run([&] {
        RefreshSelection();
        queue.LookAgain();
        collection.Forget(selection.Package());
        LoadShownSide(ChoiceQuestion::Ask);
    });
}

void Program::LookAgain() {
    if (isRunning || isEnded || !hasStarted)
        return;
    const PackageRef selected = selection.Package();
    const bool isInstalled = !selected.IsNone() && IsInstalled(files, settings.locations, selected);
    bool isOther = isInstalled != bool(view.present & NeedsInstalled) ||
                   StagingIsEmpty(files, settings.locations) != view.isStagingEmpty;
    if (view.isHangarEmpty) {
        TakeStock();
        isOther = isOther || std::ranges::any_of(selection.Hangar(), [](const HangarCategory& category) {
                      return !category.packages.empty();
                  });
    }
    if (!isOther)
        return;
    Run([&, status = view.status] {
        selection.ReadPackages();
        isHangarStale = true;
        ShowStatus(status);
    });
}

void Program::SetFirstPackage() {
    Run(Titled(""), [&] {
        if (package.ref.IsNone()) {
            user.Tell("Please select a package in the Hangar first.");
            return;
        }
        if (!MayKeepSettings() || !IsShownThere())
            return;
        const auto line = package.ref.Text();
        if (!SettingsCanHold(line)) {
            user.Tell("The name of this package has a character that cannot be kept in kx.ini.  "
                      "Please rename the package first.",
                      MessageIcon::Exclamation);
            return;
        }
        settings.FirstPackage() = line;
        if (KeepSettings())
            user.Tell("Done.\r\n\r\nThe " + line + " will be the first package you see when you start Korvadex");
    });
}

std::optional<std::string> Program::ComponentPath(int group, int position) const {
    if (group < 0 || group >= GroupCount)
        return std::nullopt;
    const auto& entries = package.ComponentFiles[static_cast<std::size_t>(group)];
    if (position < 0 || position >= static_cast<int>(entries.size()))
        return std::nullopt;
    return entries[static_cast<std::size_t>(position)].path;
}

void Program::OpenComponent(int group, int position) {
    Run(Titled(""), [&] {
        const auto path = ComponentPath(group, position);
        const auto seen = path && IsShownThere() ? MakeViewingCopy(context, *path) : "";
        if (seen.empty())
            return;
        if (seen != *path)
            ShowStatus("What is opened is an unpacked copy of " + LastPathComponent(seen) +
                       ": changes made to it do not reach the package.");
        OpenComponentFile(context, seen);
    });
}

void Program::ShowComponentInFolder(int group, int position) {
    Run(Titled(""), [&] {
        const auto path = ComponentPath(group, position);
        if (path && IsShownThere())
            ShowInFileManager(context, *path);
    });
}

bool Program::CheckOpenings() {
    if (isEnded || isRunning) // it is asked again
        return isRunning;
    const auto failures = launcher.TakeFailures();
    if (!failures.empty())
        Run([&] {
            for (const auto& failed : failures)
                TellNotOpened(user, failed);
        });
    return launcher.IsWaiting();
}

void Program::DeleteComponents(int group, const std::vector<int>& positions) {
    Run(Titled("Delete files"), [&] {
        if (group >= 0 && group < GroupCount && IsShownThere({Place::Simulator}))
            ShowChanges(DeleteComponentFiles(context, package, group, positions));
    });
}

// --- menus and toolbar

void Program::RunCommand(std::string_view entryOrKey) {
    const auto keys = ToolbarKeys();
    if (entryOrKey.empty() || std::ranges::find(keys, entryOrKey) == keys.end())
        return CommandOfEntry(entryOrKey).routine ? (this->*CommandOfEntry(entryOrKey).routine)() : void();
    if (const Command* command = CommandOfKey(entryOrKey, view.HangarSideShown ? Side::Hangar : Side::Staging))
        (this->*command->routine)();
}

void Program::ShowUnusedGauges() {
    Run({"Unused gauges", ""}, [&] { ListUnusedGauges(context); });
}

void Program::StartSimulator() {
    Run([&] { RunSimulator(context); });
}

void Program::ShowAbout() {
    window.ShowAbout();
}

void Program::ChangeLocations() {
    Run([&] {
        if (!MayKeepSettings())
            return;
        const Settings before = settings;
        const auto outcome =
            ValidateLocations(files, user, dialogs, RequestLocations(LocationsCaller::Menu, true), settings);
        if (outcome == LocationsOutcome::GivenUp)
            throw ProgramEnd{};
        if (outcome == LocationsOutcome::Cancelled)
            return;
        if (settings.locations.HangarDir != before.locations.HangarDir) {
            RestartWith(before);
            return;
        }
        KeepSettings();
        history.SetLocations({settings.locations.HangarDir, settings.locations.StagingDir, settings.locations.MsfsDir});
        const bool hasLooked = looksOnly;
        EnterPlaces();
        if (looksOnly != hasLooked) {
            RefreshSelection();
            LoadShownSide();
        }
        if (settings.locations.MsfsDir != before.locations.MsfsDir)
            ShowChanges({.simulator = true}); // other packages are installed there
        if (settings.locations.StagingDir != before.locations.StagingDir)
            ForgetStaging();
        if (!view.HangarSideShown && settings.locations.StagingDir != before.locations.StagingDir)
            LoadStagedFiles(ChoiceQuestion::Ask); // what is shown is no longer Staging
    });
}

void Program::EditLocationProfiles() {
    Run([&] {
        if (!MayKeepSettings())
            return;
        ProfileEditor profiles(files, user, settings);
        dialogs.ShowLocationProfiles(profiles);
        if (settings != settings.kept)
            KeepSettings();
    });
}

void Program::OpenReadMe() {
    Run([&] { ShowReadMe(); });
}

void Program::OpenHelp(std::string_view chapter) {
    if (!isEnded)
        ShowReadMe(!chapter.empty() ? chapter : view.HangarSideShown ? "window" : "staging");
}

void Program::OpenHelpOnSide() {
    OpenHelp("");
}

void Program::ShowReadMe(std::string_view chapter) {
    for (const auto& directory : {settings.AppDir, DataDirectory(files, executable)}) {
        const auto page = directory + std::string(ReadMePage);
        if (files.Info(page)) {
            // Not a part of what the running command does.
            if (!IsStarted(launcher.OpenDocument(PageAt(history.Disk(), settings.AppDir, page, chapter))))
                user.Tell("No program could be started for the read-me page " + page +
                              ".  Please open it in a web browser.",
                          MessageIcon::Exclamation);
            return;
        }
    }
    user.Tell("The read-me page " + settings.AppDir + "kxdoc.htm does not exist.", MessageIcon::Exclamation);
}

LocationsRequest Program::RequestLocations(LocationsCaller caller, bool showDialog) {
    return {.caller = caller,
            .showDialog = showDialog,
            .openReadMe = [this] { ShowReadMe("start"); },
            .checkOpenings =
                [this] {
                    for (const auto& failed : launcher.TakeFailures())
                        TellNotOpened(user, failed);
                    return launcher.IsWaiting();
                }};
}

// --- where commands show what they do

void Program::ShowProgress(int minimum, int maximum) {
    if (CanStop())
        window.OfferStop(true);
    window.ShowProgress(minimum, maximum);
    HeedStop();
}

void Program::SetProgress(int value) {
    window.SetProgress(value);
    HeedStop();
}

void Program::HideProgress() {
    window.HideProgress();
    if (CanStop())
        window.OfferStop(false);
}

void Program::HeedStop() const {
    if (isStopWanted && CanStop())
        throw Stopped{};
}

void Program::ShowStatus(const std::string& text) {
    view.status = text;
    window.ShowStatus(text);
}

void Program::NoteMissingGauges(const std::string& name, const std::vector<std::string>& missing) {
    collection.NoteMissingGauges(name, missing);
}

void Program::ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) {
    fileList.Show({caption, lines});
}

} // namespace korvadex
