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

// The answer of someone who may know it.
template<class Ask>
auto Put(UserDialogs* someone, const std::string& subject, Ask ask) -> std::optional<decltype(ask(*someone))> {
    if (!someone)
        return std::nullopt;
    const SubjectScope about(*someone, subject);
    try {
        return ask(*someone);
    } catch (const Asked&) {
        return std::nullopt;
    }
}

} // namespace

bool UnattendedUser::Refuse(const std::string& question) {
    notes.push_back(question);
    hasAsked = true;
    return false;
}

CheckedAnswer UnattendedUser::ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                                          const MessageOptions& options) {
    if (buttons != MessageButtons::Ok) {
        if (const auto answer = Put(someone, subject,
                                    [&](UserDialogs& user) { return user.ShowMessage(text, buttons, icon, options); }))
            return *answer;
        Refuse(text);
        throw Asked{};
    }
    if (text != "Done.")
        notes.push_back(text);
    return {Answer::Ok, false};
}

std::optional<std::string> UnattendedUser::AskText(const std::string& prompt, bool isSecret) {
    if (const auto text = Put(someone, subject, [&](UserDialogs& user) { return user.AskText(prompt, isSecret); });
        text && *text)
        return *text;
    Refuse(prompt);
    return std::nullopt;
}

std::optional<std::string> UnattendedUser::ChooseZipFile(const std::string& title, const std::string&) {
    Refuse(title);
    return std::nullopt;
}

std::optional<int> UnattendedUser::ChooseConfiguration(const std::vector<ConfigurationRow>& rows) {
    if (const auto row = Put(someone, subject, [&](UserDialogs& user) { return user.ChooseConfiguration(rows); });
        row && *row)
        return *row;
    Refuse("This aircraft has several configurations.");
    return std::nullopt;
}

void UnattendedUser::ShowInstallStatus(const std::string& text) {
    if (!text.ends_with("Installation complete."))
        notes.push_back(InOneLine(text));
}

void UnattendedUser::ShowImportStatus(const std::string& text) {
    if (!text.ends_with("Import will now continue ..."))
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
