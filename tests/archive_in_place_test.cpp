// Single files that are kept packed under their own name: nothing of them may ever be lost.
#include "archive/in_place.h"
#include "package/scratch.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"
#include "tests/support/zip_builder.h"

#include <cstring>
#include <random>

namespace korvadex::test {
namespace {

constexpr FileTime SomeTime{std::chrono::seconds(951786061) + std::chrono::milliseconds(250)};

std::string Noise(std::size_t size, unsigned values = 256) {
    std::mt19937 random(7);
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() % values);
    return bytes;
}

class InPlaceTest : public CommandTest {
  protected:
    const std::string relative = "Hangar\\Jets\\Lear\\Texture\\b17.bmp";
    const std::string path = drive.At(relative);
    // Everything on the drive but the one file: it must never change.
    std::map<std::string, std::string> Rest() {
        auto tree = drive.Tree();
        tree.erase(relative);
        return tree;
    }
};

TEST_F(InPlaceTest, PackingAndUnpackingGivesTheFileBack) {
    const struct {
        const char* name;
        std::string bytes;
        bool readOnly = false;
    } rows[] = {
        {"empty", ""},
        {"one byte", "x"},
        {"regular", std::string(300000, 'b'), true},
        {"text", Noise(50000, 4)},
        {"noise", Noise(100000)},
        {"too big for memory", std::string(66u << 20, '\0')},
        {"an archive of two members", ZipBuilder().Add("b17.bmp", "1").Add("c", "2").Bytes()},
        {"an archive of another name", ZipBuilder().Add("c17.bmp", "1").Bytes()},
    };
    drive.Put("FS\\b17.bmp", "the simulator's own");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        drive.Put(relative, row.bytes);
        ASSERT_TRUE(drive.Files().SetTime(path, SomeTime));
        ASSERT_TRUE(drive.Files().SetReadOnly(path, row.readOnly));
        const auto before = *drive.Files().Info(path);
        const auto rest = Rest();

        EXPECT_NE(UnzipFileInPlace(context, path, true), 0);
        ZipFileInPlace(context, path);
        const std::string packed = drive.Get(relative);
        EXPECT_TRUE(packed != row.bytes);
        EXPECT_EQ(UnzipFileInPlace(context, path, true), 0);
        auto packedInfo = *drive.Files().Info(path);
        packedInfo.size = before.size;
        EXPECT_EQ(packedInfo, before) << "time and attributes stay";

        ZipFileInPlace(context, path); // packed already
        EXPECT_TRUE(drive.Get(relative) == packed);
        EXPECT_EQ(UnzipFileInPlace(context, path), 0);
        EXPECT_EQ(*drive.Files().Info(path), before);
        EXPECT_NE(UnzipFileInPlace(context, path), 0) << "a second time there is nothing to unpack";
        EXPECT_TRUE(drive.Get(relative) == row.bytes);
        EXPECT_EQ(Rest(), rest);
    }
}

TEST_F(InPlaceTest, OnlyAnArchiveOfTheFileItselfCountsAsPacked) {
    const auto zip = [](const char* name, const ZipBuilder::Options& options = {}) {
        return ZipBuilder().Add(name, "contents", options).Bytes();
    };
    const std::string one = zip("b17.bmp");
    const auto changed = [&](const char* record, std::size_t at, const char* bytes) {
        std::string archive = one;
        return archive.replace(one.rfind(record) + at, std::strlen(bytes), bytes);
    };
    const struct {
        const char* name;
        std::string bytes;
        bool isPacked = false;
    } rows[] = {
        {"packed", one, true},
        {"packed in another case", zip("B17.BMP"), true},
        {"no archive", "BM and more"},
        {"nothing", ""},
        {"a program with an archive behind it", "MZ program" + one},
        {"an archive behind the start of one", "PK\3\4 rest" + one},
        {"something behind the archive", one + "tail"},
        {"two members", ZipBuilder().Add("b17.bmp", "1").Add("b18.bmp", "2").Bytes()},
        {"another name", zip("b18.bmp")},
        {"in a directory", zip("Texture/b17.bmp")},
        {"a directory", ZipBuilder().Add("b17.bmp/").Bytes()},
        {"with a comment", ZipBuilder().Add("b17.bmp", "1").Comment("mine").Bytes()},
        {"a record with a comment that is not there", changed("PK\1\2", 32, "\1")},
        {"one part of many", changed("PK\5\6", 4, "\1")},
        {"a link", zip("b17.bmp", {.unixMode = 0120777})},
        {"cut", one.substr(0, one.size() - 3)},
        {"damaged", zip("b17.bmp", {.crc = 5})},
        {"with a password", zip("b17.bmp", {.password = "x"})},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        drive.Put(relative, row.bytes);
        const auto rest = Rest();
        EXPECT_EQ(UnzipFileInPlace(context, path, true) == 0, row.isPacked);
        EXPECT_EQ(drive.Get(relative), row.bytes) << "a test changes nothing";
        EXPECT_EQ(UnzipFileInPlace(context, path) == 0, row.isPacked);
        EXPECT_EQ(drive.Get(relative), row.isPacked ? "contents" : row.bytes);
        drive.Put(relative, row.bytes);
        UnzipFilesInPlace(context, {path}, [] {});
        EXPECT_EQ(drive.Get(relative), row.isPacked ? "contents" : row.bytes) << "many at once";
        EXPECT_EQ(Rest(), rest);
    }
    EXPECT_EQ(UnzipFileInPlace(context, ""), 0);
    EXPECT_NE(UnzipFileInPlace(context, drive.At("Hangar\\none.bmp")), 0);
    ZipFileInPlace(context, "");
    user.Expect("There was a problem zipping file " + drive.At("Hangar\\none.bmp") +
                    ". (code 18)  (it could not be read)",
                Answer::Ok, MessageIcon::Exclamation);
    ZipFileInPlace(context, drive.At("Hangar\\none.bmp"));
}

// In both directions, with the Hangar on the simulator's disk and on another.
TEST_F(InPlaceTest, AStopAtAnyPointLeavesTheFileWhole) {
    const std::string plain(50000, 'b');
    const std::string packed = ZipBuilder().Add("b17.bmp", plain).Bytes();
    user.isPatient = true;
    for (const bool isOtherDisk : {false, true}) {
        for (const bool packs : {true, false}) {
            SCOPED_TRACE(packs ? "packing" : "unpacking");
            const int stops = StopAtEachChange(drive.Files(), [&](FaultyFiles& faulty) {
                drive.Put(relative, packs ? plain : packed);
                ASSERT_TRUE(drive.Files().SetReadOnly(path, true));
                faulty.volume = isOtherDisk ? drive.At("Hangar\\") : "";
                CommandContext onFaulty = On(faulty);
                user.transcript.clear();
                int code = 0;
                if (packs)
                    ZipFileInPlace(onFaulty, path);
                else
                    code = UnzipFileInPlace(onFaulty, path);
                const bool isDone = user.transcript.empty();
                if (!isDone) {
                    EXPECT_THAT(user.transcript,
                                testing::ElementsAre(testing::StartsWith(
                                    packs ? "There was a problem zipping file " + path + ". (code "
                                          : "There was a problem unzipping file " + path + ". (code ")));
                }
                const std::string now = drive.Get(relative);
                EXPECT_TRUE(now == plain || UnzipFileInPlace(context, path, true) == 0) << "neither whole nor packed";
                EXPECT_EQ(now == plain, packs != isDone);
                EXPECT_TRUE(packs || (code == 0) == isDone);
                EXPECT_TRUE(drive.Files().Info(path)->readOnly);
            });
            EXPECT_TRUE(user.transcript.empty()) << "nothing disturbed the last run";
            EXPECT_GE(stops, 3);
            CleanScratch(drive.Files(), locations); // the next start
            EXPECT_EQ(drive.Outline("FS"), "aircraft\\");
        }
    }
}

TEST_F(InPlaceTest, AFileThatIsSavedMeanwhileIsLeftAndNamed) {
    const std::string plain(50000, 'b'), packed = ZipBuilder().Add("b17.bmp", plain).Bytes();
    for (const bool packs : {true, false}) {
        SCOPED_TRACE(packs ? "packing" : "unpacking");
        drive.Put(relative, packs ? plain : packed);
        ASSERT_TRUE(drive.Files().SetTime(path, SomeTime));
        FaultyFiles saving(drive.Files());
        saving.FailWhere([&](const std::string& change, const std::string&) {
            if (change == "CopyAttributes")
                drive.Put(relative, "an edit");
            return FileFault::None;
        });
        CommandContext onSaving = On(saving);
        const auto failures =
            packs ? ZipFilesInPlace(onSaving, {path}, [] {}) : UnzipFilesInPlace(onSaving, {path}, [] {});
        EXPECT_EQ(drive.Get(relative), "an edit");
        ASSERT_EQ(failures.size(), 1u);
        EXPECT_THAT(failures.front().text, testing::EndsWith("(it was changed meanwhile)"));
    }
}

TEST_F(InPlaceTest, ASecondKorvadexDoesNotMixUpFilesOfOneName) {
    const std::string other = "Hangar\\Jets\\Other\\Texture\\b17.bmp";
    drive.Put(relative, "one");
    drive.Put(other, "two");
    FaultyFiles shared(drive.Files());
    bool isFirst = true;
    shared.FailWhere([&](const std::string& change, const std::string&) {
        if (change == "CopyAttributes" && std::exchange(isFirst, false))
            ZipFileInPlace(context, drive.At(other));
        return FileFault::None;
    });
    CommandContext sharing{shared, launcher, locations, limits, user, display};
    ZipFileInPlace(sharing, path);
    EXPECT_EQ(UnzipFileInPlace(context, path), 0);
    EXPECT_EQ(UnzipFileInPlace(context, drive.At(other)), 0);
    EXPECT_EQ(drive.Get(relative), "one");
    EXPECT_EQ(drive.Get(other), "two");
}

} // namespace
} // namespace korvadex::test
