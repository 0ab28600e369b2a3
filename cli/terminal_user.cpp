#include "cli/terminal_user.h"

#include "cli/console.h"
#include "package/reduce_staging.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace korvadex {

namespace {

constexpr const char* AnswerAdvice = "(Nobody has answered this.  Start the command on a terminal, or give it --answer "
                                     "yes or --answer no.)";
constexpr const char* PersonAdvice = "(This cannot be taken back: only somebody at a terminal can say Yes to it.)";
constexpr const char* ChoiceAdvice = "(Nobody has answered this.  Start the command on a terminal.)";

bool IsOneOf(const std::string& text, std::initializer_list<const char*> words) {
    return std::ranges::any_of(words, [&](const char* word) { return EqualNoCase(text, word); });
}

} // namespace

void TerminalUser::LeaveOpen(const std::string& question, const std::string& advice) {
    screen.Warn(About() + question + "\r\n" + advice);
    hasOpenQuestion = true;
    throw Asked{};
}

std::string TerminalUser::ReadAnswer() {
    std::string line;
    if (!screen.ReadLine(line)) {
        hasOpenQuestion = true;
        screen.Warn("");
        throw Asked{};
    }
    return std::string(Trim(line));
}

bool TerminalUser::AskTerminal(const std::string& question, MessageButtons buttons) {
    const bool isYesNo = buttons == MessageButtons::YesNo;
    for (;;) {
        screen.Ask(About() + question + (isYesNo ? "  [yes/no] " : "  [ok/cancel] "));
        const std::string answer = ReadAnswer();
        if (IsOneOf(answer, {"y", "yes", "ok", "o"}))
            return true;
        if (IsOneOf(answer, {"n", "no", "cancel", "c"}))
            return false;
    }
}

bool TerminalUser::IsYes(const std::string& question, MessageButtons buttons, bool isWarning, bool isForGood) {
    if (std::exchange(isConfirmed, false) && !isWarning)
        return true;
    if (CanAsk())
        return AskTerminal(question, buttons);
    const bool isYes = standing == StandingAnswer::Yes;
    if (isStarting)
        LeaveOpen(question, ChoiceAdvice);
    if (!isYes && standing != StandingAnswer::No)
        LeaveOpen(question, AnswerAdvice);
    if (isYes && isForGood)
        LeaveOpen(question, PersonAdvice);
    screen.Warn(About() + question + (isYes ? "  [yes]" : "  [no]"));
    return isYes;
}

CheckedAnswer TerminalUser::ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                                        const MessageOptions& options) {
    const bool isWarning = icon == MessageIcon::Exclamation || icon == MessageIcon::Critical;
    if (buttons == MessageButtons::Ok) {
        isWarning ? screen.Warn(text) : screen.Say(text);
        wasWarned = wasWarned || isWarning;
        return {Answer::Ok, false};
    }
    const bool isYes = IsYes(text, buttons, isWarning, isWarning && options.preset == Answer::No);
    if (buttons == MessageButtons::YesNo)
        return {isYes ? Answer::Yes : Answer::No, false};
    return {isYes ? Answer::Ok : Answer::Cancel, false};
}

std::optional<std::string> TerminalUser::AskText(const std::string& prompt, bool isSecret) {
    if (!CanAsk())
        LeaveOpen(prompt, ChoiceAdvice);
    screen.Ask(prompt + " ");
    std::string text;
    if (!isSecret) {
        text = ReadAnswer();
    } else {
        const SilentInput silent;
        text = ReadAnswer();
        screen.Warn("");
    }
    return text.empty() ? std::nullopt : std::optional(text);
}

int TerminalUser::Choose(const std::string& question, const std::vector<std::string>& lines) {
    std::string list = question;
    for (std::size_t i = 0; i < lines.size(); ++i)
        list += "\r\n" + std::to_string(i + 1) + "  " + lines[i];
    if (!CanAsk())
        LeaveOpen(list, ChoiceAdvice);
    for (screen.Warn(list);;) {
        screen.Ask("The number: ");
        const std::string answer = ReadAnswer();
        std::size_t number = 0;
        const auto [end, error] = std::from_chars(answer.data(), answer.data() + answer.size(), number);
        if (error == std::errc() && end == answer.data() + answer.size() && number >= 1 && number <= lines.size())
            return static_cast<int>(number) - 1;
    }
}

std::optional<int> TerminalUser::ChooseConfiguration(const std::vector<ConfigurationRow>& rows) {
    std::vector<std::string> lines;
    for (const ConfigurationRow& row : rows)
        lines.push_back(row.text + (row.detail.empty() ? "" : ", " + row.detail));
    return Choose("This aircraft has several configurations.  Which one is to be kept?", lines);
}

std::optional<std::string> TerminalUser::ChooseCategory(const std::string& prompt,
                                                        const std::vector<std::string>& categories,
                                                        const std::string&) {
    if (category)
        return std::exchange(category, std::nullopt);
    const SubjectScope about(*this, "");
    std::string list = prompt;
    for (const std::string& each : categories)
        list += "\r\n  " + each;
    if (wasWarned && !CanAsk()) // of what was given
        return std::nullopt;
    if (!CanAsk())
        LeaveOpen(list, "(--category NAME answers this.)");
    screen.Ask(list + "\r\nThe category: ");
    const std::string answer = ReadAnswer();
    return answer.empty() ? std::nullopt : std::optional(answer);
}

std::optional<LocationsEntry> TerminalUser::ShowLocations(Settings& settings, const LocationsForm&) {
    return LocationsEntry{"", locations.value_or(settings.locations)};
}

void TerminalUser::ShowUnusedGauges(const UnusedGaugesForm& form) {
    useUnusedGauges(form);
}

void TerminalUser::ShowHistory(HistoryEditor& history) {
    useHistory(history);
}

// No command of the command line leads to these.

std::optional<std::string> TerminalUser::ChooseZipFile(const std::string& title, const std::string&) {
    LeaveOpen(title, ChoiceAdvice);
}

void TerminalUser::ShowRename(const RenameForm&) {
    LeaveOpen("It needs a new name.", ChoiceAdvice);
}

void TerminalUser::ShowMSFSImport(const ImportForm&) {
    LeaveOpen("The aircraft has to be chosen.", ChoiceAdvice);
}

void TerminalUser::ShowInfo(const InfoForm&) {
    LeaveOpen("Its information has to be entered.", ChoiceAdvice);
}

void TerminalUser::ShowLocationProfiles(ProfileEditor&) {
    LeaveOpen("The locations have to be entered.", ChoiceAdvice);
}

std::optional<int> TerminalUser::ChooseAircraft(const std::vector<AircraftPart>&) {
    LeaveOpen("One of several aircraft has to be chosen.", ChoiceAdvice);
}

} // namespace korvadex
