// An archive of any kind that is unpacked into Staging: nothing comes to lie anywhere else, and when all went well all
// is there.
#pragma once

#include <string_view>

namespace korvadex::fuzz {

void UnpackAndCheck(std::string_view archive);

} // namespace korvadex::fuzz
