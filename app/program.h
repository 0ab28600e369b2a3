// The program without its windows: one run from start-up to shutdown, and every command that the main window
// can give.
#pragma once

#include "app/archive_queue.h"
#include "app/collection.h"
#include "app/gallery_window.h"
#include "app/list_window.h"
#include "app/location_locks.h"
#include "app/locations_entry.h"
#include "app/main_window.h"
#include "app/program_dialogs.h"
#include "app/selection.h"
#include "app/settings.h"
#include "app/taken_archives.h"
#include "archive/mod_unzip.h"
#include "journal/history.h"
#include "package/command_context.h"
#include "package/erase_staging.h"
#include "package/load_package.h"
#include "package/presence.h"
#include "sim/aliases.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvadex {

class BatchRun;
struct PackageCommand;
struct Stopped;
class UnattendedUser;
struct UnpackedArchive;
struct LeftPackage;
struct Turn;

// Who gives the commands of this run.
enum class RunFor {
    Window,
    Commands, // given one by one, with no window that comes back to what was shown; ends where it may only look
    Looking   // nothing is changed, not even put in order; what others have for themselves stays theirs
};

// Each public command runs to its end before the next: one that arrives while another waits for an answer is
// dropped, and none runs after the program has ended.
class Program : private CommandDisplay {
  public:
    // appDir ends in a backslash; executable is started again after a change of the Hangar location.
    Program(FileSystem& files, Launcher& launcher, UserDialogs& user, ProgramDialogs& dialogs,
            PictureConverter& converter, MainWindow& window, std::string appDir, std::string executable);
    ~Program() override;
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // The main window's start-up. False when the program is to end (EndProgram was called).
    bool Start(RunFor giver = RunFor::Window);
    // Saves kx.ini and ends. Runs once, however often it is called. While a command runs it says that the program ends
    // when that has come to its end, one for many packages after the one at hand; until then the window is to stay open
    // (EndProgram was not called).
    void Shutdown();
    // The session may end at any moment: writes kx.ini now, also in the middle of a command.
    void SaveForSessionEnd();
    // The same, and ends: at once, or when the running command has come to its end.
    void EndSession();

    // --- the main window's own controls
    void ChooseCategory(int index);
    void ChoosePackage(int index);
    void SetPackageName(const std::string& text); // as typed into txtPackageName
    void GoToHangar();
    void GoToStaging();
    void Refresh();
    void SetFirstPackage();
    // The user comes back from elsewhere, or looks for a command: whether what commands need is there is looked up
    // again.
    void LookAgain();
    void OpenComponent(int group, int position);
    // The file's path when its kind is one that the picture area may be able to show; "" otherwise.
    std::string PictureInList(int group, int position) const;
    void ShowComponentInFolder(int group, int position); // in the system's file manager
    // Says what could not be opened after all (Launcher::TakeFailures). False when there is nothing left to wait for.
    bool CheckOpenings();
    void DeleteComponents(int group, const std::vector<int>& positions);

    // --- the collection beside the form
    // As if chosen in the choosers; goes to the Hangar side.
    void ShowPackage(const PackageRef& wanted);
    // Asks for its name.
    void NewCategory();
    void RenameCategory(const std::string& category);
    // On the package of the Hangar that is shown.
    void MoveToCategory(const std::string& category);
    void ToggleCollection();
    // Goes on reading what is known of the packages, for about this long; not while a command runs. False when there is
    // nothing more to read.
    bool ReadCollection(std::chrono::milliseconds time);
    const Collection& GetCollection() const { return collection; }

    // --- the pictures of the shown package
    void ShowNextImage();
    void ShowPreviousImage();
    void DeleteShownImage();
    void MakeShownImageFirst();
    void ImportImageFiles(); // asks which
    void ImportImageClipboard();
    void ImportDroppedImages(const OfferedPictures& offered);

    // --- the list window frmFileList
    void ListAllPackages();
    void ListInstalledPackages();
    void ListPackagesNoImages();
    void ListPackagesInCategory(); // cmdPackageNames
    void ListCategories();         // cmdPackageCategories
    // The line at this position of those that the window was given last was clicked.
    void ChooseFileListLine(int row);

    // --- the gallery frmPhotos; nothing on the Staging side
    void ShowPhotosByCategory();
    void ShowPhotosForAll();
    // Goes to the package of the picture at this position of those that the window was given last.
    void ChooseGalleryPicture(int row);

    // --- menus and toolbar; app/commands.cpp says which entry and which button starts what
    // By the name of the menu entry, or by the key of the button as it is on the side that is shown.
    void RunCommand(std::string_view entryOrKey);

    void ChangeLocations();
    void EditLocationProfiles();
    void ShowUnusedGauges();
    void StartSimulator();
    // These four go to the Hangar side first.
    void CompressAll();
    void DecompressAll();
    void UninstallCategory();
    void UninstallAll();

    // For many packages at once, one after the other, as one command of the history; a report in the list window says
    // what came of each. Nobody is asked about a single one: what would need that is left as it was. With exactly one
    // package it is the command for the one that is shown, which it is then. They go to the Hangar side first.
    using Packages = std::vector<PackageRef>;
    void InstallEach(const Packages& packages);
    void RemoveEach(const Packages& packages);
    void CheckGaugesOfEach(const Packages& packages);
    void CheckReferencesOfEach(const Packages& packages);
    void CompressEach(const Packages& packages);
    void DecompressEach(const Packages& packages);
    void MoveEach(const Packages& packages, const std::string& category);
    void DeleteEach(const Packages& packages);
    // Nothing with several.
    void RenameOne(const Packages& packages);
    // False when all that it could do with these is to refuse.
    bool CanWorkOn(const PackageCommand& command, const Packages& packages) const;
    // The running command ends: one for many packages after the one at hand, another one at the next step of its bar.
    void StopAfterThis();
    // Whether that has kept the last command from doing all that it was given for.
    bool WasStopped() const { return wasStopped; }

    // On what stands in Staging; nothing on the Hangar side, from where only these two go to the Staging side first.
    void ProcessZipIntoStaging();
    void ImportIntoStaging();
    // One of Settings::lastArchives, as if it had been dropped.
    void ProcessLastArchive(int row);
    void CopyStagingToHangar();
    void RemoveAllFromStaging();
    void RemovePanelFromStaging();
    void RemoveAircraftFromStaging();
    void RemoveSoundFromStaging();

    // --- the queue of archives; rows count from 0 in the order shown. They go to the Staging side first.
    // What was dropped or chosen: archives, and directories of them. A single one goes into an empty Staging, more wait
    // in the queue, and the first of it is taken when Staging is empty.
    void OfferArchives(const std::vector<std::string>& paths);
    void ProcessArchiveDirectory(); // asks which
    // Into Staging, which has to be empty.
    void TakeArchive(int row);
    void TakeNextArchive();
    // The one in Staging goes back to the end of the queue, and the next is taken; while there is none, the first.
    void SkipArchive();
    void RemoveFromQueue(const std::vector<int>& rows);
    // To what is in Staging already.
    void AddArchiveToStaging(int row);
    // All that wait, one after the other, as one command of the history; a report in the list window says what came of
    // each. What would need an answer, or has something to tell, stays in the queue with that as its reason.
    void TakeAllArchives();
    // The same of these archives, and of those in these directories; what is left does not come into the queue.
    void TakeArchives(const std::vector<std::string>& paths);
    // Aircraft of the simulator that no category of the Hangar holds, and these into the Hangar in the same way.
    std::vector<std::string> ImportableAircraft();
    void ImportEach(const std::vector<std::string>& aircraft);

    // On the package of the Hangar that is shown; nothing on the Staging side, from where only these two go to the
    // Hangar side first.
    void CompressShownPackage();
    void DecompressShownPackage();
    void InstallPackage();
    void RemovePackageFromSim();
    void RemovePackageFromHangar();
    void RenamePackage();
    void CreatePanelAlias();
    void PastePanelAlias();
    void RestoreOldPanel();
    void CreateSoundAlias();
    void PasteSoundAlias();
    void RestoreOldSound();
    void CheckPackageReferences();
    void CheckPackageGauges();
    void CopyPackageToStaging();

    // On what the shown side shows.
    void CreatePackageNotes();
    void DeletePackageNotes();
    void ReadPackageNotes();
    void EditInformation();
    void Explore(); // cmdExplore

    // Takes back the last command that is not, and does again what was taken back last. A status that says which.
    void UndoLast();
    void RedoLast();
    void ShowHistory();

    void OpenReadMe();
    // The read-me page at the chapter of that id, "" for that of the shown side; also while a command waits for an
    // answer.
    void OpenHelp(std::string_view chapter);
    void OpenHelpOnSide();
    void ShowAbout();

    const MainView& View() const { return view; }
    // Of a run that only looks: whether a command of another run has begun and not ended.
    bool SeesHalfDone() const { return !history.CutOff().empty(); }
    const LoadedPackage& Package() const { return package; }
    const Settings& GetSettings() const { return settings; }

  private:
    // Where commands show what they do.
    void ShowProgress(int minimum, int maximum) override;
    void SetProgress(int value) override;
    void HideProgress() override;
    void ShowStatus(const std::string& text) override;
    void ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) override;
    void NoteMissingGauges(const std::string& package, const std::vector<std::string>& missing) override;

    // From here on Stop ends the running command at a step of its bar, and what it has done is taken back.
    void LetStop() { stopsAtStep = true; }
    bool CanStop() const { return stopsAtStep && !unattended; }
    void HeedStop() const;

    // The file at a position of a component list; none when there is no such position.
    std::optional<std::string> ComponentPath(int group, int position) const;

    // program.cpp: one command from the window's event to the window's new state. A command that changes something has
    // a title, and goes into the history. One without a name only looks; its subject is asked about as any other.
    void Run(const CommandTitle& title, const std::function<void()>& command);
    void Run(const std::function<void()>& command) { Run({}, command); }
    // The command itself; what an exception leaves of it is taken back.
    void Do(const CommandTitle& title, const std::function<void()>& command);
    // The question of one who goes on when the answer is No. Where nobody answers, the command is taken back then.
    bool AskInTheMidst(const std::string& question);
    // A command on what is shown: the package, or Staging under the name that it is to get.
    CommandTitle Titled(const std::string& name) const;
    // Brings choosers, lists and the loaded package to what a command has left, and shows it.
    void ShowChanges(const Changes& changes);
    void ShowView();
    unsigned Present() const; // see MainView
    // False, after a message, when one of the places is gone.
    bool ArePlacesThere(std::initializer_list<Place> places);
    // The same of what is shown, Staging or a package of the Hangar; then the lists are filled anew.
    bool IsShownThere(std::initializer_list<Place> alsoNeeded = {});

    // list_commands.cpp
    void ListFromMenu(std::string_view caption);
    void ListOverview(std::string_view caption);

    void ShowReadMe(std::string_view chapter = {});
    LocationsRequest RequestLocations(LocationsCaller caller, bool showDialog);

    // gallery_commands.cpp
    void OpenGallery(bool isForAll);

    // startup.cpp
    void StartUp();
    // Takes the places that another program does not have, and puts in order what it finds there. False, after a
    // message with this advice, when this one only looks from now on.
    bool EnterPlaces(const std::string& advice =
                         "You can look at everything.  To change something, please end the other one first.");
    // Before a command that changes something; the other program may have ended. False, after a message, when the
    // command must not go on.
    bool MayChange();
    // The same where only kx.ini changes.
    bool MayKeepSettings();
    // What a run does before its first change.
    void PutInOrder();
    void ClearScratch();
    bool TakeMarker();
    void CreateDefaultCategories();
    void ShowFirstPackage();
    bool IsGone(const std::string& line) const;
    Status Save();
    bool KeepSettings(); // writes kx.ini; false, after a message, when that failed
    void EndRun();
    void RestartWith(const Settings& oldSettings);

    // sides.cpp
    static constexpr const char* ChoiceTitle = "Choose configuration"; // and what else showing Staging sorts out
    void ShowHangarSide(bool preselect);
    void ShowStagingSide();
    void SwitchToHangar(); // with the packages as they are now
    // For a command of the Hangar: the user sees what it is about before it asks.
    void EnsureHangarSide();
    void EnsureStagingSide();
    void LoadShownSide(ChoiceQuestion question = ChoiceQuestion::LeaveOpen);
    // Two files of one name in the package end the program.
    void LoadSelectedPackage();
    void LoadStagedFiles(ChoiceQuestion question = ChoiceQuestion::LeaveOpen);
    void ShowLoaded();
    void ClearPackageDisplay();
    void ReloadWhenChanged();
    // Lists the whole Hangar.
    void TakeStock();
    // Lists the Hangar's categories, and the packages of the selected one, anew.
    void RefreshSelection();
    bool SelectPackage(const PackageRef& wanted);
    void UpdateCaption();
    void UpdateStatusCounts();
    void ForgetStaging();
    void ProposeName(std::string_view name);

    // hangar_commands.cpp
    // Does nothing on the Staging side; nor, after a message, when the package or one of the places is gone or no
    // package is selected.
    void RunHangarCommand(const std::string& name, std::initializer_list<Place> alsoNeeded,
                          const std::function<Changes()>& command);
    // The same for one that only looks.
    void LookAtPackage(std::initializer_list<Place> alsoNeeded, const std::function<void()>& command);
    // What is copied, written or deleted must be what is there: the package is loaded anew when it has changed.
    bool IsPackageReady(std::initializer_list<Place> alsoNeeded = {}, bool asItIsNow = true);
    void Compress(const std::string& name, bool compress);

    // collection_commands.cpp
    // What stood in the Hangar at `from` ("Jets", "Jets\Lear") stands at `to` now: held aliases and first packages
    // follow.
    void FollowInHangar(const std::string& from, const std::string& to);
    // The same the other way, of what the running command has renamed and what was taken back.
    void FollowBack();
    // Reads the categories anew; what was selected stays so under the name that it has now.
    void ReadCategories(const PackageRef& selected);

    // picture_commands.cpp
    std::string ShownImage() const;          // its path; "" when there is none
    void ShowImage(const std::string& path); // where the package has it
    // Loads what has changed first; false, after a message, when the picture is gone.
    bool IsStillThere(const std::string& path);
    bool CanTakeImages();
    void ImportImages(const OfferedPictures& offered);
    std::string NameForImage() const;

    // staging_commands.cpp
    // Does nothing on the Hangar side, nor, after a message, when one of the places is gone.
    void RunStagingCommand(const std::string& name, std::initializer_list<Place> alsoNeeded,
                           const std::function<void()>& command);
    bool IsStagingReady(std::initializer_list<Place> alsoNeeded = {});
    bool CopyToHangar(); // true when Staging was cleared then
    bool CanCopyToHangar(CommandContext& each, const LoadedPackage& loaded, const PackageRef& made,
                         const std::string& ownDirectory = "");
    // False when nothing of it was added. Its part is then the aircraft that was picked of several, its reason why a
    // part could not be taken.
    bool AddArchive(QueuedArchive& archive);
    // copiedTo: the package of the Hangar that has just been made of it.
    void EraseStaging(const std::string& copiedTo = "");
    void EraseFromStaging(StagingPart part);
    bool MayAddToStaging();
    // Asks which configuration to keep where that is still open; false, after a message, when it stays so.
    bool IsConfigurationChosen();
    // caption: of the aircraft in it, where that is known.
    std::string NameForArchive(const LoadedPackage& loaded, const std::string& caption = "") const;
    void ImportAircraft();

    // queue_commands.cpp
    void OpenQueue();
    void KeepQueue(const Status& saved); // tells when it was not
    // See FindArchives; tells what there is to say of them.
    std::vector<QueuedArchive> LookForArchives(const std::vector<std::string>& paths);
    void Enqueue(const std::vector<QueuedArchive>& archives);
    // True when the first of those that wait is to be taken.
    bool AddOrEnqueue(const std::vector<QueuedArchive>& archives);
    std::optional<QueuedArchive> ArchiveAt(int row) const;
    std::string DescribeTurn(const QueuedArchive& archive, int ahead) const;
    void NoteTaken(const std::vector<QueuedArchive>& archives);
    void NoteInStaging(const QueuedArchive& archive);          // the same of a single one
    void AddAtOnce(QueuedArchive archive);                     // that did not wait
    void QueueFollows(const HistoryEntry& entry, bool isUndo); // that was taken back or done again

    bool IsStagingFree(); // for the next archive; false after a message

    // several_aircraft.cpp
    // Of several aircraft that were unpacked from the archive into an empty Staging the one that is its part stays, or
    // which the user picks now: that is its part then, and the others wait in the queue. Its caption; "" where all
    // stays, or where the part is not there: then that is the reason of the archive.
    std::string KeepOneAircraft(CommandContext& each, const UnpackedArchive& unpacked, QueuedArchive& archive);

    // take_all_commands.cpp
    std::string AskCategoryForAll(); // makes it where it is new; "" when there is none
    // False when it is to be left; otherwise it is in the Hangar, and Staging as it was.
    bool TakeUnattended(CommandContext& each, const QueuedArchive& archive, PackageRef& made);
    bool ImportUnattended(CommandContext& each, const std::string& aircraft, PackageRef& made);
    // What a turn has brought into Staging: since when and whereto alone, the caption of the aircraft ("" where that is
    // not known), and for one of the simulator its directory there.
    struct Staged {
        const HistoryMark& mark;
        std::string directory, caption, ownDirectory;
    };
    bool CopyStagedUnattended(CommandContext& each, const Staged& staged, PackageRef& made);
    // Each in a turn of its own, in a category that the user is asked for.
    void TakeIntoHangar(const CommandTitle& title, const std::vector<std::string>& names,
                        const std::function<bool(CommandContext&, std::size_t, PackageRef&)>& take,
                        const std::function<void(std::vector<Turn>)>& show);
    void TakeEachArchive(const std::vector<QueuedArchive>& archives, const char* ofTheOthers);
    void ShowTaken(const std::string& caption, const std::string& what, std::vector<Turn> turns,
                   const char* ofTheOthers);

    // batch_commands.cpp
    std::vector<PackageRef> PackagesInBatch(bool isCategoryOnly);
    void CompressWhole(const std::string& question, bool compress);
    void UninstallWhole(const std::string& question, bool isCategoryOnly);
    // The report of those that were left, if there are any.
    void ShowLeft(const std::string& headline, const std::string& done, const std::vector<LeftPackage>& left);
    // To be asked before each package: it has no turn then.
    bool WantsToStop() { return wasStopped = isStopWanted || isEndWanted; }

    // each_commands.cpp
    struct EachCommand {
        CommandTitle title;        // without its subject
        std::string done;          // "installed"
        std::vector<Place> places; // that it needs
        std::string question = {}; // once for all of them; "" for none
        std::string category = {}; // in which they are then; "" where they stay
        bool onlyLooks = false;
    };
    void RunEach(EachCommand command, Packages packages, const std::function<void(BatchRun&, const Packages&)>& work);
    // A turn for each, while nobody answers.
    std::vector<Turn> GoThrough(std::size_t count, const std::vector<Place>& places,
                                const std::function<void(BatchRun&)>& work);
    // True when it is one package only, for which this command was run then.
    bool RunForOne(const Packages& packages, const std::function<void()>& single);
    // Each once, and those without a category as they stand in the Hangar.
    Packages Resolved(const Packages& packages);
    void CompressPackagesOf(const Packages& packages, bool compress);

    // history_commands.cpp
    void OpenHistory();
    // What was cut off is taken back.
    void SettleCutOff();
    // Where the command was at work and things may not be as it had left them: each with its backslash.
    struct Doubts {
        std::vector<std::string> away;  // the drive is not there
        std::vector<std::string> other; // somebody else has worked there since
    };
    Doubts DoubtsOf(const HistoryEntry& entry) const;
    // False when the user wants what the command has done left as it is.
    bool MayTakeBack(const HistoryEntry& entry, const Doubts& doubts);
    void GiveUpCutOff(const HistoryEntry& entry);
    void TakeBackCutOff(const HistoryEntry& entry, Doubts doubts);
    // The running command has come to its end, in whatever way. False, after a message, when what it had done was taken
    // back.
    bool EndJournal();
    // An exception has ended it.
    void EndBroken(const std::exception& trouble);
    // Stop was pressed.
    void EndStopped(const Stopped& stop);
    void EndUnanswered();
    // Half of it is taken back, unless it stays as this says.
    void EndHalfDone(const std::string& text, std::string stays, MessageIcon icon);
    void TellTakenBack(const std::string& why);
    void SetSubject(const std::string& subject);          // of the running command
    bool Reverse(const HistoryEntry* entry, bool isUndo); // false, after a message, when it cannot be
    void ForgetGoneLenders();                             // that were held for a paste
    void ShowReversed(const CommandTitle& title, const std::vector<Record>& takenBack);
    void ShowHistoryTexts();
    std::vector<Status> RepackFiles(const std::vector<std::string>& paths, bool packs);

    History history;
    FileSystem& files; // as the commands see it
    Launcher& launcher;
    UserDialogs& user;
    ProgramDialogs& dialogs;
    PictureConverter& converter;
    MainWindow& window;
    const std::string executable;

    Settings settings;
    MainView view;
    LoadedPackage package;
    std::string openedPath; // of what was shown last
    bool wasOpenedEmpty = false;
    CommandContext context{files, launcher, settings.locations, settings.limits, user, *this};
    LocationLocks locks{files};
    bool looksOnly = true;     // until it has all the places
    bool keepsScratch = false; // what lies under scratch names there may be of use to somebody
    Selection selection{files, settings.locations};
    Collection collection{files, settings.locations};
    ArchiveQueue queue{history.Disk()}; // not a part of what a command does
    TakenArchives takenBy{history.Disk()};
    std::vector<QueuedArchive> archivesInStaging; // of those that were taken
    int takenFromQueue = 0;                       // since it was empty
    HeldAliases held;
    std::vector<std::pair<std::string, std::string>> followed; // FollowInHangar in the running command
    std::string lastPictureDirectory;                          // where picture files were last chosen from; "" at first
    std::string importedAircraft; // set until Staging is shown with it: the gauges are still to come
    std::string stagedAircraft;   // the one imported last in this run; a choice of configuration deletes its name file
    modUnzip unzip;               // one for the run: it remembers the last right password
    // The Hangar or the simulator may have changed since it was listed: that is done anew after the command.
    bool isHangarStale = false;
    ListWindow fileList{window, files, settings.locations};
    GalleryWindow gallery{window, files, settings.locations, settings.limits};
    UnattendedUser* unattended = nullptr; // while a command for many packages runs
    RunFor runsFor = RunFor::Window;
    bool isUnanswered = false; // a question in the midst of the running command
    bool isRunning = false;
    bool isStopWanted = false, wasStopped = false, stopsAtStep = false;
    bool isEnded = false;
    bool isSaved = false;
    bool hasStarted = false;
    bool isEndWanted = false; // when the running command has ended
};

} // namespace korvadex
