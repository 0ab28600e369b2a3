#include "archive/in_place.h"

#include "archive/member_names.h"
#include "archive/mod_unzip.h"
#include "archive/mod_zip.h"
#include "archive/zip_source.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

#include <array>
#include <optional>
#include <span>

namespace korvadex {

namespace {

constexpr std::size_t LocalHeaderSize = 30, CentralHeaderSize = 46, EndRecordSize = 22;

std::uint32_t Little(std::span<const zip_uint8_t> bytes, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = count; i-- > 0;)
        value = value << 8 | bytes[at + i];
    return value;
}

bool ReadAt(zip_source_t* source, std::uint64_t offset, std::span<zip_uint8_t> bytes) {
    return zip_source_seek(source, static_cast<zip_int64_t>(offset), SEEK_SET) == 0 &&
           zip_source_read(source, bytes.data(), bytes.size()) == static_cast<zip_int64_t>(bytes.size());
}

// The name of the only member of an archive that is the whole file, from its first byte to its last; none for
// anything else, such as a program with an archive behind it or an archive with a comment. The records are
// looked at here because the zip library forgives what stands before and behind an archive.
std::optional<std::string> OnlyMember(zip_source_t* source) {
    constexpr std::uint32_t localMagic = 0x04034B50, centralMagic = 0x02014B50, endMagic = 0x06054B50;
    zip_stat_t info;
    zip_stat_init(&info);
    if (zip_source_stat(source, &info) != 0 || (info.valid & ZIP_STAT_SIZE) == 0 ||
        info.size < LocalHeaderSize + CentralHeaderSize + EndRecordSize)
        return std::nullopt;
    std::array<zip_uint8_t, 4> start;
    std::array<zip_uint8_t, EndRecordSize> end;
    if (!ReadAt(source, 0, start) || Little(start, 0, 4) != localMagic ||
        !ReadAt(source, info.size - EndRecordSize, end) || Little(end, 0, 4) != endMagic)
        return std::nullopt;
    const std::uint32_t here = Little(end, 8, 2), total = Little(end, 10, 2);
    const std::uint64_t directorySize = Little(end, 12, 4), directoryOffset = Little(end, 16, 4);
    if (here != 1 || total != 1 || directorySize < CentralHeaderSize ||
        directoryOffset + directorySize + EndRecordSize != info.size)
        return std::nullopt;
    std::array<zip_uint8_t, CentralHeaderSize> central;
    if (!ReadAt(source, directoryOffset, central) || Little(central, 0, 4) != centralMagic ||
        Little(central, 42, 4) != 0)
        return std::nullopt;
    std::string name(Little(central, 28, 2), '\0');
    if (CentralHeaderSize + name.size() > directorySize ||
        !ReadAt(source, directoryOffset + CentralHeaderSize,
                std::span(reinterpret_cast<zip_uint8_t*>(name.data()), name.size())))
        return std::nullopt;
    return name;
}

// True for an archive of nothing but the member of that name.
bool LooksPacked(const FileSystem& files, const std::string& archive, const std::string& name) {
    const auto info = files.Info(archive);
    if (!info || info->kind != EntryKind::File)
        return false;
    ZipError error;
    const ZipSource source = MakeZipSource(files, archive, error);
    if (!source || zip_source_open(source.get()) != 0)
        return false;
    const auto member = OnlyMember(source.get());
    zip_source_close(source.get());
    if (!member)
        return false;
    const MemberName memberName = ReadMemberName(*member);
    return memberName.components.size() == 1 && !memberName.isDirectory &&
           EqualNoCase(memberName.components.front(), name);
}

int TestPacked(CommandContext& context, modUnzip& unzip, const std::string& archive,
               const std::string& name) {
    if (!LooksPacked(context.files, archive, name))
        return UnzipCode::NotAnArchive;
    unzip.uZipFileName = archive;
    unzip.uTestZip = 1;
    return unzip.UnzipArchive(context);
}

// The complete file `made` takes the place of the file at path, whose time and attributes it gets.
Status PutInPlace(CommandContext& context, const std::string& made, const std::string& path) {
    FileSystem& files = context.files;
    if (Status status = files.CopyAttributes(path, made); !status)
        return status;
    if (files.SameVolume(made, path))
        return files.Replace(made, path);
    const auto beside = MakeScratchName(files, context.locations, path);
    if (!beside)
        return beside.status();
    Status status = files.Copy(made, *beside);
    if (status)
        status = files.Replace(*beside, path);
    ReleaseScratch(files, *beside);
    return status;
}

// A file of the original's name inside the program's scratch directory below the simulator, where nothing lies yet.
class ScratchFile {
  public:
    ScratchFile(CommandContext& commandContext, const std::string& original) : context(commandContext) {
        const std::string name = LastPathComponent(original);
        const auto made = MakeScratchDirectory(context.files, context.locations.MsfsDir);
        if (!made || EqualNoCase(*made + name, original))
            return;
        directory = *made;
        path = directory + name;
        DeleteFileForced(context.files, path); // left by an earlier run
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() {
        if (!path.empty())
            ReleaseScratch(context.files, path);
    }
    bool IsMade() const { return !path.empty(); }

    std::string directory, path;

  private:
    CommandContext& context;
};

} // namespace

int UnzipFileInPlace(CommandContext& context, const std::string& path, bool testOnly) {
    if (path.empty())
        return UnzipCode::Ok;
    const std::string name = LastPathComponent(path);
    modUnzip unzip;
    unzip.uPromptOverwrite = 0;
    unzip.uOverwriteFiles = 1;
    unzip.uDisplayComment = 0;
    unzip.uExtractList = 0;
    unzip.uHonorDirectories = 1;
    unzip.uPasswordAsked = 1; // nothing is packed with a password, so none is asked for
    if (const int code = TestPacked(context, unzip, path, name); code != UnzipCode::Ok || testOnly)
        return code;

    int code = UnzipCode::DiskFull;
    if (const ScratchFile scratch(context, path); scratch.IsMade()) {
        unzip.uTestZip = 0;
        unzip.uExtractDir = scratch.directory;
        code = unzip.UnzipArchive(context);
        if (code == UnzipCode::Ok && !PutInPlace(context, scratch.path, path))
            code = UnzipCode::DiskFull;
    }
    if (code != UnzipCode::Ok)
        context.user.Tell("There was a problem unzipping file " + unzip.uZipFileName +
                              ".  It may be corrupt. (code " + std::to_string(code) + ")",
                          MessageIcon::Exclamation);
    return code;
}

void ZipFileInPlace(CommandContext& context, const std::string& path) {
    if (path.empty() || UnzipFileInPlace(context, path, true) == UnzipCode::Ok)
        return;
    const std::string name = LastPathComponent(path);
    int code = ZipCode::CannotCreate;
    if (const ScratchFile scratch(context, path); scratch.IsMade()) {
        modZip zip;
        zip.zJunkDir = 1;
        zip.zLevel = '9';
        zip.zNumberFiles = 1;
        zip.zZipFileName = scratch.path;
        zip.zZipNames[0] = path;
        code = zip.ZipArchive(context);
        // Only an archive that gives the file back may take its place.
        modUnzip unzip;
        unzip.uPasswordAsked = 1;
        if (code == ZipCode::Ok && (TestPacked(context, unzip, scratch.path, name) != UnzipCode::Ok ||
                                    !PutInPlace(context, scratch.path, path)))
            code = ZipCode::WriteError;
    }
    if (code != ZipCode::Ok)
        context.user.Tell("There was a problem zipping file " + path + ". (code " + std::to_string(code) +
                              ")",
                          MessageIcon::Exclamation);
}

} // namespace korvadex
