// Whole cases as text, in cases/*.case: what is on the drive, a command of the program, what it asks and shows, and
// what is on the drive then. A line is a verb and what it is about; indentation, blank lines and lines that begin with
// "#" mean nothing. Lines before the first "case NAME" belong to each case of the file. In texts and bytes "|" ends a
// line and {2C} is the character of that code; C:\ is the test's drive; $Name stands for what "let Name = TEXT" says.
// An outline names files with their bytes and empty directories: a.txt=bytes, empty\, sub\b.txt=more
//
// The drive (Staging\, Hangar\, FS\aircraft\, FS\gauges\ and App\ are there):
//   fill DIRECTORY: OUTLINE         put FILE = BYTES         unicode FILE = TEXT (of two bytes a letter)
//   aircraft DIRECTORY\ (that of PackageBuilder)             pack FILE (as in a compressed package)
//   zip FILE: OUTLINE (=@FILE: the bytes of that one)
//                                   delete PATH              empty DIRECTORY\          move PATH -> PATH
//   readonly FILE                   link PATH -> TARGET      void FILE (no bytes, and its time as it was)
//   fail                            no more
//   fail CHANGE PART FAULT          from now on every such change of a path with this part (*: any)
// The user (the program starts with the first of these):
//   hangar, staging, refresh        select CATEGORY\PACKAGE  name TEXT (into the field for a package's name)
//   do ENTRY (of the menus) or KEY (of the toolbar)          drop FILE, FILE (archives)
//   next (picture)                  exit
// What follows such a line is shown by it, in this order; nothing else is. "..." is whatever comes there:
//   say TEXT -> ANSWER              warn, inform, alarm: with an icon; without an answer it is OK
//   install TEXT, import TEXT       the gauge crosscheck     enter PROMPT -> TEXT
//   archive FILE                    of the file choice       pick A|B -> ROW (of the configurations)
//   take A|B -> ROW (to import)     rename NAME|TITLE -> NAME|TITLE -> ... (until it is accepted)
//   then LINE                       is done when the question before it is answered
// What is to be seen then:
//   tree DIRECTORY: OUTLINE         all that is there        names DIRECTORY: NAME, NAME (of all)
//   file FILE = BYTES               packed FILE (it is an archive now)
//   same                            the drive, as before the last command (or the last "now")
//   same but -NAMES, OUTLINE        without all that begins with these names, and with these files
//   has PATH, lacks PATH            alike DIR\, DIR\        lists FILE: a line that it has
//   shows FIELD: TEXT               of what the window shows; or GROUP: the names of its files (Shown has the fields)
#include "platform/windows_path.h"
#include "tests/support/faulty_files.h"
#include "tests/support/package_builder.h"
#include "tests/support/program_fixture.h"
#include "tests/support/zip_builder.h"

#include <filesystem>
#include <fstream>

namespace korvadex::test {
namespace {

struct Line {
    int number = 0;
    std::string verb, text;
};
struct Case {
    std::string file, name;
    std::vector<Line> lines;
};
using Texts = std::vector<std::string>;

void Replace(std::string& text, std::string_view what, std::string_view with) {
    for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += with.size())
        text.replace(at, what.size(), with);
}

Texts Split(const std::string& text, const std::string& separator) {
    Texts parts;
    std::size_t from = 0;
    for (std::size_t at; (at = text.find(separator, from)) != text.npos; from = at + separator.size())
        parts.push_back(text.substr(from, at - from));
    parts.push_back(text.substr(from));
    return parts;
}

// What stands before and behind the first separator; without one the second is "".
std::pair<std::string, std::string> Cut(const std::string& text, const std::string& separator) {
    const auto at = (text + " ").find(separator);
    if (at == text.npos)
        return {text, ""};
    return {text.substr(0, at), text.substr(std::min(text.size(), at + separator.size()))};
}

const std::map<std::string, Answer> Answers = {
    {"Yes", Answer::Yes}, {"No", Answer::No}, {"Cancel", Answer::Cancel}, {"OK", Answer::Ok}};
const std::map<std::string, FileFault> Faults = {{"InUse", FileFault::InUse},
                                                 {"Denied", FileFault::Denied},
                                                 {"DiskFull", FileFault::DiskFull},
                                                 {"ReadOnlyDisk", FileFault::ReadOnlyDisk}};

class CaseTest : public ProgramTest {
  public:
    explicit CaseTest(const Case& text) : script(text) {}

    void TestBody() override {
        for (auto line = script.lines.begin(); line != script.lines.end() && !IsSkipped();) {
            const testing::ScopedTrace trace(script.file.c_str(), line->number, line->verb + " " + line->text);
            const Line& action = *line++;
            for (; line != script.lines.end() && dialogue.contains(line->verb); ++line)
                Do(*line);
            Do(action);
        }
    }

  private:
    using Verb = std::function<void(const std::string&)>;
    using Verbs = std::map<std::string, Verb>;

    void Do(const Line& line) {
        for (const Verbs* verbs : {&dialogue, &actions, &deeds}) {
            if (const auto verb = verbs->find(line.verb); verb != verbs->end()) {
                if (verbs == &actions)
                    return Act([&] { verb->second(line.text); });
                return verb->second(line.text);
            }
        }
        ADD_FAILURE() << "no such verb: " << line.verb;
    }
    static void Require(const Status& status) {
        EXPECT_TRUE(bool(status)) << status.path << ": " << DescribeFault(status.fault);
    }
    void Act(const std::function<void()>& action) {
        if (!program) {
            PutSettings();
            ASSERT_TRUE(Make(disk).Start());
        }
        before = drive.Tree();
        action();
        user.Finish();
    }
    // A text of the case as the program writes it.
    std::string In(std::string text, std::string_view lineEnd = "\r\n") const {
        Replace(text, "C:\\", drive.Root());
        Replace(text, "|", lineEnd);
        for (std::size_t at = 0; (at = text.find('{', at)) != text.npos; ++at)
            if (const auto end = text.find('}', at); end == at + 3)
                text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16)));
        return text;
    }
    Verb Message(MessageIcon icon) {
        return [=, this](const std::string& line) {
            const auto arrow = line.rfind(" -> ");
            const auto answer = Answers.find(arrow == line.npos ? "" : line.substr(arrow + 4));
            const bool isOk = answer == Answers.end();
            user.Expect(In(isOk ? line : line.substr(0, arrow), "\n"), isOk ? Answer::Ok : answer->second, icon);
        };
    }
    void Select(const std::string& path) {
        const auto [category, name] = Cut(path, "\\");
        ProgramTest::Select(category, -1);
        const auto& packages = program->View().packages;
        for (std::size_t i = 0; i < packages.size(); ++i)
            if (packages[i].name == name)
                return program->ChoosePackage(static_cast<int>(i));
        EXPECT_EQ(name, "") << "no such package";
    }
    void ExpectTree(std::map<std::string, std::string> expected, const std::string& changes) {
        for (const auto& change : Split(changes, ", ")) {
            if (change.starts_with('-')) {
                EXPECT_NE(
                    std::erase_if(expected, [&](auto& entry) { return entry.first.starts_with(change.substr(1)); }), 0u)
                    << "not there: " << change;
            } else if (const auto [name, bytes] = Cut(change, "="); !name.empty()) {
                for (auto at = name.find('\\'); at != name.npos; at = name.find('\\', at + 1))
                    expected[name.substr(0, at + 1)];
                expected[name] = In(bytes);
            }
        }
        auto now = drive.Tree();
        std::string differences;
        for (auto* tree : {&now, &expected})
            for (const auto& [name, bytes] : *tree)
                if (!now.contains(name) || !expected.contains(name) || now[name] != expected[name])
                    differences += (tree == &now ? "\nthere: " : "\nexpected: ") + name + "=" + bytes;
        EXPECT_EQ(differences, "");
    }
    std::string Shown(const std::string& field) const {
        const MainView& view = program->View();
        const auto joined = [](const Texts& texts) {
            std::string all;
            for (const auto& text : texts)
                all += (all.empty() ? "" : "|") + text;
            return all;
        };
        for (std::size_t group = 0; group < ComponentGroupNames.size(); ++group)
            if (field == ComponentGroupNames[group]) {
                Texts names;
                for (const auto& file : program->Package().ComponentFiles[group])
                    names.push_back(file.Name());
                return joined(names);
            }
        const std::map<std::string, std::function<std::string()>> fields = {
            {"name", [&] { return view.packageName; }},
            {"proposed", [&] { return view.proposedName; }},
            {"caption", [&] { return view.caption; }},
            {"side", [&] { return view.header; }},
            {"size", [&] { return view.sizeText; }},
            {"title", [&] { return program->Package().aircraftTitle; }},
            {"sound", [&] { return program->Package().PackageSoundAlias; }},
            {"packages", [&] { return joined(form.PackageLines()); }},
            {"package", [&] { return program->Package().path; }},
            {"status", [&] { return form.status; }},
            {"list", [&] { return form.listCaption + ": " + joined(form.listLines); }},
            {"started", [&] { return joined(launcher.started); }},
            {"ends", [&] { return std::to_string(form.ends); }},
        };
        return fields.at(field)();
    }

    const Case script;
    FaultyFiles disk{drive.Files()};
    std::vector<Texts> faults;
    std::map<std::string, std::string> before; // the drive

    const Verbs deeds = {
        {"fill",
         [this](auto& line) {
             const auto [directory, outline] = Cut(line, ": ");
             drive.Fill(directory, In(outline));
         }},
        {"put",
         [this](auto& line) {
             const auto [file, bytes] = Cut(line, " = ");
             drive.Put(file, In(bytes));
         }},
        {"unicode",
         [this](auto& line) {
             const auto [file, text] = Cut(line, " = ");
             drive.Put(file, TwoByteText(In(text)));
         }},
        {"pack",
         [this](auto& line) { drive.Put(line, ZipBuilder().Add(LastPathComponent(line), drive.Get(line)).Bytes()); }},
        {"aircraft", [this](auto& line) { PackageBuilder(drive, line); }},
        {"zip",
         [this](auto& line) {
             const auto [file, outline] = Cut(line, ": ");
             ZipBuilder zip;
             for (const auto& member : Split(outline, ", ")) {
                 auto [name, bytes] = Cut(member, "=");
                 Replace(name, "\\", "/");
                 zip.Add(name, bytes.starts_with('@') ? drive.Get(bytes.substr(1)) : In(bytes));
             }
             drive.Put(file, zip.Bytes());
         }},
        {"empty", [this](auto& line) { EXPECT_TRUE(DeleteTree(context, drive.At(line)).empty()); }},
        {"delete",
         [this](auto& line) {
             const std::string path = drive.At(WithoutBackslash(line));
             if (line.ends_with('\\') && DeleteTree(context, drive.At(line)).empty())
                 Require(drive.Files().RemoveDirectory(path));
             else
                 Require(drive.Files().Delete(path));
         }},
        {"move",
         [this](auto& line) {
             const auto [from, to] = Cut(line, " -> ");
             Require(drive.Files().Rename(drive.At(from), drive.At(to)));
         }},
        {"readonly", [this](auto& line) { Require(drive.Files().SetReadOnly(drive.At(line), true)); }},
        {"link",
         [this](auto& line) {
             const auto [path, target] = Cut(line, " -> ");
             if (!drive.MakeLink(path, target))
                 GTEST_SKIP() << "no links on this machine";
         }},
        {"void",
         [this](auto& line) {
             const FileTime time = drive.Files().Info(drive.At(line))->time;
             drive.Put(line, "");
             Require(drive.Files().SetTime(drive.At(line), time));
         }},
        {"fail",
         [this](auto& line) {
             faults.push_back(Split(line, " "));
             if (line.empty())
                 faults.clear();
             disk.FailWhere([this](auto& change, auto& path) {
                 for (const auto& fault : faults)
                     if ((fault[0] == "*" || fault[0] == change) &&
                         (fault[1] == "*" || path.find(fault[1]) != path.npos))
                         return Faults.at(fault[2]);
                 return FileFault::None;
             });
         }},
        {"now", [this](auto&) { before = drive.Tree(); }},
        {"tree",
         [this](auto& line) {
             const auto [directory, outline] = Cut(line, ": ");
             EXPECT_EQ(drive.Outline(directory), In(outline));
         }},
        {"names",
         [this](auto& line) {
             const auto [directory, names] = Cut(line, ": ");
             EXPECT_EQ(drive.Names(directory), Split(names, ", "));
         }},
        {"file",
         [this](auto& line) {
             const auto [file, bytes] = Cut(line, " = ");
             EXPECT_EQ(drive.Get(file), In(bytes));
         }},
        {"packed", [this](auto& line) { EXPECT_THAT(drive.Get(line), testing::StartsWith("PK")) << line; }},
        {"same", [this](auto& line) { ExpectTree(before, Cut(line, "but ").second); }},
        {"alike",
         [this](auto& line) {
             const auto [one, other] = Cut(line, ", ");
             EXPECT_EQ(drive.Tree(one), drive.Tree(other));
         }},
        {"lists",
         [this](auto& line) {
             const auto [file, text] = Cut(line, ": ");
             EXPECT_THAT(Split(drive.Get(file), "\r\n"), testing::Contains(In(text)));
         }},
        {"has", [this](auto& line) { EXPECT_TRUE(drive.Has(line)); }},
        {"lacks", [this](auto& line) { EXPECT_FALSE(drive.Has(line)); }},
        {"shows",
         [this](auto& line) {
             const auto [field, text] = Cut(line, ": ");
             EXPECT_EQ(Shown(field), In(text, "|"));
         }},
    };
    const Verbs actions = {
        {"hangar", [this](auto&) { program->GoToHangar(); }},
        {"staging", [this](auto&) { program->GoToStaging(); }},
        {"refresh", [this](auto&) { program->Refresh(); }},
        {"select", [this](auto& line) { Select(line); }},
        {"name", [this](auto& line) { program->SetPackageName(In(line)); }},
        {"next", [this](auto&) { program->ShowNextImage(); }},
        {"exit", [this](auto&) { program->Shutdown(); }},
        {"do", [this](auto& line) { program->RunCommand(line); }},
        {"drop",
         [this](auto& line) {
             Texts paths = Split(line, ", ");
             for (auto& path : paths)
                 path = drive.At(path);
             program->ProcessArchives(paths);
         }},
    };
    const Verbs dialogue = {
        {"say", Message(MessageIcon::None)},
        {"warn", Message(MessageIcon::Exclamation)},
        {"inform", Message(MessageIcon::Information)},
        {"alarm", Message(MessageIcon::Critical)},
        {"install", [this](auto& line) { user.ExpectInstallStatus(In(line, "\n")); }},
        {"import", [this](auto& line) { user.ExpectImportStatus(In(line, "\n")); }},
        {"archive",
         [this](auto& line) { user.ExpectZipFile(line.empty() ? std::nullopt : std::optional(drive.At(line))); }},
        {"enter",
         [this](auto& line) {
             const auto [prompt, text] = Cut(line, " -> ");
             user.ExpectText(In(prompt, "\n"), text);
         }},
        {"pick",
         [this](auto& line) {
             const auto [rows, row] = Cut(line, " -> ");
             user.ExpectConfigurations(Split(rows, "|"), row.empty() ? std::nullopt : std::optional(std::stoi(row)));
         }},
        {"take",
         [this](auto& line) {
             const auto [names, row] = Cut(line, " -> ");
             user.ExpectImport(Split(names, "|"), {std::stoi(row)});
         }},
        {"rename",
         [this](auto& line) {
             std::vector<RenameEntry> entries;
             for (const auto& entry : Split(line, " -> "))
                 entries.push_back({In(Cut(entry, "|").first), In(Cut(entry, "|").second)});
             const RenameEntry shown = entries.front();
             entries.erase(entries.begin());
             user.ExpectRename(shown, line.find('|') != line.npos, entries);
         }},
        {"then",
         [this](auto& line) {
             const auto [verb, text] = Cut(line, " ");
             user.Then([this, then = Line{0, verb, text}] { Do(then); });
         }},
    };
};

std::vector<Case> ReadCases(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::map<std::string, std::string> names;
    std::vector<Case> cases = {{path.string(), "", {}}}; // the first: what belongs to each
    int number = 0;
    for (std::string text; std::getline(file, text);) {
        ++number;
        text.erase(0, text.find_first_not_of(' '));
        for (auto name = names.rbegin(); name != names.rend(); ++name) // longer ones first
            Replace(text, "$" + name->first, name->second);
        auto [verb, rest] = Cut(text, " ");
        if (verb == "let")
            names.insert(Cut(rest, " = "));
        else if (verb == "case")
            cases.push_back({path.string(), rest, cases.front().lines});
        else if (!verb.empty() && verb[0] != '#')
            cases.back().lines.push_back({number, verb, rest});
    }
    return cases;
}

const bool areRegistered = [] {
    for (const auto& entry : std::filesystem::directory_iterator(KORVADEX_CASES)) {
        auto cases = ReadCases(entry.path());
        cases.erase(cases.begin());
        for (const Case& text : cases)
            testing::RegisterTest(("Cases_" + entry.path().stem().string()).c_str(), text.name.c_str(), nullptr,
                                  nullptr, text.file.c_str(), text.lines.empty() ? 0 : text.lines.front().number,
                                  [=]() -> CaseTest* { return new CaseTest(text); });
    }
    return true;
}();

} // namespace
} // namespace korvadex::test
