// What every command works with: the disk, the locations, the user and the main window.
#pragma once

#include "package/dialogs.h"
#include "package/locations.h"
#include "platform/file_system.h"
#include "platform/launcher.h"

#include <string>
#include <vector>

namespace korvadex {

struct LoadedPackage;

// What a command can show in, and learn from, the main window and the list window beside it.
class MainWindow {
  public:
    virtual ~MainWindow() = default;

    // The bar prbProgress. Showing and stepping keep the window painted.
    virtual void ShowProgress(int minimum, int maximum) = 0;
    virtual void SetProgress(int value) = 0;
    virtual void HideProgress() = 0;
    // The status bar; "" clears it.
    virtual void ShowStatus(const std::string& text) = 0;

    // The text of cboPackageCategory and of cboPackageName, the latter with its installed marks.
    virtual std::string SelectedCategory() const = 0;
    virtual std::string SelectedPackageText() const = 0;

    // Fills the chooser's packages anew (marks included) and keeps the selection; loads nothing.
    virtual void RefreshPackageList() = 0;
    // The same, and selects the package of this name in the shown category.
    virtual void SelectPackageNamed(const std::string& name) = 0;
    // A package was copied to Staging: an empty txtPackageName gets its name, the caption is brought up to date.
    virtual void NoteStaged(const std::string& packageName) = 0;
    // Loads the shown side again and shows it.
    virtual void RefreshPackageDisplay() = 0;
    // frmFileList with these lines under this caption.
    virtual void ShowFileList(const std::string& caption, const std::vector<std::string>& lines) = 0;
};

struct CommandContext {
    FileSystem& files;
    Launcher& launcher;
    const Locations& locations;
    const WalkLimits& limits;
    UserDialogs& user;
    MainWindow& window;
};

// The number of the menu command that runs, and whether a batch silences what it says for each package.
struct CommandState {
    int CommandCode = 0;
    bool QuietMode = false;
    bool BatchMode = false; // compress all, decompress all
    // Packages that a quiet command kept, with the reason: named to the user at the end of the batch.
    std::vector<std::string> keptPackages;
    // What kept some of them, as it may use what they have and could not be looked at: one to a line.
    std::string unseen;
    // Gauges of removed packages that could not be deleted, with the reason; named there as well.
    std::vector<std::string> remainingGauges;
    // What a batch did not compress or decompress, with the reason.
    std::vector<std::string> notCompressed;
};

} // namespace korvadex
