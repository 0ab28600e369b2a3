#include "archive/compression.h"
#include "archive/in_place.h"
#include "archive/packed_member.h"
#include "package/scratch.h"
#include "platform/windows_path.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"
#include "tests/support/zip_builder.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <random>
#include <zlib.h>

// Memory for a buffer of just this size is refused.
static std::atomic<std::size_t> refusedSize = SIZE_MAX;

void* operator new[](std::size_t size) {
    void* const memory = size == refusedSize ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

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

TEST_F(CompressionTest, WhatCannotBeReadOrHasNoMemoryIsNamedAndStays) {
    const std::string bitmap = path + "Panel\\p.BMP", markerFile = directory + "KX_Compression.txt";
    ASSERT_THAT(CompressPackage(context, path, true), testing::IsEmpty());
    const auto files = [&] {
        auto all = State();
        all.erase("KX_Compression.txt");
        return all;
    };
    const auto packed = files();
    FaultyFiles faulty(drive.Files());
    faulty.unreadable = bitmap;
    CommandContext onFaulty = On(faulty);
    EXPECT_THAT(
        CompressPackage(onFaulty, path, true),
        testing::ElementsAre("There was a problem zipping file " + bitmap + ". (code 18)  (access was denied)"));
    EXPECT_TRUE(files() == packed);
    for (int refused = 1; refused < 4; ++refused) { // as long as another program has it open
        faulty.readsRefused = refused;
        static_cast<void>(CompressPackage(onFaulty, path, true));
        EXPECT_TRUE(files() == packed) << refused;
    }
    faulty.readsRefused = INT_MAX;
    EXPECT_THAT(
        CompressPackage(onFaulty, path, false),
        testing::ElementsAre("There was a problem unzipping file " + bitmap + ". (code 9)  (access was denied)"));
    EXPECT_TRUE(drive.Has(markerFile));
    EXPECT_THAT(CompressPackage(context, path, false), testing::IsEmpty());
    EXPECT_FALSE(drive.Has(markerFile));

    const std::string plain(123'457, 'm'), file = path + "m.bmp", noMemory = " (code 4)  (there was not enough memory)";
    drive.Put(directory + "m.bmp", plain);
    for (const std::size_t refused : {plain.size(), plain.size() + 1}) { // while it is packed, and before that
        refusedSize = refused;
        EXPECT_THAT(CompressPackage(context, path, true),
                    testing::ElementsAre("There was a problem zipping file " + file + "." + noMemory));
        refusedSize = SIZE_MAX;
        EXPECT_EQ(drive.Get(directory + "m.bmp"), plain);
        EXPECT_TRUE(ReadPackedMember(drive.Files(), bitmap)); // the others have their turns
    }
    ASSERT_THAT(CompressPackage(context, path, true), testing::IsEmpty());
    const auto member = ReadPackedMember(drive.Files(), file);
    ASSERT_TRUE(member);
    refusedSize = static_cast<std::size_t>(member->size + member->packedSize);
    EXPECT_THAT(CompressPackage(context, path, false),
                testing::ElementsAre("There was a problem unzipping file " + file + "." + noMemory));
    refusedSize = SIZE_MAX;
    EXPECT_TRUE(ReadPackedMember(drive.Files(), file));
    EXPECT_FALSE(ReadPackedMember(drive.Files(), bitmap));
    EXPECT_TRUE(drive.Has(markerFile));
}

TEST_F(CompressionTest, WhatWasReadAheadIsTakenAsItIsInItsTurn) {
    const std::string skipped = "Hangar\\Jets\\Skipped\\", edited = "Hangar\\Jets\\Edited\\";
    const std::vector<std::string> packages = {path, drive.At(skipped), drive.At(edited)};
    for (const std::string& package : {skipped, edited})
        for (const char* name : {"a.bmp", "b.bmp", "c.bmp"})
            drive.Put(package + name, std::string(5000, 'a'));
    {
        Compression compression(context, true, packages);
        EXPECT_THAT(compression.Take(packages[0]), testing::IsEmpty());
        drive.Put(edited + "a.bmp", std::string(5000, 'b'));
        ASSERT_TRUE(drive.Files().Delete(drive.At(edited + "b.bmp")));
        drive.Put(edited + "d.bmp", "new");
        const auto untouched = drive.States(skipped);
        EXPECT_THAT(compression.Take(packages[2]), testing::IsEmpty());
        EXPECT_TRUE(drive.States(skipped) == untouched);
    }
    EXPECT_FALSE(HasFilesToPack(context, packages[2]));
    Compression unpacking(context, false, packages);
    EXPECT_THAT(unpacking.Take(packages[0]), testing::IsEmpty());
    drive.Put(edited + "c.bmp", "plain by now");
    EXPECT_THAT(unpacking.Take(packages[2]), testing::IsEmpty());
    EXPECT_EQ(drive.Tree(edited), (std::map<std::string, std::string>{
                                      {"a.bmp", std::string(5000, 'b')}, {"c.bmp", "plain by now"}, {"d.bmp", "new"}}));
}

TEST_F(CompressionTest, NothingIsLostWhereABatchEndsOrTheDiskFillsAtAnyPoint) {
    const std::string category = "Hangar\\Jets\\", plain(20000, 'p');
    const std::vector<std::string> packages = {drive.At(category + "One\\"), drive.At(category + "Other\\")};
    const std::vector<std::string> names = {"One\\a.bmp", "One\\b.bmp", "Other\\a.bmp"};
    for (const bool isFull : {false, true}) {
        for (const bool packs : {true, false}) {
            SCOPED_TRACE(packs ? "packing" : "unpacking");
            int changes = 1;
            for (int change = 1; change <= changes; ++change) {
                for (const std::string& name : names)
                    drive.Put(category + name,
                              packs ? plain : ZipBuilder().Add(LastPathComponent(name), plain).Bytes());
                FaultyFiles faulty(drive.Files());
                if (isFull)
                    faulty.FailAt(change, FileFault::DiskFull);
                else
                    faulty.StopAt(change);
                CommandContext onFaulty = On(faulty);
                std::size_t failures = 0;
                {
                    Compression compression(onFaulty, packs, packages);
                    for (const std::string& package : packages)
                        failures += compression.Take(package).size();
                }
                changes = faulty.Changes();
                std::size_t left = 0;
                for (const std::string& name : names) {
                    const bool isPlain = drive.Get(category + name) == plain;
                    EXPECT_TRUE(isPlain || UnzipFileInPlace(context, drive.At(category + name), true) == 0)
                        << name << " after change " << change;
                    left += isPlain == packs;
                }
                EXPECT_EQ(left, failures) << "after change " << change;
            }
            EXPECT_GT(changes, 10);
            CleanScratch(drive.Files(), locations); // the next start
            EXPECT_EQ(drive.Outline("FS"), "aircraft\\");
        }
    }
}

// Painted: dithered, in few shades with some order. Drawn: a few colours in long runs.
TEST_F(CompressionTest, PaintedTexturesPackBetterThanByZlibAndDrawnOnesAsWell) {
    std::mt19937 random(7);
    std::string painted(400000, '\0'), drawn(400000, '\0');
    for (std::size_t i = 0; i < painted.size(); ++i) {
        const std::size_t x = i % 512, y = i / 512;
        painted[i] = static_cast<char>((x / 9 + y / 7) % 24 + (x / 64 + y / 64) % 3 * (random() % 4));
        drawn[i] = static_cast<char>((x * x + y * y) / 40000 + (x % 97 == 0));
    }
    const struct {
        const char* name;
        std::string bytes;
        double atMost;
    } rows[] = {{"painted.bmp", painted, 0.97}, {"drawn.bmp", drawn, 1}};
    for (const auto& row : rows) {
        const auto plainSize = static_cast<uLong>(row.bytes.size());
        uLongf size = compressBound(plainSize);
        std::string byZlib(size, '\0');
        ASSERT_EQ(compress2(reinterpret_cast<Bytef*>(byZlib.data()), &size,
                            reinterpret_cast<const Bytef*>(row.bytes.data()), plainSize, 9),
                  Z_OK);
        drive.Put(row.name, row.bytes);
        ZipFileInPlace(context, drive.At(row.name));
        const auto member = ReadPackedMember(drive.Files(), drive.At(row.name));
        ASSERT_TRUE(member);
        EXPECT_EQ(member->method, 8) << "every version unpacks it";
        EXPECT_LE(static_cast<double>(member->packedSize), static_cast<double>(size) * row.atMost) << row.name;
    }
}

} // namespace
} // namespace korvadex::test
