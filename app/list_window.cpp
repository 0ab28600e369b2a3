#include "app/list_window.h"

namespace korvadex {

namespace {

std::string DescribeTooLong(const Overview& overview) {
    return "\"" + overview.caption + "\" has " + std::to_string(overview.lines.size()) +
           " lines and is not shown: the list window holds " + std::to_string(MaxOverviewLines) + " at most.";
}

} // namespace

void ListWindow::Show(Overview list) {
    shown = std::move(list);
    window.ShowFileList(shown.caption, shown.lines);
}

std::string ListWindow::ShowOverview(std::string_view caption, const HangarListing& hangar) {
    auto overview = BuildOverview(caption, hangar, files, locations);
    if (!overview)
        return "";
    if (overview->IsTooLong())
        return DescribeTooLong(*overview);
    Show(std::move(*overview));
    return "";
}

std::string ListWindow::RefreshFileList(const HangarListing& hangar) {
    if (!window.IsFileListVisible())
        return "";
    auto overview = BuildOverview(shown.caption, hangar, files, locations);
    if (!overview)
        return "";
    std::string problem;
    if (overview->IsTooLong()) {
        problem = DescribeTooLong(*overview);
        overview->lines.clear(); // what stood there is no longer true
    }
    if (overview->lines != shown.lines)
        Show(std::move(*overview));
    return problem;
}

std::optional<ListLine> ListWindow::Choose(int row) const {
    if (row < 0 || row >= std::ssize(shown.lines))
        return std::nullopt;
    const ListLine& line = shown.lines[static_cast<std::size_t>(row)];
    if (line.package == PackageRef{} || (line.IsHeading() && shown.caption != CategoryListCaption))
        return std::nullopt;
    return line;
}

} // namespace korvadex
