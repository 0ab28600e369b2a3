// What stands for the main window on a terminal: lists are written down, and a line shows how far a command has come.
#pragma once

#include "app/main_window.h"
#include "app/overviews.h"
#include "cli/screen.h"

#include <functional>
#include <optional>
#include <string>

namespace korvadex {

class TerminalWindow : public MainWindow {
  public:
    // heedInterrupt is called at each step of a command that can be stopped.
    TerminalWindow(TextScreen& shownOn, std::function<void()> heedInterrupt)
        : screen(shownOn), heed(std::move(heedInterrupt)) {}

    void ShowView(const MainView&, const LoadedPackage&) override {}
    void ShowStatus(const std::string& text) override { status = text; }
    void ShowProgress(int minimum, int maximum) override;
    void SetProgress(int value) override;
    void HideProgress() override { screen.HideProgress(); }
    void OfferStop(bool isOffered) override { canStop = isOffered; }
    void ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) override;
    bool IsFileListVisible() const override { return false; }
    void ShowGallery(const GalleryView&) override {}
    void UpdateGallery(const GalleryView&) override {}
    bool IsGalleryVisible() const override { return false; }
    void ComeToFront() override {}
    void ShowAbout() override {}

    // The places of the windows stay as the settings have them.
    ScreenSize Screen() const override { return {.height = 1e9, .width = 1e9}; }
    void ApplyGeometry(const SavedGeometry& geometry) override { saved = geometry; }
    std::optional<WindowGeometry> Geometry() const override;
    void ApplyListGeometry(const WindowGeometry&) override {}
    std::optional<WindowGeometry> ListGeometry() const override { return std::nullopt; }
    void ApplyLayout(const WindowLayout& applied) override { layout = applied; }
    WindowLayout Layout() const override { return layout; }
    void EndProgram() override { screen.HideProgress(); }

  private:
    TextScreen& screen;
    std::function<void()> heed;
    std::string status;
    int from = 0, to = 1;
    bool canStop = false;
    SavedGeometry saved;
    WindowLayout layout;
};

} // namespace korvadex
