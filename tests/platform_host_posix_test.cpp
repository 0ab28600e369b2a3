// What only a host with case-sensitive names and without drive letters can get wrong.
#include "platform/drive_map_posix.h"
#include "platform/file_lock.h"
#include "platform/launcher.h"
#include "platform/text_file.h"
#include "platform/user_places.h"
#include "platform/windows_path.h"
#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace korvadex {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class PosixHost : public testing::Test {
  protected:
    fs::path Host(const std::string& relative) { return files.HostPath(drive.At(relative)); }
    // Root may read everything.
    void AsOrdinaryUser(const std::function<void()>& work) {
        const uid_t user = geteuid();
        fs::permissions(Host(""), fs::perms::all);
        ASSERT_TRUE(user != 0 || seteuid(65534) == 0);
        work();
        ASSERT_TRUE(user != 0 || seteuid(0) == 0);
    }

    test::TemporaryDrive drive;
    FileSystem& files = drive.Files();
};

TEST_F(PosixHost, TakesTheExactNameOfTwoThatDifferInCase) {
    const fs::path root = Host("");
    std::ofstream(root / "Readme.txt") << "one";
    std::ofstream(root / "README.TXT") << "two";
    EXPECT_EQ(drive.Get("Readme.txt"), "one");
    EXPECT_EQ(drive.Get("README.TXT"), "two");
    EXPECT_TRUE(files.Delete(drive.At("README.TXT")));
    EXPECT_EQ(drive.Outline(), "Readme.txt=one");
    // A change made by another program is seen, also right after a search in the directory.
    EXPECT_EQ(drive.Get("readme.TXT"), "one");
    const auto time = fs::last_write_time(root);
    fs::rename(root / "Readme.txt", root / "Other.txt");
    fs::last_write_time(root, time); // as in the same tick of the clock
    EXPECT_FALSE(drive.Has("readme.TXT"));
    EXPECT_EQ(drive.Get("OTHER.txt"), "one");
    std::ofstream(root / "New.txt") << "new";
    drive.Put("scratch\\1", "two");
    EXPECT_TRUE(files.Replace(drive.At("scratch\\1"), drive.At("Other.txt")));
    EXPECT_EQ(drive.Get("NEW.txt"), "new") << "a change of our own hides none of another program";
}

TEST_F(PosixHost, ABackslashInANamePartsNothing) {
    drive.Put("panel\\main.bmp", "in panel");
    std::ofstream(Host("") / "panel\\main.bmp") << "in one piece";
    const auto entries = files.List(drive.Root());
    ASSERT_EQ(entries->size(), 2u);
    const std::string path = drive.At((*entries)[1].name);
    EXPECT_EQ(*ReadBytes(files, path), "in one piece");
    EXPECT_EQ(files.PathFromHost(files.HostPath(path)), path);
    EXPECT_TRUE(files.Copy(path, path + ".copy"));
    EXPECT_TRUE(files.Rename(path, drive.At("moved")));
    EXPECT_TRUE(files.Delete(path + ".copy"));
    EXPECT_THAT(drive.Names(), ElementsAre("moved", "panel\\", "panel\\main.bmp"));
}

TEST_F(PosixHost, LeavesNoHalfCopyBehind) {
    drive.Put("big.bin", std::string(2 << 20, 'x'));
    rlimit former{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {1 << 20, former.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const Status copied = files.Copy(drive.At("big.bin"), drive.At("copy.bin"));
    const Status written = WriteBytesWhole(files, drive.At("big.bin"), std::string(3 << 20, 'y'), drive.At("~kx~1"));
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, formerHandler);
    EXPECT_FALSE(copied);
    EXPECT_FALSE(written);
    EXPECT_TRUE(drive.Outline() == "big.bin=" + std::string(2 << 20, 'x'));
}

TEST_F(PosixHost, TellsWhereAnotherVolumeBegins) {
    DriveMap map;
    map.directories['z'] = "";
    const auto root = MakeDriveFileSystem(map);
    for (const auto& entries : {root->List("Z:\\"), root->ListKinds("Z:\\")}) {
        ASSERT_TRUE(entries);
        const auto proc = std::find_if(entries->begin(), entries->end(),
                                       [](const DirectoryEntry& entry) { return entry.name == "proc"; });
        ASSERT_NE(proc, entries->end());
        EXPECT_TRUE(proc->isMountPoint);
    }
}

TEST_F(PosixHost, ListsWhatItMayNotLookAt) {
    drive.Put("aircraft\\panel.cfg", "x");
    fs::permissions(Host("aircraft"), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    AsOrdinaryUser([&] {
        const auto entries = files.List(drive.At("aircraft\\"));
        EXPECT_TRUE(entries && entries->size() == 1 && entries->front().info.kind == EntryKind::Link);
        EXPECT_EQ(FindUserPlaces(files).checkWritable(drive.At("aircraft\\")).fault, FileFault::Denied);
    });
    fs::permissions(Host("aircraft"), fs::perms::owner_all);
    EXPECT_TRUE(FindUserPlaces(files).checkWritable(drive.At("aircraft\\")));
}

TEST_F(PosixHost, WhatCannotBeFlushedReplacesNothing) {
    drive.Fill("", "first=1, second=2, old first=old, old second=old");
    fs::permissions(Host("second"), fs::perms::owner_write);
    AsOrdinaryUser([&] {
        const Replacement replacements[] = {{drive.At("first"), drive.At("old first")},
                                            {drive.At("second"), drive.At("old second")}};
        const auto outcomes = files.ReplaceAll(replacements);
        EXPECT_TRUE(outcomes[0]);
        EXPECT_EQ(outcomes[1].fault, FileFault::Denied);
    });
    EXPECT_EQ(drive.Outline(), "old first=1, old second=old, second=2");
}

TEST_F(PosixHost, KeepsThePermissionsOfARewrittenFile) {
    drive.Put("kx.ini", "old");
    fs::permissions(Host("kx.ini"), fs::perms::owner_read | fs::perms::owner_write);
    const FileTime before = files.Info(drive.At("kx.ini"))->time;
    ASSERT_TRUE(files.SetTime(drive.At("kx.ini"), before - std::chrono::hours(1)));
    EXPECT_TRUE(WriteBytesWhole(files, drive.At("kx.ini"), "new", drive.At("~kx~1")));
    EXPECT_EQ(fs::status(Host("kx.ini")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_GE(files.Info(drive.At("kx.ini"))->time, before);
}

TEST_F(PosixHost, GivesBackModeAndDosAttributes) {
    drive.Put("a.txt", "a");
    drive.MakeDirectory("dir");
    for (const char* name : {"a.txt", "dir"}) {
        const std::string host = Host(name), value = "0x2";
        ASSERT_EQ(chmod(host.c_str(), 02571), 0);
        EXPECT_EQ(*files.Attributes(drive.At(name)), "2571");
        ASSERT_EQ(chmod(host.c_str(), 02771), 0);
        const bool takesMore = setxattr(host.c_str(), "user.DOSATTRIB", value.data(), value.size(), 0) == 0;
        ASSERT_EQ(chmod(host.c_str(), 0550), 0);
        const auto noted = *files.Attributes(drive.At(name));
        EXPECT_EQ(noted, takesMore ? "550:307832" : "550");
        AsOrdinaryUser([&] { EXPECT_EQ(files.SetAttributes(drive.At(name), "640").fault, FileFault::Denied); });
        for (const std::string& text : {std::string("2640"), noted}) {
            EXPECT_TRUE(files.SetAttributes(drive.At(name), text));
            EXPECT_EQ(*files.Attributes(drive.At(name)), text);
        }
    }
}

TEST_F(PosixHost, IsNotHeldUpByPipes) {
    ASSERT_EQ(mkfifo((Host("") / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(files.OpenForReading(drive.At("pipe")));
    EXPECT_FALSE(files.Copy(drive.At("pipe"), drive.At("copy")));
    EXPECT_THAT(drive.Names(), ElementsAre("pipe"));
}

TEST_F(PosixHost, MapsDrivesAsTheEnvironmentSays) {
    drive.MakeDirectory("drives");
    drive.MakeDirectory("drive_c\\Hangar");
    drive.MakeDirectory("drives\\D:"); // stored by the host alone
    fs::create_directory_symlink(Host("drive_c"), Host("drives") / "c:");
    fs::create_directory_symlink("/nowhere", Host("drives") / "e:");
    fs::create_directory(Host("drives") / "com1");
    const char* former = std::getenv("KORVADEX_DRIVES");
    const std::string kept = former ? former : "";
    setenv("KORVADEX_DRIVES", Host("drives").c_str(), 1);
    const auto mapped = MakeHostFileSystem();
    former ? setenv("KORVADEX_DRIVES", kept.c_str(), 1) : unsetenv("KORVADEX_DRIVES");

    EXPECT_THAT(mapped->Drives(), ElementsAre("C:\\", "D:\\"));
    EXPECT_TRUE(mapped->IsDirectory("c:\\hangar\\"));
    EXPECT_EQ(mapped->PathFromHost(Host("drive_c\\Hangar")), "C:\\Hangar");
    EXPECT_EQ(mapped->PathFromHost(Host("drive_c")), "C:\\");
    EXPECT_EQ(mapped->PathFromHost("/usr"), std::nullopt);
    EXPECT_EQ(mapped->SourceFromHost(Host("drive_c\\Hangar")), "C:\\Hangar");
    EXPECT_FALSE(mapped->Info("Q:\\"));
}

TEST_F(PosixHost, WhatNoDriveLeadsToCanBeReadOnly) {
    drive.MakeDirectory("c");
    drive.Put("Else where\\a.zip", "bytes");
    std::ofstream(Host("Else where") / "b\\c.zip") << "more";
    DriveMap map;
    map.directories['c'] = Host("c");
    const auto mapped = MakeDriveFileSystem(map);
    const std::string host = Host("Else where\\a.zip"), path = mapped->SourceFromHost(host);
    EXPECT_EQ(LastPathComponent(path), "a.zip");
    EXPECT_EQ(mapped->HostPath(path), host);
    EXPECT_TRUE(mapped->IsDirectory(ParentDirectory(path)));
    EXPECT_EQ(mapped->Info(path)->size, 5u);
    EXPECT_EQ(*ReadBytes(*mapped, path), "bytes");
    EXPECT_EQ(*ReadBytes(*mapped, mapped->SourceFromHost(Host("Else where") / "b\\c.zip")), "more");
    EXPECT_TRUE(mapped->Copy(path, "C:\\a.zip"));
    EXPECT_EQ(drive.Get("c\\a.zip"), "bytes");
    EXPECT_EQ(mapped->Info(path + "x").fault(), FileFault::NotFound);

    const auto before = drive.Tree();
    for (const Status& status :
         {mapped->Delete(path), mapped->CreateNew(path + "x").status(), mapped->Copy("C:\\a.zip", path + "x"),
          mapped->Rename(path, "C:\\b.zip"), mapped->Rename("C:\\a.zip", path + "x"),
          mapped->Replace("C:\\a.zip", path), mapped->SetReadOnly(path, true), mapped->CreateDirectory(path + "x")})
        EXPECT_EQ(status.fault, FileFault::BadName);
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(PosixHost, AFailureToOpenComesLater) {
    // Stands for the desktop's own, which looks for the right program and may find none.
    drive.Put("bin\\xdg-open", "#!/bin/sh\n"
                               "case $1 in *none*) sleep 0.1; exit 3;;\n"
                               "*viewer*) while [ ! -e \"$1.closed\" ]; do sleep 0.05; done;; esac\n");
    fs::permissions(Host("bin\\xdg-open"), fs::perms::owner_all);
    for (const char* name : {"none.xyz", "viewer.txt", "fine.txt"})
        drive.Put(name, "x");
    const std::string former = std::getenv("PATH");
    setenv("PATH", (Host("bin").string() + ":" + former).c_str(), 1);
    const auto launcher = MakeHostLauncher(files);
    for (const char* name : {"viewer.txt", "none.xyz", "fine.txt"})
        EXPECT_TRUE(IsStarted(launcher->OpenDocument(drive.At(name))));
    EXPECT_FALSE(launcher->OpenInEditor(drive.At("gone.txt")));
    setenv("PATH", former.c_str(), 1);
    std::vector<FailedOpening> failures;
    while (failures.empty() && launcher->IsWaiting())
        failures = launcher->TakeFailures();
    EXPECT_TRUE(launcher->IsWaiting()) << "the viewer is still open, and nothing was waited for";
    drive.Put("viewer.txt.closed", "");
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_EQ(failures[0].path, drive.At("none.xyz"));
    EXPECT_EQ(failures[0].what, OpenedIn::ItsProgram);
    while (launcher->IsWaiting())
        EXPECT_TRUE(launcher->TakeFailures().empty());
}

TEST_F(PosixHost, LocksAreForAllUsers) {
    const auto take = [&] { return TakeFileLock(Host("Shared\\lock")); };
    drive.MakeDirectory("Shared");
    fs::permissions(Host("Shared"), fs::perms::all);
    auto first = take();
    AsOrdinaryUser([&] { EXPECT_EQ(take().outcome, LockOutcome::HeldByOther); });
    // One that may only be read: nobody has it, and then somebody has.
    fs::permissions(Host("Shared\\lock"), fs::perms::owner_all | fs::perms::group_read | fs::perms::others_read);
    AsOrdinaryUser([&] {
        const auto refused = take();
        EXPECT_EQ(refused.outcome, LockOutcome::HeldByOther);
        EXPECT_EQ(refused.holder, HolderOf(drive.Get("Shared\\lock")));
    });
    first.lock.reset();
    drive.Put("Shared\\lock", "left by another user");
    for (int i = 0; i < 2; ++i)
        AsOrdinaryUser([&] { EXPECT_EQ(take().left.user, "left by another user"); });
    fs::remove(Host("Shared\\lock"));
    // Where nothing can be written.
    fs::permissions(Host("Shared"), fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
    AsOrdinaryUser([&] { EXPECT_EQ(take().outcome, LockOutcome::CannotWrite); });
    drive.Put("Shared\\lock", "left by another user");
    AsOrdinaryUser([&] { EXPECT_EQ(take().outcome, LockOutcome::CannotWrite); });
}

} // namespace
} // namespace korvadex
