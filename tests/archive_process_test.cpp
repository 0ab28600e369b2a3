// "Process ZIP file": an archive and those nested in it, unpacked into Staging, with all that is asked on the way.
#include "archive/process_zip.h"
#include "package/file_primitives.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"
#include "tests/support/zip_builder.h"

namespace korvadex::test {
namespace {

class ProcessTest : public CommandTest {
  protected:
    bool Process(CommandContext& commandContext, const std::string& relative) {
        return ProcessZipFile(commandContext, unzip, lastZipPath, drive.At(relative));
    }
    // What lies in Staging after an archive with these bytes went through the command. Nothing lies elsewhere.
    std::string Unpack(const std::string& bytes) {
        drive.Put("in\\p.zip", bytes);
        EXPECT_TRUE(Process(context, "in\\p.zip"));
        EXPECT_EQ(drive.Get("in\\p.zip"), bytes);
        EXPECT_EQ(drive.Outline("FS") + drive.Outline("Hangar"), "aircraft\\");
        return drive.Outline("Staging");
    }
    std::string Unpack(const ZipBuilder& zip) { return Unpack(zip.Bytes()); }
    void EmptyStaging() { EXPECT_TRUE(DeleteTree(context, locations.StagingDir).empty()); }

    ScriptedUser& ExpectProblem(const std::string& relative, int code, const std::string& explanation = "") {
        return user.Expect("There was a problem with the zip file(" + drive.At(relative) +
                               ").  It may be corrupt. (code " + std::to_string(code) + ")" +
                               (explanation.empty() ? "" : "\n\n" + explanation),
                           Answer::Ok, MessageIcon::Exclamation);
    }
    ScriptedUser& ExpectRefusals(const std::string& relative, const std::string& lines) {
        return user.Expect("Some files in the zip file(" + drive.At(relative) + ") were not unpacked:\n\n" + lines,
                           Answer::Ok, MessageIcon::Exclamation);
    }
    ScriptedUser& ExpectQuestion(const std::string& nested, Answer answer) {
        return user.Expect("Found another ZIP file called " + nested +
                               ".  Should I unzip it as well?  (Usually pick 'Yes')",
                           answer, MessageIcon::None);
    }

    modUnzip unzip;
    std::string lastZipPath = "C:\\before\\";
};

constexpr const char* NoArchive = "There is no zip archive in it.";
constexpr const char* WrongPassword =
    "The password that was entered is wrong.  Please process it again to enter another one.";

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
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
    return bytes;
}

// A file name, and the whole of its archive.
std::string Zip(std::string_view name, std::string_view bytes = "x") {
    return ZipBuilder().Add(name, bytes).Bytes();
}

TEST_F(ProcessTest, UnpacksTheChosenArchiveIntoItsOwnDirectory) {
    drive.Put("Down loads\\My Plane.ZIP",
              ZipBuilder().Add("Aircraft.cfg", "[fltsim.0]").Add("texture/a b.bmp", "BM").Bytes());
    user.ExpectZipFile(std::nullopt).ExpectZipFile(drive.At("Down loads\\My Plane.ZIP"));
    EXPECT_FALSE(ProcessZipFile(context, unzip, lastZipPath));
    EXPECT_EQ(lastZipPath, "C:\\before\\");
    EXPECT_EQ(drive.Outline("Staging"), "");
    EXPECT_TRUE(ProcessZipFile(context, unzip, lastZipPath));
    EXPECT_EQ(lastZipPath, drive.At("Down loads\\"));
    EXPECT_EQ(drive.Outline("Staging"),
              "ZIP_My Plane.ZIP\\Aircraft.cfg=[fltsim.0], ZIP_My Plane.ZIP\\texture\\a b.bmp=BM");
    EXPECT_THAT(unzip.uZipMessage, testing::HasSubstr("Num Of Members  : 2"));
}

TEST_F(ProcessTest, NamesOfRealArchivesBecomeFiles) {
    const struct {
        const char *name, *file;
        ZipBuilder::Options options = {};
    } rows[] = {
        {"back\\slash\\a.txt", "back\\slash\\a.txt=x"},
        {"gr\x81n.txt", "grün.txt=x"}, // code page 437
        {"Миг.txt", "Миг.txt=x"},      // UTF-8 without the flag that says so
        {"é.txt", "é.txt=x", {.hasUtf8Flag = true}},
        {"./dot//twice.txt", "dot\\twice.txt=x"},
        {"only/directory/", "only\\directory\\"},
        {"texture\\", "texture\\"},
        {"stored.bin", "stored.bin=x", {.isStored = true}},
        {"plain.txt", "plain.txt=x", {.unixMode = 0100644}},
    };
    for (const auto& row : rows) {
        const bool isDirectory = std::string_view(row.file).ends_with('\\');
        EXPECT_EQ(Unpack(ZipBuilder().Add(row.name, isDirectory ? "" : "x", row.options)),
                  std::string("ZIP_p.zip\\") + row.file);
        EmptyStaging();
    }
    EXPECT_EQ(Unpack(Zip("empty.cfg", "")), "ZIP_p.zip\\empty.cfg=");
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

TEST_F(ProcessTest, WhatOtherProgramsReadIsRead) {
    const std::string stub = "MZ" + std::string(5000, 's'), nested = Zip("inner.txt");
    const ZipBuilder usual = ZipBuilder().Add("a.txt", "1").Add("d/b.txt", std::string(500, 'b'));
    const struct {
        const char* name;
        std::string bytes, files;
    } rows[] = {
        {"behind a program", stub + Zip("a.txt"), "a.txt=x"},
        {"with a comment and a rest", stub + ZipBuilder(usual).Comment("PK\5\6 mine").Bytes() + "rest",
         "a.txt=1, ZIP_p.zip\\d\\b.txt=" + std::string(500, 'b')},
        {"one byte of padding", ZipBuilder().Add("a.txt", "x", {.unixTime = 951786061, .padding = "1"}).Bytes(),
         "a.txt=x"},
        {"three bytes of padding", ZipBuilder().Add("a.txt", "x", {.padding = {3, '\0'}}).Bytes(), "a.txt=x"},
        {"a field longer than all", ZipBuilder().Add("a.txt", "x", {.padding = "ab\x9\1"}).Bytes(), "a.txt=x"},
        {"from a pipe", ZipBuilder().Add("-", "x", {.unixMode = 0010600}).Bytes(), "-=x"},
        {"no UTF-8", ZipBuilder().Add("gr\x81n.txt", "x", {.hasUtf8Flag = true}).Bytes(), "grün.txt=x"},
        {"a stored archive in it", ZipBuilder().Add("n.bin", nested, {.isStored = true}).Bytes(), "n.bin=" + nested},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Unpack(row.bytes), "ZIP_p.zip\\" + row.files);
        EmptyStaging();
    }
}

TEST_F(ProcessTest, WhatIsAuthenticatedIsReadAndTheForgedRefused) {
    std::string flat;
    for (int i = 0; i < 40; ++i)
        flat += "Korvadex ";
    const std::string flatFile = "ZIP_p.zip\\flat.txt=" + flat, keptFile = "ZIP_p.zip\\kept.txt=twenty bytes and a few";
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
        user.ExpectText("Please Enter The Password!", "Lear");
        if (row.changed != 0)
            ExpectProblem("in\\p.zip", 2);
        EXPECT_EQ(Unpack(bytes), row.files);
        EmptyStaging();
    }
}

TEST_F(ProcessTest, NestedArchivesAreUnpackedUntilNoneIsLeft) {
    const std::string inner = ZipBuilder().Add("inner.zip", Zip("deepest.txt", "3")).Add("panel.cfg", "2").Bytes();
    ExpectQuestion("A no.ZIP", Answer::No);
    ExpectQuestion("a.zip", Answer::Yes);
    ExpectQuestion("inner.zip", Answer::Yes);
    EXPECT_EQ(Unpack(ZipBuilder().Add("a.zip", inner).Add("A no.ZIP", Zip("never")).Add("x.txt", "1")),
              "ZIP_p.zip\\NestedZIP1_a.zip\\panel.cfg=2, ZIP_p.zip\\NestedZIP2_inner.zip\\deepest.txt=3, "
              "ZIP_p.zip\\x.txt=1");
}

TEST_F(ProcessTest, TheChosenArchiveIsNotTakenForANestedOne) {
    const std::string bytes = Zip("f");
    drive.Put("Staging\\ZIP_p.zip\\p.zip", bytes);
    EXPECT_TRUE(Process(context, "Staging\\ZIP_p.zip\\p.zip"));
    EXPECT_EQ(drive.Get("Staging\\ZIP_p.zip\\p.zip"), bytes);
}

TEST_F(ProcessTest, ANestedArchiveThatFailedIsKeptAndAskedAboutOnce) {
    const std::string hostile = ZipBuilder().Add("../evil.txt", "x").Add("good.txt", "y").Bytes();
    ExpectQuestion("a.zip", Answer::Yes);
    ExpectProblem("Staging\\ZIP_p.zip\\a.zip", 9, NoArchive);
    ExpectQuestion("b.zip", Answer::Yes);
    ExpectRefusals("Staging\\ZIP_p.zip\\b.zip", "../evil.txt  (its name leads out of the directory)");
    EXPECT_EQ(Unpack(ZipBuilder().Add("a.zip", "no archive").Add("b.zip", hostile)),
              "ZIP_p.zip\\NestedZIP2_b.zip\\good.txt=y, ZIP_p.zip\\a.zip=no archive, ZIP_p.zip\\b.zip=" + hostile);
}

TEST_F(ProcessTest, AnArchiveThatCannotBeDeletedIsNotOfferedAgain) {
    FaultyFiles faulty(drive.Files());
    faulty.FailOn("Delete", "a.zip", FileFault::InUse);
    CommandContext onFaulty = On(faulty);
    drive.Put("in\\p.zip", ZipBuilder().Add("a.zip", "one").Add("b.zip", "two").Bytes());
    ExpectQuestion("a.zip", Answer::No);
    ExpectQuestion("b.zip", Answer::No);
    EXPECT_TRUE(Process(onFaulty, "in\\p.zip"));
    EXPECT_EQ(drive.Outline("Staging"), "ZIP_p.zip\\a.zip=one");
}

TEST_F(ProcessTest, AnExistingFileIsReplacedOnlyAfterAYes) {
    drive.Fill("Staging\\ZIP_p.zip", "keep.txt=old, Take.txt=old");
    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At("Staging\\ZIP_p.zip\\Take.txt"), true));
    const std::string file = "File " + drive.At("Staging\\ZIP_p.zip\\");
    user.Expect(file + "keep.txt exists.  Overwrite?", Answer::No, MessageIcon::None)
        .Expect(file + "take.txt exists.  Overwrite?", Answer::Yes)
        .Expect(file + "PANEL\\b17.BMP exists.  Overwrite?", Answer::No);
    ZipBuilder zip;
    zip.Add("keep.txt", "new").Add("take.txt", "new");
    zip.Add("Panel/B17.bmp", "first").Add("PANEL/b17.BMP", "second");
    EXPECT_EQ(Unpack(zip), "ZIP_p.zip\\Panel\\B17.bmp=first, ZIP_p.zip\\Take.txt=new, ZIP_p.zip\\keep.txt=old");
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
        {"its name is one of Korvadex's own", {"~kx~scratch/1~half"}},
        {"it is a link", {"link"}, 0120777},
        {"it is no file", {"disk"}, 0060644},
    };
    const auto rest = drive.Names();
    for (const auto& row : rows) {
        for (const char* name : row.names) {
            SCOPED_TRACE(name);
            ExpectRefusals("in\\p.zip", std::string(name) + "  (" + row.reason + ")");
            EXPECT_EQ(Unpack(ZipBuilder().Add(name, "evil", {.unixMode = row.unixMode}).Add("last.txt", "2")),
                      "ZIP_p.zip\\last.txt=2");
            EmptyStaging();
            EXPECT_EQ(drive.Names().size(), rest.size() + 2) << "something lies outside of Staging";
        }
    }
    std::string deep = "d/";
    for (int i = 0; i < 10; ++i)
        deep += deep;
    ExpectRefusals("in\\p.zip", "d/d/...  (its name is too long)");
    EXPECT_EQ(Unpack(ZipBuilder().Add(deep + "a.txt", "evil").Add("last.txt", "2")), "ZIP_p.zip\\last.txt=2");
    EmptyStaging();
    // Of many, not all are named; nor are letters that would spoil the message.
    ZipBuilder zip;
    zip.Add("../0\tx" + std::string(300, 'x'), "x");
    for (int i = 1; i < 40; ++i)
        zip.Add("../" + std::to_string(i), "x");
    ExpectRefusals("in\\p.zip", "../0?x...\n../14  (...\n... and 25 more...");
    EXPECT_EQ(Unpack(zip), "");
    EXPECT_THAT(user.transcript.back(), testing::HasSubstr("xx...  (its"));
}

TEST_F(ProcessTest, WhatStandsInTheWayIsNeitherReplacedNorWrittenThrough) {
    drive.Put("outside\\target.txt", "mine");
    drive.Fill("Staging\\ZIP_p.zip", "file=mine, directory\\");
    const bool hasLinks = drive.MakeLink("Staging\\ZIP_p.zip\\link.txt", "outside\\target.txt") &&
                          drive.MakeLink("Staging\\ZIP_p.zip\\linked", "outside");
    const auto before = drive.Tree("Staging");
    std::vector<std::pair<const char*, const char*>> members = {{"file/in.txt", "file"}, {"directory", "directory"}};
    if (hasLinks)
        members.insert(members.end(),
                       {{"link.txt", "link"}, {"linked/new.txt", "link"}, {"linked/target.txt", "link"}});
    ZipBuilder zip;
    std::string reasons;
    for (const auto& [name, obstacle] : members) {
        zip.Add(name, "evil");
        reasons += std::string(reasons.empty() ? "" : "\n") + name + "  (a " + obstacle + " stands in its way)";
    }
    ExpectRefusals("in\\p.zip", reasons);
    Unpack(zip);
    EXPECT_EQ(drive.Tree("Staging"), before);
    EXPECT_EQ(drive.Outline("outside"), "target.txt=mine");
}

TEST_F(ProcessTest, DamagedArchivesAreReportedAndWhatIsSoundComesOut) {
    const std::string text(5000, 'a');
    const std::string sound = ZipBuilder().Add("a.txt", text).Add("b.txt", text).Bytes();
    const auto damaged = [&](const ZipBuilder::Options& options) {
        return ZipBuilder().Add("a.txt", text, options).Add("b.txt", text).Bytes();
    };
    const std::string whole = ZipBuilder().Add("n.bin", Zip("inner.txt"), {.isStored = true}).Bytes();
    const std::string cut = whole.substr(0, whole.size() - 60);
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
        {"cut behind an archive in it", cut, 51},
        {"unknown method", damaged({.method = 6}), 81, true,
         "It is packed with the method implode, which Korvadex cannot unpack.  "
         "Please unpack it into Staging with another program."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ExpectProblem("in\\p.zip", row.code, row.explanation);
        EXPECT_EQ(Unpack(row.bytes), row.hasSound ? "ZIP_p.zip\\b.txt=" + text : "");
        EmptyStaging();
    }
    user.Expect("The zip file(" + drive.At("in\\none.zip") + ") could not be read (it was not found)...");
    EXPECT_FALSE(Process(context, "in\\none.zip"));
}

TEST_F(ProcessTest, APasswordIsAskedForOnceForEachArchiveThatTheLastOneDoesNotOpen) {
    ZipBuilder zip;
    zip.Add("a.txt", std::string(3000, 's'), {.password = "Lear"});
    zip.Add("b.txt", "secret", {.isStored = true, .password = "Lear"});
    user.ExpectText("Please Enter The Password!", "Leer");
    ExpectProblem("in\\p.zip", 82, WrongPassword);
    EXPECT_EQ(Unpack(zip), "");
    const std::string files = "a.txt=" + std::string(3000, 's');
    user.ExpectText("Please Enter The Password!", "Lear");
    EXPECT_EQ(Unpack(zip), "ZIP_p.zip\\" + files + ", ZIP_p.zip\\b.txt=secret");
    EmptyStaging();

    const auto other = ZipBuilder().Add("c.txt", "x", {.password = "Cub"}).Bytes();
    ExpectQuestion("a.zip", Answer::Yes);
    ExpectQuestion("b.zip", Answer::Yes);
    user.ExpectText("Please Enter The Password!", "Cub");
    EXPECT_EQ(Unpack(ZipBuilder().Add("a.zip", zip.Bytes()).Add("b.zip", other)),
              "ZIP_p.zip\\NestedZIP1_a.zip\\" + files +
                  ", ZIP_p.zip\\NestedZIP1_a.zip\\b.txt=secret, ZIP_p.zip\\NestedZIP2_b.zip\\c.txt=x");
}

TEST_F(ProcessTest, WithoutTheRightPasswordNothingIsLeftBehind) {
    const std::string bytes = ZipBuilder().Add("d/a.txt", std::string(3000, 's'), {.password = "Lear"}).Bytes();
    // Among so many passwords the first check takes some for right.
    std::vector<std::optional<std::string>> answers = {std::nullopt, "", "lear"};
    for (int i = 0; i < 600; ++i)
        answers.push_back("wrong" + std::to_string(i));
    for (const auto& answer : answers) {
        SCOPED_TRACE(answer.value_or("cancelled"));
        user.ExpectText("Please Enter The Password!", answer);
        ExpectProblem("in\\p.zip", 82,
                      answer.value_or("").empty() ? "It needs a password, and none was entered." : WrongPassword);
        ASSERT_EQ(Unpack(bytes), "");
    }
}

TEST_F(ProcessTest, AMemberTooBigForMemoryStreams) {
    const std::string zeros(70u << 20, '\0');
    const ZipBuilder::Options sound{.level = 1}, bad{.level = 1, .crc = 7};
    drive.Put("in\\p.zip", ZipBuilder().Add("big.bmp", zeros, sound).Add("bad.bmp", zeros, bad).Bytes());
    ExpectProblem("in\\p.zip", 2);
    EXPECT_TRUE(Process(context, "in\\p.zip"));
    EXPECT_THAT(drive.Names("Staging"), testing::ElementsAre("ZIP_p.zip\\", "ZIP_p.zip\\big.bmp"));
    EXPECT_TRUE(drive.Get("Staging\\ZIP_p.zip\\big.bmp") == zeros);
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
    ExpectProblem("in\\p.zip", 2).Expect("Some files in the zip file(...", Answer::Ok);
    Unpack(zip);
    EXPECT_TRUE(drive.Tree("Staging\\ZIP_p.zip") == expected);
}

TEST_F(ProcessTest, AFullDiskIsSaidAndNoHalfFileStays) {
    FaultyFiles faulty(drive.Files());
    CommandContext onFaulty = On(faulty);
    drive.Put("in\\p.zip",
              ZipBuilder().Add("a.txt", std::string(4000000, 'a')).Add("b.txt", "b").Add("c.txt", "c").Bytes());
    faulty.freeSpace = 1'024'000;
    user.Expect("There is not enough room on the disk for the zip file(" + drive.At("in\\p.zip") +
                    ").  It needs 4 Meg, and 1 Meg are free. (code 50)",
                Answer::Ok, MessageIcon::Exclamation);
    EXPECT_TRUE(Process(onFaulty, "in\\p.zip"));
    EXPECT_EQ(drive.Outline("Staging"), "");

    // Another program takes the room meanwhile.
    faulty.freeSpace.reset();
    faulty.FailOn("Write", "b.txt", FileFault::DiskFull);
    ExpectProblem("in\\p.zip", 50);
    ExpectRefusals("in\\p.zip", std::string("b.txt  (") + DescribeFault(FileFault::DiskFull) + ")");
    EXPECT_TRUE(Process(onFaulty, "in\\p.zip"));
    EXPECT_THAT(drive.Names("Staging"), testing::ElementsAre("ZIP_p.zip\\", "ZIP_p.zip\\a.txt"));
}

TEST_F(ProcessTest, NoMemberStandsHalfUnderItsName) {
    drive.Put("in\\p.zip", ZipBuilder().Add("a.txt", "whole a").Add("d/b.txt", "whole b").Bytes());
    user.isPatient = true;
    StopAtEachChange(drive.Files(), [&](FaultyFiles& faulty) {
        CommandContext stopped = On(faulty);
        EXPECT_TRUE(Process(stopped, "in\\p.zip"));
        for (const auto& [name, bytes] : drive.Tree("Staging"))
            EXPECT_TRUE(name.ends_with('\\') || name.find("~kx~") != std::string::npos || bytes.starts_with("whole "))
                << name;
        EmptyStaging();
    });
}

TEST_F(ProcessTest, ANestedArchiveStaysWhileItsFilesAreNotOnTheDisk) {
    drive.Put("in\\p.zip", ZipBuilder().Add("n.zip", Zip("new.txt")).Bytes());
    for (const char* path : {"new.txt", "NestedZIP1_n.zip"}) {
        FaultyFiles faulty(drive.Files());
        faulty.FailOn("Flush", path, FileFault::DiskFull);
        CommandContext onFaulty = On(faulty);
        ExpectQuestion("n.zip", Answer::Yes);
        user.Expect("The files of the zip file(" + drive.At("Staging\\ZIP_p.zip\\n.zip") +
                        ") could not all be written to the disk:...",
                    MessageIcon::Exclamation);
        EXPECT_TRUE(Process(onFaulty, "in\\p.zip"));
        EXPECT_TRUE(drive.Has("Staging\\ZIP_p.zip\\n.zip"));
        EmptyStaging();
    }
}

TEST_F(ProcessTest, AFaultWhileReplacingLeavesTheOldFile) {
    drive.Put("in\\p.zip", Zip("a.txt", "new"));
    user.isPatient = true;
    StopAtEachChange(drive.Files(), [&](FaultyFiles& faulty) {
        drive.Put("Staging\\ZIP_p.zip\\a.txt", "old");
        CommandContext asking = On(faulty);
        modUnzip call;
        call.uPromptOverwrite = 1;
        call.uHonorDirectories = 1;
        call.uZipFileName = drive.At("in\\p.zip");
        call.uExtractDir = drive.At("Staging\\ZIP_p.zip\\");
        const int code = call.UnzipArchive(asking).code;
        EXPECT_EQ(drive.Get("Staging\\ZIP_p.zip\\a.txt"), code == 0 ? "new" : "old");
    });
    EXPECT_EQ(drive.Get("Staging\\ZIP_p.zip\\a.txt"), "new");
}

} // namespace
} // namespace korvadex::test
