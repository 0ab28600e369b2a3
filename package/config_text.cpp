#include "package/config_text.h"

#include "platform/code_page.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF", Utf16LeMark = "\xFF\xFE", Utf16BeMark = "\xFE\xFF";

bool IsTwoByte(ConfigEncoding encoding) {
    return encoding == ConfigEncoding::Utf16Le || encoding == ConfigEncoding::Utf16Be;
}

struct Detected {
    ConfigEncoding encoding;
    std::string_view mark;
};

Detected Detect(std::string_view bytes) {
    if (bytes.starts_with(Utf8Mark))
        return {IsValidUtf8(bytes) ? ConfigEncoding::Utf8 : ConfigEncoding::CodePage, Utf8Mark};
    if (bytes.starts_with(Utf16LeMark))
        return {ConfigEncoding::Utf16Le, Utf16LeMark};
    if (bytes.starts_with(Utf16BeMark))
        return {ConfigEncoding::Utf16Be, Utf16BeMark};
    // Without a mark the first letter, "[" or ";" or so, tells them.
    if (bytes.size() >= 2 && (bytes[0] == '\0') != (bytes[1] == '\0'))
        return {bytes[0] == '\0' ? ConfigEncoding::Utf16Be : ConfigEncoding::Utf16Le, ""};
    return {ConfigEncoding::CodePage, ""};
}

// --- letters of two bytes

char16_t UnitAt(std::string_view bytes, std::size_t at, ConfigEncoding encoding) {
    const auto first = static_cast<unsigned char>(bytes[at]), second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char16_t>(encoding == ConfigEncoding::Utf16Le ? first | (second << 8) : (first << 8) | second);
}

void AppendUnit(std::string& bytes, char32_t unit, ConfigEncoding encoding) {
    const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>((unit >> 8) & 0xFF);
    bytes += encoding == ConfigEncoding::Utf16Le ? low : high;
    bytes += encoding == ConfigEncoding::Utf16Le ? high : low;
}

// Half of a pair alone becomes a letter of three bytes; the odd byte at the end of a broken file none.
std::string FromTwoByte(std::string_view bytes, ConfigEncoding encoding) {
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        char32_t letter = UnitAt(bytes, at, encoding);
        if (letter >= 0xD800 && letter < 0xDC00 && at + 3 < bytes.size()) {
            const char32_t second = UnitAt(bytes, at + 2, encoding);
            if (second >= 0xDC00 && second < 0xE000) {
                letter = 0x10000 + ((letter - 0xD800) << 10) + (second - 0xDC00);
                at += 2;
            }
        }
        AppendUtf8(text, letter);
    }
    return text;
}

std::string ToTwoByte(std::string_view utf8, ConfigEncoding encoding) {
    std::string bytes;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto first = static_cast<unsigned char>(utf8[at]);
        const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        char32_t letter = length == 1 ? first : first & (0x7Fu >> length);
        for (std::size_t k = 1; k < length && at + k < utf8.size(); ++k)
            letter = (letter << 6) | (static_cast<unsigned char>(utf8[at + k]) & 0x3Fu);
        if (letter >= 0x10000) {
            AppendUnit(bytes, 0xD800 + ((letter - 0x10000) >> 10), encoding);
            letter = 0xDC00 + ((letter - 0x10000) & 0x3FF);
        }
        AppendUnit(bytes, letter, encoding);
        at += length;
    }
    return bytes;
}

std::string Decode(std::string_view bytes, ConfigEncoding encoding) {
    switch (encoding) {
    case ConfigEncoding::Utf8:
        return std::string(bytes);
    case ConfigEncoding::Utf16Le:
    case ConfigEncoding::Utf16Be:
        return FromTwoByte(bytes, encoding);
    case ConfigEncoding::CodePage:
        break;
    }
    return FromCodePage(bytes);
}

template<class Visit>
void ForEachTwoByteLine(std::string_view bytes, ConfigEncoding encoding, Visit visit) {
    std::size_t begin = 0;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const char16_t unit = UnitAt(bytes, at, encoding);
        if (unit != '\r' && unit != '\n')
            continue;
        const bool isPair = unit == '\r' && at + 3 < bytes.size() && UnitAt(bytes, at + 2, encoding) == '\n';
        const std::size_t endSize = isPair ? 4 : 2;
        visit(bytes.substr(begin, at - begin), bytes.substr(at, endSize));
        begin = at + endSize;
        at = begin - 2;
    }
    if (begin < bytes.size())
        visit(bytes.substr(begin), std::string_view());
}

// --- lines

constexpr std::string_view Blanks = " \t";

constexpr std::array<std::string_view, 6> NameKeys = {"model", "panel", "sound", "texture", "sim", "alias"};

bool IsName(std::string_view key) {
    return StartsWithNoCase(key, "gauge") ||
           std::ranges::any_of(NameKeys, [&](std::string_view name) { return EqualNoCase(key, name); });
}

bool BeginsComment(std::string_view text) {
    return text.starts_with(';') || text.starts_with("//");
}

// Only behind a blank: a name may hold these letters.
std::string_view WithoutComment(std::string_view value) {
    // What stands in quotes is no comment.
    std::size_t at = 0;
    if (const std::string_view text = TrimBlanks(value); text.starts_with('"')) {
        const std::size_t closing = text.find('"', 1);
        if (closing != std::string_view::npos)
            at = static_cast<std::size_t>(text.data() - value.data()) + closing;
    }
    for (; at < value.size(); ++at) {
        if (Blanks.find(value[at]) != std::string_view::npos && BeginsComment(value.substr(at + 1)))
            return value.substr(0, at);
    }
    return value;
}

std::string_view WithoutQuotes(std::string_view value) {
    if (value.size() >= 2 && value.starts_with('"') && value.ends_with('"'))
        return TrimBlanks(value.substr(1, value.size() - 2));
    return value;
}

std::string Replaced(std::string_view line, std::string_view old, std::string_view value) {
    const auto at = static_cast<std::size_t>(old.data() - line.data());
    return std::string(line.substr(0, at)).append(value).append(line.substr(at + old.size()));
}

} // namespace

std::string ConfigText::Bytes() const {
    std::string bytes = mark;
    for (const ConfigLine& line : lines)
        bytes.append(line.bytes).append(line.end);
    return bytes;
}

std::optional<std::string> ConfigText::Encode(std::string_view text) const {
    if (encoding == ConfigEncoding::CodePage)
        return ToCodePage(text);
    return IsTwoByte(encoding) ? ToTwoByte(text, encoding) : std::string(text);
}

bool ConfigText::SetText(std::size_t number, std::string_view text) {
    ConfigLine& line = lines[number];
    if (line.text == text)
        return true;
    auto encoded = Encode(text);
    if (!encoded)
        return false;
    line.bytes = std::move(*encoded);
    line.text = text;
    return true;
}

bool ConfigText::IsText() const {
    const auto isBroken = [&](const ConfigLine& line) {
        return line.text.find('\0') != std::string::npos || (IsTwoByte(encoding) && line.bytes.size() % 2 != 0);
    };
    return std::ranges::none_of(lines, isBroken);
}

ConfigText ParseConfig(std::string_view bytes) {
    const Detected detected = Detect(bytes);
    ConfigText config{detected.encoding, std::string(detected.mark), {}};
    bytes.remove_prefix(detected.mark.size());
    const auto add = [&](std::string_view line, std::string_view end) {
        config.lines.push_back({Decode(line, config.encoding), std::string(line), std::string(end)});
    };
    if (IsTwoByte(config.encoding))
        ForEachTwoByteLine(bytes, config.encoding, add);
    else
        ForEachLine(bytes, add);
    return config;
}

Result<ConfigText> ReadConfigText(const FileSystem& files, const std::string& path) {
    const auto info = files.Info(path);
    if (!info)
        return info.status();
    if (info->kind == EntryKind::Directory || info->size > MaxConfigBytes)
        return Status{FileFault::Failed, path, 0};
    const auto bytes = ReadBytes(files, path);
    if (!bytes)
        return bytes.status();
    return ParseConfig(*bytes);
}

std::string DecodeConfig(std::string_view bytes) {
    const Detected detected = Detect(bytes);
    return Decode(bytes.substr(detected.mark.size()), detected.encoding);
}

bool IsPlainConfig(std::string_view bytes) {
    if (IsTwoByte(Detect(bytes).encoding))
        return false;
    unsigned char all = 0;
    for (const char letter : bytes)
        all |= static_cast<unsigned char>(letter);
    return all < 0x80;
}

std::string_view TrimBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
    return text.substr(0, text.find_last_not_of(Blanks) + 1);
}

std::string_view SectionOf(std::string_view line) {
    line = TrimBlanks(line);
    const std::size_t end = line.find(']');
    if (!line.starts_with('[') || end == std::string_view::npos)
        return "";
    return TrimBlanks(line.substr(1, end - 1));
}

std::string_view KeyOf(std::string_view line) {
    line = TrimBlanks(line);
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || line.starts_with('[') || BeginsComment(line))
        return "";
    return TrimBlanks(line.substr(0, equals));
}

bool HasKey(std::string_view line, std::string_view key) {
    return EqualNoCase(KeyOf(line), key);
}

std::string_view ValueOf(std::string_view line) {
    std::string_view value = line.substr(line.find('=') + 1);
    if (IsName(KeyOf(line)))
        value = WithoutComment(value);
    // Where there is none, one would stand behind the blanks, and before a comment.
    const bool isAtEnd = value.data() + value.size() == line.data() + line.size();
    if (value.find_first_not_of(Blanks) == std::string_view::npos)
        return isAtEnd ? value.substr(value.size()) : value.substr(0, 0);
    return WithoutQuotes(TrimBlanks(value));
}

std::string WithValue(std::string_view line, std::string_view value) {
    std::string changed = Replaced(line, ValueOf(line), value);
    if (ValueOf(changed) == value)
        return changed;
    // In quotes it keeps the blanks, quotes and semicolons that it has.
    return Replaced(line, ValueOf(line), '"' + std::string(value) + '"');
}

} // namespace korvadex
