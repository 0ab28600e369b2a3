#include "package/pictures.h"

#include "package/classification.h"

#include <algorithm>

namespace korvadex {

bool IsMarkedFirst(const std::string& fileName) {
    return fileName.size() > 5 && fileName.front() == '(' && fileName[fileName.size() - 5] == ')';
}

std::vector<std::string> ListPictures(const std::vector<FileEntry>& images) {
    std::vector<FileEntry> ordered = images;
    std::stable_sort(ordered.begin(), ordered.end(), [](const FileEntry& a, const FileEntry& b) {
        const bool isFirstA = IsMarkedFirst(a.Name()), isFirstB = IsMarkedFirst(b.Name());
        return isFirstA != isFirstB ? isFirstA : a.key < b.key;
    });
    std::vector<std::string> paths;
    for (const auto& picture : ordered)
        paths.push_back(picture.path);
    return paths;
}

std::vector<std::string> PackagePictures(const FileSystem& files, const std::string& packageDirectory,
                                         const WalkLimits& limits) {
    const auto images = packageDirectory + std::string(ComponentGroupNames[Images]);
    const auto info = files.Info(images);
    if (!info || info->kind != EntryKind::Directory)
        return {};
    return ListPictures(CollectGroup(WalkTree(files, images), Images, {}, limits).entries);
}

} // namespace korvadex
