#include "sim/name_matcher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace korvadex::test {

// Names of two letters that contain each other, against the search that looks for one after another.
TEST(NameMatcher, FindsWhatALiteralSearchFinds) {
    std::mt19937 random(11);
    const auto text = [&](std::size_t longest) {
        std::string result(random() % (longest + 1), 'a');
        for (char& letter : result)
            letter = "ab\xC3"[random() % 3];
        return result;
    };
    for (int round = 0; round < 500; ++round) {
        std::vector<std::string> names, texts;
        for (unsigned i = 0; i < 1 + random() % 8; ++i)
            names.push_back(text(5));
        for (unsigned i = 0; i < random() % 4; ++i)
            texts.push_back(text(12));
        NameMatcher matcher(names);
        bool areAllFound = true;
        for (const std::string& each : texts)
            matcher.Search(each);
        for (std::size_t i = 0; i < names.size(); ++i) {
            const bool isThere = std::ranges::any_of(
                texts, [&](const std::string& each) { return each.find(names[i]) != std::string::npos; });
            ASSERT_EQ(matcher.IsFound(i), isThere) << names[i];
            areAllFound = areAllFound && isThere;
        }
        ASSERT_EQ(matcher.AreAllFound(), areAllFound);
    }
}

} // namespace korvadex::test
