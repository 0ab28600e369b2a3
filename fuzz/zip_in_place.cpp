// A file of a package that may be kept packed: it is unpacked whole or left as it is, and packing it loses nothing.
#include "archive/checksum.h"
#include "archive/in_place.h"
#include "fuzz/check.h"
#include "fuzz/drive.h"

namespace korvadex::fuzz {

namespace {

const std::string Relative = "Hangar\\Jets\\Lear\\a.bmp", Path = "C:\\" + Relative;

// Nothing is to be lost when it is packed and unpacked again.
void CheckPacking(Drive& drive) {
    if (ReadPackedMember(drive.Files(), Path))
        return;
    const std::string bytes = drive.Get(Relative);
    ZipFileInPlace(drive.Context(), Path);
    Require(ReadPackedMember(drive.Files(), Path).has_value(), "a file can be packed");
    Require(UnzipFileInPlace(drive.Context(), Path) == 0 && drive.Get(Relative) == bytes, "packing loses nothing");
}

} // namespace

void Run(std::string_view input) {
    Drive drive;
    drive.Put(Relative, input);
    const Entries before = drive.Tree();
    UnzipFilesInPlace(drive.Context(), {Path}, [] {});
    const std::string unpackedInBatch = drive.Get(Relative);

    drive.Put(Relative, input);
    const auto member = ReadPackedMember(drive.Files(), Path);
    const bool isSound = UnzipFileInPlace(drive.Context(), Path, true) == 0;
    Require(drive.Get(Relative) == input, "a test changes nothing");
    Require(member || !isSound, "what can be unpacked is packed");
    Require((UnzipFileInPlace(drive.Context(), Path) == 0) == isSound, "what a test finds sound can be unpacked");
    const std::string bytes = drive.Get(Relative);
    Require(isSound ? bytes.size() == member->size && *FileChecksum(drive.Files(), Path) == member->crc
                    : bytes == input,
            "a file is unpacked whole or left as it is");
    Require(unpackedInBatch == bytes, "many at once are unpacked as one alone");
    if (input.size() % 8 == 0) // it takes longer than all the rest
        CheckPacking(drive);
    Require(Outside(Relative, drive.Tree()) == Outside(Relative, before), "no other file changes");
}

} // namespace korvadex::fuzz
