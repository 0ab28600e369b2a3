#include "sim/name_matcher.h"

namespace korvadex {

NameMatcher::NameMatcher(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        for (const char letter : name) {
            std::uint8_t& known = letterOf[static_cast<unsigned char>(letter)];
            if (known == 0)
                known = static_cast<std::uint8_t>(letterCount++);
        }
    }
    next.assign(letterCount, None);
    ending.assign(1, None);
    for (const std::string& name : names)
        AddName(name);
    isFound.assign(ending.size(), false);
    nameAt.assign(ending.size(), None);
    for (std::size_t name = 0; name < names.size(); ++name)
        nameAt[endOf[name]] = static_cast<std::uint32_t>(name);
    for (const std::uint32_t name : nameAt)
        missing += name != None ? 1 : 0;
    LinkStates();
}

void NameMatcher::AddName(const std::string& name) {
    std::size_t state = 0;
    for (const char letter : name) {
        std::uint32_t& step = Next(state, letterOf[static_cast<unsigned char>(letter)]);
        if (step == None) {
            step = static_cast<std::uint32_t>(ending.size());
            state = step; // before the table grows and the reference goes
            next.resize(next.size() + letterCount, None);
            ending.push_back(None);
        } else {
            state = step;
        }
    }
    ending[state] = static_cast<std::uint32_t>(state);
    endOf.push_back(static_cast<std::uint32_t>(state));
}

// Level by level, so that what a state falls back to is finished before it.
void NameMatcher::LinkStates() {
    shorterEnding.assign(ending.size(), None);
    std::vector<std::uint32_t> fallback(ending.size(), 0), order{0};
    for (std::size_t letter = 0; letter < letterCount; ++letter) {
        if (std::uint32_t& step = Next(0, letter); step == None)
            step = 0;
        else
            order.push_back(step);
    }
    for (std::size_t i = 1; i < order.size(); ++i) {
        const std::uint32_t state = order[i];
        shorterEnding[state] = ending[fallback[state]];
        if (ending[state] == None)
            ending[state] = shorterEnding[state];
        for (std::size_t letter = 0; letter < letterCount; ++letter) {
            const std::uint32_t shorter = Next(fallback[state], letter);
            if (std::uint32_t& step = Next(state, letter); step == None) {
                step = shorter;
            } else {
                fallback[step] = shorter;
                order.push_back(step);
            }
        }
    }
}

// The longest name that ends here, and the shorter ones that it ends with.
void NameMatcher::NoteEnd(std::size_t state) {
    for (std::uint32_t end = ending[state]; end != None && !isFound[end]; end = shorterEnding[end]) {
        isFound[end] = true;
        found.push_back(end);
        --missing;
    }
}

std::vector<std::size_t> NameMatcher::TakeFound() {
    std::vector<std::size_t> names;
    for (const std::uint32_t state : found) {
        names.push_back(nameAt[state]);
        isFound[state] = false;
        ++missing;
    }
    found.clear();
    return names;
}

void NameMatcher::Search(std::string_view text) {
    std::size_t state = 0;
    NoteEnd(state);
    for (const char letter : text) {
        state = Next(state, letterOf[static_cast<unsigned char>(letter)]);
        if (ending[state] != None)
            NoteEnd(state);
    }
}

} // namespace korvadex
