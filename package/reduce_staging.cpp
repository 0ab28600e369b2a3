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

struct Kind {
    const char* word;
    std::string Configuration::*value;
};
constexpr Kind Kinds[] = {{"model", &Configuration::model},
                          {"sound", &Configuration::sound},
                          {"texture", &Configuration::texture},
                          {"panel", &Configuration::panel}};

// FindSavedDirectory compares the ending alone (oldpanel.1 ends like panel.1): only a whole name is acted on.
// The one beside the aircraft.cfg is meant; elsewhere it must be the only one of its name, as among several
// there may be another add-on's.
std::string FindWholeName(DirectoryList saved, const std::string& name, const std::string& cfgPath) {
    std::vector<std::string> hits;
    for (;;) {
        std::string hit = FindSavedDirectory(saved, name);
        if (hit.empty())
            break;
        if (EqualNoCase(hit, ParentDirectory(cfgPath) + name))
            return hit;
        std::erase(saved.paths, hit);
        if (EqualNoCase(LastPathComponent(hit), name))
            hits.push_back(std::move(hit));
    }
    return hits.size() == 1 ? hits.front() : "";
}

// True for every directory that the configuration's value may stand for: texture.red, texture\red.
bool IsNamed(const std::string& directory, const Kind& kind, const Configuration& configuration) {
    return EndsWithNoCase(directory, "\\" + DirectoryFor(kind.word, configuration.*kind.value));
}

// Emptying a directory must take nothing that the kept configuration needs: not its file, not its
// directories.
bool HoldsWhatIsKept(const DirectoryList& saved, const std::string& directory, const std::string& cfgPath,
                     const Configuration& kept) {
    const std::string place = AddBackslash(directory);
    return IsAtOrBelow(cfgPath, place) ||
           std::any_of(saved.paths.begin(), saved.paths.end(), [&](const std::string& path) {
               return IsAtOrBelow(path, place) &&
                      std::any_of(std::begin(Kinds), std::end(Kinds),
                                  [&](const Kind& kind) { return IsNamed(path, kind, kept); });
           });
}

// The kept configuration has a directory of its own; without it, the plain one is what it will use.
bool HasOwnDirectory(const DirectoryList& saved, const Kind& kind, const Configuration& kept) {
    return std::any_of(saved.paths.begin(), saved.paths.end(),
                       [&](const std::string& path) { return IsNamed(path, kind, kept); });
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
    for (std::size_t row = 0; row < configurations.size(); ++row) {
        if (row == chosen)
            continue;
        for (const Kind& kind : Kinds) {
            const std::string& value = configurations[row].*kind.value;
            if (EqualNoCase(value, kept.*kind.value))
                continue; // shared with the kept one
            if (value.empty() && !HasOwnDirectory(saved, kind, kept))
                continue;
            const std::string directory = FindWholeName(saved, DirectoryFor(kind.word, value), cfgPath);
            if (directory.empty())
                continue;
            if (kind.value == &Configuration::panel && value.empty()) // its gauges and bitmaps may be shared
                DeleteFileForced(context.files, directory + "\\panel.cfg");
            else if (!HoldsWhatIsKept(saved, directory, cfgPath, kept))
                DeleteTree(context, directory + "\\");
        }
    }
}

} // namespace korvadex
