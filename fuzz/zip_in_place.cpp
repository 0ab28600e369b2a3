// A file of a package that may be kept packed: it is unpacked whole or left as it is, and packing it loses nothing.
#include "archive/checksum.h"
#include "archive/in_place.h"
#include "fuzz/check.h"
#include "fuzz/drive.h"

namespace korvadex::fuzz {

namespace {

const std::string Relative = "Hangar\\Jets\\Lear\\a.bmp", Path = "C:\\" + Relative;

std::string Bytes(const Drive& drive) {
    return drive.Get(Relative);
}

// What the unpacking of a batch makes of the file.
std::string UnpackedInBatch(std::string_view input) {
    Drive drive;
    drive.Put(Relative, input);
    UnzipFilesInPlace(drive.Context(), {Path}, [] {});
    return Bytes(drive);
}

} // namespace

void Run(std::string_view input) {
    Drive drive;
    drive.Put(Relative, input);
    const Entries before = drive.Tree();
    const auto member = ReadPackedMember(drive.Files(), Path);
    const bool isSound = UnzipFileInPlace(drive.Context(), Path, true) == 0;
    Require(Bytes(drive) == input, "a test changes nothing");
    Require(member || !isSound, "what can be unpacked is packed");
    Require((UnzipFileInPlace(drive.Context(), Path) == 0) == isSound, "what a test finds sound can be unpacked");
    const std::string bytes = Bytes(drive);
    Require(isSound ? bytes.size() == member->size && *FileChecksum(drive.Files(), Path) == member->crc
                    : bytes == input,
            "a file is unpacked whole or left as it is");
    Require(UnpackedInBatch(input) == bytes, "many at once are unpacked as one alone");

    if (!ReadPackedMember(drive.Files(), Path)) {
        ZipFileInPlace(drive.Context(), Path);
        Require(ReadPackedMember(drive.Files(), Path).has_value(), "a file can be packed");
        Require(UnzipFileInPlace(drive.Context(), Path) == 0 && Bytes(drive) == bytes, "packing loses nothing");
    }
    Require(Outside(Relative, drive.Tree()) == Outside(Relative, before), "no other file changes");
}

} // namespace korvadex::fuzz
