// The command line: each command beside the window's own on the same ground, its questions, and the program itself.
#include "cli/command_table.h"
#include "cli/json.h"
#include "package/progress.h"
#include "tests/support/faulty_files.h"
#include "tests/support/package_builder.h"
#include "tests/support/program_fixture.h"
#include "tests/support/zip_builder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace korvadex::test {
namespace {

using Words = std::vector<std::string>;
using Files = std::map<std::string, std::string>;

// The names of what differs.
Words Differences(const Files& a, const Files& b) {
    std::vector<Files::value_type> differing;
    std::ranges::set_symmetric_difference(a, b, std::back_inserter(differing));
    Words names;
    for (const auto& [name, bytes] : differing)
        names.push_back(name + " = " + bytes.substr(0, 60));
    return names;
}

class CommandLine : public ProgramTest {
  protected:
    CommandLine() {
        PutSettings("", places);
        PackageBuilder(drive, "Hangar\\Jets\\Lear\\");
        PackageBuilder(drive, "Hangar\\Props\\Cub\\").With("Gauges\\CubClock.gau", "MZ");
        PackageBuilder(drive, "Hangar\\Props\\Lear\\");
        drive.Fill("FS", "gauges\\Nobodys.gau=MZ, aircraft\\Old_One\\panel\\panel.cfg=x, aircraft\\Old_One\\old.air=x, "
                         "aircraft\\Old_One\\model\\model.cfg=x, aircraft\\Old_One\\sound\\sound.cfg=x, "
                         "aircraft\\Old_One\\aircraft.cfg=[fltsim.0]");
        drive.Put("Downloads\\plain.zip", Archive());
        drive.Put("Downloads\\more\\two.zip", Archive("title=Two\r\n"));
        drive.Put("Downloads\\more\\asks.zip",
                  ZipBuilder().Add("Lear.air", "flight model").Add("inner.zip", Archive()).Bytes());
    }
    static std::string Archive(const std::string& title = "title=Plain One\r\n") {
        ZipBuilder zip;
        for (const auto& [name, bytes] : PackageBuilder::Files())
            zip.Add(LastPathComponent(name), name == "aircraft.cfg" ? "[fltsim.0]\r\n" + title : bytes);
        return zip.Bytes();
    }

    int Run(const Words& words, const std::string& typed = "", bool isTerminal = false) {
        program.reset();
        std::istringstream in(typed);
        std::ostringstream outText, errorText;
        interruptsLeft = interruptsAfter;
        const int code = RunCommandLine(words, {in, outText, errorText, isTerminal, isTerminal},
                                        {.files = disk ? *disk : drive.Files(),
                                         .launcher = launcher,
                                         .appDir = [&] { return drive.At("App\\"); },
                                         .absolute = [](const std::string& path) { return path; },
                                         .noteInterrupts = [] {},
                                         .wasInterrupted = [&] { return interruptsLeft-- <= 0; }});
        out = outText.str();
        error = errorText.str();
        return code;
    }
    // What a command may change; the records without the times of the files that an installation rewrites.
    Files Ground() const {
        static const std::regex time("(placed\\t\\d+\\t)\\d+");
        Files all;
        for (const char* place : {"Hangar", "Staging", "FS", "Downloads"})
            for (auto& [name, bytes] : drive.Tree(place))
                if (name.find(ScratchDirectoryName) == name.npos) // is cleared at the next start
                    all[place + ("\\" + name)] = std::regex_replace(bytes, time, "$1");
        return all;
    }

    const std::string places = "MTOP=1200.5\r\nMLEFT=900\r\nMHEIGHT=7200\r\nMWIDTH=9600\r\nLTOP=1\r\nLLEFT=2\r\n"
                               "LHEIGHT=3000\r\nLWIDTH=4000\r\nLASTPACKAGE0=Jets\\Lear\r\n";
    FileSystem* disk = nullptr; // in the place of the drive's
    std::string out, error;
    int interruptsAfter = 1'000'000'000, interruptsLeft = 0; // looks until one is seen
};

struct Road {
    Words line;
    std::function<void(Program&)> window; // what the window does
    std::vector<Words> before = {};
    int code = AllDone;
};

TEST_F(CommandLine, DoesWhatTheWindowDoes) {
    const PackageRef lear{"Jets", "Lear"}, cub{"Props", "Cub"};
    const auto archives = [&](std::vector<std::string> names) {
        for (std::string& name : names)
            name = drive.At("Downloads\\" + name);
        return names;
    };
    const Words install = {"install", "Cub"}, installBoth = {"install", "Jets/Lear", "cub"};
    const std::vector<Road> roads = {
        {{"install", "cub"}, [&](Program& window) { window.InstallEach({cub}); }},
        {installBoth,
         [&](Program& window) {
             window.InstallEach({lear, cub});
         }},
        {{"remove", "CUB", "--answer", "yes"}, [&](Program& window) { window.RemoveEach({cub}); }, {install}},
        {{"--answer=yes", "remove", "jets\\lear", "Cub"},
         [&](Program& window) {
             window.RemoveEach({lear, cub});
         },
         {installBoth}},
        {{"compress", "Cub"}, [&](Program& window) { window.CompressEach({cub}); }},
        {{"compress", "--all"}, [&](Program& window) { window.CompressAll(); }},
        {{"decompress", "Cub", "Props\\Lear"},
         [&](Program& window) {
             window.DecompressEach({cub, {"Props", "Lear"}});
         },
         {{"compress", "--all"}}},
        {{"decompress", "--all"}, [&](Program& window) { window.DecompressAll(); }, {{"compress", "--all"}}},
        {{"move", "Cub", "jets"}, [&](Program& window) { window.MoveEach({cub}, "Jets"); }},
        {{"unused-gauges", "--delete", "--answer", "yes"},
         [&](Program& window) {
             user.isPatient = false;
             user.Expect("This may take a minute...").ExpectUnusedGauges({"Nobodys.gau"}, {{0}});
             user.Expect("Are you sure you want to remove these gauges?", Answer::Yes).Expect("Done.");
             window.ShowUnusedGauges();
         }},
        {{"add", drive.At("Downloads\\plain.zip"), "--category", "jets"},
         [&](Program& window) {
             window.OfferArchives(archives({"plain.zip"}));
             window.ChooseCategory(0);
             dialogs.chosenCategories = {"Jets"};
             window.CopyStagingToHangar();
         }},
        {{"add", drive.At("Downloads"), "--category", "New Ones"},
         [&](Program& window) {
             drive.Put("Staging\\in the way.txt", "x"); // so that they wait
             window.OfferArchives(archives({"more\\asks.zip", "more\\two.zip", "plain.zip"}));
             ASSERT_TRUE(bool(drive.Files().Delete(drive.At("Staging\\in the way.txt"))));
             dialogs.chosenCategories = {"New Ones"};
             window.TakeAllArchives();
         },
         {},
         QuestionOpen},
        {{"import", "old_one", "--category", "Props"},
         [&](Program& window) {
             user.isPatient = false;
             user.ExpectImport({"Old_One"}, {0}).ExpectImportStatus("...").Expect("Done.");
             window.ImportIntoStaging();
             window.GoToHangar();
             window.ChooseCategory(1);
             window.GoToStaging();
             user.isPatient = true;
             window.CopyStagingToHangar();
         }},
    };
    for (const Road& road : roads) {
        SCOPED_TRACE(testing::PrintToString(road.line));
        for (const Words& words : road.before)
            ASSERT_EQ(Run(words), AllDone) << error;
        program.reset();
        const auto before = Ground();
        user.isPatient = true;
        road.window(Start());
        const auto wanted = Ground();
        EXPECT_NE(before, wanted);
        for (int left = 10; left > 0 && Ground() != before && !program->View().undoText.empty(); --left)
            program->UndoLast();
        ASSERT_EQ(Differences(Ground(), before), Words());
        program->Shutdown();
        static_cast<void>(drive.Files().Delete(drive.At("App\\queue.txt")));

        EXPECT_EQ(Run(road.line), road.code) << out << error;
        EXPECT_EQ(Differences(Ground(), wanted), Words());
        EXPECT_EQ(Run({"undo"}), AllDone) << error;
        EXPECT_EQ(Differences(Ground(), before), Words());
        EXPECT_EQ(Run({"redo"}), AllDone) << error;
        EXPECT_EQ(Differences(Ground(), wanted), Words());
        while (Run({"undo"}) == AllDone) {
        }
    }
}

TEST_F(CommandLine, LooksWithoutAnyTrace) {
    drive.Put("Hangar\\~kx~scratch\\1~x", "half");
    const std::string begun = "App\\journal\\000007.log"; // by another run, just now
    drive.Put(begun, "");
    const auto before = drive.Tree();
    EXPECT_EQ(Run({"list"}), AllDone);
    EXPECT_EQ(out, "Jets\\Lear\nProps\\Cub\nProps\\Lear\n");
    EXPECT_EQ(Run({"list", "--category", "props"}), AllDone);
    EXPECT_EQ(out, "Props\\Cub\nProps\\Lear\n");
    EXPECT_EQ(Run({"list", "--category=Jets", "--json"}), AllDone);
    EXPECT_TRUE(std::regex_match(
        out,
        std::regex("\\[\\n  \\{\"category\": \"Jets\", \"name\": \"Lear\", \"installed\": false, \"title\": \"Lear "
                   "45\", \"compressed\": false, \"bytes\": \\d+, \"added\": "
                   "\"\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ\", \"alias\": \"\"\\}\\]\\n")))
        << out;
    EXPECT_EQ(Run({"show", "cub"}), AllDone);
    EXPECT_NE(out.find("Gauges:\n  Gauges\\CubClock.gau\n"), out.npos) << out;
    EXPECT_EQ(Run({"show", "cub", "--json"}), AllDone);
    EXPECT_NE(out.find("\"Gauges\": [\"Gauges\\\\CubClock.gau\", "), out.npos) << out;
    EXPECT_EQ(JsonText("\"\\\x7F\xFF\xC3\xA4\xE2\x82"),
              "\"\\\"\\\\\\u007f\xEF\xBF\xBD\xC3\xA4\xEF\xBF\xBD\xEF\xBF\xBD\"");
    EXPECT_EQ(Run({"import"}), AllDone);
    EXPECT_EQ(out, "Old_One\n");
    EXPECT_EQ(Run({"check", "cub"}), NotDone);
    EXPECT_EQ(out, "This package is not currently installed in Flight Simulator.\n");
    EXPECT_EQ(Run({"check", "--aliases", "cub"}), AllDone) << error;
    EXPECT_EQ(Run({"history"}), AllDone) << error;
    EXPECT_EQ(error, "");
    EXPECT_EQ(Differences(drive.Tree(), before), Words());
    EXPECT_TRUE(drive.Has(begun));
    EXPECT_FALSE(drive.Has("App\\" + std::string(LockFileName)));
    Start(); // what another one has for itself is not needed
    const auto window = std::move(program);
    EXPECT_EQ(Run({"list"}), AllDone) << error;
}

TEST_F(CommandLine, ChangesNothingBeforeItsQuestionIsAnswered) {
    ASSERT_EQ(Run({"install", "Cub"}), AllDone);
    drive.Put("FS\\aircraft\\Cub\\my.flt", "saved");
    struct Case {
        Words line;
        std::string question; // in what is said
        int code = QuestionOpen;
        std::string typed = {};
        bool isTerminal = false;
    };
    const std::string remove = "Props\\Cub: Are you sure you want to remove this package", lost = "They will be lost.",
                      archive = drive.At("Downloads\\plain.zip");
    const Case cases[] = {
        {{"remove", "Cub"}, remove},
        {{"remove", "Cub", "--answer", "stop"}, remove, QuestionOpen, "yes\n", true},
        {{"remove", "Cub"}, "", QuestionOpen, "", true}, // the end of what is typed
        {{"remove", "Cub", "--answer", "no"}, "[no]", NotDone},
        {{"remove", "Cub"}, "[yes/no] ", NotDone, "maybe\nNo\n", true},
        {{"remove", "Cub", "--answer", "yes"}, lost}, // what only the simulator has
        {{"remove", "Cub"}, lost, NotDone, "y\nn\n", true},
        {{"unused-gauges", "--delete"}, "Are you sure you want to remove these gauges?"},
        {{"add", archive}, "The category of the Hangar"},
        {{"add", archive}, "Props", NotDone, "\n", true},
        {{"add", archive, drive.At("Downloads\\none.zip")}, "The category: ", NotDone, "\n", true},
        {{"unused-gauges", "--delete", "Nobodys", "nobodys.gau"}, "There is no unused gauge Nobodys in MSFS.", NotDone},
        {{"add", archive, "--category", "con"}, "con", NotDone},
        {{"add", drive.At("Downloads\\more\\asks.zip"), "--category", "New"},
         "Found another ZIP file called inner.zip"},
        {{"add", drive.At("Downloads\\none.zip"), "--category", "Jets"}, "0 of 1 archive", NotDone},
        {{"install", "Lear"}, "Several packages are called Lear.", NotDone},
        {{"install", "Jets\\Cub"}, "There is no package Jets\\Cub", NotDone},
        {{"move", "Cub", "Nowhere"}, "There is no category Nowhere", NotDone},
        {{"import", "nobody"}, "MSFS has no aircraft nobody", NotDone},
        {{"compress"}, "--all", NotDone},
        {{"remove", "Cub", "--answer", "maybe"}, "--answer takes", WrongUsage},
        {{"remove"}, "usage: korvadex-cli remove PACKAGE...", WrongUsage},
        {{"undo", "all"}, "usage: korvadex-cli undo\n", WrongUsage},
        {{"list", "--delete"}, "list has no option --delete", WrongUsage},
        {{"list", "--json=1"}, "takes no value", WrongUsage},
        {{"list", "--category"}, "needs a value", WrongUsage},
        {{"fly"}, "There is no command fly.", WrongUsage},
        {{"setup"}, "Korvadex knows its directories already", NotDone},
    };
    const auto before = Ground();
    for (const auto& [line, question, code, typed, isTerminal] : cases) {
        SCOPED_TRACE(testing::PrintToString(line));
        EXPECT_EQ(Run(line, typed, isTerminal), code) << out << error;
        EXPECT_NE(error.find(question), error.npos) << error;
        EXPECT_EQ(Differences(Ground(), before), Words());
    }
    EXPECT_EQ(Run({"history"}), AllDone);
    EXPECT_EQ(std::ranges::count(out, '\n'), 1) << out;
    EXPECT_EQ(Run({"remove", "Cub"}, "y\nyes\n", true), AllDone) << error;
    EXPECT_FALSE(drive.Has("FS\\aircraft\\Cub\\"));
    EXPECT_NE(SavedSettings().find(places), std::string::npos) << SavedSettings();
}

TEST_F(CommandLine, WaitsForNobodyAndStopsWhenInterrupted) {
    const auto before = Ground();
    Start();
    const auto window = std::move(program);
    EXPECT_EQ(Run({"install", "Cub"}), NotDone);
    EXPECT_NE(error.find("Another Korvadex is at work here"), error.npos) << error;
    EXPECT_NE(error.find("Nothing was changed."), error.npos) << error;
    window->Shutdown();
    EXPECT_EQ(Differences(Ground(), before), Words());

    for (interruptsAfter = 3; interruptsAfter < 1000; interruptsAfter *= 2) { // at last when nothing is left to stop
        const int code = Run({"install", "Cub"});
        EXPECT_EQ(code == AllDone, drive.Has("FS\\aircraft\\Cub\\")) << interruptsAfter << out << error;
        if (code == AllDone)
            break;
    }
    EXPECT_LT(interruptsAfter, 1000);
    interruptsAfter = 1'000'000'000;
    ASSERT_EQ(Run({"undo"}), AllDone) << error;
    interruptsAfter = 3;
    EXPECT_EQ(Run({"install", "Cub"}), NotDone) << out << error;
    EXPECT_EQ(Differences(Ground(), before), Words());
    EXPECT_EQ(Run({"compress", "Cub"}), NotDone) << out << error;
    EXPECT_NE(out.find("The command was stopped."), out.npos) << out << error;
    interruptsAfter = 1'000'000'000;
    EXPECT_EQ(Run({"decompress", "Cub"}), AllDone) << out << error;
    interruptsAfter = 3;
    EXPECT_NE(
        Run({"add", drive.At("Downloads\\plain.zip"), drive.At("Downloads\\more\\two.zip"), "--category", "Jets"}),
        AllDone);
    EXPECT_FALSE(drive.Has("Hangar\\Jets\\Two\\"));
    EXPECT_EQ(drive.Outline("Staging"), "");
}

TEST_F(CommandLine, LeavesNothingHalfDoneOnAFullDisk) {
    const auto before = Ground();
    for (const Words& line : {Words{"install", "Cub"}, {"add", drive.At("Downloads\\plain.zip"), "--category", "New"}})
        for (int change = 1, changes = 10; change <= changes; change += 9) {
            SCOPED_TRACE(line.front() + " " + std::to_string(change));
            FaultyFiles faulty(drive.Files());
            faulty.FailAt(change, FileFault::DiskFull);
            disk = &faulty;
            const int code = Run(line);
            disk = nullptr;
            changes = std::max(changes, faulty.Changes());
            const std::string said = out + error;
            const bool isTakenBack = code != AllDone || Run({"undo"}) == AllDone;
            EXPECT_TRUE(isTakenBack) << error;
            EXPECT_EQ(Differences(Ground(), before), Words()) << code << said;
        }
}

TEST_F(CommandLine, TakesBackWhatTheDiskHasHarmedWhereNobodySaysOtherwise) {
    const auto before = Ground();
    std::set<int> codes;
    for (int change = 1, changes = 10; change <= changes; change += 8) {
        SCOPED_TRACE(change);
        FaultyFiles faulty(drive.Files());
        faulty.FailAt(change, FileFault::Failed);
        disk = &faulty;
        const int code = Run({"install", "Cub"});
        disk = nullptr;
        changes = std::max(changes, faulty.Changes());
        if (error.find("Shall everything that this command has changed be taken back?") == error.npos) {
            static_cast<void>(Run({"undo"}));
            continue;
        }
        codes.insert(code);
        const std::string last = "The command was ended, as its question was not answered.  Everything that it had "
                                 "changed has been taken back: all is as it was before.\n";
        EXPECT_TRUE(error.ends_with(last)) << error;
        EXPECT_EQ(Differences(Ground(), before), Words()) << out << error;
    }
    EXPECT_EQ(codes, std::set<int>({QuestionOpen}));
}

TEST_F(CommandLine, SaysWhileItLooksThatACommandWasCutOff) {
    for (int change = 8; error.find("what is shown may be half done") == error.npos; change += 4) {
        ASSERT_LT(change, 60);
        FaultyFiles killed(drive.Files());
        killed.StopAt(change);
        disk = &killed;
        EXPECT_NE(Run({"install", "Cub"}), AllDone);
        disk = nullptr;
        EXPECT_EQ(Run({"list"}), AllDone);
    }
    EXPECT_EQ(out, "Jets\\Lear\nProps\\Cub\nProps\\Lear\n");
    static_cast<void>(Run({"undo"})); // its start puts it in order
    EXPECT_EQ(Run({"list"}), AllDone);
    EXPECT_EQ(error, "");
}

TEST_F(CommandLine, MakesNoHangarWhereTheDriveIsAway) {
    ASSERT_TRUE(bool(drive.Files().Rename(drive.At("Hangar"), drive.At("Away"))));
    for (const Words& line : {Words{"add", drive.At("Downloads"), "--category", "Jets", "--answer", "yes"}, {"undo"}}) {
        EXPECT_EQ(Run(line, "yes\n", true), NotDone);
        EXPECT_NE(error.find("is not there.  Please make sure that its drive is connected"), error.npos) << error;
    }
    EXPECT_EQ(Run({"history"}), AllDone) << error;
    EXPECT_EQ(Run({"list"}), NotDone);
    EXPECT_NE(error.find("The Hangar directory"), error.npos) << error;
    EXPECT_FALSE(drive.Has("Hangar\\"));
}

TEST_F(CommandLine, IsSetUpOnce) {
    ASSERT_TRUE(bool(drive.Files().Delete(drive.At("App\\kx.ini"))));
    EXPECT_EQ(Run({"list"}), NotDone);
    EXPECT_NE(error.find("korvadex-cli setup --staging"), error.npos) << error;
    const auto setup = [&](const std::string& staging) {
        return Words{"setup", "--staging", drive.At(staging), "--hangar", drive.At("Hangar"), "--msfs", drive.At("FS")};
    };
    drive.Put("Full\\a.txt", "x");
    EXPECT_EQ(Run(setup("Full")), NotDone);
    EXPECT_NE(error.find("You must specify an empty directory"), error.npos) << error;
    EXPECT_EQ(Run(setup("New")), QuestionOpen);
    EXPECT_FALSE(drive.Has("New\\"));
    EXPECT_FALSE(drive.Has("App\\kx.ini"));
    EXPECT_EQ(Run(setup("Staging")), AllDone) << out << error;
    EXPECT_EQ(Run({"list"}), AllDone) << error;
    EXPECT_EQ(out, "Jets\\Lear\nProps\\Cub\nProps\\Lear\n");
}

#ifdef KORVADEX_BIN
std::string Document(const std::string& name) {
    std::ifstream file(KORVADEX_ROOT "/" + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(CommandLine, IsWrittenDown) {
    for (const char* name : {"docs/kxdoc.htm", "cli/korvadex-cli.1.in", "cli/korvadex-cli.bash"})
        for (const LineCommand& command : LineCommands()) {
            const std::regex word("(^|[^a-z-])" + std::string(command.name) + "($|[^a-z-])");
            EXPECT_TRUE(std::regex_search(Document(name), word)) << name << " lacks " << command.name;
        }
}

// As scripts start it; one of them stands in the help page.
TEST_F(CommandLine, IsAProgram) {
    namespace fs = std::filesystem;
    const fs::path root = drive.Files().HostPath(drive.Root()), drives = root / "drives";
    fs::create_directories(drives);
    fs::create_directory_symlink(root, drives / "c:");
    const auto start = [&](const std::string& line) {
        const std::string whole = "cd '" + (root / "Downloads").string() + "' && export KORVADEX_DRIVES='" +
                                  drives.string() + "' KORVADEX_HOME='C:\\App' PATH=\"" KORVADEX_BIN ":$PATH\" && { " +
                                  line + "; } >'" + (root / "out").string() + "' 2>&1 </dev/null";
        return std::system(whole.c_str()) / 256;
    };
    EXPECT_EQ(start("korvadex-cli --version"), AllDone);
    EXPECT_EQ(drive.Get("out").find("korvadex-cli 1."), 0u) << drive.Get("out");

    const std::string page = Document("docs/kxdoc.htm"), mark = "<pre id=\"script\"><code>";
    const auto from = page.find(mark) + mark.size();
    std::string script = page.substr(from, page.find("</code></pre>", from) - from);
    for (const auto& [entity, letter] : {std::pair{"&gt;", ">"}, {"&lt;", "<"}, {"&amp;", "&"}})
        script = std::regex_replace(script, std::regex(entity), letter);
    drive.Put("hangar.sh", script);
    EXPECT_EQ(start("korvadex-cli list >/dev/full"), NotDone);
    EXPECT_NE(drive.Get("out").find("could not be written"), std::string::npos) << drive.Get("out");
    EXPECT_EQ(start("d=$(mktemp -d) && korvadex-cli add \"$d\" \"$d/a/none.zip\" --category Jets; rmdir \"$d\""),
              AllDone);
    EXPECT_NE(drive.Get("out").find("/a/none.zip"), std::string::npos) << drive.Get("out");
    EXPECT_EQ(drive.Get("out").find('\\'), std::string::npos) << drive.Get("out"); // outside of the drives
    EXPECT_EQ(start("bash ../hangar.sh . jets 'Plain One' Jets/Two Cub"), AllDone) << drive.Get("out");
    EXPECT_NE(drive.Get("out").find("Some archives ask something"), std::string::npos) << drive.Get("out");
    EXPECT_EQ(start("korvadex-cli check plain\\ one two cub"), AllDone) << drive.Get("out");
}
#endif

} // namespace
} // namespace korvadex::test
