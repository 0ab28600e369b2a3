#include "archive/replace_batch.h"

#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

Result<std::string> ReplaceBatch::DirectoryFor(const std::string& path) {
    FileSystem& files = context.files;
    std::string base = context.locations.MsfsDir;
    if (!files.SameVolume(base, path)) {
        base = context.locations.RootOf(path);
        if (base.empty() || !files.SameVolume(base, path))
            base = ParentDirectory(path);
    }
    const auto isTaken = [&](const std::string& directory) {
        return std::ranges::any_of(waiting, [&](const Replacement& other) {
            return EqualNoCase(other.from, directory + LastPathComponent(path));
        });
    };
    if (const auto own = directories.find(base); own != directories.end()) {
        if (!isTaken(own->second)) {
            Drop(own->second, path);
            return own->second;
        }
        Commit();
    }
    const auto made = MakeScratchName(files, context.locations, base + "files");
    if (!made)
        return made.status();
    if (const Status status = files.CreateDirectory(*made); !status)
        return status;
    return directories[base] = AddBackslash(*made);
}

void ReplaceBatch::Drop(const std::string& directory, const std::string& path) {
    DeleteFileForced(context.files, directory + LastPathComponent(path));
}

Status ReplaceBatch::Add(const std::string& directory, const std::string& path, const FileInfo& seen) {
    const std::string made = directory + LastPathComponent(path);
    const auto info = context.files.Info(made);
    if (!info)
        return info.status();
    if (Status status = context.files.CopyAttributes(path, made); !status)
        return status;
    context.files.BeginFlush(made);
    waiting.push_back({made, path, seen});
    bytes += info->size;
    return {};
}

void ReplaceBatch::Commit() {
    const auto outcomes = context.files.ReplaceAll(waiting);
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        if (!outcomes[i])
            failures.push_back({outcomes[i].fault, waiting[i].to, outcomes[i].nativeCode});
    }
    Release();
}

void ReplaceBatch::Release() {
    for (const auto& directory : directories)
        ReleaseScratch(context.files, directory.second);
    directories.clear();
    waiting.clear();
    bytes = 0;
}

} // namespace korvadex
