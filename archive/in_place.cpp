#include "archive/in_place.h"

#include "archive/deflated_file.h"
#include "archive/inflaters.h"
#include "archive/member_names.h"
#include "archive/mod_unzip.h"
#include "archive/mod_zip.h"
#include "archive/zip_bytes.h"
#include "archive/zip_source.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <array>
#include <deque>
#include <future>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <thread>
#include <utility>

namespace korvadex {

namespace {

constexpr int BestZipLevel = 9;

unsigned ProcessorCount() {
    return std::clamp(std::thread::hardware_concurrency(), 1u, 16u);
}

struct OnlyMember {
    std::string name;
    std::uint64_t size = 0, packedSize = 0;
    std::uint32_t crc = 0, method = 0;
    bool isEncrypted = false;
};

// The only member of an archive that is the whole file, from its first byte to its last; none for anything else, such as
// a program with an archive behind it or an archive with a comment. What other programs forgive is no packed file.
std::optional<OnlyMember> ReadOnlyMember(zip_source_t* source) {
    const std::uint64_t size = SizeOf(source).value_or(0);
    if (size < ZipRecord::LocalSize + ZipRecord::CentralSize + ZipRecord::EndSize)
        return std::nullopt;
    const auto start = BytesAt(source, 0, 4),
               end = BytesAt(source, size - ZipRecord::EndSize, ZipRecord::EndSize);
    if (!start || !end || Little(*start, 0, 4) != ZipRecord::Local || Little(*end, 0, 4) != ZipRecord::End)
        return std::nullopt;
    const std::uint64_t directorySize = Little(*end, 12, 4), directoryOffset = Little(*end, 16, 4);
    if (Little(*end, 8, 2) != 1 || Little(*end, 10, 2) != 1 || directorySize < ZipRecord::CentralSize ||
        directoryOffset + directorySize + ZipRecord::EndSize != size)
        return std::nullopt;
    const auto directory = BytesAt(source, directoryOffset, directorySize);
    if (!directory || Little(*directory, 0, 4) != ZipRecord::Central || Little(*directory, 42, 4) != 0)
        return std::nullopt;
    const std::size_t nameSize = Little(*directory, 28, 2);
    if (ZipRecord::CentralSize + nameSize > directorySize)
        return std::nullopt;
    return OnlyMember{.name = directory->substr(ZipRecord::CentralSize, nameSize),
                      .size = Little(*directory, 24, 4),
                      .packedSize = Little(*directory, 20, 4),
                      .crc = static_cast<std::uint32_t>(Little(*directory, 16, 4)),
                      .method = static_cast<std::uint32_t>(Little(*directory, 10, 2)),
                      .isEncrypted = (Little(*directory, 8, 2) & 1) != 0};
}

// The member of an archive of nothing but the member of the file's own name.
std::optional<OnlyMember> PackedMember(const FileSystem& files, const std::string& archive) {
    const auto info = files.Info(archive);
    if (!info || info->kind != EntryKind::File)
        return std::nullopt;
    ZipError error;
    const ZipSource source = MakeZipSource(files, archive, error);
    if (!source || zip_source_open(source.get()) != 0)
        return std::nullopt;
    auto member = ReadOnlyMember(source.get());
    zip_source_close(source.get());
    if (!member)
        return std::nullopt;
    const MemberName memberName = ReadMemberName(member->name);
    const bool isOwn = memberName.components.size() == 1 && !memberName.isDirectory &&
                       EqualNoCase(memberName.components.front(), LastPathComponent(archive));
    return isOwn ? member : std::nullopt;
}

// Complete files under scratch names that take the places of the old ones together, whose times and attributes
// they get. What fails leaves the old file and is told in the words given.
class Exchange {
  public:
    using Teller = std::function<void(const std::string& path)>;
    Exchange(CommandContext& commandContext, Teller failureTeller)
        : context(commandContext), tell(std::move(failureTeller)) {}
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    ~Exchange() { Release(); }

    // A scratch directory of this exchange alone, on the file's volume, in which its name is free; "" when there is
    // none. It is the simulator's wherever that lies on the same volume.
    std::string DirectoryFor(const std::string& path) {
        FileSystem& files = context.files;
        std::string base = context.locations.MsfsDir;
        if (!files.SameVolume(base, path)) {
            base = context.locations.RootOf(path);
            if (base.empty() || !files.SameVolume(base, path))
                base = ParentDirectory(path);
        }
        const auto isTaken = [&](const std::string& directory) {
            return std::ranges::any_of(waiting, [&](const Replacement& other) {
                return EqualNoCase(other.from, directory + LastPathComponent(path));
            });
        };
        if (const auto own = directories.find(base); own != directories.end()) {
            if (!isTaken(own->second)) {
                Drop(own->second, path);
                return own->second;
            }
            Commit();
        }
        const auto made = MakeScratchName(files, context.locations, base + "files");
        if (!made || !files.CreateDirectory(*made))
            return "";
        return directories[base] = AddBackslash(*made);
    }

    // The file at directory & own name is to be deleted if it is still there.
    void Drop(const std::string& directory, const std::string& path) {
        if (!directory.empty())
            DeleteFileForced(context.files, directory + LastPathComponent(path));
    }

    // False when the new file could not be made like the old one.
    bool Add(const std::string& directory, const std::string& path) {
        const std::string made = directory + LastPathComponent(path);
        const auto info = context.files.Info(made);
        if (!info || !context.files.CopyAttributes(path, made))
            return false;
        context.files.BeginFlush(made);
        waiting.push_back({made, path});
        bytes += info->size;
        return true;
    }

    bool IsFull() const { return waiting.size() >= MaxFiles || bytes >= MaxBytes; }

    // True when every file has taken its place.
    bool Commit() {
        const auto outcomes = context.files.ReplaceAll(waiting);
        const auto exchanged = Release();
        bool isDone = true;
        for (std::size_t i = 0; i < outcomes.size(); ++i) {
            if (outcomes[i])
                continue;
            isDone = false;
            tell(exchanged[i].to);
        }
        return isDone;
    }

  private:
    static constexpr std::size_t MaxFiles = 256;
    static constexpr std::uint64_t MaxBytes = 256u << 20;

    std::vector<Replacement> Release() {
        for (const auto& directory : directories)
            ReleaseScratch(context.files, directory.second);
        directories.clear();
        bytes = 0;
        return std::exchange(waiting, {});
    }

    CommandContext& context;
    const Teller tell;
    std::vector<Replacement> waiting;
    std::map<std::string, std::string> directories; // by what they lie in
    std::uint64_t bytes = 0;
};

void TellUnzipProblem(CommandContext& context, const std::string& path, int code) {
    context.user.Tell("There was a problem unzipping file " + path + ".  It may be corrupt. (code " +
                          std::to_string(code) + ")",
                      MessageIcon::Exclamation);
}

void TellZipProblem(CommandContext& context, const std::string& path, int code) {
    context.user.Tell("There was a problem zipping file " + path + ". (code " + std::to_string(code) + ")",
                      MessageIcon::Exclamation);
}

modUnzip InPlaceUnzip(const std::string& path) {
    modUnzip unzip;
    unzip.uPromptOverwrite = 0;
    unzip.uOverwriteFiles = 1;
    unzip.uDisplayComment = 0;
    unzip.uExtractList = 0;
    unzip.uHonorDirectories = 1;
    unzip.uPasswordAsked = 1; // nothing is packed with a password, so none is asked for
    unzip.uZipFileName = path;
    return unzip;
}

// 0 when the unpacked file waits in the exchange.
int Unpack(CommandContext& context, const std::string& path, Exchange& exchange) {
    if (!PackedMember(context.files, path))
        return UnzipCode::NotAnArchive;
    // What is unpacked is checked on the way, so that a test before would only do the work twice.
    modUnzip unzip = InPlaceUnzip(path);
    unzip.uExtractDir = exchange.DirectoryFor(path);
    int code = unzip.uExtractDir.empty() ? UnzipCode::DiskFull : unzip.UnzipArchive(context);
    if (code == UnzipCode::Ok && !exchange.Add(unzip.uExtractDir, path))
        code = UnzipCode::DiskFull;
    if (code != UnzipCode::Ok)
        exchange.Drop(unzip.uExtractDir, path);
    // A file that fails the test of an archive is left alone without a word; one that could not be written is
    // not.
    if (code == UnzipCode::DiskFull)
        TellUnzipProblem(context, path, code);
    return code;
}

// A packed file that is unpacked while others are written.
struct Unpacking {
    Unpacking(std::string filePath, Inflaters& workers) : path(std::move(filePath)), inflaters(workers) {}
    Unpacking(const Unpacking&) = delete;
    Unpacking& operator=(const Unpacking&) = delete;
    ~Unpacking() {
        if (isAhead)
            inflaters.Wait(job); // its buffer must not go while a thread works on it
    }

    const std::string path;
    Inflaters& inflaters;
    bool isAhead = false; // otherwise the unzip library takes it, when it is its turn
    InflateJob job;
};

bool ReadFully(InputFile& file, std::span<std::byte> bytes) {
    const auto count = file.Read(bytes);
    return count && *count == bytes.size();
}

// The packed bytes, which stand behind the header, its name and its further fields.
bool ReadPacked(const FileSystem& files, const std::string& path, InflateJob& job) {
    const auto file = files.OpenForReading(path);
    std::array<std::byte, ZipRecord::LocalSize> header;
    if (!file || !ReadFully(**file, header))
        return false;
    const auto field = [&](std::size_t at) {
        return std::to_integer<std::size_t>(header[at]) | std::to_integer<std::size_t>(header[at + 1]) << 8;
    };
    std::vector<std::byte> rest(field(26) + field(28));
    return ReadFully(**file, rest) && ReadFully(**file, std::span(job.buffer.get(), job.packedSize));
}

std::unique_ptr<Unpacking> BeginUnpacking(const FileSystem& files, const std::string& path,
                                          Inflaters& inflaters) {
    constexpr std::uint64_t maxBytes = 64u << 20;
    constexpr std::uint32_t stored = 0, deflated = 8;
    auto unpacking = std::make_unique<Unpacking>(path, inflaters);
    const auto member = PackedMember(files, path);
    const bool isUsual =
        member && !member->isEncrypted &&
        (member->method == deflated || (member->method == stored && member->packedSize == member->size)) &&
        member->size + member->packedSize <= maxBytes;
    if (!isUsual)
        return unpacking;
    InflateJob& job = unpacking->job;
    job.packedSize = static_cast<std::size_t>(member->packedSize);
    job.size = static_cast<std::size_t>(member->size);
    job.crc = member->crc;
    job.isStored = member->method == stored;
    job.capacity = job.packedSize + job.size;
    job.buffer = std::make_unique_for_overwrite<std::byte[]>(job.capacity);
    unpacking->isAhead = ReadPacked(files, path, job);
    if (unpacking->isAhead)
        inflaters.Start(job);
    return unpacking;
}

Status WriteNew(FileSystem& files, const std::string& path, std::span<const std::byte> bytes) {
    // In small pieces, which the system takes faster than one large one.
    constexpr std::size_t pieceSize = 128 * 1024;
    auto file = files.CreateNew(path);
    Status status = file.status();
    while (status && !bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), pieceSize));
        status = (*file)->Write(piece);
        bytes = bytes.subspan(piece.size());
    }
    return status ? (*file)->Close(false) : status;
}

void FinishUnpacking(CommandContext& context, Unpacking& unpacking, Exchange& exchange) {
    if (!unpacking.isAhead) {
        Unpack(context, unpacking.path, exchange);
        return;
    }
    unpacking.inflaters.Wait(unpacking.job);
    if (unpacking.job.code != UnzipCode::Ok)
        return; // no sound archive: left alone
    const std::string directory = exchange.DirectoryFor(unpacking.path);
    const std::string made = directory + LastPathComponent(unpacking.path);
    if (!directory.empty() && WriteNew(context.files, made, unpacking.job.Unpacked()) &&
        exchange.Add(directory, unpacking.path))
        return;
    exchange.Drop(directory, unpacking.path);
    TellUnzipProblem(context, unpacking.path, UnzipCode::DiskFull);
}

// Goes through the paths in order, a few of them ahead of their turn and not too many bytes at once.
template<class Job>
void WorkAhead(const std::vector<std::string>& paths, const std::function<Job(const std::string&)>& begin,
               const std::function<std::uint64_t(const Job&)>& bytesOf,
               const std::function<void(Job&)>& finish) {
    constexpr std::uint64_t maxBytes = 128u << 20;
    const std::size_t maxJobs = ProcessorCount() + 1;
    std::deque<Job> ahead;
    std::uint64_t bytes = 0;
    auto next = paths.begin();
    for (std::size_t done = 0; done < paths.size(); ++done) {
        while (next != paths.end() && (ahead.empty() || (ahead.size() < maxJobs && bytes < maxBytes))) {
            ahead.push_back(begin(*next++));
            bytes += bytesOf(ahead.back());
        }
        bytes -= bytesOf(ahead.front());
        finish(ahead.front());
        ahead.pop_front();
    }
}

// A file on its way into an archive.
struct Packing {
    std::string path;
    std::unique_ptr<DeflatedFile>
        contents; // none when it is packed already, or is packed while it is written
    std::future<void> packed;
    bool isPackedAlready = false;
    std::uint64_t size = 0;
};

Packing BeginPacking(CommandContext& context, const std::string& path) {
    Packing packing;
    packing.path = path;
    packing.isPackedAlready = path.empty() || UnzipFileInPlace(context, path, true) == UnzipCode::Ok;
    const auto info = context.files.Info(path);
    if (packing.isPackedAlready || !info || info->kind != EntryKind::File)
        return packing;
    auto contents = std::make_unique<DeflatedFile>(context.files, path);
    if (!contents->Read(*info) || !contents->IsRead())
        return packing;
    packing.size = info->size;
    packing.contents = std::move(contents);
    packing.packed =
        std::async(std::launch::async, [file = packing.contents.get()] { file->Pack(BestZipLevel); });
    return packing;
}

void FinishPacking(CommandContext& context, Packing& packing, Exchange& exchange) {
    if (packing.isPackedAlready)
        return;
    if (packing.packed.valid())
        packing.packed.wait();
    modZip zip;
    zip.zJunkDir = 1;
    zip.zLevel = '0' + BestZipLevel;
    zip.zNumberFiles = 1;
    zip.zZipNames[0] = packing.path;
    zip.zPrepared = packing.contents.get();
    int code = ZipCode::CannotCreate;
    const std::string directory = exchange.DirectoryFor(packing.path);
    if (!directory.empty()) {
        zip.zZipFileName = directory + LastPathComponent(packing.path);
        code = zip.ZipArchive(context);
        if (code == ZipCode::Ok &&
            (!PackedMember(context.files, zip.zZipFileName) || !exchange.Add(directory, packing.path)))
            code = ZipCode::WriteError;
    }
    if (code == ZipCode::Ok)
        return;
    exchange.Drop(directory, packing.path);
    TellZipProblem(context, packing.path, code);
}

} // namespace

int UnzipFileInPlace(CommandContext& context, const std::string& path, bool testOnly) {
    if (path.empty())
        return UnzipCode::Ok;
    if (testOnly) {
        if (!PackedMember(context.files, path))
            return UnzipCode::NotAnArchive;
        modUnzip unzip = InPlaceUnzip(path);
        unzip.uTestZip = 1;
        return unzip.UnzipArchive(context);
    }
    Exchange exchange(
        context, [&](const std::string& failed) { TellUnzipProblem(context, failed, UnzipCode::DiskFull); });
    const int code = Unpack(context, path, exchange);
    return code == UnzipCode::Ok && !exchange.Commit() ? UnzipCode::DiskFull : code;
}

void ZipFileInPlace(CommandContext& context, const std::string& path) {
    ZipFilesInPlace(context, {path}, [] {});
}

void UnzipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                       const std::function<void()>& afterEach) {
    Exchange exchange(
        context, [&](const std::string& failed) { TellUnzipProblem(context, failed, UnzipCode::DiskFull); });
    using Job = std::unique_ptr<Unpacking>;
    Inflaters inflaters(ProcessorCount() > 1 ? ProcessorCount() : 0);
    WorkAhead<Job>(
        paths, [&](const std::string& path) { return BeginUnpacking(context.files, path, inflaters); },
        [](const Job& job) { return job->job.capacity; },
        [&](Job& job) {
            FinishUnpacking(context, *job, exchange);
            if (exchange.IsFull())
                exchange.Commit();
            afterEach();
        });
    exchange.Commit();
}

void ZipFilesInPlace(CommandContext& context, const std::vector<std::string>& paths,
                     const std::function<void()>& afterEach) {
    Exchange exchange(
        context, [&](const std::string& failed) { TellZipProblem(context, failed, ZipCode::WriteError); });
    WorkAhead<Packing>(
        paths, [&](const std::string& path) { return BeginPacking(context, path); },
        [](const Packing& packing) { return packing.size; },
        [&](Packing& packing) {
            FinishPacking(context, packing, exchange);
            if (exchange.IsFull())
                exchange.Commit();
            afterEach();
        });
    exchange.Commit();
}

std::uint64_t UnpackedSize(const FileSystem& files, const FileEntry& file) {
    const auto member = PackedMember(files, file.path);
    return member ? member->size : file.info.size;
}

} // namespace korvadex
