// What the main window shows: the side, the categories and packages to choose from, and the package loaded
// from there.
#include "app/program.h"
#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/load_package.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

constexpr std::string_view CategoryMark = " -->  ";

// The import writes one line; a file of this name that is larger came from elsewhere.
constexpr std::uint64_t LargestNameFile = 4096;

std::vector<std::string> NamesIn(const DirectoryList& directories) {
    std::vector<std::string> names;
    for (const auto& path : directories.paths)
        if (auto name = LastPathComponent(path); !IsScratchName(name))
            names.push_back(std::move(name));
    return names;
}

// -1 when no name is equal to it without case.
int IndexOf(const std::vector<std::string>& names, std::string_view name) {
    const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& candidate) {
        return EqualNoCase(WithoutInstalledMarks(candidate), name);
    });
    return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

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

void Program::ShowStagingSide() {
    view.HangarSideShown = false;
    view.header = StagingHeader;
    ClearPackageDisplay();
    ShowView(); // loading may ask: then the user sees what about
    LoadStaging();
}

void Program::LoadShownSide() {
    if (view.HangarSideShown)
        LoadSelectedPackage();
    else
        LoadStaging();
}

void Program::RefreshPackageDisplay() {
    LoadShownSide();
    ShowView();
}

void Program::LoadSelectedPackage() {
    ClearPackageDisplay(); // what was shown before is gone, also when loading ends the program
    const auto path = SelectedPackagePath();
    if (!path.empty())
        LoadPackage(context, path, false, package);
    view.sizeText = SizeText(package);
}

void Program::LoadStaging() {
    ClearPackageDisplay();
    CheckSingleAircraftCfg(context);
    if (LoadPackage(context, settings.locations.StagingDir, true, package).isConfigurationChosen)
        view.packageName.clear();

    const auto nameFile = settings.locations.StagingDir + std::string(ImportNameFile);
    const auto info = files.Info(nameFile);
    if (Trim(view.packageName).empty() && info && info->kind == EntryKind::File &&
        info->size <= LargestNameFile)
        if (const auto lines = ReadLines(files, nameFile); lines && !lines->empty())
            view.packageName = lines->front();
    view.sizeText = SizeText(package);
    UpdateCaption();
}

void Program::ClearPackageDisplay() {
    package = {};
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
    view.caption =
        StagingIsEmpty(files, settings.locations) ? "Korvadex" : "Korvadex     (Staging Contains Files)";
}

// --- choosers

void Program::FillCategories() {
    const auto selected = SelectedCategory();
    const auto directories = CollectDirectories(files, settings.locations.HangarDir, true, settings.limits);
    view.categories = NamesIn(directories);
    categoriesCut = directories.cut;
    view.categoryIndex = selected.empty() ? -1 : IndexOf(view.categories, selected);
    if (view.categoryIndex < 0 && !view.categories.empty())
        view.categoryIndex = 0;
    if (view.categoryIndex < 0 || view.categories[static_cast<std::size_t>(view.categoryIndex)] != selected) {
        view.packageIndex = -1;
        FillPackages();
    }
}

std::vector<std::string> Program::PackagesIn(const std::string& category, ListCut& cut) const {
    const auto directories =
        CollectDirectories(files, settings.locations.HangarDir + category + "\\", true, settings.limits);
    cut = directories.cut;
    auto names = NamesIn(directories);
    for (auto& name : names)
        if (!FindSimAircraftDirectory(files, settings.locations, name).empty())
            name = WithInstalledMarks(name);
    return names;
}

void Program::FillPackages() {
    packagesCut = ListCut::None;
    view.packages =
        view.categoryIndex < 0 ? std::vector<std::string>() : PackagesIn(SelectedCategory(), packagesCut);
}

void Program::RefreshPackageList() {
    const auto selected = CurrentPackageName(*this);
    const int oldIndex = view.packageIndex;
    view.packageIndex = -1; // points into a list that is about to go
    FillPackages();
    if (!selected.empty()) {
        view.packageIndex = IndexOf(view.packages, selected);
        // The package is gone: its neighbour follows, as after a choice of the category.
        if (view.packageIndex < 0 && !view.packages.empty())
            view.packageIndex = oldIndex < static_cast<int>(view.packages.size()) ? oldIndex : 0;
    }
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
    ListCut cut = ListCut::None;
    auto packages = PackagesIn(categoryName, cut);
    const int index = IndexOf(packages, name);
    if (index < 0)
        return false;
    view.categoryIndex = category;
    view.packages = std::move(packages);
    view.packageIndex = index;
    packagesCut = cut;
    ShowHangarSide(true);
    return true;
}

} // namespace korvadex
