// "Process ZIP file": an archive and those nested in it, unpacked into Staging, with all that is asked on the way.
#include "archive/process_zip.h"
#include "tests/support/command_fixture.h"
#include "tests/support/faulty_files.h"
#include "tests/support/zip_builder.h"

namespace korvadex::test {
namespace {

using Tree = std::map<std::string, std::string>;

class ProcessTest : public CommandTest {
  protected:
    bool Process(CommandContext& commandContext, const std::string& relative) {
        return ProcessZipFile(commandContext, unzip, lastZipPath, drive.At(relative));
    }
    bool Process(const std::string& relative) { return Process(context, relative); }
    // The whole of Staging after an archive with these bytes went through the command.
    Tree Unpack(const std::string& bytes) {
        drive.Put("in\\p.zip", bytes);
        EXPECT_TRUE(Process("in\\p.zip"));
        EXPECT_EQ(drive.Get("in\\p.zip"), bytes);
        return drive.Tree("Staging");
    }
    std::string Problem(const std::string& relative, int code) {
        return "There was a problem with the zip file(" + drive.At(relative) +
               ").  It may be corrupt. (code " + std::to_string(code) + ")";
    }
    static std::string Question(const std::string& name) {
        return "Found another ZIP file called " + name +
               ".  Should I unzip it as well?  (Usually pick 'Yes')";
    }

    modUnzip unzip;
    std::string lastZipPath = "C:\\before\\";
};

std::string Zip(const Tree& files) {
    ZipBuilder zip;
    for (const auto& [name, bytes] : files)
        zip.Add(name, bytes);
    return zip.Bytes();
}

TEST_F(ProcessTest, UnpacksTheChosenArchiveIntoItsOwnDirectory) {
    drive.Put("Down loads\\My Plane.ZIP",
              Zip({{"Aircraft.cfg", "[fltsim.0]\r\n"}, {"texture/a b.bmp", "BM"}}));
    user.ExpectZipFile(std::nullopt).ExpectZipFile(drive.At("Down loads\\My Plane.ZIP"));
    EXPECT_FALSE(ProcessZipFile(context, unzip, lastZipPath));
    EXPECT_EQ(lastZipPath, "C:\\before\\");
    EXPECT_TRUE(drive.Tree("Staging").empty());
    EXPECT_TRUE(ProcessZipFile(context, unzip, lastZipPath));
    EXPECT_EQ(lastZipPath, drive.At("Down loads\\"));
    EXPECT_EQ(drive.Tree("Staging"), (Tree{{"ZIP_My Plane.ZIP\\", ""},
                                           {"ZIP_My Plane.ZIP\\Aircraft.cfg", "[fltsim.0]\r\n"},
                                           {"ZIP_My Plane.ZIP\\texture\\", ""},
                                           {"ZIP_My Plane.ZIP\\texture\\a b.bmp", "BM"}}));
    EXPECT_NE(unzip.uZipMessage.find("Num Of Members  : 2"), std::string::npos) << unzip.uZipMessage;
}

TEST_F(ProcessTest, NamesOfRealArchivesBecomeFiles) {
    ZipBuilder zip;
    zip.Add("back\\slash\\a.txt", "1");
    zip.Add("gr\x81n.txt", "2");                  // code page 437
    zip.Add("\xD0\x9C\xD0\xB8\xD0\xB3.txt", "3"); // UTF-8 without the flag that says so
    zip.Add("\xC3\xA9.txt", "4", {.hasUtf8Flag = true});
    zip.Add("./dot//twice.txt", "5");
    zip.Add("empty.cfg");
    zip.Add("only/directory/");
    zip.Add("texture\\");
    zip.Add("stored.bin", "6", {.isStored = true});
    zip.Add("plain.txt", "7", {.unixMode = 0100644});
    EXPECT_EQ(Unpack(zip.Bytes()), (Tree{{"ZIP_p.zip\\", ""},
                                         {"ZIP_p.zip\\back\\", ""},
                                         {"ZIP_p.zip\\back\\slash\\", ""},
                                         {"ZIP_p.zip\\back\\slash\\a.txt", "1"},
                                         {"ZIP_p.zip\\dot\\", ""},
                                         {"ZIP_p.zip\\dot\\twice.txt", "5"},
                                         {"ZIP_p.zip\\empty.cfg", ""},
                                         {"ZIP_p.zip\\gr\xC3\xBCn.txt", "2"},
                                         {"ZIP_p.zip\\only\\", ""},
                                         {"ZIP_p.zip\\only\\directory\\", ""},
                                         {"ZIP_p.zip\\plain.txt", "7"},
                                         {"ZIP_p.zip\\stored.bin", "6"},
                                         {"ZIP_p.zip\\texture\\", ""},
                                         {"ZIP_p.zip\\\xC3\xA9.txt", "4"},
                                         {"ZIP_p.zip\\\xD0\x9C\xD0\xB8\xD0\xB3.txt", "3"}}));
}

TEST_F(ProcessTest, FilesGetTheTimesOfTheirMembers) {
    Unpack(ZipBuilder().Add("utc.txt", "x", {.unixTime = 951786061}).Add("dos.txt", "x").Bytes());
    const auto time = [&](const char* name) {
        return drive.Files().Info(drive.At(std::string("Staging\\ZIP_p.zip\\") + name))->time;
    };
    EXPECT_EQ(time("utc.txt"), FileTime(std::chrono::seconds(951786061)));
    // Noon of 5 May 2000 in local time: within half a day of noon UTC or so.
    const auto off = time("dos.txt") - FileTime(std::chrono::seconds(957528000));
    EXPECT_LE(std::chrono::abs(off), std::chrono::hours(14));
}

TEST_F(ProcessTest, NestedArchivesAreUnpackedUntilNoneIsLeft) {
    const std::string deepest = Zip({{"deepest.txt", "3"}});
    const std::string inner = Zip({{"inner.zip", deepest}, {"panel.cfg", "2"}});
    user.Expect(Question("A no.ZIP"), Answer::No, MessageIcon::None)
        .Expect(Question("a.zip"), Answer::Yes, MessageIcon::None)
        .Expect(Question("inner.zip"), Answer::Yes);
    EXPECT_EQ(Unpack(Zip({{"a.zip", inner}, {"A no.ZIP", Zip({{"never", "x"}})}, {"x.txt", "1"}})),
              (Tree{{"ZIP_p.zip\\", ""},
                    {"ZIP_p.zip\\NestedZIP1_a.zip\\", ""},
                    {"ZIP_p.zip\\NestedZIP1_a.zip\\panel.cfg", "2"},
                    {"ZIP_p.zip\\NestedZIP2_inner.zip\\", ""},
                    {"ZIP_p.zip\\NestedZIP2_inner.zip\\deepest.txt", "3"},
                    {"ZIP_p.zip\\x.txt", "1"}}));
}

TEST_F(ProcessTest, TheChosenArchiveIsNotTakenForANestedOne) {
    const std::string bytes = Zip({{"f", "x"}});
    drive.Put("Staging\\ZIP_p.zip\\p.zip", bytes);
    EXPECT_TRUE(Process("Staging\\ZIP_p.zip\\p.zip"));
    EXPECT_EQ(drive.Get("Staging\\ZIP_p.zip\\p.zip"), bytes);
}

TEST_F(ProcessTest, ANestedArchiveThatFailedIsKeptAndAskedAboutOnce) {
    const std::string hostile = Zip({{"../evil.txt", "x"}, {"good.txt", "y"}});
    user.Expect(Question("a.zip"), Answer::Yes)
        .Expect(Problem("Staging\\ZIP_p.zip\\a.zip", 9), Answer::Ok, MessageIcon::Exclamation)
        .Expect(Question("b.zip"), Answer::Yes)
        .Expect("Some files in the zip file(" + drive.At("Staging\\ZIP_p.zip\\b.zip") +
                    ") were not unpacked:\n\n../evil.txt  (its name leads out of the directory)",
                Answer::Ok, MessageIcon::Exclamation);
    EXPECT_EQ(Unpack(Zip({{"a.zip", "no archive"}, {"b.zip", hostile}})),
              (Tree{{"ZIP_p.zip\\", ""},
                    {"ZIP_p.zip\\NestedZIP2_b.zip\\", ""},
                    {"ZIP_p.zip\\NestedZIP2_b.zip\\good.txt", "y"},
                    {"ZIP_p.zip\\a.zip", "no archive"},
                    {"ZIP_p.zip\\b.zip", hostile}}));
}

TEST_F(ProcessTest, AnArchiveThatCannotBeDeletedIsNotOfferedAgain) {
    FaultyFiles faulty(drive.Files());
    faulty.FailWhere([](const std::string& change, const std::string& path) {
        return change == "Delete" && path.ends_with("a.zip") ? FileFault::InUse : FileFault::None;
    });
    CommandContext onFaulty{faulty, launcher, locations, limits, user, window};
    const std::string nested = Zip({{"f", "x"}});
    drive.Put("in\\p.zip", Zip({{"a.zip", nested}, {"b.zip", nested}}));
    user.Expect(Question("a.zip"), Answer::No).Expect(Question("b.zip"), Answer::No);
    EXPECT_TRUE(Process(onFaulty, "in\\p.zip"));
    EXPECT_EQ(drive.Names("Staging"), (std::vector<std::string>{"ZIP_p.zip\\", "ZIP_p.zip\\a.zip"}));
}

TEST_F(ProcessTest, AnExistingFileIsReplacedOnlyAfterAYes) {
    drive.Put("Staging\\ZIP_p.zip\\keep.txt", "old");
    drive.Put("Staging\\ZIP_p.zip\\Take.txt", "old");
    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At("Staging\\ZIP_p.zip\\Take.txt"), true));
    const auto question = [&](const char* name) {
        return "File " + drive.At("Staging\\ZIP_p.zip\\") + name + " exists.  Overwrite?";
    };
    user.Expect(question("keep.txt"), Answer::No, MessageIcon::None)
        .Expect(question("take.txt"), Answer::Yes)
        .Expect(question("PANEL\\b17.BMP"), Answer::No);
    EXPECT_EQ(Unpack(ZipBuilder()
                         .Add("keep.txt", "new")
                         .Add("take.txt", "new")
                         .Add("Panel/B17.bmp", "first")
                         .Add("PANEL/b17.BMP", "second")
                         .Bytes()),
              (Tree{{"ZIP_p.zip\\", ""},
                    {"ZIP_p.zip\\Panel\\", ""},
                    {"ZIP_p.zip\\Panel\\B17.bmp", "first"},
                    {"ZIP_p.zip\\Take.txt", "new"},
                    {"ZIP_p.zip\\keep.txt", "old"}}));
}

TEST_F(ProcessTest, HostileMembersAreRefusedByNameAndTheRestGoesOn) {
    struct Row {
        const char* reason;
        std::vector<const char*> names;
        std::uint32_t unixMode = 0;
    };
    const Row rows[] = {
        {"its name leads out of the directory",
         {"../out.txt", "a/../../out.txt", "a\\..\\..\\out.txt", "/abs.txt", "\\abs.txt", "C:/drive.txt",
          "c:drive.txt", "//host/share/unc.txt", "\\\\host\\share\\unc.txt"}},
        {"its name has a colon", {"texture/stream.bmp:evil"}},
        {"its name is that of a device", {"NUL", "panel/com1.txt", "aux/file.txt"}},
        {"its name cannot be stored", {"trailing.", "blank ", "dir /file.txt", "star*.txt"}},
        {"its name is one of Korvadex's own", {"~kx~scratch/1~half"}},
        {"it is a link", {"link"}, 0120777},
        {"it is no file", {"pipe"}, 0010644},
    };
    for (const auto& row : rows) {
        for (const char* name : row.names) {
            SCOPED_TRACE(name);
            user.Expect("Some files in the zip file(" + drive.At("in\\p.zip") + ") were not unpacked:\n\n" +
                            name + "  (" + row.reason + ")",
                        Answer::Ok, MessageIcon::Exclamation);
            EXPECT_EQ(
                Unpack(
                    ZipBuilder().Add(name, "evil", {.unixMode = row.unixMode}).Add("last.txt", "2").Bytes()),
                (Tree{{"ZIP_p.zip\\", ""}, {"ZIP_p.zip\\last.txt", "2"}}));
            EXPECT_EQ(drive.Names().size(), 8u) << "something lies outside of Staging";
            ASSERT_TRUE(drive.Files().Delete(drive.At("Staging\\ZIP_p.zip\\last.txt")));
        }
    }
    // Of many, not all are named; nor are letters that would spoil the message.
    ZipBuilder zip;
    for (int i = 0; i < 40; ++i)
        zip.Add("../" + std::to_string(i) + std::string(i == 0 ? "\t" : "") +
                    std::string(i == 0 ? 300 : 0, 'x'),
                "x");
    user.Expect("Some files in the zip file(...", Answer::Ok);
    Unpack(zip.Bytes());
    for (const char* part : {"\n../0?x", "x...  (its", "\n../14  (", "\n... and 25 more"})
        EXPECT_NE(user.transcript.back().find(part), std::string::npos) << part;
    EXPECT_EQ(drive.Names().size(), 7u);
}

TEST_F(ProcessTest, WhatStandsInTheWayIsNeitherReplacedNorWrittenThrough) {
    drive.Put("outside\\target.txt", "mine");
    drive.Put("Staging\\ZIP_p.zip\\file", "mine");
    drive.MakeDirectory("Staging\\ZIP_p.zip\\directory");
    const bool hasLinks = drive.MakeLink("Staging\\ZIP_p.zip\\link.txt", "outside\\target.txt") &&
                          drive.MakeLink("Staging\\ZIP_p.zip\\linked", "outside");
    ZipBuilder zip;
    zip.Add("file/in.txt", "evil").Add("directory", "evil");
    std::string reasons = "\n\nfile/in.txt  (a file stands in its way)\n"
                          "directory  (a directory stands in its way)";
    if (hasLinks) {
        zip.Add("link.txt", "evil").Add("linked/new.txt", "evil").Add("linked/target.txt", "evil");
        reasons += "\nlink.txt  (a link stands in its way)\nlinked/new.txt  (a link stands in its way)\n"
                   "linked/target.txt  (a link stands in its way)";
    }
    user.Expect("Some files in the zip file(" + drive.At("in\\p.zip") + ") were not unpacked:" + reasons,
                Answer::Ok);
    drive.Put("in\\p.zip", zip.Bytes());
    EXPECT_TRUE(Process("in\\p.zip"));
    EXPECT_EQ(drive.Tree("outside"), (Tree{{"target.txt", "mine"}}));
    EXPECT_EQ(drive.Get("Staging\\ZIP_p.zip\\file"), "mine");
    EXPECT_TRUE(drive.Files().IsDirectory(drive.At("Staging\\ZIP_p.zip\\directory")));
}

TEST_F(ProcessTest, DamagedArchivesAreReportedAndWhatIsSoundComesOut) {
    const std::string text(5000, 'a');
    const std::string sound = Zip({{"a.txt", text}, {"b.txt", text}});
    std::string scrambled = sound;
    for (std::size_t i = 40; i < 48; ++i)
        scrambled[i] = static_cast<char>(~scrambled[i]);
    struct Row {
        const char* name;
        std::string bytes;
        int code;
        bool hasSound = false; // b.txt is unpacked
    };
    const Row rows[] = {
        {"not an archive", "just text", 9},
        {"no bytes", "", 9},
        {"no members", ZipBuilder().Bytes(), 1},
        {"cut in the middle", sound.substr(0, sound.size() / 2), 51},
        {"cut before the end", sound.substr(0, sound.size() - 30), 51},
        {"wrong CRC", ZipBuilder().Add("a.txt", text, {.crc = 1}).Add("b.txt", text).Bytes(), 2, true},
        {"wrong CRC, stored",
         ZipBuilder().Add("a.txt", text, {.isStored = true, .crc = 1}).Add("b.txt", text).Bytes(), 2, true},
        {"bytes changed", scrambled, 2, true},
        {"promises less", ZipBuilder().Add("a.txt", text, {.size = 10}).Add("b.txt", text).Bytes(), 2, true},
        {"promises more", ZipBuilder().Add("a.txt", text, {.size = 9000}).Add("b.txt", text).Bytes(), 2,
         true},
        {"unknown method", ZipBuilder().Add("a.txt", text, {.method = 6}).Add("b.txt", text).Bytes(), 81,
         true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        user.Expect(Problem("in\\p.zip", row.code), Answer::Ok, MessageIcon::Exclamation);
        const Tree expected = row.hasSound ? Tree{{"ZIP_p.zip\\", ""}, {"ZIP_p.zip\\b.txt", text}} : Tree{};
        EXPECT_EQ(Unpack(row.bytes), expected);
        if (row.hasSound) {
            ASSERT_TRUE(drive.Files().Delete(drive.At("Staging\\ZIP_p.zip\\b.txt")));
            ASSERT_TRUE(drive.Files().RemoveDirectory(drive.At("Staging\\ZIP_p.zip")));
        }
    }
    user.Expect(Problem("in\\none.zip", 9), Answer::Ok);
    EXPECT_TRUE(Process("in\\none.zip"));
}

TEST_F(ProcessTest, APasswordIsAskedForOnceInAWholeRun) {
    const std::string secret(3000, 's');
    const std::string bytes = ZipBuilder()
                                  .Add("a.txt", secret, {.password = "Lear"})
                                  .Add("b.txt", secret, {.isStored = true, .password = "Lear"})
                                  .Bytes();
    user.ExpectText("Please Enter The Password!", "Lear");
    EXPECT_EQ(Unpack(bytes),
              (Tree{{"ZIP_p.zip\\", ""}, {"ZIP_p.zip\\a.txt", secret}, {"ZIP_p.zip\\b.txt", secret}}));
    // The next archive gets none.
    drive.Put("in\\q.zip", bytes);
    user.Expect(Problem("in\\q.zip", 82), Answer::Ok);
    EXPECT_TRUE(Process("in\\q.zip"));
    EXPECT_FALSE(drive.Has("Staging\\ZIP_q.zip"));
}

TEST_F(ProcessTest, WithoutTheRightPasswordNothingIsLeftBehind) {
    const std::string bytes =
        ZipBuilder().Add("d/a.txt", std::string(3000, 's'), {.password = "Lear"}).Bytes();
    // Among so many passwords the first check takes some for right.
    std::vector<std::optional<std::string>> answers = {std::nullopt, "", "lear"};
    for (int i = 0; i < 600; ++i)
        answers.push_back("wrong" + std::to_string(i));
    for (const auto& answer : answers) {
        SCOPED_TRACE(answer.value_or("cancelled"));
        unzip.uPasswordAsked = 0;
        user.ExpectText("Please Enter The Password!", answer).Expect(Problem("in\\p.zip", 82), Answer::Ok);
        ASSERT_TRUE(Unpack(bytes).empty());
    }
}

TEST_F(ProcessTest, AMemberTooBigForMemoryStreams) {
    const std::string zeros(70u << 20, '\0');
    const std::string bytes = ZipBuilder()
                                  .Add("big.bmp", zeros, {.level = 1})
                                  .Add("bad.bmp", zeros, {.level = 1, .crc = 7})
                                  .Bytes();
    drive.Put("in\\p.zip", bytes);
    user.Expect(Problem("in\\p.zip", 2), Answer::Ok);
    EXPECT_TRUE(Process("in\\p.zip"));
    EXPECT_EQ(drive.Names("Staging"), (std::vector<std::string>{"ZIP_p.zip\\", "ZIP_p.zip\\big.bmp"}));
    EXPECT_TRUE(drive.Get("Staging\\ZIP_p.zip\\big.bmp") == zeros);
    EXPECT_EQ(window.progressShown, 1);
    EXPECT_FALSE(window.isProgressVisible);
}

TEST_F(ProcessTest, MembersUnpackedAheadKeepTheirPlaces) {
    ZipBuilder zip;
    Tree expected{{"ZIP_p.zip\\", ""}};
    for (int i = 0; i < 60; ++i) {
        const std::string name = std::to_string(i) + ".bmp";
        // Sizes go up and down, past what a small member is; each has bytes of its own.
        const std::string bytes(static_cast<std::size_t>(i * 7919 % 400000), static_cast<char>('A' + i));
        const bool isBad = i % 20 == 7;
        zip.Add(name, bytes, {.isStored = i % 5 == 0, .crc = isBad ? std::optional(1u) : std::nullopt});
        if (!isBad)
            expected["ZIP_p.zip\\" + name] = bytes;
        if (i % 10 == 3)
            zip.Add("../" + name, "evil");
    }
    user.Expect(Problem("in\\p.zip", 2), Answer::Ok).Expect("Some files in the zip file(...", Answer::Ok);
    EXPECT_TRUE(Unpack(zip.Bytes()) == expected);
}

TEST_F(ProcessTest, AFullDiskIsSaidAndNoHalfFileStays) {
    FaultyFiles faulty(drive.Files());
    CommandContext onFaulty{faulty, launcher, locations, limits, user, window};
    drive.Put("in\\p.zip", Zip({{"a.txt", std::string(4000000, 'a')}, {"b.txt", "b"}, {"c.txt", "c"}}));
    faulty.freeSpace = 1'024'000;
    user.Expect("There is not enough room on the disk for the zip file(" + drive.At("in\\p.zip") +
                    ").  It needs 4 Meg, and 1 Meg are free. (code 50)",
                Answer::Ok, MessageIcon::Exclamation);
    EXPECT_TRUE(Process(onFaulty, "in\\p.zip"));
    EXPECT_TRUE(drive.Tree("Staging").empty());

    // Another program takes the room meanwhile.
    faulty.freeSpace.reset();
    faulty.FailWhere([](const std::string& change, const std::string& path) {
        return change == "Write" && path.ends_with("b.txt") ? FileFault::DiskFull : FileFault::None;
    });
    user.Expect(Problem("in\\p.zip", 50), Answer::Ok)
        .Expect("Some files in the zip file(" + drive.At("in\\p.zip") + ") were not unpacked:\n\nb.txt  (" +
                    DescribeFault(FileFault::DiskFull) + ")",
                Answer::Ok);
    EXPECT_TRUE(Process(onFaulty, "in\\p.zip"));
    EXPECT_EQ(drive.Names("Staging"), (std::vector<std::string>{"ZIP_p.zip\\", "ZIP_p.zip\\a.txt"}));
}

TEST_F(ProcessTest, AFaultWhileReplacingLeavesTheOldFile) {
    const std::string archive = Zip({{"a.txt", "new"}});
    for (int change = 1;; ++change) {
        SCOPED_TRACE(change);
        drive.Put("in\\p.zip", archive);
        drive.Put("Staging\\ZIP_p.zip\\a.txt", "old");
        FaultyFiles faulty(drive.Files());
        faulty.StopAt(change);
        ScriptedUser answers;
        CommandContext asking{faulty, launcher, locations, limits, answers, window};
        modUnzip call;
        call.uPromptOverwrite = 1;
        call.uHonorDirectories = 1;
        call.uZipFileName = drive.At("in\\p.zip");
        call.uExtractDir = drive.At("Staging\\ZIP_p.zip\\");
        if (change > 1) // the first change is the attempt at a new file
            answers.Expect("File ...", Answer::Yes);
        const int code = call.UnzipArchive(asking);
        const std::string now = drive.Get("Staging\\ZIP_p.zip\\a.txt");
        EXPECT_EQ(now, code == 0 ? "new" : "old");
        if (faulty.Changes() < change) {
            EXPECT_EQ(code, 0);
            break;
        }
    }
}

} // namespace
} // namespace korvadex::test
