#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>

#include <chrono>

namespace korvadex {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;

// Hosts and file systems keep times at least to the 100 ns of NTFS.
constexpr FileTime SomeTime =
    FileTime(std::chrono::sys_days(std::chrono::year(2001) / 10 / 25)) + 12h + 34min + 56s + 123'456'700ns;

class Files : public testing::Test {
  protected:
    FileFault CreateNew(const std::string& relative, std::string_view bytes = "new") {
        auto file = files.CreateNew(drive.At(relative));
        if (!file)
            return file.fault();
        EXPECT_TRUE((*file)->Write(std::as_bytes(std::span(bytes.data(), bytes.size()))));
        EXPECT_TRUE((*file)->Flush());
        return (*file)->Close(true).fault;
    }
    FileFault Copy(const std::string& from, const std::string& to) {
        return files.Copy(drive.At(from), drive.At(to)).fault;
    }
    FileFault Rename(const std::string& from, const std::string& to) {
        return files.Rename(drive.At(from), drive.At(to)).fault;
    }
    FileFault Replace(const std::string& from, const std::string& to) {
        return files.Replace(drive.At(from), drive.At(to)).fault;
    }
    FileFault Delete(const std::string& relative) { return files.Delete(drive.At(relative)).fault; }

    test::TemporaryDrive drive;
    FileSystem& files = drive.Files();
};

TEST_F(Files, AreFoundInAnyCase) {
    drive.Put("Hangar\\Jets\\Größe.TXT", "bytes");
    EXPECT_EQ(drive.Get("HANGAR\\jets\\GRÖßE.txt"), "bytes");
    EXPECT_TRUE(files.IsDirectory(drive.At("hangar\\JETS\\")));
    EXPECT_FALSE(files.IsDirectory(drive.At("Hangar\\Jets\\Größe.TXT")));
    EXPECT_EQ(files.Info(drive.At("Hangar\\Props\\a.txt")).fault(), FileFault::NotFound);
    EXPECT_EQ(files.List(drive.At("Hangar\\Props")).fault(), FileFault::NotFound);
    EXPECT_EQ(files.OpenForReading(drive.At("none")).fault(), FileFault::NotFound);
}

TEST_F(Files, TakeTheNameOfAnExistingOneInAnotherCase) {
    drive.Put("Panel\\Panel.CFG", "old");
    EXPECT_EQ(CreateNew("panel\\PANEL.cfg"), FileFault::Exists);
    EXPECT_EQ(CreateNew("panel"), FileFault::Exists);
    EXPECT_EQ(files.CreateDirectory(drive.At("PANEL")).fault, FileFault::Exists);
    EXPECT_EQ(files.CreateDirectory(drive.At("Panel\\panel.cfg")).fault, FileFault::Exists);
    EXPECT_EQ(CreateNew("PANEL\\new.txt"), FileFault::None);
    EXPECT_EQ(drive.Outline(), "Panel\\Panel.CFG=old, Panel\\new.txt=new");
    EXPECT_EQ(CreateNew("absent\\new.txt"), FileFault::NotFound);
}

TEST_F(Files, AreNeverReplacedByARenameOrACopy) {
    drive.Fill("", "a.txt=a, B.TXT=b, full\\c.txt=c, empty\\");
    const auto before = drive.Tree();
    for (const char* target : {"B.TXT", "b.txt", "full", "EMPTY", "FULL\\C.TXT"}) {
        EXPECT_EQ(Rename("a.txt", target), FileFault::Exists) << target;
        EXPECT_EQ(Copy("a.txt", target), FileFault::Exists) << target;
    }
    for (const char* target : {"a.txt", "EMPTY", "empty"})
        EXPECT_EQ(Rename("full", target), FileFault::Exists) << target;
    EXPECT_EQ(Copy("a.txt", "A.TXT"), FileFault::Exists) << "onto itself";
    for (const auto& [from, to] : {std::pair("none", "b.txt"), std::pair("a.txt", "none\\a.txt")}) {
        EXPECT_EQ(Rename(from, to), FileFault::NotFound);
        EXPECT_EQ(Copy(from, to), FileFault::NotFound);
    }
    EXPECT_NE(Copy("full", "full2"), FileFault::None);
    EXPECT_EQ(drive.Tree(), before);

    EXPECT_EQ(Rename("a.txt", "FULL\\d.txt"), FileFault::None);
    EXPECT_EQ(Rename("FULL", "empty\\moved"), FileFault::None);
    EXPECT_EQ(Rename("b.txt", "b.Txt"), FileFault::None) << "the case of a name alone can change";
    EXPECT_EQ(Rename("EMPTY", "eMPTY"), FileFault::None);
    EXPECT_EQ(drive.Outline(), "b.Txt=b, eMPTY\\moved\\c.txt=c, eMPTY\\moved\\d.txt=a");
}

TEST_F(Files, AreReplacedInOneStepOrStayAsTheyAre) {
    drive.Fill("", "kx.ini=old, ~kx1=new");
    EXPECT_EQ(Replace("~kx1", "KX.INI"), FileFault::None);
    EXPECT_EQ(drive.Outline(), "kx.ini=new");

    drive.Fill("", "~kx2=newer, ~kx3=first");
    ASSERT_TRUE(files.SetReadOnly(drive.At("kx.ini"), true));
    EXPECT_EQ(Replace("~kx2", "kx.ini"), FileFault::None) << "a read-only file can be replaced";
    EXPECT_EQ(Replace("~kx3", "other.ini"), FileFault::None);
    EXPECT_EQ(drive.Outline(), "kx.ini=newer, other.ini=first");

    drive.Fill("", "dir\\a=a, empty\\");
    ASSERT_TRUE(files.SetReadOnly(drive.At("kx.ini"), true));
    const auto before = drive.Tree();
    EXPECT_EQ(Replace("none", "kx.ini"), FileFault::NotFound);
    EXPECT_NE(Replace("kx.ini", "dir"), FileFault::None);
    EXPECT_NE(Replace("kx.ini", "empty"), FileFault::None);
    EXPECT_NE(Replace("empty", "kx.ini"), FileFault::None);
    EXPECT_EQ(drive.Tree(), before);
    EXPECT_TRUE(files.Info(drive.At("kx.ini"))->readOnly);
}

TEST_F(Files, AreCopiedWithTimeAndAttributes) {
    std::string bytes(3'000'000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 7 >> 3);
    for (const bool readOnly : {false, true}) {
        const std::string from = readOnly ? "ro.bin" : "rw.bin", to = "copy of " + from;
        drive.Put(from, bytes);
        ASSERT_TRUE(files.SetTime(drive.At(from), SomeTime));
        ASSERT_TRUE(files.SetReadOnly(drive.At(from), readOnly));
        EXPECT_EQ(Copy(from, to), FileFault::None);
        EXPECT_TRUE(drive.Get(to) == bytes);
        EXPECT_EQ(*files.Info(drive.At(to)), (FileInfo{EntryKind::File, bytes.size(), SomeTime, readOnly}));
    }
    drive.Put("empty.txt", "");
    EXPECT_EQ(Copy("empty.txt", "empty2.txt"), FileFault::None);
    EXPECT_EQ(drive.Get("empty2.txt"), "");
}

TEST_F(Files, KeepTimeAndAttributesWhenTheyAreGiven) {
    drive.Fill("", "a=1, b=22, dir\\");
    for (const FileTime time : {FileTime(std::chrono::sys_days(std::chrono::year(1969) / 12 / 31)) + 100ns, SomeTime}) {
        EXPECT_TRUE(files.SetTime(drive.At("A"), time));
        EXPECT_EQ(files.Info(drive.At("a"))->time, time);
        EXPECT_EQ(files.List(drive.Root())->at(0).info.time, time);
    }
    EXPECT_TRUE(files.SetTime(drive.At("dir\\"), SomeTime));
    EXPECT_EQ(*files.Info(drive.At("dir")), (FileInfo{EntryKind::Directory, 0, SomeTime, false}));
    EXPECT_TRUE(files.SetReadOnly(drive.At("a"), true));
    EXPECT_TRUE(files.CopyAttributes(drive.At("a"), drive.At("b")));
    EXPECT_EQ(*files.Info(drive.At("b")), (FileInfo{EntryKind::File, 2, SomeTime, true}));
    EXPECT_TRUE(files.ClearAttributes(drive.At("B")));
    EXPECT_FALSE(files.Info(drive.At("b"))->readOnly);
}

TEST_F(Files, GetBackTheAttributesThatWereNoted) {
    drive.Fill("", "ro.txt=1, rw.txt=22, dir\\");
    ASSERT_TRUE(files.SetReadOnly(drive.At("ro.txt"), true));
    for (const char* name : {"ro.txt", "rw.txt", "dir"}) {
        const auto noted = files.Attributes(drive.At(name));
        ASSERT_TRUE(noted && !noted->empty()) << name;
        EXPECT_EQ(noted->find_first_of(" \t\r\n"), std::string::npos);
        const FileInfo before = *files.Info(drive.At(name));
        ASSERT_TRUE(files.SetReadOnly(drive.At(name), !before.readOnly));
        EXPECT_EQ(files.SetAttributes(drive.At(name), "?").fault, FileFault::Failed);
        EXPECT_TRUE(files.SetAttributes(drive.At(name), *noted));
        EXPECT_EQ(*files.Info(drive.At(name)), before);
        EXPECT_EQ(*files.Attributes(drive.At(name)), *noted);
    }
    EXPECT_EQ(files.Attributes(drive.At("none")).fault(), FileFault::NotFound);
    EXPECT_EQ(files.SetAttributes(drive.At("none"), "1").fault, FileFault::NotFound);
}

TEST_F(Files, CanHaveASecondName) {
    drive.Fill("", "a.txt=a, B.TXT=b, dir\\");
    const auto link = [&](const char* from, const char* to) { return files.Link(drive.At(from), drive.At(to)).fault; };
    EXPECT_EQ(link("A.txt", "b.txt"), FileFault::Exists);
    EXPECT_EQ(link("a.txt", "DIR"), FileFault::Exists);
    EXPECT_EQ(link("none", "c.txt"), FileFault::NotFound);
    EXPECT_EQ(link("a.txt", "none\\a.txt"), FileFault::NotFound);
    EXPECT_NE(link("dir", "dir2"), FileFault::None);
    EXPECT_EQ(link("A.TXT", "dir\\Second.txt"), FileFault::None);
    drive.Fill("", "new=new");
    EXPECT_EQ(Replace("new", "a.txt"), FileFault::None);
    EXPECT_EQ(drive.Outline(), "B.TXT=b, a.txt=new, dir\\Second.txt=a") << "it holds what the first one was";
}

TEST_F(Files, AreDeletedOnlyWhereThatIsMeant) {
    drive.Fill("", "ro.txt=keep, rw.txt=go, dir\\a.txt=keep, empty\\");
    ASSERT_TRUE(files.SetReadOnly(drive.At("ro.txt"), true));
    EXPECT_EQ(Delete("RO.txt"), FileFault::Denied);
    EXPECT_NE(Delete("empty"), FileFault::None);
    EXPECT_EQ(Delete("none"), FileFault::NotFound);
    EXPECT_EQ(files.RemoveDirectory(drive.At("dir\\")).fault, FileFault::NotEmpty);
    EXPECT_EQ(files.RemoveDirectory(drive.At("rw.txt")).fault, FileFault::NotFound) << "it is no directory";
    EXPECT_EQ(Delete("RW.txt"), FileFault::None);
    EXPECT_TRUE(files.RemoveDirectory(drive.At("EMPTY\\")));
    EXPECT_EQ(drive.Outline(), "dir\\a.txt=keep, ro.txt=keep");
}

TEST_F(Files, AreListedInOneOrder) {
    for (const char* name : {"b.txt", "A.txt", "_x", "é", "Z", "a-1", "1"})
        drive.Put(std::string("many\\") + name, "12345");
    drive.MakeDirectory("many\\Middle");
    const auto entries = files.List(drive.At("Many"));
    ASSERT_TRUE(entries);
    std::vector<std::string> names;
    for (const DirectoryEntry& entry : *entries)
        names.push_back(entry.name);
    ASSERT_THAT(names, ElementsAre("1", "_x", "a-1", "A.txt", "b.txt", "Middle", "Z", "é"));
    EXPECT_EQ(entries->at(3).info, *files.Info(drive.At("many\\a.TXT")));
    EXPECT_EQ(entries->at(5).info.kind, EntryKind::Directory);
    EXPECT_EQ(files.List(drive.At("many\\1")).fault(), FileFault::NotFound) << "a file has no entries";
    const auto kinds = files.ListKinds(drive.At("Many"));
    ASSERT_TRUE(kinds && kinds->size() == entries->size());
    for (std::size_t i = 0; i < kinds->size(); ++i) {
        EXPECT_EQ(kinds->at(i).name, names[i]);
        EXPECT_EQ(kinds->at(i).info.kind, entries->at(i).info.kind);
    }
}

TEST_F(Files, MayHaveLongPathsAndForeignNames) {
    std::string directory;
    for (const char letter : std::string("abcdefgh")) {
        directory += std::string(50, letter) + "\\";
        ASSERT_TRUE(files.CreateDirectory(drive.At(directory)));
    }
    const std::string name = directory + "Größe Ω Лир 日本 🛩.txt";
    EXPECT_EQ(CreateNew(name, "bytes"), FileFault::None);
    EXPECT_EQ(drive.Outline(directory), "Größe Ω Лир 日本 🛩.txt=bytes");
    EXPECT_EQ(Copy(name, directory + "copy"), FileFault::None);
    EXPECT_EQ(Rename(directory + "copy", directory + "renamed"), FileFault::None);
    EXPECT_EQ(Replace(directory + "renamed", name), FileFault::None);
    EXPECT_EQ(drive.Get(name), "bytes");
    EXPECT_EQ(Delete(name), FileFault::None);
    EXPECT_TRUE(files.RemoveDirectory(drive.At(directory)));
}

TEST_F(Files, AreReachedByPlainPathsOnly) {
    drive.Put("dir\\a.txt", "a");
    // What the host itself would make of these is no business of the program.
    for (const char* path : {"dir\\..\\dir\\a.txt", "dir\\.\\a.txt", "dir/a.txt"})
        EXPECT_FALSE(files.Info(drive.At(path))) << path;
    for (const char* path : {"", "a.txt", "\\dir\\a.txt", "\\\\?\\C:\\", "/", "C:", "C:a.txt"}) {
        EXPECT_EQ(files.Info(path).fault(), FileFault::BadName) << path;
        EXPECT_EQ(files.CreateNew(path).fault(), FileFault::BadName) << path;
    }
    EXPECT_EQ(CreateNew("dir\\.."), FileFault::BadName);
    EXPECT_EQ(CreateNew("dir\\..\\b.txt"), FileFault::BadName);
    EXPECT_EQ(CreateNew("dir/b.txt"), FileFault::BadName);
    EXPECT_EQ(drive.Get("dir\\\\a.txt"), "a");
    EXPECT_EQ(drive.Outline(), "dir\\a.txt=a");
}

TEST_F(Files, AreNotReachedThroughLinksThemselves) {
    drive.Fill("", "target\\a.txt=a, b.txt=b, new.txt=new, gone.txt=x");
    if (!drive.MakeLink("link", "target") || !drive.MakeLink("b link", "b.txt") ||
        !drive.MakeLink("to nothing", "gone.txt"))
        GTEST_SKIP() << "this Windows makes no links";
    EXPECT_EQ(files.Info(drive.At("LINK"))->kind, EntryKind::Link);
    EXPECT_EQ(files.Info(drive.At("b link"))->kind, EntryKind::Link);
    // A location may be a link, and a way to an entry may lead through one.
    EXPECT_TRUE(files.IsDirectory(drive.At("link\\")));
    EXPECT_EQ(drive.Outline("link"), "a.txt=a");

    EXPECT_EQ(Copy("b link", "copy.txt"), FileFault::IsLink);
    EXPECT_EQ(files.OpenForReading(drive.At("b link")).fault(), FileFault::IsLink);
    ASSERT_EQ(Delete("gone.txt"), FileFault::None);
    for (const char* link : {"b link", "to nothing"}) {
        EXPECT_EQ(CreateNew(link), FileFault::Exists);
        EXPECT_EQ(files.CreateDirectory(drive.At(link)).fault, FileFault::Exists);
    }
    EXPECT_EQ(Delete("to nothing"), FileFault::None);
    EXPECT_EQ(Copy("new.txt", "b link"), FileFault::Exists);
    EXPECT_EQ(Rename("new.txt", "B LINK"), FileFault::Exists);
    EXPECT_NE(files.SetReadOnly(drive.At("b link"), true).fault, FileFault::None);
    EXPECT_FALSE(files.Info(drive.At("b.txt"))->readOnly);
    EXPECT_EQ(*files.Attributes(drive.At("b link")), "");
    EXPECT_TRUE(files.SetAttributes(drive.At("b link"), *files.Attributes(drive.At("new.txt"))));
    EXPECT_EQ(files.Link(drive.At("b link"), drive.At("second")).fault, FileFault::IsLink);
    EXPECT_NE(files.RemoveDirectory(drive.At("link")).fault, FileFault::None);
    EXPECT_EQ(Rename("link", "moved link"), FileFault::None);
    EXPECT_EQ(Delete("moved link"), FileFault::None);
    EXPECT_EQ(Delete("b link"), FileFault::None);
    EXPECT_EQ(drive.Outline(), "b.txt=b, new.txt=new, target\\a.txt=a");
}

TEST_F(Files, LieOnDrives) {
    EXPECT_THAT(files.Drives(), testing::Contains("C:\\"));
    EXPECT_TRUE(files.IsDirectory("c:\\"));
    EXPECT_GT(*files.FreeSpace(drive.Root()), 0u);
    EXPECT_TRUE(files.SameVolume(drive.At("not\\there\\yet"), drive.Root()));
    drive.Put("Sub\\a.txt", "a");
    EXPECT_EQ(files.Info(*files.PathFromHost(files.HostPath(drive.At("sub\\A.txt"))))->size, 1u);
}

} // namespace
} // namespace korvadex
