// The picture gallery beside the main window.
#include "app/overviews.h"
#include "app/program.h"

#include <utility>

namespace korvadex {

void Program::ShowPhotosByCategory() {
    Run([&] { OpenGallery(false); });
}

void Program::ShowPhotosForAll() {
    Run([&] { OpenGallery(true); });
}

void Program::OpenGallery(bool isForAll) {
    if (!view.HangarSideShown)
        return ShowStatus("The photo galleries show the packages of the Hangar.  Please go to the Hangar side first.");
    const auto category = SelectedCategory();
    GalleryView opened;
    opened.caption = isForAll ? "All Packages" : std::string(CategoryPackagesCaption) + category;
    if (isForAll)
        opened.directory = settings.locations.HangarDir;
    else if (!category.empty()) // a Hangar without categories has no pictures either
        opened.directory = settings.locations.HangarDir + category + "\\";
    FillGallery(opened);
    if (opened.pictures.empty()) {
        user.Tell("There are no images to show.");
        ShowStatus(opened.notice);
        return;
    }
    gallery = std::move(opened);
    form.ShowGallery(gallery);
}

void Program::FillGallery(GalleryView& filled) const {
    Gallery found;
    if (!filled.directory.empty())
        found = CollectGalleryImages(files, settings.locations, filled.directory, settings.limits);
    filled.notice = DescribeGaps(found, settings.limits);
    filled.pictures = std::move(found.pictures);
}

void Program::RefreshGallery() {
    if (!form.IsGalleryVisible())
        return;
    auto now = gallery;
    FillGallery(now);
    if (now == gallery)
        return;
    gallery = std::move(now);
    form.UpdateGallery(gallery);
}

void Program::ChooseGalleryPicture(int row) {
    Run([&] {
        if (row < 0 || row >= static_cast<int>(gallery.pictures.size()))
            return;
        const auto picture = gallery.pictures[static_cast<std::size_t>(row)]; // the gallery may be filled anew
        const auto line = picture.category + "\\" + picture.package;
        bool isFound = SelectPackage(line);
        if (!isFound) {
            FillCategories(); // its category may be new
            isFound = SelectPackage(line);
        }
        if (isFound) {
            ShowImage(picture.path);
            form.ComeToFront();
        } else {
            user.Tell("The package you've selected no longer seems to be in the Hangar.", MessageIcon::Exclamation);
        }
    });
}

} // namespace korvadex
