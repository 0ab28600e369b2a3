#include "archive/unzip_library.h"

#include "archive/member_files.h"
#include "archive/member_names.h"
#include "archive/member_reader.h"
#include "archive/zip_source.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>
#include <zlib.h>

namespace korvadex {

namespace {

// No archive is older than its format; an earlier time stands for none.
constexpr std::time_t FirstMemberTime = 315532800 - 24 * 3600; // 1980, in every time zone

struct Entry {
    Member member;
    MemberName name;
    std::string refusal;
    FileTime time{};
};

std::uint64_t AddBounded(std::uint64_t a, std::uint64_t b) {
    return a > std::numeric_limits<std::uint64_t>::max() - b ? std::numeric_limits<std::uint64_t>::max() : a + b;
}

std::uint32_t Bounded(std::uint64_t value) {
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(value, std::numeric_limits<std::uint32_t>::max()));
}

// UTC from the field that Info-ZIP adds; else the local time of the directory, which knows two-second steps.
FileTime TimeOf(zip_t* archive, std::uint64_t index, const zip_stat_t& info) {
    constexpr std::uint16_t extendedTimestamp = 0x5455;
    zip_uint16_t length = 0;
    const zip_uint8_t* field =
        zip_file_extra_field_get_by_id(archive, index, extendedTimestamp, 0, &length, ZIP_FL_CENTRAL);
    if (field && length >= 5 && (field[0] & 1) != 0) {
        std::uint32_t bits = 0;
        for (int i = 4; i >= 1; --i)
            bits = bits << 8 | field[i];
        return FileTime(std::chrono::seconds(static_cast<std::int32_t>(bits)));
    }
    if ((info.valid & ZIP_STAT_MTIME) == 0 || info.mtime < FirstMemberTime)
        return {};
    return FileTime(std::chrono::seconds(info.mtime));
}

// The code of a whole run. Damage weighs more than what was only left out.
class Verdict {
  public:
    void Note(int code) {
        int& kept = code >= UnzipCode::Stopped ? leftOut : damage;
        kept = std::max(kept, code);
    }
    int Code() const { return damage > UnzipCode::Warning || leftOut == UnzipCode::Ok ? damage : leftOut; }

  private:
    int damage = UnzipCode::Ok;
    int leftOut = UnzipCode::Ok;
};

struct Lists {
    std::span<const std::string> included, excluded;
    bool ignoreCase;

    bool Holds(std::span<const std::string> list, std::string_view name) const {
        return std::any_of(list.begin(), list.end(), [&](const std::string& listed) {
            return ignoreCase ? EqualNoCase(listed, name) : listed == name;
        });
    }
    bool IsWanted(std::string_view name) const {
        return (included.empty() || Holds(included, name)) && !Holds(excluded, name);
    }
};

class Unzipper {
  public:
    Unzipper(zip_t& openArchive, const ZipDirectory& zipDirectory, UnzipDisk unzipDisk, const DCL& dcl,
             const Lists& nameLists, UnzipCallbacks& unzipCallbacks)
        : archive(openArchive), directory(zipDirectory), options(dcl), lists(nameLists), callbacks(unzipCallbacks),
          reader(openArchive, zip_get_num_entries(&openArchive, 0) > 1), files(unzipDisk, dcl.lpszExtractDir) {}

    int Run();
    std::vector<std::string> Written() const { return files.Written(); }

  private:
    std::optional<Entry> ReadEntry(std::uint64_t index);
    void FillTotals();
    void List();
    bool IsReadWhole(const Entry& entry) const;
    bool HasRoom();
    MemberOutcome Process(const Entry& entry);
    MemberOutcome Extract(const Entry& entry);
    // Opens the file of a member, after a question where one of that name is there. False: keep the old one.
    bool OpenTarget(const std::string& path, MemberOutcome& outcome);
    int OpenStream(const Entry& entry);
    bool IsRight(const std::string& candidate, const Entry& entry);
    std::string FindPassword(const Entry& entry);
    void Explain(const std::string& text);
    MemberOutcome StreamTo(const Entry& entry, const std::function<MemberOutcome(std::span<const std::byte>)>& sink);
    void Advance(std::uint64_t bytes);
    void Print(const std::string& text);

    zip_t& archive;
    const ZipDirectory& directory;
    const DCL& options;
    const Lists& lists;
    UnzipCallbacks& callbacks;
    MemberReader reader;
    MemberFiles files;
    std::vector<Entry> entries;
    std::optional<std::string> password; // "": there is none
    bool isPasswordRight = false;        // a member came out with it
    std::uint64_t totalSize = 0, totalCompressed = 0, done = 0;
    int unpackedCount = 0;
};

void Unzipper::Print(const std::string& text) {
    if (options.fQuiet == 0 && callbacks.print)
        callbacks.print(text + "\r\n");
}

void Unzipper::Advance(std::uint64_t bytes) {
    done += bytes;
    if (callbacks.progress)
        callbacks.progress(done, totalSize);
}

std::optional<Entry> Unzipper::ReadEntry(std::uint64_t index) {
    constexpr std::uint64_t needed =
        ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_ENCRYPTION_METHOD;
    zip_stat_t info;
    zip_stat_init(&info);
    const char* stored = zip_get_name(&archive, index, ZIP_FL_ENC_RAW);
    if (!stored || zip_stat_index(&archive, index, 0, &info) != 0 || (info.valid & needed) != needed)
        return std::nullopt;
    Entry entry;
    const MemberKind kind =
        index < directory.members.size() ? directory.members[index] : MemberKind{info.comp_method, true};
    entry.member = {index, info.size, info.comp_size, info.crc, kind.method, info.encryption_method, kind.hasCrc};
    entry.name = ReadMemberName(stored);
    entry.time = TimeOf(&archive, index, info);
    entry.refusal = entry.name.refusal;
    zip_uint8_t hostSystem = 0;
    zip_uint32_t attributes = 0;
    if (entry.refusal.empty() && zip_file_get_external_attributes(&archive, index, 0, &hostSystem, &attributes) == 0)
        entry.refusal = RefusalOfKind(hostSystem, attributes);
    return entry;
}

void Unzipper::FillTotals() {
    for (const auto& entry : entries) {
        totalSize = AddBounded(totalSize, entry.member.size);
        totalCompressed = AddBounded(totalCompressed, entry.member.compressedSize);
    }
    callbacks.TotalSize = Bounded(totalSize);
    callbacks.TotalSizeComp = Bounded(totalCompressed);
    callbacks.CompFactor = totalSize == 0 || totalCompressed > totalSize
                               ? 0
                               : static_cast<std::uint32_t>(100 - static_cast<double>(totalCompressed) * 100 /
                                                                      static_cast<double>(totalSize));
    callbacks.NumMembers = static_cast<std::uint32_t>(entries.size());
    callbacks.cchComment = static_cast<std::uint32_t>(directory.comment.size());
    if (options.nzflag != 0 && !directory.comment.empty() && callbacks.print)
        callbacks.print(ReadMemberName(directory.comment).text);
}

void Unzipper::List() {
    for (const auto& entry : entries) {
        if (callbacks.message)
            callbacks.message({entry.name.text, entry.member.size, entry.member.compressedSize, entry.time,
                               entry.member.encryption != ZIP_EM_NONE});
    }
}

bool Unzipper::IsReadWhole(const Entry& entry) const {
    return !entry.name.isDirectory && (entry.refusal.empty() || options.ntflag != 0) &&
           MemberReader::FitsInOnePiece(entry.member);
}

bool Unzipper::HasRoom() {
    const auto space = files.FreeSpace();
    if (!space || *space >= totalSize)
        return true;
    if (callbacks.noRoom)
        callbacks.noRoom(totalSize, *space);
    return false;
}

int Unzipper::Run() {
    Verdict verdict;
    const zip_int64_t count = zip_get_num_entries(&archive, 0);
    for (std::uint64_t index = 0; index < static_cast<std::uint64_t>(std::max<zip_int64_t>(count, 0)); ++index) {
        auto entry = ReadEntry(index);
        if (!entry)
            verdict.Note(UnzipCode::BadArchive);
        else if (lists.IsWanted(entry->name.text))
            entries.push_back(std::move(*entry));
    }
    FillTotals();
    if (count == 0)
        return UnzipCode::Warning;
    if (options.nvflag != 0) {
        List();
        return verdict.Code();
    }
    if (options.ntflag == 0 && !HasRoom())
        return UnzipCode::DiskFull;

    auto ahead = entries.begin();
    for (const auto& entry : entries) {
        // While this one is written, others are unpacked already.
        while (ahead != entries.end() && (!IsReadWhole(*ahead) || reader.Begin(ahead->member)))
            ++ahead;
        if (callbacks.service && callbacks.service(entry.name.text, entry.member.size) != 0)
            return UnzipCode::Stopped;
        const std::uint64_t doneBefore = done;
        const MemberOutcome outcome = Process(entry);
        verdict.Note(outcome.code);
        if (outcome.stopsAll)
            break;
        done = doneBefore;
        Advance(entry.member.size);
    }
    if (verdict.Code() != UnzipCode::Ok && unpackedCount == 0)
        files.RemoveMadeDirectories();
    return verdict.Code();
}

MemberOutcome Unzipper::Process(const Entry& entry) {
    const bool isTest = options.ntflag != 0;
    MemberOutcome outcome;
    if (isTest)
        outcome = entry.name.isDirectory ? MemberOutcome{}
                                         : StreamTo(entry, [](std::span<const std::byte>) { return MemberOutcome{}; });
    else if (!entry.refusal.empty())
        outcome.reason = entry.refusal;
    else
        outcome = Extract(entry);
    if (!outcome.reason.empty() && callbacks.refused)
        callbacks.refused(entry.name.text, outcome.reason);
    if (!outcome.IsFine())
        Print(entry.name.text + ": " +
              (outcome.reason.empty() ? "code " + std::to_string(outcome.code) : outcome.reason));
    return outcome;
}

MemberOutcome Unzipper::Extract(const Entry& entry) {
    std::span<const std::string> components = entry.name.components;
    if (entry.name.isDirectory)
        return options.ndflag != 0 ? files.MakeDirectories(components) : MemberOutcome{};
    if (options.ndflag == 0)
        components = components.last(1);

    // Nothing is made before the first bytes are known to be good: a wrong password leaves no trace.
    bool isOpen = false, isKept = false;
    const auto open = [&] {
        auto outcome = files.MakeDirectories(components.first(components.size() - 1));
        if (outcome.IsFine())
            isKept = !OpenTarget(files.PathOf(components), outcome);
        isOpen = outcome.IsFine() && !isKept;
        return outcome;
    };
    auto outcome = StreamTo(entry, [&](std::span<const std::byte> bytes) {
        if (isKept)
            return MemberOutcome{};
        if (!isOpen) {
            if (auto opened = open(); !isOpen)
                return opened;
        }
        return files.Write(bytes);
    });
    if (outcome.IsFine() && !isOpen && !isKept)
        outcome = open(); // a file without bytes
    if (!isOpen)
        return outcome;
    if (outcome.IsFine())
        outcome = files.Finish(entry.time);
    else
        files.Abandon();
    unpackedCount += outcome.IsFine() ? 1 : 0;
    return outcome;
}

bool Unzipper::OpenTarget(const std::string& path, MemberOutcome& outcome) {
    bool isTaken = false;
    outcome = files.LookAt(path, isTaken);
    if (!outcome.IsFine())
        return true;
    const bool isWanted =
        !isTaken || options.noflag != 0 ||
        (options.PromptToOverwrite != 0 && callbacks.replace && callbacks.replace(path) == ReplaceYes);
    if (isWanted)
        outcome = files.Create(path, isTaken);
    return isWanted;
}

void Unzipper::Explain(const std::string& text) {
    auto& explanations = callbacks.explanations;
    if (std::find(explanations.begin(), explanations.end(), text) == explanations.end())
        explanations.push_back(text);
}

bool Unzipper::IsRight(const std::string& candidate, const Entry& entry) {
    return reader.Open(entry.member, candidate) == UnzipCode::Ok &&
           reader.Stream(entry.member, [](std::span<const std::byte>) { return UnzipCode::Ok; }) == UnzipCode::Ok;
}

std::string Unzipper::FindPassword(const Entry& entry) {
    const std::string known = std::exchange(callbacks.rightPassword, "");
    if (!known.empty() && IsRight(known, entry))
        return known;
    std::string entered;
    const bool isEntered = callbacks.password && callbacks.password(entered, entry.name.text) == PasswordEntered;
    return isEntered ? entered : "";
}

int Unzipper::OpenStream(const Entry& entry) {
    if (const std::string reason = WhyUnreadable(entry.member); !reason.empty()) {
        Explain(reason + "  Please unpack it into Staging with another program.");
        return UnzipCode::Unsupported;
    }
    if (entry.member.encryption == ZIP_EM_NONE)
        return reader.Open(entry.member, "");
    if (!password)
        password = FindPassword(entry);
    if (password->empty()) {
        Explain("It needs a password, and none was entered.");
        return UnzipCode::BadPassword;
    }
    return reader.Open(entry.member, *password);
}

MemberOutcome Unzipper::StreamTo(const Entry& entry,
                                 const std::function<MemberOutcome(std::span<const std::byte>)>& sink) {
    if (MemberReader::FitsInOnePiece(entry.member)) {
        std::span<const std::byte> bytes;
        const int code = reader.ReadWhole(entry.member, bytes);
        if (code != UnzipCode::Ok || bytes.empty())
            return {code, ""};
        return sink(bytes);
    }
    const auto failed = [&](int code) {
        if (code == UnzipCode::BadPassword && password && !password->empty())
            Explain("The password that was entered is wrong.  Please process it again to enter another one.");
        return MemberOutcome{code, ""};
    };
    if (const int code = OpenStream(entry); code != UnzipCode::Ok)
        return failed(code);
    MemberOutcome outcome;
    constexpr int sinkFailed = -1;
    const int code = reader.Stream(entry.member, [&](std::span<const std::byte> bytes) {
        Advance(bytes.size());
        outcome = sink(bytes);
        return outcome.IsFine() ? UnzipCode::Ok : sinkFailed;
    });
    if (code == sinkFailed)
        return outcome;
    // What a password that is right makes no sense of is damaged.
    if (code == UnzipCode::BadPassword && isPasswordRight)
        return failed(UnzipCode::Error);
    if (code == UnzipCode::Ok && entry.member.encryption != ZIP_EM_NONE) {
        isPasswordRight = true;
        callbacks.rightPassword = *password;
    }
    return failed(code);
}

// A cut archive begins like any other but has lost its directory, which stands at the end.
bool BeginsLikeArchive(const FileSystem& files, const std::string& path) {
    auto file = files.OpenForReading(path);
    std::array<std::byte, 4> start{};
    const auto count = file ? (*file)->Read(start) : Result<std::size_t>(file.status());
    return count && *count == start.size() && std::memcmp(start.data(), "PK\3\4", start.size()) == 0;
}

std::span<const std::string> FirstOf(const NameList& list, std::int32_t count) {
    return std::span(list).first(std::clamp<std::size_t>(static_cast<std::size_t>(std::max(count, 0)), 0, list.size()));
}

} // namespace

void UzpVersion2(UnzipVersion& version) {
    const auto fill = [](auto& field, const std::string& text) {
        const std::size_t length = std::min(text.size(), field.size() - 1);
        std::copy_n(text.begin(), length, field.begin());
        field[length] = '\0';
    };
    fill(version.betalevel, "");
    // A library of the system bears a version instead of a date.
    fill(version.date, std::string("libzip ") + zip_libzip_version());
    fill(version.zlibversion, zlibVersion());
}

int Wiz_SingleEntryUnzip(UnzipDisk disk, std::int32_t includedCount, const NameList& included,
                         std::int32_t excludedCount, const NameList& excluded, const DCL& options,
                         UnzipCallbacks& callbacks) {
    if (options.ExtractOnlyNewer != 0 || options.SpaceToUnderscore != 0 || options.ncflag != 0 || options.nfflag != 0 ||
        options.naflag != 0 || options.nZIflag != 0 || options.fPrivilege != 0)
        return UnzipCode::BadParameter;

    ZipDirectory directory;
    ZipError error;
    const ZipHandle archive = OpenZip(disk.files, options.lpszZipFN, directory, error);
    if (!archive) {
        if (error.code() == ZIP_ER_NOZIP && BeginsLikeArchive(disk.files, options.lpszZipFN))
            return UnzipCode::Truncated;
        if (error.code() == ZIP_ER_NOZIP)
            callbacks.explanations.push_back("There is no zip archive in it.");
        if (error.code() == ZIP_ER_MULTIDISK)
            callbacks.explanations.push_back(
                "It is one part of an archive in several parts.  Please put them together with another program first.");
        return UnzipCodeOf(error.code());
    }

    const Lists lists{FirstOf(included, includedCount), FirstOf(excluded, excludedCount), options.C_flag != 0};
    Unzipper unzipper(*archive, directory, disk, options, lists, callbacks);
    const int code = unzipper.Run();
    callbacks.written = unzipper.Written();
    return code;
}

} // namespace korvadex
