#include "platform/windows_path.h"
#include "sim/copy_package.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

class CopyTest : public SimTest {
  protected:
    CopyTest() { drive.MakeDirectory("Hangar\\Jets"); }

    bool CopyStaging(const std::string& name) {
        LoadStaging(context, package);
        const auto copy = CopyPackageTo(context, package, CopyRoot::Hangar, "Jets\\" + name);
        EXPECT_EQ(copy.value_or(locations.HangarDir + "Jets\\" + name + "\\"),
                  locations.HangarDir + "Jets\\" + name + "\\");
        return bool(copy);
    }
};

TEST_F(CopyTest, AFileKeepsItsTimeAndAttributes) {
    const std::string dated = drive.At("Staging\\notes.kx");
    const FileTime time{std::chrono::sys_days(std::chrono::year(1999) / 12 / 31)};
    drive.Put("Staging\\notes.kx", "x");
    ASSERT_TRUE(drive.Files().SetTime(dated, time));
    ASSERT_TRUE(drive.Files().SetReadOnly(dated, true));
    EXPECT_TRUE(CopyStaging("My Lear"));
    const auto info = drive.Files().Info(drive.At("Hangar\\Jets\\My Lear\\Unrecognized Files\\notes.kx"));
    ASSERT_TRUE(bool(info));
    EXPECT_EQ(info->time, time);
    EXPECT_TRUE(info->readOnly);
}

// As by a second Korvadex, which cleans up when it starts.
TEST_F(CopyTest, ACopyThatLostAFileOnTheWayFails) {
    drive.Fill("Staging", "a.mdl=a, b.mdl=b");
    LoadStaging(context, package);
    FaultyFiles shared(drive.Files());
    shared.FailWhere([&](const std::string& change, const std::string& path) {
        const bool isSecond = change == "Copy" && path.ends_with("b.mdl");
        EXPECT_TRUE(!isSecond || drive.Files().Delete(ParentDirectory(path) + "a.mdl"));
        return FileFault::None;
    });
    CommandContext sharing = On(shared);
    user.Expect("The package could not be copied, and nothing of it was left behind....");
    EXPECT_FALSE(CopyPackageTo(sharing, package, CopyRoot::Hangar, "Jets\\Lear"));
    EXPECT_EQ(drive.Names("Hangar"), std::vector<std::string>{"Jets\\"});
}

// What it was made of may be deleted next, and then the power fails.
TEST_F(CopyTest, ACopyIsOnTheDiskBeforeItIsThere) {
    drive.Fill("Hangar\\Jets\\Cub", "Model\\a.mdl=a, b.air=b, Gauges\\one.gau=1");
    Select("Cub");
    const struct {
        CopyRoot root;
        std::string name, directory;
        std::vector<std::string> flushed;
    } rows[] = {
        {CopyRoot::Hangar, "Jets\\Lear", "Hangar\\Jets", {"Model\\a.mdl", "b.air", "one.gau", "Model", "Lear"}},
        {CopyRoot::Staging,
         "Lear",
         "Staging\\aircraft",
         {"a.mdl", "Lear", "Staging\\gauges\\one.gau", "Staging\\gauges"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.directory);
        FaultyFiles files(drive.Files());
        std::vector<std::string> flushed;
        files.FailWhere([&](const std::string& change, const std::string& path) {
            if (change == "Rename" && path == drive.At(row.directory + "\\Lear")) {
                for (const std::string& end : row.flushed)
                    EXPECT_THAT(flushed, testing::Contains(testing::EndsWith(end)));
                flushed.clear();
            }
            if (change == "Flush")
                flushed.push_back(path);
            return FileFault::None;
        });
        CommandContext flushing = On(files);
        EXPECT_TRUE(CopyPackageTo(flushing, package, row.root, row.name));
        EXPECT_EQ(flushed, std::vector<std::string>{drive.At(row.directory)});

        files.FailOn("Flush", "", FileFault::Failed);
        user.Expect("The package could not be copied, and nothing of it was left behind....");
        EXPECT_FALSE(CopyPackageTo(flushing, package, row.root, row.name + " 2"));
        EXPECT_FALSE(drive.Has(row.directory + "\\Lear 2"));
    }
}

TEST_F(CopyTest, RefusesWhatWasNotListedInFull) {
    drive.Fill("Staging", "a.mdl=a, b.mdl=b");
    limits.FileMax = 1;
    user.Expect(DescribeCut(ListCut::FileMax, limits) + "\n\nNothing was copied.", MessageIcon::Exclamation);
    EXPECT_FALSE(CopyStaging("Lear"));
    limits.FileMax = 5000;
    if (drive.MakeLink("Staging\\link.mdl", "Staging\\a.mdl")) {
        user.Expect("The package contains a link to another place, which cannot be copied:\n\n" +
                        drive.At("Staging\\link.mdl") + "...",
                    MessageIcon::Exclamation);
        EXPECT_FALSE(CopyStaging("Lear"));
    }
    drive.MakeDirectory("Staging\\texture");
    FaultyFiles faulty(drive.Files());
    faulty.unreadable = drive.At("Staging\\texture\\");
    CommandContext disk = On(faulty);
    LoadStaging(disk, package);
    user.Expect("The directory " + faulty.unreadable +
                " could not be read, so that the copy would not be complete....");
    EXPECT_FALSE(CopyPackageTo(disk, package, CopyRoot::Hangar, "Jets\\Lear"));
    EXPECT_EQ(drive.Names("Hangar"), std::vector<std::string>{"Jets\\"});
}

} // namespace korvadex::test
