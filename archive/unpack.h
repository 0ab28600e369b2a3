// Unpacking an archive into a directory, or testing it: one job in, one report out.
#pragma once

#include "archive/unzip_code.h"
#include "package/locations.h"
#include "platform/file_system.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace korvadex {

// Where an archive is unpacked: scratch files for what is overwritten lie by the locations' rules.
struct UnpackDisk {
    FileSystem& files;
    const Locations& locations;
};

struct UnpackJob {
    std::string archive = {};     // full path
    std::string target = {};      // the directory to unpack into
    bool isTest = false;          // reads and checks everything, writes nothing
    bool keepsDirectories = true; // otherwise all files go into the target itself
    std::string password = {};    // tried before anyone is asked
    // Called on the way where they are set.
    std::function<bool(const std::string& path)> mayReplace = {}; // otherwise the file that is there stays
    std::function<std::string()> askPassword = {};                // "": what is encrypted is left out
    std::function<bool(const std::string& member, std::uint64_t size)> mayGoOn = {}; // before each one; false stops
    std::function<void(std::uint64_t done, std::uint64_t total)> progress = {};      // in bytes
};

struct UnpackReport {
    int code = UnzipCode::Ok; // the gravest of all members
    struct Refused {
        std::string name, reason;
    };
    // Members left out because of their name, their kind, what is in their way or a disk that does not take them.
    std::vector<Refused> refused = {};
    std::vector<std::string> explanations = {}; // sentences that say more than the code
    // Files and directories whose bytes may still wait to be flushed.
    std::vector<std::string> written = {};
    // Set when the archive needs more room than the disk has; then nothing was unpacked.
    std::uint64_t roomNeeded = 0, roomFree = 0;
    std::string password = {}; // the one that was right; "" when none was needed or found
    // Of the archive as a whole, in bytes.
    std::uint64_t memberCount = 0, size = 0, packedSize = 0, commentSize = 0;
};

// A damaged member does not stop the others. No half file stays.
UnpackReport Unpack(UnpackDisk disk, const UnpackJob& job);

} // namespace korvadex
