// One command for many packages of the Hangar, a turn for each, while nobody answers: what needs an answer, or fails,
// is left as it was, with the reason.
#pragma once

#include "app/batch_progress.h"
#include "app/unattended.h"
#include "journal/history.h"
#include "package/presence.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace korvadex {

// Of a package that was not reached.
inline constexpr const char* StoppedReason = "the command was stopped before its turn";

// What came of the turn of a package.
struct Turn {
    PackageRef package; // as it is called now
    bool isDone = false;
    std::vector<std::string> notes; // why it was left, or what else there is to say
    bool wasReached = true;
    std::string title = {}; // for the report; "" for the package's name
};

// Why the batch cannot work on the package; "" when it is loaded.
std::string LoadForBatch(CommandContext& context, const PackageRef& ref, LoadedPackage& package);

// The packages in an order in which one that lends its panel or sound to others by an alias comes before them.
std::vector<PackageRef> LendersFirst(CommandContext& context, const std::vector<PackageRef>& packages);

class BatchRun {
  public:
    // needed: the places without which there is no turn.
    BatchRun(const CommandContext& command, History& journal, BatchProgress& shownIn, UnattendedUser& user,
             std::vector<Place> needed);

    // Works on a package; false when it is to be left as it was.
    using Deed = std::function<bool(CommandContext& context, const LoadedPackage& package)>;
    void LoadEach(const std::vector<PackageRef>& packages, const Deed& deed);
    // The same for a deed that does not need what is in it.
    using NamedDeed = std::function<bool(CommandContext& context, const PackageRef& package)>;
    void TakeEach(const std::vector<PackageRef>& packages, const NamedDeed& deed);

    // A single turn, in which the package may get another name.
    using NamingDeed = std::function<bool(CommandContext& context, PackageRef& package)>;
    void TakeOne(PackageRef package, const NamingDeed& deed);
    // From now on there are no more turns, for this reason.
    void CutShort(const std::string& reason);

    // Called after a turn whose changes stay.
    std::function<void()> afterDone;

    // Where what prepares the turns works.
    CommandContext context;

    // In the order in which they were taken.
    std::vector<Turn> turns;

  private:
    void Take(PackageRef package, const NamingDeed& deed);
    std::string DescribeHindrance(const PackageRef& package) const;

    History& history;
    BatchProgress& progress;
    UnattendedUser& unattended;
    const std::vector<Place> places;
    bool isCutShort = false; // by the user or the disk
    std::string why;
};

} // namespace korvadex
