// What every target needs: the door that libFuzzer comes through, and a way to say that something is not as it should
// be.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace korvadex::fuzz {

// A target fails with this text.
inline void Require(bool isTrue, const char* what) {
    if (isTrue)
        return;
    std::fprintf(stderr, "Not as it should be: %s\n", what);
    std::abort();
}

// One run on these bytes, written once for each target.
void Run(std::string_view input);

} // namespace korvadex::fuzz
