#include "journal/made_places.h"

#include "platform/windows_path.h"

#include <vector>

namespace korvadex {

namespace {

std::string KeyOf(const std::string& path) {
    return FoldCase(WithoutBackslash(path));
}

bool HasComponent(std::string_view path, bool (*isWanted)(std::string_view)) {
    for (auto place = WithoutBackslash(path); place.size() > 3; place = WithoutBackslash(ParentDirectory(place)))
        if (isWanted(LastPathComponent(place)))
            return true;
    return false;
}

std::string ParentKey(const std::string& key) {
    return WithoutBackslash(ParentDirectory(key));
}

} // namespace

bool IsKeptPlace(std::string_view path) {
    return HasComponent(path, [](std::string_view name) { return EqualNoCase(name, KeptDirectoryName); });
}

bool IsOwnPlace(std::string_view path) {
    return HasComponent(path, IsOwnName);
}

bool MadePlaces::IsMade(const std::string& path) const {
    for (std::string key = KeyOf(path); !key.empty(); key = ParentKey(key)) {
        if (const auto known = places.find(key); known != places.end())
            return known->second;
        if (IsScratchName(LastPathComponent(key)))
            return true;
    }
    return false;
}

void MadePlaces::Note(const std::string& path, bool isMade) {
    const std::string key = KeyOf(path);
    Forget(key);
    places[key] = isMade;
}

void MadePlaces::NoteRenamed(const std::string& from, const std::string& to) {
    const bool isMade = IsMade(from);
    const std::string oldKey = KeyOf(from), newKey = KeyOf(to), below = oldKey + "\\";
    std::vector<std::pair<std::string, bool>> moved = {{newKey, isMade}};
    for (auto at = places.lower_bound(below); at != places.end() && at->first.starts_with(below); ++at)
        moved.emplace_back(newKey + at->first.substr(oldKey.size()), at->second);
    Forget(oldKey);
    Forget(newKey);
    places.insert(moved.begin(), moved.end());
}

void MadePlaces::Forget(const std::string& key) {
    const std::string below = key + "\\";
    const auto first = places.lower_bound(below);
    auto last = first;
    while (last != places.end() && last->first.starts_with(below))
        ++last;
    places.erase(first, last);
    places.erase(key);
}

} // namespace korvadex
