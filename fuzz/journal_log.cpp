// The log of a command that was cut off, whatever the disk has made of it.
#include "fuzz/check.h"

#include "journal/record.h"

namespace korvadex::fuzz {

void Run(std::string_view input) {
    const Journal journal = ReadJournal(input);
    std::string text;
    for (const Record& record : journal.records)
        text += LineOf(record);
    for (const LeftPlace& left : journal.left)
        text += LineOf(left);
    const Journal again = ReadJournal(text);
    Require(again.records == journal.records, "what was read is written so that it is read again");
    Require(again.left == journal.left, "so are the places that were left");
    // A cut in the middle of a line costs that line alone.
    const Journal cut = ReadJournal(std::string_view(text).substr(0, text.size() / 2));
    Require(cut.records.size() <= journal.records.size() &&
                std::equal(cut.records.begin(), cut.records.end(), journal.records.begin()),
            "a log that was cut off says what stands before the cut");
}

} // namespace korvadex::fuzz
