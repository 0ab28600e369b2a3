#include "platform/windows_path.h"
#include "sim/gauges.h"
#include "sim/name_matcher.h"
#include "sim/unused_gauges.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

#include <random>

namespace korvadex::test {

constexpr const char* Warning = "This may take a minute or two...";

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

class UnusedGaugesTest : public SimTest {
  protected:
    const std::vector<std::string> Unused = {"clock.gau", "two.parts.gau", "z.gau", "sub\\clock.gau", "lock.cab"};

    UnusedGaugesTest() {
        for (const char* gauge :
             {"used.gau", "clock.gau", "sub\\clock.gau", "lock.cab", "Cab.CAB", "\xC3\xA9t\xC3\xA9.gau",
              "Generic.x.gau", "fw190a.gau", "mine.dll", "two.parts.gau", "wide.gau", "z.gau"})
            drive.Put(std::string("FS\\gauges\\") + gauge, gauge);
        // Without a last line end; a lone CR; a name beside the word in the same line only; a byte beyond ASCII.
        drive.Put("FS\\aircraft\\A\\panel\\panel.cfg", "x\rGauge00=USED,1\nclock\r\ngauge01=cab!needle");
        drive.Put("FS\\aircraft\\B\\Panel.CFG", "; \xC9T\xC9 is a gauge\r\n[fltsim]\r\nalias=B\\panel\r\n");
        drive.Put("FS\\aircraft\\C\\panel\\oldpanel.cfg", "gauge00=clock\r\ngauge01=lock");
        std::string wide = "\xFF\xFE"; // Notepad's "Unicode"
        for (const char letter : std::string("\r\ngauge00=Wide,1\r\n"))
            wide += {letter, '\0'};
        drive.Put("FS\\aircraft\\D\\panel\\panel.cfg", wide);
    }
};

TEST_F(UnusedGaugesTest, AreListedAndDeletedOneByOne) {
    auto expected = drive.Tree();
    user.Expect(Warning, Answer::Cancel);
    ListUnusedGauges(context);
    user.Expect(Warning)
        .ExpectUnusedGauges(Unused, {{}, {0}, {3, 1, 3}})
        .Expect("Please select the gauges first.")
        .Expect("Are you sure you want to remove these gauges?", Answer::No)
        .Expect("Are you sure you want to remove these gauges?", Answer::Yes)
        .Expect("Done.");
    ListUnusedGauges(context);
    expected.erase("FS\\gauges\\sub\\clock.gau");
    expected.erase("FS\\gauges\\two.parts.gau");
    EXPECT_EQ(drive.Tree(), expected) << "an entry stands for its own path";
    EXPECT_THAT(user.transcript, testing::IsSupersetOf({"left: clock.gau", "left: z.gau", "left: lock.cab"}));
}

TEST_F(UnusedGaugesTest, WhatCannotBeSeenOrDeletedIsSaid) {
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Delete", "z.gau", FileFault::InUse);
    CommandContext locked = On(faulty);
    auto expected = drive.Tree();
    expected.erase("FS\\gauges\\lock.cab");
    user.Expect(Warning)
        .ExpectUnusedGauges(Unused, {{2, 4}})
        .Expect("Are you sure you want to remove these gauges?", Answer::Yes)
        .Expect("The following gauges could not be removed ...\n\n" + drive.At("FS\\gauges\\z.gau") +
                    " (another program is using it)\n\n...",
                MessageIcon::Exclamation);
    ListUnusedGauges(locked);
    EXPECT_EQ(drive.Tree(), expected);

    // Two are wanted meanwhile, or by other bytes not the ones that were listed.
    drive.Put("FS\\gauges\\lock.cab", "lock.cab");
    user.Expect(Warning)
        .ExpectUnusedGauges(Unused, {{1, 2, 4}})
        .Expect("Are you sure you want to remove these gauges?", Answer::Yes)
        .Then([&] {
            drive.Put("FS\\aircraft\\New\\panel\\panel.cfg", "gauge00=two,1");
            drive.Put("FS\\gauges\\z.gau", "another one");
        })
        .Expect("The following gauges were not removed ...\n\n" + drive.At("FS\\gauges\\two.parts.gau") +
                    " (a panel uses it by now)\n" + drive.At("FS\\gauges\\z.gau") +
                    " (it was changed by another program meanwhile)\n\n...",
                MessageIcon::Exclamation);
    ListUnusedGauges(context);
    EXPECT_EQ(drive.Get("FS\\gauges\\z.gau"), "another one");
    EXPECT_TRUE(drive.Has("FS\\gauges\\two.parts.gau"));
    EXPECT_FALSE(drive.Has("FS\\gauges\\lock.cab"));
    ASSERT_TRUE(drive.Files().Delete(drive.At("FS\\aircraft\\New\\panel\\panel.cfg")));

    // An aircraft on another drive, with its panel in yet another place and a link to itself; then that place is
    // not there: nothing is called unused.
    drive.Put("Panels\\panel.cfg", "gauge00=z");
    drive.MakeDirectory("Elsewhere");
    if (drive.MakeLink("Elsewhere\\panel", "Panels") && drive.MakeLink("Elsewhere\\again", "Elsewhere") &&
        drive.MakeLink("FS\\aircraft\\E", "Elsewhere")) {
        user.Expect(Warning).ExpectUnusedGauges({"clock.gau", "two.parts.gau", "sub\\clock.gau"}, {});
        ListUnusedGauges(context);
        EXPECT_TRUE(drive.Files().Rename(drive.At("Panels"), drive.At("Away")));
        user.Expect(Warning).ExpectUnusedGauges({}, {}).Expect("Not every panel.cfg file below...as used.\n\n" +
                                                                   drive.At("FS\\aircraft\\E\\panel") +
                                                                   "  (a link that leads nowhere)",
                                                               MessageIcon::Exclamation);
        ListUnusedGauges(context);
    }

    locations.MsfsDir = drive.At("Staging\\");
    user.Expect(Warning).Expect(drive.At("Staging\\gauges directory does not exist.  Please verify..."));
    ListUnusedGauges(context);
}

} // namespace korvadex::test
