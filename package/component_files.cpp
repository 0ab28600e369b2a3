#include "package/component_files.h"

#include "package/file_primitives.h"
#include "package/name_list.h"
#include "package/opening.h"
#include "platform/windows_path.h"

namespace korvadex {

namespace {

bool IsForEditor(const std::string& path) {
    return EndsWithNoCase(path, ".1st") || EndsWithNoCase(path, ".cfg") || EndsWithNoCase(path, ".diz");
}

} // namespace

void OpenComponentFile(CommandContext& context, const std::string& path) {
    if (IsForEditor(path))
        OpenInEditor(context, path);
    else
        OpenWithItsProgram(context, path);
}

Changes DeleteComponentFiles(CommandContext& context, const LoadedPackage& package, int group,
                             const std::vector<int>& positions) {
    if (IsInstalled(context.files, context.locations, package.ref)) {
        context.user.Tell("This package is currently installed in Flight Simulator.  "
                          "File deletion while the package is installed in MSFS is not allowed.",
                          MessageIcon::Information);
        return {};
    }
    if (positions.empty()) {
        context.user.Tell("Select a file to delete first.", MessageIcon::Exclamation);
        return {};
    }
    if (!context.user.AskYesNo("Are you sure you want to delete the " + std::to_string(positions.size()) +
                                   " files selected?",
                               MessageIcon::None, package.isStaging ? Answer::Yes : Answer::No))
        return {};
    const auto& listed = package.ComponentFiles[static_cast<std::size_t>(group)];
    std::vector<std::string> remaining;
    for (const int position : positions) {
        if (position >= 0 && static_cast<std::size_t>(position) < listed.size())
            remaining.push_back(DeleteListed(context.files, listed[static_cast<std::size_t>(position)]));
    }
    std::erase(remaining, "");
    if (!remaining.empty())
        context.user.Tell("The following files were not deleted ...\r\n\r\n" + ListNames(remaining) +
                              "\r\n\r\nPlease look at them and delete them again.",
                          MessageIcon::Exclamation);
    return {.package = true};
}

} // namespace korvadex
