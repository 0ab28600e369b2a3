#include "sim/gauge_check.h"
#include "sim/gauge_removal.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

TEST_F(SimTest, CrossCheckComparesThePanelWithTheGaugesDirectory) {
    const struct {
        const char* name;
        std::string panel;
        const char* report;
        std::vector<std::string> used; // below the gauges directory
    } rows[] = {
        {"empty", "", "PanelNoGauges", {}},
        {"an alias", "[fltsim]\r\nalias=Lear\\panel\r\n", "PanelNoGauges", {}},
        {"a cabinet", "gauge05=Cessna!Airspeed, 10,20", "", {"Cessna.CAB"}},
        {"single and cabinet", "gauge12=both!x,1", "", {"both.gau", "both.cab"}},
        {"below", "  GAUGE100 =  DEEP , 1", "", {"sub\\deep.gau"}},
        {"with its directory",
         "gauge00=Sub\\deep!x\ngauge01=deep\ngauge02=other\\deep\ngauge03=ub\\deep",
         "other\\deep.gau\r\nub\\deep.gau\r\n",
         {"sub\\deep.gau"}},
        {"each once", "gauge00=myclock,1\nGauge01=MYCLOCK!x,1\n", "", {"myclock.gau"}},
        {"missing in order, once",
         "gauge00=Zulu\ngauge01=clock!a\ngauge02=zulu,2\ngauge03=myclock\ngauge04=not,1",
         "zulu.gau\r\nclock.gau\r\nnot.gau\r\n",
         {"myclock.gau"}},
        {"no gauge lines", "; gauge00=a\ngauge\n[gauges]\nfile=gauge=1.bmp", "PanelNoGauges", {}},
        {"empty names", "gauge00=,1,2\ngauge01=", "", {}},
        {"tabs, quotes and a comment",
         "\tgauge00\t=\t\"Cessna!Airspeed, 10,20\"\r\ngauge01 = myclock ; mine\r\n",
         "",
         {"Cessna.CAB", "myclock.gau"}},
        {"letters of two bytes", TwoByteText("gauge00=myclock,1\r\ngauge01=zulu\r\n"), "zulu.gau\r\n", {"myclock.gau"}},
        {"a file without a byte", "gauge00=hollow,1", "hollow.gau\r\n", {}},
    };
    drive.Fill("FS\\gauges",
               "Cessna.CAB=x, myclock.gau=x, both.cab=x, both.gau=x, sub\\deep.gau=x, hollow.gau=, not.txt=x");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        drive.Put("panel.cfg", row.panel);
        const PanelCheck check = CrossCheckPanel(context, drive.At("panel.cfg"));
        std::string report = check.PanelNoGauges ? "PanelNoGauges" : "";
        for (const std::string& gauge : check.missing)
            report += gauge + "\r\n";
        EXPECT_EQ(report, row.report);
        std::vector<std::string> expected;
        for (const std::string& gauge : row.used)
            expected.push_back(drive.At("FS\\gauges\\" + gauge));
        EXPECT_EQ(check.used, expected);
    }
}

TEST_F(SimTest, RemovingSparesTheGaugesThatOthersNeed) {
    const struct {
        const char *name, *file, *inPackage, *inSim; // the gauge, and its bytes on both sides
        const char* otherPanel;                      // of another aircraft; "?": it cannot be looked at
        bool isRemoved;
    } rows[] = {
        {"unused", "clock.gau", "a", "a", "clock\r\nGauge00=other", true},
        {"used by its own aircraft", "learclock.gau", "a", "a", "", true},
        {"other bytes", "clock.gau", "a", "b", "", false},
        {"what a power cut has left of it", "clock.gau", "a", "", "", true},
        {"used", "Clock.gau", "a", "a", "[x]\r\n  GAUGE00 = CLOCK!x,1", false},
        {"used up to the first dot", "Clock.v2.gau", "a", "a", "gauge00=clock", false},
        {"perhaps used", "clock.gau", "a", "a", "?", false},
        {"a stock name", "BF109E.GAU", "a", "a", "", false},
        {"a stock part", "x.Generic.cab", "a", "a", "", false},
        {"nearly a stock name", "xbf109e.gau", "a", "a", "", true},
    };
    for (const auto& row : rows) {
        for (const bool isBatch : {false, true}) {
            SCOPED_TRACE(std::string(row.name) + (isBatch ? ", in a batch" : ""));
            const std::string gauge = std::string("FS\\gauges\\") + row.file;
            PackageBuilder(drive, "Hangar\\Jets\\Lear\\")
                .WithoutAll()
                .With(std::string("Gauges\\") + row.file, row.inPackage);
            drive.Put(gauge, row.inSim);
            drive.Put("FS\\aircraft\\Jet\\panel\\panel.cfg", row.otherPanel);
            drive.Put("FS\\aircraft\\Lear\\panel\\panel.cfg", "gauge00=learclock");
            Select("Lear");
            FaultyFiles files(drive.Files());
            if (row.otherPanel == std::string_view("?"))
                files.unreadable = drive.At("FS\\aircraft\\Jet\\panel\\");
            CommandContext disk = On(files);
            const SimUsage usage(disk, {});
            EXPECT_TRUE(bool(TakeOutGauges(disk, package.ref, package.ComponentFiles[Gauges],
                                           drive.At("FS\\aircraft\\Lear\\"), isBatch ? &usage : nullptr)));
            EXPECT_EQ(drive.Has(gauge), !row.isRemoved);
        }
    }
}

} // namespace korvadex::test
