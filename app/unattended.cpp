#include "app/unattended.h"

#include "package/reduce_staging.h"

namespace korvadex {

namespace {

// The lines of a report as one, without the heading.
std::string InOneLine(const std::string& text) {
    std::string line;
    for (std::size_t at = text.find("\r\n"); at != std::string::npos;) {
        const std::size_t end = text.find("\r\n", at += 2);
        if (const std::string part = text.substr(at, end - at); !part.empty())
            line += (line.empty() ? "" : " ") + part;
        at = end;
    }
    return line;
}

} // namespace

bool UnattendedUser::Refuse(const std::string& question) {
    notes.push_back(question);
    hasAsked = true;
    return false;
}

CheckedAnswer UnattendedUser::ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon,
                                          const MessageOptions&) {
    if (buttons != MessageButtons::Ok) {
        Refuse(text);
        throw Asked{};
    }
    if (text != "Done.")
        notes.push_back(text);
    return {Answer::Ok, false};
}

std::optional<std::string> UnattendedUser::AskText(const std::string& prompt, bool) {
    Refuse(prompt);
    return std::nullopt;
}

std::optional<std::string> UnattendedUser::ChooseZipFile(const std::string& title, const std::string&) {
    Refuse(title);
    return std::nullopt;
}

std::optional<int> UnattendedUser::ChooseConfiguration(const std::vector<ConfigurationRow>&) {
    Refuse("This aircraft has several configurations.");
    return std::nullopt;
}

void UnattendedUser::ShowInstallStatus(const std::string& text) {
    if (!text.ends_with("Installation complete."))
        notes.push_back(InOneLine(text));
}

void UnattendedUser::ShowImportStatus(const std::string& text) {
    notes.push_back(InOneLine(text));
}

void UnattendedUser::ShowRename(const RenameForm&) {
    Refuse("It needs a new name.");
}

void UnattendedUser::ShowUnusedGauges(const UnusedGaugesForm&) {
    Refuse("Its gauges have to be chosen.");
}

void UnattendedUser::ShowMSFSImport(const ImportForm&) {
    Refuse("The aircraft has to be chosen.");
}

void UnattendedUser::ShowInfo(const InfoForm&) {
    Refuse("Its information has to be entered.");
}

} // namespace korvadex
