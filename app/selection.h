// What the choosers of the main window offer, and what is selected in them: a category, and a package of it.
#pragma once

#include "app/hangar_listing.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

class Selection {
  public:
    Selection(const FileSystem& fileSystem, const Locations& known) : files(fileSystem), locations(known) {}

    const std::vector<std::string>& Categories() const { return categories; }
    int CategoryIndex() const { return categoryIndex; } // -1 for none
    const std::vector<HangarPackage>& Packages() const { return packages; }
    int PackageIndex() const { return packageIndex; } // -1 for none
    const std::string& Category() const;              // "" for none
    // Without a name while no package is selected, without a category while there is none either.
    PackageRef Package() const;
    // The whole Hangar, as it was listed last.
    const HangarListing& Hangar() const { return hangar; }

    // What there is now. A selected category or package stays so by its name; a category that is gone is followed by
    // the first, a package by its neighbour.
    void ReadCategories();
    void ReadPackages();
    void ReadHangar();

    // Positions among what is offered; others change nothing. A package takes the place of that of the other category.
    bool SelectCategory(int index);
    bool SelectPackageAt(int index);
    void SelectNoPackage() { packageIndex = -1; }
    // The package, or without a category the first of that name, whatever its case. False when it is not there: then
    // nothing has changed.
    bool Select(const PackageRef& wanted);
    bool SelectCategory(std::string_view name);

  private:
    void FillPackages();
    void TakePackages(HangarCategory listing);
    bool SelectIn(int category, std::string_view name);

    const FileSystem& files;
    const Locations& locations;
    std::vector<std::string> categories;
    int categoryIndex = -1;
    std::vector<HangarPackage> packages;
    int packageIndex = -1;
    HangarListing hangar;
};

} // namespace korvadex
