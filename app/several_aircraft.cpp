// Archives that hold several aircraft: one of them goes on in Staging, the others wait in the queue.
#include "app/program.h"
#include "archive/process_zip.h"
#include "package/aircraft_parts.h"
#include "package/name_list.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

std::string Program::KeepOneAircraft(CommandContext& each, const UnpackedArchive& unpacked, QueuedArchive& archive) {
    const bool isPart = !archive.part.empty();
    const auto parts =
        unpacked.isWhole ? FindAircraftParts(each.files, unpacked.contents) : std::vector<AircraftPart>();
    auto kept = std::ranges::find_if(
        parts, [&](const AircraftPart& part) { return isPart && EqualNoCase(part.name, archive.part); });
    if (isPart && kept == parts.end()) {
        archive.reason = "The zip file(" + archive.path + ") " +
                         (unpacked.isWhole ? "does not hold an aircraft in its directory " + archive.part +
                                                 " any more.  Please process the whole archive again."
                                           : "was not unpacked completely, so that the aircraft in its directory " +
                                                 archive.part + " cannot be told from the others.");
        return "";
    }
    if (!isPart && parts.size() > 1) {
        const auto row = dialogs.ChooseAircraft(parts);
        if (!row)
            return ""; // what loads Staging has its own way out
        kept = parts.begin() + *row;
        std::vector<QueuedArchive> all; // also the one that goes on: it is not forgotten when this command is cut off
        for (const AircraftPart& part : parts)
            all.push_back({archive.path, part.name});
        if (queue.Entries().empty())
            takenFromQueue = 0;
        KeepQueue(queue.AddFirst(all));
        KeepQueue(queue.Remove({archive}));
        archive.part = kept->name;
    }
    if (kept == parts.end())
        return "";
    const auto remaining =
        DeleteOtherParts(each.files, unpacked.contents, parts, static_cast<std::size_t>(kept - parts.begin()));
    if (!remaining.empty())
        each.user.Tell("The following files of the other aircraft could not be removed from Staging ...\r\n\r\n" +
                           ListNames(remaining) +
                           "\r\n\r\nPlease remove them before you copy the package to the Hangar.",
                       MessageIcon::Exclamation);
    return kept->caption;
}

} // namespace korvadex
