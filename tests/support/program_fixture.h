// A whole run of the program without its windows, on a drive of its own with a settings file that points there.
#pragma once

#include "app/program.h"
#include "tests/support/command_fixture.h"
#include "tests/support/fake_converter.h"
#include "tests/support/recording_window.h"

#include <memory>
#include <string>

namespace korvadex::test {

class ProgramTest : public CommandTest {
  protected:
    ProgramTest() {
        drive.MakeDirectory("App");
        drive.MakeDirectory("FS\\gauges");
    }

    // kx.ini as a minimised window saves it.
    std::string SettingsText(const std::string& firstPackage = "", const std::string& more = "") const {
        return "ALTLOCATION0=Main\r\nALTSTAGINGDIR0=" + locations.StagingDir +
               "\r\nALTHANGARDIR0=" + locations.HangarDir + "\r\nALTMSFSDIR0=" + locations.MsfsDir +
               "\r\nALTFIRSTPACKAGE0=" + firstPackage + "\r\n" + more + "LOCATIONLAST=0\r\nLOCATIONLASTZIP=\r\n";
    }
    void PutSettings(const std::string& firstPackage = "", const std::string& more = "") {
        form.geometry.reset();
        drive.Put("App\\kx.ini", SettingsText(firstPackage, more));
    }
    std::string SavedSettings() const { return drive.Get("App\\kx.ini"); }

    Program& Make(FileSystem& files) {
        program = std::make_unique<Program>(files, launcher, user, dialogs, converter, form, drive.At("App\\"),
                                            "the executable");
        return *program;
    }
    // Starts with the settings file of PutSettings.
    Program& Start() {
        if (!drive.Has("App\\kx.ini"))
            PutSettings();
        EXPECT_TRUE(Make(drive.Files()).Start());
        return *program;
    }
    void Select(const std::string& category, int packageIndex) {
        const auto& categories = program->View().categories;
        const auto found = std::find(categories.begin(), categories.end(), category);
        ASSERT_NE(found, categories.end()) << category;
        program->ChooseCategory(static_cast<int>(found - categories.begin()));
        program->ChoosePackage(packageIndex);
    }
    std::string Shown() const { return program->Package().path; }

    ScriptedLocations dialogs;
    FakeConverter converter;
    RecordingWindow form;
    std::unique_ptr<Program> program;
};

} // namespace korvadex::test
