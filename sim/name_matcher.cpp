#include "sim/name_matcher.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>

namespace korvadex {

namespace {

constexpr std::size_t HeadLength = sizeof(std::uint64_t);

// The first eight letters as a number; noughts for what the text has not.
std::uint64_t HeadOf(std::string_view text) {
    std::uint64_t head = 0;
    if (text.size() >= HeadLength)
        std::memcpy(&head, text.data(), HeadLength);
    else
        std::memcpy(&head, text.data(), text.size());
    return head;
}

} // namespace

NameMatcher::NameMatcher(const std::vector<std::string>& names) : begins(Beginnings), placeOf(names.size()) {
    std::vector<std::uint32_t> order(names.size());
    std::iota(order.begin(), order.end(), 0u);
    std::ranges::sort(order, [&](std::uint32_t a, std::uint32_t b) { return names[a] < names[b]; });
    for (const std::uint32_t name : order) {
        if (ordered.empty() || ordered.back() != names[name]) {
            // What this name begins with stands before it, and begins what stands between the two.
            std::uint32_t before = ordered.empty() ? None : static_cast<std::uint32_t>(ordered.size() - 1);
            while (before != None && !names[name].starts_with(ordered[before]))
                before = shorter[before];
            shorter.push_back(before);
            nameAt.push_back(name);
            ordered.push_back(names[name]);
            AddBeginning(names[name]);
            shortest = std::min(shortest, names[name].size());
            if (names[name].size() < HeadLength)
                lengths |= 1u << names[name].size();
        }
        placeOf[name] = static_cast<std::uint32_t>(ordered.size() - 1);
    }
    isFound.assign(ordered.size(), false);
    FillGroups();
}

void NameMatcher::FillGroups() {
    groups.resize(std::bit_ceil(2 * ordered.size() + 1));
    for (std::uint32_t place = 0; place < ordered.size(); ++place) {
        const std::uint64_t head = HeadOf(ordered[place]);
        Group& group = GroupOf(head);
        if (group.end == 0)
            group = {head, place, place};
        group.end = place + 1;
    }
}

// Of the names with this head, or an empty place for them.
NameMatcher::Group& NameMatcher::GroupOf(std::uint64_t head) {
    constexpr std::uint64_t spread = 0x9E3779B97F4A7C15; // of Fibonacci's hashing
    std::size_t at = ((head * spread) >> 32) & (groups.size() - 1);
    while (groups[at].end != 0 && groups[at].head != head)
        at = (at + 1) & (groups.size() - 1);
    return groups[at];
}

// A name of fewer than three letters may go on with any.
void NameMatcher::AddBeginning(std::string_view name) {
    std::size_t beginning = 0, following = 1;
    for (std::size_t i = 0; i < 3; ++i) {
        beginning = Appended(beginning, i < name.size() ? name[i] : '\0');
        following <<= i < name.size() ? 0 : LetterBits;
    }
    for (std::size_t i = 0; i < following; ++i)
        begins[beginning + i] = 1;
}

std::vector<std::size_t> NameMatcher::TakeFound() {
    std::vector<std::size_t> names;
    for (const std::uint32_t place : found) {
        names.push_back(nameAt[place]);
        isFound[place] = false;
    }
    found.clear();
    return names;
}

// Notes the longest name that a text begins with, and the shorter ones that this begins with. It begins all that stands
// between it and the text in the order: it is the last one before the text, or one that this begins with.
void NameMatcher::NoteLongest(std::size_t behind, std::string_view rest) {
    std::uint32_t place = behind == 0 ? None : static_cast<std::uint32_t>(behind - 1);
    while (place != None && !rest.starts_with(ordered[place]))
        place = shorter[place];
    for (; place != None && !isFound[place]; place = shorter[place]) {
        isFound[place] = true;
        found.push_back(place);
    }
}

void NameMatcher::MatchAt(std::string_view rest) {
    const auto at = [&](std::uint32_t place) { return ordered.begin() + static_cast<std::ptrdiff_t>(place); };
    const auto matchGroup = [&](std::uint64_t head) {
        const Group& group = GroupOf(head);
        const auto behind = std::upper_bound(at(group.begin), at(group.end), rest);
        NoteLongest(static_cast<std::size_t>(behind - ordered.begin()), rest);
    };
    matchGroup(HeadOf(rest));
    for (std::uint32_t left = lengths; left != 0; left &= left - 1)
        matchGroup(HeadOf(rest.substr(0, static_cast<std::size_t>(std::countr_zero(left)))));
}

void NameMatcher::Search(std::string_view text) {
    if (areBlanksUnderscores) {
        underscored = text;
        std::ranges::replace(underscored, ' ', '_');
        text = underscored;
    }
    if (!ordered.empty() && ordered.front().empty())
        NoteLongest(1, text);
    std::size_t letters = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        letters = Appended(letters, text[at]);
        if (begins[letters % Beginnings] != 0 && at >= 2)
            MatchAt(text.substr(at - 2));
    }
    // Where fewer than three letters are left.
    for (std::size_t at = text.size() - std::min<std::size_t>(text.size(), 2); at + shortest <= text.size(); ++at)
        MatchAt(text.substr(at));
}

} // namespace korvadex
