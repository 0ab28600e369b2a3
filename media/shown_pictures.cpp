#include "media/shown_pictures.h"

#include "media/picture_names.h"
#include "package/file_primitives.h"
#include "package/pictures.h"
#include "platform/windows_path.h"

#include <vector>

namespace korvadex {

namespace {

constexpr std::size_t ExtensionLength = 4; // ".jpg", ".gif"

struct NameParts {
    std::string base, extension;
};
NameParts Split(const std::string& path) {
    const std::string name = LastPathComponent(path);
    return {name.substr(0, name.size() - ExtensionLength), name.substr(name.size() - ExtensionLength)};
}

void TellNotRenamed(CommandContext& context, const std::string& path, const Status& status) {
    context.user.Tell("The picture " + path + " could not be renamed because " + DescribeFault(status) +
                          ".  Please try again when that is settled.",
                      MessageIcon::Exclamation);
}

} // namespace

int NextImage(const LoadedPackage& package, int index) {
    const int count = static_cast<int>(package.pictures.size());
    return index == 0 ? 0 : index < count ? index + 1 : 1;
}

int PreviousImage(const LoadedPackage& package, int index) {
    const int count = static_cast<int>(package.pictures.size());
    return index == 1 ? count : index == 0 ? 0 : index - 1;
}

std::string ImageAt(const LoadedPackage& package, int index) {
    const auto position = static_cast<std::size_t>(index);
    return index > 0 && position <= package.pictures.size() ? package.pictures[position - 1] : "";
}

bool DeleteImage(CommandContext& context, const std::string& path) {
    const auto asked = context.files.Info(path);
    const bool isStaged = IsAtOrBelow(path, context.locations.StagingDir);
    if (!context.user.AskYesNo("Delete " + LastPathComponent(path) + "?", MessageIcon::None,
                               isStaged ? Answer::Yes : Answer::No))
        return false;
    if (const auto now = context.files.Info(path); now && (!asked || *now != *asked)) {
        context.user.Tell("The picture " + path +
                              " was changed by another program meanwhile.  It was not deleted.  "
                              "Please look at it and delete it again.",
                          MessageIcon::Exclamation);
        return true;
    }
    static_cast<void>(context.files.ClearAttributes(path));
    const Status status = context.files.Delete(path);
    if (!status && status.fault != FileFault::NotFound)
        context.user.Tell("The picture " + path + " could not be deleted because " + DescribeFault(status) +
                              ".  Please try again when that is settled.",
                          MessageIcon::Exclamation);
    return true;
}

void RemoveEmptyImagesDirectory(FileSystem& files, LoadedPackage& package) {
    if (package.isStaging || package.path.empty() || !package.pictures.empty())
        return;
    const auto directory = package.path + std::string(ComponentGroupNames[Images]);
    if (RemoveEmptyDirectory(files, directory))
        std::erase_if(package.tree.directories,
                      [&](const std::string& listed) { return EqualNoCase(listed, directory); });
}

std::optional<std::string> MakeFirstImage(CommandContext& context, const LoadedPackage& package,
                                          const std::string& path) {
    PictureNames names(package);
    for (const auto& picture : package.pictures) {
        if (picture == path || !IsMarkedFirst(LastPathComponent(picture)))
            continue;
        const auto [base, extension] = Split(picture);
        const auto renamed = names.Move(context.files, picture, ParentDirectory(picture), base, extension);
        if (!renamed) {
            TellNotRenamed(context, picture, renamed.status());
            return std::nullopt;
        }
    }
    const auto [base, extension] = Split(path);
    if (IsMarkedFirst(base + extension))
        return path;
    auto marked = ParentDirectory(path) + "(" + base + ")" + extension;
    if (const Status status = context.files.Rename(path, marked); !status) {
        TellNotRenamed(context, path, status);
        return std::nullopt;
    }
    return marked;
}

} // namespace korvadex
