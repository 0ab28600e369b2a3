// What every command works with: the disk, the locations, the user and what shows its progress.
#pragma once

#include "package/dialogs.h"
#include "package/locations.h"
#include "package/package_ref.h"
#include "platform/file_system.h"
#include "platform/launcher.h"

#include <optional>
#include <string>
#include <vector>

namespace korvadex {

// A line of the list window: a package, with its marks where it is installed. Without a name it is the heading of a
// category, or a separator; without a category the package of that name in whatever category.
struct ListLine {
    PackageRef package = {};
    bool isInstalled = false;
    std::string text = {}; // of a report: is shown in place of the name; it may also stand there without a package

    bool operator==(const ListLine&) const = default;
    bool IsHeading() const { return package.name.empty() && !package.category.empty(); }
};

// Where a command shows what it does.
class CommandDisplay {
  public:
    virtual ~CommandDisplay() = default;

    // The bar prbProgress. Showing and stepping keep the window painted.
    virtual void ShowProgress(int minimum, int maximum) = 0;
    virtual void SetProgress(int value) = 0;
    virtual void HideProgress() = 0;
    // The status bar; "" clears it.
    virtual void ShowStatus(const std::string& text) = 0;
    // frmFileList with these lines under this caption.
    virtual void ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) = 0;
    // What a check of an installed aircraft's gauges has found, for whoever shows it later.
    virtual void NoteMissingGauges(const std::string& /*package*/, const std::vector<std::string>& /*missing*/) {}
};

struct CommandContext {
    FileSystem& files;
    Launcher& launcher;
    const Locations& locations;
    const WalkLimits& limits;
    UserDialogs& user;
    CommandDisplay& display;
};

// What a command has changed. Whoever gave it shows the new state, once, when it has come back.
struct Changes {
    bool hangar = false;    // which packages there are, or their names
    bool simulator = false; // which of them are installed
    bool package = false;   // the files of what the command worked on, a package or Staging
    // The package under the name that it has now, one without a name where it is gone; nothing where it stays as it is.
    std::optional<PackageRef> renamed = {};
    std::string staged = {}; // the name of the package that was copied to Staging

    Changes& operator+=(const Changes& later) {
        hangar = hangar || later.hangar;
        simulator = simulator || later.simulator;
        package = package || later.package;
        if (later.renamed)
            renamed = later.renamed;
        if (!later.staged.empty())
            staged = later.staged;
        return *this;
    }
};

} // namespace korvadex
