#include "platform/file_lock.h"

#include "platform/date_text.h"
#include "platform/descriptor_posix.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvadex {

namespace {

// Windows, Wine and Samba lock the same byte. It lies behind the text: on a share nobody else may read what is locked.
constexpr off_t LockedByte = 0x40000000;
constexpr int MaxAttempts = 100;
constexpr int Flags = O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

// Not the locks of the process, which would go with any other descriptor of the file.
int Lock(const Descriptor& file, short kind) {
    struct flock range {};
    range.l_type = kind;
    range.l_whence = SEEK_SET;
    range.l_start = LockedByte;
    range.l_len = 1;
    return fcntl(file.get(), F_OFD_SETLK, &range) == 0 ? 0 : errno;
}

// Opened, not only looked up: then a share asks its server what is there now.
bool IsFileAt(const std::string& hostPath, const Descriptor& file) {
    const Descriptor there(open(hostPath.c_str(), O_RDONLY | Flags));
    struct stat found {};
    struct stat own {};
    return there && fstat(there.get(), &found) == 0 && fstat(file.get(), &own) == 0 && found.st_dev == own.st_dev &&
           found.st_ino == own.st_ino;
}

std::string ReadText(const Descriptor& file) {
    std::string text(LongestHolderText, '\0');
    const auto length = pread(file.get(), text.data(), text.size(), 0);
    text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return text;
}

// Without it, it is a lock all the same; but no mark is better than another's.
bool WriteText(const Descriptor& file, const std::string& text) {
    const auto length = pwrite(file.get(), text.data(), text.size(), 0);
    static_cast<void>(!ftruncate(file.get(), length > 0 ? length : 0));
    return length == static_cast<ssize_t>(text.size()) && fsync(file.get()) == 0;
}

class PosixLock final : public FileLock {
  public:
    PosixLock(Descriptor locked, std::string hostPath, bool isMarked)
        : file(std::move(locked)), path(std::move(hostPath)), isAnothers(isMarked) {}
    // Before the lock goes: who has opened the file meanwhile sees that it is the one no more.
    ~PosixLock() override {
        if (!isAnothers && IsAt(path))
            unlink(path.c_str());
    }
    void Sign(const LockHolder& holder) override {
        isAnothers = false;
        isSigned = isSigned || WriteText(file, TextOf(holder));
    }
    bool IsAt(const std::string& hostPath) const override { return IsFileAt(hostPath, file); }

  private:
    Descriptor file;
    const std::string path;
    bool isAnothers; // what stands in the file
    bool isSigned = false;
};

Descriptor OpenOrMake(const char* path) {
    Descriptor there(open(path, O_RDWR | Flags));
    if (there || errno != ENOENT)
        return there;
    Descriptor made(open(path, O_RDWR | O_CREAT | O_EXCL | Flags, 0666));
    if (made)
        static_cast<void>(fchmod(made.get(), 0666)); // for all who may change the directory
    return made;
}

LockAttempt Held(const Descriptor& file) {
    return {.outcome = LockOutcome::HeldByOther, .holder = HolderOf(ReadText(file))};
}

// One that may only be read, as another user's may be: whether he is still there can be seen, and what he has left
// can go; its text is for the next one. Nothing: all may be tried again.
std::optional<LockAttempt> ClearForeign(const std::string& path, std::string& text) {
    const Descriptor file(open(path.c_str(), O_RDONLY | Flags));
    if (!file)
        return LockAttempt{.outcome = LockOutcome::CannotWrite};
    if (Lock(file, F_RDLCK) != 0)
        return Held(file);
    if (!IsFileAt(path, file))
        return std::nullopt;
    text = ReadText(file);
    if (unlink(path.c_str()) != 0)
        return LockAttempt{.outcome = LockOutcome::CannotWrite};
    return std::nullopt;
}

} // namespace

LockAttempt TakeFileLock(const std::string& hostPath) {
    std::string cleared;
    for (int attempt = 0; attempt < MaxAttempts; ++attempt) {
        Descriptor file = OpenOrMake(hostPath.c_str());
        const int code = file ? 0 : errno;
        if (code == EACCES || code == EPERM) {
            if (auto foreign = ClearForeign(hostPath, cleared))
                return std::move(*foreign);
            continue;
        }
        struct stat info {};
        const bool isFile = file && fstat(file.get(), &info) == 0 && S_ISREG(info.st_mode);
        if (code == EEXIST)
            continue; // another one was quicker
        if (code == ELOOP || code == EISDIR || code == ENXIO || (file && !isFile))
            return {.outcome = LockOutcome::NoLocks};
        if (!file)
            return {.outcome = LockOutcome::CannotWrite};
        const int refusal = Lock(file, F_WRLCK);
        if (refusal == EAGAIN || refusal == EACCES)
            return Held(file);
        if (refusal != 0)
            return {.outcome = LockOutcome::NoLocks};
        if (!IsFileAt(hostPath, file))
            continue; // its holder has just ended
        std::string text = ReadText(file);
        if (text.empty() && !cleared.empty())
            static_cast<void>(WriteText(file, text = cleared));
        auto lock = std::make_unique<PosixLock>(std::move(file), hostPath, !text.empty());
        return {.outcome = LockOutcome::Taken, .lock = std::move(lock), .left = HolderOf(text)};
    }
    return {.outcome = LockOutcome::HeldByOther};
}

LockHolder ThisHolder(std::string directory) {
    std::array<char, 4096> buffer{};
    struct passwd entry {};
    struct passwd* user = nullptr;
    getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &user);
    std::array<char, 256> machine{};
    gethostname(machine.data(), machine.size() - 1);
    return {user ? user->pw_name : std::to_string(geteuid()), machine.data(),
            ShortDateTime(std::chrono::system_clock::now()), std::move(directory)};
}

} // namespace korvadex
