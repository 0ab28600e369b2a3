// The program's door to the unzip library: the options of the next call, asked and told on the way through the user's
// dialogs and the main window.
#pragma once

#include "archive/unzip_library.h"
#include "package/command_context.h"

#include <cstdint>
#include <string>

namespace korvadex {

// Each caller sets what it needs before UnzipArchive.
struct modUnzip {
    // Flags, 0 or 1; see DCL for those that are not offered.
    std::int16_t uExtractOnlyNewer = 0;
    std::int16_t uSpaceToUnderscore = 0;
    std::int16_t uPromptOverwrite = 0; // ask before overwriting
    std::int16_t uQuiet = 0;
    std::int16_t uWriteStdout = 0;
    std::int16_t uTestZip = 0;     // test only, write nothing
    std::int16_t uExtractList = 0; // list only
    std::int16_t uFreshenExisting = 0;
    std::int16_t uDisplayComment = 0;
    std::int16_t uHonorDirectories = 0; // re-create the archive's directories
    std::int16_t uOverwriteFiles = 0;   // overwrite without asking
    std::int16_t uConvertCRLF = 0;
    std::int16_t uVerbose = 0;
    std::int16_t uCaseInsensitive = 0;
    std::int16_t uPrivilege = 0;
    std::string uZipFileName = {}; // full path of the archive
    std::string uExtractDir = {};
    std::int32_t uNumberFiles = 0, uNumberXFiles = 0;
    NameList uZipNames = {}, uExcludeNames = {};
    bool uShowProgress = false; // in the main window, when there is enough to do

    // 1 once the password prompt was shown; it is not shown again before this is 0.
    std::int16_t uPasswordAsked = 0;
    std::string uRightPassword = {}; // the last one that fitted, tried before the prompt is shown; kept nowhere else

    // Filled by UnzipArchive: information on the library and the archive, with all that the library printed.
    std::string uZipMessage = {};

    // One call of the library with these options.
    UnpackReport UnzipArchive(CommandContext& context);
};

} // namespace korvadex
