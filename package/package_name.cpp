#include "package/package_name.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"

namespace korvadex {

std::string CleanPackageName(std::string_view typed) {
    std::string name(typed);
    for (char& c : name) {
        if (c == '"')
            c = '\'';
        else if (std::string_view("\\/:?<>|*.").find(c) != std::string_view::npos)
            c = '_';
    }
    return std::string(Trim(name));
}

std::string NameFromTitle(std::string_view title) {
    title = Trim(title);
    if (title.starts_with('"'))
        title.remove_prefix(1);
    if (title.ends_with('"'))
        title.remove_suffix(1);
    std::string name = CleanPackageName(title);
    return IsStorableName(name) && !IsScratchName(name) ? name : "";
}

bool CheckPackageName(CommandContext& context, const std::string& name) {
    const std::string& hangar = context.locations.HangarDir;
    for (const auto& category : SubdirectoryNames(context.files, hangar)) {
        if (HasSubdirectory(context.files, hangar + category + "\\", name)) {
            context.user.Tell("Package name already exists in " + category + ".  Please use another name.",
                              MessageIcon::Exclamation);
            return false;
        }
    }
    if (FindSimAircraftDirectory(context.files, context.locations, name).empty())
        return true;
    return context.user.AskOkCancel(
        "Package name already exists in MSFS.  This is OK if this package was imported from MSFS because the "
        "name has "
        "to be the same so that you can uninstall it.  Otherwise, select Cancel and use another name.");
}

} // namespace korvadex
