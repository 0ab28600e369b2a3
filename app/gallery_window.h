// The picture gallery beside the main window, for a category or for the whole Hangar.
#pragma once

#include "app/main_window.h"

#include <optional>
#include <string>

namespace korvadex {

class GalleryWindow {
  public:
    GalleryWindow(MainWindow& mainWindow, const FileSystem& fileSystem, const Locations& known,
                  const WalkLimits& walkLimits)
        : window(mainWindow), files(fileSystem), locations(known), limits(walkLimits) {}

    // Opens the window with the pictures below a directory (ends in a backslash; "" for none). Where there are none it
    // stays as it is, and what was left out comes back, "" for nothing.
    std::optional<std::string> Open(const std::string& caption, const std::string& directory);
    // What the open window shows from now on.
    void Refresh();
    // Of those that the window was given last.
    std::optional<GalleryPicture> PictureAt(int row) const;

  private:
    void Fill(GalleryView& filled) const;

    MainWindow& window;
    const FileSystem& files;
    const Locations& locations;
    const WalkLimits& limits;
    GalleryView shown; // what the window was given last
};

} // namespace korvadex
