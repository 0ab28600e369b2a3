#include "sim/gauges.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

struct PanelCheck {
    const char* name;
    const char* panel;
    const char* report;
    std::vector<std::string> used; // below the gauges directory
};

class CrossCheck : public SimTest, public testing::WithParamInterface<PanelCheck> {};

TEST_P(CrossCheck, ComparesThePanelWithTheGaugesDirectory) {
    for (const char* gauge :
         {"Cessna.CAB", "myclock.gau", "both.cab", "both.gau", "sub\\deep.gau", "not.txt"})
        drive.Put(std::string("FS\\gauges\\") + gauge, gauge);
    drive.Put("panel.cfg", GetParam().panel);
    std::vector<std::string> used = {"from the last check"}, expected;
    EXPECT_EQ(CrossCheckPanel(context, drive.At("panel.cfg"), used), GetParam().report);
    for (const std::string& gauge : GetParam().used)
        expected.push_back(drive.At("FS\\gauges\\" + gauge));
    EXPECT_EQ(used, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Panels, CrossCheck,
    testing::Values(
        PanelCheck{"Empty", "", "PanelNoGauges", {}},
        PanelCheck{"Alias", "[fltsim]\r\nalias=Lear\\panel\r\n", "PanelNoGauges", {}},
        PanelCheck{"Cabinet", "gauge05=Cessna!Airspeed, 10,20", "", {"Cessna.CAB"}},
        PanelCheck{"Single", "gauge12=myclock,100,20", "", {"myclock.gau"}},
        PanelCheck{"SingleAndCabinet", "gauge12=both!x,1", "", {"both.gau", "both.cab"}},
        PanelCheck{"Below", "  GAUGE100 =  DEEP , 1", "", {"sub\\deep.gau"}},
        PanelCheck{"WithItsDirectory",
                   "gauge00=Sub\\deep!x\ngauge01=deep\ngauge02=other\\deep\ngauge03=ub\\deep",
                   "other\\deep.gau\r\nub\\deep.gau\r\n",
                   {"sub\\deep.gau"}},
        PanelCheck{"EachOnce", "gauge00=myclock,1\nGauge01=MYCLOCK!x,1\n", "", {"myclock.gau"}},
        PanelCheck{"MissingInOrderOnce",
                   "gauge00=Zulu\ngauge01=clock!a\ngauge02=zulu,2\ngauge03=myclock\ngauge04=not,1",
                   "zulu.gau\r\nclock.gau\r\nnot.gau\r\n",
                   {"myclock.gau"}},
        PanelCheck{"NoGaugeLines", "; gauge00=a\ngauge\n[gauges]\nfile=gauge=1.bmp", "PanelNoGauges", {}},
        PanelCheck{"EmptyName", "gauge00=,1,2\ngauge01=", "", {}}),
    RowName<PanelCheck>);

TEST(GaugeTexts, OfBothWindows) {
    EXPECT_EQ(InstallStatusText("Lear", "x.gau\r\n"),
              "Lear ...\r\n\r\nPossible problem ...\r\n\r\nThis package uses the following gauge files\r\n"
              "which aren't currently installed in MSFS.\r\nPlease install the package(s) which contains\r\n"
              "these gauge files or they will not be\r\nvisible when panel is loaded in MSFS ...\r\n\r\n"
              "x.gau\r\n\r\nInstallation complete with warning.");
    EXPECT_EQ(ImportStatusText("Lear", ""),
              "Lear ...\r\n\r\nCrosscheck complete.  PASSED.\r\n\r\nImport will now continue ...");
    EXPECT_EQ(ImportStatusText("Lear", "PanelNoGauges"),
              "Lear ...\r\n\r\nPanel alias used.  Crosscheck bypassed.\r\n\r\nImport will now continue ...");
    EXPECT_EQ(ImportStatusText("Lear", "x.gau\r\n"),
              "Lear ...\r\n\r\nPossible problem ...\r\n\r\nThis package uses the following gauge files\r\n"
              "which aren't currently installed in MSFS\r\nand therefore will not be imported "
              "...\r\n\r\nx.gau\r\n\r\n"
              "Import will now continue despite warning\r\nbut it is recommended that you redo import\r\n"
              "once all needed gauges are installed in\r\nMSFS.");
}

struct GaugeRemoval {
    const char* name;
    const char *file, *inPackage, *inSim; // the gauge, and its bytes on both sides
    const char* otherPanel;               // of another aircraft
    bool isRemoved;
};

class RemoveGauge : public SimTest, public testing::WithParamInterface<GaugeRemoval> {};

TEST_P(RemoveGauge, SparesWhatOthersNeed) {
    const GaugeRemoval& row = GetParam();
    PackageBuilder(drive, "Hangar\\Jets\\Lear\\")
        .WithoutAll()
        .With(std::string("Gauges\\") + row.file, row.inPackage);
    drive.Put(std::string("FS\\gauges\\") + row.file, row.inSim);
    drive.Put("FS\\aircraft\\Jet\\panel\\panel.cfg", row.otherPanel);
    Select("Lear");
    EXPECT_TRUE(PlaceGauges(context, package, locations.MsfsDir, GaugeMode::Remove));
    EXPECT_EQ(drive.Has(std::string("FS\\gauges\\") + row.file), !row.isRemoved);
    EXPECT_FALSE(window.isProgressVisible);
}

INSTANTIATE_TEST_SUITE_P(
    Gauges, RemoveGauge,
    testing::Values(GaugeRemoval{"Unused", "clock.gau", "a", "a", "clock\r\nGauge00=other", true},
                    GaugeRemoval{"OtherBytes", "clock.gau", "a", "b", "", false},
                    GaugeRemoval{"Used", "Clock.gau", "a", "a", "[x]\r\n  GAUGE00 = CLOCK!x,1", false},
                    GaugeRemoval{"UsedUpToTheFirstDot", "Clock.v2.gau", "a", "a", "gauge00=clock", false},
                    GaugeRemoval{"StockName", "BF109E.GAU", "a", "a", "", false},
                    GaugeRemoval{"StockPart", "x.Generic.cab", "a", "a", "", false},
                    GaugeRemoval{"NearlyStock", "xbf109e.gau", "a", "a", "", true}),
    RowName<GaugeRemoval>);

TEST_F(SimTest, ImportCopiesTheGaugesThatThePanelUses) {
    drive.Put("Staging\\panel\\panel.cfg", "gauge00=clock,1\ngauge01=cabinet!x\ngauge02=gone\n");
    drive.Put("Staging\\gauges\\Cabinet.cab", "own");
    drive.Put("FS\\gauges\\Clock.gau", "clock");
    drive.Put("FS\\gauges\\cabinet.cab", "cabinet");
    user.ExpectImportStatus("My_Lear ...\n\nPossible problem ...\n\nThis...").Then([&] {
        EXPECT_FALSE(drive.Has("Staging\\gauges\\Clock.gau"));
    });
    user.Expect("Done.", Answer::Ok);
    RunImportGaugeStep(context, "My_Lear");
    EXPECT_EQ(drive.Tree("Staging\\gauges"),
              (std::map<std::string, std::string>{{"Cabinet.cab", "own"}, {"Clock.gau", "clock"}}));
}

} // namespace korvadex::test
