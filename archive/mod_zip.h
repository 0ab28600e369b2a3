// The program's door to the zip library: the options of the next call, which packs one file.
#pragma once

#include "archive/zip_library.h"
#include "package/command_context.h"

#include <cstdint>
#include <string>

namespace korvadex {

// Each caller sets what it needs before ZipArchive. What is not named here stays at the library's 0.
struct modZip {
    std::string zDate;
    std::int32_t zEncrypt = 0;
    std::int32_t zJunkDir = 0; // 1: the file without its directories
    std::int32_t zUpdate = 0;
    std::int32_t zFreshen = 0;
    std::int32_t zComment = 0;
    std::int32_t zRecurse = 0;
    char zLevel = '9'; // most packed
    std::int32_t zNumberFiles = 0;
    std::string zZipFileName;               // the archive to make
    std::array<std::string, 100> zZipNames; // entry 0: the file to add
    std::string zZipMessage;                // what the library printed
    DeflatedFile* zPrepared = nullptr;      // the file to add, when it is read and packed already

    // One call of the library with these options; its code, 0 for success.
    std::int16_t ZipArchive(CommandContext& context);
};

} // namespace korvadex
