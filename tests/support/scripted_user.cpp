#include "tests/support/scripted_user.h"

#include <gtest/gtest.h>

namespace korvadex::test {

namespace {

// "\r\n" as "\n", so that expectations are easy to write and a lone CR or LF still shows.
std::string ForReading(const std::string& text) {
    std::string readable;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 2, "\r\n") == 0)
            readable += text[++i];
        else
            readable += text[i] == '\n' ? "<LF>" : text.substr(i, 1);
    }
    return readable;
}

bool Fits(const std::string& expected, const std::string& shown) {
    if (expected.ends_with("..."))
        return shown.starts_with(expected.substr(0, expected.size() - 3));
    return shown == expected;
}

bool IsOffered(Answer answer, MessageButtons buttons) {
    if (buttons == MessageButtons::YesNo)
        return answer == Answer::Yes || answer == Answer::No;
    return answer == Answer::Ok || (answer == Answer::Cancel && buttons == MessageButtons::OkCancel);
}

} // namespace

ScriptedUser::~ScriptedUser() {
    for (const auto& step : script)
        ADD_FAILURE() << "never asked: " << step.text;
}

ScriptedUser& ScriptedUser::Add(Step step) {
    script.push_back(std::move(step));
    return *this;
}

std::optional<ScriptedUser::Step> ScriptedUser::Take(Kind kind, const std::string& text) {
    const std::string shown = ForReading(text);
    transcript.push_back(shown);
    if (script.empty() || script.front().kind != kind || !Fits(script.front().text, shown)) {
        ADD_FAILURE() << "unexpected: " << shown
                      << "\n  expected: " << (script.empty() ? "nothing more" : script.front().text);
        return std::nullopt;
    }
    Step step = std::move(script.front());
    script.pop_front();
    if (step.then)
        step.then();
    return step;
}

CheckedAnswer ScriptedUser::ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                                        const MessageOptions& options) {
    const auto step = Take(Kind::Message, text);
    // A surprise is answered in the way that changes least.
    if (!step)
        return {buttons == MessageButtons::YesNo      ? Answer::No
                : buttons == MessageButtons::OkCancel ? Answer::Cancel
                                                      : Answer::Ok,
                false};
    EXPECT_TRUE(IsOffered(step->answer, buttons)) << "no such button: " << text;
    EXPECT_TRUE(!step->isChecked || !options.checkBox.empty()) << "no check box: " << text;
    if (step->icon) {
        EXPECT_EQ(*step->icon, icon) << text;
    }
    return {step->answer, step->isChecked};
}

std::optional<std::string> ScriptedUser::AskText(const std::string& prompt, bool /*isSecret*/) {
    const auto step = Take(Kind::Text, prompt);
    return step ? step->typed : std::nullopt;
}

std::optional<std::string> ScriptedUser::ChooseZipFile(const std::string& title,
                                                       const std::string& /*directory*/) {
    const auto step = Take(Kind::ZipFile, title);
    return step ? step->typed : std::nullopt;
}

std::optional<int> ScriptedUser::ChooseConfiguration(const std::vector<std::string>& items) {
    const auto step = Take(Kind::Configurations, "");
    if (!step)
        return std::nullopt;
    EXPECT_EQ(items, step->items);
    return step->row;
}

} // namespace korvadex::test
