// The queue of archives: its file, and hundreds of them on their way into the Hangar.
#include "app/archive_queue.h"
#include "app/taken_archives.h"
#include "package/file_primitives.h"
#include "tests/support/faulty_files.h"
#include "tests/support/program_fixture.h"
#include "tests/support/random_addon.h"
#include "tests/support/zip_builder.h"

#include <algorithm>
#include <functional>
#include <set>

namespace korvadex::test {
namespace {

class QueueFile : public testing::Test {
  protected:
    QueueFile() {
        drive.Fill("", "App\\, Zips\\a.zip=1, Zips\\b.zip=2, Zips\\c.zip=3, Zips\\50%20 \xC3\xA9.zip=4");
        EXPECT_TRUE(queue.Open(drive.At("App\\queue.txt"), false));
    }
    QueuedArchive Zip(const std::string& name, const std::string& part = "", const std::string& reason = "") {
        return {drive.At("Zips\\" + name), part, reason};
    }
    // What waits, "a.zip(part): reason"; and after a restart the same.
    std::string Waiting() {
        ArchiveQueue again(drive.Files());
        EXPECT_TRUE(again.Open(drive.At("App\\queue.txt"), true));
        EXPECT_EQ(again.Entries(), queue.Entries());
        return Describe(queue);
    }
    std::string Describe(const ArchiveQueue& described) {
        std::string text;
        for (const auto& [path, part, reason] : described.Entries()) {
            const bool isInZips = path.starts_with(drive.At("Zips\\"));
            text += (text.empty() ? "" : ", ") + (isInZips ? path.substr(drive.At("Zips\\").size()) : path) +
                    (part.empty() ? "" : "(" + part + ")") + (reason.empty() ? "" : ": " + reason);
        }
        return text;
    }

    TemporaryDrive drive;
    ArchiveQueue queue{drive.Files()};
};

TEST_F(QueueFile, IsWrittenAfterEachChange) {
    struct Step {
        std::function<Status()> change;
        const char* waiting;
    };
    const std::vector<Step> steps = {
        {[&] {
             return queue.Add({Zip("b.zip"), Zip("a.zip"), Zip("B.ZIP")});
         },
         "b.zip, a.zip"},
        {[&] {
             return queue.Add({Zip("a.zip"), Zip("a.zip", "Two\\"), Zip("50%20 \xC3\xA9.zip")});
         },
         "b.zip, a.zip, a.zip(Two\\), 50%20 \xC3\xA9.zip"},
        {[&] {
             return queue.AddFirst({Zip("c.zip", "x"), Zip("c.zip", "y"), Zip("a.zip")});
         },
         "c.zip(x), c.zip(y), b.zip, a.zip, a.zip(Two\\), 50%20 \xC3\xA9.zip"},
        {[&] {
             return queue.PutLast({Zip("C.zip", "x", "A\r\nwhy\tnot 100%."), Zip("none.zip")});
         },
         "c.zip(y), b.zip, a.zip, a.zip(Two\\), 50%20 \xC3\xA9.zip, c.zip(x): A\r\nwhy\tnot 100%."},
        {[&] {
             return queue.SetReasons({Zip("c.zip", "x", ""), Zip("b.zip", "", "why")});
         },
         "c.zip(y), b.zip: why, a.zip, a.zip(Two\\), 50%20 \xC3\xA9.zip, c.zip(x)"},
        {[&] {
             return queue.Remove({Zip("b.zip"), Zip("c.zip", "y"), Zip("50%20 \xC3\xA9.zip"), Zip("none.zip")});
         },
         "a.zip, a.zip(Two\\), c.zip(x)"},
        {[&] { return queue.Remove(queue.Entries()); }, ""}};
    for (const Step& step : steps) {
        SCOPED_TRACE(step.waiting);
        EXPECT_TRUE(step.change());
        EXPECT_EQ(Waiting(), step.waiting);
    }
}

TEST_F(QueueFile, LosesNoLineThatItReads) {
    drive.Put("App\\queue.txt", "\xEF\xBB\xBF" + drive.At("Zips\\a.zip") + "\t\twhy\r\n\r\n" + drive.At("Zips\\a.zip") +
                                    "\n" + drive.At("Zips\\gone.zip") + "\tpart\tleft\nodd\tline\n\xFF\xFE" + "C\n" +
                                    drive.At("Zips\\b.z"));
    ASSERT_TRUE(queue.Open(drive.At("App\\queue.txt"), false));
    const std::string odd = std::string(": ") + OddLineReason, gone = std::string(": ") + GoneArchiveReason;
    EXPECT_EQ(Describe(queue),
              "a.zip: why, gone.zip(part): left, odd\tline" + odd + ", \xFF\xFE" + "C" + odd + ", b.z" + gone);
    ASSERT_TRUE(queue.Add({Zip("b.zip")}));
    drive.Put("Zips\\b.z", "is there now");
    EXPECT_TRUE(queue.LookAgain());
    EXPECT_FALSE(queue.LookAgain());
    EXPECT_EQ(Waiting(),
              "a.zip: why, gone.zip(part): left, odd\tline" + odd + ", \xFF\xFE" + "C" + odd + ", b.z, b.zip");
}

TEST_F(QueueFile, KeepsTwoArchivesOfOneNameWhereTheHostTellsThemApart) {
    drive.Put("Zips\\A.ZIP", "another one");
    if (drive.Get("Zips\\a.zip") == "1") {
        EXPECT_TRUE(queue.Add({Zip("a.zip"), Zip("A.ZIP"), Zip("a.zip")}));
        EXPECT_TRUE(queue.Remove({Zip("A.ZIP")}));
        EXPECT_EQ(Waiting(), "a.zip");
    }
}

TEST_F(QueueFile, IsLeftAsItIsWhereItCannotBeReadOrWritten) {
    EXPECT_TRUE(queue.Add({Zip("a.zip")}));
    const std::string before = drive.Get("App\\queue.txt");
    FaultyFiles faulty(drive.Files());
    ArchiveQueue other(faulty);
    ASSERT_TRUE(other.Open(drive.At("App\\queue.txt"), false));
    faulty.FailOn("Write", "", FileFault::DiskFull);
    EXPECT_EQ(other.Add({Zip("b.zip")}).fault, FileFault::DiskFull);
    EXPECT_EQ(Describe(other), "a.zip, b.zip");
    faulty.FailWhere({});
    ASSERT_TRUE(other.Open(drive.At("App\\queue.txt"), true));
    EXPECT_TRUE(other.Add({Zip("b.zip")}));
    EXPECT_EQ(drive.Get("App\\queue.txt"), before);
    drive.Fill("App", "directory.txt\\");
    EXPECT_FALSE(other.Open(drive.At("App\\directory.txt"), false));
    EXPECT_FALSE(other.Add({Zip("b.zip")}));
    EXPECT_EQ(Describe(other), "b.zip");

    const std::string taken = drive.At("App\\taken.txt");
    HistoryEntry first, second;
    first.item = 1, second.item = 2;
    for (const HistoryEntry& entry : {first, second}) {
        TakenArchives archives(faulty);
        archives.Open(taken, false);
        EXPECT_EQ(bool(archives.Note(entry, {Zip("a.zip")}, {first, second})), faulty.unreadable.empty());
        EXPECT_EQ(archives.By(entry).size(), 1u);
        faulty.unreadable = taken;
    }
    TakenArchives archives(drive.Files());
    archives.Open(taken, true);
    EXPECT_EQ(archives.By(first).size(), 1u);
}

// An add-on that needs no question, and what is to be found of it in its package.
struct Plane {
    std::string title;
    std::map<std::string, std::string> files; // by their paths in the archive

    std::string Archive(const std::string& password = "") const {
        ZipBuilder zip;
        for (const auto& [path, bytes] : files) {
            ZipBuilder::Options options;
            options.password = password;
            zip.Add(path, bytes, options);
        }
        return zip.Bytes();
    }
};

Plane MakePlane(Dice& dice, int number) {
    const std::string name = "Plane " + std::to_string(1000 + number);
    const std::string top = dice.OneIn(2) ? "" : dice.OneIn(2) ? name + "/" : "Add-on/aircraft/" + name + "/";
    const auto bytes = [&] { return std::string(1 + dice.Below(9), static_cast<char>('a' + dice.Below(26))); };
    Plane plane{name, {{top + "aircraft.cfg", "[fltsim.0]\r\ntitle=" + name + "\r\n"}}};
    for (const char* file : {"model/model.cfg", "model/p.mdl", "panel/panel.cfg", "sound/sound.cfg", "texture/a.bmp"})
        plane.files[top + file] = bytes();
    for (const char* file : {"panel/own.gau", "texture/b.bmp", "readme.txt", "docs/manual.doc", "sound/engine.wav"})
        if (dice.OneIn(2))
            plane.files[top + file] = bytes();
    return plane;
}

// What can be wrong with the archive of a plane: what becomes of it, and a part of the reason that is given then.
struct Trouble {
    const char* reason;
    std::function<std::string(const Plane& plane, const std::string& earlier)> archive;
};

const std::vector<Trouble> Troubles = {
    {"several configurations",
     [](Plane plane, auto&) {
         for (auto& [path, bytes] : plane.files)
             bytes += path.ends_with("aircraft.cfg") ? "[fltsim.1]\r\ntitle=Another\r\n" : "";
         return plane.Archive();
     }},
    {"uplicate",
     [](Plane plane, auto&) {
         plane.files["old/a.bmp"] = "another one";
         return plane.Archive();
     }},
    {"The model.cfg file is missing",
     [](Plane plane, auto&) {
         std::erase_if(plane.files, [](auto& file) { return file.first.ends_with("model.cfg"); });
         return plane.Archive();
     }},
    {"Please Enter The Password!", [](const Plane& plane, auto&) { return plane.Archive("secret"); }},
    {"An executable file was found",
     [](Plane plane, auto&) {
         plane.files["setup.exe"] = "MZ";
         return plane.Archive();
     }},
    {"More than one aircraft",
     [](Plane plane, auto&) {
         plane.files["second/aircraft.cfg"] = "[fltsim.0]\r\ntitle=Second\r\n";
         return plane.Archive();
     }},
    {"Package name already exists in Jets",
     [](Plane plane, const std::string& earlier) {
         for (auto& [path, bytes] : plane.files)
             if (path.ends_with("aircraft.cfg"))
                 bytes = "[fltsim.0]\r\ntitle=" + earlier + "\r\n";
         return plane.Archive();
     }},
    {"Package name already exists in MSFS",
     [](Plane plane, auto&) {
         for (auto& [path, bytes] : plane.files)
             if (path.ends_with("aircraft.cfg"))
                 bytes = "[fltsim.0]\r\ntitle=Installed Plane\r\n";
         return plane.Archive();
     }},
    {"There was a problem with the zip file", [](const Plane& plane, auto&) { return plane.Archive().substr(0, 200); }},
    {"Found another ZIP file called more.zip",
     [](Plane plane, auto&) {
         plane.files["more.zip"] = ZipBuilder().Add("x.txt", "x").Bytes();
         return plane.Archive();
     }},
    {"were not unpacked",
     [](Plane plane, auto&) {
         plane.files["../../outside.txt"] = "x";
         return plane.Archive();
     }},
    {"The aircraft.cfg file is missing", [](auto&, auto&) { return ZipBuilder().Add("readme.txt", "x").Bytes(); }}};

class ManyArchives : public ProgramTest {
  protected:
    static constexpr int Count = 300, TroubleEvery = 10;

    ManyArchives() {
        drive.Fill("", "Hangar\\Jets\\, FS\\aircraft\\Installed_Plane\\aircraft.cfg=x");
        for (int i = 0; i < Count; ++i) {
            const Plane plane = MakePlane(dice, i);
            const bool isTrouble = i % TroubleEvery == TroubleEvery - 1;
            const Trouble& trouble = Troubles[std::size_t(i / TroubleEvery) % Troubles.size()];
            drive.Put("Zips\\" + NameOf(i),
                      isTrouble ? trouble.archive(plane, planes.begin()->second.title) : plane.Archive());
            if (isTrouble)
                reasons[NameOf(i)] = trouble.reason;
            else
                planes[NameOf(i)] = plane;
        }
        archives = drive.States("Zips");
    }
    static std::string NameOf(int number) {
        return (number % 3 == 0 ? "first\\" : "") + std::to_string(1000 + number) + (number % 2 ? ".zip" : ".ZIP");
    }
    void TakeAll(const std::string& headline) {
        dialogs.chosenCategories = {"Jets"};
        user.Expect(headline + "\n\nThe others stay in the queue.  The list shows the reasons.",
                    MessageIcon::Exclamation);
        program->TakeAllArchives();
        EXPECT_EQ(form.listLines.at(0), headline);
        EXPECT_TRUE(drive.Tree("Staging").empty());
        EXPECT_FALSE(drive.Has("Staging\\~kx~kept") || drive.Has("Hangar\\~kx~kept"));
        EXPECT_EQ(drive.States("Zips"), archives);
    }
    // Each archive is in the Hangar, or waits.
    void ExpectNoneLost() {
        std::map<std::string, int> waiting;
        for (const QueuedArchive& archive : program->View().queue)
            ++waiting[archive.path.substr(drive.At("Zips\\").size())];
        const auto hangar = drive.Tree("Hangar\\Jets");
        for (const auto& [name, plane] : planes)
            EXPECT_EQ(waiting[name] + int(hangar.contains(plane.title + "\\aircraft.cfg")), 1) << name;
        for (const auto& [name, reason] : reasons)
            EXPECT_EQ(waiting[name], 1) << name;
    }

    Dice dice{20};
    std::map<std::string, Plane> planes;        // by their archives
    std::map<std::string, std::string> reasons; // of the others
    std::map<std::string, std::pair<std::string, FileInfo>> archives;
};

TEST_F(ManyArchives, GoIntoTheHangarInOneGo) {
    Start();
    const auto before = drive.Tree("Hangar");
    drive.Put("Staging\\ours.txt", "x");
    program->OfferArchives({drive.At("Zips")});
    EXPECT_EQ(program->View().queue.size(), std::size_t(Count));
    ASSERT_TRUE(drive.Files().Delete(drive.At("Staging\\ours.txt")));

    // Stopped in the middle, and taken up by the next run.
    form.onStatus["120 of 300:"] = [&] { program->StopAfterThis(); };
    dialogs.chosenCategories = {"Jets"};
    const std::size_t troubles = reasons.size();
    user.Expect("... of 300 archives were taken into the Hangar....", MessageIcon::Exclamation);
    program->TakeAllArchives();
    const std::size_t left = program->View().queue.size();
    EXPECT_EQ(left, Count - 120 + std::size_t(std::ranges::count_if(program->View().queue, [](const auto& archive) {
                        return !archive.reason.empty();
                    })));
    ExpectNoneLost();
    program->Shutdown();
    program.reset();
    Start();
    ASSERT_EQ(program->View().queue.size(), left);
    TakeAll(std::to_string(left - troubles) + " of " + std::to_string(left) + " archives were taken into the Hangar.");
    ExpectNoneLost();

    const auto hangar = drive.Tree("Hangar\\Jets");
    for (const auto& [name, plane] : planes) {
        std::multiset<std::string> expected, found; // each file under its own name
        for (const auto& [path, bytes] : plane.files)
            expected.insert(path.substr(path.rfind('/') + 1) + "=" + bytes);
        for (auto at = hangar.upper_bound(plane.title + "\\"); at != hangar.end(); ++at) {
            if (!at->first.starts_with(plane.title + "\\"))
                break;
            if (!at->first.ends_with('\\'))
                found.insert(at->first.substr(at->first.rfind('\\') + 1) + "=" + at->second);
        }
        EXPECT_EQ(found, expected) << name;
    }
    ASSERT_EQ(program->View().queue.size(), troubles);
    for (const QueuedArchive& archive : program->View().queue)
        EXPECT_THAT(archive.reason, testing::HasSubstr(reasons[archive.path.substr(drive.At("Zips\\").size())]))
            << archive.path;

    // Taken back they wait again, also those of the run before.
    program->UndoLast();
    EXPECT_EQ(program->View().queue.size(), left);
    program->UndoLast();
    EXPECT_EQ(program->View().queue.size(), std::size_t(Count));
    EXPECT_EQ(drive.Tree("Hangar"), before);
    program->RedoLast();
    EXPECT_EQ(program->View().queue.size(), left);
    program->UndoLast();

    // One by one they become the same.
    EXPECT_TRUE(drive.Tree("Staging").empty());
    program->ChooseCategory(0);
    int number = 0;
    for (const auto& [name, plane] : planes)
        if (++number % 18 == 0) {
            program->OfferArchives({drive.At("Zips\\" + name)});
            user.Expect("Done.\n\nWould you like to clear the Staging area at this point?", Answer::Yes)
                .Expect("Are you sure you want to erase everything in the staging directory?", Answer::No);
            program->CopyStagingToHangar();
            const auto single = drive.Tree("Hangar\\Jets\\" + plane.title);
            const std::string root = plane.title + "\\";
            for (const auto& [path, bytes] : single)
                EXPECT_EQ(hangar.at(root + path), bytes) << path;
            EXPECT_EQ(std::size_t(std::count_if(hangar.lower_bound(root), hangar.end(),
                                                [&](auto& file) { return file.first.starts_with(root); })),
                      single.size() + 1);
            DeleteContents(drive.Files(), drive.At("Staging\\"));
            program->Refresh();
        }
}

} // namespace
} // namespace korvadex::test
