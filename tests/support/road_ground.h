// A drive with a simulator and a Hangar, the whole program on it, and a user who answers by mood. Whatever is said is
// judged while it stands, and after each command what is always true is looked at.
#pragma once

#include "app/program.h"
#include "tests/support/command_fixture.h"
#include "tests/support/fake_converter.h"
#include "tests/support/random_addon.h"
#include "tests/support/random_roads.h"
#include "tests/support/recording_window.h"

#include <functional>
#include <memory>

namespace korvadex::test {

using FileTree = std::map<std::string, std::string>; // as TemporaryDrive::Tree
// File names, lower case and without the number of a renamed document, with the bytes.
using Contents = std::set<std::pair<std::string, std::string>>;

bool IsJunk(const std::string& path);           // of a file manager
std::string PlainName(const std::string& path); // "Images\Readme(2).TXT" -> "readme.txt"
// What a package consists of: neither junk nor what the program keeps for itself.
Contents ContentsOf(const FileTree& tree);
// A package's name in the simulator.
std::string SimName(std::string name);

enum class Mood { Yes, Hesitant, Random }; // hesitant: No at first, Yes when the command is given again

struct Said {
    std::string text;
    Answer answer = Answer::Ok;
    MessageButtons buttons = MessageButtons::Ok;
    MessageIcon icon = MessageIcon::None;
};

class AutomaticUser : public ScriptedUser {
  public:
    AutomaticUser(Dice& roadDice, std::function<void(const Said&)> judgeText)
        : dice(roadDice), judge(std::move(judgeText)) {
        isPatient = true;
    }

    bool saysYes = true, isRandom = false;
    std::function<std::optional<int>(const std::vector<std::string>& items)> choose; // a configuration
    std::string toImport;
    std::vector<Said> said; // since the command began

    bool HasSaid(std::string_view text) const {
        return std::ranges::any_of(said, [&](const Said& one) { return one.text.find(text) != text.npos; });
    }
    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions& options) override;
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>& rows) override {
        std::vector<std::string> items;
        for (const auto& row : rows)
            items.push_back(row.text);
        return choose(items);
    }
    void ShowInstallStatus(const std::string& text) override { Take({.text = text}); }
    void ShowImportStatus(const std::string& text) override { Take({.text = text}); }
    void ShowMSFSImport(const ImportForm& form) override;

  private:
    void Take(const Said& one) {
        said.push_back(one);
        judge(one);
    }
    Dice& dice;
    std::function<void(const Said&)> judge;
};

// Thrown where a road cannot go on; a violation was noted before.
struct RoadEnd {};

class RoadGround {
  public:
    RoadGround(std::string title, std::uint64_t diceSeed, Mood mood, RoadReport& report);

  protected:
    void StartAgainSometimes();
    // The command, and then what is always true.
    void Do(const std::string& what, const std::function<void()>& command);
    // The same, and with the answers Yes once more where the first time did not do it. A command that was declined
    // changes nothing (unless it has done a part before it asks).
    void Attempt(const std::string& what, const std::function<void()>& command, const std::function<bool()>& isDone,
                 bool asksFirst = true);
    void Violation(const std::string& text);
    // Notes a violation for each file of `wanted` that is not there.
    void ExpectHolds(const std::string& where, const Contents& there, const Contents& wanted);
    // But for effects, sounds, modules and what its own aircraft names, it is as it was.
    void ExpectSimulator();
    void CheckKept();

    std::string PackagePath() const { return "Hangar\\" + category + "\\" + package + "\\"; }
    std::string InstalledPath() const { return "FS\\aircraft\\" + SimName(package) + "\\"; }
    bool IsInstalled() const { return drive.Has(InstalledPath()); }
    bool MayStay(const std::string& pathInSimulator) const;
    // Sometimes read-only, as copied from a CD ROM.
    void PutInSimulator(const std::string& path, const std::string& bytes);

    const std::string title;
    Dice dice;
    const GaugePool pool;
    const Mood mood;
    RoadReport& report;
    TemporaryDrive drive;
    AutomaticUser user;
    RecordingLauncher launcher;
    ScriptedLocations dialogs;
    FakeConverter converter;
    RecordingWindow form;
    std::unique_ptr<Program> program;

    std::string step, category, package; // the latter two: what the road is about at the moment
    RandomAddon addon;                   // the last one that came in
    std::size_t chosen = 0;              // of its configurations
    Contents kept;                       // what must be in Staging or the Hangar ...
    Contents sacrificed;                 // ... unless an answer or a message let it go
    FileTree unpacked;                   // the package, as if it were not compressed
    bool isPacked = false, isByHand = false, isNestedWanted = true, hasLostPanel = false;

  private:
    void Start();
    void Judge(const Said& said);
    void JudgeDuplicate(const Said& said);
    void JudgeLeftBehind(const std::string& text);
    void Count(const Said& said);

    std::map<std::string, std::pair<std::string, FileInfo>> simulator;
    FileTree simulatorTree;
    std::set<std::string> stock; // gauges that an aircraft of the simulator names
};

} // namespace korvadex::test
