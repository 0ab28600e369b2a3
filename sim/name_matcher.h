// Which of many names a text contains, found in one pass over the text: few of its letters begin a name, and there the
// names are looked up by their first eight.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// Names and texts are compared byte by byte: both are to be folded before. A copy notes for itself what it finds.
class NameMatcher {
  public:
    explicit NameMatcher(const std::vector<std::string>& names);
    // From now on a blank in a text is taken for "_".
    void TakeBlanksForUnderscores() { areBlanksUnderscores = true; }

    // Notes every name that the text contains. An empty name is contained in any text.
    void Search(std::string_view text);
    // By position in the list given.
    bool IsFound(std::size_t name) const { return isFound[placeOf[name]]; }
    // What was found since the last call, by position (equal names by one of them), and begins anew.
    std::vector<std::size_t> TakeFound();

  private:
    static constexpr std::uint32_t None = std::numeric_limits<std::uint32_t>::max();
    // Three letters by five bits each, which tell the letters from one another and most digits from them.
    static constexpr std::size_t LetterBits = 5, Beginnings = std::size_t{1} << (3 * LetterBits);

    // The names that begin with the same eight letters, or are these where they are shorter.
    struct Group {
        std::uint64_t head = 0;
        std::uint32_t begin = 0, end = 0; // places; none where the table is empty
    };

    static std::size_t Appended(std::size_t letters, char letter) {
        return (letters << LetterBits) | (static_cast<unsigned char>(letter) & ((1u << LetterBits) - 1));
    }
    void AddBeginning(std::string_view name);
    void FillGroups();
    Group& GroupOf(std::uint64_t head);
    void MatchAt(std::string_view rest);
    void NoteLongest(std::size_t behind, std::string_view rest);

    // The different names in order. By their places in it:
    std::vector<std::string> ordered;
    std::vector<std::uint32_t> shorter; // the longest other name that this one begins with
    std::vector<std::uint32_t> nameAt;  // where it stands in the list given
    std::vector<bool> isFound;

    std::vector<Group> groups;          // by a hash of the head
    std::uint32_t lengths = 0;          // those below eight that a name has, by bits
    std::vector<std::uint8_t> begins;   // by three letters: whether any name may begin with them
    std::vector<std::uint32_t> placeOf; // of each name given
    std::vector<std::uint32_t> found;   // places, in the order of finding
    std::size_t shortest = None;        // length of a name
    std::string underscored;
    bool areBlanksUnderscores = false;
};

} // namespace korvadex
