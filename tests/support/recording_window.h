// A main window that remembers what it was shown, and a locations dialog that is filled in by a script.
#pragma once

#include "app/main_window.h"
#include "app/overviews.h"
#include "app/program_dialogs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace korvadex::test {

class RecordingWindow : public MainWindow {
  public:
    MainView view;
    std::string status, listCaption;
    std::vector<std::string> listLines;
    std::optional<WindowGeometry> geometry{{1200, 900, 7200, 9600}};
    GalleryView gallery;
    bool isListVisible = false, isGalleryVisible = false;
    int ends = 0, listShows = 0, galleryShows = 0, comings = 0;
    bool isStopOffered = false;
    std::map<std::string, std::function<void()>> onStatus; // by how the text begins; once
    std::function<void()> onShow;                          // a window's events can arrive at any moment

    void ShowView(const MainView& shown, const LoadedPackage&) override {
        view = shown;
        if (onShow)
            onShow();
    }
    // The packages to choose from, as the window shows them.
    std::vector<std::string> PackageLines() const {
        std::vector<std::string> lines;
        for (const HangarPackage& package : view.packages)
            lines.push_back(LineText({PackageRefOf(package.name), package.isInstalled}));
        return lines;
    }
    void ShowStatus(const std::string& text) override {
        status = text;
        if (const auto found =
                std::ranges::find_if(onStatus, [&](const auto& each) { return text.starts_with(each.first); });
            found != onStatus.end()) {
            const auto act = std::exchange(found->second, [] {});
            act();
        }
    }
    std::function<void()> onStep; // of the bar, while Stop is offered
    void ShowProgress(int, int) override { SetProgress(0); }
    void SetProgress(int) override {
        if (onStep && isStopOffered)
            onStep();
    }
    void HideProgress() override {}
    void OfferStop(bool isOffered) override { isStopOffered = isOffered; }
    void ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) override {
        listCaption = caption;
        listLines.clear();
        for (const ListLine& line : lines)
            listLines.push_back(LineText(line));
        isListVisible = true;
        ++listShows;
    }
    bool IsFileListVisible() const override { return isListVisible; }
    void ShowGallery(const GalleryView& shown) override {
        gallery = shown;
        isGalleryVisible = true;
        ++galleryShows;
    }
    void UpdateGallery(const GalleryView& shown) override {
        gallery = shown;
        isGalleryVisible = !shown.pictures.empty();
    }
    bool IsGalleryVisible() const override { return isGalleryVisible; }
    void ComeToFront() override { ++comings; }
    void ShowAbout() override {}
    ScreenSize Screen() const override { return {.height = 15000, .width = 20000}; }
    void ApplyGeometry(const SavedGeometry&) override {}
    std::optional<WindowGeometry> Geometry() const override { return geometry; }
    void ApplyListGeometry(const WindowGeometry&) override {}
    std::optional<WindowGeometry> ListGeometry() const override { return std::nullopt; }
    WindowLayout layout;
    void ApplyLayout(const WindowLayout& applied) override { layout = applied; }
    WindowLayout Layout() const override { return layout; }
    void EndProgram() override { ++ends; }
};

// A dialog that was not expected, and an expected one that did not come, both fail.
class ScriptedLocations : public ProgramDialogs {
  public:
    ~ScriptedLocations() override {
        EXPECT_TRUE(answers.empty()) << "the locations dialog was not shown again";
        EXPECT_TRUE(aircraft.empty()) << "no choice of aircraft was shown";
    }

    ScriptedLocations& Enter(Locations locations, std::string profile = "") {
        answers.push_back(LocationsEntry{std::move(profile), std::move(locations)});
        return *this;
    }
    ScriptedLocations& Close() {
        answers.push_back(std::nullopt);
        return *this;
    }
    std::optional<bool> askAtStart; // the check box is clicked whenever the dialog is shown

    std::optional<LocationsEntry> ShowLocations(Settings& settings, const LocationsForm&) override {
        if (answers.empty()) {
            ADD_FAILURE() << "unexpected: the locations dialog";
            return std::nullopt;
        }
        if (askAtStart)
            settings.AskLocationAtStart = *askAtStart;
        auto answer = answers.front();
        answers.pop_front();
        return answer;
    }

    // What is done while frmLocationProfiles is open.
    std::function<void(ProfileEditor&)> editProfiles;
    void ShowLocationProfiles(ProfileEditor& profiles) override { editProfiles(profiles); }

    // What is done while frmHistory is open.
    std::function<void(HistoryEditor&)> useHistory;
    void ShowHistory(HistoryEditor& history) override { useHistory(history); }

    std::deque<std::optional<std::string>> chosenCategories; // one after the other
    std::string offeredCategories;                           // "Jets, Props: Jets", as offered last
    std::optional<std::string> ChooseCategory(const std::string&, const std::vector<std::string>& categories,
                                              const std::string& preset) override {
        offeredCategories.clear();
        for (const auto& category : categories)
            offeredCategories += (offeredCategories.empty() ? "" : ", ") + category;
        offeredCategories += ": " + preset;
        if (chosenCategories.empty())
            return std::nullopt;
        const auto chosen = chosenCategories.front();
        chosenCategories.pop_front();
        return chosen;
    }
    std::string archiveDirectory; // that is chosen
    std::string ChooseArchiveDirectory(const std::string&) override { return archiveDirectory; }
    // What frmSeveralAircraft is to offer, each as "name: caption, its files", and the row that is picked.
    std::deque<std::pair<std::vector<std::string>, std::optional<int>>> aircraft;
    std::optional<int> ChooseAircraft(const std::vector<AircraftPart>& parts) override {
        std::vector<std::string> offered;
        for (const auto& part : parts)
            offered.push_back(part.name + ": " + part.caption + ", " + std::to_string(part.files));
        const auto [expected, row] = aircraft.empty() ? decltype(aircraft)::value_type() : aircraft.front();
        EXPECT_EQ(offered, expected);
        if (!aircraft.empty())
            aircraft.pop_front();
        return row;
    }

    OfferedPictures chosenPictures, clipboardPictures;
    std::string pictureDirectory; // that the choice opened on
    OfferedPictures ChoosePictures(const std::string& directory) override {
        pictureDirectory = directory;
        return chosenPictures;
    }
    OfferedPictures ClipboardPictures() override { return clipboardPictures; }

  private:
    std::deque<std::optional<LocationsEntry>> answers;
};

} // namespace korvadex::test
