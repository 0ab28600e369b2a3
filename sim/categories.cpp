#include "sim/categories.h"

#include "package/file_primitives.h"
#include "package/package_name.h"
#include "platform/windows_path.h"
#include "sim/delete_directory.h"
#include "sim/hangar_package.h"
#include "sim/install_record.h"

namespace korvadex {

namespace {

void TellFailure(CommandContext& context, const std::string& what, const std::string& path, const Status& status) {
    context.user.Tell(what + "\r\n\r\n" + path + "\r\n\r\nThe reason: " + DescribeFault(status) +
                          ".  Nothing was changed.  Please make sure that no other program uses it and that you may "
                          "write in the Hangar, and try again.",
                      MessageIcon::Exclamation);
}

void FollowRecords(CommandContext& context, const std::string& from, const std::string& to) {
    const Status status = FollowInRecords(context, from, to);
    if (!status)
        context.user.Tell("What is in the Hangar now has its new name, but the record of an installation still has the "
                          "old one.\r\n\r\n" +
                              status.path + "\r\n\r\nThe reason: " + DescribeFault(status) +
                              ".  When that package is removed from MSFS, its files will be compared with those in the "
                              "Hangar.",
                          MessageIcon::Exclamation);
}

// Why the package cannot go to the category; "" when it can.
std::string DescribeHindrance(const CommandContext& context, const PackageRef& package, const std::string& category) {
    const std::string& root = context.locations.HangarDir;
    if (!HasSubdirectory(context.files, root, category))
        return "The category " + category +
               " no longer seems to be in the Hangar.  Please press Refresh and choose another one.";
    for (const std::string& place : {package.category, category})
        if (const std::string others = DescribePlaceOfOthers(context, root + place + "\\"); !others.empty())
            return "The package cannot be moved: " + others;
    std::string taken;
    for (const std::string& name : SubdirectoryNames(context.files, root + category + "\\"))
        if (EqualNoCase(SpacesToUnderscores(name), SpacesToUnderscores(package.name)))
            taken = name;
    if (taken.empty() && context.files.Info(root + category + "\\" + package.name).fault() != FileFault::NotFound)
        taken = package.name;
    return taken.empty() ? ""
                         : "The package cannot be moved: " + category + " has \"" + taken +
                               "\" already.  Please rename one of the two first.";
}

} // namespace

std::string DescribeBadCategoryName(const CommandContext& context, const std::string& name, const std::string& own) {
    if (name.empty())
        return "You must enter a category name.";
    if (!CanBePackageName(name))
        return "\"" + name + "\" cannot be the name of a category.  Please use another name.";
    // A change of case alone finds itself.
    if (!EqualNoCase(name, own) &&
        context.files.Info(context.locations.HangarDir + name).fault() != FileFault::NotFound)
        return "Category name already exists in the Hangar.  Please use another name.";
    return "";
}

std::string AskCategoryName(CommandContext& context, const std::string& own) {
    for (std::string typed = own;;) {
        const auto entered = context.user.AskName(
            own.empty() ? "The name of the new category:" : "The new name of the category " + own + ":", typed);
        if (!entered)
            return "";
        const std::string name = CleanPackageName(*entered);
        if (name == own && !own.empty())
            return "";
        const std::string problem = DescribeBadCategoryName(context, name, own);
        if (problem.empty())
            return name;
        context.user.Tell(problem, MessageIcon::Exclamation);
        typed = *entered;
    }
}

bool MakeCategory(CommandContext& context, const std::string& name) {
    const std::string directory = context.locations.HangarDir + name;
    const Status status = context.files.CreateDirectory(directory);
    if (!status)
        TellFailure(context, "The category could not be made.", directory, status);
    return bool(status);
}

bool RenameCategory(CommandContext& context, const std::string& category, const std::string& name) {
    const std::string& root = context.locations.HangarDir;
    const Status status = context.files.Rename(root + category, root + name);
    if (!status)
        TellFailure(context, "The category could not be renamed.", root + category, status);
    else
        FollowRecords(context, category, name);
    return bool(status);
}

Changes MoveToCategory(CommandContext& context, const PackageRef& package, const std::string& category) {
    if (category == package.category)
        return {};
    const auto refuse = [&](const std::string& why) {
        context.user.Tell(why, MessageIcon::Exclamation);
        return Changes{};
    };
    if (const std::string hindrance = DescribeHindrance(context, package, category); !hindrance.empty())
        return refuse(hindrance);
    const PackageRef moved{category, package.name};
    const std::string from = package.Directory(context.locations), to = moved.Directory(context.locations);
    const std::string place = IsLinkedDirectory(context, from) ? OneName(context.files, from) : "";
    const Status status = context.files.Rename(WithoutBackslash(from), WithoutBackslash(to));
    if (status.fault == FileFault::OtherVolume)
        return refuse("The package cannot be moved: " + category +
                      " is on another drive.  Please copy the package to Staging, remove it from the Hangar, and copy "
                      "it to the Hangar again.");
    if (!status) {
        TellFailure(context, "The package could not be moved.", from, status);
        return {};
    }
    if (!place.empty() && OneName(context.files, to) != place &&
        context.files.Rename(WithoutBackslash(to), WithoutBackslash(from)))
        return refuse("The package cannot be moved: it is a link to " + place +
                      ", which would lead elsewhere from there.");
    FollowRecords(context, package.Text(), moved.Text());
    return {.hangar = true, .package = true, .renamed = moved};
}

} // namespace korvadex
