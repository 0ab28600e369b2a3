#include "archive/compression.h"
#include "package/scratch.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"
#include "tests/support/zip_builder.h"

namespace korvadex::test {
namespace {

class CompressionTest : public CommandTest {
  protected:
    const std::string directory = "Hangar\\Jets\\Lear\\", path = drive.At(directory);
    const std::string marker =
        "2 Meg have been compressed.  All files with .bmp and .gau extentions have been compressed by "
        "Korvadex.  Please do not remove this file.\r\n";

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

TEST_F(CompressionTest, ARoundTripGivesEverythingBackWhereverItWasInterrupted) {
    const auto plain = State();
    ASSERT_TRUE(CompressPackage(context, path, true));
    const auto packed = State();
    EXPECT_EQ(packed.at("KX_Compression.txt").first, marker);
    for (const auto& [name, state] : plain) {
        const bool isPackable = name.ends_with(".gau") || name.ends_with(".bmp") || name.ends_with(".BMP");
        EXPECT_EQ(packed.at(name).first == state.first, !isPackable) << name;
        EXPECT_EQ(packed.at(name).second.time, state.second.time) << name;
    }
    EXPECT_FALSE(window.isProgressVisible);
    ASSERT_TRUE(CompressPackage(context, path, true));
    EXPECT_EQ(drive.Get(directory + "Texture\\p.bmp"), packed.at("Texture\\p.bmp").first);

    for (const bool compress : {false, true}) { // from packed to plain and back
        auto expected = compress ? packed : plain;
        expected.erase("KX_Compression.txt");
        user.isPatient = true;
        const int stops = StopAtEachChange(drive.Files(), [&](FaultyFiles& faulty) {
            CommandContext stopped = On(faulty);
            CompressPackage(stopped, path, compress);
            CleanScratch(drive.Files(), locations);
            ASSERT_TRUE(CompressPackage(context, path, compress));
            auto state = State();
            if (compress) {
                EXPECT_EQ(state.at("KX_Compression.txt").first, marker);
            }
            state.erase("KX_Compression.txt");
            ASSERT_TRUE(state == expected);
            ASSERT_TRUE(CompressPackage(context, path, !compress));
        });
        EXPECT_GT(stops, 15);
        ASSERT_TRUE(CompressPackage(context, path, compress));
    }
    EXPECT_EQ(drive.Names("FS"), std::vector<std::string>{"aircraft\\"});
}

TEST_F(CompressionTest, WhatFailsIsNamedAndTheRestGoesOn) {
    const auto plain = State();
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Replace", "p.BMP", FileFault::InUse);
    CommandContext locked = On(faulty);
    user.Expect("There was a problem zipping file " + path + "Panel\\p.BMP. (code 14)",
                MessageIcon::Exclamation);
    ASSERT_TRUE(CompressPackage(locked, path, true));
    EXPECT_EQ(State().at("Panel\\p.BMP"), plain.at("Panel\\p.BMP"));
    EXPECT_TRUE(drive.Has(directory + "KX_Compression.txt"));
    // A bitmap that was an archive of itself is left, and unpacked with the others.
    drive.Put(directory + "Texture\\z.bmp", ZipBuilder().Add("z.bmp", "zipped").Bytes());
    ASSERT_TRUE(CompressPackage(context, path, false));
    EXPECT_EQ(drive.Get(directory + "Texture\\z.bmp"), "zipped");
    auto now = State();
    now.erase("Texture\\z.bmp");
    EXPECT_TRUE(now == plain);

    limits.FileMax = 2;
    user.Expect(path + "\n\n...", MessageIcon::Exclamation);
    EXPECT_FALSE(CompressPackage(context, path, true));
    EXPECT_THAT(user.transcript.back(), testing::EndsWith("Nothing was changed."));
}

} // namespace
} // namespace korvadex::test
