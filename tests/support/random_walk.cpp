#include "platform/windows_path.h"
#include "tests/support/faulty_files.h"
#include "tests/support/random_roads.h"
#include "tests/support/road_ground.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <sstream>

namespace korvadex::test {

namespace {

// Says Yes nearly always, and does something in each dialog.
class WalkingUser : public AutomaticUser {
  public:
    explicit WalkingUser(Dice& walkDice) : AutomaticUser(walkDice, [](const Said&) {}), dice(walkDice) {
        choose = [this](const auto& items) { return std::optional(static_cast<int>(dice.Below(items.size()))); };
    }
    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions& options) override {
        saysYes = !dice.OneIn(20);
        return AutomaticUser::ShowMessage(text, buttons, icon, options);
    }
    void ShowRename(const RenameForm& form) override {
        form.accept({"Renamed " + std::to_string(dice.Below(4)), dice.OneIn(2) ? form.entry.aircraftTitle : "Title"});
    }
    // A name that is taken is asked for again.
    std::optional<std::string> AskName(const std::string&, const std::string&) override {
        return dice.OneIn(4) ? std::nullopt : std::optional("Category " + std::to_string(dice.Below(4)));
    }
    void ShowUnusedGauges(const UnusedGaugesForm& form) override {
        if (!form.search([](int, int) {}).empty())
            form.remove({0});
    }
    void ShowMSFSImport(const ImportForm& form) override {
        if (!form.names.empty())
            form.accept(static_cast<int>(dice.Below(form.names.size())));
    }
    void ShowInfo(const InfoForm& form) override {
        AircraftInfo entered = form.info;
        entered.atcId = "N" + std::to_string(dice.Below(1000));
        form.accept(entered);
    }

  private:
    Dice& dice;
};

// What stands here twice comes twice as often.
std::vector<std::string> Listed(const std::string& names) {
    std::vector<std::string> list;
    std::istringstream lines(names);
    for (std::string name; std::getline(lines >> std::ws, name, ',');)
        list.push_back(name);
    return list;
}

const std::vector<std::string>& OnPackage() {
    static const auto list =
        Listed("mnuHangarToMsfs, mnuHangarToMsfs, mnuHangarToMsfs, mnuRemoveFromMsfs, mnuRemoveFromMsfs, "
               "mnuRemoveFromHangar, mnuRename, mnuRename, mnuCreatePanelAlias, mnuPastePanelAlias, "
               "mnuPastePanelAlias, mnuRestoreOldPanel, mnuCreateSoundAlias, mnuPasteSoundAlias, mnuRestoreOldSound, "
               "mnuCopyToStaging, mnuCompress, mnuDecompress, mnuCompressAll, mnuDecompressAll, mnuUninstallCategory, "
               "mnuUninstallAll, mnuUnusedGauges, mnuImportImage, mnuCreateNotes, mnuDeleteNotes, mnuInformation, "
               "make first, delete picture, delete files, delete files, move, move, new category, rename category");
    return list;
}

const std::vector<std::string>& OnStaging() {
    static const auto list = Listed("archive, archive, archive, copy, copy, copy, copy, mnuImportFromMSFS, "
                                    "mnuRemoveStaging, mnuRemovePanelFromStaging, mnuRemoveAircraftFromStaging, "
                                    "mnuRemoveSoundFromStaging, delete files");
    return list;
}

class Walk {
  public:
    Walk(std::string walkTitle, std::uint64_t diceSeed, RoadReport& roadReport)
        : title(std::move(walkTitle)), dice(diceSeed), pool(MakeGaugePool(dice)), report(roadReport), user(dice) {
        drive.Fill("", "Staging\\, Hangar\\Jets\\, Hangar\\Props\\, FS\\aircraft\\, FS\\gauges\\, FS\\effects\\, "
                       "Packed\\, Pictures\\new.jpg=JFIF, FS\\gauges\\unused.gau=MZ unused, FS\\sound\\stock.wav=RIFF");
        drive.Put("App\\kx.ini", "ALTLOCATION0=Main\r\nALTSTAGINGDIR0=" + drive.At("Staging\\") + "\r\nALTHANGARDIR0=" +
                                     drive.At("Hangar\\") + "\r\nALTMSFSDIR0=" + drive.At("FS\\") +
                                     "\r\nALTFIRSTPACKAGE0=\r\nLOCATIONLAST=0\r\nLOCATIONLASTZIP=\r\n");
        for (const auto& [name, versions] : pool)
            if (dice.OneIn(3))
                drive.Put("FS\\gauges\\" + name, dice.Of(versions));
        for (const char* readOnly : {"FS\\gauges\\unused.gau", "FS\\sound\\stock.wav"})
            static_cast<void>(drive.Files().SetReadOnly(drive.At(readOnly), true));
        drive.MakeLink("FS\\aircraft\\Linked", "Pictures");
        dialogs.chosenPictures.files = {drive.At("Pictures\\new.jpg")};
        if (dice.OneIn(2))
            disk.volume = drive.At("FS\\");
        Start();
        states = {Look()};
    }

    void Take(int steps) {
        for (int count = 0; count < steps && !isLost; ++count) {
            ++report.commands;
            const std::size_t way = dice.Below(10);
            if (way < 2)
                GoBack();
            else if (way == 2)
                GoForth();
            else if (way == 3 && dice.OneIn(2))
                Restart();
            else
                GiveCommand();
        }
        while (!isLost && GoBack())
            continue;
    }

  private:
    using State = std::map<std::string, std::string>; // by path: bytes, time and attributes

    State Look() {
        State state;
        for (const auto& [path, bytes] : drive.Tree()) {
            if (path.starts_with("App\\") || path.starts_with("Packed\\"))
                continue;
            const auto full = WithoutBackslash(drive.At(path));
            const auto info = drive.Files().Info(full);
            const auto attributes = drive.Files().Attributes(full);
            const bool hasLock = path == "FS\\" || path == "Hangar\\" || path == "Staging\\"; // it comes and goes
            state[path] = (info && !hasLock ? std::to_string(info->time.time_since_epoch().count()) : "no time") +
                          ", " + (attributes ? *attributes : "no attributes") + ", " + bytes;
        }
        return state;
    }
    // The commands of the history, each time that one is done, undone or redone another.
    std::set<std::string> Entries() {
        std::set<std::string> names;
        const auto listed = drive.Files().List(drive.At("App\\journal"));
        for (const auto& entry : listed ? *listed : std::vector<DirectoryEntry>())
            if (EndsWithNoCase(entry.name, ".done"))
                names.insert(entry.name);
        return names;
    }

    void Start() {
        program = std::make_unique<Program>(disk, launcher, user, dialogs, converter, form, drive.At("App\\"), "");
        program->Start();
    }
    void Restart() {
        step = "restart";
        program->Shutdown();
        form.ends = 0;
        Start();
        Expect(states[at]);
    }

    void Give(const std::string& what, const std::function<void()>& command) {
        if (isLost)
            return;
        known = Entries();
        step = what;
        user.said.clear();
        form.onShow = [this] { NoteEnded(); };
        command();
        form.onShow = {};
        if (form.ends > 0) { // several aircraft in Staging, and a No
            form.ends = 0;
            Start();
        }
        if (!NoteEnded() && !isLost)
            Expect(states[at]);
    }
    // The state of a command that has ended and is in the history now. Another may follow it by itself: the next
    // archive, once Staging is cleared.
    bool NoteEnded() {
        auto now = Entries();
        const bool isNew = !std::ranges::includes(known, now);
        known = std::move(now);
        if (!isNew)
            return false;
        hasDropped = false;
        isPruned = isPruned || known.size() >= 30; // the oldest may have gone
        states.resize(at + 1);
        states.push_back(Look());
        ++at;
        return true;
    }
    // False when there was nothing.
    bool GoBack() {
        const std::size_t before = Entries().size();
        step = "undo";
        program->UndoLast();
        CheckRunning();
        if (form.status.starts_with("There is nothing")) {
            if (at > 0 && !isPruned)
                Violation("there is something to be taken back");
            Expect(states[at]);
            return false;
        }
        CheckSaid("Taken back: ");
        if (Entries().size() < before && at > 0) { // it had left nothing, and has gone with its undo
            states.erase(states.begin() + static_cast<std::ptrdiff_t>(at));
            hasDropped = true;
            Expect(states[--at]);
            return true;
        }
        if (!isLost && at == 0)
            Violation("there is nothing to be taken back");
        if (!isLost)
            Expect(states[--at]);
        return true;
    }
    void GoForth() {
        step = "redo";
        program->RedoLast();
        CheckRunning();
        const bool isNothing = form.status.starts_with("There is nothing");
        if (hasDropped && !isNothing && at + 1 == states.size()) { // what was undone before that has its turn again
            if (!form.status.starts_with("Done again: "))
                return Expect(states[at]);
            states.push_back(Look());
            ++at;
            return;
        }
        if (isNothing != (at + 1 == states.size()))
            return Violation("there is something to be done again, or there is not: " + form.status);
        if (!isNothing)
            CheckSaid("Done again: ");
        if (!isLost)
            Expect(states[isNothing ? at : ++at]);
    }

    void CheckRunning() {
        if (form.ends > 0)
            Violation("the program ended");
    }
    void CheckSaid(const std::string& beginning) {
        step += " " + form.status;
        if (!form.status.starts_with(beginning))
            Violation(user.said.empty() ? "nothing was done and nothing said" : user.said.back().text);
    }
    void Expect(const State& expected) {
        const State now = Look();
        std::vector<State::value_type> missing, tooMuch;
        std::ranges::set_difference(expected, now, std::back_inserter(missing));
        std::ranges::set_difference(now, expected, std::back_inserter(tooMuch));
        for (const auto* list : {&missing, &tooMuch})
            if (!list->empty())
                return Violation((list == &missing ? "missing: " : "too much: ") + list->front().first + ", " +
                                 list->front().second.substr(0, 60));
    }
    void Violation(const std::string& text) {
        report.violations.push_back(title + ", command " + std::to_string(report.commands) + ", " + step + ": " + text);
        isLost = true;
    }

    // --- commands

    void GiveCommand() {
        if (dice.OneIn(3)) {
            Give("to Staging", [&] { program->GoToStaging(); });
            return Do(dice.Of(OnStaging()), "");
        }
        Give("to the Hangar", [&] { program->GoToHangar(); });
        program->ChooseCategory(Any(program->View().categories));
        program->ChoosePackage(Any(program->View().packages));
        Do(dice.Of(OnPackage()), program->Package().ref.Text());
    }
    void Do(const std::string& command, const std::string& subject) {
        Give(command + " " + subject, [&] {
            if (command == "archive")
                return Bring();
            if (command == "copy")
                return CopyToHangar();
            if (command == "make first")
                return program->MakeShownImageFirst();
            if (command == "delete picture")
                return program->DeleteShownImage();
            if (command == "delete files")
                return program->DeleteComponents(static_cast<int>(dice.Below(GroupCount)), {0, 1});
            const auto& categories = program->View().categories;
            const int category = Any(categories);
            if (command == "new category")
                return program->NewCategory();
            if (command == "move" && category >= 0)
                return program->MoveToCategory(categories[std::size_t(category)]);
            if (command == "rename category" && category >= 0)
                return program->RenameCategory(categories[std::size_t(category)]);
            if (command.starts_with("mnu"))
                program->RunCommand(command);
        });
    }
    int Any(const auto& list) { return list.empty() ? -1 : static_cast<int>(dice.Below(list.size())); }
    void Bring() {
        if (!program->View().queue.empty() && dice.OneIn(2))
            return program->AddArchiveToStaging(0);
        const auto addon = MakeAddon(dice, pool);
        const std::string path = "Packed\\" + std::to_string(++archives) + addon.archiveName;
        drive.Put(path, addon.Archive());
        std::vector<std::string> paths = {drive.At(path)};
        if (archives > 1 && dice.OneIn(4))
            paths.push_back(drive.At(lastArchive));
        lastArchive = path;
        program->OfferArchives(paths);
    }
    void CopyToHangar() {
        std::vector<int> waiting(
            program->View().queue.size()); // the next would come by itself, in a command of its own
        std::iota(waiting.begin(), waiting.end(), 0);
        program->RemoveFromQueue(waiting);
        program->ChooseCategory(Any(program->View().categories));
        if (dice.OneIn(2))
            program->SetPackageName("Plane " + std::to_string(dice.Below(6)));
        program->CopyStagingToHangar();
    }

    const std::string title;
    Dice dice;
    const GaugePool pool;
    RoadReport& report;
    TemporaryDrive drive;
    FaultyFiles disk{drive.Files()};
    WalkingUser user;
    RecordingLauncher launcher;
    ScriptedLocations dialogs;
    FakeConverter converter;
    RecordingWindow form;
    std::unique_ptr<Program> program;

    std::vector<State> states;   // after each command that the history holds
    std::size_t at = 0;          // the one that there is now
    std::set<std::string> known; // of Entries, when they were looked at last
    std::string step, lastArchive;
    int archives = 0;
    bool isLost = false, hasDropped = false, isPruned = false;
};

} // namespace

void TakeWalk(std::uint64_t seed, int commands, RoadReport& report) {
    Walk("--count 0 --walks 1 --seed " + std::to_string(seed), seed, report).Take(commands);
}

} // namespace korvadex::test
