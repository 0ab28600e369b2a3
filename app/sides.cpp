// What the main window shows: the side, the categories and packages to choose from, and the package loaded
// from there.
#include "app/program.h"
#include "package/config_readers.h"
#include "package/duplicates.h"
#include "package/file_primitives.h"
#include "package/package_name.h"
#include "platform/windows_path.h"
#include "sim/gauges.h"

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

} // namespace

// --- sides

void Program::ShowHangarSide(bool preselect) {
    view.HangarSideShown = true;
    view.header = HangarHeader;
    if (!preselect)
        view.packageIndex = -1;
    LoadSelectedPackage();
}

void Program::SwitchToHangar() {
    RefreshSelection();
    ShowHangarSide(true);
}

void Program::EnsureHangarSide() {
    if (view.HangarSideShown)
        return;
    ShowHangarSide(true);
    ShowView();
}

void Program::ShowStagingSide() {
    view.HangarSideShown = false;
    view.header = StagingHeader;
    ClearPackageDisplay();
    ShowView(); // loading may ask: then the user sees what about
    LoadStaging(ChoiceQuestion::Ask);
}

void Program::LoadShownSide(ChoiceQuestion question) {
    const auto shown = ShownImage();
    if (view.HangarSideShown)
        LoadSelectedPackage();
    else
        LoadStaging(question);
    ShowImage(shown); // still the same one
}

void Program::RefreshPackageDisplay() {
    if (isBatch)
        return;                                            // the next package is loaded in its place
    isHangarStale = isHangarStale || view.HangarSideShown; // pictures may have come or gone
    LoadShownSide();
    ShowView();
}

std::vector<std::string> Program::LoadSelectedPackage() {
    ClearPackageDisplay(); // what was shown before is gone, also when loading ends the program
    const auto path = SelectedPackagePath();
    std::vector<std::string> twins;
    if (!path.empty())
        twins = LoadPackage(context, path, false, package).twins;
    if (!twins.empty() && !isBatch)
        StopOnHangarDuplicate(context, twins);
    view.imageIndex = package.pictures.empty() ? 0 : 1;
    view.sizeText = SizeText(package);
    return twins;
}

void Program::LoadStaging(ChoiceQuestion question) {
    ClearPackageDisplay();
    CheckSingleAircraftCfg(context);
    const auto importName = ReadImportName(files, settings.locations); // goes with the choice
    const auto outcome = LoadPackage(context, settings.locations.StagingDir, true, package, question);
    view.imageIndex = package.pictures.empty() ? 0 : 1;
    view.sizeText = SizeText(package);
    UpdateCaption();
    if (outcome.isConfigurationChosen)
        ProposeName(NameFromTitle(package.aircraftTitle));
    if (Trim(view.packageName).empty())
        ProposeName(ReadImportName(files, settings.locations));
    // Imported in an earlier run, and chosen only now.
    if (outcome.isConfigurationChosen && importedAircraft.empty())
        importedAircraft = importName;
    if (importedAircraft.empty() || package.isChoiceOpen)
        return;
    // Now that one panel is left, its gauges are fetched, and Staging is loaded with them.
    ShowView();
    RunImportGaugeStep(context, std::exchange(importedAircraft, ""));
    LoadStaging();
}

void Program::ClearPackageDisplay() {
    package = {};
    view.imageIndex = 0;
    view.sizeText.clear();
    ++view.listRevision;
}

void Program::ReloadWhenChanged() {
    const auto shown = view.HangarSideShown ? SelectedPackagePath() : settings.locations.StagingDir;
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
}

// What was known of its contents is not true of the next.
void Program::ForgetStaging() {
    view.packageName.clear();
    view.proposedName.clear();
    importedAircraft.clear();
    stagedAircraft.clear();
}

// A name that the user has typed stays.
void Program::ProposeName(std::string_view name) {
    if (Trim(view.packageName).empty() || view.packageName == view.proposedName)
        view.proposedName = view.packageName = CleanPackageName(name);
}

void Program::UpdateStatusCounts() {
    const auto isThere = [&](Place place) { return DescribeGone(files, settings.locations, {place}).empty(); };
    const bool isHangarThere = isThere(Place::Hangar);
    view.isHangarEmpty = isHangarThere && std::ranges::all_of(hangar, [](const HangarCategory& category) {
                             return category.packages.empty();
                         });
    view.statusCounts = isHangarThere ? DescribeCounts(hangar, isThere(Place::Simulator)) : "The Hangar is not there";
    view.statusCounts += !isThere(Place::Staging) ? "  -  Staging is not there"
                         : view.isStagingEmpty    ? "  -  Staging is empty"
                                                  : "  -  Staging contains files";
}

// --- choosers

void Program::FillCategories() {
    const auto selected = SelectedCategory();
    view.categories = SubdirectoryNames(files, settings.locations.HangarDir);
    isHangarStale = true;
    view.categoryIndex = selected.empty() ? -1 : IndexOf(view.categories, selected);
    if (view.categoryIndex < 0 && !view.categories.empty())
        view.categoryIndex = 0;
    if (view.categoryIndex < 0 || view.categories[static_cast<std::size_t>(view.categoryIndex)] != selected) {
        view.packageIndex = -1;
        FillPackages();
    }
}

void Program::FillPackages() {
    view.packages.clear();
    if (view.categoryIndex >= 0)
        TakePackages(
            ListCategory(files, settings.locations, SelectedCategory(), SimAircraft(files, settings.locations)));
}

void Program::TakePackages(HangarCategory listing) {
    view.packages.clear();
    for (const auto& listed : listing.packages)
        view.packages.push_back(PackageLine(listed));
    for (auto& category : hangar)
        if (category.name == listing.name)
            category.packages = listing.packages;
}

void Program::TakeStock() {
    hangar = ListHangar(files, settings.locations, view.categories);
    isHangarStale = false;
}

void Program::RefreshPackageList() {
    if (isBatch)
        return; // the list must keep its positions; it is filled anew at the end
    RefreshSelection();
    isHangarStale = true;
    ShowView();
}

void Program::RefreshSelection() {
    const auto selected = CurrentPackageName(*this);
    const int oldIndex = view.packageIndex;
    view.packageIndex = -1; // points into a list that is about to go
    FillPackages();
    if (selected.empty())
        return;
    view.packageIndex = IndexOf(view.packages, selected);
    // The package is gone: its neighbour follows, as after a choice of the category.
    if (view.packageIndex < 0 && !view.packages.empty())
        view.packageIndex = oldIndex < static_cast<int>(view.packages.size()) ? oldIndex : 0;
}

void Program::SelectPackageNamed(const std::string& name) {
    RefreshPackageList();
    view.packageIndex = IndexOf(view.packages, name);
}

void Program::NoteStaged(const std::string& packageName) {
    if (Trim(view.packageName).empty())
        ProposeName(packageName);
    UpdateCaption();
    ShowView();
}

void Program::SelectCategory(int index) {
    if (index < 0 || index >= static_cast<int>(view.categories.size()))
        return;
    const int oldIndex = view.packageIndex;
    view.categoryIndex = index;
    view.packageIndex = -1;
    FillPackages();
    if (!view.packages.empty())
        view.packageIndex = oldIndex >= 0 && oldIndex < static_cast<int>(view.packages.size()) ? oldIndex : 0;
    if (view.HangarSideShown)
        LoadSelectedPackage();
}

std::string Program::SelectedPackagePath() const {
    const auto name = CurrentPackageName(*this);
    return name.empty() ? "" : settings.locations.HangarDir + SelectedCategory() + "\\" + name + "\\";
}

bool Program::SelectPackage(std::string_view line) {
    if (line.starts_with(CategoryMark)) {
        const int category = IndexOf(view.categories, line.substr(CategoryMark.size()));
        if (category < 0)
            return false;
        view.HangarSideShown = true;
        view.header = HangarHeader;
        SelectCategory(category);
        return true;
    }
    if (const auto bar = line.find('\\'); bar != std::string_view::npos)
        return SelectPackageIn(IndexOf(view.categories, line.substr(0, bar)),
                               WithoutInstalledMarks(line.substr(bar + 1)));
    const auto name = WithoutInstalledMarks(line);
    for (int category = 0; category < static_cast<int>(view.categories.size()); ++category)
        if (SelectPackageIn(category, name))
            return true;
    return false;
}

bool Program::SelectPackageIn(int category, std::string_view name) {
    if (category < 0 || !IsStorableName(name))
        return false;
    const auto& categoryName = view.categories[static_cast<std::size_t>(category)];
    if (!HasSubdirectory(files, settings.locations.HangarDir + categoryName + "\\", name))
        return false;
    auto listing = ListCategory(files, settings.locations, categoryName, SimAircraft(files, settings.locations));
    const auto found = std::ranges::find_if(
        listing.packages, [&](const HangarPackage& listed) { return EqualNoCase(listed.name, name); });
    if (found == listing.packages.end())
        return false;
    view.categoryIndex = category;
    view.packageIndex = static_cast<int>(found - listing.packages.begin());
    TakePackages(std::move(listing));
    ShowHangarSide(true);
    return true;
}

} // namespace korvadex
