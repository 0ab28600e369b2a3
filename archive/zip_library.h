// The zip library under the names of Info-ZIP: its records, callbacks and numeric codes. It makes archives of one
// member.
#pragma once

#include "platform/file_system.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace korvadex {

class DeflatedFile;

// What users of Info-ZIP know these numbers for.
namespace ZipCode {
inline constexpr int Ok = 0;
inline constexpr int NoMemory = 4;
inline constexpr int TooBig = 6;
inline constexpr int ReadError = 11;
inline constexpr int WriteError = 14;
inline constexpr int CannotCreate = 15;
inline constexpr int BadParameter = 16;
inline constexpr int CannotOpen = 18; // the file to be packed
} // namespace ZipCode

// The options, in the published order. Other values than those named give BadParameter.
struct ZPOPT {
    std::string Date = {};
    std::string szRootDir = {}, szTempDir = {};
    std::int32_t fTemp = 0, fSuffix = 0, fEncrypt = 0, fSystem = 0, fVolume = 0, fExtra = 0, fNoDirEntries = 0,
                 fExcludeDate = 0, fIncludeDate = 0, fVerbose = 0, fQuiet = 0, fCRLF_LF = 0, fLF_CRLF = 0;
    std::int32_t fJunkDir = 0; // 1: the file without its directories, the only way here
    std::int32_t fGrow = 0, fForce = 0, fMove = 0, fDeleteEntries = 0, fUpdate = 0, fFreshen = 0, fJunkSFX = 0,
                 fLatestTime = 0, fComment = 0, fOffsets = 0, fPrivilege = 0, fEncryption = 0, fRecurse = 0,
                 fRepair = 0;
    char flevel = '6'; // '1' to '9'

    bool operator==(const ZPOPT&) const = default;
};

// What to pack: one name, and the archive to make, which must not be there yet.
struct ZCL {
    std::int32_t argc = 0;
    std::string lpszZipFN;
    std::array<std::string, 100> FNV;
};

struct ZipCallbacks {
    std::function<int(std::string_view text)> print;
    std::function<int(std::string& comment)> comment;
    std::function<int(std::string& password)> password;
    std::function<int(const std::string& member, std::uint64_t size)> service;
};

// What the library remembers from one routine to the next.
struct ZipState {
    ZipCallbacks callbacks;
    ZPOPT options;
};

void ZpInit(ZipState& state, ZipCallbacks callbacks);
void ZpSetOptions(ZipState& state, const ZPOPT& options);
const ZPOPT& ZpGetOptions(const ZipState& state);
// Makes the archive, packed as Deflater tells. The file to add may have been read and packed before.
int ZpArchive(ZipState& state, FileSystem& files, const ZCL& names, DeflatedFile* prepared = nullptr);

} // namespace korvadex
