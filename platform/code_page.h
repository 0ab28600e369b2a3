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
// None when a letter has no byte in it, or it is no UTF-8.
std::optional<std::string> ToCodePage437(std::string_view utf8);

// Appends one letter in UTF-8.
void AppendUtf8(std::string& text, char32_t letter);
// The first letter of well-formed UTF-8, which is taken from the front.
char32_t TakeLetter(std::string_view& utf8);

// Well-formed UTF-8 (no overlong form, no surrogate).
bool IsValidUtf8(std::string_view bytes);

// So many letters of a text in UTF-8, or all of it when it has no more.
std::string_view FirstLetters(std::string_view text, std::size_t count);

} // namespace korvadex
