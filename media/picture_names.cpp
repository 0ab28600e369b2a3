#include "media/picture_names.h"

#include "package/pictures.h"
#include "platform/windows_path.h"

namespace korvadex {

namespace {

std::string OrPlain(std::string base) {
    return Trim(base).empty() ? "picture" : base;
}

} // namespace

PictureNames::PictureNames(const LoadedPackage& package) {
    for (const auto& file : package.tree.files)
        taken.insert(file.key);
}

std::string PictureNames::Free(std::string base, const std::string& extension) const {
    const auto isFree = [&](const std::string& name) { return !taken.contains(FoldCase(name)); };
    while (IsMarkedFirst(base + extension))
        base = base.substr(1, base.size() - 2);
    base = OrPlain(base);
    if (isFree(base + extension))
        return base + extension;
    base.erase(0, base.find_first_not_of('(')); // "(a(1).jpg" would be marked
    base = OrPlain(base);
    for (int number = 1;; ++number)
        if (auto name = NumberedName(base + extension, number); isFree(name))
            return name;
}

Result<std::string> PictureNames::Move(FileSystem& files, const std::string& from, const std::string& directory,
                                       const std::string& base, const std::string& extension) {
    while (true) {
        const auto name = Free(base, extension);
        Status status = files.Rename(from, directory + name);
        if (status.fault != FileFault::Exists && !status)
            return status;
        taken.insert(FoldCase(name)); // now by this file, or by one that came since the package was loaded
        if (status)
            return directory + name;
    }
}

} // namespace korvadex
