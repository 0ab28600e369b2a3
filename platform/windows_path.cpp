#include "platform/windows_path.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace korvadex {

namespace {

// One letter to lower case, as file systems fold names: simple one-to-one mappings, independent of any
// locale.
char32_t FoldLetter(char32_t c) {
    if (c < 0x80)
        return c >= 'A' && c <= 'Z' ? c + 32 : c;
    if (c >= 0xC0 && c <= 0xDE)
        return c == 0xD7 ? c : c + 32;
    if (c == 0x178) // Ÿ
        return 0xFF;
    // Latin Extended-A alternates upper and lower case, in three runs of different parity.
    if ((c >= 0x100 && c <= 0x12F) || (c >= 0x132 && c <= 0x137) || (c >= 0x14A && c <= 0x177))
        return c | 1;
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E))
        return c % 2 == 1 ? c + 1 : c;
    if (c == 0x386) // Greek with tonos
        return 0x3AC;
    if (c >= 0x388 && c <= 0x38A)
        return c + 37;
    if (c == 0x38C)
        return 0x3CC;
    if (c == 0x38E || c == 0x38F)
        return c + 63;
    if (c >= 0x391 && c <= 0x3AB && c != 0x3A2)
        return c + 32;
    if (c >= 0x410 && c <= 0x42F) // Cyrillic
        return c + 32;
    if (c >= 0x400 && c <= 0x40F)
        return c + 80;
    if (c >= 0x460 && c <= 0x481)
        return c | 1;
    return c;
}

// A letter beyond ASCII that FoldLetter knows takes two bytes in UTF-8, as does its lower case.
std::uint8_t Byte(char c) {
    return static_cast<std::uint8_t>(c);
}

bool IsSeparator(char c) {
    return c == '\\';
}

constexpr std::array<std::string_view, 6> DeviceNames = {"con", "prn", "aux", "nul", "conin$", "conout$"};

// Disks count a letter as one or two units of UTF-16.
std::size_t UnitsOf(std::string_view name) {
    std::size_t units = 0;
    for (const char c : name) {
        const bool isContinuation = (Byte(c) & 0xC0) == 0x80, isPair = Byte(c) >= 0xF0;
        units += isContinuation ? 0 : isPair ? 2 : 1;
    }
    return units;
}

} // namespace

std::string FoldCase(std::string_view text) {
    std::string folded(text);
    for (std::size_t i = 0; i < folded.size(); ++i) {
        const std::uint8_t first = Byte(folded[i]);
        if (first < 0x80) {
            folded[i] = static_cast<char>(FoldLetter(first));
        } else if (first >= 0xC2 && first <= 0xDF && i + 1 < folded.size() && (Byte(folded[i + 1]) & 0xC0) == 0x80) {
            const char32_t letter =
                FoldLetter((static_cast<char32_t>(first & 0x1F) << 6) | (Byte(folded[i + 1]) & 0x3F));
            folded[i] = static_cast<char>(0xC0 | (letter >> 6));
            folded[++i] = static_cast<char>(0x80 | (letter & 0x3F));
        }
    }
    return folded;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
    return a == b || (a.size() == b.size() && FoldCase(a) == FoldCase(b));
}

bool LessNoCase(std::string_view a, std::string_view b) {
    const int order = FoldCase(a).compare(FoldCase(b));
    return order != 0 ? order < 0 : a < b;
}

bool EndsWithNoCase(std::string_view text, std::string_view ending) {
    return text.size() >= ending.size() && EqualNoCase(text.substr(text.size() - ending.size()), ending);
}

bool StartsWithNoCase(std::string_view text, std::string_view beginning) {
    return text.size() >= beginning.size() && EqualNoCase(text.substr(0, beginning.size()), beginning);
}

std::string_view TrimLeft(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view Trim(std::string_view text) {
    text = TrimLeft(text);
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string AddBackslash(std::string_view path) {
    std::string result(path);
    if (!result.empty() && !IsSeparator(result.back()))
        result += '\\';
    return result;
}

std::string WithoutBackslash(std::string_view path) {
    const bool isRoot = path.size() == 3 && path[1] == ':';
    if (!isRoot && !path.empty() && IsSeparator(path.back()))
        path.remove_suffix(1);
    return std::string(path);
}

std::string LastPathComponent(std::string_view path, bool twoLevels) {
    std::size_t start = path.size();
    for (int level = twoLevels ? 2 : 1; level > 0; --level) {
        if (start > 0 && IsSeparator(path[start - 1]))
            --start;
        const std::size_t separator = path.substr(0, start).rfind('\\');
        start = separator == std::string_view::npos ? 0 : separator + 1;
    }
    return std::string(path.substr(start));
}

std::string ParentDirectory(std::string_view path) {
    return std::string(path.substr(0, path.size() - LastPathComponent(path).size()));
}

std::string NumberedName(std::string_view path, int number) {
    const std::size_t nameAt = path.size() - LastPathComponent(path).size();
    const std::size_t dot = path.substr(nameAt).rfind('.');
    const std::size_t end = dot == std::string_view::npos ? path.size() : nameAt + dot;
    return std::string(path.substr(0, end)) + "(" + std::to_string(number) + ")" + std::string(path.substr(end));
}

bool IsAtOrBelow(std::string_view path, std::string_view directory) {
    return !directory.empty() && (StartsWithNoCase(path, directory) || EqualNoCase(AddBackslash(path), directory));
}

bool IsDrivePath(std::string_view path) {
    return path.size() >= 3 && FoldLetter(Byte(path[0])) >= 'a' && FoldLetter(Byte(path[0])) <= 'z' && path[1] == ':' &&
           path[2] == '\\';
}

bool IsDeviceName(std::string_view name) {
    const std::string stem(Trim(FoldCase(name.substr(0, name.find('.')))));
    if (std::find(DeviceNames.begin(), DeviceNames.end(), stem) != DeviceNames.end())
        return true;
    if (!stem.starts_with("com") && !stem.starts_with("lpt"))
        return false;
    // COM1 to COM9 and LPT1 to LPT9, the digit also as a superscript one, two or three.
    const std::string number = stem.substr(3);
    return (number.size() == 1 && number[0] >= '1' && number[0] <= '9') || number == "\xC2\xB9" ||
           number == "\xC2\xB2" || number == "\xC2\xB3";
}

bool IsStorableName(std::string_view name) {
    constexpr std::size_t mostUnits = 255;
    if (name.empty() || name == "." || name == ".." || name.back() == '.' || name.back() == ' ')
        return false;
    const auto isForbidden = [](char c) {
        return Byte(c) < 0x20 || std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
    };
    return std::none_of(name.begin(), name.end(), isForbidden) && !IsDeviceName(name) && UnitsOf(name) <= mostUnits;
}

bool IsScratchName(std::string_view name) {
    return EqualNoCase(name, ScratchDirectoryName);
}

bool IsLastingName(std::string_view name) {
    return EqualNoCase(name, KeptDirectoryName) || EqualNoCase(name, LockFileName);
}

bool IsOwnName(std::string_view name) {
    return IsScratchName(name) || IsLastingName(name);
}

bool IsFileManagersFile(std::string_view name) {
    constexpr std::string_view names[] = {"thumbs.db", "desktop.ini", ".ds_store", ".directory"};
    return std::any_of(std::begin(names), std::end(names),
                       [&](std::string_view known) { return EqualNoCase(name, known); });
}

bool IsFileManagersDirectory(std::string_view name) {
    return EqualNoCase(name, "__macosx");
}

} // namespace korvadex
