#include "archive/deflated_file.h"
#include "archive/in_place_work.h"
#include "archive/mod_zip.h"
#include "archive/packed_member.h"
#include "archive/unzip_code.h"
#include "platform/windows_path.h"
#include "platform/workers.h"

#include <new>

namespace korvadex {

namespace {

constexpr int BestZipLevel = 9;

std::string Describe(const std::string& path, const Problem& problem) {
    return "There was a problem zipping file " + path + ". (code " + std::to_string(problem.code) + ")  (" +
           problem.cause + ")";
}

// A file on its way into an archive.
class Packing : public InPlaceJob {
  public:
    Packing(CommandContext& context, const std::string& filePath, Workers<Deflater>& workers);
    std::uint64_t Bytes() const override { return contents ? seen->size : 0; }
    Problem Finish(CommandContext& context, ReplaceBatch& batch) override;

  private:
    // Makes the archive in the directory, under the file's own name.
    Problem Zip(CommandContext& context, const std::string& directory);

    bool IsPackedAlready(CommandContext& context);

    Problem unclear = {}; // why it could not be found out whether it is packed
    bool isPackedAlready = false;
    std::shared_ptr<DeflatedFile> contents; // none where the file is to be packed while it is written
    std::future<void> packed;
};

Packing::Packing(CommandContext& context, const std::string& filePath, Workers<Deflater>& workers)
    : InPlaceJob(context.files, filePath) {
    isPackedAlready = path.empty() || IsPackedAlready(context);
    if (isPackedAlready || unclear.code != 0 || !seen || seen->kind != EntryKind::File)
        return;
    auto file = std::make_shared<DeflatedFile>(context.files, path);
    if (!file->Read(*seen) || !file->IsRead())
        return;
    contents = std::move(file);
    packed = workers.Start([wanted = std::weak_ptr(contents)](Deflater& deflater) {
        if (const auto stillWanted = wanted.lock())
            stillWanted->Pack(deflater, BestZipLevel);
    });
}

bool Packing::IsPackedAlready(CommandContext& context) {
    int code = UnzipFileInPlace(context, path, true);
    if (code != UnzipCode::Ok && code != UnzipCode::NoMemory && seen && seen->kind == EntryKind::File) {
        const auto read = ReadLikeArchive(context.files, path);
        if (!read)
            unclear = {ZipCode::CannotOpen, DescribeFault(read.status())};
        else if (*read) // it may not have been readable for a moment only
            code = UnzipFileInPlace(context, path, true);
    }
    if (code == UnzipCode::NoMemory)
        unclear = {ZipCode::NoMemory, NoMemoryText};
    return code == UnzipCode::Ok;
}

std::string CauseOf(const CommandContext& context, const std::string& directory, int zipCode, std::uint64_t size) {
    const auto space = context.files.FreeSpace(directory);
    switch (zipCode) {
    case ZipCode::NoMemory:
        return NoMemoryText;
    case ZipCode::TooBig:
        return "it is larger than 4 GB";
    case ZipCode::ReadError:
    case ZipCode::CannotOpen:
        return "it could not be read";
    default:
        return space && *space < size ? DescribeFault(FileFault::DiskFull) : "the archive could not be written";
    }
}

Problem Packing::Zip(CommandContext& context, const std::string& directory) {
    modZip zip;
    zip.names = {.argc = 1, .lpszZipFN = directory + LastPathComponent(path), .FNV = {path}};
    zip.options.flevel = '0' + BestZipLevel;
    zip.prepared = contents.get();
    static_cast<void>(context.files.MakeRoom(directory, seen->size)); // without it, the archive tells
    if (const int code = zip.ZipArchive(context); code != ZipCode::Ok)
        return {code, CauseOf(context, directory, code, seen->size)};
    if (!ReadPackedMember(context.files, zip.names.lpszZipFN))
        return {ZipCode::WriteError, "the archive could not be written"};
    return {};
}

Problem Packing::Finish(CommandContext& context, ReplaceBatch& batch) {
    if (isPackedAlready)
        return {};
    if (!seen)
        return {ZipCode::CannotOpen, "it could not be read"};
    if (unclear.code != 0)
        return unclear;
    try {
        if (packed.valid())
            packed.get();
    } catch (const std::bad_alloc&) {
        return {ZipCode::NoMemory, NoMemoryText};
    }
    const auto directory = batch.DirectoryFor(path);
    if (!directory)
        return {ZipCode::CannotCreate, DescribeFault(directory.status())};
    Problem problem = Zip(context, *directory);
    if (problem.code == ZipCode::Ok) {
        if (const Status added = batch.Add(*directory, path, *seen); !added)
            problem = {ZipCode::WriteError, DescribeFault(added)};
    }
    if (problem.code != ZipCode::Ok)
        batch.Drop(*directory, path);
    return problem;
}

} // namespace

void ZipFileInPlace(CommandContext& context, const std::string& path) {
    for (const FileFailure& failure : ZipFilesInPlace(context, {path}, [] {}))
        context.user.Tell(failure.text, MessageIcon::Exclamation);
}

std::vector<FileFailure> ZipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                                         const std::function<void()>& afterEach) {
    return InPlaceWork(context, MakePacking()).Take(0, paths, afterEach);
}

InPlaceKind MakePacking() {
    return {[workers = std::make_shared<Workers<Deflater>>(ProcessorCount())](CommandContext& context,
                                                                              const std::string& path) {
                return std::make_unique<Packing>(context, path, *workers);
            },
            ZipCode::WriteError, Describe};
}

} // namespace korvadex
