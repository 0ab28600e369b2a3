// The commands of the picture gallery beside the main window.
#include "app/program.h"

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
    const auto& category = selection.Category();
    const auto& hangar = settings.locations.HangarDir;
    const auto notice = isForAll ? gallery.Open("All Packages", hangar)
                                 : gallery.Open(std::string(CategoryPackagesCaption) + category,
                                                category.empty() ? "" : hangar + category + "\\");
    if (!notice)
        return;
    user.Tell("There are no images to show.");
    ShowStatus(*notice);
}

void Program::ChooseGalleryPicture(int row) {
    Run([&] {
        const auto picture = gallery.PictureAt(row);
        if (!picture)
            return;
        bool isFound = SelectPackage(picture->package);
        if (!isFound) {
            RefreshSelection(); // its category may be new
            isFound = SelectPackage(picture->package);
        }
        if (isFound) {
            ShowImage(picture->path);
            window.ComeToFront();
        } else {
            user.Tell("The package you've selected no longer seems to be in the Hangar.", MessageIcon::Exclamation);
        }
    });
}

} // namespace korvadex
