// The list window beside the main window: overviews of the collection, or who uses a panel or a sound.
#pragma once

#include "app/main_window.h"
#include "app/overviews.h"

#include <optional>
#include <string>
#include <vector>

namespace korvadex {

class ListWindow {
  public:
    ListWindow(MainWindow& mainWindow, const FileSystem& fileSystem, const Locations& known)
        : window(mainWindow), files(fileSystem), locations(known) {}

    void Show(Overview list);
    // Opens the window with an overview of the Hangar. Gives what there is to say in the status bar when it is too
    // long; "" otherwise.
    std::string ShowOverview(std::string_view caption, const HangarListing& hangar);
    // What the open overview shows from now on. Gives the same.
    std::string RefreshFileList(const HangarListing& hangar);

    // What a click on the line at this position stands for; nothing for a position without a meaning.
    std::optional<ListLine> Choose(int row) const;

  private:
    MainWindow& window;
    const FileSystem& files;
    const Locations& locations;
    Overview shown; // what the window was given last
};

} // namespace korvadex
