#include "tests/support/scripted_user.h"

#include <gtest/gtest.h>

#include <utility>

namespace korvadex::test {

namespace {

// "\r\n" as "\n", so that expectations are easy to write and a lone CR or LF still shows.
std::string ForReading(const std::string& text) {
    std::string readable;
    for (const char letter : text) {
        if (letter != '\n')
            readable += letter;
        else if (readable.ends_with('\r'))
            readable.back() = '\n';
        else
            readable += "<LF>";
    }
    return readable;
}

bool Fits(std::string_view expected, std::string_view shown) {
    std::size_t gap = expected.find("...");
    while (gap != expected.npos && gap > 0 && expected[gap - 1] == ' ')
        gap = expected.find("...", gap + 3);
    if (gap == expected.npos)
        return shown == expected;
    if (!shown.starts_with(expected.substr(0, gap)))
        return false;
    for (std::size_t at = gap; at <= shown.size(); ++at)
        if (Fits(expected.substr(gap + 3), shown.substr(at)))
            return true;
    return false;
}

Answer Agreement(MessageButtons buttons) {
    return buttons == MessageButtons::YesNo ? Answer::Yes : Answer::Ok;
}

// That changes least.
Answer Refusal(MessageButtons buttons) {
    return buttons == MessageButtons::YesNo      ? Answer::No
           : buttons == MessageButtons::OkCancel ? Answer::Cancel
                                                 : Answer::Ok;
}

} // namespace

void ScriptedUser::Finish() {
    for (const auto& step : std::exchange(script, {}))
        ADD_FAILURE() << "never asked: " << step.text;
}

ScriptedUser& ScriptedUser::Expect(std::string text, Answer answer, bool isChecked, std::optional<MessageIcon> icon) {
    return Add<std::optional<CheckedAnswer>, Message>(std::move(text), [=](const Message& shown) {
        EXPECT_TRUE(answer == Agreement(shown.buttons) || answer == Refusal(shown.buttons)) << "no such button";
        EXPECT_TRUE(!isChecked || shown.hasCheckBox) << "no check box";
        EXPECT_EQ(icon.value_or(shown.icon), shown.icon);
        return CheckedAnswer{answer, isChecked};
    });
}

ScriptedUser& ScriptedUser::ExpectText(const std::string& prompt, Typed answer) {
    return Add<Typed>("input:" + prompt, [=](auto&) { return answer; });
}

ScriptedUser& ScriptedUser::ExpectZipFile(Typed answer) {
    return Add<Typed>("choose:Process ZIP File ...", [=](auto&) { return answer; });
}

ScriptedUser& ScriptedUser::ExpectConfigurations(std::vector<std::string> items, std::optional<int> answer) {
    using Rows = std::vector<ConfigurationRow>;
    return Add<std::optional<int>, Rows>("configurations", [=](const Rows& rows) {
        std::vector<std::string> offered;
        for (const auto& row : rows)
            offered.push_back(row.text);
        EXPECT_EQ(offered, items);
        return answer;
    });
}

ScriptedUser& ScriptedUser::ExpectRename(RenameEntry shown, bool hasTitle, std::vector<RenameEntry> entries) {
    return Add<void, RenameForm>("rename", [=](const RenameForm& form) {
        EXPECT_EQ(form.hasTitle, hasTitle);
        EXPECT_EQ(form.entry.packageName, shown.packageName);
        EXPECT_EQ(form.entry.aircraftTitle, shown.aircraftTitle);
        for (std::size_t i = 0; i < entries.size(); ++i)
            EXPECT_EQ(form.accept(entries[i]), i + 1 == entries.size()) << i;
    });
}

ScriptedUser& ScriptedUser::ExpectUnusedGauges(std::vector<std::string> names,
                                               std::vector<std::vector<int>> deletions) {
    return Add<void, UnusedGaugesForm>("unused gauges", [=, this](const UnusedGaugesForm& form) {
        int last = 0;
        auto gauges = form.search([&](int value, int maximum) {
            EXPECT_TRUE(value >= std::max(last, 1) && value <= maximum) << value << " of " << maximum;
            last = value;
        });
        std::vector<std::string> found;
        for (const auto& gauge : gauges)
            found.push_back(gauge.name);
        EXPECT_EQ(found, names);
        for (const auto& rows : deletions)
            gauges = form.remove(rows);
        for (const auto& gauge : gauges)
            transcript.push_back("left: " + gauge.name);
    });
}

ScriptedUser& ScriptedUser::ExpectImport(std::vector<std::string> names, std::vector<int> rows) {
    return Add<void, ImportForm>("import", [=](const ImportForm& form) {
        EXPECT_EQ(form.names, names);
        for (std::size_t i = 0; i < rows.size(); ++i)
            EXPECT_EQ(form.accept(rows[i]), i + 1 == rows.size()) << "row " << rows[i];
    });
}

std::any ScriptedUser::Take(const std::string& text, const std::type_info& kind) {
    transcript.push_back(ForReading(text));
    if (isPatient)
        return {};
    const std::string& shown = transcript.back();
    if (script.empty() || !Fits(script.front().text, shown) || script.front().act.type() != kind) {
        ADD_FAILURE() << "unexpected: " << shown
                      << "\n  expected: " << (script.empty() ? "nothing more" : script.front().text);
        return {};
    }
    const Step step = std::move(script.front());
    script.pop_front();
    for (const auto& action : step.then)
        action();
    return step.act;
}

CheckedAnswer ScriptedUser::ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                                        const MessageOptions& options) {
    SCOPED_TRACE(text);
    preset = options.preset;
    const Message shown{buttons, icon, !options.checkBox.empty()};
    return Play<std::optional<CheckedAnswer>>(text, shown)
        .value_or(CheckedAnswer{isPatient ? Agreement(buttons) : Refusal(buttons), false});
}

} // namespace korvadex::test
