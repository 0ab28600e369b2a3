#include "sim/aliases.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

constexpr const char* Own = "[Window00]\r\nfile=own.bmp\r\n";
constexpr const char* Pasted = "[fltsim]\r\nalias=Big Jet\\panel\r\n";

class PasteTest : public SimTest {
  protected:
    using Tree = std::map<std::string, std::string>;
    // The package with nothing but these files in its panel directory.
    void Put(const std::string& name, const Tree& panel) {
        for (const auto& [file, bytes] : panel)
            drive.Put("Hangar\\Jets\\" + name + "\\Panel\\" + file, bytes);
        drive.Put("Hangar\\Jets\\" + name + "\\aircraft.cfg", "title=x\r\n");
        Select(name);
    }
};

// At whatever change it fails, every configuration that was there is still there.
TEST_F(PasteTest, ConfigurationsChangePlacesByRenaming) {
    const struct {
        std::string name;
        bool isPaste;
        Tree before, after;
    } rows[] = {
        {"over its own", true, {{"panel.cfg", Own}}, {{"oldpanel.cfg", Own}, {"panel.cfg", Pasted}}},
        {"over an alias",
         true,
         {{"panel.cfg", "[FLTSIM]\r\n alias=other\\panel"}, {"oldpanel.cfg", Own}},
         {{"panel.cfg", Pasted}, {"oldpanel.cfg", Own}}},
        {"over what its backup holds",
         true,
         {{"panel.cfg", Own}, {"oldpanel.cfg", Own}},
         {{"panel.cfg", Pasted}, {"oldpanel.cfg", Own}}},
        {"over another",
         true,
         {{"panel.cfg", "mine, and\r\nalias=x\r\n"}, {"oldpanel.cfg", Own}, {"oldpanel(1).cfg", "x"}},
         {{"panel.cfg", Pasted},
          {"oldpanel.cfg", Own},
          {"oldpanel(1).cfg", "x"},
          {"oldpanel(2).cfg", "mine, and\r\nalias=x\r\n"}}},
        {"back over an alias", false, {{"panel.cfg", Pasted}, {"oldpanel.cfg", Own}}, {{"panel.cfg", Own}}},
        {"back over another",
         false,
         {{"panel.cfg", "mine"}, {"oldpanel.cfg", Own}},
         {{"panel.cfg", Own}, {"oldpanel(1).cfg", "mine"}}},
        {"back alone", false, {{"oldpanel.cfg", Own}}, {{"panel.cfg", Own}}},
    };
    user.isPatient = true;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Put(row.name, row.before);
        const auto panelFiles = [&] { return drive.Tree("Hangar\\Jets\\" + row.name + "\\Panel"); };
        for (int change = 1; change < 30; ++change) {
            FaultyFiles faulty(drive.Files());
            faulty.FailAt(change, FileFault::Denied);
            CommandContext disk = On(faulty);
            row.isPaste ? PasteAlias(disk, "panel", package, {"Jets", "Big Jet"})
                        : RestoreOldConfig(disk, "panel", package);
            if (panelFiles() == row.after)
                break;
            EXPECT_THAT(user.transcript.back(),
                        testing::StartsWith("The panel.cfg file of this package could not be replaced."));
            EXPECT_EQ(panelFiles(), row.before) << change;
        }
        EXPECT_EQ(user.transcript.back(), "Done.");
    }
}

} // namespace korvadex::test
