#include "archive/viewing_copy.h"

#include "archive/in_place.h"
#include "archive/unzip_code.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

namespace korvadex {

namespace {

bool IsPacked(CommandContext& context, const std::string& path) {
    const bool isOfAKindThatIsPacked = EndsWithNoCase(path, ".bmp") || EndsWithNoCase(path, ".gau");
    return isOfAKindThatIsPacked && UnzipFileInPlace(context, path, true) == UnzipCode::Ok;
}

// Only under its own name can it be unpacked.
Status Unpack(CommandContext& context, const std::string& path, const std::string& directory, const std::string& copy) {
    Status status = context.files.CreateDirectory(directory);
    if (status)
        status = context.files.Copy(path, copy);
    if (status && UnzipFileInPlace(context, copy) != UnzipCode::Ok)
        status = {FileFault::DiskFull, copy};
    return status;
}

} // namespace

std::string MakeViewingCopy(CommandContext& context, const std::string& path) {
    if (!IsPacked(context, path))
        return path;
    const std::string name = LastPathComponent(path);
    auto scratch = MakeScratchName(context.files, context.locations, path);
    if (!scratch) // a Hangar that cannot be written is fine for looking at packages
        scratch = MakeScratchName(context.files, context.locations, context.locations.StagingDir + name);
    const std::string copy = scratch ? AddBackslash(*scratch) + name : "";
    const Status status = scratch ? Unpack(context, path, *scratch, copy) : scratch.status();
    if (status) {
        static_cast<void>(context.files.SetReadOnly(copy, true)); // a change would be lost with it
        return copy;
    }
    if (scratch)
        ReleaseScratch(context.files, *scratch);
    context.user.Tell("The file " + path + " is packed, and no unpacked copy of it could be made (" +
                          DescribeFault(status) +
                          ").  Please make sure that the disk has room and can be written, and try again.",
                      MessageIcon::Exclamation);
    return "";
}

} // namespace korvadex
