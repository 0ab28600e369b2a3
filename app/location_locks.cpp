#include "app/location_locks.h"

#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

bool IsSame(const LockHolder& left, const LockHolder& installation) {
    return !left.machine.empty() && left.machine == installation.machine && left.directory == installation.directory;
}

} // namespace

std::string ListHeld(const std::vector<HeldPlace>& held) {
    std::string list;
    for (const auto& [name, directory, holder] : held) {
        std::string who = holder.user;
        if (!holder.machine.empty())
            who += " on " + holder.machine;
        if (!holder.since.empty())
            who += " since " + holder.since;
        if (!holder.directory.empty())
            who += ", settings in " + holder.directory;
        list += (list.empty() ? "" : "\r\n") + name + " " + directory + (who.empty() ? "" : "  (" + who + ")");
    }
    return list;
}

LocationLocks::Others LocationLocks::Take(const std::string& appDir, const Locations& locations, bool alsoWhereCutOff) {
    if (self.directory.empty())
        self = ThisHolder(files.HostPath(appDir));
    Others others;
    std::vector<TakenPlace> taken;
    const auto take = [&](const char* name, const std::string& directory) {
        if (directory.empty())
            return;
        const auto path = files.HostPath(directory + std::string(LockFileName));
        for (const auto* known : {&places, &taken})
            for (const TakenPlace& place : *known)
                if (place.lock && place.lock->IsAt(path))
                    return taken.push_back({directory, place.state, place.lock});
        auto attempt = TakeFileLock(path);
        if (attempt.outcome == LockOutcome::HeldByOther)
            return others.atWork.push_back({name, directory, attempt.holder});
        if (directory == appDir)
            earlier = attempt.left;
        const auto state = directory == appDir ? PlaceState::Known : StateOf(directory, attempt);
        if (state != PlaceState::Known && !attempt.left.machine.empty())
            others.cutOff.push_back({name, directory, attempt.left});
        taken.push_back({directory, state, std::move(attempt.lock)});
    };
    take("settings directory", appDir);
    hasSettings = others.atWork.empty();
    // Others are to see who it is; but an earlier name is needed until it stands nowhere else.
    if (hasSettings && taken.front().lock && (earlier == LockHolder{} || IsSame(earlier, self)))
        taken.front().lock->Sign(self);
    const auto ofSettings = taken;
    take("Staging location", locations.StagingDir);
    take("Hangar location", locations.HangarDir);
    take("MSFS installation", locations.MsfsDir);
    const bool hasAll = others.atWork.empty() && (others.cutOff.empty() || alsoWhereCutOff);
    places = hasAll ? taken : ofSettings; // who only looks is in nobody's way
    return others;
}

PlaceState LocationLocks::StateOf(const std::string& directory, const LockAttempt& attempt) const {
    if (attempt.outcome == LockOutcome::NoLocks || IsSame(attempt.left, self) || IsSame(attempt.left, earlier))
        return PlaceState::Known;
    const auto entries = files.List(directory);
    if (entries && std::ranges::all_of(*entries, [](const DirectoryEntry& entry) { return IsOwnName(entry.name); }))
        return PlaceState::Empty;
    return attempt.lock ? PlaceState::Other : PlaceState::Known;
}

void LocationLocks::Sign(bool alsoWhereEmpty) {
    for (auto place = places.rbegin(); place != places.rend(); ++place) { // the directory of the settings last
        if (place->state == PlaceState::Empty && !alsoWhereEmpty)
            continue;
        place->state = PlaceState::Known;
        if (place->lock)
            place->lock->Sign(self);
    }
}

void LocationLocks::GiveUp() {
    places.clear();
    hasSettings = false;
}

} // namespace korvadex
