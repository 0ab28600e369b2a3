#include "sim/aliases.h"
#include "tests/support/faulty_files.h"
#include "tests/support/sim_fixture.h"

namespace korvadex::test {

constexpr const char* Own = "[Window00]\r\nfile=own.bmp\r\n";
constexpr const char* Pasted = "[fltsim]\r\nalias=Big Jet\\panel\r\n";

class PasteTest : public SimTest {
  protected:
    // The package My Lear with nothing but these files in its panel directory.
    void Put(const std::map<std::string, std::string>& panel) {
        for (const auto& [name, bytes] : panel)
            drive.Put("Hangar\\Jets\\My Lear\\Panel\\" + name, bytes);
        drive.Put("Hangar\\Jets\\My Lear\\aircraft.cfg", "title=x\r\n");
        Select("My Lear");
    }
    std::map<std::string, std::string> PanelFiles() { return drive.Tree("Hangar\\Jets\\My Lear\\Panel"); }
};

struct PasteRow {
    const char* name;
    HangarCommand command;
    std::map<std::string, std::string> before, after;
};
class PasteRoad : public PasteTest, public testing::WithParamInterface<PasteRow> {};

TEST_P(PasteRoad, ChangesPlacesByRenaming) {
    Put(GetParam().before);
    memory.held.HeldPanelAlias = "Big Jet\\panel";
    // At whatever change it fails, every configuration that was there is still there.
    for (int change = 1;; ++change) {
        FaultyFiles faulty(drive.Files());
        faulty.FailAt(change, FileFault::Denied);
        user.Expect("...", Answer::Ok);
        Run(GetParam().command, faulty);
        if (PanelFiles() == GetParam().after)
            break;
        EXPECT_THAT(user.transcript.back(),
                    testing::StartsWith("The panel.cfg file of this package could not be replaced."));
        EXPECT_EQ(PanelFiles(), GetParam().before) << change;
        ASSERT_LT(change, 30);
    }
    EXPECT_EQ(user.transcript.back(), "Done.");
}

INSTANTIATE_TEST_SUITE_P(
    Configurations, PasteRoad,
    testing::Values(
        PasteRow{"PasteOverOwn",
                 PastePanelAlias,
                 {{"panel.cfg", Own}},
                 {{"oldpanel.cfg", Own}, {"panel.cfg", Pasted}}},
        PasteRow{"PasteAgain",
                 PastePanelAlias,
                 {{"panel.cfg", "[FLTSIM]\r\n alias=other\\panel"}, {"oldpanel.cfg", Own}},
                 {{"panel.cfg", Pasted}, {"oldpanel.cfg", Own}}},
        PasteRow{"PasteOverEqualBackup",
                 PastePanelAlias,
                 {{"panel.cfg", Own}, {"oldpanel.cfg", Own}},
                 {{"panel.cfg", Pasted}, {"oldpanel.cfg", Own}}},
        PasteRow{"PasteOverAnother",
                 PastePanelAlias,
                 {{"panel.cfg", "mine, and\r\nalias=x\r\n"}, {"oldpanel.cfg", Own}, {"oldpanel(1).cfg", "x"}},
                 {{"panel.cfg", Pasted},
                  {"oldpanel.cfg", Own},
                  {"oldpanel(1).cfg", "x"},
                  {"oldpanel(2).cfg", "mine, and\r\nalias=x\r\n"}}},
        PasteRow{"RestoreOverAlias",
                 RestoreOldPanel,
                 {{"panel.cfg", Pasted}, {"oldpanel.cfg", Own}},
                 {{"panel.cfg", Own}}},
        PasteRow{"RestoreOverAnother",
                 RestoreOldPanel,
                 {{"panel.cfg", "mine"}, {"oldpanel.cfg", Own}},
                 {{"panel.cfg", Own}, {"oldpanel(1).cfg", "mine"}}},
        PasteRow{"RestoreAlone", RestoreOldPanel, {{"oldpanel.cfg", Own}}, {{"panel.cfg", Own}}}),
    RowName<PasteRow>);

TEST_F(PasteTest, EveryRefusalLeavesTheTreeAsItIs) {
    struct Row {
        HangarCommand command;
        const char* message;
        MessageIcon icon;
        std::function<void()> arrange;
    };
    const auto nothing = [] {};
    const Row rows[] = {
        {CreateSoundAlias,
         "The current package does not contain a sound.cfg file.  Cannot create sound alias.",
         MessageIcon::Exclamation, nothing},
        {CreatePanelAlias, "This package uses a panel alias as shown.  Panel aliases can only be created...",
         MessageIcon::Information, nothing},
        {PastePanelAlias,
         "You'll have to use the 'Create panel alias' option on a package with the required panel "
         "configuration first.",
         MessageIcon::Exclamation, nothing},
        {PasteSoundAlias, "You cannot paste a sound alias to the package where you got the alias.",
         MessageIcon::Exclamation, [&] { memory.held.HeldSoundAlias = "My Lear\\sound"; }},
        {RestoreOldSound, "This package does not contain an oldsound.cfg file to restore.",
         MessageIcon::Exclamation, nothing},
        {PastePanelAlias,
         "This package is installed in Flight Simulator.  Please remove it from MSFS before replacing the "
         "panel.cfg file.",
         MessageIcon::Exclamation,
         [&] {
             memory.held.HeldPanelAlias = "x\\panel";
             drive.MakeDirectory("FS\\aircraft\\My_Lear");
         }},
        {RestoreOldPanel,
         "This package is installed in Flight Simulator.  Please remove it from MSFS before restoring the "
         "panel.cfg file.",
         MessageIcon::Exclamation, nothing},
    };
    Put({{"panel.cfg", "alias=Other\\panel"}, {"oldpanel.cfg", Own}});
    for (const Row& row : rows) {
        row.arrange();
        const auto before = drive.Tree();
        user.Expect(row.message, Answer::Ok, row.icon);
        Run(row.command);
        EXPECT_EQ(drive.Tree(), before) << row.message;
    }
}

TEST_F(PasteTest, AnAliasGoesFromOnePackageToAnother) {
    PackageBuilder(drive, "Hangar\\Jets\\Lear 45\\");
    Select("Lear 45");
    user.Expect(
        "Done.\n\nNow you can easily create a new sound.cfg file containing the created alias for any "
        "package (aircraft) by selecting the package and picking the 'Paste sound alias' option.  The "
        "current sound.cfg file for that package, if it exists, will be renamed to oldsound.cfg and "
        "can be easily restored by picking the 'Restore old sound' option.",
        Answer::Ok);
    Run(CreateSoundAlias);
    Put({});
    auto expected = drive.Tree();
    expected["Hangar\\Jets\\My Lear\\sound\\"] = "";
    expected["Hangar\\Jets\\My Lear\\sound\\sound.cfg"] = "[fltsim]\r\nalias=Lear 45\\sound\r\n";
    user.Expect("Done.", Answer::Ok);
    Run(PasteSoundAlias);
    EXPECT_EQ(drive.Tree(), expected);
    EXPECT_EQ(window.displayRefreshes, 1);
    Select("My Lear");
    EXPECT_EQ(package.PackageSoundAlias, "lear 45\\sound");
}

} // namespace korvadex::test
