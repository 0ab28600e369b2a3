// Reading and writing of a file that the Windows half of this floor has opened.
#pragma once

#include "platform/win32.h"

namespace korvadex {

// The path is for messages.
std::unique_ptr<InputFile> MakeInputFile(UniqueHandle handle, const std::string& path);
std::unique_ptr<OutputFile> MakeOutputFile(UniqueHandle handle, const std::string& path);

} // namespace korvadex
