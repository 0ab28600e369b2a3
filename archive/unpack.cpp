#include "archive/unpack.h"

#include "archive/archive_reader.h"
#include "archive/member_files.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace korvadex {

namespace {

using Bytes = std::span<const std::byte>;

std::uint64_t AddBounded(std::uint64_t a, std::uint64_t b) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    return a > most - b ? most : a + b;
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

class Unpacker {
  public:
    Unpacker(UnpackDisk disk, const UnpackJob& unpackJob, ArchiveReader& archiveReader, UnpackReport& unpackReport)
        : job(unpackJob), reader(archiveReader), report(unpackReport), members(archiveReader.Members()),
          files(disk, unpackJob.target) {}

    int Run();
    std::vector<std::string> Written() const { return files.Written(); }

  private:
    void FillTotals();
    bool HasRoom();
    void Announce();
    MemberOutcome Process(std::size_t index);
    MemberOutcome Extract(std::size_t index);
    // Opens the file of a member, after a question where one of that name is there. False: keep the old one.
    bool OpenTarget(const std::string& path, MemberOutcome& outcome);
    int Open(std::size_t index);
    MemberOutcome Read(std::size_t index, const std::function<MemberOutcome(Bytes)>& sink);
    bool IsRight(const std::string& candidate, std::size_t index);
    std::string FindPassword(std::size_t index);
    void Explain(const std::string& text);
    void Advance(std::uint64_t bytes);

    const UnpackJob& job;
    ArchiveReader& reader;
    UnpackReport& report;
    const std::vector<ArchiveMember>& members;
    MemberFiles files;
    std::optional<std::string> password; // "": there is none
    std::uint64_t done = 0;
    int unpackedCount = 0;
};

void Unpacker::Advance(std::uint64_t bytes) {
    done += bytes;
    if (job.progress)
        job.progress(done, report.size);
}

void Unpacker::FillTotals() {
    for (const ArchiveMember& member : members) {
        report.size = AddBounded(report.size, member.size);
        report.packedSize = AddBounded(report.packedSize, member.packedSize);
    }
    report.memberCount = members.size();
    report.commentSize = reader.CommentSize();
}

bool Unpacker::HasRoom() {
    const auto space = files.MakeRoom(report.size);
    if (!space || *space >= report.size)
        return true;
    report.roomNeeded = report.size;
    report.roomFree = *space;
    return false;
}

void Unpacker::Announce() {
    std::vector<std::size_t> wanted;
    for (std::size_t index = 0; index < members.size(); ++index) {
        const MemberName& name = members[index].name;
        if (!name.isDirectory && (name.refusal.empty() || job.isTest))
            wanted.push_back(index);
    }
    reader.Announce(std::move(wanted));
}

int Unpacker::Run() {
    Verdict verdict;
    FillTotals();
    if (reader.HasUnreadableRecords())
        verdict.Note(UnzipCode::BadArchive);
    else if (members.empty())
        return UnzipCode::Warning;
    if (!job.isTest && !HasRoom())
        return UnzipCode::DiskFull;

    Announce();
    for (std::size_t index = 0; index < members.size(); ++index) {
        if (job.mayGoOn && !job.mayGoOn(members[index].name.text, members[index].size))
            return UnzipCode::Stopped;
        const std::uint64_t doneBefore = done;
        const MemberOutcome outcome = Process(index);
        verdict.Note(outcome.code);
        if (!outcome.reason.empty())
            report.refused.push_back({members[index].name.text, outcome.reason});
        if (outcome.stopsAll)
            break;
        done = doneBefore;
        Advance(members[index].size);
    }
    if (verdict.Code() != UnzipCode::Ok && unpackedCount == 0)
        files.RemoveMadeDirectories();
    return verdict.Code();
}

MemberOutcome Unpacker::Process(std::size_t index) {
    const MemberName& name = members[index].name;
    if (job.isTest)
        return name.isDirectory ? MemberOutcome{} : Read(index, [](Bytes) { return MemberOutcome{}; });
    if (!name.refusal.empty())
        return {UnzipCode::Ok, name.refusal};
    if (name.isDirectory)
        return job.keepsDirectories ? files.MakeDirectories(name.components) : MemberOutcome{};
    return Extract(index);
}

MemberOutcome Unpacker::Extract(std::size_t index) {
    std::span<const std::string> components = members[index].name.components;
    if (!job.keepsDirectories)
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
    auto outcome = Read(index, [&](Bytes bytes) {
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
        outcome = files.Finish(members[index].time);
    else
        files.Abandon();
    unpackedCount += outcome.IsFine() ? 1 : 0;
    return outcome;
}

bool Unpacker::OpenTarget(const std::string& path, MemberOutcome& outcome) {
    bool isTaken = false;
    outcome = files.LookAt(path, isTaken);
    if (!outcome.IsFine())
        return true;
    const bool isWanted = !isTaken || (job.mayReplace && job.mayReplace(path));
    if (isWanted)
        outcome = files.Create(path, isTaken);
    return isWanted;
}

void Unpacker::Explain(const std::string& text) {
    if (std::ranges::find(report.explanations, text) == report.explanations.end())
        report.explanations.push_back(text);
}

bool Unpacker::IsRight(const std::string& candidate, std::size_t index) {
    return reader.Open(index, candidate) == UnzipCode::Ok &&
           reader.Read([](Bytes) { return UnzipCode::Ok; }) == UnzipCode::Ok;
}

std::string Unpacker::FindPassword(std::size_t index) {
    if (!job.password.empty() && IsRight(job.password, index))
        return job.password;
    return job.askPassword ? job.askPassword() : "";
}

int Unpacker::Open(std::size_t index) {
    if (const std::string reason = reader.WhyUnreadable(index); !reason.empty()) {
        Explain(reason + "  " + UnpackElsewhere);
        return UnzipCode::Unsupported;
    }
    if (!members[index].isEncrypted)
        return reader.Open(index, "");
    if (!password)
        password = FindPassword(index);
    if (password->empty()) {
        Explain("It needs a password, and none was entered.");
        return UnzipCode::BadPassword;
    }
    return reader.Open(index, *password);
}

MemberOutcome Unpacker::Read(std::size_t index, const std::function<MemberOutcome(Bytes)>& sink) {
    const auto failed = [&](int code) {
        if (code == UnzipCode::BadPassword && password && !password->empty())
            Explain("The password that was entered is wrong.  Please process it again to enter another one.");
        if (code == UnzipCode::NoMemory)
            Explain(std::string(TakesTooMuchMemory) + "  " + UnpackElsewhere);
        return MemberOutcome{code, ""};
    };
    if (const int code = Open(index); code != UnzipCode::Ok)
        return failed(code);
    MemberOutcome outcome;
    constexpr int sinkFailed = -1;
    const int code = reader.Read([&](Bytes bytes) {
        Advance(bytes.size());
        outcome = sink(bytes);
        return outcome.IsFine() ? UnzipCode::Ok : sinkFailed;
    });
    if (code == UnzipCode::Unsupported)
        Explain(std::string(IsPackedOddly) + "  " + UnpackElsewhere);
    if (code == sinkFailed)
        return outcome;
    // What a password that is right makes no sense of is damaged.
    if (code == UnzipCode::BadPassword && !report.password.empty())
        return failed(UnzipCode::Error);
    if (code == UnzipCode::Ok && members[index].isEncrypted)
        report.password = *password;
    return failed(code);
}

} // namespace

UnpackReport Unpack(UnpackDisk disk, const UnpackJob& job) {
    UnpackReport report;
    OpenedArchive opened = OpenArchive(disk.files, job.archive);
    if (!opened.reader) {
        report.code = opened.code;
        if (!opened.explanation.empty())
            report.explanations.push_back(opened.explanation);
        return report;
    }
    Unpacker unpacker(disk, job, *opened.reader, report);
    report.code = unpacker.Run();
    report.written = unpacker.Written();
    return report;
}

} // namespace korvadex
