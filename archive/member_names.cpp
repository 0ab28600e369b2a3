#include "archive/member_names.h"

#include "platform/code_page.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <cctype>

namespace korvadex {

namespace {

constexpr std::size_t MaxShownLetters = 200;

bool IsSeparator(char letter) {
    return letter == '/' || letter == '\\';
}

// Why this component cannot stand in the path of a file; "" when it can.
std::string RefusalOfComponent(const std::string& component) {
    if (component == "..")
        return "its name leads out of the directory";
    if (component.find(':') != std::string::npos)
        return "its name has a colon";
    if (IsDeviceName(component))
        return "its name is that of a device";
    if (IsOwnName(component))
        return "its name is one of Korvadex's own";
    if (!IsStorableName(component))
        return "its name cannot be stored";
    return "";
}

} // namespace

MemberName ReadMemberName(std::string_view stored) {
    MemberName name;
    name.text = IsValidUtf8(stored) ? std::string(stored) : FromCodePage437(stored);
    const std::string& text = name.text;
    const bool hasDrive = text.size() >= 2 && text[1] == ':' && std::isalpha(static_cast<unsigned char>(text[0])) != 0;
    if (text.empty())
        name.refusal = "it has no name";
    else if (IsSeparator(text.front()) || hasDrive)
        name.refusal = "its name leads out of the directory";
    if (!name.refusal.empty())
        return name;

    name.isDirectory = IsSeparator(text.back());
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin;
        while (end < text.size() && !IsSeparator(text[end]))
            ++end;
        std::string component = text.substr(begin, end - begin);
        begin = end + 1;
        if (component.empty() || component == ".")
            continue;
        if (name.refusal.empty())
            name.refusal = RefusalOfComponent(component);
        name.components.push_back(std::move(component));
    }
    if (name.components.empty() && !name.isDirectory)
        name.refusal = "its name cannot be stored";
    return name;
}

void TakeForFile(MemberName& name) {
    name.isDirectory = false;
    if (name.components.empty() && name.refusal.empty())
        name.refusal = "its name cannot be stored";
}

std::string RefusalOfKind(std::uint32_t unixMode) {
    constexpr std::uint32_t kindMask = 0170000, directory = 0040000, plain = 0100000, link = 0120000, pipe = 0010000;
    const std::uint32_t kind = unixMode & kindMask;
    if (kind == link)
        return "it is a link";
    // Packed from a pipe, as by "zip -", the bytes are a file's.
    return kind == 0 || kind == plain || kind == directory || kind == pipe ? "" : "it is no file";
}

std::string NameForMessage(std::string_view text) {
    std::string shown(FirstLetters(text, MaxShownLetters));
    std::ranges::replace_if(
        shown, [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, '?');
    return shown.size() < text.size() ? shown + "..." : shown;
}

} // namespace korvadex
