// What a command changes can be taken back and done again, and one that was cut off is taken back.
#include "journal/file_changes.h"
#include "journal/history.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "tests/support/faulty_files.h"
#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

namespace korvadex::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

Status Make(FileSystem& files, const std::string& path, const std::string& text) {
    return WriteNew(files, path, std::as_bytes(std::span(text)));
}

// Stands for a packing: a mark before the content.
std::vector<Status> Pack(FileSystem& files, const std::vector<std::string>& paths, bool packs) {
    const std::string scratch = paths.front().substr(0, paths.front().find("Jets")) + "~kx~scratch";
    static_cast<void>(files.CreateDirectory(scratch));
    std::vector<Status> failures;
    for (const auto& path : paths) {
        const auto bytes = ReadBytes(files, path);
        if (!bytes || bytes->starts_with("packed ") == packs)
            continue;
        static_cast<void>(files.Delete(scratch + "\\1"));
        Status status = Make(files, scratch + "\\1", packs ? "packed " + *bytes : bytes->substr(7));
        if (status)
            status = files.CopyAttributes(path, scratch + "\\1");
        const Replacement replacement = {scratch + "\\1", path, *files.Info(path)};
        if (status)
            status = files.ReplaceAll(std::span(&replacement, 1)).front();
        if (!status)
            failures.push_back({status.fault, path});
    }
    static_cast<void>(files.RemoveDirectory(scratch));
    return failures;
}

// What a command does, a line each, as "copy Sim\a.gau > Sim\b.gau". How many of them failed.
int Take(FileSystem& files, const std::string& root, const std::string& steps) {
    using Path = const std::string&;
    static const std::map<std::string, Status (*)(FileSystem&, Path, Path)> deeds = {
        {"mkdir", [](auto& disk, Path path, Path) { return disk.CreateDirectory(path); }},
        {"put", [](auto& disk, Path path, Path text) { return Make(disk, path, LastPathComponent(text)); }},
        {"copy", [](auto& disk, Path path, Path to) { return disk.Copy(path, to); }},
        {"move", [](auto& disk, Path path, Path to) { return disk.Rename(path, to); }},
        {"onto", [](auto& disk, Path path, Path to) { return disk.Replace(path, to); }},
        {"pack",
         [](auto& disk, Path path, Path) {
             return Pack(disk, {path}, true).empty() ? Status{} : Status{FileFault::Failed, path};
         }},
        {"aside", [](auto& disk, Path path, Path) { return disk.SetAside(path); }},
        {"delete", [](auto& disk, Path path, Path) { return disk.Delete(path); }},
        {"rmdir", [](auto& disk, Path path, Path) { return disk.RemoveDirectory(path); }},
        {"unlock", [](auto& disk, Path path, Path) { return disk.ClearAttributes(path); }},
        {"lock", [](auto& disk, Path path, Path) { return disk.SetReadOnly(path, true); }},
        {"age", [](auto& disk, Path path, Path) { return disk.SetTime(path, FileTime(5h)); }},
    };
    int failures = 0;
    std::istringstream lines(steps);
    for (std::string deed, rest; lines >> deed && std::getline(lines >> std::ws, rest);) {
        const auto mark = std::min(rest.find(" > "), rest.size());
        const std::string other = rest.substr(std::min(mark + 3, rest.size()));
        failures += deeds.at(deed)(files, root + rest.substr(0, mark), root + other) ? 0 : 1;
    }
    return failures;
}

class JournalTest : public testing::Test {
  protected:
    JournalTest() {
        drive.Fill("Hangar", "Jets\\Lear\\lear.air=air, Jets\\Lear\\panel\\panel.cfg=panel, Jets\\Lear\\old.txt=old, "
                             "Props\\");
        drive.Fill("Sim", "gauges\\a.gau=gauge a, gauges\\b.gau=gauge b, aircraft\\Stock\\stock.air=stock");
        drive.Fill("", "Staging\\, Settings\\");
        static_cast<void>(drive.Files().SetReadOnly(drive.At("Sim\\gauges\\b.gau"), true));
        // Times long ago, so that a change is seen.
        int day = 0;
        for (const auto& name : drive.Names())
            EXPECT_TRUE(drive.Files().SetTime(drive.At(name), FileTime(24h * ++day)));
        for (const auto& directory : {"Hangar", "Hangar\\Jets", "Hangar\\Jets\\Lear", "Hangar\\Props", "Sim",
                                      "Sim\\gauges", "Sim\\aircraft", "Staging"})
            EXPECT_TRUE(drive.Files().SetTime(drive.At(directory), FileTime(24h * ++day)));
    }

    std::unique_ptr<History> Open(FileSystem& files) {
        auto history = std::make_unique<History>(files, Pack);
        history->SetLocations({drive.At("Hangar\\"), drive.At("Staging\\"), drive.At("Sim\\")});
        history->Open(drive.At("Settings\\journal\\"));
        return history;
    }
    void Do(History& history, const std::string& steps) {
        history.Begin({.name = "Work"});
        EXPECT_EQ(Take(history.Files(), drive.Root(), steps), 0);
        EXPECT_TRUE(history.End());
    }

    // All that a user has, a line each: names, bytes, times and attributes, also of directories.
    std::string Look() {
        std::string ground;
        for (const std::string place : {"Hangar", "Staging", "Sim"})
            for (const auto& [name, bytes] : drive.Tree(place)) {
                const auto path = WithoutBackslash(drive.At(place + "\\" + name));
                const auto info = drive.Files().Info(path);
                ground += place + "\\" + name + " = " + bytes + ", " + (info ? TextOf(info->time) : "") + ", " +
                          *drive.Files().Attributes(path) + "\n";
            }
        return ground;
    }

    // As the program does when it starts.
    void ClearScratch() {
        for (const auto* place : {"Hangar\\~kx~scratch", "Sim\\~kx~scratch"})
            std::filesystem::remove_all(drive.Files().HostPath(drive.At(place)));
    }

    TemporaryDrive drive;
};

struct Work {
    const char* name;
    const char* steps;
    const char* listed; // of its files: + came, - went, * changed, > was renamed
    Repacking repacking = Repacking::None;
};

const Work Works[] = {
    {"a tree is installed", R"(
        mkdir Sim\~kx~scratch
        mkdir Sim\~kx~scratch\1
        mkdir Sim\~kx~scratch\1\panel
        copy Hangar\Jets\Lear\lear.air > Sim\~kx~scratch\1\lear.air
        put Sim\~kx~scratch\1\panel\panel.cfg > adapted
        move Sim\~kx~scratch\1 > Sim\aircraft\Lear
        mkdir Sim\sound
        put Sim\sound\s.wav > sound
        age Sim\sound\s.wav
        rmdir Sim\~kx~scratch)",
     "+Sim\\aircraft\\Lear\\lear.air +Sim\\aircraft\\Lear\\panel\\panel.cfg +Sim\\sound\\s.wav"},
    {"trees and files go", R"(
        aside Hangar\Jets\LEAR
        rmdir Hangar\Jets
        unlock Sim\gauges\b.gau
        delete Sim\gauges\b.gau
        delete Sim\gauges\A.GAU
        rmdir Sim\Gauges)",
     "-Hangar\\Jets\\Lear\\lear.air -Hangar\\Jets\\Lear\\old.txt -Hangar\\Jets\\Lear\\panel\\panel.cfg "
     "-Sim\\gauges\\a.gau -Sim\\gauges\\b.gau"},
    {"a file is rewritten twice, and read-only", R"(
        mkdir Hangar\~kx~scratch
        put Hangar\~kx~scratch\1 > once
        onto Hangar\~kx~scratch\1 > Hangar\Jets\Lear\panel\PANEL.CFG
        put Hangar\~kx~scratch\1 > twice
        onto Hangar\~kx~scratch\1 > Hangar\Jets\Lear\panel\panel.cfg
        rmdir Hangar\~kx~scratch
        lock Hangar\Jets\Lear\old.txt
        age Hangar\Jets\Lear\lear.air)",
     "*Hangar\\Jets\\Lear\\lear.air *Hangar\\Jets\\Lear\\old.txt *Hangar\\Jets\\Lear\\panel\\panel.cfg"},
    {"names change hands", R"(
        move Hangar\Jets\Lear\old.txt > Hangar\Jets\Lear\older.txt
        put Hangar\Jets\Lear\old.txt > new
        move Hangar\Jets\Lear\lear.air > Hangar\Jets\Lear\LEAR.AIR
        move Hangar\Jets\Lear > Hangar\Props\Lear 2
        onto Hangar\Props\Lear 2\older.txt > Hangar\Props\Lear 2\panel\panel.cfg)",
     nullptr},
    {"a directory is exchanged through scratch", R"(
        mkdir Hangar\~kx~scratch
        mkdir Hangar\~kx~scratch\new
        put Hangar\~kx~scratch\new\n.txt > n
        put Hangar\~kx~scratch\new\old.txt > not so old
        move Hangar\Jets\Lear > Hangar\~kx~scratch\was
        move Hangar\~kx~scratch\new > Hangar\Jets\Lear
        aside Hangar\~kx~scratch\was
        rmdir Hangar\~kx~scratch)",
     "-Hangar\\Jets\\Lear\\lear.air +Hangar\\Jets\\Lear\\n.txt *Hangar\\Jets\\Lear\\old.txt "
     "-Hangar\\Jets\\Lear\\panel\\panel.cfg"},
    {"what was made goes again", R"(
        delete Sim\gauges\a.gau
        put Sim\gauges\a.gau > other
        delete Sim\gauges\a.gau
        put Sim\gauges\c.gau > c
        move Sim\gauges\c.gau > Sim\gauges\a.gau)",
     "*Sim\\gauges\\a.gau"},
    {"a directory gets another name, and a file", R"(
        move Hangar\Jets\LEAR > Hangar\Jets\Lear 2
        move Sim\gauges\a.gau > Sim\gauges\c.gau)",
     ">Hangar\\Jets\\Lear\\>Hangar\\Jets\\Lear 2\\ >Sim\\gauges\\a.gau>Sim\\gauges\\c.gau"},
    {"a file is made where a name was there and back", R"(
        move Hangar\Jets\Lear > Hangar\Jets\Cub
        move Hangar\Jets\Cub > Hangar\Jets\Lear
        put Hangar\Jets\Lear\new.txt > new)",
     "+Hangar\\Jets\\Lear\\new.txt"},
    {"files are packed", R"(
        pack Hangar\Jets\Lear\lear.air
        pack Hangar\Jets\Lear\old.txt
        mkdir Hangar\~kx~scratch
        put Hangar\~kx~scratch\1 > packed
        onto Hangar\~kx~scratch\1 > Hangar\Jets\Lear\panel\panel.cfg
        rmdir Hangar\~kx~scratch)",
     "*Hangar\\Jets\\Lear\\lear.air *Hangar\\Jets\\Lear\\old.txt *Hangar\\Jets\\Lear\\panel\\panel.cfg",
     Repacking::Packs},
};

void PrintTo(const Work& work, std::ostream* out) {
    *out << work.name;
}

// Each at once, or after a first try of it that was taken back in the middle of the command.
class JournalOf : public JournalTest, public testing::WithParamInterface<std::tuple<Work, bool>> {
  protected:
    const Work row = std::get<Work>(GetParam());

    void Give(History& history) {
        history.Begin({.name = "Work", .subject = "Lear", .repacking = row.repacking});
        if (std::get<bool>(GetParam())) {
            const std::string before = Look();
            const auto mark = history.Mark();
            Take(history.Files(), drive.Root(), row.steps);
            const auto failures = history.TakeBackTo(mark);
            if (&history.Disk() == &drive.Files()) { // which does not fail
                EXPECT_THAT(failures, testing::IsEmpty());
                EXPECT_EQ(Look(), before);
                EXPECT_FALSE(history.HasChanged());
            }
        }
        Take(history.Files(), drive.Root(), row.steps);
        static_cast<void>(history.End());
    }
    // The files of the only command.
    void ExpectListed(const History& history) {
        if (!row.listed)
            return;
        ASSERT_THAT(history.Entries(), SizeIs(1));
        const HistoryEntry& entry = history.Entries().front();
        std::string listed;
        for (const FileChange& change :
             ListFileChanges(drive.Files(), history.ReadJournalOf(entry), entry.state == EntryState::Undone)) {
            listed.append(listed.empty() ? "" : " ").append(1, "+-*>"[static_cast<int>(change.kind)]);
            listed += change.path.substr(drive.Root().size());
            if (!change.newPath.empty())
                listed.append(">").append(change.newPath.substr(drive.Root().size()));
        }
        EXPECT_EQ(listed, row.listed);
    }
};

INSTANTIATE_TEST_SUITE_P(, JournalOf, testing::Combine(testing::ValuesIn(Works), testing::Bool()));

// A disk that fails once is asked again.
TEST_F(JournalTest, OneFaultWhileACommandIsTakenBackIsOvercome) {
    FaultyFiles faulty(drive.Files());
    auto history = Open(faulty);
    const std::string before = Look();
    for (const Work& work : Works) {
        bool hasFailed = true;
        for (int change = 1; hasFailed; ++change) {
            SCOPED_TRACE(std::string(work.name) + ", " + std::to_string(change));
            history->Begin({.name = "Work", .subject = "Lear", .repacking = work.repacking});
            const auto mark = history->Mark();
            Take(history->Files(), drive.Root(), work.steps);
            const int at = faulty.Changes() + change;
            faulty.FailAt(at, FileFault::Failed);
            EXPECT_THAT(history->TakeBackTo(mark), testing::IsEmpty());
            faulty.FailWhere([](auto&, auto&) { return FileFault::None; });
            hasFailed = faulty.Changes() >= at;
            static_cast<void>(history->End());
            ClearScratch();
            ASSERT_EQ(Look(), before);
        }
    }
}

TEST_P(JournalOf, GoesBackAndForth) {
    const std::string before = Look();
    auto history = Open(drive.Files());
    Give(*history);
    const std::string after = Look();
    EXPECT_NE(before, after);
    ExpectListed(*history);
    // What the user has changed since is the user's.
    std::istringstream listed(row.listed ? row.listed : "");
    for (std::string change; listed >> change;)
        if (const std::string path = drive.Root() + change.substr(1); change[0] == '+') {
            const FileTime time = drive.Files().Info(path)->time;
            EXPECT_TRUE(drive.Files().SetTime(path, FileTime(3h)));
            EXPECT_EQ(history->Undo(), path + " was changed since.");
            EXPECT_TRUE(drive.Files().SetTime(path, time));
        }
    for (int turn = 0; turn < 2; ++turn) {
        ASSERT_EQ(history->Undo(), "");
        EXPECT_EQ(Look(), before);
        ExpectListed(*history);        // taken back, it is still what the command did
        history = Open(drive.Files()); // it survives
        ASSERT_TRUE(history->CutOff().empty());
        ASSERT_EQ(history->Redo(), "");
        EXPECT_EQ(Look(), after);
        EXPECT_EQ(history->NextRedo(), nullptr);
    }
    history->Empty();
    EXPECT_EQ(Look(), after);
    EXPECT_FALSE(drive.Has("Hangar\\~kx~kept"));
    EXPECT_TRUE(drive.Names("Settings\\journal").empty());
}

// Killed at each change: of the command, of its taking back, and of its undo.
TEST_P(JournalOf, IsTakenBackWhereverItWasCutOff) {
    const std::string before = Look();
    const auto workUntil = [&](int change, const auto& work) {
        FaultyFiles faulty(drive.Files());
        faulty.StopAt(change);
        work(*Open(faulty));
        return faulty.Changes() >= change; // it was cut off
    };
    const auto restart = [&](History& history) {
        for (const auto& entry : history.CutOff())
            static_cast<void>(history.TakeBackCutOff(entry));
    };
    const auto start = [&] {
        auto history = Open(drive.Files());
        restart(*history);
        EXPECT_TRUE(history->CutOff().empty());
        ClearScratch();
        return history;
    };
    int count = 0;
    while (workUntil(++count, [&](History& history) { Give(history); }) && !HasFailure()) {
        SCOPED_TRACE("cut off at change " + std::to_string(count));
        workUntil(count % 7 + 1, restart); // a second cut
        const auto history = start();
        if (history->NextUndo()) { // it had come to its end
            ASSERT_EQ(history->Undo(), "");
        }
        ASSERT_EQ(Look(), before);
    }
    const std::string after = Look();
    count = 0;
    while (workUntil(++count, [](History& history) { history.Undo(); }) && !HasFailure()) {
        SCOPED_TRACE("undo cut off at change " + std::to_string(count));
        const auto history = start();
        ASSERT_EQ(Look(), history->NextUndo() ? after : before);
        if (!history->NextUndo()) {
            ASSERT_EQ(history->Redo(), "");
        }
        ASSERT_EQ(Look(), after);
    }
    EXPECT_EQ(Look(), before);
}

// --- when the disk does not do its part

// Some files cannot be read, and what is written to some is lost when it was not flushed.
class UncertainFiles : public FaultyFiles {
  public:
    using FaultyFiles::FaultyFiles;
    std::string unreadableFiles = "?", unflushedFiles = "?"; // a part of their names

    Result<std::unique_ptr<InputFile>> OpenForReading(Path path) const override {
        if (path.find(unreadableFiles) != path.npos)
            return Status{FileFault::InUse, path};
        return FaultyFiles::OpenForReading(path);
    }
    Result<std::unique_ptr<OutputFile>> CreateNew(Path path) override {
        auto file = FaultyFiles::CreateNew(path);
        if (!file || path.find(unflushedFiles) == path.npos)
            return file;
        return std::unique_ptr<OutputFile>(std::make_unique<Held>(std::move(*file)));
    }

  private:
    struct Held : OutputFile {
        explicit Held(std::unique_ptr<OutputFile> real) : file(std::move(real)) {}
        Status Write(std::span<const std::byte> bytes) override {
            held.insert(held.end(), bytes.begin(), bytes.end());
            return {};
        }
        Status Flush() override {
            const Status status = file->Write(held);
            held.clear();
            return status;
        }
        Status Close(bool flush) override { return flush ? Flush() : Status{}; }

        std::unique_ptr<OutputFile> file;
        std::vector<std::byte> held;
    };
};

constexpr const char* RemoveLear = R"(aside Hangar\Jets\Lear)";
constexpr const char* ExchangeGauge = R"(
    delete Sim\gauges\a.gau
    put Sim\gauges\a.gau > new)";

class JournalTrouble : public JournalTest {
  protected:
    const std::string before = Look();
    UncertainFiles disk{drive.Files()};

    // A command that does not come to its end.
    void CutOff(const std::string& steps, bool mayDelete = false) {
        const auto history = Open(disk);
        history->Files().mayDelete = [=](auto&) { return mayDelete; };
        history->Begin({.name = "Work", .subject = "Lear"});
        Take(history->Files(), drive.Root(), steps);
    }
    std::vector<Status> TakeBackAll() {
        const auto history = Open(disk);
        std::vector<Status> failures;
        for (const auto& entry : history->CutOff())
            failures = history->TakeBackCutOff(entry);
        return failures;
    }
    void ExpectTakenBack() {
        EXPECT_THAT(TakeBackAll(), IsEmpty());
        EXPECT_EQ(Look(), before);
    }
    // Every change from the first one on for which this is true.
    void FailFrom(const std::function<bool(const std::string& change, const std::string& path)>& isFirst) {
        disk.FailWhere([=, isOff = false](auto& change, auto& path) mutable {
            isOff = isOff || isFirst(change, path);
            return isOff ? FileFault::Failed : FileFault::None;
        });
    }
    void TakeTheHangarAway() { ASSERT_TRUE(drive.Files().Rename(drive.At("Hangar"), drive.At("Away"))); }
    void BringTheHangarBack() { ASSERT_TRUE(drive.Files().Rename(drive.At("Away"), drive.At("Hangar"))); }
    // How many files of this name are kept in the Hangar.
    int KeptOf(const std::string& name) {
        int count = 0;
        const auto kept = drive.Files().HostPath(drive.At("Hangar\\~kx~kept"));
        if (std::filesystem::exists(kept))
            for (const auto& entry : std::filesystem::recursive_directory_iterator(kept))
                count += entry.path().filename() == name;
        return count;
    }
    // Two commands more than there may be.
    void ExceedLimits(History& history) {
        history.SetLimits({.commands = 1, .bytes = 0});
        for (int i = 0; i < 2; ++i) {
            Do(history, ExchangeGauge);
            history.Prune();
        }
    }
};

TEST_F(JournalTrouble, WhatLiesOnADriveThatIsAwayIsTakenBackLater) {
    CutOff(std::string(RemoveLear) + ExchangeGauge);
    TakeTheHangarAway();
    EXPECT_THAT(TakeBackAll(), testing::Not(IsEmpty()));
    BringTheHangarBack();
    ExpectTakenBack();
}

TEST_F(JournalTrouble, APowerCutWhileACommandIsTakenBack) {
    CutOff(ExchangeGauge);
    disk.unflushedFiles = ".back";
    FailFrom([](auto&, auto& path) { return path.find(".done") != path.npos; });
    TakeBackAll();
    disk.FailWhere({});
    ExpectTakenBack();
}

TEST_F(JournalTrouble, WhatAnEarlierCommandHadTakenBackSaysNothingOfThisOne) {
    std::string earlier = LineOf(HistoryEntry{.number = 1, .item = 1, .title = {}, .key = "earlier"});
    for (std::size_t i = 0; i < 9; ++i)
        earlier += LineOf(Record{.size = i});
    drive.Put("Settings\\journal\\000001.back1", earlier);
    CutOff(ExchangeGauge);
    ExpectTakenBack();
}

TEST_F(JournalTrouble, AFileOfTheJournalThatCannotBeReadChangesNothing) {
    Do(*Open(disk), RemoveLear);
    const std::string after = Look();
    disk.unreadableFiles = ".done";
    EXPECT_THAT(TakeBackAll(), IsEmpty());
    EXPECT_EQ(Look(), after);
    disk.unreadableFiles = ".log";
    EXPECT_THAT(Open(disk)->Undo(), HasSubstr("another program is using it"));
    EXPECT_EQ(Look(), after);
    disk.unreadableFiles = "?";
    EXPECT_EQ(Open(disk)->Undo(), "");
    EXPECT_EQ(Look(), before);
}

TEST_F(JournalTrouble, TheOnlyCopyOfAThingIsNeverGivenUp) {
    CutOff(RemoveLear);
    drive.Fill("Hangar", "Jets\\Lear\\another.txt=x");
    EXPECT_THAT(TakeBackAll(), SizeIs(1));
    auto history = Open(disk);
    history->GiveUpCutOff(history->CutOff().front());
    ExceedLimits(*history);
    history = Open(disk);
    EXPECT_THAT(history->Entries(), SizeIs(2)); // it takes no other's place
    static_cast<void>(history->Files().MakeRoom(drive.Root(), ~std::uint64_t{0}));
    history->Empty();
    EXPECT_EQ(KeptOf("lear.air"), 1);
    ASSERT_THAT(history->Entries(), SizeIs(1));
    const std::string kept = drive.At("Hangar\\~kx~kept");
    EXPECT_THAT(history->Entries().front().whyNot, HasSubstr("What was kept of it is in " + kept));
    std::filesystem::remove_all(drive.Files().HostPath(kept)); // by the user
    history->Empty();
    EXPECT_THAT(history->Entries(), IsEmpty());
}

TEST_F(JournalTrouble, WhatIsKeptOnADriveThatIsAwayGoesWhenItIsBack) {
    const auto history = Open(disk);
    Do(*history, RemoveLear);
    TakeTheHangarAway();
    history->SetLocations({drive.At("Sim\\")});
    ExceedLimits(*history);
    BringTheHangarBack();
    ASSERT_THAT(history->Entries(), SizeIs(2));
    EXPECT_EQ(history->Entries().front().whyNot, "");
    history->Prune();
    EXPECT_THAT(history->Entries(), SizeIs(1));
    EXPECT_EQ(KeptOf("lear.air"), 0);
}

TEST_F(JournalTrouble, ACommandThatIsToGoOnWithoutItsLogGoesOn) {
    for (const char* change : {"CreateNew", "Write", "Flush"}) {
        SCOPED_TRACE(change);
        disk.FailOn(change, ".log", FileFault::DiskFull);
        const auto history = Open(disk);
        int questions = 0;
        history->Files().mayGoOnWithoutLog = [&](auto&) { return ++questions > 0; };
        Do(*history, ExchangeGauge);
        EXPECT_EQ(drive.Get("Sim\\gauges\\a.gau"), "new");
        EXPECT_EQ(questions, 1);
        EXPECT_THAT(Open(drive.Files())->CutOff(), IsEmpty());
    }
}

TEST_F(JournalTrouble, WhatIsHalfLetGoIsNotBroughtBack) {
    const auto names = drive.Names("Hangar\\Jets\\Lear");
    for (int change = 1; !HasFailure(); ++change) {
        SCOPED_TRACE(change);
        drive.Fill("Hangar", "Jets\\Lear\\lear.air=air, Jets\\Lear\\panel\\panel.cfg=panel, Jets\\Lear\\old.txt=old");
        Do(*Open(drive.Files()), RemoveLear);
        FaultyFiles faulty(drive.Files());
        faulty.StopAt(change);
        Open(faulty)->Empty();
        const auto history = Open(drive.Files());
        EXPECT_THAT(history->CutOff(), IsEmpty());
        if (history->NextUndo() && history->Undo().empty()) {
            EXPECT_EQ(drive.Names("Hangar\\Jets\\Lear"), names);
        }
        if (faulty.Changes() < change)
            break;
    }
}

TEST_F(JournalTrouble, AFileThatCannotGoBackToItsPlaceIsStillKnown) {
    disk.FailWhere([&](auto& change, auto& path) {
        return change == "Link" || path.ends_with("Lear\\panel\\panel.cfg") ? FileFault::Denied : FileFault::None;
    });
    const auto history = Open(disk);
    history->Begin({.name = "Work"});
    EXPECT_EQ(Take(history->Files(), drive.Root(), R"(
                   mkdir Hangar\~kx~scratch
                   put Hangar\~kx~scratch\1 > new
                   onto Hangar\~kx~scratch\1 > Hangar\Jets\Lear\panel\panel.cfg)"),
              1);
    EXPECT_FALSE(history->Trouble()); // the user is asked
    disk.FailWhere({});
    EXPECT_TRUE(history->End(false));
    EXPECT_THAT(history->Remains(), IsEmpty());
    ClearScratch();
    EXPECT_EQ(Look(), before);
}

TEST_F(JournalTrouble, WhatCannotBeKeptIsToldWhenTheRestIsTakenBack) {
    for (const char* change : {"CreateDirectory", "Rename"}) { // into it: the volume is another one after all
        SCOPED_TRACE(change);
        drive.Fill("Sim", "gauges\\c.gau=c");
        disk.FailOn(change, "~kx~kept", FileFault::OtherVolume);
        const auto history = Open(disk);
        history->Files().mayDelete = [](auto&) { return true; };
        history->Begin({.name = "Work"});
        EXPECT_EQ(history->Files().SetAside(drive.At("Hangar\\Jets\\Lear")).fault, FileFault::NotKept);
        EXPECT_TRUE(history->Files().Delete(drive.At("Sim\\gauges\\c.gau")));
        EXPECT_TRUE(history->End(false));
        EXPECT_THAT(history->Remains(), SizeIs(1));
        EXPECT_THAT(TakeBackAll(), IsEmpty());
    }
    CutOff(R"(delete Sim\gauges\a.gau)", true);
    EXPECT_THAT(TakeBackAll(), SizeIs(1));
    EXPECT_THAT(TakeBackAll(), IsEmpty());
}

TEST_F(JournalTrouble, TakingBackNeedsNoRoom) {
    const auto history = Open(disk);
    history->Begin({.name = "Work"});
    static_cast<void>(Make(history->Files(), drive.At("Sim\\gauges\\c.gau"), "c"));
    disk.FailOn("CreateDirectory", "~kx~kept", FileFault::DiskFull);
    EXPECT_TRUE(history->End(false));
    EXPECT_THAT(history->Remains(), testing::IsEmpty());
    EXPECT_EQ(Look(), before);
}

TEST_F(JournalTrouble, WhoHasTakenAFormerNameIsNamed) {
    const char* rows[][2] = {
        {R"(Hangar\Jets\Lear)", R"(move Hangar\Jets\Lear > Hangar\Props\Lear 2)"},
        {R"(Hangar\Jets\Lear\old.txt)", R"(onto Hangar\Jets\Lear\old.txt > Hangar\Jets\Lear\panel\panel.cfg)"}};
    for (const auto& [former, steps] : rows) {
        CutOff(steps);
        drive.Put(former, "of the user");
        EXPECT_THAT(TakeBackAll(), testing::ElementsAre(testing::Field(&Status::path, drive.At(former))));
        EXPECT_TRUE(drive.Files().Delete(drive.At(former)));
        ExpectTakenBack();
    }
}

TEST_F(JournalTrouble, ACommandThatWasNotEndedStandsBeforeTheNextOne) {
    const auto history = Open(disk);
    history->Begin({.name = "First"});
    Take(history->Files(), drive.Root(), ExchangeGauge);
    Do(*history, RemoveLear);
    EXPECT_THAT(TakeBackAll(), IsEmpty());
    for (int turn = 0; turn < 2; ++turn)
        EXPECT_EQ(history->Undo(), "");
    EXPECT_EQ(Look(), before);
}

TEST_F(JournalTrouble, WhatTheUserHasPutInTheFreePlaceSinceStays) {
    static constexpr const char* cases[][2] = {
        {"mkdir Sim\\~kx~scratch\\Lear", "Sim\\aircraft\\Lear\\mine.air"},
        {"put Sim\\~kx~scratch\\new.gau > new", "Sim\\gauges\\new.gau"},
    };
    for (const auto& [make, mine] : cases) {
        SCOPED_TRACE(mine);
        FailFrom([](auto& change, auto&) { return change == "Rename"; }); // between its record and the deed
        CutOff("mkdir Sim\\~kx~scratch\n" + std::string(make) + R"(
            move Sim\~kx~scratch\Lear > Sim\aircraft\Lear
            move Sim\~kx~scratch\new.gau > Sim\gauges\new.gau)");
        disk.FailWhere({});
        drive.Fill("", std::string(mine) + "=mine");
        EXPECT_THAT(TakeBackAll(), IsEmpty());
        EXPECT_TRUE(drive.Has(mine));
    }
}

// An installation may place hundreds of files beside its directory.
TEST_F(JournalTrouble, WhatIsRenamedTogetherIsWrittenDownInOneGo) {
    int flushes = 0;
    disk.FailWhere([&](auto& change, auto& path) {
        flushes += change == "Flush" && path.ends_with(".log");
        return FileFault::None;
    });
    const auto history = Open(disk);
    history->Begin({.name = "Work"});
    Take(history->Files(), drive.Root(), R"(
        mkdir Sim\~kx~scratch
        put Sim\~kx~scratch\a.gau > new
        put Sim\~kx~scratch\d.gau > new
        put Sim\~kx~scratch\c.gau > new)");
    std::vector<Replacement> renames;
    for (const char* name : {"a.gau", "c.gau", "d.gau"})
        renames.push_back({drive.At("Sim\\~kx~scratch\\") + name, drive.At("Sim\\gauges\\") + name});
    const auto outcomes = history->Files().RenameAll(renames);
    EXPECT_EQ(outcomes[0].fault, FileFault::Exists);
    EXPECT_TRUE(outcomes[1] && outcomes[2]);
    EXPECT_EQ(flushes, 1);
    Take(history->Files(), drive.Root(), R"(
        delete Sim\~kx~scratch\a.gau
        rmdir Sim\~kx~scratch)");
    EXPECT_TRUE(history->End());
    EXPECT_EQ(history->Undo(), "");
    EXPECT_EQ(Look(), before);
}

// --- the order of what is taken back and done again

// A command that was taken back before another one came is not done again after it, whatever becomes of that one.
TEST_F(JournalTest, ANewCommandEndsTheRedo) {
    const auto history = Open(drive.Files());
    Do(*history, R"(put Staging\first > 1)");
    Do(*history, R"(put Staging\second > 2)");
    for (int turn = 0; turn < 2; ++turn)
        EXPECT_EQ(history->Undo(), "");
    EXPECT_THAT(history->RedoOrder(), SizeIs(2));
    EXPECT_EQ(history->Redo(), "");
    Do(*history, R"(put Staging\third > 3)");
    EXPECT_EQ(history->NextRedo(), nullptr);
    EXPECT_EQ(history->Undo(), "");
    EXPECT_EQ(history->Redo(), "");
    EXPECT_EQ(history->NextRedo(), nullptr);
    EXPECT_EQ(drive.Outline("Staging"), "first=1, third=3");
}

// It stays in the history, but its undo has nothing to do; a rename there and straight back does not even stay.
TEST_F(JournalTest, WhatHasLeftNothingDoesNotStandBeforeTheRest) {
    const std::string before = Look();
    const auto history = Open(drive.Files());
    Do(*history, R"(put Staging\first.txt > first)");
    Do(*history, R"(
        put Staging\a.txt > a
        move Staging\a.txt > Staging\b.txt
        delete Staging\b.txt)");
    const std::string after = Look();
    Do(*history, R"(
        move Hangar\Jets\Lear > Hangar\Jets\Cub
        move Hangar\Jets\Cub > Hangar\Jets\Lear)");
    EXPECT_EQ(Look(), after);
    for (int turn = 0; turn < 2; ++turn)
        ASSERT_EQ(history->Undo(), "");
    EXPECT_EQ(Look(), before);
    EXPECT_EQ(history->NextUndo(), nullptr);
    ASSERT_EQ(history->Redo(), "");
    EXPECT_TRUE(drive.Has("Staging\\first.txt"));
}

} // namespace
} // namespace korvadex::test
