// Archives of other kinds than zip: the same gate and the same writer for all of them.
#include "archive/archive_reader.h"
#include "archive/process_zip.h"
#include "archive/unpack.h"
#include "package/archive_names.h"
#include "package/file_primitives.h"
#include "tests/support/command_fixture.h"
#include "tests/support/container_builder.h"
#include "tests/support/zip_builder.h"

#include <cstring>

namespace korvadex::test {
namespace {

std::vector<std::string> AllKinds() {
    std::vector<std::string> kinds = LibraryKinds;
    kinds.insert(kinds.end(), HandmadeKinds.begin(), HandmadeKinds.end());
    return kinds;
}

class ContainerTest : public CommandTest {
  protected:
    // What comes of these bytes in an empty Staging; nothing changes elsewhere.
    UnpackReport Unpack(const std::string& bytes, const std::string& name = "add-on") {
        EXPECT_TRUE(DeleteTree(context, locations.StagingDir).empty());
        drive.Put("in\\" + name, bytes);
        const auto before = drive.Tree();
        UnpackReport report = korvadex::Unpack(
            {drive.Files(), locations}, {.archive = drive.At("in\\" + name), .target = locations.StagingDir + "Z\\"});
        auto after = drive.Tree();
        std::erase_if(after, [](auto& entry) { return entry.first.starts_with("Staging\\Z\\"); });
        EXPECT_TRUE(after == before) << "something has changed outside of Staging";
        return report;
    }
    std::string Unpacked() { return drive.Has("Staging\\Z") ? drive.Outline("Staging\\Z") : ""; }
    std::string RefusedBy(const UnpackReport& report) {
        std::string text;
        for (const auto& [name, reason] : report.refused)
            text += name + ": " + reason + ";";
        return text;
    }
};

TEST_F(ContainerTest, EachKindComesOutWhateverItIsCalled) {
    const std::string text(5000, 't'), odd("\0\xFF\x1A\r\n", 5);
    for (const std::string& kind : AllKinds()) {
        SCOPED_TRACE(kind);
        ContainerMembers members = {{"a.txt", text}, {"panel/b17.bmp", odd}, {"d/e/empty.cfg"}};
        const UnpackReport report = Unpack(Container(kind, members));
        EXPECT_EQ(report.code, 0);
        EXPECT_EQ(report.memberCount - (kind == "iso" ? 4 : 0), 3u); // a disc has its directories besides
        EXPECT_EQ(report.size, 5005u);
        EXPECT_EQ(Unpacked(), "a.txt=" + text + ", d\\e\\empty.cfg=, panel\\b17.bmp=" + odd);
        const auto time = drive.Files().Info(drive.At("Staging\\Z\\a.txt"))->time;
        EXPECT_LE(std::chrono::abs(time - FileTime(std::chrono::seconds(957528000))), std::chrono::hours(14));
    }
}

TEST_F(ContainerTest, NamesAreReadInUnicodeOrAsOfTheirTime) {
    for (const char* kind : {"rar", "cab"}) {
        SCOPED_TRACE(kind);
        EXPECT_EQ(Unpack(Container(kind, {{"Миг/grün.txt", "x"}})).code, 0);
        EXPECT_EQ(Unpacked(), "Миг\\grün.txt=x");
    }
    for (const char* kind : {"rar4", "lzh"}) {
        SCOPED_TRACE(kind);
        Unpack(Container(kind, {{"gr\x81n.txt", "x"}}));
        EXPECT_EQ(Unpacked(), "grün.txt=x");
    }
    Unpack(Container("lzh", {{"Миг/grün.txt", "1"}, {"表.txt", "2"}}));
    EXPECT_EQ(Unpacked(), "Миг\\grün.txt=1, 表.txt=2");
    // Discs have them in letters of two bytes, or as the Unix had them that made the disc.
    std::string disc = Container("iso", {{"migmig.txt", "1"}});
    disc.replace(disc.find("migmig"), 6, "Миг");
    Unpack(disc);
    EXPECT_EQ(Unpacked(), "Миг.txt=1");
    // Letters of two bytes, the second of which may be that of a separator: no file is taken for a directory.
    Unpack(Container("lzh", {{"\x95\x5C", "1"}, {"\x83\x5C\x8A\xBF.txt", "2"}}));
    EXPECT_EQ(Unpacked(), "â\\è┐.txt=2, ò=1");
    EXPECT_EQ(RefusedBy(Unpack(ZipBuilder().Add("\x95\x5C", "1").Add("\x83\x5C\x8A\xBF.txt", "2").Bytes())),
              "ò\\: its name is that of a directory;");
    EXPECT_EQ(Unpacked(), "â\\è┐.txt=2");
}

TEST_F(ContainerTest, HostileMembersAreRefusedByNameAndTheRestGoesOn) {
    const struct {
        const char* reason;
        std::vector<const char*> names;
    } rows[] = {
        {"its name leads out of the directory",
         {"../out.txt", "a/../../out.txt", "a\\..\\..\\out.txt", "/abs.txt", "\\abs.txt", "C:/drive.txt"}},
        {"its name has a colon", {"texture/stream.bmp:evil"}},
        {"its name is that of a device", {"NUL", "panel/com1.txt"}},
        {"its name cannot be stored", {"trailing.", "star*.txt"}},
        {"its name is one of Korvadex's own", {"~kx~scratch/1~half"}},
    };
    for (const std::string& kind : AllKinds()) {
        for (const auto& [reason, names] : rows) {
            for (const char* name : names) {
                SCOPED_TRACE(kind + " " + name);
                // The writer of discs makes names fit, so that none is hostile; it takes no "..".
                const std::string fitting(std::strlen(name), 'q'), written = kind == "iso" ? fitting : name;
                std::string bytes = Container(kind, {{written, "evil"}, {"last.txt", "2"}});
                if (kind == "iso")
                    bytes.replace(bytes.find(fitting), fitting.size(), name);
                const UnpackReport report = Unpack(bytes);
                EXPECT_EQ(report.code, 0);
                EXPECT_EQ(Unpacked(), "last.txt=2");
                ASSERT_EQ(report.refused.size(), 1u);
                EXPECT_EQ(report.refused[0].reason, reason);
            }
        }
    }
}

TEST_F(ContainerTest, LinksAndDevicesAreNoFiles) {
    const ContainerMembers links = {{"a.txt", "1"}, {"link", "", 0120000, "../secret"}, {"last.txt", "2"}};
    for (const char* kind : {"7z", "tar", "tar.gz", "iso"}) {
        SCOPED_TRACE(kind);
        EXPECT_EQ(RefusedBy(Unpack(Container(kind, links))), "link: it is a link;");
        EXPECT_EQ(Unpacked(), "a.txt=1, last.txt=2");
    }
    const UnpackReport report = Unpack(Container("tar", {{"a.txt", "1"},
                                                         {"hard", "", 0100000, "a.txt"},
                                                         {"out", "", 0100000, "../../secret"},
                                                         {"pipe", "", 0010000},
                                                         {"disk", "", 0060000},
                                                         {"last.txt", "2"}}));
    EXPECT_EQ(RefusedBy(report), "hard: it is a link;out: it is a link;pipe: it is no file;disk: it is no file;");
    EXPECT_EQ(Unpacked(), "a.txt=1, last.txt=2");
    // A link that came first is no way out for the file behind it.
    EXPECT_EQ(RefusedBy(Unpack(Container("tar", {{"d", "", 0120000, "../.."}, {"d/out.txt", "evil"}}))),
              "d: it is a link;");
    EXPECT_EQ(Unpacked(), "d\\out.txt=evil");
}

TEST_F(ContainerTest, SizesThatLieAreErrors) {
    for (const std::string& kind : HandmadeKinds) {
        for (const int more : {-3, 3, 1'000'000}) {
            SCOPED_TRACE(kind + " " + std::to_string(more));
            const std::string bytes = Handmade(kind, {{"a.txt", "12345"}, {"b.txt", "sound"}}, {.moreBytes = more});
            EXPECT_NE(Unpack(bytes).code, 0);
            EXPECT_FALSE(drive.Has("Staging\\Z\\a.txt"));
        }
    }
}

TEST_F(ContainerTest, WhatCannotBeReadSaysWhy) {
    const ContainerMembers members = {{"a.txt", "secret"}};
    const std::string further = "  Please unpack it into Staging with another program.";
    const struct {
        std::string name, bytes, explanation;
    } rows[] = {
        {"e.rar", Handmade("rar", members, {.isEncrypted = true}),
         "It is encrypted in a way that Korvadex cannot read." + further},
        {"e4.rar", Handmade("rar4", members, {.isEncrypted = true}),
         "It is encrypted in a way that Korvadex cannot read." + further},
        // Sound ones of this size are not always unpacked right.
        {"l4.rar", Handmade("rar4", {{"a.txt", std::string(5000, 'k')}}, {.moreBytes = 5'000'000, .isPacked = true}),
         "It is packed in a way that Korvadex cannot unpack." + further},
        {"p.part1.rar", Handmade("rar", members, {.isVolume = true}), IsOnePart},
        {"p.rar", Handmade("rar4", members, {.isVolume = true}), IsOnePart},
        {"p.cab", Handmade("cab", members, {.isVolume = true}), IsOnePart},
        {"p.7z.001", Container("7z", members).substr(0, 40), IsOnePart},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const UnpackReport report = Unpack(row.bytes, row.name);
        EXPECT_EQ(report.code, UnzipCode::Unsupported);
        EXPECT_THAT(report.explanations, testing::ElementsAre(row.explanation));
        EXPECT_EQ(Unpacked(), "");
    }
}

TEST_F(ContainerTest, TheKindIsToldByTheBytes) {
    const std::string nested = ZipBuilder().Add("inner.txt", "x", {.isStored = true}).Bytes();
    for (const std::string& kind : AllKinds()) {
        SCOPED_TRACE(kind);
        EXPECT_EQ(Unpack(Container(kind, {{"n.zip", nested}}), "a.zip").code, 0);
        EXPECT_EQ(Unpacked(), "n.zip=" + nested);
    }
    const std::string stub = "MZ" + std::string(5000, 's');
    for (const char* kind : {"7z", "rar", "rar4"}) {
        SCOPED_TRACE(kind);
        EXPECT_EQ(Unpack(stub + Container(kind, {{"a.txt", "1"}, {"n.zip", nested}}), "a.exe").code, 0);
        EXPECT_EQ(Unpacked(), "a.txt=1, n.zip=" + nested);
    }
    const std::string inner = Container("rar", {{"inner.txt", "x"}});
    EXPECT_EQ(Unpack(stub + ZipBuilder().Add("n.rar", inner, {.isStored = true}).Bytes(), "a.exe").code, 0);
    EXPECT_EQ(Unpacked(), "n.rar=" + inner);
    EXPECT_EQ(Unpack("MZ Rar!\x1A\x07 " + stub + ZipBuilder().Add("a.txt", "1").Bytes(), "a.exe").code, 0);
    EXPECT_EQ(Unpacked(), "a.txt=1");
    const std::string mark("Rar!\x1A\x07\x01\0", 8); // which could be that of an empty archive
    EXPECT_EQ(Unpack(stub + mark + std::string(50, 's') + mark + stub + Container("7z", {{"a.txt", "1"}})).code, 0);
    EXPECT_EQ(Unpacked(), "a.txt=1");
    for (const std::string& bytes : {std::string(2000, '\0'), std::string("\x1F\x8B\x08"), std::string("text")})
        EXPECT_THAT(Unpack(bytes).explanations, testing::ElementsAre("There is no zip archive in it."));
}

TEST_F(ContainerTest, ArchivesInArchivesAreAskedAboutWhenTheyAreArchives) {
    const std::string inner = Container("7z", {{"inner.txt", "x"}});
    const std::string gauge = Handmade("cab", {{"clock.gau", "MZ"}}, {}); // the simulator reads it as it is
    const std::string outer = Container(
        "tar.gz", {{"Panel.7Z", inner}, {"clock.cab", gauge}, {"data.rar", "mine"}, {"setup.exe", "MZ" + inner}});
    drive.Put("in\\Lear.tar.gz", outer);
    user.Expect("Found another ZIP file called Panel.7Z.  Should I unzip it as well?  (Usually pick 'Yes')",
                Answer::Yes);
    modUnzip unzip;
    std::string lastZipPath;
    ASSERT_TRUE(ProcessZipFile(context, unzip, lastZipPath, drive.At("in\\Lear.tar.gz")));
    EXPECT_EQ(drive.Outline("Staging\\ZIP_Lear.tar.gz"),
              "NestedZIP1_Panel.7Z\\inner.txt=x, clock.cab=" + gauge + ", data.rar=mine, setup.exe=MZ" + inner);
    const struct {
        const char *name, *without;
        bool isArchive;
    } rows[] = {{"Lear.ZIP", "Lear", true},
                {"Lear 45.2.tar.gz", "Lear 45.2", true},
                {"Lear 45.2.tgz", "Lear 45.2", true},
                {"Lear.exe", "Lear", false},
                {"7z", "7z", false},
                {"Lear.7z.txt", "Lear.7z", false}};
    for (const auto& [name, without, isArchive] : rows) {
        EXPECT_EQ(WithoutArchiveEnding(name), without);
        EXPECT_EQ(IsArchiveName(name), isArchive) << name;
    }
}

TEST_F(ContainerTest, MoreMemoryThanKorvadexTakesIsNotTaken) {
    constexpr char twoMegabytes = 18, fourGigabytes = 40;
    const auto kinds = [](char dictionary) {
        return std::vector<std::string>{SevenZipOfMemory(dictionary, false), SevenZipOfMemory(dictionary, true),
                                        TarXzOfMemory(dictionary)};
    };
    for (const std::string& bytes : kinds(twoMegabytes)) {
        EXPECT_EQ(Unpack(bytes).code, 0);
        EXPECT_EQ(Unpacked(), "a.txt=secret");
    }
    for (const std::string& bytes : kinds(fourGigabytes)) {
        const UnpackReport report = Unpack(bytes);
        EXPECT_EQ(report.code, UnzipCode::NoMemory);
        EXPECT_THAT(report.explanations,
                    testing::ElementsAre("It takes too much memory to unpack it.  Please unpack it "
                                         "into Staging with another program."));
        EXPECT_EQ(Unpacked(), "");
    }
}

// Files of an archive are whole, or missing and told so.
TEST_F(ContainerTest, CutAndChangedArchivesLeaveNothingHalf) {
    std::string text;
    for (unsigned i = 0; i < 3000; ++i)
        text += static_cast<char>(i * 2654435761u >> 25);
    const ContainerMembers members = {{"a.txt", text}, {"d/b.txt", text + "b"}};
    const std::string all = "a.txt=" + text + ", d\\b.txt=" + text + "b";
    const std::vector<std::string> sums = {"7z", "tar.gz", "tar.bz2", "tar.xz", "rar", "rar4", "lzh", "cab"};
    for (const std::string& kind : AllKinds()) {
        const std::string sound = Container(kind, members);
        const bool hasSum = std::ranges::find(sums, kind) != sums.end();
        const auto check = [&](const std::string& bytes, bool isCut) {
            const UnpackReport report = Unpack(bytes);
            if (!isCut && !hasSum)
                return;
            for (const auto& [name, content] : drive.Tree("Staging"))
                EXPECT_TRUE(name.ends_with('\\') || content == text || content == text + "b") << name;
            EXPECT_TRUE(Unpacked() == all || report.code != 0 || !report.refused.empty());
        };
        for (std::size_t i = 0; i < 24; ++i) {
            SCOPED_TRACE(kind + " " + std::to_string(i));
            check(sound.substr(0, sound.size() * i / 24), true);
            std::string changed = sound;
            auto& byte = changed[(sound.size() * i + sound.size() / 3) / 24];
            byte = static_cast<char>(~byte);
            check(changed, false);
        }
    }
}

} // namespace
} // namespace korvadex::test
