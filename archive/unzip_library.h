// The unzip library as the program calls it: Info-ZIP's records, callbacks and numeric codes, with libzip and
// libdeflate behind them.
#pragma once

#include "package/locations.h"
#include "platform/file_system.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// What users of Info-ZIP know these numbers for.
namespace UnzipCode {
inline constexpr int Ok = 0;
inline constexpr int Warning = 1;    // sound, but there was something to tell: the archive is empty
inline constexpr int Error = 2;      // a member is damaged
inline constexpr int BadArchive = 3; // the archive's own records are damaged
inline constexpr int NoMemory = 4;
inline constexpr int NotAnArchive = 9; // or not there at all
inline constexpr int BadParameter = 10;
inline constexpr int DiskFull = 50; // a file could not be written
inline constexpr int Truncated = 51;
inline constexpr int Stopped = 80;     // the service routine said so
inline constexpr int Unsupported = 81; // a method of compression or encryption that is not known here
inline constexpr int BadPassword = 82;
} // namespace UnzipCode

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
    std::int32_t fQuiet = 0;
    std::int32_t ncflag = 0;     // * write to standard output
    std::int32_t ntflag = 0;     // test only
    std::int32_t nvflag = 0;     // list only
    std::int32_t nfflag = 0;     // * freshen existing files
    std::int32_t nzflag = 0;     // show the comment
    std::int32_t ndflag = 0;     // re-create directories; without it all files go into one
    std::int32_t noflag = 0;     // overwrite without asking
    std::int32_t naflag = 0;     // * convert line ends
    std::int32_t nZIflag = 0;    // * verbose
    std::int32_t C_flag = 0;     // names of the lists match without case
    std::int32_t fPrivilege = 0; // *
    std::string lpszZipFN;
    std::string lpszExtractDir;
};

// One line of a listing.
struct ListedMember {
    std::string name;
    std::uint64_t size = 0, compressedSize = 0;
    FileTime time{};
    bool isEncrypted = false;
};

struct UnzipCallbacks {
    std::function<int(std::string_view text)> print;
    std::function<void()> sound; // never called
    std::function<int(const std::string& file)> replace;
    std::function<int(std::string& password, const std::string& member)> password;
    std::function<void(const ListedMember& member)> message;
    std::function<int(const std::string& member, std::uint64_t size)> service; // other than 0 stops
    // Filled in by the library, before the first member is touched.
    std::uint32_t TotalSizeComp = 0;
    std::uint32_t TotalSize = 0;
    std::uint32_t CompFactor = 0; // per cent
    std::uint32_t NumMembers = 0;
    std::uint32_t cchComment = 0;

    // Beyond Info-ZIP: a member that was left out because of its name, its kind or what is in its way; the
    // room that the archive needs when the disk has less of it (nothing is unpacked then); how far the work
    // is, in bytes.
    std::function<void(const std::string& member, const std::string& reason)> refused;
    std::function<void(std::uint64_t needed, std::uint64_t free)> noRoom;
    std::function<void(std::uint64_t done, std::uint64_t total)> progress;
    // A password to try before anyone is asked; afterwards the one that was right, if there was any.
    std::string rightPassword;
    // Filled in: what there is to say about the code, and the files and directories whose bytes may still wait to be
    // flushed.
    std::vector<std::string> explanations;
    std::vector<std::string> written;
};

// Text fields end in a NUL.
struct UnzipVersion {
    std::uint32_t structlen = 0;
    std::array<char, 10> betalevel{};
    std::array<char, 20> date{};
    std::array<char, 10> zlibversion{};
};
void UzpVersion2(UnzipVersion& version);

// Where an archive is unpacked: scratch files for what is overwritten lie by the locations' rules.
struct UnzipDisk {
    FileSystem& files;
    const Locations& locations;
};

// Lists, tests or unpacks one archive. The lists name the only members wanted, and those not wanted; a count
// of 0 means no list. A damaged member does not stop the others; the gravest code is returned. No half file
// stays.
int Wiz_SingleEntryUnzip(UnzipDisk disk, std::int32_t includedCount, const NameList& included,
                         std::int32_t excludedCount, const NameList& excluded, const DCL& options,
                         UnzipCallbacks& callbacks);

} // namespace korvadex
