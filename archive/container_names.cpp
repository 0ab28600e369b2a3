#include "archive/container_names.h"

#include "platform/code_page.h"

namespace korvadex {

std::string ReadAgain(const std::string& name) {
    const auto bytes = ToCodePage437(name);
    return bytes && IsValidUtf8(*bytes) ? *bytes : name;
}

} // namespace korvadex
