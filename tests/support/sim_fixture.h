// Commands on a package of the Hangar, run against a small simulator on the test's drive.
#pragma once

#include "package/load_package.h"
#include "sim/install.h"
#include "sim/remove.h"
#include "sim/sim_usage.h"
#include "tests/support/command_fixture.h"
#include "tests/support/package_builder.h"

#include <string>

namespace korvadex::test {

// The name of a row of a table of cases.
template<class Row>
std::string RowName(const testing::TestParamInfo<Row>& row) {
    return row.param.name;
}

class SimTest : public CommandTest {
  protected:
    SimTest() { drive.MakeDirectory("FS\\gauges"); }

    // Loads a package of the category Jets.
    void Select(const std::string& name) { LoadPackage(context, {"Jets", name}, package); }
    void RunInstall() { RunInstall(drive.Files()); }
    void RunInstall(FileSystem& files) {
        CommandContext disk = On(files);
        changes = InstallIntoSim(disk, package);
        EXPECT_FALSE(display.isProgressVisible);
    }
    void RunRemoval() { RunRemoval(drive.Files()); }
    void RunRemoval(FileSystem& files) {
        CommandContext disk = On(files);
        removal = RemoveFromSim(disk, package, knownUsage, QuietMode);
        if (knownUsage && !removal.removed.empty())
            knownUsage->Forget(removal.removed);
        EXPECT_FALSE(display.isProgressVisible);
    }
    // Puts the selected package into the simulator; its panel finds all its gauges.
    void Install() {
        user.ExpectInstallStatus("...PASSED.\n\nInstallation complete.");
        RunInstall();
    }
    ScriptedUser& ExpectRemoval() {
        return user.Expect("Are you sure you want to remove this package from the Flight Simulator directory?",
                           Answer::Yes);
    }

    LoadedPackage package;
    Changes changes; // of the last installation
    // What a batch gives to a removal, and what the last one has told it.
    SimUsage* knownUsage = nullptr;
    bool QuietMode = false;
    RemovalOutcome removal;
};

} // namespace korvadex::test
