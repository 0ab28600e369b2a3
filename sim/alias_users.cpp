#include "sim/alias_users.h"

#include "package/aircraft_cfg.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/windows_path.h"
#include "sim/config_search.h"

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

std::string UserLine(const CommandContext& context, const std::string& path, const std::string& root) {
    const std::string owner = OwnerOf(path, root);
    if (FindSimAircraftDirectory(context.files, context.locations, owner).empty())
        return owner;
    return WithInstalledMarks(UnderscoresToSpaces(owner));
}

} // namespace

bool FindAliasUsers(CommandContext& context, const AliasSearch& search) {
    std::vector<std::string> texts;
    for (const std::string& text : search.texts)
        texts.push_back(FoldCase(text));
    const auto matches = [&](std::string_view line) {
        return (!search.gaugeLinesOnly || IsGaugeLine(line)) &&
               std::ranges::any_of(
                   texts, [&](const std::string& text) { return line.find(text) != std::string_view::npos; });
    };

    std::vector<std::string> users;
    const bool isComplete =
        VisitConfigFiles(context, WalkTree(context.files, search.root), FoldCase(search.fileName),
                         search.leaveOut, [&](const FileEntry& file, const LowerLines& lines) {
                             if (std::ranges::none_of(lines, matches))
                                 return Visit::Continue;
                             users.push_back(file.path);
                             return search.showList ? Visit::Continue : Visit::Stop;
                         });
    if (search.showList)
        ShowAliasUsers(context, search.root, search.fileName, users);
    if (search.showList && users.empty() && !isComplete)
        context.user.Tell("Not every " + search.fileName + " file below " + search.root +
                              " could be looked at.  To be on the safe side, it is taken as used.",
                          MessageIcon::Exclamation);
    return !users.empty() || !isComplete;
}

void ShowAliasUsers(CommandContext& context, const std::string& root, const std::string& fileName,
                    const std::vector<std::string>& paths) {
    std::vector<std::string> lines;
    for (const std::string& path : paths)
        lines.push_back(UserLine(context, path, root));
    if (!lines.empty())
        context.window.ShowFileList(fileName.substr(0, 5) + " used in ...", lines);
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
