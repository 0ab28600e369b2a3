// A small drive for one run, in memory where the directory of temporary files is, and a user who takes what is offered.
#pragma once

#include "package/command_context.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace korvadex::fuzz {

// Says Yes and OK, types the password "secret" and closes every other dialog, after what is set here.
class WillingUser : public UserDialogs {
  public:
    std::function<void(const InfoForm& form)> info;
    int configuration = -1; // the row picked; -1: none
    int patience = 5;       // so many times Yes

    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions& options) override;
    std::optional<std::string> AskText(const std::string& /*prompt*/, bool /*isSecret*/) override { return "secret"; }
    std::optional<std::string> ChooseZipFile(const std::string& /*title*/, const std::string& /*directory*/) override {
        return std::nullopt;
    }
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>& rows) override;
    void ShowInstallStatus(const std::string& /*text*/) override {}
    void ShowImportStatus(const std::string& /*text*/) override {}
    void ShowRename(const RenameForm& /*form*/) override {}
    void ShowUnusedGauges(const UnusedGaugesForm& /*form*/) override {}
    void ShowMSFSImport(const ImportForm& /*form*/) override {}
    void ShowInfo(const InfoForm& form) override {
        if (info)
            info(form);
    }
};

// Every entry of a drive as the host has it: "Staging\panel\", "Staging\panel\panel.cfg" with its bytes, a link as
// "Staging\panel>".
using Entries = std::map<std::string, std::string>;
// Those that do not lie in the directory, which ends in a backslash.
Entries Outside(std::string_view directory, Entries entries);
// There is nothing of the program's own, and no link.
bool IsClean(const Entries& entries);

// "Staging", "Hangar\Jets", "FS\aircraft" and "FS\gauges" stand on C:, with a gauge that is the user's own.
class Drive {
  public:
    Drive();
    ~Drive();
    Drive(const Drive&) = delete;
    Drive& operator=(const Drive&) = delete;

    // With its directories; the path is relative to C:\.
    void Put(std::string_view relative, std::string_view bytes);
    std::string Get(std::string_view relative) const;
    Entries Tree() const;

    CommandContext& Context() { return *context; }
    FileSystem& Files() { return *files; }

    WillingUser user;

  private:
    std::string HostPath(std::string_view relative) const;
    void AddTree(const std::string& directory, Entries& entries) const;

    std::string hostRoot;
    std::unique_ptr<FileSystem> files;
    std::unique_ptr<Launcher> launcher;
    std::unique_ptr<CommandDisplay> display;
    Locations locations;
    WalkLimits limits;
    std::unique_ptr<CommandContext> context;
};

} // namespace korvadex::fuzz
