// What a command can ask the user in the middle of its work. The windows answer with modal dialogs, the tests
// with a script.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace korvadex {

enum class MessageIcon { None, Information, Exclamation, Critical };
enum class MessageButtons { Ok, OkCancel, YesNo };
enum class Answer { Ok, Cancel, Yes, No };

struct MessageOptions {
    std::string checkBox = {};   // such as "Do this for all further duplicates"; "" for none
    Answer preset = Answer::Yes; // the button of a Yes/No question that Enter presses
};
struct CheckedAnswer {
    Answer answer;
    bool isChecked;
};

// What the windows of single commands take in; each stands beside its command.
struct RenameForm;       // package/rename.h
struct ConfigurationRow; // package/reduce_staging.h
struct UnusedGaugesForm; // sim/unused_gauges.h
struct ImportForm;       // sim/import.h
struct InfoForm;         // media/aircraft_info.h

class UserDialogs {
  public:
    virtual ~UserDialogs() = default;

    // What the running command is about: stands in the title line of every message and question.
    std::string subject;
    // Whether he is asked also while many packages are gone through.
    virtual bool IsAskedInBatches() const { return false; }
    // Called before the user is told something, and reads it for as long as he likes.
    std::function<void()> beforeTell;

    // Plain text, lines separated by CR LF. A Yes/No box cannot be closed unanswered; OK/Cancel takes Escape
    // as Cancel.
    virtual CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                                      const MessageOptions& options) = 0;
    // One line of text (shown as dots when secret); none when the user cancelled.
    virtual std::optional<std::string> AskText(const std::string& prompt, bool isSecret) = 0;
    // The same, with a text to begin with.
    virtual std::optional<std::string> AskName(const std::string& prompt, const std::string& /*present*/) {
        return AskText(prompt, false);
    }
    // An existing zip archive; the directory to open on may be "". None when the user cancelled.
    virtual std::optional<std::string> ChooseZipFile(const std::string& title, const std::string& directory) = 0;
    // The same, one or several of them; none when the user cancelled.
    virtual std::vector<std::string> ChooseZipFiles(const std::string& title, const std::string& directory) {
        const auto chosen = ChooseZipFile(title, directory);
        return chosen ? std::vector{*chosen} : std::vector<std::string>();
    }

    // frmMultipleCfg: the row picked, from 0. A dialog that was closed picks nothing.
    virtual std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>& rows) = 0;
    // frmInstallStatus and frmImportStatus, both captioned "Gauge Crosscheck".
    virtual void ShowInstallStatus(const std::string& text) = 0;
    virtual void ShowImportStatus(const std::string& text) = 0;
    // These come back when the dialog is closed, in whatever way.
    virtual void ShowRename(const RenameForm& form) = 0;
    virtual void ShowUnusedGauges(const UnusedGaugesForm& form) = 0;
    virtual void ShowMSFSImport(const ImportForm& form) = 0;
    virtual void ShowInfo(const InfoForm& form) = 0;

    void Tell(const std::string& text, MessageIcon icon = MessageIcon::None) {
        if (beforeTell)
            beforeTell();
        ShowMessage(text, MessageButtons::Ok, icon, {});
    }
    // No is the preset where a Yes deletes from the Hangar, or what cannot be taken back.
    bool AskYesNo(const std::string& text, MessageIcon icon = MessageIcon::None, Answer preset = Answer::Yes) {
        return ShowMessage(text, MessageButtons::YesNo, icon, {.preset = preset}).answer == Answer::Yes;
    }
    bool AskOkCancel(const std::string& text, MessageIcon icon = MessageIcon::None) {
        return ShowMessage(text, MessageButtons::OkCancel, icon, {}).answer == Answer::Ok;
    }
};

// For as long as it lives this is the subject.
class SubjectScope {
  public:
    SubjectScope(UserDialogs& dialogs, std::string subject)
        : user(dialogs), before(std::exchange(user.subject, std::move(subject))) {}
    SubjectScope(const SubjectScope&) = delete;
    SubjectScope& operator=(const SubjectScope&) = delete;
    ~SubjectScope() { user.subject = std::move(before); }

  private:
    UserDialogs& user;
    std::string before;
};

// Thrown from deep inside a command to end the program; only the outermost handler of a command catches it.
struct ProgramEnd {};

} // namespace korvadex
