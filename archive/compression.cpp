#include "archive/compression.h"

#include "archive/in_place.h"
#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/meg.h"
#include "package/progress.h"
#include "package/scratch.h"
#include "package/walk.h"

#include <algorithm>

namespace korvadex {

namespace {

// The size of the package when nothing in it is packed, in whole Meg.
std::uint64_t UnpackedMeg(const FileSystem& files, const Tree& tree, const std::vector<FileEntry>& packable) {
    std::uint64_t bytes = 0;
    for (const FileEntry& file : tree.files)
        bytes += file.info.size;
    for (const FileEntry& file : packable)
        bytes += UnpackedSize(files, file) - file.info.size;
    return InMeg(bytes);
}

// The bitmaps and gauges; cut says when there are more than a limit allows.
std::vector<FileEntry> Packable(const Tree& tree, const WalkLimits& limits, ListCut& cut) {
    std::vector<FileEntry> packable;
    cut = tree.isLevelCut ? ListCut::Level : ListCut::None;
    for (const char* extension : {"bmp", "gau"}) {
        const FileList list = CollectFiles(tree, extension, FileMode::Extension, limits);
        cut = cut == ListCut::None ? list.cut : cut;
        packable.insert(packable.end(), list.entries.begin(), list.entries.end());
    }
    return packable;
}

std::vector<std::string> PathsOf(const std::vector<FileEntry>& files) {
    std::vector<std::string> paths;
    std::ranges::transform(files, std::back_inserter(paths), &FileEntry::path);
    return paths;
}

// The marker says what is packed: it stands while anything is.
void UpdateMarker(CommandContext& context, const std::string& packagePath, std::uint64_t meg, bool isPacked) {
    const std::string marker = packagePath + std::string(CompressionMarkerName);
    // A marker that cannot be written only costs the words beside the size.
    if (isPacked)
        static_cast<void>(RewriteLines(context.files, context.locations, marker,
                                       {std::to_string(meg) +
                                        " Meg have been compressed.  "
                                        "All files with .bmp and .gau extentions have been compressed by Korvadex.  "
                                        "Please do not remove this file."}));
    else
        DeleteFileForced(context.files, marker);
}

} // namespace

Compression::Compression(CommandContext& commandContext, bool compress, std::vector<std::string> packagePaths)
    : isCompressing(compress), context(commandContext), packages(std::move(packagePaths)),
      work(context, compress ? MakePacking() : MakeUnpacking(), packages.size(),
           [this](std::size_t package) { return Foresee(packages[package]); }) {}

// None where nothing seems to be left to do.
std::vector<std::string> Compression::Foresee(const std::string& packagePath) const {
    ListCut cut = ListCut::None;
    const std::vector<FileEntry> packable = Packable(WalkTree(context.files, packagePath), context.limits, cut);
    const bool isToDo =
        isCompressing
            ? std::ranges::any_of(packable,
                                  [&](const FileEntry& file) { return !BeginsLikeArchive(context.files, file.path); })
            : bool(context.files.Info(packagePath + std::string(CompressionMarkerName)));
    return cut == ListCut::None && isToDo ? PathsOf(packable) : std::vector<std::string>{};
}

std::vector<std::string> Compression::Take(const std::string& packagePath) {
    const Tree tree = WalkTree(context.files, packagePath);
    ListCut cut = ListCut::None;
    const std::vector<FileEntry> packable = Packable(tree, context.limits, cut);
    if (cut != ListCut::None)
        return {packagePath + "\r\n\r\n" + DescribeCut(cut, context.limits) + "\r\n\r\nNothing was changed."};
    const std::uint64_t meg = UnpackedMeg(context.files, tree, packable);

    const std::vector<std::string> paths = PathsOf(packable);
    ProgressBar progress(context.display, static_cast<int>(paths.size()));
    const auto step = [&] { progress.Step(); };
    const auto isPacked = [&](const std::string& path) {
        return ReadPackedMember(context.files, path) != std::nullopt;
    };
    const auto mayBePacked = [&](const std::string& path) {
        return isPacked(path) || !ReadLikeArchive(context.files, path);
    };
    std::vector<FileFailure> failures;
    try {
        const auto turn = std::ranges::find(packages, packagePath) - packages.begin();
        failures = work.Take(static_cast<std::size_t>(turn), paths, step);
    } catch (const Stopped&) {
        const auto packed = std::ranges::count_if(paths, isPacked);
        UpdateMarker(context, packagePath, meg, std::ranges::any_of(paths, mayBePacked));
        throw Stopped{std::to_string(isCompressing ? packed : std::ssize(paths) - packed) + " of its " +
                      std::to_string(paths.size()) + " files are " + (isCompressing ? "compressed" : "decompressed") +
                      " now.  Please give the command again for the others."};
    }
    UpdateMarker(context, packagePath, meg,
                 isCompressing ? failures.size() < paths.size() || paths.empty()
                               : std::ranges::any_of(failures, mayBePacked, &FileFailure::path));
    std::vector<std::string> texts;
    for (const FileFailure& failure : failures)
        texts.push_back(failure.text);
    return texts;
}

std::vector<std::string> CompressPackage(CommandContext& context, const std::string& packagePath, bool compress) {
    return Compression(context, compress, {packagePath}).Take(packagePath);
}

bool HasFilesToPack(CommandContext& context, const std::string& packagePath) {
    ListCut cut = ListCut::None;
    return std::ranges::any_of(Packable(WalkTree(context.files, packagePath), context.limits, cut),
                               [&](const FileEntry& file) { return !ReadPackedMember(context.files, file.path); });
}

} // namespace korvadex
