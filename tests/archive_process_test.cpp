// "Process ZIP file": what comes out of sound, strange, damaged and hostile archives. What is asked on the way stands
// in cases/archives.case.
#include "archive/process_zip.h"
#include "package/file_primitives.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"
#include "tests/support/zip_builder.h"

#include <zlib.h>

namespace korvadex::test {
namespace {

class ProcessTest : public CommandTest {
  protected:
    bool Process(CommandContext commandContext) {
        return ProcessZipFile(commandContext, unzip, lastZipPath, drive.At("in\\p.zip")).has_value();
    }
    void EmptyStaging() { EXPECT_TRUE(DeleteTree(context, locations.StagingDir).empty()); }
    // What an archive with these bytes brings into an empty Staging. Nothing changes elsewhere.
    std::string Unpack(const std::string& bytes) {
        EmptyStaging();
        drive.Put("in\\p.zip", bytes);
        const auto before = drive.Tree();
        EXPECT_TRUE(Process(context));
        auto after = drive.Tree();
        std::erase_if(after, [](auto& entry) { return entry.first.starts_with("Staging\\ZIP_p.zip\\"); });
        EXPECT_TRUE(after == before) << "something has changed outside of Staging";
        return drive.Has("Staging\\ZIP_p.zip") ? drive.Outline("Staging\\ZIP_p.zip") : "";
    }
    std::string Unpack(const ZipBuilder& zip) { return Unpack(zip.Bytes()); }

    ScriptedUser& ExpectProblem(int code, const std::string& explanation = "") {
        return user.Expect("There was a problem with the zip file(" + drive.At("in\\p.zip") +
                               ").  It may be corrupt. (code " + std::to_string(code) + ")" +
                               (explanation.empty() ? "" : "\n\n" + explanation),
                           MessageIcon::Exclamation);
    }
    void ExpectRefusals(const std::string& lines) {
        user.Expect("Some files in the zip file(" + drive.At("in\\p.zip") + ") were not unpacked:\n\n" + lines,
                    MessageIcon::Exclamation);
    }
    void ExpectPassword(std::optional<std::string> answer) { user.ExpectText("Please Enter The Password!", answer); }

    modUnzip unzip;
    std::string lastZipPath;
};

constexpr const char* NoArchive = "There is no zip archive in it.";
constexpr const char* WrongPassword =
    "The password that was entered is wrong.  Please process it again to enter another one.";

std::string FromDigits(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
    return bytes;
}

// flat.txt (deflated) and kept.txt (stored) as another program encrypts them, with the second kind of AES.
std::string AesArchive() {
    constexpr std::string_view digits =
        "504b03043300010063000000210000000000330000006801000008000b00666c61742e747874019907000200414501080072"
        "0021d3cc2e0777c2ee136c5b5b954e99277c97535f4b3d66778a56d257504526d76ef0ceb59e416c5be5657c21aca2562ffe"
        "504b030433000100630000002100000000002a0000001600000008000b006b6570742e747874019907000200414501000043"
        "90a1778cc543fd27c13dd5e3cdefaca98b1972dcfee249b95cc546195f8d249c70a9088a6da6d8536b504b01023f03330001"
        "0063000000210000000000330000006801000008000b000000000000002080a48100000000666c61742e7478740199070002"
        "004145010800504b01023f0333000100630000002100000000002a0000001600000008000b000000000000002080a4816400"
        "00006b6570742e7478740199070002004145010000504b0506000000000200020082000000bf0000000000";
    return FromDigits(digits);
}

// An archive of one member.
std::string Zip(std::string_view name, std::string_view bytes = "x", const ZipBuilder::Options& options = {}) {
    return ZipBuilder().Add(name, bytes, options).Bytes();
}

TEST_F(ProcessTest, WhatOtherProgramsPackComesOut) {
    const std::string stub = "MZ" + std::string(5000, 's'), nested = Zip("inner.txt"), text(500, 'b');
    const struct {
        std::string bytes, files;
    } rows[] = {
        {Zip("back\\slash\\a.txt"), "back\\slash\\a.txt=x"},
        {Zip("gr\x81n.txt"), "grün.txt=x"}, // code page 437
        {Zip("Миг.txt"), "Миг.txt=x"},      // UTF-8 without the flag that says so
        {Zip("é.txt", "x", {.hasUtf8Flag = true}), "é.txt=x"},
        {Zip("gr\x81n.txt", "x", {.hasUtf8Flag = true}), "grün.txt=x"}, // it is not
        {Zip("./dot//twice.txt"), "dot\\twice.txt=x"},
        {Zip("only/directory/", ""), "only\\directory\\"},
        {Zip("texture\\", ""), "texture\\"},
        {Zip("empty.cfg", ""), "empty.cfg="},
        {Zip("stored.bin", "x", {.isStored = true}), "stored.bin=x"},
        {Zip("plain.txt", "x", {.unixMode = 0100644}), "plain.txt=x"},
        {Zip("-", "x", {.unixMode = 0010600}), "-=x"}, // from a pipe
        {stub + Zip("a.txt"), "a.txt=x"},              // behind a program
        {stub + ZipBuilder().Add("a.txt", "1").Add("d/b.txt", text).Comment("PK\5\6 mine").Bytes() + "rest",
         "a.txt=1, d\\b.txt=" + text},
        {Zip("1.txt", "x", {.unixTime = 951786061, .padding = "1"}), "1.txt=x"},
        {Zip("3.txt", "x", {.padding = {3, '\0'}}), "3.txt=x"},
        {Zip("a field longer than all", "x", {.padding = "ab\x9\1"}), "a field longer than all=x"},
        {Zip("n.bin", nested, {.isStored = true}), "n.bin=" + nested},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Unpack(row.bytes), row.files);
}

// As another program packs "korvadex " three hundred times.
TEST_F(ProcessTest, MembersOfOtherMethodsAreUnpacked) {
    const struct {
        std::uint16_t method;
        const char* digits;
    } rows[] = {
        {12, "425a6839314159265359eeeff957000258118040002608914020005080600a550d334c2918523e291a291a291b"
             "291c29185230a4745dc914e14243bbbfe55c"},
        {14, "1a0205005d0010000000359bcaac4965885d9bc2912507cc4b3d0f1f92824c41a9827b52495f96bffff4d14000"},
        {95, "fd377a585a0000016922de360200210100000000372797d6e00a8b001e5d00359bcaac4965885d9bc2912507cc"
             "4b3d0f1f92824c41a9827b522e6a5c00000000184cea470001368c1500000053caa7023e300d8b020000000001"
             "595a"},
        {98, "07006b0639a9dc66813328d78a22000441be2a4000"},
    };
    std::string text;
    for (int i = 0; i < 300; ++i)
        text += "korvadex ";
    const auto crc = static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(text.data()), 2700));
    for (const auto& row : rows) {
        SCOPED_TRACE(row.method);
        const auto zip = [&](std::uint32_t claimedCrc, std::uint32_t size, std::size_t cut) {
            const std::string whole = FromDigits(row.digits), packed = whole.substr(0, whole.size() - cut);
            return Zip("a.txt", packed, {.isStored = true, .method = row.method, .crc = claimedCrc, .size = size});
        };
        EXPECT_EQ(Unpack(zip(crc, 2700, 0)), "a.txt=" + text);
        for (const std::string& damaged :
             {zip(crc + 1, 2700, 0), zip(crc, 2699, 0), zip(crc, 2701, 0), zip(crc, 2700, 20)}) {
            user.Expect("There was a problem with the zip file(...", MessageIcon::Exclamation);
            EXPECT_EQ(Unpack(damaged), "");
        }
    }
    // With a dictionary of 4 GB.
    const std::string tooLarge = FromDigits(rows[1].digits).replace(5, 4, "\xFF\xFF\xFF\xFF");
    ExpectProblem(4, "It takes too much memory to unpack it.  Please unpack it into Staging with another program.");
    EXPECT_EQ(Unpack(Zip("a.txt", tooLarge, {.isStored = true, .method = 14, .crc = crc, .size = 2700})), "");
}

TEST_F(ProcessTest, FilesGetTheTimesOfTheirMembers) {
    Unpack(ZipBuilder().Add("utc.txt", "x", {.unixTime = 951786061}).Add("dos.txt", "x"));
    const auto time = [&](const char* name) {
        return drive.Files().Info(drive.At(std::string("Staging\\ZIP_p.zip\\") + name))->time;
    };
    EXPECT_EQ(time("utc.txt"), FileTime(std::chrono::seconds(951786061)));
    // Noon of 5 May 2000 in local time: within half a day of noon UTC or so.
    const auto off = time("dos.txt") - FileTime(std::chrono::seconds(957528000));
    EXPECT_LE(std::chrono::abs(off), std::chrono::hours(14));
}

TEST_F(ProcessTest, WhatIsAuthenticatedIsReadAndTheForgedRefused) {
    std::string flat;
    for (int i = 0; i < 40; ++i)
        flat += "Korvadex ";
    const std::string flatFile = "flat.txt=" + flat, keptFile = "kept.txt=twenty bytes and a few";
    const struct {
        const char* name;
        std::size_t changed; // the byte of the archive
        std::string files;
    } rows[] = {
        {"untouched", 0, flatFile + ", " + keptFile}, {"deflated byte", 75, keptFile},
        {"code of the deflated one", 99, keptFile},   {"stored byte", 160, flatFile},
        {"code of the stored one", 190, flatFile},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::string bytes = AesArchive();
        bytes[row.changed] = static_cast<char>(bytes[row.changed] ^ (row.changed == 0 ? 0 : 1));
        unzip = {};
        ExpectPassword("Lear");
        if (row.changed != 0)
            ExpectProblem(2);
        EXPECT_EQ(Unpack(bytes), row.files);
    }
}

TEST_F(ProcessTest, HostileMembersAreRefusedByNameAndTheRestGoesOn) {
    struct Row {
        const char* reason;
        std::vector<const char*> names;
        std::uint32_t unixMode = 0;
    };
    const Row rows[] = {
        {"its name leads out of the directory",
         {"../out.txt", "a/../../out.txt", "a\\..\\..\\out.txt", "/abs.txt", "\\abs.txt", "C:/drive.txt", "c:drive.txt",
          "//host/share/unc.txt", "\\\\host\\share\\unc.txt"}},
        {"its name has a colon", {"texture/stream.bmp:evil"}},
        {"its name is that of a device", {"NUL", "panel/com1.txt", "aux/file.txt"}},
        {"its name cannot be stored", {"trailing.", "blank ", "dir /file.txt", "star*.txt"}},
        {"its name is one of Korvadex's own", {"~kx~scratch/1~half", "a/~KX~Kept/1/d1/a.txt", "~kx~lock"}},
        {"it is a link", {"link"}, 0120777},
        {"it is no file", {"disk"}, 0060644},
    };
    for (const auto& row : rows) {
        for (const char* name : row.names) {
            SCOPED_TRACE(name);
            ExpectRefusals(std::string(name) + "  (" + row.reason + ")");
            EXPECT_EQ(Unpack(ZipBuilder().Add(name, "evil", {.unixMode = row.unixMode}).Add("last.txt", "2")),
                      "last.txt=2");
        }
    }
    std::string deep;
    for (int i = 700; i > 0; --i)
        deep.append("d").append(std::to_string(i)).append("/");
    deep += "deep.txt";
    ExpectRefusals(deep.substr(0, 200) + "...  (its name is too long)");
    EXPECT_EQ(Unpack(Zip(deep)), "");
    // Of many, not all are named; nor are letters that would spoil the message.
    ZipBuilder zip;
    zip.Add("../0\tx" + std::string(300, 'x'), "x");
    for (int i = 1; i < 40; ++i)
        zip.Add("../" + std::to_string(i), "x");
    ExpectRefusals("../0?x...\n../14  (...\n... and 25 more...");
    EXPECT_EQ(Unpack(zip), "");
    EXPECT_THAT(user.transcript.back(), testing::HasSubstr("xx...  (its"));
}

TEST_F(ProcessTest, DamagedArchivesAreReportedAndWhatIsSoundComesOut) {
    const std::string text(5000, 'a');
    const std::string sound = ZipBuilder().Add("a.txt", text).Add("b.txt", text).Bytes();
    const auto damaged = [&](const ZipBuilder::Options& options) {
        return ZipBuilder().Add("a.txt", text, options).Add("b.txt", text).Bytes();
    };
    const std::string whole = Zip("n.bin", Zip("inner.txt"), {.isStored = true});
    std::string scrambled = sound;
    for (std::size_t i = 40; i < 48; ++i)
        scrambled[i] = static_cast<char>(~scrambled[i]);
    const struct {
        const char* name;
        std::string bytes;
        int code;
        bool hasSound = false; // b.txt is unpacked
        std::string explanation = {};
    } rows[] = {
        {"not an archive", "just text", 9, false, NoArchive},
        {"no bytes", "", 9, false, NoArchive},
        {"no members", ZipBuilder().Bytes(), 1},
        {"cut in the middle", sound.substr(0, sound.size() / 2), 51},
        {"cut before the end", sound.substr(0, sound.size() - 30), 51},
        {"wrong CRC", damaged({.crc = 1}), 2, true},
        {"wrong CRC, stored", damaged({.isStored = true, .crc = 1}), 2, true},
        {"bytes changed", scrambled, 2, true},
        {"promises less", damaged({.size = 10}), 2, true},
        {"promises more", damaged({.size = 9000}), 2, true},
        {"cut behind an archive in it", whole.substr(0, whole.size() - 60), 51},
        {"unknown method", damaged({.method = 6}), 81, true,
         "It is packed with a method of 1989 (implode), which Korvadex cannot unpack.  "
         "Please unpack it into Staging with another program."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ExpectProblem(row.code, row.explanation);
        EXPECT_EQ(Unpack(row.bytes), row.hasSound ? "b.txt=" + text : "");
    }
}

TEST_F(ProcessTest, APasswordIsAskedForOnceForEachArchiveThatTheLastOneDoesNotOpen) {
    const std::string text(3000, 's'), other = Zip("c.txt", "x", {.password = "Cub"});
    ZipBuilder zip;
    zip.Add("a.txt", text, {.password = "Lear"}).Add("b.txt", "secret", {.isStored = true, .password = "Lear"});
    ExpectPassword("Leer");
    ExpectProblem(82, WrongPassword);
    EXPECT_EQ(Unpack(zip), "");
    ExpectPassword("Lear");
    EXPECT_EQ(Unpack(zip), "a.txt=" + text + ", b.txt=secret");

    user.Expect("Found another ZIP file called a.zip...", Answer::Yes);
    user.Expect("Found another ZIP file called b.zip...", Answer::Yes);
    ExpectPassword("Cub");
    EXPECT_EQ(Unpack(ZipBuilder().Add("a.zip", zip.Bytes()).Add("b.zip", other)),
              "NestedZIP1_a.zip\\a.txt=" + text + ", NestedZIP1_a.zip\\b.txt=secret, NestedZIP2_b.zip\\c.txt=x");
}

TEST_F(ProcessTest, OnlyArchivesThatHaveJustComeAreAskedAbout) {
    const std::string own = "Staging\\ZIP_p.zip\\own.zip", again = "Staging\\ZIP_p.zip\\again.zip";
    drive.Put(own, Zip("mine.txt", "x"));
    drive.Put(again, Zip("mine.txt", "x"));
    const std::string kept = drive.Get(own);
    drive.Put("in\\p.zip", ZipBuilder().Add("again.zip", Zip("a.txt", "x")).Add("new.zip", Zip("b.txt", "x")).Bytes());
    user.Expect("File " + drive.At(again) + " exists.  Overwrite?", Answer::Yes);
    user.Expect("Found another ZIP file called again.zip...", Answer::No);
    user.Expect("Found another ZIP file called new.zip...", Answer::Yes);
    EXPECT_TRUE(Process(context));
    EXPECT_EQ(drive.Get(own), kept);
    EXPECT_EQ(drive.Outline("Staging\\ZIP_p.zip\\NestedZIP1_new.zip"), "b.txt=x");
    EXPECT_FALSE(drive.Has(again));
}

TEST_F(ProcessTest, WithoutTheRightPasswordNothingIsLeftBehind) {
    const std::string bytes = Zip("d/a.txt", std::string(3000, 's'), {.password = "Lear"});
    // Among so many passwords the first check takes some for right.
    std::vector<std::optional<std::string>> answers = {std::nullopt, "", "lear"};
    for (int i = 0; i < 600; ++i)
        answers.push_back("wrong" + std::to_string(i));
    for (const auto& answer : answers) {
        SCOPED_TRACE(answer.value_or("cancelled"));
        ExpectPassword(answer);
        ExpectProblem(82, answer.value_or("").empty() ? "It needs a password, and none was entered." : WrongPassword);
        ASSERT_EQ(Unpack(bytes), "");
    }
}

TEST_F(ProcessTest, AMemberTooBigForMemoryStreams) {
    constexpr std::uint32_t size = 70u << 20;
    std::string bytes(size, '\0');
    for (std::uint32_t i = 0; i < size; i += 64) // no two pieces are alike
        bytes[i] = static_cast<char>(i / 64 * 2654435761u >> 24);
    ZipBuilder zip;
    zip.Add("big.bmp", bytes).Add("wrong CRC", bytes, {.isStored = true, .crc = 7});
    zip.Add("more", bytes, {.size = size - 1}).Add("less", "x", {.size = size});
    zip.Add("nonsense", "\xFF\xFF\xFF", {.isStored = true, .method = 8, .size = size});
    drive.Put("in\\p.zip", zip.Bytes());
    ExpectProblem(2);
    EXPECT_TRUE(Process(context));
    EXPECT_THAT(drive.Names("Staging"), testing::ElementsAre("ZIP_p.zip\\", "ZIP_p.zip\\big.bmp"));
    EXPECT_TRUE(drive.Get("Staging\\ZIP_p.zip\\big.bmp") == bytes);
    EXPECT_EQ(display.progressShown, 1);
    EXPECT_FALSE(display.isProgressVisible);
}

TEST_F(ProcessTest, MembersUnpackedAheadKeepTheirPlaces) {
    ZipBuilder zip;
    std::map<std::string, std::string> expected;
    for (int i = 0; i < 60; ++i) {
        const std::string name = std::to_string(i) + ".bmp";
        // Sizes go up and down, past what a small member is; each has bytes of its own.
        const std::string bytes(static_cast<std::size_t>(i * 7919 % 400000), static_cast<char>('A' + i));
        const bool isBad = i % 20 == 7;
        zip.Add(name, bytes, {.isStored = i % 5 == 0, .crc = isBad ? std::optional(1u) : std::nullopt});
        if (!isBad)
            expected[name] = bytes;
        if (i % 10 == 3)
            zip.Add("../" + name, "evil");
    }
    ExpectProblem(2).Expect("Some files in the zip file(...");
    Unpack(zip);
    EXPECT_TRUE(drive.Tree("Staging\\ZIP_p.zip") == expected);
}

TEST_F(ProcessTest, AnArchiveThatHasNoRoomIsNotBegun) {
    FaultyFiles faulty(drive.Files());
    faulty.freeSpace = 1'024'000;
    drive.Put("in\\p.zip", Zip("a.txt", std::string(4000000, 'a')));
    user.Expect("There is not enough room on the disk for the zip file(" + drive.At("in\\p.zip") +
                    ").  It needs 4 Meg, and 1 Meg are free. (code 50)",
                MessageIcon::Exclamation);
    EXPECT_TRUE(Process(On(faulty)));
    EXPECT_EQ(drive.Outline("Staging"), "");
}

TEST_F(ProcessTest, NoFileStandsHalfUnderItsName) {
    drive.Put("in\\p.zip", ZipBuilder().Add("a.txt", "whole a").Add("d/b.txt", "whole b").Bytes());
    user.isPatient = true; // what is there is replaced
    StopAtEachChange(drive.Files(), [&](FaultyFiles& faulty) {
        EmptyStaging();
        drive.Put("Staging\\ZIP_p.zip\\a.txt", "whole and old");
        user.transcript.clear();
        EXPECT_TRUE(Process(On(faulty)));
        const bool isAllThere =
            drive.Get("Staging\\ZIP_p.zip\\a.txt") == "whole a" && drive.Has("Staging\\ZIP_p.zip\\d\\b.txt");
        EXPECT_TRUE(isAllThere || user.transcript.size() > 1) << "nothing but the question was shown";
        for (const auto& [name, bytes] : drive.Tree("Staging"))
            EXPECT_TRUE(name.ends_with('\\') || name.find("~kx~") != std::string::npos || bytes.starts_with("whole "))
                << name;
        EXPECT_TRUE(drive.Has("Staging\\ZIP_p.zip\\a.txt"));
    });
}

} // namespace
} // namespace korvadex::test
