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
using namespace std::chrono_literals;

void Make(FileSystem& files, const std::string& path, const std::string& text) {
    static_cast<void>(WriteNew(files, path, std::as_bytes(std::span(text))));
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
        Make(files, scratch + "\\1", packs ? "packed " + *bytes : bytes->substr(7));
        static_cast<void>(files.CopyAttributes(path, scratch + "\\1"));
        const Replacement replacement = {scratch + "\\1", path, *files.Info(path)};
        if (const Status status = files.ReplaceAll(std::span(&replacement, 1)).front(); !status)
            failures.push_back(status);
    }
    static_cast<void>(files.RemoveDirectory(scratch));
    return failures;
}

class JournalTest : public testing::Test {
  protected:
    JournalTest() {
        drive.Fill("Hangar", "Jets\\Lear\\lear.air=air, Jets\\Lear\\panel\\panel.cfg=panel, Jets\\Lear\\old.txt=old, "
                             "Props\\");
        drive.Fill("Sim", "gauges\\a.gau=gauge a, gauges\\b.gau=gauge b, aircraft\\Stock\\stock.air=stock");
        drive.MakeDirectory("Staging");
        drive.MakeDirectory("Settings");
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

    // All that a user has, a line each: names, bytes, times and attributes, also of directories.
    std::string Look() {
        std::string ground;
        for (const std::string place : {"Hangar", "Staging", "Sim"}) {
            for (const auto& [name, bytes] : drive.Tree(place)) {
                if (name.find("~kx~kept") != std::string::npos)
                    continue;
                const auto path = WithoutBackslash(drive.At(place + "\\" + name));
                const auto info = drive.Files().Info(path);
                ground += place + "\\" + name + " = " + bytes;
                if (info)
                    ground += ", " + TextOf(info->time);
                ground += ", " + drive.Files().Attributes(path).operator*() + "\n";
            }
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
    void (*change)(FileSystem& files, const std::string& root);
    const char* listed; // of its files: + came, - went, * changed, > was renamed
    Repacking repacking = Repacking::None;
};

const Work Works[] = {
    {"a tree is installed",
     [](FileSystem& files, const std::string& root) {
         const std::string scratch = root + "Sim\\~kx~scratch";
         static_cast<void>(files.CreateDirectory(scratch));
         static_cast<void>(files.CreateDirectory(scratch + "\\1"));
         static_cast<void>(files.CreateDirectory(scratch + "\\1\\panel"));
         static_cast<void>(files.Copy(root + "Hangar\\Jets\\Lear\\lear.air", scratch + "\\1\\lear.air"));
         Make(files, scratch + "\\1\\panel\\panel.cfg", "adapted");
         static_cast<void>(files.Rename(scratch + "\\1", root + "Sim\\aircraft\\Lear"));
         static_cast<void>(files.CreateDirectory(root + "Sim\\sound"));
         Make(files, root + "Sim\\sound\\s.wav", "sound");
         static_cast<void>(files.SetTime(root + "Sim\\sound\\s.wav", FileTime(1h)));
         static_cast<void>(files.RemoveDirectory(scratch));
     },
     "+Sim\\aircraft\\Lear\\lear.air +Sim\\aircraft\\Lear\\panel\\panel.cfg +Sim\\sound\\s.wav"},
    {"trees and files go",
     [](FileSystem& files, const std::string& root) {
         static_cast<void>(files.SetAside(root + "Hangar\\Jets\\Lear"));
         static_cast<void>(files.RemoveDirectory(root + "Hangar\\Jets"));
         static_cast<void>(files.ClearAttributes(root + "Sim\\gauges\\b.gau"));
         static_cast<void>(files.Delete(root + "Sim\\gauges\\b.gau"));
         static_cast<void>(files.Delete(root + "Sim\\gauges\\a.gau"));
         static_cast<void>(files.RemoveDirectory(root + "Sim\\gauges"));
     },
     "-Hangar\\Jets\\Lear\\lear.air -Hangar\\Jets\\Lear\\old.txt -Hangar\\Jets\\Lear\\panel\\panel.cfg "
     "-Sim\\gauges\\a.gau -Sim\\gauges\\b.gau"},
    {"a file is rewritten twice, and read-only",
     [](FileSystem& files, const std::string& root) {
         static_cast<void>(files.CreateDirectory(root + "Hangar\\~kx~scratch"));
         for (const char* text : {"once", "twice"}) {
             Make(files, root + "Hangar\\~kx~scratch\\1", text);
             static_cast<void>(
                 files.Replace(root + "Hangar\\~kx~scratch\\1", root + "Hangar\\Jets\\Lear\\panel\\panel.cfg"));
         }
         static_cast<void>(files.RemoveDirectory(root + "Hangar\\~kx~scratch"));
         static_cast<void>(files.SetReadOnly(root + "Hangar\\Jets\\Lear\\old.txt", true));
         static_cast<void>(files.SetTime(root + "Hangar\\Jets\\Lear\\lear.air", FileTime(5h)));
     },
     "*Hangar\\Jets\\Lear\\lear.air *Hangar\\Jets\\Lear\\old.txt *Hangar\\Jets\\Lear\\panel\\panel.cfg"},
    {"names change hands",
     [](FileSystem& files, const std::string& root) {
         const std::string lear = root + "Hangar\\Jets\\Lear\\";
         static_cast<void>(files.Rename(lear + "old.txt", lear + "older.txt"));
         Make(files, lear + "old.txt", "new");
         static_cast<void>(files.Rename(lear + "lear.air", lear + "LEAR.AIR"));
         static_cast<void>(files.Rename(root + "Hangar\\Jets\\Lear", root + "Hangar\\Props\\Lear 2"));
         static_cast<void>(files.Replace(root + "Hangar\\Props\\Lear 2\\older.txt",
                                         root + "Hangar\\Props\\Lear 2\\panel\\panel.cfg"));
     },
     nullptr},
    {"a directory is exchanged through scratch",
     [](FileSystem& files, const std::string& root) {
         static_cast<void>(files.CreateDirectory(root + "Hangar\\~kx~scratch"));
         static_cast<void>(files.CreateDirectory(root + "Hangar\\~kx~scratch\\new"));
         Make(files, root + "Hangar\\~kx~scratch\\new\\n.txt", "n");
         Make(files, root + "Hangar\\~kx~scratch\\new\\old.txt", "not so old");
         static_cast<void>(files.Rename(root + "Hangar\\Jets\\Lear", root + "Hangar\\~kx~scratch\\was"));
         static_cast<void>(files.Rename(root + "Hangar\\~kx~scratch\\new", root + "Hangar\\Jets\\Lear"));
         static_cast<void>(files.SetAside(root + "Hangar\\~kx~scratch\\was"));
         static_cast<void>(files.RemoveDirectory(root + "Hangar\\~kx~scratch"));
     },
     "-Hangar\\Jets\\Lear\\lear.air +Hangar\\Jets\\Lear\\n.txt *Hangar\\Jets\\Lear\\old.txt "
     "-Hangar\\Jets\\Lear\\panel\\panel.cfg"},
    {"what was made goes again",
     [](FileSystem& files, const std::string& root) {
         static_cast<void>(files.Delete(root + "Sim\\gauges\\a.gau"));
         Make(files, root + "Sim\\gauges\\a.gau", "other");
         static_cast<void>(files.Delete(root + "Sim\\gauges\\a.gau"));
         Make(files, root + "Sim\\gauges\\c.gau", "c");
         static_cast<void>(files.Rename(root + "Sim\\gauges\\c.gau", root + "Sim\\gauges\\a.gau"));
     },
     "*Sim\\gauges\\a.gau"},
    {"a directory gets another name, and a file",
     [](FileSystem& files, const std::string& root) {
         static_cast<void>(files.Rename(root + "Hangar\\Jets\\Lear", root + "Hangar\\Jets\\Lear 2"));
         static_cast<void>(files.Rename(root + "Sim\\gauges\\a.gau", root + "Sim\\gauges\\c.gau"));
     },
     ">Hangar\\Jets\\Lear\\>Hangar\\Jets\\Lear 2\\ >Sim\\gauges\\a.gau>Sim\\gauges\\c.gau"},
    {"files are packed",
     [](FileSystem& files, const std::string& root) {
         const std::string lear = root + "Hangar\\Jets\\Lear\\";
         static_cast<void>(Pack(files, {lear + "lear.air", lear + "old.txt"}, true));
         static_cast<void>(files.CreateDirectory(root + "Hangar\\~kx~scratch"));
         Make(files, root + "Hangar\\~kx~scratch\\1", "packed");
         static_cast<void>(files.Replace(root + "Hangar\\~kx~scratch\\1", lear + "panel\\panel.cfg"));
         static_cast<void>(files.RemoveDirectory(root + "Hangar\\~kx~scratch"));
     },
     "*Hangar\\Jets\\Lear\\lear.air *Hangar\\Jets\\Lear\\old.txt *Hangar\\Jets\\Lear\\panel\\panel.cfg",
     Repacking::Packs},
};

void PrintTo(const Work& work, std::ostream* out) {
    *out << work.name;
}

class JournalOf : public JournalTest, public testing::WithParamInterface<Work> {
  protected:
    void Do(History& history) {
        history.Begin({.name = "Work", .subject = "Lear", .repacking = GetParam().repacking});
        GetParam().change(history.Files(), drive.Root());
    }
    // The files of the only command.
    std::string Listed(const History& history) {
        const HistoryEntry& entry = history.Entries().front();
        std::string text;
        for (const FileChange& change :
             ListFileChanges(drive.Files(), history.ReadJournalOf(entry), entry.state == EntryState::Undone)) {
            text.append(text.empty() ? "" : " ").append(1, "+-*>"[static_cast<int>(change.kind)]);
            text += change.path.substr(drive.Root().size());
            if (!change.newPath.empty())
                text.append(">").append(change.newPath.substr(drive.Root().size()));
        }
        return text;
    }
    void ExpectListed(const History& history) {
        if (GetParam().listed) {
            EXPECT_EQ(Listed(history), GetParam().listed);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(, JournalOf, testing::ValuesIn(Works));

TEST_P(JournalOf, GoesBackAndForth) {
    const std::string before = Look();
    auto history = Open(drive.Files());
    Do(*history);
    ASSERT_TRUE(history->End());
    const std::string after = Look();
    EXPECT_NE(before, after);
    ExpectListed(*history);
    // What the user has changed since is the user's.
    std::istringstream listed(GetParam().listed ? GetParam().listed : "");
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
        ASSERT_EQ(history->Entries().size(), 1u);
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
    const auto work = [&](History& history) {
        Do(history);
        static_cast<void>(history.End());
    };
    int count = 0;
    while (workUntil(++count, work) && !HasFailure()) {
        SCOPED_TRACE("cut off at change " + std::to_string(count));
        workUntil(count % 7 + 1, restart); // a second cut
        auto history = Open(drive.Files());
        restart(*history);
        EXPECT_TRUE(history->CutOff().empty());
        ClearScratch();
        if (history->NextUndo()) { // it had come to its end
            ASSERT_EQ(history->Undo(), "");
        }
        ASSERT_EQ(Look(), before);
    }
    const std::string after = Look();
    count = 0;
    while (workUntil(++count, [](History& history) { history.Undo(); }) && !HasFailure()) {
        SCOPED_TRACE("undo cut off at change " + std::to_string(count));
        auto history = Open(drive.Files());
        restart(*history);
        ClearScratch();
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

class JournalTrouble : public JournalTest {
  protected:
    const std::string before = Look(), lear = drive.At("Hangar\\Jets\\Lear"), gauge = drive.At("Sim\\gauges\\a.gau");
    UncertainFiles disk{drive.Files()};

    // A command that does not come to its end.
    void CutOff(const std::function<void(FileSystem&)>& work, bool mayDelete = false) {
        const auto history = Open(disk);
        history->Files().mayDelete = [=](auto&) { return mayDelete; };
        history->Begin({.name = "Work", .subject = "Lear"});
        work(history->Files());
    }
    std::vector<Status> TakeBackAll() {
        const auto history = Open(disk);
        std::vector<Status> failures;
        for (const auto& entry : history->CutOff())
            failures = history->TakeBackCutOff(entry);
        return failures;
    }
    // How many files of this name are kept in the Hangar.
    int KeptOf(const std::string& name) {
        int count = 0;
        const auto kept = drive.Files().HostPath(drive.At("Hangar\\~kx~kept"));
        if (std::filesystem::exists(kept))
            for (const auto& entry : std::filesystem::recursive_directory_iterator(kept))
                count += entry.path().filename() == name;
        return count;
    }
    void SetAsideLear(History& history) {
        history.Begin({.name = "Remove", .subject = "Lear"});
        EXPECT_TRUE(history.Files().SetAside(lear));
        ASSERT_TRUE(history.End());
    }
    // Two commands more than there may be.
    void ExceedLimits(History& history) {
        history.SetLimits({.commands = 1, .bytes = 0});
        for (int i = 0; i < 2; ++i) {
            history.Begin({.name = "Work"});
            Exchange(history.Files(), gauge);
            ASSERT_TRUE(history.End());
            history.Prune();
        }
    }
    static void Exchange(FileSystem& files, const std::string& path) {
        EXPECT_TRUE(files.Delete(path));
        Make(files, path, "new");
    }
};

TEST_F(JournalTrouble, WhatLiesOnADriveThatIsAwayIsTakenBackLater) {
    CutOff([&](FileSystem& files) {
        EXPECT_TRUE(files.SetAside(lear));
        Exchange(files, gauge);
    });
    ASSERT_TRUE(drive.Files().Rename(drive.At("Hangar"), drive.At("Away")));
    EXPECT_THAT(TakeBackAll(), testing::Not(testing::IsEmpty()));
    ASSERT_TRUE(drive.Files().Rename(drive.At("Away"), drive.At("Hangar")));
    EXPECT_THAT(TakeBackAll(), testing::IsEmpty());
    EXPECT_EQ(Look(), before);
}

TEST_F(JournalTrouble, APowerCutWhileACommandIsTakenBack) {
    CutOff([&](FileSystem& files) { Exchange(files, gauge); });
    disk.unflushedFiles = ".back";
    disk.FailWhere([isOff = false](auto&, auto& path) mutable {
        isOff = isOff || path.find(".done") != path.npos;
        return isOff ? FileFault::Failed : FileFault::None;
    });
    TakeBackAll();
    disk.FailWhere({});
    EXPECT_THAT(TakeBackAll(), testing::IsEmpty());
    EXPECT_EQ(Look(), before);
}

TEST_F(JournalTrouble, WhatAnEarlierCommandHadTakenBackSaysNothingOfThisOne) {
    std::string earlier = LineOf(HistoryEntry{.number = 1, .item = 1, .title = {}, .key = "earlier"});
    for (std::size_t i = 0; i < 9; ++i)
        earlier += LineOf(Record{.size = i});
    drive.Put("Settings\\journal\\000001.back1", earlier);
    CutOff([&](FileSystem& files) { Exchange(files, gauge); });
    EXPECT_THAT(TakeBackAll(), testing::IsEmpty());
    EXPECT_EQ(Look(), before);
}

TEST_F(JournalTrouble, AFileOfTheJournalThatCannotBeReadChangesNothing) {
    SetAsideLear(*Open(disk));
    const std::string after = Look();
    disk.unreadableFiles = ".done";
    EXPECT_THAT(TakeBackAll(), testing::IsEmpty());
    EXPECT_EQ(Look(), after);
    disk.unreadableFiles = ".log";
    EXPECT_THAT(Open(disk)->Undo(), HasSubstr("another program is using it"));
    EXPECT_EQ(Look(), after);
    disk.unreadableFiles = "?";
    EXPECT_EQ(Open(disk)->Undo(), "");
    EXPECT_EQ(Look(), before);
}

TEST_F(JournalTrouble, TheOnlyCopyOfAThingIsNeverGivenUp) {
    CutOff([&](FileSystem& files) { EXPECT_TRUE(files.SetAside(lear)); });
    drive.Fill("Hangar", "Jets\\Lear\\another.txt=x");
    EXPECT_THAT(TakeBackAll(), testing::SizeIs(1));
    auto history = Open(disk);
    history->GiveUpCutOff(history->CutOff().front());
    ExceedLimits(*history);
    history = Open(disk);
    EXPECT_EQ(history->Entries().size(), 2u); // it takes no other's place
    static_cast<void>(history->Files().MakeRoom(drive.Root(), ~std::uint64_t{0}));
    history->Empty();
    EXPECT_EQ(KeptOf("lear.air"), 1);
    ASSERT_EQ(history->Entries().size(), 1u);
    EXPECT_THAT(history->Entries().front().whyNot,
                HasSubstr("What was kept of it is in " + drive.At("Hangar\\~kx~kept")));
    std::filesystem::remove_all(drive.Files().HostPath(drive.At("Hangar\\~kx~kept"))); // by the user
    history->Empty();
    EXPECT_THAT(history->Entries(), testing::IsEmpty());
}

TEST_F(JournalTrouble, WhatIsKeptOnADriveThatIsAwayGoesWhenItIsBack) {
    const auto history = Open(disk);
    SetAsideLear(*history);
    ASSERT_TRUE(drive.Files().Rename(drive.At("Hangar"), drive.At("Away")));
    history->SetLocations({drive.At("Sim\\")});
    ExceedLimits(*history);
    ASSERT_TRUE(drive.Files().Rename(drive.At("Away"), drive.At("Hangar")));
    ASSERT_EQ(history->Entries().size(), 2u);
    EXPECT_EQ(history->Entries().front().whyNot, "");
    history->Prune();
    EXPECT_EQ(history->Entries().size(), 1u);
    EXPECT_EQ(KeptOf("lear.air"), 0);
}

TEST_F(JournalTrouble, ACommandThatIsToGoOnWithoutItsLogGoesOn) {
    for (const char* change : {"CreateNew", "Write", "Flush"}) {
        SCOPED_TRACE(change);
        disk.FailOn(change, ".log", FileFault::DiskFull);
        const auto history = Open(disk);
        int questions = 0;
        history->Files().mayGoOnWithoutLog = [&](auto&) { return ++questions > 0; };
        history->Begin({.name = "Work"});
        Exchange(history->Files(), gauge);
        EXPECT_TRUE(history->End());
        EXPECT_EQ(drive.Get("Sim\\gauges\\a.gau"), "new");
        EXPECT_EQ(questions, 1);
        EXPECT_THAT(Open(drive.Files())->CutOff(), testing::IsEmpty());
    }
}

TEST_F(JournalTrouble, WhatIsHalfLetGoIsNotBroughtBack) {
    const auto names = drive.Names("Hangar\\Jets\\Lear");
    for (int change = 1; !HasFailure(); ++change) {
        SCOPED_TRACE(change);
        drive.Fill("Hangar", "Jets\\Lear\\lear.air=air, Jets\\Lear\\panel\\panel.cfg=panel, Jets\\Lear\\old.txt=old");
        auto history = Open(drive.Files());
        SetAsideLear(*history);
        FaultyFiles faulty(drive.Files());
        faulty.StopAt(change);
        Open(faulty)->Empty();
        history = Open(drive.Files());
        EXPECT_THAT(history->CutOff(), testing::IsEmpty());
        if (history->NextUndo() && history->Undo().empty()) {
            EXPECT_EQ(drive.Names("Hangar\\Jets\\Lear"), names);
        }
        if (faulty.Changes() < change)
            break;
    }
}

TEST_F(JournalTrouble, AFileThatCannotGoBackToItsPlaceIsStillKnown) {
    const std::string panel = lear + "\\panel\\panel.cfg";
    disk.FailWhere([&](auto& change, auto& path) {
        return change == "Link" || path == panel ? FileFault::Denied : FileFault::None;
    });
    const auto history = Open(disk);
    history->Begin({.name = "Work"});
    static_cast<void>(history->Files().CreateDirectory(drive.At("Hangar\\~kx~scratch")));
    Make(history->Files(), drive.At("Hangar\\~kx~scratch\\1"), "new");
    EXPECT_FALSE(history->Files().Replace(drive.At("Hangar\\~kx~scratch\\1"), panel));
    EXPECT_FALSE(history->Trouble()); // the user is asked
    disk.FailWhere({});
    EXPECT_TRUE(history->End(false));
    EXPECT_THAT(history->Remains(), testing::IsEmpty());
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
        EXPECT_EQ(history->Files().SetAside(lear).fault, FileFault::NotKept);
        EXPECT_TRUE(history->Files().Delete(drive.At("Sim\\gauges\\c.gau")));
        EXPECT_TRUE(history->End(false));
        EXPECT_THAT(history->Remains(), testing::SizeIs(1));
        EXPECT_THAT(TakeBackAll(), testing::IsEmpty());
    }
    CutOff([&](FileSystem& files) { EXPECT_TRUE(files.Delete(gauge)); }, true);
    EXPECT_THAT(TakeBackAll(), testing::SizeIs(1));
    EXPECT_THAT(TakeBackAll(), testing::IsEmpty());
}

TEST_F(JournalTrouble, WhoHasTakenAFormerNameIsNamed) {
    const std::string old = lear + "\\old.txt";
    for (const std::string& name : {lear, old}) {
        CutOff([&](FileSystem& files) {
            if (name == lear)
                EXPECT_TRUE(files.Rename(lear, drive.At("Hangar\\Props\\Lear 2")));
            else
                EXPECT_TRUE(files.Replace(old, lear + "\\panel\\panel.cfg"));
        });
        Make(drive.Files(), name, "of the user");
        EXPECT_THAT(TakeBackAll(), testing::ElementsAre(testing::Field(&Status::path, name)));
        EXPECT_TRUE(drive.Files().Delete(name));
        EXPECT_THAT(TakeBackAll(), testing::IsEmpty());
        EXPECT_EQ(Look(), before);
    }
}

TEST_F(JournalTrouble, ACommandThatWasNotEndedStandsBeforeTheNextOne) {
    const auto history = Open(disk);
    history->Begin({.name = "First"});
    Exchange(history->Files(), gauge);
    history->Begin({.name = "Second"});
    EXPECT_TRUE(history->Files().SetAside(lear));
    EXPECT_TRUE(history->End());
    EXPECT_THAT(TakeBackAll(), testing::IsEmpty());
    for (int turn = 0; turn < 2; ++turn)
        EXPECT_EQ(history->Undo(), "");
    EXPECT_EQ(Look(), before);
}

TEST_F(JournalTrouble, WhatTheUserHasPutInTheFreePlaceSinceStays) {
    CutOff([&](FileSystem& files) {
        static_cast<void>(files.CreateDirectory(drive.At("Sim\\~kx~scratch")));
        static_cast<void>(files.CreateDirectory(drive.At("Sim\\~kx~scratch\\1")));
        disk.FailWhere([isOff = false](auto& change, auto&) mutable { // between its record and the deed
            isOff = isOff || change == "Rename";
            return isOff ? FileFault::Failed : FileFault::None;
        });
        EXPECT_FALSE(files.Rename(drive.At("Sim\\~kx~scratch\\1"), drive.At("Sim\\aircraft\\Lear")));
    });
    disk.FailWhere({});
    drive.Fill("Sim", "aircraft\\Lear\\mine.air=mine");
    EXPECT_THAT(TakeBackAll(), testing::IsEmpty());
    EXPECT_TRUE(drive.Has("Sim\\aircraft\\Lear\\mine.air"));
}

// A command that was taken back before another one came is not done again after it, whatever becomes of that one.
TEST_F(JournalTest, ANewCommandEndsTheRedo) {
    auto history = Open(drive.Files());
    const auto work = [&](const char* name) {
        history->Begin({name});
        Make(history->Files(), drive.At("Staging\\").append(name), name);
        ASSERT_TRUE(history->End());
    };
    work("first");
    work("second");
    for (int turn = 0; turn < 2; ++turn)
        EXPECT_EQ(history->Undo(), "");
    EXPECT_EQ(history->RedoOrder().size(), 2u);
    EXPECT_EQ(history->Redo(), "");
    work("third");
    EXPECT_EQ(history->NextRedo(), nullptr);
    EXPECT_EQ(history->Undo(), "");
    EXPECT_EQ(history->Redo(), "");
    EXPECT_EQ(history->NextRedo(), nullptr);
    EXPECT_EQ(drive.Names("Staging"), (std::vector<std::string>{"first", "third"}));
}

TEST_F(JournalTest, WhatComesWhileTheUserReadsIsNotTheCommands) {
    for (const char* mine : {"Sim\\aircraft\\Lear\\mine.txt", "Sim\\gauges\\a.gau"}) {
        auto history = Open(drive.Files());
        history->Begin({.name = "Install"});
        static_cast<void>(history->Files().CreateDirectory(drive.At("Sim\\aircraft\\Lear")));
        Make(history->Files(), drive.At("Sim\\aircraft\\Lear\\lear.air"), "air");
        static_cast<void>(history->Files().Delete(drive.At("Sim\\gauges\\a.gau")));
        history->LookAround();
        drive.Put(mine, "mine");
        Make(history->Files(), drive.At("Sim\\aircraft\\Lear\\record.txt"), "record");
        ASSERT_TRUE(history->End());
        EXPECT_THAT(history->Undo(), HasSubstr(drive.At(mine)));
        static_cast<void>(drive.Files().Delete(drive.At(mine)));
        EXPECT_EQ(history->Undo(), "");
        EXPECT_EQ(drive.Get("Sim\\gauges\\a.gau"), "gauge a");
        EXPECT_FALSE(drive.Has("Sim\\aircraft\\Lear"));
    }
}

// It stays in the history, but its undo has nothing to do.
TEST_F(JournalTest, WhatHasLeftNothingDoesNotStandBeforeTheRest) {
    const std::string before = Look();
    auto history = Open(drive.Files());
    history->Begin({.name = "First"});
    Make(history->Files(), drive.At("Staging\\first.txt"), "first");
    ASSERT_TRUE(history->End());
    history->Begin({.name = "Second"});
    Make(history->Files(), drive.At("Staging\\a.txt"), "a");
    static_cast<void>(history->Files().Rename(drive.At("Staging\\a.txt"), drive.At("Staging\\b.txt")));
    static_cast<void>(history->Files().Delete(drive.At("Staging\\b.txt")));
    ASSERT_TRUE(history->End());
    ASSERT_EQ(history->Undo(), "");
    ASSERT_EQ(history->Undo(), "");
    EXPECT_EQ(Look(), before);
    EXPECT_EQ(history->NextUndo(), nullptr);
    ASSERT_EQ(history->Redo(), "");
    EXPECT_TRUE(drive.Has("Staging\\first.txt"));
}

TEST_F(JournalTest, ARenameThereAndBackIsNoCommand) {
    const std::string before = Look(), from = drive.At("Hangar\\Jets\\Lear"), to = drive.At("Hangar\\Jets\\Cub");
    auto history = Open(drive.Files());
    const auto rename = [&] {
        EXPECT_TRUE(history->Files().Rename(from, to));
        EXPECT_TRUE(history->Files().Rename(to, from));
    };
    history->Begin({.name = "Rename"});
    rename();
    EXPECT_FALSE(history->HasChanged());
    ASSERT_TRUE(history->End());
    EXPECT_THAT(history->Entries(), testing::IsEmpty());
    EXPECT_EQ(Look(), before);
    history->Begin({.name = "Rename"});
    rename();
    Make(history->Files(), from + "\\new.txt", "new");
    ASSERT_TRUE(history->End());
    ASSERT_EQ(history->Undo(), "");
    EXPECT_EQ(Look(), before);
}

} // namespace
} // namespace korvadex::test
