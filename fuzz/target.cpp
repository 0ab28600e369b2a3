#include "fuzz/check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    korvadex::fuzz::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
