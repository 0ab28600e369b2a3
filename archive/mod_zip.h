// The program's door to the zip library: one call packs one file.
#pragma once

#include "archive/zip_library.h"
#include "package/command_context.h"

#include <cstdint>

namespace korvadex {

// Each caller sets what it needs before ZipArchive.
struct modZip {
    ZPOPT options = {.fJunkDir = 1, .flevel = '9'}; // without its directories, packed as small as it gets
    ZCL names;
    DeflatedFile* prepared = nullptr; // the file to add, when it is read and packed already

    // One call of the library with these options; its code (see ZipCode), 0 for success.
    std::int16_t ZipArchive(CommandContext& context);
};

} // namespace korvadex
