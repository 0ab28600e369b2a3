#include "package/reduce_staging.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

// The directory that a configuration's value stands for: "" -> texture, "red" -> texture.red,
// "\red" -> texture\red.
std::string DirectoryFor(const std::string& word, const std::string& value) {
    if (value.empty())
        return word;
    return value.starts_with("\\") ? word + value : word + "." + value;
}

// FindSavedDirectory compares the ending alone (oldpanel.1 ends like panel.1): only a whole name is acted on.
std::string FindWholeName(DirectoryList saved, const std::string& name) {
    for (;;) {
        std::string hit = FindSavedDirectory(saved, name);
        if (hit.empty() || EqualNoCase(LastPathComponent(hit), name))
            return hit;
        std::erase(saved.paths, hit);
    }
}

// Emptying a directory must take nothing that the kept configuration needs: not its file, not its
// directories.
bool HoldsWhatIsKept(const DirectoryList& saved, const std::string& directory, const std::string& cfgPath,
                     const Configuration& kept) {
    const std::string place = AddBackslash(directory);
    if (IsAtOrBelow(cfgPath, place))
        return true;
    const std::string names[] = {DirectoryFor("model", kept.model), DirectoryFor("panel", kept.panel),
                                 DirectoryFor("sound", kept.sound), DirectoryFor("texture", kept.texture)};
    return std::any_of(std::begin(names), std::end(names), [&](const std::string& name) {
        const std::string used = FindWholeName(saved, name);
        return !used.empty() && IsAtOrBelow(used, place);
    });
}

} // namespace

std::string FindSavedDirectory(const DirectoryList& saved, std::string_view ending) {
    for (const auto& path : saved.paths) {
        if (path.empty())
            break;
        if (EndsWithNoCase(LastPathComponent(path), ending))
            return path;
    }
    return "";
}

void EmptyUnusedDirectories(CommandContext& context, const DirectoryList& saved, const std::string& cfgPath,
                            const std::vector<Configuration>& configurations, std::size_t chosen) {
    const Configuration& kept = configurations[chosen];
    struct Kind {
        std::string word;
        std::string Configuration::*value;
    };
    const Kind kinds[] = {{"model", &Configuration::model},
                          {"sound", &Configuration::sound},
                          {"texture", &Configuration::texture},
                          {"panel", &Configuration::panel}};
    for (std::size_t row = 0; row < configurations.size(); ++row) {
        if (row == chosen)
            continue;
        for (const auto& kind : kinds) {
            const std::string& value = configurations[row].*kind.value;
            if (EqualNoCase(value, kept.*kind.value))
                continue; // shared with the kept one
            const std::string directory = FindWholeName(saved, DirectoryFor(kind.word, value));
            if (directory.empty())
                continue;
            if (kind.word == "panel" && value.empty()) // its gauges and bitmaps may be shared
                DeleteFileForced(context.files, directory + "\\panel.cfg");
            else if (!HoldsWhatIsKept(saved, directory, cfgPath, kept))
                DeleteTree(context, directory + "\\");
        }
    }
}

} // namespace korvadex
