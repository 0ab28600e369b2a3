#include "sim/delete_directory.h"

#include "package/file_primitives.h"
#include "package/walk.h"
#include "platform/windows_path.h"
#include "sim/shared_files.h"

namespace korvadex {

namespace {

Status FirstRemaining(CommandContext& context, const std::string& directory, const std::string& last) {
    const Tree tree = WalkTree(context.files, directory, WalkFor::Deletion);
    if (!tree.unreadable.empty())
        return {FileFault::Denied, tree.unreadable.front()};
    for (const FileEntry& file : tree.files) {
        if (EqualNoCase(file.path, last))
            continue;
        if (Status status = context.files.Delete(file.path); !status)
            return status;
    }
    for (auto path = tree.directories.rbegin(); path != tree.directories.rend(); ++path) {
        if (Status status = context.files.RemoveDirectory(*path); !status)
            return status;
    }
    if (!last.empty() && context.files.Info(last)) {
        if (Status status = context.files.Delete(last); !status)
            return status;
    }
    return context.files.RemoveDirectory(WithoutBackslash(directory));
}

} // namespace

bool IsLinkedDirectory(const CommandContext& context, const std::string& directory) {
    const auto info = context.files.Info(WithoutBackslash(directory));
    return info && info->kind == EntryKind::Link;
}

Status DeleteDirectory(CommandContext& context, const std::string& directory, const std::string& last) {
    const std::string path = WithoutBackslash(directory);
    if (IsLinkedDirectory(context, directory))
        return context.files.Delete(path);
    static_cast<void>(DeleteTree(context, directory, last));
    if (context.files.RemoveDirectory(path))
        return {};
    return FirstRemaining(context, directory, last);
}

std::string DescribeRemaining(const Status& status) {
    return status.path + " could not be removed (" + DescribeFault(status.fault) + ")";
}

void TellIncompleteRemoval(CommandContext& context, const Status& status) {
    context.user.Tell("The package could not be removed completely.\r\n\r\n" + DescribeRemaining(status) + ".\r\n\r\n" +
                          NextStep(status.fault),
                      MessageIcon::Exclamation);
}

} // namespace korvadex
