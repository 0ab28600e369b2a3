// The program's door to the unzip library: the options of the next call, and what the last one said.
#pragma once

#include "archive/unzip_library.h"
#include "package/command_context.h"

#include <cstdint>
#include <string>
#include <vector>

namespace korvadex {

// Each caller sets what it needs before UnzipArchive; nothing is reset between calls but what UnzipArchive
// reports.
struct modUnzip {
    // Flags, 0 or 1.
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
    std::string uZipFileName; // full path of the archive
    std::string uExtractDir;
    std::int32_t uNumberFiles = 0, uNumberXFiles = 0;
    NameList uZipNames, uExcludeNames;
    bool uShowProgress = false; // in the main window, when there is enough to do

    // 1 once the password prompt was shown; it is not shown again before this is 0.
    std::int16_t uPasswordAsked = 0;
    std::string uRightPassword; // the last one that fitted, tried before the prompt is shown; kept nowhere else

    // Filled by UnzipArchive: information on the library and the archive, with all that the library printed.
    std::string uZipMessage;
    struct Refused {
        std::string name, reason;
    };
    std::vector<Refused> uRefused; // members that were left out although they are sound
    // Set when the archive needs more room than the disk has; then nothing was unpacked.
    std::uint64_t uRoomNeeded = 0, uRoomFree = 0;

    std::vector<std::string> uExplanations; // sentences that say more than the code
    std::vector<std::string> uWritten;      // what is to be flushed before it can be relied on

    // One call of the library with these options; its code, 0 for success.
    int UnzipArchive(CommandContext& context);
};

} // namespace korvadex
