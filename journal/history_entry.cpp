#include "journal/history_entry.h"

#include <algorithm>
#include <array>
#include <limits>

namespace korvadex {

namespace {

constexpr std::string_view Mark = "korvadex journal 1";
constexpr std::array<std::string_view, 3> RepackingNames = {"", "packs", "unpacks"};
constexpr std::array<std::string_view, 4> StateNames = {"done", "undone", "cut off", "remains"};
constexpr std::size_t FixedFields = 14;

template<class Value>
std::optional<Value> ValueOf(std::string_view name, const auto& names) {
    const auto found = std::ranges::find(names, name);
    return found == names.end() ? std::nullopt : std::optional(static_cast<Value>(found - names.begin()));
}

std::string_view NameOf(auto value, const auto& names) {
    return names[static_cast<std::size_t>(value)];
}

} // namespace

std::string LineOf(const HistoryEntry& entry) {
    std::vector<std::string> fields = {std::string(Mark),
                                       std::to_string(entry.number),
                                       std::to_string(entry.item),
                                       entry.title.name,
                                       entry.title.subject,
                                       std::string(NameOf(entry.title.repacking, RepackingNames)),
                                       std::string(NameOf(entry.state, StateNames)),
                                       TextOf(entry.time),
                                       entry.key,
                                       std::to_string(entry.files),
                                       std::to_string(entry.bytes),
                                       std::to_string(entry.keptBytes),
                                       entry.whyNot,
                                       std::to_string(entry.keptIn.size())};
    fields.insert(fields.end(), entry.keptIn.begin(), entry.keptIn.end());
    return JoinFields(fields);
}

std::optional<HistoryEntry> ReadEntry(std::string_view text) {
    const auto end = text.find('\n');
    if (end == std::string_view::npos)
        return std::nullopt;
    const auto fields = SplitFields(text.substr(0, end));
    if (fields.size() < FixedFields || fields[0] != Mark)
        return std::nullopt;
    std::vector<std::int64_t> numbers;
    for (const std::size_t field : {1u, 2u, 9u, 10u, 11u, 13u}) {
        const auto number = NumberOf(fields[field]);
        if (!number || *number < 0)
            return std::nullopt;
        numbers.push_back(*number);
    }
    const auto repacking = ValueOf<Repacking>(fields[5], RepackingNames);
    const auto state = ValueOf<EntryState>(fields[6], StateNames);
    const auto time = TimeOf(fields[7]);
    constexpr std::int64_t most = std::numeric_limits<int>::max() - 1;
    if (!repacking || !state || !time || numbers[0] > most || numbers[1] > most ||
        static_cast<std::size_t>(numbers[5]) != fields.size() - FixedFields)
        return std::nullopt;
    return HistoryEntry{.number = static_cast<int>(numbers[0]),
                        .item = static_cast<int>(numbers[1]),
                        .title = {fields[3], fields[4], *repacking},
                        .state = *state,
                        .time = *time,
                        .key = fields[8],
                        .files = static_cast<std::uint64_t>(numbers[2]),
                        .bytes = static_cast<std::uint64_t>(numbers[3]),
                        .keptBytes = static_cast<std::uint64_t>(numbers[4]),
                        .whyNot = fields[12],
                        .keptIn = {fields.begin() + FixedFields, fields.end()}};
}

} // namespace korvadex
