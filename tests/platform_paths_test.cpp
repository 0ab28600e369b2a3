#include "platform/windows_path.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace korvadex {
namespace {

TEST(WindowsPath, FoldsTheLettersOfFileNames) {
    const struct {
        const char *text, *folded;
    } rows[] = {
        {"LEAR 45.Air", "lear 45.air"},
        {"@[`{Z", "@[`{z"},
        {"ÀÉÖÞ×÷ßÿ", "àéöþ×÷ßÿ"},
        {"ŸĀĮĲĶĹŇŊŶŹŽ", "ÿāįĳķĺňŋŷźž"},
        {"İıĸŉſ", "İıĸŉſ"}, // no lower case of their own in a file name
        {"ΆΈΊΌΎΏΑΩΫ", "άέίόύώαωϋ"},
        {"ЀЏАЯѠҀ", "ѐџаяѡҁ"},
        {"日本", "日本"},
        {"\xC3", "\xC3"}, // broken text stays as it is
        {"A\xFF\xC0Z", "a\xFF\xC0z"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FoldCase(row.text), row.folded) << row.text;
}

TEST(WindowsPath, SortsWithoutCase) {
    std::vector<std::string> names = {"b", "A", "a_", "a", "B", "Z", "_", "1", "É", "e"};
    std::sort(names.begin(), names.end(), LessNoCase);
    EXPECT_THAT(names, testing::ElementsAre("1", "_", "A", "a", "a_", "B", "b", "e", "Z", "É"));
}

TEST(WindowsPath, TakesPathsApart) {
    const struct {
        const char *path, *last, *lastTwo, *parent, *without;
    } rows[] = {
        {"C:\\Jets\\Lear\\", "Lear\\", "Jets\\Lear\\", "C:\\Jets\\", "C:\\Jets\\Lear"},
        {"C:\\panel\\x.cfg", "x.cfg", "panel\\x.cfg", "C:\\panel\\", "C:\\panel\\x.cfg"},
        {"C:\\a", "a", "C:\\a", "C:\\", "C:\\a"},
        {"C:\\", "C:\\", "C:\\", "", "C:\\"},
        {"panel.cfg", "panel.cfg", "panel.cfg", "", "panel.cfg"},
        {"", "", "", "", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(LastPathComponent(row.path), row.last) << row.path;
        EXPECT_EQ(LastPathComponent(row.path, true), row.lastTwo) << row.path;
        EXPECT_EQ(ParentDirectory(row.path), row.parent) << row.path;
        EXPECT_EQ(WithoutBackslash(row.path), row.without) << row.path;
    }
}

TEST(WindowsPath, KnowsWhatLiesBelow) {
    const struct {
        const char *path, *directory;
        bool below;
    } rows[] = {
        {"C:\\FS\\aircraft\\lear", "c:\\fs\\", true},
        {"C:\\FS", "C:\\FS\\", true},
        {"C:\\FS\\", "C:\\FS\\", true},
        {"C:\\FS2002\\a", "C:\\FS\\", false},
        {"C:\\", "C:\\FS\\", false},
        {"D:\\FS\\a", "C:\\FS\\", false},
        {"C:\\FS\\a", "", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(IsAtOrBelow(row.path, row.directory), row.below) << row.path << " in " << row.directory;
}

TEST(WindowsPath, KnowsWhichNamesCanBeStored) {
    for (const char* name : {"con", "NUL", "nul.txt", "Aux.tar.gz", "COM1", "lpt9.cfg", "com¹", "PRN .txt", "conin$"}) {
        EXPECT_TRUE(IsDeviceName(name)) << name;
        EXPECT_FALSE(IsStorableName(name)) << name;
    }
    for (const char* name : {"", ".", "..", "a.", "a ", "...", " ", "a\\b", "a/b", "a:b", "a*", "a?", "\"a\"", "<", ">",
                             "a|b", "a\tb", "a\x01"})
        EXPECT_FALSE(IsStorableName(name)) << name;
    EXPECT_FALSE(IsStorableName(std::string_view("a\0b", 3)));
    EXPECT_TRUE(IsStorableName(std::string(252, 'x') + "ß😀"));
    EXPECT_FALSE(IsStorableName(std::string(253, 'x') + "ß😀"));
    for (const char* name : {"a", ".cfg", " a", "com", "COM0", "com10", "Console", "nul1", "auxiliary.txt", "a..b",
                             "Größe Ω 日本.txt", "a'b`~!@#$%^&()[]{}+=,;"}) {
        EXPECT_FALSE(IsDeviceName(name)) << name;
        EXPECT_TRUE(IsStorableName(name)) << name;
    }
}

} // namespace
} // namespace korvadex
