// A zip archive that is unpacked into Staging.
#include "fuzz/check.h"
#include "fuzz/unpacked.h"

namespace korvadex::fuzz {

void Run(std::string_view input) {
    UnpackAndCheck(input);
}

} // namespace korvadex::fuzz
