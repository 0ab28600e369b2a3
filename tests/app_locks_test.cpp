// Two programs on one ground.
#include "app/commands.h"
#include "tests/support/program_fixture.h"

#include <filesystem>

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
    const std::string looking =
        "mnuLocations mnuLocationProfiles mnuExit mnuAllPackages mnuInstalledPackages mnuCollection mnuRunMSFS "
        "mnuPhotosByCategory mnuPhotosForAll mnuPackagesNoImages mnuCreatePanelAlias "
        "mnuCheckRefs mnuCreateSoundAlias mnuGaugeCrosscheck mnuReadNotes mnuReadMe mnuAbout "
        "mnuLastArchives mnuGoToStaging mnuGoToHangar mnuHelpOnSide ";
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
                if (looking.find(std::string(command.entry) + " ") == looking.npos) {
                    SCOPED_TRACE(command.entry);
                    secondUser.Expect(AtWork(Refused), MessageIcon::Exclamation);
                    second->RunCommand(command.entry);
                    secondUser.Finish();
                }
        for (const auto routine : {&Program::DeleteShownImage, &Program::MakeShownImageFirst, &Program::NewCategory}) {
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
    other.lock->Sign(ThisHolder());
    user.Expect("Another Korvadex is at work here ...\n\nHangar location " + locations.HangarDir + "  (...)\n\n" +
                Refused);
    program->CreatePackageNotes();
    EXPECT_FALSE(drive.Has("Hangar\\Jets\\Lear\\Documentation"));
    other.lock.reset();
    program->CreatePackageNotes();
    EXPECT_TRUE(drive.Has("Hangar\\Jets\\Lear\\Documentation"));
}

// The first installation is cut off in the middle of a command.
class CutOffPlaces : public Locks {
  protected:
    CutOffPlaces() { CutOff(); }
    void CutOff() {
        for (const char* old : {"App\\journal", "Hangar"})
            std::filesystem::remove_all(drive.Files().HostPath(drive.At(old)));
        drive.Fill("Hangar", "Jets\\Lear\\Lear.air=x, ~kx~scratch\\1~x=half");
        History history(drive.Files(), {});
        history.SetLocations({locations.HangarDir, locations.StagingDir, locations.MsfsDir});
        history.Open(drive.At("App\\journal\\"));
        history.Begin({"Copy to Hangar", "Jets\\Cub"});
        EXPECT_TRUE(history.Files().CreateDirectory(drive.At("Hangar\\Jets\\Cub")));
        EXPECT_TRUE(history.Files().Copy(drive.At("Hangar\\Jets\\Lear\\Lear.air"), drive.At(CubFile)));
        for (const char* place : {"App\\", "Hangar\\", "Staging\\", "FS\\"})
            Mark(place, "App\\");
    }
    void Mark(const std::string& place, const std::string& appDir) {
        drive.Put(place + Lock, TextOf(ThisHolder(HostPath(appDir))));
    }
    void ClearMark(const std::string& place) { EXPECT_TRUE(drive.Files().Delete(drive.At(place + Lock))); }
    std::string HostPath(const std::string& name) { return drive.Files().HostPath(drive.At(name)); }
    std::string OwnerOf(const std::string& place) { return HolderOf(drive.Get(place + Lock)).directory; }

    const std::string Lock = std::string(LockFileName);
    static constexpr const char* CubFile = "Hangar\\Jets\\Cub\\Cub.air";
    static constexpr const char* WorkHere =
        "Another Korvadex was cut off here, and may have left a command half done ...\n\n...Hangar location...(...since"
        "...settings in...)\n...to work here all the same?...";
    static constexpr const char* AllTheSame =
        "Korvadex was cut off in the middle of \"Copy to Hangar Jets\\Cub\" (...).  Another Korvadex seems to have "
        "worked in...Hangar\\ since, or it is not the same drive.  Shall...";
    static constexpr const char* AsBefore = "Korvadex was cut off...taken back: everything is as it was before.";
    static constexpr const char* AsFar = "Korvadex was cut off...taken back, as far as it was still there.";
    static constexpr const char* NotBack = "Korvadex was cut off...could not be taken back ...\n\n...Hangar\\ (...";
};

TEST_F(CutOffPlaces, AreLeftToTheirOwnerUntilTheUserWantsThem) {
    const auto before = drive.Tree();
    secondUser.Expect(WorkHere, Answer::No, MessageIcon::Exclamation);
    StartSecond();
    EXPECT_EQ(secondUser.preset, Answer::No);
    EXPECT_EQ(secondForm.view.statusCounts,
              "2 packages  -  0 installed in MSFS  -  Staging is empty  -  only to look at");
    secondUser.Expect(WorkHere, Answer::No);
    second->CreatePackageNotes();
    second->Shutdown();
    EXPECT_EQ(drive.Tree(), before);
    EXPECT_EQ(OwnerOf("Hangar\\"), HostPath("App\\"));
    // The owner can start while the question is open.
    secondUser.Expect(WorkHere, Answer::Yes).Then([&] {
        user.Expect(AsBefore);
        Start();
    });
    secondUser.Expect(AtWork(LookOnly));
    StartSecond();
    EXPECT_FALSE(drive.Has(CubFile));
}

TEST_F(CutOffPlaces, AreTakenOverWithWhatIsHalfDone) {
    secondUser.Expect(WorkHere, Answer::Yes);
    StartSecond();
    EXPECT_TRUE(drive.Has(CubFile));
    EXPECT_FALSE(drive.Has("Hangar\\~kx~scratch"));
    EXPECT_EQ(OwnerOf("FS\\"), HostPath("Other\\"));
    second->UndoLast();
    EXPECT_EQ(drive.Get("Hangar\\~kx~scratch\\1~x"), "half");
    second->Shutdown();
    EXPECT_FALSE(IsLocked("Hangar\\"));
}

TEST_F(CutOffPlaces, AreTheirOwnersOnlyWhileNobodyElseHasWorkedThere) {
    const struct {
        const char* what;
        std::function<void()> change;
        bool isAsked = false, isAskedFirst = false;
    } rows[] = {
        {"nothing", [] {}},
        {"another has ended in a place where nothing was changed", [&] { ClearMark("FS\\"); }},
        {"the installation has got another name",
         [&] {
             for (const char* place : {"App\\", "Hangar\\", "FS\\"})
                 Mark(place, "Before\\");
         }},
        {"another has ended", [&] { ClearMark("Hangar\\"); }, true},
        {"another could not write its name", [&] { drive.Put("Hangar\\" + Lock, ""); }, true},
        {"another was cut off, too", [&] { Mark("Hangar\\", "Other\\"); }, true, true},
    };
    for (const auto& row : rows)
        for (const bool isWanted : {true, false}) {
            SCOPED_TRACE(row.what);
            CutOff();
            row.change();
            if (row.isAskedFirst)
                user.Expect(WorkHere, Answer::Yes);
            if (row.isAsked)
                user.Expect(AllTheSame, isWanted ? Answer::Yes : Answer::No, MessageIcon::Exclamation);
            if (!row.isAsked || isWanted)
                user.Expect(row.isAsked ? AsFar : AsBefore);
            Start();
            user.Finish();
            EXPECT_EQ(drive.Has(CubFile), row.isAsked && !isWanted);
            EXPECT_EQ(OwnerOf("Hangar\\"), HostPath("App\\"));
            program->Shutdown();
            Start(); // and that was all
            program->Shutdown();
        }
}

TEST_F(CutOffPlaces, WaitForADriveThatIsAway) {
    const auto exchange = [&](const char* away, const char* back) {
        ASSERT_TRUE(drive.Files().Rename(drive.At("Hangar"), drive.At(away)));
        ASSERT_TRUE(drive.Files().Rename(drive.At(back), drive.At("Hangar")));
    };
    drive.MakeDirectory("Point");
    exchange("Drive", "Point");
    user.Expect(NotBack, Answer::Yes).Expect(NotBack, Answer::Yes).Then([&] { exchange("Point", "Drive"); });
    user.Expect(AsBefore);
    Start();
    EXPECT_FALSE(drive.Has(CubFile));
    program->Shutdown();
    EXPECT_EQ(drive.Outline("Point"), "");

    // Another one has come with it.
    CutOff();
    exchange("Drive", "Point");
    user.Expect(NotBack, Answer::Yes).Then([&] {
        exchange("Point", "Drive");
        ClearMark("Hangar\\");
    });
    user.Expect(AllTheSame, Answer::No);
    Start();
    EXPECT_TRUE(drive.Has(CubFile));
}

} // namespace
} // namespace korvadex::test
