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

TEST_F(SimTest, ASimulatorThatDoesNotStartIsTold) {
    drive.Put("FS\\fs2002.exe", "MZ");
    launcher.simulatorRefusal = "Wine is not installed.";
    user.Expect("Wine is not installed.", MessageIcon::Exclamation);
    RunSimulator(context);
}

} // namespace korvadex::test
