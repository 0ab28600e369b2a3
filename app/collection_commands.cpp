// The commands of the collection beside the form: going to a package, and the categories.
#include "app/program.h"
#include "package/file_primitives.h"
#include "platform/windows_path.h"
#include "sim/categories.h"

#include <utility>

namespace korvadex {

void Program::ShowPackage(const PackageRef& wanted) {
    if (view.HangarSideShown && package.ref == wanted)
        return;
    Run([&] {
        if (SelectPackage(wanted))
            return;
        RefreshSelection();
        user.Tell("The package you've selected no longer seems to be in the Hangar.", MessageIcon::Exclamation);
    });
}

void Program::FollowInHangar(const std::string& from, const std::string& to) {
    followed.emplace_back(from, to);
    const auto before = settings.locations.HangarDir + from + "\\";
    if (StartsWithNoCase(openedPath, before)) // it is the same one
        openedPath.replace(0, before.size(), settings.locations.HangarDir + to + "\\");
    for (PackageRef* lender : {&held.HeldPanelAlias, &held.HeldSoundAlias})
        FollowName(*lender, from, to);
    bool isFirst = false;
    for (LocationProfile& profile : settings.LocationProfiles)
        if (EqualNoCase(profile.HangarDir, settings.locations.HangarDir)) {
            FollowName(profile.lastPackage, from, to);
            isFirst = FollowName(profile.firstPackage, from, to) || isFirst;
        }
    if (isFirst)
        KeepSettings();
}

void Program::FollowBack() {
    PackageRef selected = selection.Package();
    const auto names = std::exchange(followed, {});
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        if (files.Info(settings.locations.HangarDir + name->first)) {
            FollowInHangar(name->second, name->first);
            FollowName(selected, name->second, name->first);
        }
    ReadCategories(selected);
}

void Program::ReadCategories(const PackageRef& selected) {
    selection.ReadCategories();
    if (selection.Package() == selected)
        return;
    if (!selected.IsNone())
        selection.Select(selected);
    else if (selection.SelectCategory(selected.category))
        selection.SelectNoPackage();
}

void Program::NewCategory() {
    Run({"New category", ""}, [&] {
        if (!ArePlacesThere({Place::Hangar}))
            return;
        const std::string name = AskCategoryName(context);
        if (name.empty())
            return;
        SetSubject(name);
        if (!MakeCategory(context, name))
            return;
        RefreshSelection();
        ShowStatus("The category " + name + " was made.");
    });
}

void Program::RenameCategory(const std::string& category) {
    Run({"Rename category", category}, [&] {
        if (!ArePlacesThere({Place::Hangar}))
            return;
        if (!HasSubdirectory(files, settings.locations.HangarDir, category)) {
            RefreshSelection();
            user.Tell("The category " + category + " no longer seems to be in the Hangar.", MessageIcon::Exclamation);
            return;
        }
        const std::string name = AskCategoryName(context, category);
        if (name.empty() || !korvadex::RenameCategory(context, category, name))
            return;
        FollowInHangar(category, name);
        PackageRef selected = selection.Package();
        FollowName(selected, category, name);
        ReadCategories(selected);
        isHangarStale = true;
        ShowStatus("The category " + category + " is called " + name + " now.");
    });
}

void Program::MoveToCategory(const std::string& category) {
    RunHangarCommand("Move", {}, [&] {
        const Changes changes = korvadex::MoveToCategory(context, package.ref, category);
        if (changes.renamed)
            ShowStatus(package.ref.name + " is in " + category + " now.");
        return changes;
    });
}

void Program::ToggleCollection() {
    Run([&] {
        view.isCollectionShown = !view.isCollectionShown;
        settings.isCollectionShown = view.isCollectionShown;
    });
}

bool Program::ReadCollection(std::chrono::milliseconds time) {
    return !isEnded && (isRunning || collection.ReadMore(time));
}

} // namespace korvadex
