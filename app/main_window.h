// The main window as the program drives it, and what it shows.
#pragma once

#include "app/archive_queue.h"
#include "app/hangar_listing.h"
#include "app/settings.h"
#include "media/gallery.h"
#include "package/command_context.h"
#include "package/loaded_package.h"

#include <optional>
#include <string>
#include <vector>

namespace korvadex {

inline constexpr const char* HangarHeader = "H A N G A R";
inline constexpr const char* StagingHeader = "S T A G I N G";

// What it shows at the moment, apart from the loaded package itself.
struct MainView {
    bool HangarSideShown = true;
    std::string caption = "Korvadex"; // "     (Staging Contains Files)" is added
    std::string profile;              // stands behind the caption; "" when there is nothing to tell apart
    std::string header = HangarHeader;
    std::vector<std::string> categories;
    int categoryIndex = -1;
    std::vector<HangarPackage> packages; // of the category
    int packageIndex = -1;
    std::string packageName;  // the text of txtPackageName
    std::string proposedName; // what the program itself put there last, to be typed over
    std::string sizeText;     // "12 Meg (compressed)"
    std::string sizeDetails;  // "12.3 Meg in 45 files"
    std::string status;
    std::string undoText, redoText; // what would be taken back or done again, "Install Jets\\Lear"; "" for nothing
    bool isStagingEmpty = true;
    bool isHangarEmpty = false; // it is there, and no category holds a package
    // For the status bar: "12 packages  -  3 installed in MSFS  -  Staging is empty".
    std::string statusCounts;
    int imageIndex = 0;   // of the package's pictures, from 1; 0 when it has none
    int listRevision = 0; // grows when the loaded package was loaded anew
    int openRevision = 0; // grows when it is another one than before: this list is to be seen then
    int groupToOpen = -1; // -1 for none
    bool isCollectionShown = false;
    std::vector<QueuedArchive> queue;
    unsigned present = 0;                  // what there is of what commands need; see Need
    std::vector<std::string> lastArchives; // the last one first
};

// What frmPhotos shows.
struct GalleryView {
    std::string caption;
    std::string directory; // a category's or the Hangar's; "" for none
    std::string notice;    // what is left out and why; "" when nothing is
    std::vector<GalleryPicture> pictures;

    bool operator==(const GalleryView&) const = default;
};

// Values come in whole; the window shows what has changed.
class MainWindow {
  public:
    virtual ~MainWindow() = default;
    virtual void ShowView(const MainView& view, const LoadedPackage& package) = 0;
    virtual void ShowStatus(const std::string& text) = 0;
    virtual void ShowProgress(int minimum, int maximum) = 0;
    virtual void SetProgress(int value) = 0;
    virtual void HideProgress() = 0;
    // While it is offered a button beside the bar, and Esc, call Program::StopAfterThis.
    virtual void OfferStop(bool isOffered) = 0;
    // frmFileList: the users of a panel or sound, or an overview. Opens the window. With the caption that it
    // shows already, the place in the list stays where it can.
    virtual void ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) = 0;
    virtual bool IsFileListVisible() const = 0;
    // frmPhotos. Opens the window or brings it to the front; with the caption that it shows already, page and
    // mark stay where they can.
    virtual void ShowGallery(const GalleryView& gallery) = 0;
    // What the open window shows from now on; without a picture it closes.
    virtual void UpdateGallery(const GalleryView& gallery) = 0;
    virtual bool IsGalleryVisible() const = 0;
    // The main window itself, before the gallery.
    virtual void ComeToFront() = 0;
    virtual void ShowAbout() = 0; // frmAbout

    virtual ScreenSize Screen() const = 0;
    virtual void ApplyGeometry(const SavedGeometry& geometry) = 0;
    // None while the window is minimised.
    virtual std::optional<WindowGeometry> Geometry() const = 0;
    virtual void ApplyListGeometry(const WindowGeometry& geometry) = 0;
    // None when the list window was never shown.
    virtual std::optional<WindowGeometry> ListGeometry() const = 0;
    virtual void ApplyLayout(const WindowLayout& layout) = 0;
    // What the user has not changed is as it was applied.
    virtual WindowLayout Layout() const = 0;
    // EndProgram: closes every window and leaves the event loop.
    virtual void EndProgram() = 0;
};

} // namespace korvadex
