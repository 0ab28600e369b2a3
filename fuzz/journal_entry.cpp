// An entry of the history.
#include "fuzz/check.h"

#include "journal/history_entry.h"

namespace korvadex::fuzz {

void Run(std::string_view input) {
    if (const auto entry = ReadEntry(input))
        Require(ReadEntry(LineOf(*entry)) == entry, "what was read is written so that it is read again");
}

} // namespace korvadex::fuzz
