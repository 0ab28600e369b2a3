// A user who answers by a script: a queue of expected questions with their answers. A surprise, a button that
// was not offered and a leftover all fail the test; the transcript keeps what was shown.
#pragma once

#include "package/dialogs.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace korvadex::test {

class ScriptedUser : public UserDialogs {
  public:
    ~ScriptedUser() override; // fails the test when an expected question was not asked

    // The text as shown, with CR LF written as "\n"; "..." stands for whatever comes there.
    ScriptedUser& Expect(std::string text, Answer answer = Answer::Ok, bool isChecked = false);
    // The same and the icon is compared too.
    ScriptedUser& Expect(std::string text, Answer answer, MessageIcon icon);
    ScriptedUser& Expect(std::string text, MessageIcon icon) { return Expect(std::move(text), Answer::Ok, icon); }
    ScriptedUser& ExpectText(std::string prompt, std::optional<std::string> answer); // input box
    ScriptedUser& ExpectZipFile(std::optional<std::string> answer);                  // file choice
    ScriptedUser& ExpectConfigurations(std::vector<std::string> items, std::optional<int> answer);
    ScriptedUser& ExpectInstallStatus(std::string text); // "\n" for CR LF, "..." as above
    ScriptedUser& ExpectImportStatus(std::string text);
    // frmRename comes up with these fields (no title: the field is disabled) and gives each entry to
    // cmdAccept until one is taken.
    ScriptedUser& ExpectRename(RenameEntry shown, bool hasTitle, std::vector<RenameEntry> entries);
    // frmUnusedGauges finds these; then each set of rows is deleted.
    ScriptedUser& ExpectUnusedGauges(std::vector<std::string> names, std::vector<std::vector<int>> deletions);
    // frmMSFSImport offers these; the rows are tried one after another until one is taken.
    ScriptedUser& ExpectImport(std::vector<std::string> names, std::vector<int> rows);
    // frmInfo comes up; act does what the user does with it.
    ScriptedUser& ExpectInfo(std::function<void(const InfoForm&)> act);
    // Runs when the question before it was answered: to look at the disk in the middle of a command.
    ScriptedUser& Then(std::function<void()> action);

    // Takes note of whatever is shown, answers each message with Yes or OK and closes everything else.
    bool isPatient = false;
    std::vector<std::string> transcript;
    std::vector<ConfigurationRow> configurations; // as offered last

    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions& options) override;
    std::optional<std::string> AskText(const std::string& prompt, bool isSecret) override;
    std::optional<std::string> ChooseZipFile(const std::string& title, const std::string& directory) override;
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>& rows) override;
    void ShowInstallStatus(const std::string& text) override;
    void ShowImportStatus(const std::string& text) override;
    void ShowRename(const RenameForm& form) override;
    void ShowUnusedGauges(const UnusedGaugesForm& form) override;
    void ShowMSFSImport(const ImportForm& form) override;
    void ShowInfo(const InfoForm& form) override;

  private:
    enum class Kind {
        Message,
        Text,
        ZipFile,
        Configurations,
        InstallStatus,
        ImportStatus,
        Rename,
        UnusedGauges,
        Import,
        Info
    };
    struct Step {
        Kind kind;
        std::string text;
        Answer answer = Answer::Ok;
        bool isChecked = false;
        std::optional<MessageIcon> icon = {};
        std::optional<std::string> typed = {};
        std::vector<std::string> items = {};
        std::optional<int> row = {};
        std::vector<RenameEntry> entries = {}; // as shown, then as entered
        std::vector<std::vector<int>> rows = {};
        std::function<void()> then = {};
        std::function<void(const InfoForm&)> info = {};
    };
    std::optional<Step> Take(Kind kind, const std::string& shown);
    std::deque<Step> script;
};

} // namespace korvadex::test
