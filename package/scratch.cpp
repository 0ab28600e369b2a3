#include "package/scratch.h"

#include "package/file_primitives.h"
#include "package/walk.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <functional>
#include <random>

namespace korvadex {

namespace {

constexpr int MaxAttempts = 100;

std::string ScratchDirectoryIn(const std::string& directory) {
    return directory + std::string(ScratchDirectoryName) + "\\";
}

Status RewriteThrough(FileSystem& files, const Locations& locations, const std::string& path,
                      const std::function<Status(const std::string& scratch)>& write) {
    const auto scratch = MakeScratchName(files, locations, path);
    if (!scratch)
        return scratch.status();
    const auto before = files.Info(path);
    const bool wasReadOnly = before && before->readOnly;
    if (wasReadOnly)
        static_cast<void>(files.ClearAttributes(path));
    const Status status = write(*scratch);
    if (!status && wasReadOnly)
        static_cast<void>(files.SetReadOnly(path, true));
    ReleaseScratch(files, *scratch);
    return status;
}

} // namespace

Result<std::string> MakeScratchName(FileSystem& files, const Locations& locations, const std::string& target) {
    const std::string parent = ParentDirectory(target);
    const std::string root = locations.RootOf(target);
    const std::string base = root.empty() || !files.SameVolume(root, parent) ? parent : root;
    const std::string directory = ScratchDirectoryIn(base);
    if (const auto made = EnsureDirectory(files, directory); !made)
        return made.status();
    // For people who look at it; where it is long there is no room for it behind the number.
    constexpr std::size_t maxShownName = 200;
    const std::string shown = WithoutBackslash(LastPathComponent(target));
    const std::string name = "~" + (shown.size() > maxShownName ? "" : shown);
    // Another Korvadex may work in the same place, or clear up there: counted names would meet.
    std::random_device random;
    for (int attempt = 0; attempt < MaxAttempts; ++attempt) {
        std::string candidate = directory + std::to_string(random()) + name;
        if (files.Info(candidate).fault() == FileFault::NotFound)
            return candidate;
    }
    return Status{FileFault::Exists, directory, 0};
}

void ReleaseScratch(FileSystem& files, const std::string& scratch) {
    const std::string directory = ParentDirectory(scratch);
    if (!IsScratchName(WithoutBackslash(LastPathComponent(directory))))
        return;
    static_cast<void>(DeleteAll(files, scratch));
    static_cast<void>(files.RemoveDirectory(WithoutBackslash(directory))); // stays while others use it
}

void CleanScratchIn(FileSystem& files, const std::string& directory) {
    static_cast<void>(DeleteAll(files, ScratchDirectoryIn(directory)));
}

std::vector<std::string> ScratchDirectories(const FileSystem& files, const Locations& locations) {
    std::vector<std::string> found;
    const auto look = [&](const std::string& directory) {
        if (auto scratch = ScratchDirectoryIn(directory); files.Info(WithoutBackslash(scratch)))
            found.push_back(std::move(scratch));
    };
    look(locations.StagingDir);
    look(locations.HangarDir);
    look(locations.MsfsDir);
    // Places of the simulator that may lie on a volume of their own.
    for (const char* place : {"aircraft\\", "gauges\\", "sound\\", "effects\\", "modules\\"})
        look(locations.MsfsDir + place);
    for (const auto& category : CollectDirectories(files, locations.HangarDir, true, Unlimited).paths)
        look(category + "\\");
    return found;
}

void CleanScratch(FileSystem& files, const Locations& locations) {
    for (const std::string& directory : ScratchDirectories(files, locations))
        static_cast<void>(DeleteAll(files, directory));
}

Status RewriteBytes(FileSystem& files, const Locations& locations, const std::string& path, std::string_view bytes) {
    return RewriteThrough(files, locations, path,
                          [&](const std::string& scratch) { return WriteBytesWhole(files, path, bytes, scratch); });
}

Status RewriteLines(FileSystem& files, const Locations& locations, const std::string& path,
                    const std::vector<std::string>& lines) {
    return RewriteThrough(files, locations, path,
                          [&](const std::string& scratch) { return WriteLinesWhole(files, path, lines, scratch); });
}

Status ReplaceByCopy(FileSystem& files, const Locations& locations, const std::string& from, const std::string& to) {
    return RewriteThrough(files, locations, to, [&](const std::string& scratch) {
        const Status status = files.Copy(from, scratch);
        return status ? files.Replace(scratch, to) : status;
    });
}

} // namespace korvadex
