#include "app/location_locks.h"

#include "platform/windows_path.h"

namespace korvadex {

std::string ListHeld(const std::vector<HeldPlace>& held) {
    std::string list;
    for (const auto& [name, directory, holder] : held) {
        std::string who = holder.user;
        if (!holder.machine.empty())
            who += " on " + holder.machine;
        if (!holder.since.empty())
            who += " since " + holder.since;
        list += (list.empty() ? "" : "\r\n") + name + " " + directory + (who.empty() ? "" : "  (" + who + ")");
    }
    return list;
}

std::vector<HeldPlace> LocationLocks::Take(const std::string& appDir, const Locations& locations) {
    std::vector<HeldPlace> held;
    decltype(locks) taken;
    const auto take = [&](const char* name, const std::string& directory) {
        if (directory.empty())
            return;
        const auto path = files.HostPath(directory + std::string(LockFileName));
        for (const auto* known : {&locks, &taken})
            for (const auto& lock : *known)
                if (lock->IsAt(path))
                    return taken.push_back(lock);
        auto attempt = TakeFileLock(path);
        if (attempt.lock)
            taken.push_back(std::move(attempt.lock));
        if (attempt.outcome == LockOutcome::HeldByOther)
            held.push_back({name, directory, attempt.holder});
    };
    take("settings directory", appDir);
    hasSettings = held.empty();
    const auto ofSettings = taken;
    take("Staging location", locations.StagingDir);
    take("Hangar location", locations.HangarDir);
    take("MSFS installation", locations.MsfsDir);
    locks = held.empty() ? taken : ofSettings; // who only looks is in nobody's way
    return held;
}

void LocationLocks::GiveUp() {
    locks.clear();
    hasSettings = false;
}

} // namespace korvadex
