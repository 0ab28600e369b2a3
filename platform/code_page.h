// Bytes of text files and archive names, and the UTF-8 that the program works with.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvadex {

// The single-byte code page of the system's text files: Windows asks the system; elsewhere it is 1252, its
// five unused bytes mapped one to one, so that text read and written back unchanged is the same bytes.
std::string FromCodePage(std::string_view bytes);
// None when a character has no byte in the code page.
std::optional<std::string> ToCodePage(std::string_view utf8);

// Code page 437, the names of old zip archives.
std::string FromCodePage437(std::string_view bytes);

// Appends one letter in UTF-8.
void AppendUtf8(std::string& text, char32_t letter);

// Well-formed UTF-8 (no overlong form, no surrogate).
bool IsValidUtf8(std::string_view bytes);

// So many letters of a text in UTF-8, or all of it when it has no more.
std::string_view FirstLetters(std::string_view text, std::size_t count);

} // namespace korvadex
