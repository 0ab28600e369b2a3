#include "sim/config_search.h"
#include "sim/name_matcher.h"
#include "support/command_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace korvadex::test {

// Names of three letters that contain each other, short and beyond eight, against the search that looks for one after
// another.
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
            names.push_back(text(round % 2 == 0 ? 5 : 12));
        for (unsigned i = 0; i < random() % 4; ++i)
            texts.push_back(text(12) + names[random() % names.size()] + text(3));
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

class ConfigFilesTest : public CommandTest {
  protected:
    // Of the files visited, as "12: FIRST LINE"; stops after so many.
    std::vector<std::string> Visited(std::size_t most) {
        std::vector<std::string> visited;
        ConfigFiles panels(drive.Files(), locations.Aircraft(), {.fileName = "panel.cfg"});
        unseen = panels.Visit(
            display,
            [&](const FileEntry& file, const LowerLines& lines) {
                const std::string directory = file.path.substr(locations.Aircraft().size());
                visited.push_back(directory.substr(0, directory.find('\\')) + ": " + std::string(lines.back()));
                return visited.size() == most ? Visit::Stop : Visit::Continue;
            },
            [&](int done, int total) {
                EXPECT_EQ(total, 200);
                EXPECT_LE(visited.size() + 1, static_cast<std::size_t>(done));
                if (done == stopAt)
                    throw std::runtime_error("stopped");
            });
        return visited;
    }

    std::vector<Unseen> unseen;
    int stopAt = 0;
};

// Many more than are read at once, some of them larger than what waits for its turn together.
TEST_F(ConfigFilesTest, AreVisitedInOrderHoweverFarAheadTheyAreRead) {
    std::vector<std::string> expected;
    for (int number = 100; number < 300; ++number) {
        const std::string name = std::to_string(number);
        std::string text = std::string(number % 7 == 0 ? 400'000 : 10, '.') + "\r\nGAUGE" + name;
        if (number == 150)
            text.resize(33u << 20, ' ');
        else
            expected.push_back(name + ": gauge" + name);
        drive.Put("FS\\aircraft\\" + name + "\\panel.cfg", text);
    }
    EXPECT_EQ(Visited(1000), expected);
    ASSERT_EQ(unseen.size(), 1u);
    EXPECT_EQ(unseen[0].path, drive.At("FS\\aircraft\\150\\panel.cfg"));
    EXPECT_EQ(Visited(1), std::vector(1, expected[0]));
    stopAt = 70;
    EXPECT_THROW(Visited(1000), std::runtime_error);
}

} // namespace korvadex::test
