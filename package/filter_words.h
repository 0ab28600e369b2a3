// What is typed into a filter: words, all of which have to stand in a text, in whatever case.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

class FilterWords {
  public:
    explicit FilterWords(std::string_view typed);
    bool IsEmpty() const { return words.empty(); }
    // In a text that FoldCase has given.
    bool AreIn(std::string_view foldedText) const;

  private:
    std::vector<std::string> words;
};

} // namespace korvadex
