// Archives other than zip for tests: by libarchive where it writes the kind, else byte by byte.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvadex::test {

struct ContainerMember {
    std::string name, bytes = {};
    unsigned kind = 0100000; // a file; as Unix has them in a mode, where the archive knows them
    std::string link = {};   // what a link (0120000), or a hard link (0100000), leads to
};
using ContainerMembers = std::vector<ContainerMember>;

// The kinds by their extensions. Names that are not ASCII only the second can hold on every host, as bytes.
inline const std::vector<std::string> LibraryKinds = {"7z", "tar", "tar.gz", "tar.bz2", "tar.xz", "tar.zst", "iso"};
inline const std::vector<std::string> HandmadeKinds = {"rar", "rar4", "lzh", "cab"};

std::string Container(std::string_view kind, const ContainerMembers& members);

// Byte by byte, stored; what the first member claims its size to be can be another.
struct HandmadeLies {
    int moreBytes = 0;        // than there are, unpacked
    bool isEncrypted = false; // rar
    bool isVolume = false;    // rar, rar4, cab
    bool isPacked = false;    // rar4: says so
};
std::string Handmade(std::string_view kind, const ContainerMembers& members, const HandmadeLies& lies);

// A file a.txt of "secret" in an archive that wants as much memory as this byte of LZMA2 says (40: 4 GB).
std::string SevenZipOfMemory(char dictionary, bool isHeaderPacked);
std::string TarXzOfMemory(char dictionary);

} // namespace korvadex::test
