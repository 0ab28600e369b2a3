#include "platform/code_page.h"
#include "platform/date_text.h"
#include "platform/text_file.h"
#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>

#include <ctime>
#include <iomanip>
#include <sstream>

namespace korvadex {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string AllBytes(unsigned first, unsigned last) {
    std::string bytes;
    for (unsigned byte = first; byte <= last; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

TEST(CodePage, BringsEveryByteBackAndRefusesWhatItCannotHold) {
    const std::string bytes = AllBytes(0, 255);
    EXPECT_TRUE(IsValidUtf8(FromCodePage(bytes)));
    EXPECT_EQ(ToCodePage(FromCodePage(bytes)), bytes);
    EXPECT_EQ(FromCodePage(AllBytes(0, 127)), AllBytes(0, 127));
    EXPECT_EQ(FromCodePage("\xF6\xDF \x80 \x99 \x81\x8D"), "öß € ™ \xC2\x81\xC2\x8D");
    for (const char* text : {"Ω", "日本", "🛩", "A\xCC\x88", "\xC2\x80", "\xFF", "\xC3"})
        EXPECT_EQ(ToCodePage(text), std::nullopt) << text;
    EXPECT_EQ(JoinLines({"fine", "Ω"}), std::nullopt);
    // The names of old archives.
    EXPECT_EQ(FromCodePage437("\x80\x9F\xA0\xB0\xDB\xE0\xEA\xF7\xFE\xFF"), "Çƒá░█αΩ≈■\xC2\xA0");
    EXPECT_EQ(FromCodePage437(AllBytes(0, 127)), AllBytes(0, 127));
    EXPECT_EQ(ToCodePage437(FromCodePage437(bytes)), bytes);
    for (const char* text : {"Ω日", "\xFF", "Ã"})
        EXPECT_EQ(ToCodePage437(text), std::nullopt) << text;
}

TEST(CodePage, TellsUtf8FromOtherBytes) {
    for (const char* text : {"", "plain", "Größe", "日本", "🛩", "\xF4\x8F\xBF\xBF", "\xEF\xBF\xBF"})
        EXPECT_TRUE(IsValidUtf8(text)) << text;
    const std::pair<const char*, std::vector<const char*>> broken[] = {
        {"no beginning", {"\x80"}},
        {"cut", {"\xC3", "\xE6\x97"}},
        {"another code page", {"\xF6l"}},
        {"overlong slashes", {"\xC0\xAF", "\xE0\x80\xAF", "\xF0\x80\x80\xAF"}},
        {"half of a surrogate pair", {"\xED\xA0\x80"}},
        {"beyond the last letter", {"\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80"}},
    };
    for (const auto& [why, texts] : broken)
        for (const char* text : texts)
            EXPECT_FALSE(IsValidUtf8(text)) << why << " " << testing::PrintToString(std::string(text));
}

TEST(TextLines, EndInAnyOfThreeWays) {
    EXPECT_THAT(SplitLines(""), ElementsAre());
    EXPECT_THAT(SplitLines("a\r\nb\nc\rd"), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(SplitLines("a\r\n"), ElementsAre("a"));
    EXPECT_THAT(SplitLines("a\n\r\n\r\rb\r"), ElementsAre("a", "", "", "", "b"));
    EXPECT_THAT(SplitLines("\n"), ElementsAre(""));
    EXPECT_THAT(SplitLines("\xE9t\xE9\t \r\n"), ElementsAre("été\t "));
    EXPECT_THAT(SplitLines(std::string_view("a\0b\x1A\nc", 6)), ElementsAre(std::string("a\0b\x1A", 4), "c"));
}

class TextFiles : public testing::Test {
  protected:
    FileFault WriteLines(const std::string& relative, const std::vector<std::string>& lines) {
        return WriteLinesWhole(drive.Files(), drive.At(relative), lines, drive.At("~kx~1")).fault;
    }
    FileFault WriteBytes(const std::string& relative, std::string_view bytes) {
        return WriteBytesWhole(drive.Files(), drive.At(relative), bytes, drive.At("~kx~1")).fault;
    }

    test::TemporaryDrive drive;
};

TEST_F(TextFiles, ArePutInPlaceWhole) {
    EXPECT_EQ(WriteLines("kx.ini", {"[korvadex]", "Größe=1", ""}), FileFault::None);
    EXPECT_EQ(drive.Outline(), "kx.ini=[korvadex]\r\nGr\xF6\xDF"
                               "e=1\r\n\r\n");
    EXPECT_THAT(*ReadLines(drive.Files(), drive.At("KX.ini")), ElementsAre("[korvadex]", "Größe=1", ""));

    ASSERT_TRUE(drive.Files().SetReadOnly(drive.At("kx.ini"), true));
    const std::string large(3'000'000, 'x');
    EXPECT_EQ(WriteBytes("KX.INI", large), FileFault::None);
    EXPECT_EQ(WriteBytes("empty", ""), FileFault::None);
    EXPECT_TRUE(drive.Outline() == "empty=, kx.ini=" + large);
    EXPECT_FALSE(drive.Files().Info(drive.At("kx.ini"))->readOnly);
}

TEST_F(TextFiles, StayAsTheyAreWhenWritingFails) {
    drive.Fill("", "kx.ini=old, dir\\a=a");
    const auto before = drive.Tree();
    EXPECT_EQ(WriteLines("kx.ini", {"fine", "日本"}), FileFault::BadName);
    EXPECT_EQ(WriteBytes("none\\kx.ini", "new"), FileFault::NotFound);
    EXPECT_NE(WriteBytes("dir", "new"), FileFault::None);
    EXPECT_EQ(drive.Tree(), before) << "neither changed nor a scratch file left";

    drive.Put("~kx~1", "a user's own file, whatever its name");
    EXPECT_EQ(WriteBytes("kx.ini", "new"), FileFault::Exists);
    EXPECT_EQ(drive.Outline(), "dir\\a=a, kx.ini=old, ~kx~1=a user's own file, whatever its name");
}

TEST_F(TextFiles, AreComparedByTheirBytes) {
    std::string large(1'000'000, 'a');
    drive.Put("one", large);
    drive.Put("same", large);
    large.back() = 'b';
    drive.Put("last differs", large);
    drive.Put("shorter", large.substr(1));
    EXPECT_TRUE(SameBytes(drive.Files(), drive.At("one"), drive.At("SAME")));
    for (const char* other : {"last differs", "shorter", "none", ""})
        EXPECT_FALSE(SameBytes(drive.Files(), drive.At("one"), drive.At(other))) << other;
}

TEST(DateText, TellsTheLocalTime) {
    std::tm local{};
    std::istringstream("2002-05-17 13:45:30") >> std::get_time(&local, "%Y-%m-%d %H:%M:%S");
    local.tm_isdst = -1;
    const auto time = std::chrono::system_clock::from_time_t(std::mktime(&local));
    EXPECT_THAT(ShortDateTime(std::chrono::time_point_cast<FileTime::duration>(time)),
                testing::AllOf(HasSubstr("17"), HasSubstr("45")));
}

} // namespace
} // namespace korvadex
