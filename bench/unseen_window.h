// The main window and the dialogs of a whole program run that nobody looks at.
#pragma once

#include "app/main_window.h"
#include "app/program_dialogs.h"

namespace korvadex::bench {

class UnseenWindow : public MainWindow {
  public:
    void ShowView(const MainView&, const LoadedPackage&) override {}
    void ShowStatus(const std::string&) override {}
    void ShowProgress(int, int) override {}
    void SetProgress(int) override {}
    void HideProgress() override {}
    void OfferStop(bool) override {}
    void ShowFileList(const std::string&, const std::vector<ListLine>&) override {}
    bool IsFileListVisible() const override { return false; }
    void ShowGallery(const GalleryView&) override {}
    void UpdateGallery(const GalleryView&) override {}
    bool IsGalleryVisible() const override { return false; }
    void ComeToFront() override {}
    void ShowAbout() override {}
    ScreenSize Screen() const override { return {15000, 20000}; }
    void ApplyGeometry(const SavedGeometry&) override {}
    std::optional<WindowGeometry> Geometry() const override { return std::nullopt; }
    void ApplyListGeometry(const WindowGeometry&) override {}
    std::optional<WindowGeometry> ListGeometry() const override { return std::nullopt; }
    void ApplyLayout(const WindowLayout&) override {}
    WindowLayout Layout() const override { return {}; }
    void EndProgram() override {}
};

class UnseenDialogs : public ProgramDialogs {
  public:
    std::optional<int> ChooseAircraft(const std::vector<AircraftPart>&) override { return std::nullopt; }
    std::optional<LocationsEntry> ShowLocations(Settings&, const LocationsForm&) override { return std::nullopt; }
    void ShowLocationProfiles(ProfileEditor&) override {}
    void ShowHistory(HistoryEditor&) override {}
    std::optional<std::string> ChooseCategory(const std::string&, const std::vector<std::string>&,
                                              const std::string&) override {
        return std::nullopt;
    }
    std::string ChooseArchiveDirectory(const std::string&) override { return ""; }
    OfferedPictures ChoosePictures(const std::string&) override { return {}; }
    OfferedPictures ClipboardPictures() override { return {}; }
};

class UnseenConverter : public PictureConverter {
  public:
    PreparedPicture Prepare(const std::string&) override { return {}; }
};

} // namespace korvadex::bench
