#include "platform/file_lock.h"

#include "platform/date_text.h"
#include "platform/win32.h"

#include <array>

namespace korvadex {

namespace {

// Linux locks the same byte of a share, and of a drive of Wine. It lies behind the text: nobody else may read what is
// locked.
constexpr DWORD LockedByte = 0x40000000;
constexpr DWORD LongestWait = 80; // ms

UniqueHandle Open(const std::wstring& path, DWORD access, DWORD disposition) {
    const HANDLE handle = CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, disposition, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    return UniqueHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

bool IsFileAt(const std::string& path, const UniqueHandle& file) {
    const auto native = ExtendedPath(path);
    const UniqueHandle there = native ? Open(*native, FILE_READ_ATTRIBUTES, OPEN_EXISTING) : nullptr;
    BY_HANDLE_FILE_INFORMATION found{};
    BY_HANDLE_FILE_INFORMATION own{};
    return there && GetFileInformationByHandle(there.get(), &found) && GetFileInformationByHandle(file.get(), &own) &&
           found.dwVolumeSerialNumber == own.dwVolumeSerialNumber && found.nFileIndexHigh == own.nFileIndexHigh &&
           found.nFileIndexLow == own.nFileIndexLow;
}

std::string ReadText(const UniqueHandle& file) {
    std::string text(LongestHolderText, '\0');
    DWORD length = 0;
    if (!ReadFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &length, nullptr))
        length = 0;
    text.resize(length);
    return text;
}

// Without it, it is a lock all the same; but no mark is better than another's.
bool WriteText(const UniqueHandle& file, const std::string& text) {
    DWORD written = 0;
    if (SetFilePointer(file.get(), 0, nullptr, FILE_BEGIN) != 0)
        return false;
    if (!WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
        SetFilePointer(file.get(), 0, nullptr, FILE_BEGIN);
    SetEndOfFile(file.get());
    return written == text.size() && FlushFileBuffers(file.get());
}

class WindowsLock final : public FileLock {
  public:
    WindowsLock(UniqueHandle locked, bool isMarked) : file(std::move(locked)), isAnothers(isMarked) {}
    // Before the lock goes: who has opened the file meanwhile sees that it is the one no more.
    ~WindowsLock() override {
        FILE_DISPOSITION_INFO gone{TRUE};
        if (!isAnothers)
            SetFileInformationByHandle(file.get(), FileDispositionInfo, &gone, sizeof gone);
    }
    void Sign(const LockHolder& holder) override {
        isAnothers = false;
        isSigned = isSigned || WriteText(file, TextOf(holder));
    }
    bool IsAt(const std::string& hostPath) const override { return IsFileAt(hostPath, file); }

  private:
    const UniqueHandle file;
    bool isAnothers; // what stands in the file
    bool isSigned = false;
};

LockAttempt Held(const UniqueHandle& file) {
    return {.outcome = LockOutcome::HeldByOther, .holder = HolderOf(ReadText(file))};
}

// Nothing: it may be tried again.
std::optional<LockAttempt> Try(const std::wstring& native, const std::string& path) {
    UniqueHandle file = Open(native, GENERIC_READ | GENERIC_WRITE | DELETE, OPEN_ALWAYS);
    if (!file && GetLastError() == ERROR_ACCESS_DENIED)
        file = Open(native, GENERIC_READ, OPEN_EXISTING); // another user's: reading is enough for the lock
    if (!file)
        return std::nullopt;
    BY_HANDLE_FILE_INFORMATION info{};
    constexpr DWORD noFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    if (!GetFileInformationByHandle(file.get(), &info) || (info.dwFileAttributes & noFile) != 0)
        return LockAttempt{.outcome = LockOutcome::NoLocks};
    OVERLAPPED place{};
    place.Offset = LockedByte;
    if (!LockFileEx(file.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place)) {
        const DWORD code = GetLastError();
        if (code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING)
            return Held(file);
        return LockAttempt{.outcome = LockOutcome::NoLocks};
    }
    if (!IsFileAt(path, file))
        return std::nullopt; // its holder has just ended
    const std::string text = ReadText(file);
    auto lock = std::make_unique<WindowsLock>(std::move(file), !text.empty());
    return LockAttempt{.outcome = LockOutcome::Taken, .lock = std::move(lock), .left = HolderOf(text)};
}

std::wstring Text(BOOL (*read)(wchar_t*, DWORD*)) {
    std::array<wchar_t, 512> text{};
    DWORD length = text.size() - 1;
    return read(text.data(), &length) ? text.data() : L"";
}

} // namespace

LockAttempt TakeFileLock(const std::string& hostPath) {
    const auto native = ExtendedPath(hostPath);
    if (!native)
        return {.outcome = LockOutcome::CannotWrite};
    // What is about to be deleted, or is looked through by a virus scanner, cannot be opened for some milliseconds.
    for (DWORD wait = 10; wait <= LongestWait; wait *= 2) {
        if (auto attempt = Try(*native, hostPath))
            return std::move(*attempt);
        const DWORD code = GetLastError();
        if (code == ERROR_WRITE_PROTECT || code == ERROR_PATH_NOT_FOUND || code == ERROR_DISK_FULL)
            break;
        Sleep(wait);
    }
    return {.outcome = LockOutcome::CannotWrite};
}

LockHolder ThisHolder(std::string directory) {
    return {FromWide(Text([](wchar_t* text, DWORD* length) { return GetUserNameW(text, length); })),
            FromWide(Text([](wchar_t* text, DWORD* length) {
                return GetComputerNameExW(ComputerNamePhysicalDnsHostname, text, length);
            })),
            ShortDateTime(std::chrono::system_clock::now()), std::move(directory)};
}

} // namespace korvadex
