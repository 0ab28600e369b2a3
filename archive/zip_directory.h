// The directory at the end of an archive, read as other programs read it and written anew for the zip library,
// which wants every byte of it to be right.
//
// What is forgiven: bytes before the archive that its offsets do not count (a program that unpacks it), padding
// behind the further fields of a member, names that are not the UTF-8 they are said to be, bytes behind the end.
#pragma once

#include <cstdint>
#include <string>
#include <vector>
#include <zip.h>

namespace korvadex {

// What the zip library does not tell of a member.
struct MemberKind {
    std::uint16_t method = 0; // of compression, below the encryption
    bool hasCrc = true;       // false: the archive has none, as the encryption vouches for the bytes
};

struct ZipDirectory {
    std::uint64_t begin = 0; // where in the file the archive begins
    std::uint64_t size = 0;  // bytes from there to the end of the old directory
    std::string records;     // the new directory and its end: they stand behind those bytes
    std::string comment;
    std::vector<MemberKind> members;
};

// From an open source. 0, or libzip's number for why there is none.
int ReadZipDirectory(zip_source_t* file, ZipDirectory& directory);

} // namespace korvadex
