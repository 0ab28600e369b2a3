// A hundred packages and more in one go, beside the same ones by one.
#include "app/batch_run.h"
#include "tests/support/program_fixture.h"
#include "tests/support/random_addon.h"

#include <regex>

namespace korvadex::test {
namespace {

constexpr std::size_t Count = 120;

class ManyTest : public ProgramTest {
  protected:
    ManyTest() {
        PutSimulator();
        for (std::size_t number = 0; number < Count; ++number)
            MakePackage(number);
        Dice dice{42};
        for (std::size_t left = Count; left > 1; --left)
            std::swap(packages[left - 1], packages[dice.Below(left)]);
        Start();
        user.isPatient = true;
    }
    // It has two of the gauges, and somebody else's aircraft uses one.
    void PutSimulator() {
        drive.Fill("FS",
                   "gauges\\Clock3.gau=MZ, gauges\\Clock7.gau=MZ, aircraft\\Skyhawk\\my.flt=saved, aircraft\\Empty\\");
        drive.Put("FS\\aircraft\\Skyhawk\\panel\\panel.cfg", "gauge00=Clock7!a\r\n");
    }
    // The records without the times of the files that an installation rewrites.
    std::map<std::string, std::string> Tree(const char* directory) const {
        static const std::regex time("(placed\\t\\d+\\t)\\d+");
        auto tree = drive.Tree(directory);
        for (auto& [name, bytes] : tree)
            if (name.ends_with("kx_installed.txt"))
                bytes = std::regex_replace(bytes, time, "$1");
        return tree;
    }
    std::string LastMessage() const { return user.transcript.empty() ? "none" : user.transcript.back(); }

    std::vector<PackageRef> packages;

  private:
    // A fourth of the packages use the panel of another one, a sixth the sound; each gauge is of twelve.
    void MakePackage(std::size_t number) {
        const auto nameOf = [](std::size_t of) { return "Plane " + std::to_string(of); };
        const std::string digit = std::to_string(number % 10), lender = nameOf(number * 7 % (Count / 4) * 4 + 1);
        packages.push_back({"Category " + std::to_string(number % 7), nameOf(number)});
        drive.Fill(
            "Hangar\\" + packages.back().Text(),
            "aircraft.cfg=title=" + digit + ", Gauges\\Clock" + digit + ".gau=MZ, texture\\t.bmp=" + lender +
                ", panel\\panel.cfg=" + (number % 4 == 0 ? "alias=" + lender + "\\panel" : "gauge00=Clock" + digit) +
                ", sound\\sound.cfg=" + (number % 6 == 0 ? "alias=" + lender + "\\sound" : "volume=" + digit));
    }
};

TEST_F(ManyTest, EndAsSingleOnesDoAndGoAsTheyCame) {
    for (const PackageRef& package : LendersFirst(context, packages)) {
        program->ShowPackage(package);
        program->InstallPackage();
    }
    ASSERT_TRUE(drive.Has("FS\\aircraft\\Plane_119\\kx_installed.txt"));
    ASSERT_TRUE(drive.Files().Rename(drive.At("FS"), drive.At("Single")));
    PutSimulator();
    const auto single = Tree("Single");
    const auto bare = drive.States("FS");
    const auto bareNames = drive.Names("FS");

    program->InstallEach(packages);
    EXPECT_EQ(LastMessage(), "Done.");
    EXPECT_EQ(Tree("FS"), single);
    program->RemoveEach(packages);
    EXPECT_EQ(LastMessage(), "Done.");
    EXPECT_EQ(drive.States("FS"), bare);
    EXPECT_EQ(drive.Names("FS"), bareNames);
    program->UndoLast();
    EXPECT_EQ(Tree("FS"), single);
    program->UndoLast();
    EXPECT_EQ(drive.Names("FS"), bareNames);
    program->RedoLast();
    EXPECT_EQ(Tree("FS"), single);
    program->RedoLast();
    EXPECT_EQ(drive.Names("FS"), bareNames);
}

} // namespace
} // namespace korvadex::test
