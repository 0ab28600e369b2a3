// The list window beside the main window: overviews of the collection, and what a click on a line does.
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
        if (view.HangarSideShown && view.categoryIndex >= 0)
            ListOverview(std::string(CategoryPackagesCaption) + SelectedCategory());
    });
}

void Program::ListCategories() {
    Run([&] { ListOverview(CategoryListCaption); });
}

void Program::ListFromMenu(std::string_view caption) {
    if (view.header != HangarHeader)
        SwitchToHangar();
    ListOverview(caption);
}

void Program::ListOverview(std::string_view caption) {
    TakeStock();
    auto overview = BuildOverview(caption, hangar, files, settings.locations.HangarDir);
    if (!overview)
        return;
    if (overview->IsTooLong())
        TellTooLong(*overview);
    else
        ShowLines(std::move(*overview));
}

void Program::RefreshFileList() {
    if (!form.IsFileListVisible())
        return;
    auto overview = BuildOverview(fileList.caption, hangar, files, settings.locations.HangarDir);
    if (!overview)
        return;
    if (overview->IsTooLong()) {
        TellTooLong(*overview);
        overview->lines.clear(); // what stood there is no longer true
    }
    if (overview->lines != fileList.lines)
        ShowLines(std::move(*overview));
}

void Program::TellTooLong(const Overview& overview) {
    ShowStatus("\"" + overview.caption + "\" has " + std::to_string(overview.lines.size()) +
               " lines and is not shown: the list window holds " + std::to_string(MaxOverviewLines) + " at most.");
}

void Program::ShowLines(Overview list) {
    fileList = std::move(list);
    std::vector<std::string> texts;
    for (const auto& line : fileList.lines)
        texts.push_back(line.text);
    form.ShowFileList(fileList.caption, texts);
}

void Program::ShowFileList(const std::string& caption, const std::vector<std::string>& lines) {
    Overview list{caption, {}};
    for (const auto& line : lines)
        list.lines.push_back({line});
    ShowLines(std::move(list));
}

void Program::ChooseFileListLine(int row) {
    Run([&] {
        if (row < 0 || row >= static_cast<int>(fileList.lines.size()))
            return;
        const auto& line = fileList.lines[static_cast<std::size_t>(row)];
        const bool isCategory = line.text.find(CategoryMark) != std::string::npos;
        if (line.text.empty() || (isCategory && fileList.caption != CategoryListCaption))
            return;
        if (isCategory) {
            SelectPackage(line.text);
            return;
        }
        // Users of an alias that stand in the simulator are listed with blanks where their names may have
        // "_".
        const auto name = WithoutInstalledMarks(line.text);
        const bool isFound = line.package.empty() ? SelectPackage(name) || SelectPackage(SpacesToUnderscores(name))
                                                  : SelectPackage(line.category + "\\" + line.package);
        if (!isFound)
            user.Tell("The package you've selected no longer seems to be in the Hangar.", MessageIcon::Exclamation);
    });
}

} // namespace korvadex
