#include "sim/delete_directory.h"

#include "package/file_primitives.h"
#include "package/walk.h"
#include "platform/windows_path.h"
#include "sim/shared_files.h"

namespace korvadex {

bool IsLinkedDirectory(const CommandContext& context, const std::string& directory) {
    const auto info = context.files.Info(WithoutBackslash(directory));
    return info && info->kind == EntryKind::Link;
}

Status DeleteDirectory(CommandContext& context, const std::string& directory, const std::string& last) {
    const std::vector<Status> remaining = DeleteTree(context, directory, last);
    return remaining.empty() ? Status{} : remaining.front();
}

std::string DescribeRemaining(const Status& status) {
    return status.path + " could not be removed (" + DescribeFault(status) + ")";
}

void TellIncompleteRemoval(CommandContext& context, const Status& status) {
    context.user.Tell("The package could not be removed completely.\r\n\r\n" + DescribeRemaining(status) + ".\r\n\r\n" +
                          NextStep(status.fault),
                      MessageIcon::Exclamation);
}

} // namespace korvadex
