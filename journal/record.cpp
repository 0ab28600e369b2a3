#include "journal/record.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace korvadex {

namespace {

constexpr std::array<std::string_view, 14> KindNames = {"created",  "placed",   "directory",  "removed", "renamed",
                                                        "replaced", "aside",    "attributes", "time",    "parent-at",
                                                        "repacked", "keeps-of", "deleted",    "void"};
constexpr std::string_view LeftName = "left", GoneName = "gone", OwnName = "own";
constexpr std::array<std::string_view, 3> EntryKindNames = {"file", "directory", "link"};
constexpr char Digits[] = "0123456789abcdef";

bool IsEscaped(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '%' || c == 0x7F;
}

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (IsEscaped(c))
            escaped += {'%', Digits[static_cast<unsigned char>(c) >> 4], Digits[c & 15]};
        else
            escaped += c;
    }
    return escaped;
}

std::string Unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned code = 0;
        const char* from = text.data() + i + 1;
        if (text[i] == '%' && text.size() - i > 2 && std::from_chars(from, from + 2, code, 16).ptr == from + 2) {
            plain += static_cast<char>(code);
            i += 2;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

template<std::size_t Count>
std::optional<std::size_t> PositionOf(std::string_view name, const std::array<std::string_view, Count>& names) {
    const auto found = std::ranges::find(names, name);
    return found == names.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - names.begin()));
}

std::optional<Record> RecordOf(const std::vector<std::string>& fields) {
    const auto kind = PositionOf(fields[0], KindNames);
    if (!kind || fields.size() != 7)
        return std::nullopt;
    const auto time = TimeOf(fields[5]);
    const auto size = NumberOf(fields[6]);
    if (!time || !size || *size < 0)
        return std::nullopt;
    return Record{static_cast<RecordKind>(*kind),   fields[1], fields[2], fields[3], fields[4], *time,
                  static_cast<std::uint64_t>(*size)};
}

std::optional<LeftPlace> LeftOf(const std::vector<std::string>& fields) {
    if (fields.size() == 2 && fields[0] == GoneName)
        return LeftPlace{.path = fields[1]};
    if (fields.size() != 6 || (fields[0] != LeftName && fields[0] != OwnName))
        return std::nullopt;
    const auto kind = PositionOf(fields[2], EntryKindNames);
    const auto size = NumberOf(fields[3]);
    const auto time = TimeOf(fields[4]);
    if (!kind || !size || *size < 0 || !time)
        return std::nullopt;
    const FileInfo info = {static_cast<EntryKind>(*kind), static_cast<std::uint64_t>(*size), *time,
                           fields[5] == "read-only"};
    return LeftPlace{fields[1], info, fields[0] == OwnName};
}

} // namespace

std::string LineOf(const Record& record) {
    return JoinFields({std::string(KindNames[static_cast<std::size_t>(record.kind)]), record.path, record.other,
                       record.kept, record.attributes, TextOf(record.time), std::to_string(record.size)});
}

std::string LineOf(const LeftPlace& left) {
    if (!left.info)
        return JoinFields({std::string(GoneName), left.path});
    return JoinFields({std::string(left.isOwn ? OwnName : LeftName), left.path,
                       std::string(EntryKindNames[static_cast<std::size_t>(left.info->kind)]),
                       std::to_string(left.info->size), TextOf(left.info->time),
                       left.info->readOnly ? "read-only" : ""});
}

Journal ReadJournal(std::string_view text) {
    Journal journal;
    std::vector<Record> all;
    std::vector<bool> isVoid;
    for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        const auto fields = SplitFields(text.substr(0, end));
        text.remove_prefix(end + 1);
        if (auto record = RecordOf(fields)) {
            if (record->kind == RecordKind::Void)
                journal.voids.push_back(record->size);
            if (record->kind == RecordKind::Void && record->size < all.size())
                isVoid[record->size] = true;
            isVoid.push_back(record->kind == RecordKind::Void);
            all.push_back(std::move(*record));
        } else if (auto left = LeftOf(fields)) {
            journal.left.push_back(std::move(*left));
        }
    }
    for (std::size_t i = 0; i < all.size(); ++i)
        if (!isVoid[i])
            journal.records.push_back(std::move(all[i]));
    return journal;
}

std::string JoinFields(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields)
        line += Escaped(field) + '\t';
    line.back() = '\n';
    return line;
}

std::vector<std::string> SplitFields(std::string_view line) {
    std::vector<std::string> fields;
    for (;;) {
        const auto tab = line.find('\t');
        fields.push_back(Unescaped(line.substr(0, tab)));
        if (tab == std::string_view::npos)
            return fields;
        line.remove_prefix(tab + 1);
    }
}

std::optional<std::int64_t> NumberOf(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::string TextOf(FileTime time) {
    return std::to_string(time.time_since_epoch().count());
}

std::optional<FileTime> TimeOf(std::string_view text) {
    const auto number = NumberOf(text);
    return number ? std::optional(FileTime(std::chrono::nanoseconds(*number))) : std::nullopt;
}

} // namespace korvadex
