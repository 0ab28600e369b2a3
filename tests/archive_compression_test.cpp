#include "archive/compression.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"
#include "tests/support/zip_builder.h"

namespace korvadex::test {
namespace {

class CompressionTest : public CommandTest {
  protected:
    const std::string directory = "Hangar\\Jets\\Lear\\", path = drive.At(directory);
    const std::string marker =
        "2 Meg have been compressed.  All files with .bmp and .gau extentions have been compressed by Korvadex.  "
        "Please do not remove this file.\r\n";

    CompressionTest() {
        int hours = 0;
        for (const auto& [name, bytes] :
             std::map<std::string, std::string>{{"Panel\\p.BMP", std::string(700000, 'p')},
                                                {"Texture\\p.bmp", std::string(900000, 't')},
                                                {"Texture\\empty.bmp", ""},
                                                {"Gauges\\g.gau", "MZ gauge"},
                                                {"Gauges\\c.cab", "MSCF"},
                                                {"aircraft.cfg", "title=x"}}) {
            drive.Put(directory + name, bytes);
            EXPECT_TRUE(drive.Files().SetTime(path + name, FileTime(std::chrono::hours(300000 + ++hours))));
        }
        EXPECT_TRUE(drive.Files().SetReadOnly(path + "Texture\\p.bmp", true));
    }
    auto State() { return drive.States(directory); }
};

TEST_F(CompressionTest, ARoundTripGivesEverythingBack) {
    const auto plain = State();
    ASSERT_THAT(CompressPackage(context, path, true), testing::IsEmpty());
    const auto packed = State();
    EXPECT_EQ(packed.at("KX_Compression.txt").first, marker);
    for (const auto& [name, state] : plain) {
        const bool isPackable = name.ends_with(".gau") || name.ends_with(".bmp") || name.ends_with(".BMP");
        EXPECT_EQ(packed.at(name).first == state.first, !isPackable) << name;
        EXPECT_EQ(packed.at(name).second.time, state.second.time) << name;
    }
    EXPECT_FALSE(display.isProgressVisible);
    ASSERT_THAT(CompressPackage(context, path, true), testing::IsEmpty());
    EXPECT_EQ(drive.Get(directory + "Texture\\p.bmp"), packed.at("Texture\\p.bmp").first);

    ASSERT_THAT(CompressPackage(context, path, false), testing::IsEmpty());
    EXPECT_TRUE(State() == plain);
    EXPECT_EQ(drive.Names("FS"), std::vector<std::string>{"aircraft\\"});
}

TEST_F(CompressionTest, WhatFailsIsNamedAndTheMarkerTellsWhatIsPacked) {
    const auto plain = State();
    const std::string bitmap = path + "Panel\\p.BMP", markerFile = directory + "KX_Compression.txt";
    const struct {
        const char* name;
        bool compress;
        std::string change, part;
        FileFault fault;
        std::vector<std::string> failures;
        bool isMarked;
    } rows[] = {
        {"one in use",
         true,
         "Replace",
         "p.BMP",
         FileFault::InUse,
         {"There was a problem zipping file " + bitmap + ". (code 14)  (another program is using it)"},
         true},
        {"not even room for one",
         false,
         "Write",
         "p.BMP",
         FileFault::DiskFull,
         {"There was a problem unzipping file " + bitmap + ". (code 50)  (the disk is full)"},
         true},
        {"nothing in the way", false, "Write", "none", FileFault::DiskFull, {}, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        FaultyFiles faulty(drive.Files());
        faulty.FailOn(row.change, row.part, row.fault);
        CommandContext onFaulty = On(faulty);
        EXPECT_EQ(CompressPackage(onFaulty, path, row.compress), row.failures);
        EXPECT_EQ(drive.Has(markerFile), row.isMarked);
        EXPECT_TRUE(HasFilesToPack(context, path));
        if (row.isMarked && row.compress) {
            EXPECT_THAT(CompressPackage(context, path, true), testing::IsEmpty());
            EXPECT_FALSE(HasFilesToPack(context, path));
        }
    }
    EXPECT_TRUE(State() == plain);

    FaultyFiles full(drive.Files());
    full.FailWhere(
        [](auto& change, auto&) { return change == "CreateDirectory" ? FileFault::DiskFull : FileFault::None; });
    CommandContext onFull = On(full);
    EXPECT_EQ(CompressPackage(onFull, path, true).size(), 4u);
    EXPECT_TRUE(State() == plain) << "nothing is packed, so nothing says so";

    limits.FileMax = 2;
    EXPECT_THAT(
        CompressPackage(context, path, true),
        testing::ElementsAre(testing::AllOf(testing::StartsWith(path), testing::EndsWith("Nothing was changed."))));
}

TEST_F(CompressionTest, APackedFileThatIsDamagedStaysAndIsNamed) {
    // One that was an archive of itself is unpacked with the others.
    drive.Put(directory + "Texture\\z.bmp", ZipBuilder().Add("z.bmp", "zipped").Bytes());
    const std::string damaged = ZipBuilder().Add("d.bmp", "bytes", {.crc = 5}).Bytes();
    drive.Put(directory + "Texture\\d.bmp", damaged);
    EXPECT_THAT(CompressPackage(context, path, false),
                testing::ElementsAre("There was a problem unzipping file " + path +
                                     "Texture\\d.bmp.  It may be corrupt. (code 2)"));
    EXPECT_EQ(drive.Get(directory + "Texture\\z.bmp"), "zipped");
    EXPECT_EQ(drive.Get(directory + "Texture\\d.bmp"), damaged);
    EXPECT_TRUE(drive.Has(directory + "KX_Compression.txt"));
}

} // namespace
} // namespace korvadex::test
