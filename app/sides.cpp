// What the main window shows: the side, the categories and packages to choose from, and the package loaded
// from there.
#include "app/program.h"
#include "package/config_readers.h"
#include "package/duplicates.h"
#include "package/file_primitives.h"
#include "package/meg.h"
#include "package/package_name.h"
#include "platform/windows_path.h"
#include "sim/gauge_check.h"

#include <algorithm>
#include <utility>

namespace korvadex {

namespace {

// "12 Meg", "12 Meg (compressed)", "12 Meg (30 Meg compressed)"
std::string SizeText(const LoadedPackage& package) {
    if (package.path.empty())
        return "";
    auto text = std::to_string(package.SizeInMeg()) + " Meg";
    if (!package.isCompressed)
        return text;
    if (package.compressionCode.empty() || package.compressionCode == UnknownCompression)
        return text + " (compressed)";
    return text + " (" + package.compressionCode + " Meg compressed)";
}

std::string SizeDetails(const LoadedPackage& package) {
    const auto count = package.tree.files.size();
    return package.path.empty()
               ? ""
               : MegText(package.SizeInBytes()) + " in " + std::to_string(count) + (count == 1 ? " file" : " files");
}

// Those that nobody knows first: they are to be looked at.
int GroupToOpen(const LoadedPackage& package) {
    const auto& groups = package.ComponentFiles;
    const auto first = groups[Unrecognized].empty()
                           ? std::ranges::find_if(groups, [](const auto& files) { return !files.empty(); })
                           : groups.begin() + Unrecognized;
    return first == groups.end() ? -1 : static_cast<int>(first - groups.begin());
}

} // namespace

// --- sides

void Program::ShowHangarSide(bool preselect) {
    view.HangarSideShown = true;
    view.header = HangarHeader;
    if (!preselect)
        selection.SelectNoPackage();
    LoadSelectedPackage();
}

void Program::SwitchToHangar() {
    selection.ReadPackages();
    ShowHangarSide(true);
}

void Program::EnsureHangarSide() {
    if (view.HangarSideShown)
        return;
    ShowHangarSide(true);
    ShowView();
}

void Program::EnsureStagingSide() {
    if (view.HangarSideShown)
        ShowStagingSide();
}

void Program::ShowStagingSide() {
    view.HangarSideShown = false;
    view.header = StagingHeader;
    ClearPackageDisplay();
    ShowView(); // loading may ask: then the user sees what about
    LoadStagedFiles(ChoiceQuestion::Ask);
}

void Program::LoadShownSide(ChoiceQuestion question) {
    const auto shown = ShownImage();
    if (view.HangarSideShown)
        LoadSelectedPackage();
    else
        LoadStagedFiles(question);
    ShowImage(shown); // still the same one
}

void Program::LoadSelectedPackage() {
    ClearPackageDisplay(); // what was shown before is gone, also when loading ends the program
    package.ref = selection.Package();
    if (!package.ref.IsNone()) {
        const SubjectScope about(user, package.ref.Text());
        if (const auto twins = LoadPackage(context, selection.Package(), package,
                                           looksOnly ? ChoiceQuestion::AsItIs : ChoiceQuestion::LeaveOpen)
                                   .twins;
            !twins.empty())
            StopOnHangarDuplicate(context, twins);
    }
    ShowLoaded();
}

void Program::LoadStagedFiles(ChoiceQuestion question) {
    ClearPackageDisplay();
    if (looksOnly) {
        question = ChoiceQuestion::AsItIs;
    } else {
        if (!history.IsRunning()) // looking at it may end in a choice
            history.Begin({ChoiceTitle, CleanPackageName(view.packageName)});
        CheckSingleAircraftCfg(context);
    }
    const auto importName = ReadImportName(files, settings.locations); // goes with the choice
    const auto outcome = LoadStaging(context, package, question);
    ShowLoaded();
    UpdateCaption();
    if (view.isStagingEmpty) // of several aircraft none was kept
        importedAircraft.clear();
    if (outcome.isConfigurationChosen)
        ProposeName(NameFromTitle(package.aircraftTitle));
    if (Trim(view.packageName).empty())
        ProposeName(ReadImportName(files, settings.locations));
    // Imported in an earlier run, and chosen only now.
    if (outcome.isConfigurationChosen && importedAircraft.empty())
        importedAircraft = importName;
    if (importedAircraft.empty() || package.isChoiceOpen || looksOnly)
        return;
    // Now that one panel is left, its gauges are fetched, and Staging is loaded with them.
    ShowView();
    RunImportGaugeStep(context, std::exchange(importedAircraft, ""));
    LoadStagedFiles(ChoiceQuestion::Again);
}

void Program::ShowLoaded() {
    view.imageIndex = package.pictures.empty() ? 0 : 1;
    view.sizeText = SizeText(package);
    view.sizeDetails = SizeDetails(package);
    if (!package.ref.IsNone() && runsFor == RunFor::Window)
        settings.ActiveProfile().lastPackage = package.ref.Text();
    const int group = GroupToOpen(package);
    if (package.path != openedPath || wasOpenedEmpty) {
        view.groupToOpen = group;
        ++view.openRevision;
    }
    openedPath = package.path;
    wasOpenedEmpty = group < 0;
}

void Program::ClearPackageDisplay() {
    package = {};
    view.imageIndex = 0;
    view.sizeText.clear();
    view.sizeDetails.clear();
    ++view.listRevision;
}

void Program::ReloadWhenChanged() {
    const auto shown = view.HangarSideShown ? package.ref.Directory(settings.locations) : settings.locations.StagingDir;
    if (package.path != shown || (!shown.empty() && HasChangedOnDisk(files, package))) {
        LoadShownSide();
        ShowView();
    }
}

void Program::UpdateCaption() {
    const bool wasEmpty = std::exchange(view.isStagingEmpty, StagingIsEmpty(files, settings.locations));
    if (view.isStagingEmpty && !wasEmpty)
        ForgetStaging();
    view.caption = view.isStagingEmpty ? "Korvadex" : "Korvadex     (Staging Contains Files)";
    view.profile = settings.ProfileToName();
}

// What was known of its contents is not true of the next.
void Program::ForgetStaging() {
    view.packageName.clear();
    view.proposedName.clear();
    importedAircraft.clear();
    stagedAircraft.clear();
    archivesInStaging.clear();
}

// A name that the user has typed stays.
void Program::ProposeName(std::string_view name) {
    if (Trim(view.packageName).empty() || view.packageName == view.proposedName)
        view.proposedName = view.packageName = CleanPackageName(name);
}

void Program::UpdateStatusCounts() {
    const auto isThere = [&](Place place) { return DescribeGone(files, settings.locations, {place}).empty(); };
    const bool isHangarThere = isThere(Place::Hangar);
    view.isHangarEmpty = isHangarThere && std::ranges::all_of(selection.Hangar(), [](const HangarCategory& category) {
                             return category.packages.empty();
                         });
    view.statusCounts =
        isHangarThere ? DescribeCounts(selection.Hangar(), isThere(Place::Simulator)) : "The Hangar is not there";
    view.statusCounts += !isThere(Place::Staging) ? "  -  Staging is not there"
                         : view.isStagingEmpty    ? "  -  Staging is empty"
                                                  : "  -  Staging contains files";
    if (looksOnly)
        view.statusCounts += "  -  only to look at";
}

// --- choosers

void Program::TakeStock() {
    selection.ReadHangar();
    collection.LookAgain();
    isHangarStale = false;
}

void Program::RefreshSelection() {
    selection.ReadCategories();
    isHangarStale = true;
    ShowView();
}

bool Program::SelectPackage(const PackageRef& wanted) {
    const bool isThere = selection.Select(wanted);
    if (isThere)
        ShowHangarSide(true);
    return isThere;
}

} // namespace korvadex
