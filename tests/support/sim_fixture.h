// Commands on a package of the Hangar, run against a small simulator on the test's drive.
#pragma once

#include "package/load_package.h"
#include "sim/hangar_commands.h"
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

    // Selects and loads a package of the category Jets.
    void Select(const std::string& name) {
        window.category = "Jets";
        window.packageText = name;
        LoadPackage(context, locations.HangarDir + "Jets\\" + name + "\\", false, package);
    }
    void Run(HangarCommand command) { Run(command, drive.Files()); }
    void Run(HangarCommand command, FileSystem& files) {
        CommandContext disk = On(files);
        state.CommandCode = command;
        RunHangarCommand(disk, state, memory, package);
        EXPECT_FALSE(window.isProgressVisible);
    }
    // Puts the selected package into the simulator; its panel finds all its gauges.
    void Install() {
        user.ExpectInstallStatus("...PASSED.\n\nInstallation complete.");
        Run(InstallPackage);
    }
    ScriptedUser& ExpectRemoval() {
        return user.Expect("Are you sure you want to remove this package from the Flight Simulator directory?",
                           Answer::Yes);
    }

    LoadedPackage package;
    CommandState state;
    HangarMemory memory;
};

} // namespace korvadex::test
