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

bool CanBePackageName(std::string_view name) {
    return IsStorableName(name) && !IsOwnName(name) && !IsFileManagersDirectory(name);
}

std::string NameFromTitle(std::string_view title) {
    title = Trim(title);
    if (title.starts_with('"'))
        title.remove_prefix(1);
    if (title.ends_with('"'))
        title.remove_suffix(1);
    std::string name = CleanPackageName(title);
    return CanBePackageName(name) ? name : "";
}

namespace {

// The directory of this name, with blanks and "_" taken for the same; "" when there is none but the own one.
std::string FindName(const FileSystem& files, const std::string& parent, const std::string& name,
                     const std::string& ownDirectory) {
    const std::string exact = FindSimAircraftDirectory(files, parent, name); // it may be a link
    if (!exact.empty() && !EqualNoCase(parent + exact, ownDirectory))
        return exact;
    for (const std::string& candidate : SubdirectoryNames(files, parent)) {
        if (EqualNoCase(SpacesToUnderscores(candidate), SpacesToUnderscores(name)) &&
            !EqualNoCase(parent + candidate, ownDirectory))
            return candidate;
    }
    return "";
}

} // namespace

bool CheckPackageName(CommandContext& context, const std::string& name, const std::string& ownDirectory) {
    const std::string& hangar = context.locations.HangarDir;
    for (const auto& category : SubdirectoryNames(context.files, hangar)) {
        const std::string taken = FindName(context.files, hangar + category + "\\", name, ownDirectory);
        if (taken.empty())
            continue;
        std::string text = "Package name already exists in " + category + ".  Please use another name.";
        if (!EqualNoCase(taken, name))
            text += "  (\"" + taken + "\" and \"" + name + "\" are one name in Flight Simulator.)";
        context.user.Tell(text, MessageIcon::Exclamation);
        return false;
    }
    if (FindName(context.files, context.locations.Aircraft(), name, ownDirectory).empty())
        return true;
    return context.user.AskOkCancel(
        "Package name already exists in MSFS.  "
        "This is OK if this package was imported from MSFS because the name has to be the same so that you can "
        "uninstall it.  Otherwise, select Cancel and use another name.");
}

} // namespace korvadex
