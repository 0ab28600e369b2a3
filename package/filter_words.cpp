#include "package/filter_words.h"

#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

FilterWords::FilterWords(std::string_view typed) {
    const std::string folded = FoldCase(typed);
    for (std::size_t at = 0; (at = folded.find_first_not_of(" \t", at)) != folded.npos;) {
        const std::size_t end = std::min(folded.find_first_of(" \t", at), folded.size());
        words.push_back(folded.substr(at, end - at));
        at = end;
    }
}

bool FilterWords::AreIn(std::string_view foldedText) const {
    return std::ranges::all_of(words,
                               [&](const std::string& word) { return foldedText.find(word) != foldedText.npos; });
}

} // namespace korvadex
