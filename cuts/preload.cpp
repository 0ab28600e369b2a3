// Preloaded into a program: counts the calls by which it changes the disk below one directory, and at one of them does
// to it what a kill, a bad disk or a power cut does. Linux only; cuts/main.cpp starts programs with it.
//
//   KORVADEX_CUT_BELOW  the directory, without links in its path and with a slash at its end
//   KORVADEX_CUT_LIST   a file elsewhere that gets a line for each call
//   KORVADEX_CUT_AT     at which call, from 1; one more than there are: at the end
//   KORVADEX_CUT_HOW    kill      dies instead of the call, or in the middle of its bytes
//                       eio       this one call fails
//                       enospc    this one and all after it that need room fail; others are not counted
//                       ext4      as kill, and the ext4 volume ends with it: it loses what it has not written yet
//                       ext4-log  the same, but names that were changed are on the disk
//                       stop      waits for SIGCONT
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <stdio_ext.h>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

std::string Setting(const char* name) {
    const char* value = getenv(name);
    return value ? value : "";
}

// The calls of the program itself are made here: the names of the C library are taken.
template<class... Arguments>
long System(long number, Arguments... arguments) {
    return syscall(number, arguments...);
}

struct Cut {
    const std::string below = Setting("KORVADEX_CUT_BELOW"), how = Setting("KORVADEX_CUT_HOW");
    const int at = std::atoi(Setting("KORVADEX_CUT_AT").c_str());
    const int list = below.empty() ? -1
                                   : int(System(SYS_openat, AT_FDCWD, Setting("KORVADEX_CUT_LIST").c_str(),
                                                O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
    int count = 0;
    std::mutex mutex;

    ~Cut() {
        if (at == count + 1 && how.starts_with("ext4"))
            Die();
    }
    [[noreturn]] void Die() {
        if (how.starts_with("ext4")) {
            constexpr unsigned long shutDown = _IOR('X', 125, std::uint32_t); // EXT4_IOC_SHUTDOWN
            std::uint32_t flags = how == "ext4-log" ? 1 : 2;
            const long directory = System(SYS_openat, AT_FDCWD, below.c_str(), O_RDONLY | O_DIRECTORY);
            if (System(SYS_ioctl, directory, shutDown, &flags) != 0)
                perror("the volume cannot be shut down");
        }
        kill(getpid(), SIGKILL);
        abort();
    }
};
Cut& TheCut() {
    static Cut cut;
    return cut;
}
// Made before the first call, so that it is there at the end of a program that makes none.
[[maybe_unused]] const Cut& first = TheCut();

std::string PathOf(int file) {
    char path[4096];
    const ssize_t length = readlink(("/proc/self/fd/" + std::to_string(file)).c_str(), path, sizeof path);
    return length > 0 ? std::string(path, std::size_t(length)) : "";
}
std::string PathAt(int directory, const char* path) {
    return path[0] == '/' || directory == AT_FDCWD ? path : PathOf(directory) + "/" + path;
}

enum class Fate { Passes, Fails, Halves };
enum class Needs { Nothing, Room };

Fate Meet(const char* call, const std::string& path, Needs needs) {
    Cut& cut = TheCut();
    const std::lock_guard lock(cut.mutex);
    const bool isFull = cut.how == "enospc";
    if (cut.below.empty() || !path.starts_with(cut.below) || (isFull && needs != Needs::Room))
        return Fate::Passes;
    dprintf(cut.list, "%s %s\n", call, path.c_str() + cut.below.size());
    ++cut.count;
    if (cut.at == 0 || cut.count < cut.at || (cut.count > cut.at && !isFull))
        return Fate::Passes;
    const bool isWrite = std::string_view(call) == "write";
    errno = isFull ? ENOSPC : EIO;
    if (isFull || cut.how == "eio")
        return isWrite && isFull && cut.count == cut.at ? Fate::Halves : Fate::Fails;
    if (cut.how == "stop") {
        kill(getpid(), SIGSTOP);
        return Fate::Passes;
    }
    if (!isWrite)
        cut.Die();
    return Fate::Halves;
}

// The C library's own.
template<class Function>
Function Next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// A call without bytes.
template<class... Arguments>
int Change(const char* call, const std::string& path, Needs needs, long number, Arguments... arguments) {
    return Meet(call, path, needs) == Fate::Passes ? int(System(number, arguments...)) : -1;
}

// write: gives the number of bytes that it wrote, of those that it is asked to.
template<class Write>
ssize_t Bytes(int file, std::size_t count, Write write) {
    const Fate fate = Meet("write", PathOf(file), Needs::Room);
    if (fate == Fate::Fails)
        return -1;
    if (fate == Fate::Passes)
        return write(count);
    const ssize_t half = count > 1 ? write(count / 2) : 0;
    if (TheCut().how != "enospc")
        TheCut().Die();
    errno = ENOSPC;
    return half > 0 ? half : -1;
}

int Open(int directory, const char* path, int flags, mode_t mode) {
    struct stat info;
    const bool isNew = (flags & O_CREAT) != 0 && fstatat(directory, path, &info, AT_SYMLINK_NOFOLLOW) != 0;
    if (!isNew && (flags & O_TRUNC) == 0)
        return int(System(SYS_openat, directory, path, flags, mode));
    return Change("open", PathAt(directory, path), Needs::Room, SYS_openat, directory, path, flags, mode);
}

int Rename(int from, const char* oldPath, int to, const char* newPath, unsigned flags) {
    return Change("rename", PathAt(to, newPath), Needs::Nothing, SYS_renameat2, from, oldPath, to, newPath, flags);
}

mode_t ModeOf(int flags, va_list arguments) {
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

extern "C" {

// NOLINTBEGIN(cert-dcl50-cpp)
int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return Open(AT_FDCWD, path, flags, mode);
}
int openat(int directory, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return Open(directory, path, flags, mode);
}
// NOLINTEND(cert-dcl50-cpp)
int open64(const char*, int, ...) __attribute__((alias("open")));
int openat64(int, const char*, int, ...) __attribute__((alias("openat")));

ssize_t write(int file, const void* bytes, std::size_t count) {
    return Bytes(file, count, [=](std::size_t size) { return System(SYS_write, file, bytes, size); });
}
ssize_t pwrite64(int file, const void* bytes, std::size_t count, off_t at) {
    return Bytes(file, count, [=](std::size_t size) { return System(SYS_pwrite64, file, bytes, size, at); });
}
ssize_t pwrite(int, const void*, std::size_t, off_t) __attribute__((alias("pwrite64")));
ssize_t copy_file_range(int from, off_t* fromAt, int to, off_t* toAt, std::size_t count, unsigned flags) {
    struct stat info;
    const std::size_t all = fstat(from, &info) == 0 ? std::size_t(info.st_size) : 0;
    return Bytes(to, std::min(count, all + 1),
                 [=](std::size_t size) { return System(SYS_copy_file_range, from, fromAt, to, toAt, size, flags); });
}
// Of libraries that write through the C library.
std::size_t fwrite(const void* bytes, std::size_t size, std::size_t count, FILE* file) {
    static const auto real = Next<decltype(&fwrite)>("fwrite");
    const ssize_t written = Bytes(fileno(file), size * count, [=](std::size_t wanted) {
        const auto done = ssize_t(real(bytes, 1, wanted, file));
        if (wanted < size * count)
            fflush(file);
        return done;
    });
    return written > 0 ? std::size_t(written) / size : 0;
}
int fclose(FILE* file) {
    static const auto real = Next<decltype(&fclose)>("fclose");
    if (!__fwritable(file) || Meet("fclose", PathOf(fileno(file)), Needs::Room) == Fate::Passes)
        return real(file);
    const int fault = errno;
    real(file);
    errno = fault;
    return EOF;
}
int ftruncate64(int file, off_t size) noexcept {
    return Change("truncate", PathOf(file), Needs::Room, SYS_ftruncate, file, size);
}
int ftruncate(int, off_t) noexcept __attribute__((alias("ftruncate64")));

int fsync(int file) {
    return Change("fsync", PathOf(file), Needs::Nothing, SYS_fsync, file);
}
int fdatasync(int file) {
    return Change("fsync", PathOf(file), Needs::Nothing, SYS_fdatasync, file);
}
int syncfs(int file) noexcept {
    return Change("syncfs", PathOf(file), Needs::Nothing, SYS_syncfs, file);
}

int renameat2(int from, const char* oldPath, int to, const char* newPath, unsigned flags) noexcept {
    return Rename(from, oldPath, to, newPath, flags);
}
int renameat(int from, const char* oldPath, int to, const char* newPath) noexcept {
    return Rename(from, oldPath, to, newPath, 0);
}
int rename(const char* from, const char* to) noexcept {
    return Rename(AT_FDCWD, from, AT_FDCWD, to, 0);
}
int linkat(int from, const char* oldPath, int to, const char* newPath, int flags) noexcept {
    return Change("link", PathAt(to, newPath), Needs::Room, SYS_linkat, from, oldPath, to, newPath, flags);
}
int link(const char* from, const char* to) noexcept {
    return linkat(AT_FDCWD, from, AT_FDCWD, to, 0);
}
int unlinkat(int directory, const char* path, int flags) noexcept {
    const bool isDirectory = (flags & AT_REMOVEDIR) != 0;
    return Change(isDirectory ? "rmdir" : "unlink", PathAt(directory, path), Needs::Nothing, SYS_unlinkat, directory,
                  path, flags);
}
int unlink(const char* path) noexcept {
    return unlinkat(AT_FDCWD, path, 0);
}
int rmdir(const char* path) noexcept {
    return unlinkat(AT_FDCWD, path, AT_REMOVEDIR);
}
int mkdirat(int directory, const char* path, mode_t mode) noexcept {
    return Change("mkdir", PathAt(directory, path), Needs::Room, SYS_mkdirat, directory, path, mode);
}
int mkdir(const char* path, mode_t mode) noexcept {
    return mkdirat(AT_FDCWD, path, mode);
}

int chmod(const char* path, mode_t mode) noexcept {
    return Change("chmod", path, Needs::Nothing, SYS_fchmodat, AT_FDCWD, path, mode);
}
int fchmod(int file, mode_t mode) noexcept {
    return Change("chmod", PathOf(file), Needs::Nothing, SYS_fchmod, file, mode);
}
int utimensat(int directory, const char* path, const timespec* times, int flags) noexcept {
    return Change("utime", PathAt(directory, path), Needs::Nothing, SYS_utimensat, directory, path, times, flags);
}
int futimens(int file, const timespec* times) noexcept {
    return Change("utime", PathOf(file), Needs::Nothing, SYS_utimensat, file, nullptr, times, 0);
}
int setxattr(const char* path, const char* name, const void* value, std::size_t size, int flags) noexcept {
    return Change("setxattr", path, Needs::Room, SYS_setxattr, path, name, value, size, flags);
}
int lsetxattr(const char* path, const char* name, const void* value, std::size_t size, int flags) noexcept {
    return Change("setxattr", path, Needs::Room, SYS_lsetxattr, path, name, value, size, flags);
}
int fsetxattr(int file, const char* name, const void* value, std::size_t size, int flags) noexcept {
    return Change("setxattr", PathOf(file), Needs::Room, SYS_fsetxattr, file, name, value, size, flags);
}
int removexattr(const char* path, const char* name) noexcept {
    return Change("removexattr", path, Needs::Nothing, SYS_removexattr, path, name);
}
int lremovexattr(const char* path, const char* name) noexcept {
    return Change("removexattr", path, Needs::Nothing, SYS_lremovexattr, path, name);
}
int fremovexattr(int file, const char* name) noexcept {
    return Change("removexattr", PathOf(file), Needs::Nothing, SYS_fremovexattr, file, name);
}

} // extern "C"
