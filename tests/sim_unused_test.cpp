#include "sim/gauge_use.h"
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
        for (const std::string& each : texts)
            matcher.Search(each);
        for (std::size_t i = 0; i < names.size(); ++i) {
            const bool isThere = std::ranges::any_of(
                texts, [&](const std::string& each) { return each.find(names[i]) != std::string::npos; });
            ASSERT_EQ(matcher.IsFound(i), isThere) << names[i];
        }
    }
}

class GaugeUseTest : public CommandTest {
  protected:
    // Of "gauge100" to "gauge299", what is not in use.
    std::vector<std::string> Unused() {
        std::vector<std::string> names, unused;
        for (int number = 100; number < 300; ++number)
            names.push_back("gauge" + std::to_string(number));
        int last = 0;
        const GaugeUse use(
            context, [&] { return names; },
            [&](int done, int total) {
                EXPECT_EQ(total, panelCount);
                EXPECT_LE(last, done);
                last = done;
                if (done >= stopAt)
                    throw std::runtime_error("stopped");
            });
        EXPECT_EQ(last, panelCount);
        unseen = use.NotSearched();
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (!use.IsUsed(i))
                unused.push_back(names[i]);
        }
        return unused;
    }

    std::vector<Unseen> unseen;
    int panelCount = 0, stopAt = 1000;
};

// Many more than one thread takes at once, some of them larger than what is read in one go, some that cannot be read.
TEST_F(GaugeUseTest, IsFoundInEveryPanelWhicheverThreadReadsIt) {
    std::vector<std::string> expected;
    for (int number = 100; number < 300; ++number) {
        const std::string name = std::to_string(number);
        std::string text = std::string(number % 7 == 0 ? 400'000 : 10, '.') + "\r\nGAUGE" + name;
        if (number % 50 == 0)
            text.resize(33u << 20, ' ');
        drive.Put("FS\\aircraft\\" + name + "\\panel.cfg", text);
        ++panelCount;
        if (number % 50 == 0)
            expected.push_back("gauge" + name);
    }
    EXPECT_EQ(Unused(), expected);
    std::vector<std::string> paths;
    for (const Unseen& panel : unseen)
        paths.push_back(panel.path);
    EXPECT_EQ(paths, (std::vector{drive.At("FS\\aircraft\\100\\panel.cfg"), drive.At("FS\\aircraft\\150\\panel.cfg"),
                                  drive.At("FS\\aircraft\\200\\panel.cfg"), drive.At("FS\\aircraft\\250\\panel.cfg")}));
    stopAt = 1;
    EXPECT_THROW(Unused(), std::runtime_error);
}

} // namespace korvadex::test
