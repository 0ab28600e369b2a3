// Every command is taken back and done again: to the byte, and to the nanosecond, all is as it was.
#include "cuts/ground.h"
#include "cuts/trees.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <iostream>
#include <sstream>

namespace korvadex::test {
namespace {

class TakenBack : public testing::TestWithParam<std::string> {
  protected:
    TakenBack() : screen(std::cout.rdbuf(said.rdbuf())) { PrepareGround(GetParam(), drive); }
    ~TakenBack() override {
        std::cout.rdbuf(screen);
        std::filesystem::remove_all(base);
    }

    static std::string MakeBase() {
        std::string path = (std::filesystem::temp_directory_path() / "korvadex-undo-XXXXXX").string();
        return mkdtemp(path.data()) ? path : "";
    }
    const std::string base = MakeBase(), drive = base + "/c";
    std::ostringstream said;
    std::streambuf* const screen;
};

INSTANTIATE_TEST_SUITE_P(, TakenBack, testing::ValuesIn(CommandsWithUndo()), [](const auto& row) {
    std::string name = row.param;
    std::ranges::replace(name, ' ', '_');
    return name;
});

bool IsOwn(const std::string& path) {
    return path.ends_with("~kx~kept") || path.ends_with("~kx~lock") || path == "App/journal" || path == "App/queue.txt";
}

TEST_P(TakenBack, IsAsItWas) {
    std::vector<HostTree> looks; // after nothing, the command, its undo, its redo, and an undo of that
    DoOn(drive, "C:\\App\\", "look; " + CommandSteps(GetParam()) + "; look; undo; look; redo; look; undo; look", [&] {
        looks.push_back(ReadTree(drive, IsOwn, true));
        looks.back().erase("App"); // the journal comes and goes in it
    });
    ASSERT_EQ(looks.size(), 5u) << said.str();
    EXPECT_THAT(Differences(looks[0], looks[1]), testing::Not(testing::IsEmpty())) << said.str();
    const std::pair<std::size_t, std::size_t> equal[] = {{0, 2}, {1, 3}, {0, 4}};
    for (const auto& [before, after] : equal)
        EXPECT_THAT(Differences(looks[before], looks[after]), testing::IsEmpty()) << said.str();
}

// At each step of its bar; what is not taken back then can be undone.
TEST_P(TakenBack, IsAsItWasWhenStopped) {
    const std::string trial = base + "/trial";
    for (int step = 1; step == 1 || said.str().find("The command was stopped.") != std::string::npos; ++step) {
        std::filesystem::remove_all(trial);
        ASSERT_EQ(std::system(("cp -a '" + drive + "' '" + trial + "'").c_str()), 0);
        said.str("");
        std::vector<HostTree> looks;
        DoOn(trial, "C:\\App\\",
             "look; stop " + std::to_string(step) + "; " + CommandSteps(GetParam()) + "; undo what stays; look", [&] {
                 looks.push_back(ReadTree(trial, IsOwn)); // scratch names have come and gone in the locations
                 looks.back().erase("App");
                 looks.back().erase("App/kx.ini"); // from where the last archive came
             });
        ASSERT_EQ(looks.size(), 2u) << said.str();
        EXPECT_THAT(Differences(looks[0], looks[1]), testing::IsEmpty()) << step << said.str();
    }
}

} // namespace
} // namespace korvadex::test
