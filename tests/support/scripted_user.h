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

    // The text as shown, with CR LF written as "\n". A text that ends in "..." expects just that beginning.
    ScriptedUser& Expect(std::string text, Answer answer, bool isChecked = false) {
        return Add(
            {.kind = Kind::Message, .text = std::move(text), .answer = answer, .isChecked = isChecked});
    }
    // The same and the icon is compared too.
    ScriptedUser& Expect(std::string text, Answer answer, MessageIcon icon) {
        return Add({.kind = Kind::Message, .text = std::move(text), .answer = answer, .icon = icon});
    }
    ScriptedUser& ExpectText(std::string prompt, std::optional<std::string> answer) { // input box
        return Add({.kind = Kind::Text, .text = std::move(prompt), .typed = std::move(answer)});
    }
    ScriptedUser& ExpectZipFile(std::optional<std::string> answer) { // file choice
        return Add({.kind = Kind::ZipFile, .text = "Process ZIP File ...", .typed = std::move(answer)});
    }
    ScriptedUser& ExpectConfigurations(std::vector<std::string> items, std::optional<int> answer) {
        return Add({.kind = Kind::Configurations, .items = std::move(items), .row = answer});
    }
    ScriptedUser& ExpectInstallStatus(std::string text) { // "\n" for CR LF, "..." as above
        return Add({.kind = Kind::InstallStatus, .text = std::move(text)});
    }
    ScriptedUser& ExpectImportStatus(std::string text) {
        return Add({.kind = Kind::ImportStatus, .text = std::move(text)});
    }
    // Runs when the question before it was answered: to look at the disk in the middle of a command.
    ScriptedUser& Then(std::function<void()> action) {
        script.back().then = std::move(action);
        return *this;
    }

    std::vector<std::string> transcript;

    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions& options) override;
    std::optional<std::string> AskText(const std::string& prompt, bool isSecret) override;
    std::optional<std::string> ChooseZipFile(const std::string& title, const std::string& directory) override;
    std::optional<int> ChooseConfiguration(const std::vector<std::string>& items) override;
    void ShowInstallStatus(const std::string& text) override { Take(Kind::InstallStatus, text); }
    void ShowImportStatus(const std::string& text) override { Take(Kind::ImportStatus, text); }

  private:
    enum class Kind { Message, Text, ZipFile, Configurations, InstallStatus, ImportStatus };
    struct Step {
        Kind kind;
        std::string text = {};
        Answer answer = Answer::Ok;
        bool isChecked = false;
        std::optional<MessageIcon> icon = {};
        std::optional<std::string> typed = {};
        std::vector<std::string> items = {};
        std::optional<int> row = {};
        std::function<void()> then = {};
    };
    ScriptedUser& Add(Step step);
    std::optional<Step> Take(Kind kind, const std::string& shown);
    std::deque<Step> script;
};

} // namespace korvadex::test
