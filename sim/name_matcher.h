// Which of many names a text contains, found in one pass over the text however many names there are (by the automaton
// of Aho and Corasick, 1975).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// Names and texts are compared byte by byte: both are to be folded before.
class NameMatcher {
  public:
    explicit NameMatcher(const std::vector<std::string>& names);
    // From now on a blank in a text is taken for "_".
    void TakeBlanksForUnderscores() { letterOf[' '] = letterOf['_']; }

    // Notes every name that the text contains. An empty name is contained in any text.
    void Search(std::string_view text);
    // By position in the list given.
    bool IsFound(std::size_t name) const { return isFound[endOf[name]]; }
    bool AreAllFound() const { return missing == 0; }
    // What was found since the last call, by position (equal names by one of them), and begins anew.
    std::vector<std::size_t> TakeFound();

  private:
    static constexpr std::uint32_t None = std::numeric_limits<std::uint32_t>::max();

    std::uint32_t& Next(std::size_t state, std::size_t letter) { return next[state * letterCount + letter]; }
    void AddName(const std::string& name);
    void LinkStates();
    void NoteEnd(std::size_t state);

    // Letters that no name has are letter 0. A state stands for the beginning of a name; from each one there is
    // a step for every letter, to the longest beginning that the text then ends with.
    std::array<std::uint8_t, 256> letterOf{};
    std::size_t letterCount = 1;
    std::vector<std::uint32_t> next;
    // The state itself where a name ends there, else the state of the longest shorter one that ends a name.
    std::vector<std::uint32_t> ending, shorterEnding;
    std::vector<std::uint32_t> endOf;  // of each name
    std::vector<std::uint32_t> nameAt; // by state, where one ends
    std::vector<bool> isFound;         // by state
    std::vector<std::uint32_t> found;  // states, in the order of finding
    std::size_t missing = 0;
};

} // namespace korvadex
