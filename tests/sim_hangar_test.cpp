// What the case files of the Hangar (cases/hangar.case) cannot say.
#include "package/aircraft_cfg.h"
#include "sim/run_simulator.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

TEST_F(SimTest, ATitleInWhatIsNoTextIsLeftAlone) {
    const std::string odd("title=A\n\0", 9), path = "Hangar\\Jets\\Odd\\aircraft.cfg";
    drive.Put(path, odd);
    EXPECT_FALSE(RewriteTitle(context, ReadAircraftCfg(drive.Files(), drive.At(path)), "New"));
    EXPECT_EQ(drive.Get(path), odd);
}

TEST_F(SimTest, RunsTheFirstSimulatorOfTheList) {
    user.Expect("Flight Simulator executable not found.  Please check MSFS location supplied to Korvadex.",
                MessageIcon::Exclamation);
    RunSimulator(context);
    drive.Fill("FS", "fs2002.exe\\, fltsim98.exe=MZ, CFS2.EXE=MZ");
    RunSimulator(context);
    EXPECT_EQ(launcher.started, std::vector<std::string>{"run " + drive.At("FS\\cfs2.exe")});
    EXPECT_EQ(display.status, drive.At("FS\\cfs2.exe is being started."));
    launcher.simulatorRefusal = "Wine is not installed.";
    user.Expect("Wine is not installed.", MessageIcon::Exclamation);
    RunSimulator(context);
}

} // namespace korvadex::test
