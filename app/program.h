// The program without its windows: one run from start-up to shutdown, and every command that the main window
// can give.
#pragma once

#include "app/locations_entry.h"
#include "app/main_view.h"
#include "app/overviews.h"
#include "app/settings.h"
#include "archive/mod_unzip.h"
#include "package/command_context.h"
#include "package/erase_staging.h"
#include "package/load_package.h"
#include "package/presence.h"
#include "sim/hangar_commands.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// Which processor a menu entry's code goes to.
enum class Side { Staging, Hangar };

// Codes of the Staging processor (those of the Hangar's: sim/hangar_commands.h).
enum StagingCommand : int {
    CopyStagingToHangar = 0,
    ProcessZipIntoStaging = 1,
    ImportIntoStaging = 2,
    RemoveAllFromStaging = 4,
    RemovePanelFromStaging = 5,
    RemoveAircraftFromStaging = 6,
    RemoveSoundFromStaging = 7
};

// One of those that a command for many goes through.
struct PackageInBatch {
    std::string category, name;
};

// Each public command runs to its end before the next: one that arrives while another waits for an answer is
// dropped, and none runs after the program has ended.
class Program : private MainWindow {
  public:
    // appDir ends in a backslash; executable is started again after a change of the Hangar location.
    Program(FileSystem& files, Launcher& launcher, UserDialogs& user, ProgramDialogs& dialogs, MainForm& form,
            std::string appDir, std::string executable);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // The main window's start-up. False when the program is to end (EndProgram was called).
    bool Start();
    // Saves kx.ini and ends. Runs once, however often it is called; does nothing while a command runs (then
    // the window is to stay open: EndProgram was not called).
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
    void OpenComponent(int group, int position);
    void ShowComponentInFolder(int group, int position); // in the system's file manager
    // Says what could not be opened after all (Launcher::TakeFailures). False when there is nothing left to wait for.
    bool CheckOpenings();
    void DeleteComponents(int group, const std::vector<int>& positions);

    // --- the pictures of the shown package
    void ShowNextImage();
    void ShowPreviousImage();
    void DeleteImage();
    void MakeFirstImage();
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

    // --- menus and toolbar
    // A code that no command has, or one of the side that is not shown, does nothing.
    void RunCommand(Side processor, int code);
    // A key of the toolbar, as in its table; an unknown key does nothing.
    void PressToolbarKey(const std::string& key);
    // Archives that were not chosen in the dialog (dropped on the window), one after the other; goes to the
    // Staging side first. One that the user declines to add is left out.
    void ProcessArchives(const std::vector<std::string>& paths);
    void ChangeLocations();
    void EditLocationProfiles();
    void OpenReadMe();
    void CreateNotes();
    void DeleteNotes();
    void ReadNotes();
    void Explore(); // cmdExplore
    void EditInformation();
    // These four go to the Hangar side first.
    void CompressAll();
    void DecompressAll();
    void UninstallAll();
    void UninstallCategory();
    // These stay on the side that is shown.
    void ListUnusedGauges();
    void RunSimulator();

    const MainView& View() const { return view; }
    const LoadedPackage& Package() const { return package; }
    const Settings& GetSettings() const { return settings; }

  private:
    // What CommandContext lets commands do with the main window.
    void ShowProgress(int minimum, int maximum) override;
    void SetProgress(int value) override;
    void HideProgress() override;
    void ShowStatus(const std::string& text) override;
    std::string SelectedCategory() const override;
    std::string SelectedPackageText() const override;
    void RefreshPackageList() override;
    void SelectPackageNamed(const std::string& name) override;
    void NoteStaged(const std::string& packageName) override;
    void RefreshPackageDisplay() override;
    void ShowFileList(const std::string& caption, const std::vector<std::string>& lines) override;

    // The file at a position of a component list; none when there is no such position.
    std::optional<std::string> ComponentPath(int group, int position) const;

    // program.cpp: one command from the window's event to the window's new state.
    void Run(const std::function<void()>& command);
    void ShowView();
    void RunHangarSideCommand(int code);
    // False, after a message, when one of the places is gone.
    bool ArePlacesThere(std::initializer_list<Place> places);
    // The same of what is shown, Staging or a package of the Hangar; then the lists are filled anew.
    bool IsShownThere(std::initializer_list<Place> alsoNeeded = {});

    // file_list.cpp
    void ListFromMenu(std::string_view caption);
    void ListOverview(std::string_view caption);
    // Builds the overview that the open list window shows from what the Hangar holds now.
    void RefreshFileList();
    void TellTooLong(const Overview& overview);
    void ShowLines(Overview list);

    void ShowReadMe();
    LocationsRequest RequestLocations(LocationsCaller caller, bool showDialog);

    // gallery_commands.cpp
    void OpenGallery(bool isForAll);
    void FillGallery(GalleryView& filled) const;
    // Shows in the open gallery what the Hangar holds now.
    void RefreshGallery();

    // startup.cpp
    void StartUp();
    bool TakeMarker();
    void CreateDefaultCategories();
    void ShowFirstPackage();
    bool IsGone(const std::string& line) const;
    Status Save();
    bool KeepSettings(); // writes kx.ini; false, after a message, when that failed
    void EndRun();
    void RestartWith(const Settings& oldSettings);

    // sides.cpp
    void ShowHangarSide(bool preselect);
    void ShowStagingSide();
    void SwitchToHangar(); // with the packages as they are now
    // For a command of the Hangar: the user sees what it is about before it asks.
    void EnsureHangarSide();
    void LoadShownSide(ChoiceQuestion question = ChoiceQuestion::LeaveOpen);
    // Gives the two files of one name that keep the package from being loaded; outside of a batch they end the
    // program.
    std::vector<std::string> LoadSelectedPackage();
    void LoadStaging(ChoiceQuestion question = ChoiceQuestion::LeaveOpen);
    void ClearPackageDisplay();
    void ReloadWhenChanged();
    void FillCategories();
    // Lists the shown category anew; the selection is kept by name.
    void RefreshSelection();
    void FillPackages();
    void TakePackages(HangarCategory listing);
    // Lists the whole Hangar.
    void TakeStock();
    void UpdateStatusCounts();
    void SelectCategory(int index);
    bool SelectPackage(std::string_view line);
    bool SelectPackageIn(int category, std::string_view name);
    std::string SelectedPackagePath() const;
    void UpdateCaption();
    void ForgetStaging();
    void ProposeName(std::string_view name);

    // picture_commands.cpp
    std::string ShownImage() const;          // its path; "" when there is none
    void ShowImage(const std::string& path); // where the package has it
    // Loads what has changed first; false, after a message, when the picture is gone.
    bool IsStillThere(const std::string& path);
    bool CanTakeImages();
    void ImportImages(const OfferedPictures& offered);
    std::string NameForImage() const;

    // staging_commands.cpp
    void RunStagingCommand(int code, const std::string& archive = "");
    void CopyToHangar();
    bool CanCopyToHangar(const std::string& name);
    void AddArchive(const std::string& archive);
    // copiedTo: the package of the Hangar that has just been made of it.
    void EraseStaging(const std::string& copiedTo = "");
    void EraseFromStaging(StagingPart part);
    bool MayAddToStaging();
    // Asks which configuration to keep where that is still open; false, after a message, when it stays so.
    bool IsConfigurationChosen();
    std::string NameForArchive() const;
    void ImportIntoStagingSide();

    // data_commands.cpp
    void EditPackageInformation();

    // batch_commands.cpp
    std::vector<PackageInBatch> PackagesInBatch(bool isCategoryOnly);
    void ForEachPackage(const std::vector<PackageInBatch>& packages,
                        const std::function<void(const PackageInBatch&)>& command);
    std::string LoadForBatch(const PackageInBatch& selected, std::initializer_list<Place> places);
    void CompressEach(const std::string& question, bool compress);
    void UninstallEach(const std::string& question, bool isCategoryOnly);

    FileSystem& files;
    Launcher& launcher;
    UserDialogs& user;
    ProgramDialogs& dialogs;
    MainForm& form;
    const std::string executable;

    Settings settings;
    MainView view;
    LoadedPackage package;
    CommandContext context{files, launcher, settings.locations, settings.limits, user, *this};
    CommandState state;
    HangarMemory memory;
    std::string lastPictureDirectory; // where picture files were last chosen from; "" at first
    std::string importedAircraft;     // set until Staging is shown with it: the gauges are still to come
    std::string stagedAircraft; // the one imported last in this run; a choice of configuration deletes its name file
    bool isBatch = false;       // packages are gone through: each is loaded only for its own command
    modUnzip unzip;             // one for the run: it remembers the last right password
    HangarListing hangar;       // the shown categories, as last listed
    // The Hangar or the simulator may have changed since: listed anew when the command is done.
    bool isHangarStale = false;
    Overview fileList;   // what frmFileList was given last
    GalleryView gallery; // the same of frmPhotos
    bool isRunning = false;
    bool isEnded = false;
    bool isSaved = false;
    bool hasStarted = false;
    bool isEndWanted = false; // when the running command has ended
};

} // namespace korvadex
