// Who stands in for the user while many packages are gone through: takes down what is told, and answers no question.
#pragma once

#include "package/dialogs.h"

#include <string>
#include <vector>

namespace korvadex {

// Thrown at a question that nobody answers: what the package's command, or a single one, has changed is taken back.
struct Asked {};

class UnattendedUser : public UserDialogs {
  public:
    // answering: who may know answers all the same, or throws Asked.
    explicit UnattendedUser(UserDialogs* answering = nullptr) : someone(answering) {}

    // What was told, but for "Done.", and what was asked.
    std::vector<std::string> notes;
    // Of what needs an answer that cannot be thrown at this is the only trace: it was given up.
    bool hasAsked = false;

    // The question of one who goes on when the answer is No; that answer.
    bool Refuse(const std::string& question);

    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions& options) override;
    std::optional<std::string> AskText(const std::string& prompt, bool isSecret) override;
    std::optional<std::string> ChooseZipFile(const std::string& title, const std::string& directory) override;
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>& rows) override;
    // Nothing to say when all that it needs is there.
    void ShowInstallStatus(const std::string& text) override;
    void ShowImportStatus(const std::string& text) override;
    void ShowRename(const RenameForm& form) override;
    void ShowUnusedGauges(const UnusedGaugesForm& form) override;
    void ShowMSFSImport(const ImportForm& form) override;
    void ShowInfo(const InfoForm& form) override;

  private:
    UserDialogs* const someone;
};

} // namespace korvadex
