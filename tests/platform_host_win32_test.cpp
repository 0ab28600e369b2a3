// What only the Windows calls can get wrong.
#include "platform/launcher.h"
#include "platform/text_file.h"
#include "platform/win32.h"
#include "platform/windows_path.h"
#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>

namespace korvadex {
namespace {

class WindowsFiles : public testing::Test {
  protected:
    DWORD Attributes(const char* relative) { return GetFileAttributesW(ExtendedPath(drive.At(relative))->c_str()); }
    void SetAttributes(const char* relative, DWORD attributes) {
        ASSERT_TRUE(SetFileAttributesW(ExtendedPath(drive.At(relative))->c_str(), attributes));
    }

    test::TemporaryDrive drive;
    FileSystem& files = drive.Files();
};

TEST_F(WindowsFiles, RefuseNamesThatOtherProgramsCannotOpen) {
    drive.Put("a.txt", "a");
    for (const char* name : {"nul", "com1.txt", "b.", "b ", "b:c", "b?"}) {
        EXPECT_EQ(files.CreateNew(drive.At(name)).fault(), FileFault::BadName) << name;
        EXPECT_EQ(files.CreateDirectory(drive.At(name)).fault, FileFault::BadName) << name;
        EXPECT_EQ(files.Copy(drive.At("a.txt"), drive.At(name)).fault, FileFault::BadName) << name;
        EXPECT_EQ(files.Rename(drive.At("a.txt"), drive.At(name)).fault, FileFault::BadName) << name;
    }
    EXPECT_THAT(drive.Names(), testing::ElementsAre("a.txt"));
}

TEST_F(WindowsFiles, KeepHiddenAndSystemUntilTheyAreCleared) {
    drive.Put("a.txt", "a");
    SetAttributes("a.txt", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    constexpr DWORD asked = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    EXPECT_TRUE(WriteBytesWhole(files, drive.At("a.txt"), "b", drive.At("~kx~1")));
    EXPECT_EQ(Attributes("a.txt") & asked, asked);
    EXPECT_EQ(drive.Get("a.txt"), "b");
    EXPECT_TRUE(files.ClearAttributes(drive.At("a.txt")));
    EXPECT_EQ(Attributes("a.txt") & asked, 0u);
}

TEST_F(WindowsFiles, InUseAreLeftAlone) {
    drive.Put("used.txt", "used");
    drive.Put("new.txt", "new");
    const UniqueHandle user(
        CreateFileW(ExtendedPath(drive.At("used.txt"))->c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(user.get(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(files.OpenForReading(drive.At("used.txt")).fault(), FileFault::InUse);
    EXPECT_EQ(files.Delete(drive.At("used.txt")).fault, FileFault::InUse);
    EXPECT_EQ(files.Copy(drive.At("used.txt"), drive.At("copy.txt")).fault, FileFault::InUse);
    EXPECT_FALSE(files.Replace(drive.At("new.txt"), drive.At("used.txt")));
    EXPECT_FALSE(files.Rename(drive.At("used.txt"), drive.At("moved.txt")));
    EXPECT_TRUE(drive.Has("used.txt"));
    EXPECT_TRUE(drive.Has("new.txt"));
    EXPECT_FALSE(drive.Has("copy.txt"));
}

TEST(WindowsLauncher, KnowsItsOwnExecutable) {
    const std::string path = RunningExecutable();
    EXPECT_TRUE(IsDrivePath(path)) << path;
    EXPECT_TRUE(EndsWithNoCase(path, "\\platform_tests.exe")) << path;
    const auto files = MakeHostFileSystem();
    EXPECT_TRUE(files->Info(path));
    EXPECT_FALSE(MakeHostLauncher(*files)->StartProgram("C:\\none\\there.exe"));
    EXPECT_LT(MakeHostLauncher(*files)->OpenDocument("C:\\none\\there.txt"), 33);
}

} // namespace
} // namespace korvadex
