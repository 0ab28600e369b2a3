#include "archive/compression.h"

#include "archive/in_place.h"
#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "package/walk.h"

namespace korvadex {

namespace {

constexpr std::uint64_t BytesPerMeg = 1'024'000;

// The size of the package when nothing in it is packed, in whole Meg.
std::uint64_t UnpackedMeg(const FileSystem& files, const Tree& tree, const std::vector<FileEntry>& packable) {
    std::uint64_t bytes = 0;
    for (const FileEntry& file : tree.files)
        bytes += file.info.size;
    for (const FileEntry& file : packable)
        bytes += UnpackedSize(files, file) - file.info.size;
    return (bytes + BytesPerMeg / 2) / BytesPerMeg;
}

std::vector<std::string> PathsOf(const FileList& list) {
    std::vector<std::string> paths;
    for (const FileEntry& file : list.entries)
        paths.push_back(file.path);
    return paths;
}

} // namespace

bool CompressPackage(CommandContext& context, const std::string& packagePath, bool compress) {
    const Tree tree = WalkTree(context.files, packagePath);
    const FileList passes[] = {CollectFiles(tree, "bmp", FileMode::Extension, context.limits),
                               CollectFiles(tree, "gau", FileMode::Extension, context.limits)};
    std::vector<FileEntry> packable;
    for (const FileList& pass : passes) {
        const ListCut cut = tree.isLevelCut ? ListCut::Level : pass.cut;
        if (cut != ListCut::None) {
            context.user.Tell(packagePath + "\r\n\r\n" + DescribeCut(cut, context.limits) +
                                  "\r\n\r\nNothing was changed.",
                              MessageIcon::Exclamation);
            return false;
        }
        packable.insert(packable.end(), pass.entries.begin(), pass.entries.end());
    }
    const std::uint64_t meg = compress ? UnpackedMeg(context.files, tree, packable) : 0;

    for (const FileList& pass : passes) {
        context.window.ShowProgress(0, static_cast<int>(pass.entries.size()));
        int done = 0;
        const auto step = [&] { context.window.SetProgress(++done); };
        if (compress)
            ZipFilesInPlace(context, PathsOf(pass), step);
        else
            UnzipFilesInPlace(context, PathsOf(pass), step);
    }
    // A marker that cannot be written only costs the words beside the size.
    const std::string marker = packagePath + std::string(CompressionMarkerName);
    if (compress)
        static_cast<void>(RewriteLines(
            context.files, context.locations, marker,
            {std::to_string(meg) + " Meg have been compressed.  All files with .bmp and .gau extentions "
                                   "have been compressed by Korvadex.  Please do not remove this file."}));
    else
        DeleteFileForced(context.files, marker);
    context.window.HideProgress();
    return true;
}

} // namespace korvadex
