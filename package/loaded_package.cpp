#include "package/loaded_package.h"

#include "package/meg.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

const FileEntry* FindByName(const std::vector<FileEntry>& files, std::string_view name) {
    const std::string key = FoldCase(name);
    const auto found = std::find_if(files.begin(), files.end(), [&](const FileEntry& file) { return file.key == key; });
    return found == files.end() ? nullptr : &*found;
}

} // namespace

std::uint64_t LoadedPackage::SizeInBytes() const {
    std::uint64_t bytes = 0;
    for (const auto& file : tree.files)
        bytes += file.info.size;
    return bytes;
}

int LoadedPackage::SizeInMeg() const {
    return static_cast<int>(InMeg(SizeInBytes()));
}

bool LoadedPackage::PackageHasFile(std::string_view name) const {
    return FindByName(tree.files, name) != nullptr;
}

std::string LoadedPackage::FindComponentFile(std::string_view name) const {
    for (const auto& group : ComponentFiles) {
        if (const FileEntry* file = FindByName(group, name))
            return file->path;
    }
    return "";
}

} // namespace korvadex
