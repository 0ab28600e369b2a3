// Every command is taken back and done again: to the byte, and to the nanosecond, all is as it was.
#include "cuts/ground.h"
#include "cuts/trees.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <iostream>
#include <sstream>

namespace korvadex::test {
namespace {

constexpr const char* App = "C:\\App\\";

class TakenBack : public testing::TestWithParam<std::string> {
  protected:
    TakenBack() : screen(std::cout.rdbuf(said.rdbuf())) { PrepareGround(GetParam(), drive); }
    ~TakenBack() override {
        std::cout.rdbuf(screen);
        std::filesystem::remove_all(base);
    }

    void Look(bool withSettings) {
        looks.push_back(ReadTree(
            drive,
            [=](const std::string& path) {
                return path.ends_with("~kx~kept") || path.ends_with("~kx~lock") || path == "App/journal" ||
                       (path == "App/kx.ini" && !withSettings);
            },
            true));
        looks.back().erase("App"); // the journal comes and goes in it
        for (const char* location : {"Hangar", "Staging", "FS"})
            if (!withSettings) // a lock comes and goes with the program
                looks.back().erase(location);
    }
    // After nothing, the command, its undo, its redo, and an undo of that.
    void Expect() {
        ASSERT_EQ(looks.size(), 5u) << said.str();
        EXPECT_THAT(Differences(looks[0], looks[1]), testing::Not(testing::IsEmpty())) << said.str();
        EXPECT_THAT(Differences(looks[0], looks[2]), testing::IsEmpty()) << said.str();
        EXPECT_THAT(Differences(looks[1], looks[3]), testing::IsEmpty()) << said.str();
        EXPECT_THAT(Differences(looks[0], looks[4]), testing::IsEmpty()) << said.str();
        looks.clear();
    }

    static std::string MakeBase() {
        std::string path = (std::filesystem::temp_directory_path() / "korvadex-undo-XXXXXX").string();
        return mkdtemp(path.data()) ? path : "";
    }
    const std::string base = MakeBase(), drive = base + "/c";
    std::ostringstream said;
    std::streambuf* const screen;
    std::vector<HostTree> looks;
};

INSTANTIATE_TEST_SUITE_P(, TakenBack, testing::ValuesIn(CommandsWithUndo()), [](const auto& row) {
    std::string name = row.param;
    std::ranges::replace(name, ' ', '_');
    return name;
});

TEST_P(TakenBack, IsAsItWas) {
    DoOn(drive, App, "look; " + CommandSteps(GetParam()) + "; look; undo; look; redo; look; undo; look",
         [&] { Look(true); });
    Expect();
    Look(false);
    for (const auto& steps :
         {CommandSteps(GetParam()), std::string("undo"), std::string("redo"), std::string("undo")}) {
        DoOn(drive, App, steps);
        Look(false);
    }
    Expect();
}

} // namespace
} // namespace korvadex::test
