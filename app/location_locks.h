// The places that this program has for itself while it runs; who has not got all of them only looks.
#pragma once

#include "package/locations.h"
#include "platform/file_lock.h"
#include "platform/file_system.h"

#include <memory>
#include <string>
#include <vector>

namespace korvadex {

// A place where another program is at work.
struct HeldPlace {
    std::string name, directory; // "Hangar location", "C:\Hangar\"
    LockHolder holder;
};

// "Hangar location C:\Hangar\  (anna on WORKSHOP since 22.11.2026 10:47)", one to a line.
std::string ListHeld(const std::vector<HeldPlace>& held);

class LocationLocks {
  public:
    explicit LocationLocks(const FileSystem& fileSystem) : files(fileSystem) {}

    // Takes the directory of the settings, and of the locations all or none; those that are empty are passed over.
    // What it has of them already is looked at again, what it had of others goes. Gives what another program has.
    // Where the volume offers no locks, or nothing can be written, a place counts as free.
    std::vector<HeldPlace> Take(const std::string& appDir, const Locations& locations);
    void GiveUp();
    // Whether kx.ini is this program's to write.
    bool HasSettings() const { return hasSettings; }

  private:
    const FileSystem& files;
    std::vector<std::shared_ptr<FileLock>> locks; // one may stand for two places
    bool hasSettings = false;
};

} // namespace korvadex
