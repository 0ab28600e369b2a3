// Two programs on one ground.
#include "app/commands.h"
#include "tests/support/program_fixture.h"

#include <set>

namespace korvadex::test {
namespace {

constexpr const char* LookOnly = "You can look at everything.  To change something, please end the other one first.";
constexpr const char* Refused =
    "Nothing was changed.  Please end the other one, or wait until it has ended, and try again.";

class Locks : public ProgramTest {
  protected:
    Locks() {
        drive.Fill("Hangar\\Jets\\Lear", "Lear.air=x, Images\\1.jpg=x");
        drive.MakeDirectory("Other");
        PutSettings();
        drive.Put("Other\\kx.ini", SettingsText("Jets\\Lear"));
        secondForm.geometry.reset();
    }
    Program& StartSecond(const std::string& appDir = "Other\\") {
        second = std::make_unique<Program>(drive.Files(), launcher, secondUser, secondDialogs, converter, secondForm,
                                           drive.At(appDir), "");
        EXPECT_TRUE(second->Start());
        return *second;
    }
    // What the second program says.
    std::string AtWork(const std::string& advice, bool alsoSettings = false) {
        const std::string who = "  (...)\n";
        return "Another Korvadex is at work here ...\n\n" +
               (alsoSettings ? "settings directory " + drive.At("App\\") + who : "") + "Staging location " +
               locations.StagingDir + who + "Hangar location " + locations.HangarDir + who + "MSFS installation " +
               locations.MsfsDir + who + "\n" + advice;
    }
    bool IsLocked(const std::string& directory) { return drive.Has(directory + std::string(LockFileName)); }

    ScriptedUser secondUser;
    RecordingWindow secondForm;
    ScriptedLocations secondDialogs;
    std::unique_ptr<Program> second;
};

TEST_F(Locks, TheSecondLooksOnly) {
    const std::set<std::string> looking = {"mnuLocations",
                                           "mnuLocationProfiles",
                                           "mnuExit",
                                           "mnuAllPackages",
                                           "mnuInstalledPackages",
                                           "mnuRunMSFS",
                                           "mnuPhotosByCategory",
                                           "mnuPhotosForAll",
                                           "mnuPackagesNoImages",
                                           "mnuCreatePanelAlias",
                                           "mnuCheckRefs",
                                           "mnuCreateSoundAlias",
                                           "mnuGaugeCrosscheck",
                                           "mnuReadNotes",
                                           "mnuReadMe",
                                           "mnuAbout"};
    Start();
    drive.Fill("Staging", "a\\readme.txt=1, b\\readme.txt=2, a\\aircraft.cfg=[fltsim.0], b\\aircraft.cfg=[fltsim.0]");
    drive.Fill("Hangar", "~kx~scratch\\1~x=half, Jets\\Lear\\readme.txt=1, Jets\\Lear\\more\\readme.txt=2");
    const auto before = drive.Tree();

    secondUser.Expect(AtWork(LookOnly), MessageIcon::Exclamation);
    StartSecond();
    EXPECT_EQ(second->Package().path, drive.At("Hangar\\Jets\\Lear\\"));
    secondUser.Expect("Done.\n\nThe Jets\\Lear..."); // that is in a kx.ini of its own
    second->SetFirstPackage();
    for (const bool isHangar : {true, false}) {
        if (!isHangar)
            second->GoToStaging();
        second->Refresh();
        for (const Menu& menu : MainMenus())
            for (const Command& command : menu.commands)
                if (!looking.contains(command.entry)) {
                    SCOPED_TRACE(command.entry);
                    secondUser.Expect(AtWork(Refused), MessageIcon::Exclamation);
                    second->RunCommand(command.entry);
                    secondUser.Finish();
                }
        for (const auto routine :
             {&Program::DeleteShownImage, &Program::MakeShownImageFirst, &Program::UndoLast, &Program::RedoLast}) {
            secondUser.Expect(AtWork(Refused));
            ((*second).*routine)();
        }
        secondUser.Expect(AtWork(Refused));
        second->DeleteComponents(Documentation, {0});
        EXPECT_EQ(second->View().HangarSideShown, isHangar);
    }
    EXPECT_EQ(secondForm.view.statusCounts,
              "1 package  -  0 installed in MSFS  -  Staging contains files  -  only to look at");
    EXPECT_EQ(drive.Tree(), before);
    second->Shutdown();
    EXPECT_TRUE(IsLocked("Hangar\\"));
    program->Shutdown();
    for (const auto* directory : {"App\\", "Other\\", "Hangar\\", "Staging\\", "FS\\"})
        EXPECT_FALSE(IsLocked(directory)) << directory;
}

TEST_F(Locks, TheSecondGoesOnWhenTheFirstHasEnded) {
    Start();
    drive.Fill("Hangar", "~kx~scratch\\1~x=half");
    secondUser.Expect(AtWork(LookOnly));
    StartSecond();
    program->Shutdown();
    second->CreatePackageNotes();
    EXPECT_TRUE(drive.Has("Hangar\\Jets\\Lear\\Documentation\\kx_note.txt"));
    EXPECT_FALSE(drive.Has("Hangar\\~kx~scratch"));
    EXPECT_EQ(secondForm.view.statusCounts, "1 package  -  0 installed in MSFS  -  Staging is empty");

    // And the first one, back again, looks.
    user.Expect(AtWork(LookOnly));
    Start();
    drive.Fill("Hangar\\Jets\\Lear", "a.txt=new");
    program->Refresh();
    Select("Jets", 0);
    drive.Fill("Hangar\\Jets\\Lear", "0.txt=newer");
    second->Shutdown();
    // What stood first in the list is another file by now.
    user.Expect(
        "The other Korvadex has ended.  What is shown has changed since you saw it last, and nothing was done.  "
        "Please look at it and give the command again.",
        MessageIcon::Information);
    program->DeleteComponents(Documentation, {0});
    user.Finish();
    EXPECT_TRUE(drive.Has("Hangar\\Jets\\Lear\\0.txt"));
    user.Expect("Are you sure...", Answer::Yes);
    program->DeleteComponents(Documentation, {0});
    EXPECT_FALSE(drive.Has("Hangar\\Jets\\Lear\\0.txt"));
}

TEST_F(Locks, SettingsHaveOneWriterToo) {
    Start();
    drive.Put("App\\LocationChange", "LocationChange");
    const auto before = drive.Tree();
    secondUser.Expect(AtWork(LookOnly, true));
    StartSecond("App\\");
    second->ChoosePackage(0);
    for (const auto command : {&Program::SetFirstPackage, &Program::ChangeLocations, &Program::EditLocationProfiles}) {
        secondUser.Expect(AtWork(Refused, true));
        ((*second).*command)();
        secondUser.Finish();
    }
    second->SaveForSessionEnd();
    second->Shutdown();
    EXPECT_EQ(drive.Tree(), before);
}

TEST_F(Locks, WhoOnlyLooksKeepsNobodyOut) {
    drive.Fill("", "Staging2\\, Hangar2\\");
    drive.Put("Other\\kx.ini", "ALTLOCATION0=Main\r\nALTSTAGINGDIR0=" + drive.At("Staging2\\") + "\r\nALTHANGARDIR0=" +
                                   drive.At("Hangar2\\") + "\r\nALTMSFSDIR0=" + locations.MsfsDir + "\r\n");
    Start();
    secondUser.Expect("Another Korvadex is at work here ...\n\nMSFS installation " + locations.MsfsDir + "  (...)\n\n" +
                      LookOnly);
    StartSecond();
    EXPECT_FALSE(IsLocked("Hangar2\\"));
    EXPECT_TRUE(IsLocked("Other\\"));
    EXPECT_EQ(drive.Outline("Hangar2"), "");
    program->Shutdown();
    second->GoToStaging();
    secondUser.Expect("The other Korvadex has ended.  What..."); // there are categories now
    second->RemoveAllFromStaging();
    EXPECT_TRUE(IsLocked("Hangar2\\"));
    EXPECT_TRUE(drive.Has("Hangar2\\Aircraft - Military"));
}

TEST_F(Locks, FollowTheLocations) {
    struct : RecordingLauncher {
        std::function<bool()> isFree;
        bool wasFree = false;
        bool StartProgram(const std::string&) override { return wasFree = isFree(); }
    } starter;
    starter.isFree = [&] { return !IsLocked("Hangar\\") && !IsLocked("App\\"); };
    drive.Fill("", "Staging2\\, Hangar2\\");
    program = std::make_unique<Program>(drive.Files(), starter, user, dialogs, converter, form, drive.At("App\\"), "");
    ASSERT_TRUE(program->Start());
    dialogs.Enter({drive.At("Staging2\\"), locations.HangarDir, locations.MsfsDir});
    program->ChangeLocations();
    EXPECT_TRUE(IsLocked("Staging2\\"));
    EXPECT_FALSE(IsLocked("Staging\\"));
    dialogs.Enter({drive.At("Staging2\\"), drive.At("Hangar2\\"), locations.MsfsDir});
    program->ChangeLocations();
    EXPECT_TRUE(starter.wasFree);
    EXPECT_EQ(form.ends, 1);
}

TEST_F(Locks, OneThatIsLostIsMissedBeforeTheNextChange) {
    Start();
    Select("Jets", 0);
    const auto lock = drive.At("Hangar\\" + std::string(LockFileName));
    ASSERT_TRUE(drive.Files().Rename(lock, drive.At("moved")));
    auto other = TakeFileLock(drive.Files().HostPath(lock));
    ASSERT_EQ(other.outcome, LockOutcome::Taken);
    user.Expect("Another Korvadex is at work here ...\n\nHangar location " + locations.HangarDir + "  (...)\n\n" +
                Refused);
    program->CreatePackageNotes();
    EXPECT_FALSE(drive.Has("Hangar\\Jets\\Lear\\Documentation"));
    other.lock.reset();
    program->CreatePackageNotes();
    EXPECT_TRUE(drive.Has("Hangar\\Jets\\Lear\\Documentation"));
}

} // namespace
} // namespace korvadex::test
