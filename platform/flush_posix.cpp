#include "platform/flush_posix.h"

#include "platform/descriptor_posix.h"
#include "platform/in_parallel.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace korvadex {

namespace {

// Of more files than these the volume as a whole is flushed sooner than each of them.
constexpr std::size_t FewFiles = 64;

Descriptor OpenToFlush(const std::string& hostPath) {
    return Descriptor(open(hostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
}

// ext2 to ext4, XFS, Btrfs and F2FS answer only when all that they hold back is on the disk, and tell of what failed.
// Others may have passed it on to a program or a server by then.
bool FlushesAsAWhole(int file) {
    constexpr std::array<std::uint32_t, 4> kinds = {0xEF53, 0x58465342, 0x9123683E, 0xF2F52010};
    struct statfs info;
    return fstatfs(file, &info) == 0 &&
           std::ranges::find(kinds, static_cast<std::uint32_t>(info.f_type)) != kinds.end();
}

bool FlushVolumeOf(const std::string& hostPath) {
    const Descriptor file = OpenToFlush(hostPath);
    return file && FlushesAsAWhole(file.get()) && syncfs(file.get()) == 0;
}

int FlushOne(const std::string& hostPath) {
    const Descriptor file = OpenToFlush(hostPath);
    // Some file systems keep nothing back of a directory, and know no way to ask.
    return file && (fsync(file.get()) == 0 || errno == EINVAL) ? 0 : errno;
}

} // namespace

std::vector<int> FlushTogether(std::span<const std::string> hostPaths) {
    std::map<dev_t, std::vector<std::size_t>> volumes;
    std::vector<std::size_t> single;
    for (std::size_t i = 0; i < hostPaths.size(); ++i) {
        struct stat info;
        if (hostPaths[i].empty())
            continue;
        if (hostPaths.size() > FewFiles && lstat(hostPaths[i].c_str(), &info) == 0)
            volumes[info.st_dev].push_back(i);
        else
            single.push_back(i);
    }
    for (const auto& [volume, files] : volumes) {
        if (files.size() <= FewFiles || !FlushVolumeOf(hostPaths[files.front()]))
            single.insert(single.end(), files.begin(), files.end());
    }
    // A disk takes about as long to confirm one file as to confirm many that it is asked for at the same time.
    std::vector<int> faults(hostPaths.size());
    ForEachTogether(single.size(), [&](std::size_t i) { faults[single[i]] = FlushOne(hostPaths[single[i]]); });
    return faults;
}

} // namespace korvadex
