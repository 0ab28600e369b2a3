#include "sim/alias_users.h"

#include "package/aircraft_cfg.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

// How the list names the owner of a configuration file: "C:\FS\aircraft\My_Plane\panel\panel.cfg" ->
// "My_Plane"; one that does not lie in a panel or sound directory is named by its path below the root.
std::string OwnerOf(const std::string& path, const std::string& root) {
    if (EndsWithNoCase(path, "\\panel\\panel.cfg") || EndsWithNoCase(path, "\\sound\\sound.cfg")) {
        const std::string owner = ParentDirectory(ParentDirectory(path));
        return WithoutBackslash(LastPathComponent(owner));
    }
    return path.substr(std::min(root.size(), path.size()));
}

ListLine UserLine(const CommandContext& context, const std::string& path, const std::string& root) {
    PackageRef owner{.category = "", .name = OwnerOf(path, root)};
    const bool isInstalled = IsInstalled(context.files, context.locations, owner);
    if (isInstalled)
        owner.name = UnderscoresToSpaces(owner.name);
    return {owner, isInstalled};
}

// True when the line has the text of AliasText in it. Few lines have as much as its ending.
bool Mentions(std::string_view line, std::string_view alias) {
    const std::string_view ending = alias.substr(alias.rfind('\\'));
    for (std::size_t at = line.find(ending); at != std::string_view::npos; at = line.find(ending, at + 1)) {
        const std::size_t end = at + ending.size();
        if (end >= alias.size() && std::ranges::equal(line.substr(end - alias.size(), alias.size()), alias,
                                                      [](char a, char b) { return (a == ' ' ? '_' : a) == b; }))
            return true;
    }
    return false;
}

} // namespace

std::string AliasText(std::string_view packageName, std::string_view kind) {
    return FoldCase(SpacesToUnderscores(packageName)).append("\\").append(kind);
}

AliasUsers FindAliasUsers(CommandContext& context, const std::string& root, std::string_view packageName,
                          const std::string& kind, const std::string& leaveOut) {
    const std::string alias = AliasText(packageName, kind);
    AliasUsers users;
    users.unseen = VisitConfigFiles(
        context, root, {.fileName = kind + ".cfg", .leaveOut = leaveOut},
        [&](const FileEntry& file, const LowerLines& lines) {
            if (std::ranges::any_of(lines, [&](std::string_view line) { return Mentions(line, alias); }))
                users.paths.push_back(file.path);
        });
    return users;
}

void ShowAliasUsers(CommandContext& context, const std::string& root, const std::string& kind,
                    const std::vector<std::string>& paths) {
    std::vector<ListLine> lines;
    for (const std::string& path : paths)
        lines.push_back(UserLine(context, path, root));
    if (!lines.empty())
        context.display.ShowFileList(kind + " used in ...", lines);
}

std::string DescribeUnseenUsers(const std::string& kind, const std::vector<Unseen>& unseen) {
    return "It could not be found out whether another aircraft uses the " +
           std::string(kind == "panel" ? "panel" : "sound configuration") +
           " in this package, because these could not be looked at ...\r\n\r\n" + ListUnseen(unseen) +
           "\r\n\r\nPlease make sure that they can be read, or delete what nobody needs, and try again.";
}

std::optional<ConfigText> WithAlias(ConfigText text, const std::string& newAlias) {
    // What stands beyond the limit is carried over as it is.
    const std::size_t count = std::min(text.lines.size(), MaxConfigLines);
    for (std::size_t number = 0; number < count; ++number) {
        const std::string& line = text.lines[number].text;
        if (HasKey(line, "alias") && !text.SetText(number, WithValue(line, newAlias)))
            return std::nullopt;
    }
    return text;
}

Status RewriteAliasLine(CommandContext& context, const std::string& newAlias, const std::string& path) {
    const auto text = ReadConfigText(context.files, path);
    if (!text)
        return text.status();
    const auto rewritten = WithAlias(*text, newAlias);
    if (!rewritten)
        return {FileFault::BadName, path, 0};
    if (rewritten->Bytes() == text->Bytes())
        return {};
    if (const auto info = context.files.Info(path); info && info->readOnly) {
        if (const Status status = context.files.SetReadOnly(path, false); !status)
            return status;
    }
    return RewriteBytes(context.files, context.locations, path, rewritten->Bytes());
}

} // namespace korvadex
