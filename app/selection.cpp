#include "app/selection.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <functional>

namespace korvadex {

namespace {

template<class Item>
bool IsPosition(int index, const std::vector<Item>& items) {
    return index >= 0 && index < std::ssize(items);
}

// The item of this name, else the one that differs in case only; -1 when there is none.
template<class Item, class Name>
int IndexOf(const std::vector<Item>& items, std::string_view name, Name nameOf) {
    auto found = std::ranges::find(items, name, nameOf);
    if (found == items.end())
        found = std::ranges::find_if(
            items, [&](const std::string& other) { return EqualNoCase(other, name); }, nameOf);
    return found == items.end() ? -1 : static_cast<int>(found - items.begin());
}

int IndexOf(const std::vector<std::string>& names, std::string_view name) {
    return IndexOf(names, name, std::identity());
}

int IndexOf(const std::vector<HangarPackage>& packages, std::string_view name) {
    return IndexOf(packages, name, &HangarPackage::name);
}

} // namespace

const std::string& Selection::Category() const {
    static const std::string none;
    return categoryIndex < 0 ? none : categories[static_cast<std::size_t>(categoryIndex)];
}

PackageRef Selection::Package() const {
    return {Category(), packageIndex < 0 ? "" : packages[static_cast<std::size_t>(packageIndex)].name};
}

void Selection::ReadCategories() {
    const std::string selected = Category();
    categories = SubdirectoryNames(files, locations.HangarDir);
    categoryIndex = selected.empty() ? -1 : IndexOf(categories, selected);
    if (categoryIndex < 0 && !categories.empty())
        categoryIndex = 0;
    if (Category() != selected)
        packageIndex = -1;
    ReadPackages();
}

void Selection::ReadPackages() {
    const std::string selected = Package().name;
    const int place = packageIndex;
    FillPackages();
    if (selected.empty())
        return;
    packageIndex = IndexOf(packages, selected);
    if (packageIndex < 0 && !packages.empty())
        packageIndex = IsPosition(place, packages) ? place : 0;
}

void Selection::FillPackages() {
    packageIndex = -1; // points into a list that is about to go
    if (categoryIndex < 0)
        packages.clear();
    else
        TakePackages(ListCategory(files, locations, Category(), SimAircraft(files, locations)));
}

void Selection::TakePackages(HangarCategory listing) {
    packages = listing.packages;
    for (HangarCategory& category : hangar) {
        if (category.name == listing.name)
            category.packages = std::move(listing.packages);
    }
}

void Selection::ReadHangar() {
    hangar = ListHangar(files, locations, categories);
}

bool Selection::SelectCategory(int index) {
    if (!IsPosition(index, categories))
        return false;
    const int place = packageIndex;
    categoryIndex = index;
    FillPackages();
    if (!packages.empty())
        packageIndex = IsPosition(place, packages) ? place : 0;
    return true;
}

bool Selection::SelectCategory(std::string_view name) {
    return SelectCategory(IndexOf(categories, name));
}

bool Selection::SelectPackageAt(int index) {
    if (!IsPosition(index, packages))
        return false;
    packageIndex = index;
    return true;
}

bool Selection::Select(const PackageRef& wanted) {
    if (!wanted.category.empty())
        return SelectIn(IndexOf(categories, wanted.category), wanted.name);
    for (int category = 0; IsPosition(category, categories); ++category) {
        if (SelectIn(category, wanted.name))
            return true;
    }
    return false;
}

bool Selection::SelectIn(int category, std::string_view name) {
    if (category < 0)
        return false;
    const std::string& categoryName = categories[static_cast<std::size_t>(category)];
    if (!HasSubdirectory(files, locations.HangarDir + categoryName + "\\", name))
        return false;
    HangarCategory listing = ListCategory(files, locations, categoryName, SimAircraft(files, locations));
    const int index = IndexOf(listing.packages, name);
    if (index < 0)
        return false;
    categoryIndex = category;
    packageIndex = index;
    TakePackages(std::move(listing));
    return true;
}

} // namespace korvadex
