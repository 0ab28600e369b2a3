// The user of the command line: is told on the streams, and asked on the terminal or by an answer that was given for
// all questions beforehand. A question that nobody answers ends the command (Asked).
#pragma once

#include "app/program_dialogs.h"
#include "app/unattended.h"
#include "cli/screen.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace korvadex {

enum class StandingAnswer { None, Stop, Yes, No }; // none: the terminal is asked, where there is one

class TerminalUser : public UserDialogs, public ProgramDialogs {
  public:
    TerminalUser(TextScreen& shownOn, StandingAnswer given) : screen(shownOn), standing(given) {}

    // What is asked while the program starts is about the places, not about the command: the answer that was given for
    // that is none.
    bool isStarting = false;
    // The next question is whether the command that was given is to be done, which its giver has said.
    void ExpectConfirmation() { isConfirmed = true; }
    std::optional<std::string> category;                               // answers ChooseCategory, once
    std::optional<Locations> locations;                                // those of a first start
    std::function<void(const UnusedGaugesForm&)> useUnusedGauges = {}; // while frmUnusedGauges would be open
    std::function<void(HistoryEditor&)> useHistory = {};               // the same of frmHistory
    bool HasOpenQuestion() const { return hasOpenQuestion; }
    bool WasWarned() const { return wasWarned; }

    bool IsAskedInBatches() const override { return true; }
    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions& options) override;
    std::optional<std::string> AskText(const std::string& prompt, bool isSecret) override;
    std::optional<std::string> ChooseZipFile(const std::string& title, const std::string& directory) override;
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>& rows) override;
    void ShowInstallStatus(const std::string& text) override { screen.Say(text); }
    void ShowImportStatus(const std::string& text) override { screen.Say(text); }
    void ShowRename(const RenameForm& form) override;
    void ShowUnusedGauges(const UnusedGaugesForm& form) override;
    void ShowMSFSImport(const ImportForm& form) override;
    void ShowInfo(const InfoForm& form) override;

    bool CanEnterLocations() const override { return false; }
    std::optional<LocationsEntry> ShowLocations(Settings& settings, const LocationsForm& form) override;
    void ShowLocationProfiles(ProfileEditor& profiles) override;
    void ShowHistory(HistoryEditor& history) override;
    std::optional<int> ChooseAircraft(const std::vector<AircraftPart>& parts) override;
    std::optional<std::string> ChooseCategory(const std::string& prompt, const std::vector<std::string>& categories,
                                              const std::string& preset) override;
    std::string ChooseArchiveDirectory(const std::string&) override { return ""; }
    OfferedPictures ChoosePictures(const std::string&) override { return {}; }
    OfferedPictures ClipboardPictures() override { return {}; }

  private:
    bool CanAsk() const { return standing == StandingAnswer::None && screen.CanAsk(); }
    [[noreturn]] void LeaveOpen(const std::string& question, const std::string& advice);
    std::string About() const { return subject.empty() ? "" : subject + ": "; }
    bool IsYes(const std::string& question, MessageButtons buttons, bool isWarning, bool isForGood);
    bool AskTerminal(const std::string& question, MessageButtons buttons);
    std::string ReadAnswer();
    // One of these lines by its number; none where there is nobody to say it.
    int Choose(const std::string& question, const std::vector<std::string>& lines);

    TextScreen& screen;
    const StandingAnswer standing;
    bool isConfirmed = false, hasOpenQuestion = false, wasWarned = false;
};

} // namespace korvadex
