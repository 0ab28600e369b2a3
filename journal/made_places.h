// What the running command has made itself: it may go for good, as nobody had it before.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace korvadex {

// Places are compared without case, with or without a trailing backslash. What lies below a place that was made was
// made with it, as far as nothing else is known of it; so was what lies in a scratch directory.
class MadePlaces {
  public:
    bool IsMade(const std::string& path) const;
    // A thing came to this place, and what was known of the place and below it is void.
    void Note(const std::string& path, bool isMade);
    void NoteRenamed(const std::string& from, const std::string& to);
    void Clear() { places.clear(); }

  private:
    void Forget(const std::string& key);

    std::map<std::string, bool> places; // by the folded path without a trailing backslash
};

// True when the path, or a directory above it, is the program's own: it is no part of a collection.
bool IsOwnPlace(std::string_view path);
// The same of what is kept of commands alone.
bool IsKeptPlace(std::string_view path);

} // namespace korvadex
