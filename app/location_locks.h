// The places that this program has for itself while it runs; who has not got all of them only looks. The mark that it
// leaves in them goes when it ends, and stays when it is cut off.
#pragma once

#include "package/locations.h"
#include "platform/file_lock.h"
#include "platform/file_system.h"

#include <memory>
#include <string>
#include <vector>

namespace korvadex {

// A place where another program is at work, or was cut off.
struct HeldPlace {
    std::string name, directory; // "Hangar location", "C:\Hangar\"
    LockHolder holder;
};

// "Hangar location C:\Hangar\  (anna on WORKSHOP since 22.11.2026 10:47, settings in D:\Korvadex\)", one to a line.
std::string ListHeld(const std::vector<HeldPlace>& held);

// What this installation finds in a place when it comes back.
enum class PlaceState {
    Known, // its mark, or no mark can be left there
    Other, // no mark of its own: another one has worked there since, or another drive is there
    Empty  // the same, and nothing at all is there, as where a drive is away
};

struct TakenPlace {
    std::string directory;
    PlaceState state = PlaceState::Known;
    std::shared_ptr<FileLock> lock = {}; // one may stand for two places; null where none can be had
};

class LocationLocks {
  public:
    explicit LocationLocks(const FileSystem& fileSystem) : files(fileSystem) {}

    struct Others {
        std::vector<HeldPlace> atWork, cutOff;
    };
    // Takes the directory of the settings, and of the locations all or none; those that are empty are passed over.
    // What it has of them already is looked at again, what it had of others goes. Gives what another program has, and
    // where another installation was cut off, which counts as had by it unless alsoWhereCutOff.
    // Where the volume offers no locks, or nothing can be written, a place counts as free.
    Others Take(const std::string& appDir, const Locations& locations, bool alsoWhereCutOff = false);
    // Leaves its mark in all that it has; in places that are empty only when that is wanted.
    void Sign(bool alsoWhereEmpty = true);
    void GiveUp();
    // Whether kx.ini is this program's to write.
    bool HasSettings() const { return hasSettings; }
    const std::vector<TakenPlace>& Places() const { return places; }

  private:
    PlaceState StateOf(const std::string& directory, const LockAttempt& attempt) const;

    const FileSystem& files;
    std::vector<TakenPlace> places;
    bool hasSettings = false;
    LockHolder self;
    LockHolder earlier; // whose mark was in the directory of the settings: the same installation, by another name
};

} // namespace korvadex
