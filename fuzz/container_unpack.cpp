// An archive of another kind than zip that is unpacked into Staging.
#include "fuzz/check.h"
#include "fuzz/unpacked.h"

namespace korvadex::fuzz {

void Run(std::string_view input) {
    // The others are another target's.
    if (!input.starts_with("PK"))
        UnpackAndCheck(input);
}

} // namespace korvadex::fuzz
