// The text of aircraft.cfg, panel.cfg, sound.cfg and their like: what is a line, a section, a key and a value, and
// how a line is changed while all others stay byte for byte as they are.
#pragma once

#include "platform/file_system.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// A configuration is a few kilobytes. A file beyond this size only bears the name of one: it is not read.
inline constexpr std::uint64_t MaxConfigBytes = 32u << 20;

// What Notepad saves as "ANSI", "UTF-8", "Unicode" and "Unicode big endian".
enum class ConfigEncoding { CodePage, Utf8, Utf16Le, Utf16Be };

struct ConfigLine {
    std::string text;       // in UTF-8
    std::string bytes, end; // as the file holds them; the last line may have no end
};

struct ConfigText {
    ConfigEncoding encoding = ConfigEncoding::CodePage;
    std::string mark; // the byte order mark, "" without one
    std::vector<ConfigLine> lines;

    std::string Bytes() const;
    // None when a letter has no place in the encoding.
    std::optional<std::string> Encode(std::string_view text) const;
    // The line keeps its end. False, and nothing is changed, when a letter has no place.
    bool SetText(std::size_t line, std::string_view text);
    // False when it holds what no text holds, such as half a letter: then it is not to be rewritten.
    bool IsText() const;
};

ConfigText ParseConfig(std::string_view bytes);
// Failed for what is no file, or beyond MaxConfigBytes.
Result<ConfigText> ReadConfigText(const FileSystem& files, const std::string& path);

// The whole text in UTF-8, without a byte order mark, its line ends as they are.
std::string DecodeConfig(std::string_view bytes);
// Letters below 0x80 stand for themselves: it need not be decoded.
bool IsPlainConfig(std::string_view bytes);

// Both blanks and tabs.
std::string_view TrimBlanks(std::string_view text);

// " [ fltsim.0 ] ; red" -> "fltsim.0"; "" when the line begins no section. A view of the line, as all of these.
std::string_view SectionOf(std::string_view line);
// "\tTitle = Lear" -> "Title"; "" for a section, a comment, and a line without "=".
std::string_view KeyOf(std::string_view line);
bool HasKey(std::string_view line, std::string_view key);
// Of a line that has a key: "Title = Lear 45 ; mine" -> "Lear 45 ; mine", "alias="X\panel" ; mine" -> "X\panel". Behind
// what is a name for the simulator (alias, gauge00, model, panel, sim, sound, texture) a comment is not part of it.
std::string_view ValueOf(std::string_view line);
// The line with another value, all else as it is spelt; ValueOf gives back the same value.
std::string WithValue(std::string_view line, std::string_view value);

} // namespace korvadex
