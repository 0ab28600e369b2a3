// Everything that a command works with, on a drive of its own: three locations, a scripted user and a
// recording display.
#pragma once

#include "package/command_context.h"
#include "tests/support/scripted_user.h"
#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvadex::test {

// Remembers what it was told to show.
class RecordingDisplay : public CommandDisplay {
  public:
    std::string status, listCaption;
    std::vector<ListLine> listLines;
    int progressShown = 0;
    bool isProgressVisible = false;

    void ShowProgress(int, int) override {
        isProgressVisible = true;
        ++progressShown;
    }
    void SetProgress(int) override {}
    void HideProgress() override { isProgressVisible = false; }
    void ShowStatus(const std::string& text) override { status = text; }
    void ShowFileList(const std::string& caption, const std::vector<ListLine>& lines) override {
        listCaption = caption;
        listLines = lines;
    }
};

// A launcher that starts nothing and remembers what it was asked to start.
class RecordingLauncher : public Launcher {
  public:
    std::vector<std::string> started; // "edit C:\...", "explore C:\...", "open C:\...", "start ..."
    int documentCode = 42;            // what OpenDocument answers
    bool hasDesktop = true;           // an editor and a file manager

    bool OpenInEditor(const std::string& path) override {
        started.push_back("edit " + path);
        return hasDesktop;
    }
    bool OpenInFileManager(const std::string& directory, WindowState) override {
        started.push_back("explore " + directory);
        return hasDesktop;
    }
    int OpenDocument(const std::string& path) override {
        started.push_back("open " + path);
        return documentCode;
    }
    bool StartProgram(const std::string& hostPath) override {
        started.push_back("start " + hostPath);
        return true;
    }
    std::string RunSimulator(const std::string& path) override {
        started.push_back("run " + path);
        return simulatorRefusal;
    }
    std::vector<FailedOpening> failures; // what TakeFailures gives
    std::vector<FailedOpening> TakeFailures() override { return std::exchange(failures, {}); }
    std::string simulatorRefusal; // what RunSimulator answers
};

class CommandTest : public testing::Test {
  protected:
    // Staging\, Hangar\ and FS\aircraft\ stand, empty.
    CommandTest() {
        drive.Fill("", "Staging\\, Hangar\\, FS\\aircraft\\");
        locations = {drive.At("Staging\\"), drive.At("Hangar\\"), drive.At("FS\\")};
    }

    // The context of the test, on another disk.
    CommandContext On(FileSystem& files) { return {files, launcher, locations, limits, user, display}; }

    TemporaryDrive drive;
    Locations locations;
    WalkLimits limits;
    ScriptedUser user;
    RecordingDisplay display;
    RecordingLauncher launcher;
    CommandContext context{drive.Files(), launcher, locations, limits, user, display};
};

} // namespace korvadex::test
