// A user who answers by a script: a queue of expected questions with their answers. A surprise, a button that was not
// offered and a leftover all fail the test; the transcript keeps what was shown.
#pragma once

#include "media/aircraft_info.h"
#include "package/dialogs.h"
#include "package/reduce_staging.h"
#include "package/rename.h"
#include "sim/import.h"
#include "sim/unused_gauges.h"

#include <any>
#include <deque>
#include <functional>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace korvadex::test {

class ScriptedUser : public UserDialogs {
  public:
    ~ScriptedUser() override { Finish(); }

    // Fails the test when an expected question was not asked by now.
    void Finish();

    // The text as shown, with CR LF written as "\n". "..." stands for whatever comes there; behind a blank, as the
    // program writes it, for itself.
    ScriptedUser& Expect(std::string text, Answer answer = Answer::Ok, bool isChecked = false,
                         std::optional<MessageIcon> icon = {});
    // The same and the icon is compared too.
    ScriptedUser& Expect(std::string text, Answer answer, MessageIcon icon) {
        return Expect(std::move(text), answer, false, icon);
    }
    ScriptedUser& Expect(std::string text, MessageIcon icon) { return Expect(std::move(text), Answer::Ok, icon); }
    ScriptedUser& ExpectText(const std::string& prompt, std::optional<std::string> answer); // input box
    ScriptedUser& ExpectZipFile(std::optional<std::string> answer);                         // file choice
    ScriptedUser& ExpectConfigurations(std::vector<std::string> items, std::optional<int> answer);
    ScriptedUser& ExpectInstallStatus(const std::string& text) {
        return Add<void>("status:" + text, [](auto&) {});
    }
    ScriptedUser& ExpectImportStatus(const std::string& text) {
        return Add<void>("import:" + text, [](auto&) {});
    }
    // frmRename comes up with these fields (no title: the field is disabled) and gives each entry to cmdAccept until
    // one is taken.
    ScriptedUser& ExpectRename(RenameEntry shown, bool hasTitle, std::vector<RenameEntry> entries);
    // frmUnusedGauges finds these; then each set of rows is deleted.
    ScriptedUser& ExpectUnusedGauges(std::vector<std::string> names, std::vector<std::vector<int>> deletions);
    // frmMSFSImport offers these; the rows are tried one after another until one is taken.
    ScriptedUser& ExpectImport(std::vector<std::string> names, std::vector<int> rows);
    // frmInfo comes up; act does what the user does with it.
    ScriptedUser& ExpectInfo(std::function<void(const InfoForm&)> act) {
        return Add<void, InfoForm>("information", std::move(act));
    }
    // Runs when the question before it was answered: to look at the disk in the middle of a command.
    ScriptedUser& Then(std::function<void()> action) {
        script.back().then.push_back(std::move(action));
        return *this;
    }

    // Takes note of whatever is shown, answers each message with Yes or OK and closes everything else.
    bool isPatient = false;
    std::vector<std::string> transcript;
    std::vector<ConfigurationRow> configurations; // as offered last
    Answer preset = Answer::Yes;                  // of the question shown last

    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions& options) override;
    std::optional<std::string> AskText(const std::string& prompt, bool /*isSecret*/) override {
        return Play<Typed>("input:" + prompt, prompt);
    }
    std::optional<std::string> ChooseZipFile(const std::string& title, const std::string& directory) override {
        return Play<Typed>("choose:" + title, directory);
    }
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>& rows) override {
        return Play<std::optional<int>>("configurations", configurations = rows);
    }
    void ShowInstallStatus(const std::string& text) override { Play("status:" + text, text); }
    void ShowImportStatus(const std::string& text) override { Play("import:" + text, text); }
    void ShowRename(const RenameForm& form) override { Play("rename", form); }
    void ShowUnusedGauges(const UnusedGaugesForm& form) override { Play("unused gauges", form); }
    void ShowMSFSImport(const ImportForm& form) override { Play("import", form); }
    void ShowInfo(const InfoForm& form) override { Play("information", form); }

  private:
    using Typed = std::optional<std::string>;
    struct Message {
        MessageButtons buttons;
        MessageIcon icon;
        bool hasCheckBox;
    };
    struct Step {
        std::string text;
        std::any act; // a function of what is shown, that gives the answer
        std::vector<std::function<void()>> then = {};
    };
    template<class Reply = void, class Form = std::string>
    ScriptedUser& Add(std::string text, std::type_identity_t<std::function<Reply(const Form&)>> act) {
        script.push_back({std::move(text), std::move(act)});
        return *this;
    }
    // What the next step does; nothing, after a failure, when it does not expect this.
    std::any Take(const std::string& text, const std::type_info& kind);
    template<class Reply = void, class Form>
    Reply Play(const std::string& text, const Form& form) {
        using Act = std::function<Reply(const Form&)>;
        const std::any act = Take(text, typeid(Act));
        return act.has_value() ? std::any_cast<const Act&>(act)(form) : Reply();
    }

    std::deque<Step> script;
};

} // namespace korvadex::test
