// How the reading of an archive or of one of its members ended, by the numbers that users of Info-ZIP know.
#pragma once

namespace korvadex::UnzipCode {

inline constexpr int Ok = 0;
inline constexpr int Warning = 1;    // sound, but there was something to tell: the archive is empty
inline constexpr int Error = 2;      // a member is damaged
inline constexpr int BadArchive = 3; // the archive's own records are damaged
inline constexpr int NoMemory = 4;
inline constexpr int NotAnArchive = 9; // or not there at all
inline constexpr int BadParameter = 10;
inline constexpr int DiskFull = 50; // a file could not be written
inline constexpr int Truncated = 51;
inline constexpr int Stopped = 80;     // the caller said so
inline constexpr int Unsupported = 81; // a method of compression or encryption that is not known here
inline constexpr int BadPassword = 82;

} // namespace korvadex::UnzipCode
