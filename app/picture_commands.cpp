// The pictures of the package that is shown: going through them, taking them out and getting new ones in.
#include "app/program.h"
#include "media/shown_pictures.h"
#include "package/aircraft_cfg.h"
#include "package/file_primitives.h"
#include "package/package_name.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>

namespace korvadex {

std::string Program::ShownImage() const {
    return ImageAt(package, view.imageIndex);
}

void Program::ShowImage(const std::string& path) {
    const auto found =
        std::ranges::find_if(package.pictures, [&](const std::string& listed) { return EqualNoCase(listed, path); });
    if (found != package.pictures.end())
        view.imageIndex = static_cast<int>(found - package.pictures.begin()) + 1;
}

// What is deleted or renamed must be what is seen, and the names that are taken must be known.
bool Program::IsStillThere(const std::string& path) {
    if (path.empty() || !IsShownThere())
        return false;
    ReloadWhenChanged();
    if (ShownImage() == path)
        return true;
    user.Tell("The picture " + path + " is no longer there.", MessageIcon::Exclamation);
    return false;
}

std::string Program::PictureInList(int group, int position) const {
    constexpr std::array kinds = {".jpg", ".jpeg", ".gif", ".bmp", ".png"};
    const auto path = ComponentPath(group, position);
    const auto isOfKind = [&](const char* kind) { return path && EndsWithNoCase(*path, kind); };
    // Bitmaps are what is packed.
    if (std::ranges::none_of(kinds, isOfKind) || (package.isCompressed && isOfKind(".bmp")))
        return "";
    return *path;
}

void Program::ShowNextImage() {
    Run([&] { view.imageIndex = NextImage(package, view.imageIndex); });
}

void Program::ShowPreviousImage() {
    Run([&] { view.imageIndex = PreviousImage(package, view.imageIndex); });
}

void Program::DeleteShownImage() {
    Run(Titled("Delete image"), [&] {
        const auto path = ShownImage();
        if (!IsStillThere(path))
            return;
        const int index = view.imageIndex;
        if (!DeleteImage(context, path))
            return;
        ShowChanges({.package = true});
        RemoveEmptyImagesDirectory(files, package);
        if (ShownImage() != path) // its neighbour follows
            view.imageIndex = std::min(index, static_cast<int>(package.pictures.size()));
    });
}

void Program::MakeShownImageFirst() {
    Run(Titled("Make image first"), [&] {
        const auto path = ShownImage();
        if (!IsStillThere(path))
            return;
        const auto marked = MakeFirstImage(context, package, path);
        ShowChanges({.package = true}); // the gallery has the old names
        if (!marked)
            return;
        ShowImage(*marked);
        ShowView();
        user.Tell("Done.\r\n\r\nThis image will now be the first to be displayed for this package.");
    });
}

// --- getting pictures in

bool Program::CanTakeImages() {
    if (!IsShownThere())
        return false;
    ReloadWhenChanged();
    if (!package.path.empty())
        return true;
    user.Tell("Please select a package first.", MessageIcon::Exclamation);
    return false;
}

// For a picture that has no name of its own.
std::string Program::NameForImage() const {
    auto name = view.HangarSideShown ? package.ref.name : CleanPackageName(view.packageName);
    if (name.empty() && !package.isChoiceOpen && package.aircraftTitle != MultipleTitle)
        name = CleanPackageName(package.aircraftTitle);
    return name.empty() ? "screenshot" : name;
}

void Program::ImportImages(const OfferedPictures& offered) {
    const auto imported = ImportPictures(context, converter, package, offered, NameForImage());
    if (imported.empty())
        return;
    ShowChanges({.package = true});
    ShowImage(imported.front());
    ShowStatus(imported.size() == 1 ? LastPathComponent(imported.front()) + " was imported."
                                    : std::to_string(imported.size()) + " pictures were imported.");
}

void Program::ImportImageFiles() {
    Run(Titled("Import image"), [&] {
        if (!CanTakeImages())
            return;
        const auto chosen = dialogs.ChoosePictures(lastPictureDirectory);
        if (!chosen.files.empty())
            lastPictureDirectory = ParentDirectory(chosen.files.front());
        ImportImages(chosen);
    });
}

void Program::ImportImageClipboard() {
    Run(Titled("Import image"), [&] {
        if (!CanTakeImages())
            return;
        const auto offered = dialogs.ClipboardPictures();
        if (offered.IsEmpty())
            user.Tell("There is no picture on the clipboard.  "
                      "Please copy one first, for example with the Print Screen key, and try again.",
                      MessageIcon::Exclamation);
        else
            ImportImages(offered);
    });
}

void Program::ImportDroppedImages(const OfferedPictures& offered) {
    Run(Titled("Import image"), [&] {
        if (CanTakeImages())
            ImportImages(offered);
    });
}

} // namespace korvadex
