// The unzip library under the names of Info-ZIP: its records, callbacks and numeric codes.
#pragma once

#include "archive/archive_reader.h"
#include "archive/unpack.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace korvadex {

// What the replace and the password routine answer.
inline constexpr int ReplaceNone = 100;
inline constexpr int ReplaceYes = 102;
inline constexpr int PasswordEntered = 0;
inline constexpr int PasswordSkip = -1; // leaves the member out

using NameList = std::array<std::string, 100>;

// The options of one call, in the published order. Those marked * are not offered: a call that sets one gives
// BadParameter.
struct DCL {
    std::int32_t ExtractOnlyNewer = 0;  // *
    std::int32_t SpaceToUnderscore = 0; // *
    std::int32_t PromptToOverwrite = 0;
    std::int32_t fQuiet = 0;     // 0: prints what is refused
    std::int32_t ncflag = 0;     // * write to standard output
    std::int32_t ntflag = 0;     // test only
    std::int32_t nvflag = 0;     // list only
    std::int32_t nfflag = 0;     // * freshen existing files
    std::int32_t nzflag = 0;     // * show the comment
    std::int32_t ndflag = 0;     // re-create directories; without it all files go into one
    std::int32_t noflag = 0;     // overwrite without asking
    std::int32_t naflag = 0;     // * convert line ends
    std::int32_t nZIflag = 0;    // * verbose
    std::int32_t C_flag = 0;     // * match names without case
    std::int32_t fPrivilege = 0; // *
    std::string lpszZipFN = {};
    std::string lpszExtractDir = {};

    bool operator==(const DCL&) const = default;
};

struct UnzipCallbacks {
    std::function<int(std::string_view text)> print;
    std::function<void()> sound; // never called
    std::function<int(const std::string& file)> replace;
    std::function<int(std::string& password)> password;
    std::function<void(const ArchiveMember& member)> message;                  // a line of the list
    std::function<int(const std::string& member, std::uint64_t size)> service; // other than 0 stops
    // Filled in by the library.
    std::uint32_t TotalSizeComp = 0;
    std::uint32_t TotalSize = 0;
    std::uint32_t CompFactor = 0; // per cent
    std::uint32_t NumMembers = 0;
    std::uint32_t cchComment = 0;

    // Beyond Info-ZIP: how far the work is, in bytes, and a password to try before anyone is asked.
    std::function<void(std::uint64_t done, std::uint64_t total)> progress;
    std::string rightPassword;
};

// Text fields end in a NUL.
struct UnzipVersion {
    std::uint32_t structlen = 0;
    std::array<char, 10> betalevel{};
    std::array<char, 20> date{};
    std::array<char, 10> zlibversion{};
};
void UzpVersion2(UnzipVersion& version);

// Lists, tests or unpacks one archive; the report's code is the library's. Lists of names are not offered: a count
// other than 0 gives BadParameter.
UnpackReport Wiz_SingleEntryUnzip(UnpackDisk disk, std::int32_t includedCount, const NameList& included,
                                  std::int32_t excludedCount, const NameList& excluded, const DCL& options,
                                  UnzipCallbacks& callbacks);

} // namespace korvadex
