// The commands of the list window beside the main window: overviews of the collection, and what a click on a line does.
#include "app/program.h"
#include "package/file_primitives.h"

namespace korvadex {

void Program::ListAllPackages() {
    Run([&] { ListFromMenu(PackageListCaption); });
}

void Program::ListInstalledPackages() {
    Run([&] { ListFromMenu(InstalledListCaption); });
}

void Program::ListPackagesNoImages() {
    Run([&] { ListFromMenu(NoImagesListCaption); });
}

void Program::ListPackagesInCategory() {
    Run([&] {
        if (view.HangarSideShown && !selection.Category().empty())
            ListOverview(std::string(CategoryPackagesCaption) + selection.Category());
    });
}

void Program::ListCategories() {
    Run([&] { ListOverview(CategoryListCaption); });
}

void Program::ListFromMenu(std::string_view caption) {
    if (!view.HangarSideShown)
        SwitchToHangar();
    ListOverview(caption);
}

void Program::ListOverview(std::string_view caption) {
    TakeStock();
    if (const auto problem = fileList.ShowOverview(caption, selection.Hangar()); !problem.empty())
        ShowStatus(problem);
}

void Program::ChooseFileListLine(int row) {
    Run([&] {
        const auto line = fileList.Choose(row);
        if (!line)
            return;
        if (line->IsHeading()) {
            if (selection.SelectCategory(line->package.category))
                ShowHangarSide(true);
            return;
        }
        // Users of an alias that stand in the simulator are listed with blanks where their names may have "_".
        const auto& wanted = line->package;
        const bool isFound = SelectPackage(wanted) ||
                             (wanted.category.empty() && SelectPackage(PackageRefOf(SpacesToUnderscores(wanted.name))));
        if (!isFound)
            user.Tell("The package you've selected no longer seems to be in the Hangar.", MessageIcon::Exclamation);
    });
}

} // namespace korvadex
