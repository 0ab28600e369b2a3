#include "app/gallery_window.h"

#include "package/file_primitives.h"

#include <utility>

namespace korvadex {

std::optional<std::string> GalleryWindow::Open(const std::string& caption, const std::string& directory) {
    GalleryView opened{.caption = caption, .directory = directory, .notice = "", .pictures = {}};
    Fill(opened);
    if (opened.pictures.empty())
        return opened.notice;
    shown = std::move(opened);
    window.ShowGallery(shown);
    return std::nullopt;
}

void GalleryWindow::Fill(GalleryView& filled) const {
    Gallery found;
    if (!filled.directory.empty()) // a Hangar without categories has no pictures either
        found = CollectGalleryImages(files, locations, filled.directory, limits);
    filled.notice = DescribeGaps(found, limits);
    filled.pictures = std::move(found.pictures);
    const SimAircraft aircraft(files, locations);
    for (GalleryPicture& picture : filled.pictures)
        picture.isInstalled = aircraft.Holds(picture.package.name);
}

void GalleryWindow::Refresh() {
    if (!window.IsGalleryVisible())
        return;
    GalleryView now = shown;
    Fill(now);
    if (now == shown)
        return;
    shown = std::move(now);
    window.UpdateGallery(shown);
}

std::optional<GalleryPicture> GalleryWindow::PictureAt(int row) const {
    if (row < 0 || row >= std::ssize(shown.pictures))
        return std::nullopt;
    return shown.pictures[static_cast<std::size_t>(row)];
}

} // namespace korvadex
