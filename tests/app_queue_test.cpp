// The queue of archives.
#include "app/archive_queue.h"
#include "tests/support/faulty_files.h"
#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>

#include <functional>

namespace korvadex::test {
namespace {

class QueueFile : public testing::Test {
  protected:
    QueueFile() {
        drive.Fill("", "App\\, Zips\\a.zip=1, Zips\\b.zip=2, Zips\\c.zip=3, Zips\\50%20 \xC3\xA9.zip=4");
        EXPECT_TRUE(queue.Open(drive.At("App\\queue.txt"), false));
    }
    QueuedArchive Zip(const std::string& name, const std::string& part = "", const std::string& reason = "") {
        return {drive.At("Zips\\" + name), part, reason};
    }
    // What waits, "a.zip(part): reason"; and after a restart the same.
    std::string Waiting() {
        ArchiveQueue again(drive.Files());
        EXPECT_TRUE(again.Open(drive.At("App\\queue.txt"), true));
        EXPECT_EQ(again.Entries(), queue.Entries());
        return Describe(queue);
    }
    std::string Describe(const ArchiveQueue& described) {
        std::string text;
        for (const auto& [path, part, reason] : described.Entries()) {
            const bool isInZips = path.starts_with(drive.At("Zips\\"));
            text += (text.empty() ? "" : ", ") + (isInZips ? path.substr(drive.At("Zips\\").size()) : path) +
                    (part.empty() ? "" : "(" + part + ")") + (reason.empty() ? "" : ": " + reason);
        }
        return text;
    }

    TemporaryDrive drive;
    ArchiveQueue queue{drive.Files()};
};

TEST_F(QueueFile, IsWrittenAfterEachChange) {
    struct Step {
        std::function<Status()> change;
        const char* waiting;
    };
    const std::vector<Step> steps = {
        {[&] {
             return queue.Add({Zip("b.zip"), Zip("a.zip"), Zip("B.ZIP")});
         },
         "b.zip, a.zip"},
        {[&] {
             return queue.Add({Zip("a.zip"), Zip("a.zip", "Two\\"), Zip("50%20 \xC3\xA9.zip")});
         },
         "b.zip, a.zip, a.zip(Two\\), 50%20 \xC3\xA9.zip"},
        {[&] {
             return queue.AddFirst({Zip("c.zip", "x"), Zip("c.zip", "y"), Zip("a.zip")});
         },
         "c.zip(x), c.zip(y), b.zip, a.zip, a.zip(Two\\), 50%20 \xC3\xA9.zip"},
        {[&] {
             return queue.PutLast({Zip("C.zip", "x", "A\r\nwhy\tnot 100%."), Zip("none.zip")});
         },
         "c.zip(y), b.zip, a.zip, a.zip(Two\\), 50%20 \xC3\xA9.zip, c.zip(x): A\r\nwhy\tnot 100%."},
        {[&] {
             return queue.SetReasons({Zip("c.zip", "x", ""), Zip("b.zip", "", "why")});
         },
         "c.zip(y), b.zip: why, a.zip, a.zip(Two\\), 50%20 \xC3\xA9.zip, c.zip(x)"},
        {[&] {
             return queue.Remove({Zip("b.zip"), Zip("c.zip", "y"), Zip("50%20 \xC3\xA9.zip"), Zip("none.zip")});
         },
         "a.zip, a.zip(Two\\), c.zip(x)"},
        {[&] { return queue.Remove(queue.Entries()); }, ""}};
    for (const Step& step : steps) {
        SCOPED_TRACE(step.waiting);
        EXPECT_TRUE(step.change());
        EXPECT_EQ(Waiting(), step.waiting);
    }
}

TEST_F(QueueFile, LosesNoLineThatItReads) {
    drive.Put("App\\queue.txt", "\xEF\xBB\xBF" + drive.At("Zips\\a.zip") + "\t\twhy\r\n\r\n" + drive.At("Zips\\a.zip") +
                                    "\n" + drive.At("Zips\\gone.zip") + "\tpart\tleft\nodd\tline\n\xFF\xFE" + "C\n" +
                                    drive.At("Zips\\b.z"));
    ASSERT_TRUE(queue.Open(drive.At("App\\queue.txt"), false));
    const std::string odd = std::string(": ") + OddLineReason, gone = std::string(": ") + GoneArchiveReason;
    EXPECT_EQ(Describe(queue),
              "a.zip: why, gone.zip(part): left, odd\tline" + odd + ", \xFF\xFE" + "C" + odd + ", b.z" + gone);
    ASSERT_TRUE(queue.Add({Zip("b.zip")}));
    drive.Put("Zips\\b.z", "is there now");
    EXPECT_TRUE(queue.LookAgain());
    EXPECT_FALSE(queue.LookAgain());
    EXPECT_EQ(Waiting(),
              "a.zip: why, gone.zip(part): left, odd\tline" + odd + ", \xFF\xFE" + "C" + odd + ", b.z, b.zip");
}

TEST_F(QueueFile, KeepsTwoArchivesOfOneNameWhereTheHostTellsThemApart) {
    drive.Put("Zips\\A.ZIP", "another one");
    if (drive.Get("Zips\\a.zip") == "1") {
        EXPECT_TRUE(queue.Add({Zip("a.zip"), Zip("A.ZIP"), Zip("a.zip")}));
        EXPECT_TRUE(queue.Remove({Zip("A.ZIP")}));
        EXPECT_EQ(Waiting(), "a.zip");
    }
}

TEST_F(QueueFile, IsLeftAsItIsWhereItCannotBeReadOrWritten) {
    EXPECT_TRUE(queue.Add({Zip("a.zip")}));
    const std::string before = drive.Get("App\\queue.txt");
    FaultyFiles faulty(drive.Files());
    ArchiveQueue other(faulty);
    ASSERT_TRUE(other.Open(drive.At("App\\queue.txt"), false));
    faulty.FailOn("Write", "", FileFault::DiskFull);
    EXPECT_EQ(other.Add({Zip("b.zip")}).fault, FileFault::DiskFull);
    EXPECT_EQ(Describe(other), "a.zip, b.zip");
    faulty.FailWhere({});
    ASSERT_TRUE(other.Open(drive.At("App\\queue.txt"), true));
    EXPECT_TRUE(other.Add({Zip("b.zip")}));
    EXPECT_EQ(drive.Get("App\\queue.txt"), before);
    drive.Fill("App", "directory.txt\\");
    EXPECT_FALSE(other.Open(drive.At("App\\directory.txt"), false));
    EXPECT_FALSE(other.Add({Zip("b.zip")}));
    EXPECT_EQ(Describe(other), "b.zip");
}

} // namespace
} // namespace korvadex::test
