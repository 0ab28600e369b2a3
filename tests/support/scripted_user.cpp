#include "tests/support/scripted_user.h"

#include <gtest/gtest.h>

namespace korvadex::test {

namespace {

// "\r\n" as "\n", so that expectations are easy to write and a lone CR or LF still shows.
std::string ForReading(const std::string& text) {
    std::string readable;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            readable += '\n';
            ++i;
        } else if (text[i] == '\n') {
            readable += "<LF>";
        } else {
            readable += text[i];
        }
    }
    return readable;
}

bool Fits(std::string_view expected, std::string_view shown) {
    const std::size_t gap = expected.find("...");
    if (gap == expected.npos)
        return shown == expected;
    if (!shown.starts_with(expected.substr(0, gap)))
        return false;
    const std::string_view rest = expected.substr(gap + 3);
    for (std::size_t at = gap; at <= shown.size(); ++at)
        if (Fits(rest, shown.substr(at)))
            return true;
    return false;
}

bool IsOffered(Answer answer, MessageButtons buttons) {
    switch (buttons) {
    case MessageButtons::Ok:
        return answer == Answer::Ok;
    case MessageButtons::OkCancel:
        return answer == Answer::Ok || answer == Answer::Cancel;
    case MessageButtons::YesNo:
        return answer == Answer::Yes || answer == Answer::No;
    }
    return false;
}

} // namespace

ScriptedUser::~ScriptedUser() {
    for (const auto& step : script)
        ADD_FAILURE() << "never asked: " << step.text;
}

ScriptedUser& ScriptedUser::Expect(std::string text, Answer answer, bool isChecked) {
    script.push_back({.kind = Kind::Message, .text = std::move(text), .answer = answer, .isChecked = isChecked});
    return *this;
}

ScriptedUser& ScriptedUser::Expect(std::string text, Answer answer, MessageIcon icon) {
    Expect(std::move(text), answer);
    script.back().icon = icon;
    return *this;
}

ScriptedUser& ScriptedUser::ExpectText(std::string prompt, std::optional<std::string> answer) {
    script.push_back({.kind = Kind::Text, .text = std::move(prompt), .typed = std::move(answer)});
    return *this;
}

ScriptedUser& ScriptedUser::ExpectZipFile(std::optional<std::string> answer) {
    script.push_back({.kind = Kind::ZipFile, .text = "Process ZIP File ...", .typed = std::move(answer)});
    return *this;
}

ScriptedUser& ScriptedUser::ExpectConfigurations(std::vector<std::string> items, std::optional<int> answer) {
    script.push_back(
        {.kind = Kind::Configurations, .text = "configurations", .items = std::move(items), .row = answer});
    return *this;
}

ScriptedUser& ScriptedUser::ExpectInstallStatus(std::string text) {
    script.push_back({.kind = Kind::InstallStatus, .text = std::move(text)});
    return *this;
}

ScriptedUser& ScriptedUser::ExpectImportStatus(std::string text) {
    script.push_back({.kind = Kind::ImportStatus, .text = std::move(text)});
    return *this;
}

ScriptedUser& ScriptedUser::ExpectRename(RenameEntry shown, bool hasTitle, std::vector<RenameEntry> entries) {
    entries.insert(entries.begin(), std::move(shown));
    script.push_back({.kind = Kind::Rename, .text = hasTitle ? "rename" : "rename...", .entries = std::move(entries)});
    return *this;
}

ScriptedUser& ScriptedUser::ExpectUnusedGauges(std::vector<std::string> names,
                                               std::vector<std::vector<int>> deletions) {
    script.push_back(
        {.kind = Kind::UnusedGauges, .text = "unused gauges", .items = std::move(names), .rows = std::move(deletions)});
    return *this;
}

ScriptedUser& ScriptedUser::ExpectImport(std::vector<std::string> names, std::vector<int> rows) {
    script.push_back({.kind = Kind::Import, .text = "import", .items = std::move(names), .rows = {rows}});
    return *this;
}

ScriptedUser& ScriptedUser::ExpectInfo(std::function<void(const InfoForm&)> act) {
    script.push_back({.kind = Kind::Info, .text = "information", .info = std::move(act)});
    return *this;
}

ScriptedUser& ScriptedUser::Then(std::function<void()> action) {
    script.back().then = std::move(action);
    return *this;
}

std::optional<ScriptedUser::Step> ScriptedUser::Take(Kind kind, const std::string& shown) {
    transcript.push_back(shown);
    if (isPatient)
        return std::nullopt;
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
    if (isPatient) {
        Take(Kind::Message, ForReading(text));
        return {buttons == MessageButtons::YesNo ? Answer::Yes : Answer::Ok, false};
    }
    const auto step = Take(Kind::Message, ForReading(text));
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
    const auto step = Take(Kind::Text, ForReading(prompt));
    return step ? step->typed : std::nullopt;
}

std::optional<std::string> ScriptedUser::ChooseZipFile(const std::string& title, const std::string& /*directory*/) {
    const auto step = Take(Kind::ZipFile, title);
    return step ? step->typed : std::nullopt;
}

std::optional<int> ScriptedUser::ChooseConfiguration(const std::vector<ConfigurationRow>& rows) {
    const auto step = Take(Kind::Configurations, "configurations");
    if (!step)
        return std::nullopt;
    configurations = rows;
    std::vector<std::string> items;
    for (const auto& row : rows)
        items.push_back(row.text);
    EXPECT_EQ(items, step->items);
    return step->row;
}

void ScriptedUser::ShowInstallStatus(const std::string& text) {
    Take(Kind::InstallStatus, ForReading(text));
}

void ScriptedUser::ShowImportStatus(const std::string& text) {
    Take(Kind::ImportStatus, ForReading(text));
}

void ScriptedUser::ShowRename(const RenameForm& form) {
    const auto step = Take(Kind::Rename, form.hasTitle ? "rename" : "rename without a title");
    if (!step)
        return;
    EXPECT_EQ(form.entry.packageName, step->entries[0].packageName);
    EXPECT_EQ(form.entry.aircraftTitle, step->entries[0].aircraftTitle);
    for (std::size_t i = 1; i < step->entries.size(); ++i)
        EXPECT_EQ(form.accept(step->entries[i]), i + 1 == step->entries.size()) << i;
}

void ScriptedUser::ShowUnusedGauges(const UnusedGaugesForm& form) {
    const auto step = Take(Kind::UnusedGauges, "unused gauges");
    if (!step)
        return;
    int last = 0;
    auto gauges = form.search([&](int value, int maximum) {
        EXPECT_TRUE(value >= std::max(last, 1) && value <= maximum) << value << " of " << maximum;
        last = value;
    });
    std::vector<std::string> names;
    for (const auto& gauge : gauges)
        names.push_back(gauge.name);
    EXPECT_EQ(names, step->items);
    for (const auto& rows : step->rows)
        gauges = form.remove(rows);
    for (const auto& gauge : gauges)
        transcript.push_back("left: " + gauge.name);
}

void ScriptedUser::ShowMSFSImport(const ImportForm& form) {
    const auto step = Take(Kind::Import, "import");
    if (!step)
        return;
    EXPECT_EQ(form.names, step->items);
    const std::vector<int>& rows = step->rows.front();
    for (std::size_t i = 0; i < rows.size(); ++i)
        EXPECT_EQ(form.accept(rows[i]), i + 1 == rows.size()) << "row " << rows[i];
}

void ScriptedUser::ShowInfo(const InfoForm& form) {
    if (const auto step = Take(Kind::Info, "information"))
        step->info(form);
}

} // namespace korvadex::test
