// Commands for many packages of the Hangar, one after the other: each is loaded for its turn, whatever the main window
// shows. What they say to the user is summed up for the end.
#pragma once

#include "app/batch_progress.h"
#include "sim/remove.h"
#include "sim/sim_usage.h"

#include <string>
#include <vector>

namespace korvadex {

// What a batch left as it was, and why.
struct LeftPackage {
    PackageRef package;
    std::string reason;
};

struct CompressionSummary {
    std::vector<LeftPackage> left;
    std::vector<std::string> failures; // files that stayed as they were, with the reason
};
CompressionSummary CompressPackages(CommandContext& context, BatchProgress& progress,
                                    const std::vector<PackageRef>& packages, bool compress);

struct UninstallSummary {
    int removed = 0, notInstalled = 0, lenders = 0; // a lender was kept because of an alias, and the user was told
    std::vector<LeftPackage> left;
    std::string unseen; // what may use some of them and could not be looked at, one to a line
    std::vector<std::string> remainingGauges;
};
// Takes the packages out of the simulator, borrowers of a panel or a sound before its lender. The Hangar as it was
// listed last says what else is installed.
UninstallSummary UninstallPackages(CommandContext& context, BatchProgress& progress,
                                   const std::vector<PackageRef>& packages, const HangarListing& hangar);

// The same, one by one.
SimUsage UsageOf(CommandContext& context, const HangarListing& hangar);
std::vector<PackageRef> BorrowersFirst(CommandContext& context, const SimUsage& usage,
                                       const std::vector<PackageRef>& packages);
struct BatchRemoval {
    bool isRemoved = false, isNotInstalled = false;
    std::string reason = {}; // why it was left; "" also where the user was told of the aircraft that need it
    RemovalOutcome outcome = {};
};
BatchRemoval RemoveInBatch(CommandContext& context, const SimUsage& usage, const PackageRef& ref);

// "The following packages were kept ...", with the reasons: "Jets\Lear" where another category has a Lear too.
void TellLeft(UserDialogs& user, const std::string& text, const std::vector<LeftPackage>& left,
              const std::vector<PackageRef>& packages, const std::string& more = "");

} // namespace korvadex
