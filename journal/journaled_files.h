// The door to the disk through which commands go: what they change is written down first, and what they take away is
// kept, so that it can be taken back.
#pragma once

#include "journal/command_log.h"
#include "journal/made_places.h"

#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace korvadex {

// Between Begin and End every change outside of the program's own directories goes into the log. At other times all
// goes to the disk as it is.
class JournaledFiles : public FileSystem {
  public:
    explicit JournaledFiles(FileSystem& realDisk) : disk(realDisk) {}

    // isRepacking: a file that is replaced as it was seen is the same as before, packed or unpacked; nothing is kept of
    // it.
    void Begin(CommandLog& commandLog, KeptPlaces& keptPlaces, bool isRepacking);
    void End();
    bool IsActive() const { return log != nullptr; }
    // The user lets the command work although nothing of it can be taken back.
    bool IsWithoutLog() const { return log && isWithoutLog; }
    // What is known of the running command beside its log.
    struct Known {
        MadePlaces made = {};
        std::set<std::string> timed = {};        // the directories whose times are in the log, or are to come into it
        std::vector<Record> unwrittenTimes = {}; // with the next change
    };
    Known Knows() const { return {made, timed, unwrittenTimes}; }
    // What the command has done since that was all is taken back by this, on the disk itself; then it goes on, as if
    // the disk had taken everything.
    void Amend(const Known& before, const std::function<void()>& takeBack);
    // The first change of the command that the disk did not take: it is full, or damaged.
    const Status& Trouble() const { return trouble; }

    // These ask and work in the thread that makes the change: a place of the user's is changed in the main one only.
    // Asks, once for a command, whether things that cannot be kept, for this reason, may go for good.
    std::function<bool(const Status&)> mayDelete;
    // Asks, once for a command, whether it may work although nothing of it can be written down.
    std::function<bool(const Status&)> mayGoOnWithoutLog;
    // Gives up what earlier commands have kept on the volume of this directory, until so many bytes are free.
    std::function<void(const std::string& directory, std::uint64_t bytes)> giveUpKept;

    using Path = const std::string&;
    Result<std::vector<DirectoryEntry>> List(Path directory) const override { return disk.List(directory); }
    Result<std::vector<DirectoryEntry>> ListKinds(Path directory) const override { return disk.ListKinds(directory); }
    Result<FileInfo> Info(Path path) const override { return disk.Info(path); }
    bool IsDirectory(Path path) const override { return disk.IsDirectory(path); }
    Result<std::unique_ptr<InputFile>> OpenForReading(Path path) const override { return disk.OpenForReading(path); }
    Result<std::unique_ptr<OutputFile>> CreateNew(Path path) override;
    Status Copy(Path from, Path to) override;
    Status Rename(Path from, Path to) override;
    std::vector<Status> RenameAll(std::span<const Replacement> renames) override;
    Status Replace(Path from, Path to) override;
    void BeginFlush(Path path) override { disk.BeginFlush(path); }
    std::vector<Status> Flush(std::span<const std::string> paths) override;
    std::vector<Status> ReplaceAll(std::span<const Replacement> replacements) override;
    Status Delete(Path path) override;
    Status SetAside(Path path) override;
    // The same of a directory of scratch names that holds what somebody else had begun; for a running command.
    Status SetScratchAside(Path directory);
    Status CreateDirectory(Path path) override;
    Status RemoveDirectory(Path path) override;
    Status Link(Path from, Path to) override;
    Status ClearAttributes(Path path) override;
    Status SetReadOnly(Path path, bool readOnly) override;
    Status SetTime(Path path, FileTime time) override;
    Status CopyAttributes(Path from, Path to) override;
    Status SetAttributes(Path path, const std::string& attributes) override;
    Result<std::string> Attributes(Path path) const override { return disk.Attributes(path); }
    Result<std::uint64_t> FreeSpace(Path directory) const override { return disk.FreeSpace(directory); }
    Result<std::uint64_t> MakeRoom(Path directory, std::uint64_t bytes) override;
    bool SameVolume(Path a, Path b) const override { return disk.SameVolume(a, b); }
    std::vector<std::string> Drives() const override { return disk.Drives(); }
    std::string StoredPath(Path path) const override { return disk.StoredPath(path); }
    std::string HostPath(Path path) const override { return disk.HostPath(path); }
    std::optional<std::string> PathFromHost(Path hostPath) const override { return disk.PathFromHost(hostPath); }
    std::string SourceFromHost(Path hostPath) const override { return disk.SourceFromHost(hostPath); }

  private:
    // What is done to this path is nobody's business but the command's.
    bool IsUnwritten(Path path) const { return !log || IsOwnPlace(path); }
    // Announces the change, makes it, and takes the announcement back when that failed.
    Status Make(const Record& record, const std::function<Status()>& change);
    Result<std::size_t> Announce(const Record& record);
    // Together; the numbers.
    Result<std::vector<std::size_t>> Announce(std::span<const Record> records);
    // What the disk has refused was not done.
    void TakeForVoid(std::size_t number, const Record& record, const Status& refusal);
    bool MustBeSafe(const Record& record) const;
    // Something in the directories of these paths is about to change.
    void NoteTimes(std::initializer_list<std::string> paths);
    void NoteTime(const std::string& directory);
    Status WriteTimes();
    // The same as Make for something new at a path.
    Status Add(Record record, const std::function<Status()>& change);
    Status TakeAway(Path path);
    Status DeleteForGood(Path path, const Status& why);
    void NoteFree(Path path);
    Status ChangeAttributes(RecordKind kind, Path path, const std::function<Status()>& change);
    // None when it is nobody's business.
    Result<std::optional<Record>> RecordOfRename(Path from, Path to);
    // The record of a file that takes the place of another; announced.
    struct Exchange {
        Replacement replacement;
        Record record = {};
        std::optional<std::size_t> number = {};
        bool isLinked = false, isAside = false;
        Status status = {};
    };
    void Prepare(Exchange& exchange);
    void Finish(Exchange& exchange);
    // Remembers it when the disk is to blame; the status itself.
    Status Note(Status status);
    bool MayDelete(const Status& why);
    bool MayGoOnWithoutLog(const Status& why);

    FileSystem& disk;
    CommandLog* log = nullptr;
    KeptPlaces* kept = nullptr;
    bool isRepacking = false, isWithoutLog = false, hasAnnounced = false;
    MadePlaces made;
    std::set<std::string> timed;        // the directories whose times are in the log, or are to come into it
    std::vector<Record> unwrittenTimes; // with the next change
    Status trouble;
    std::optional<bool> deletionAnswer, logAnswer; // of the running command
    std::recursive_mutex mutex;                    // pieces of one command work at the same time
};

} // namespace korvadex
