// What the names in an archive mean, and which of them are no names that a file of this archive may bear.
//
// An archive is hostile until shown otherwise: a name must not lead out of the directory that is unpacked
// into, nor to a device, a stream of another file or the program's own scratch files.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

struct MemberName {
    std::string text;                    // as the archive has it, in UTF-8
    std::vector<std::string> components; // the directories and, unless it is a directory itself, the file
    bool isDirectory = false;
    std::string refusal; // why it is not unpacked; "" when nothing speaks against it
};

// Bytes that are well-formed UTF-8 are UTF-8, all others code page 437. Both / and \ separate.
//   "panel/b17.bmp"  -> panel, b17.bmp         "./a//b.txt" -> a, b.txt         "texture\"  -> texture (a directory)
//   "../a" "/a" "C:a" "\\host\a" "nul.txt" "a. " "a:b" "" -> refused
MemberName ReadMemberName(std::string_view stored);

// The name of what is known to be a file: a letter of two bytes, as Japanese ones, may end in the one of a separator.
void TakeForFile(MemberName& name);

// Why a member with this mode of Unix is not unpacked; "" for plain files, directories, and where there is no mode (0).
std::string RefusalOfKind(std::uint32_t unixMode);

// A name from an archive as it can stand in a message: on one line, and not without end.
std::string NameForMessage(std::string_view text);

} // namespace korvadex
