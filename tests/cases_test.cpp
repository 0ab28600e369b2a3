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
//   delete PATH                     empty DIRECTORY\         move PATH -> PATH
//   readonly FILE                   link PATH -> TARGET      void FILE (no bytes, and its time as it was)
//   noon DIRECTORY                  its files get one time   headless (no editor starts)
//   space BYTES                     free on the disk
//   fail                            no more
//   fail CHANGE PART FAULT          from now on every such change of a path with this part (*: any); Memory: there is
//                                   none left
// The user (the program starts with the first of these):
//   start                           (once more) with the settings that there are; "start first": there are none;
//                                   "start fails", "start first fails": the program ends
//   do NAME                         an entry of the menus, a key of the toolbar, a button of the window
//   undo, redo                      of the last command
//   hangar, staging, refresh, exit  select CATEGORY\PACKAGE  category ROW
//   name TEXT                       into the field for a package's name
//   drop FILE, FILE (archives)      queue next, take ROW, skip, remove ROWS, mix ROW, all CATEGORY
//   add FILE, FILE (pictures that are chosen, or "dropped FILE, FILE")
//   last ROW (of the last archives)
//   paste BYTES (a picture)         open, folder, erase GROUP POSITIONS (files of a component list)
//   line ROW, close (the list window) photo ROW (of the gallery)
//   show CATEGORY\PACKAGE, new (category), recategory CATEGORY (its name), moveto CATEGORY
//   each COMMAND CATEGORY\PACKAGE, ... (install, remove, gauges, refs, compress, decompress, delete)
//   moveeach CATEGORY\PACKAGE, ... -> CATEGORY
// What follows such a line is shown by it, in this order; nothing else is. "..." is whatever comes there:
//   say TEXT -> ANSWER              warn, inform, alarm: with an icon; without an answer it is OK
//                                   ("No to all": with the check box)
//   install TEXT, import TEXT       the gauge crosscheck     enter PROMPT -> TEXT
//   archive FILE                    of the file choice       pick A|B -> ROW (of the configurations)
//   choose NAME: TITLE, FILES|... -> ROW (of the aircraft in an archive)
//   take A|B -> ROW,ROW             to import                gauges A|B -> ROWS -> ROWS (unused, and deleted)
//   info FIELD=TEXT, ... -> taken   what is entered there, and whether it is accepted
//   rename NAME|TITLE -> NAME|TITLE -> ... (until it is accepted)
//   locations STAGING, HANGAR, FS   entered in their dialog  closed (that dialog)
//   then LINE                       is done when the question before it is answered
//   at N of M: LINE                 is done when the turn of that package has come
// What is to be seen then:
//   tree DIRECTORY: OUTLINE         all that is there        names DIRECTORY: NAME, NAME (of all)
//   file FILE = BYTES               packed FILE (it is an archive now)
//   same                            the drive, as before the last command (or the last "now")
//   same but -NAMES, OUTLINE        without all that begins with these names, and with these files
//   has PATH, lacks PATH            alike DIR\, DIR\         lists FILE: a line that it has
//   shows FIELD: TEXT               of what the window shows; or GROUP: the names of its files (Shown has the fields)
#include "platform/windows_path.h"
#include "tests/support/faulty_files.h"
#include "tests/support/package_builder.h"
#include "tests/support/program_fixture.h"
#include "tests/support/zip_builder.h"

#include <filesystem>
#include <fstream>
#include <set>

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
    if (text.empty())
        return parts;
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
                                                 {"OtherVolume", FileFault::OtherVolume},
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
    struct Verb {
        Verb(std::function<void(const std::string&)> does) : act(std::move(does)) {}
        Verb(const char* separator, std::function<void(const std::string&, const std::string&)> does)
            : act([=](const std::string& line) {
                  const auto [what, with] = Cut(line, separator);
                  does(what, with);
              }) {}
        std::function<void(const std::string&)> act;
    };
    using Verbs = std::map<std::string, Verb>;

    void Do(const Line& line) {
        if (const auto action = actions.find(line.verb); action != actions.end()) {
            if (!program && line.verb != "start")
                Restart();
            before = drive.Tree();
            action->second.act(line.text);
            return user.Finish();
        }
        const Verbs& verbs = dialogue.contains(line.verb) ? dialogue : deeds;
        const auto verb = verbs.find(line.verb);
        ASSERT_NE(verb, verbs.end()) << "no such verb";
        verb->second.act(line.text);
    }
    // "first": as no run before it has left settings; "fails": the program is to end.
    void Restart(const std::string& how = "") {
        if (!how.starts_with("first"))
            form.geometry.reset(); // of a minimised window
        if (!how.starts_with("first") && !drive.Has("App\\kx.ini"))
            PutSettings();
        EXPECT_EQ(Make(disk).Start(), !how.ends_with("fails"));
    }
    static void Require(const Status& status) {
        EXPECT_TRUE(bool(status)) << status.path << ": " << DescribeFault(status.fault);
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
        return Verb([=, this](const std::string& line) {
            const auto arrow = line.rfind(" -> ");
            auto answer = arrow == line.npos ? "" : line.substr(arrow + 4);
            const bool isForAll = answer.ends_with(" to all");
            if (isForAll)
                answer.resize(answer.size() - 7);
            const bool isOk = !Answers.contains(answer);
            user.Expect(In(isOk ? line : line.substr(0, arrow), "\n"), isOk ? Answer::Ok : Answers.at(answer), isForAll,
                        icon);
        });
    }
    Texts Paths(const std::string& list) const {
        Texts paths = Split(list, ", ");
        for (auto& path : paths)
            path = drive.At(path);
        return paths;
    }
    static std::vector<PackageRef> Packages(const std::string& list) {
        std::vector<PackageRef> packages;
        for (const auto& package : Split(list, ", "))
            packages.push_back(PackageRefOf(package));
        return packages;
    }
    static std::optional<int> Row(const std::string& number) {
        return number.empty() ? std::nullopt : std::optional(std::stoi(number));
    }
    static std::vector<int> Rows(const std::string& numbers) {
        std::vector<int> rows;
        for (const auto& number : Split(numbers, ","))
            if (number != "none")
                rows.push_back(std::stoi(number));
        return rows;
    }
    static int GroupNamed(const std::string& name) {
        const auto at = std::ranges::find(ComponentGroupNames, name);
        return static_cast<int>(at - ComponentGroupNames.begin());
    }
    static std::string GroupText(int group) {
        return group < 0 ? "" : std::string(ComponentGroupNames.at(std::size_t(group)));
    }
    void Run(const std::string& name) {
        static const std::map<std::string, void (Program::*)()> buttons = {
            {"cmdFirstPackage", &Program::SetFirstPackage},
            {"cmdPackageNames", &Program::ListPackagesInCategory},
            {"cmdPackageCategories", &Program::ListCategories},
            {"cmdExplore", &Program::Explore},
            {"cmdImgNext", &Program::ShowNextImage},
            {"cmdImgPrevious", &Program::ShowPreviousImage},
            {"cmdFirstImage", &Program::MakeShownImageFirst},
            {"cmdDeleteImage", &Program::DeleteShownImage}};
        if (const auto button = buttons.find(name); button != buttons.end())
            return (*program.*button->second)();
        program->RunCommand(name);
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
            } else {
                const auto [name, bytes] = Cut(change, "=");
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
        const LoadedPackage& shown = program->Package();
        const auto joined = [](const Texts& texts) {
            std::string all;
            for (const auto& text : texts)
                all += text + "|";
            return all.substr(0, all.empty() ? 0 : all.size() - 1);
        };
        Texts files, left, photos, collection, waiting;
        if (const int group = GroupNamed(field); group < GroupCount) {
            for (const auto& file : shown.ComponentFiles[std::size_t(group)])
                files.push_back(file.Name());
            return joined(files);
        }
        for (const auto& text : user.transcript)
            if (text.starts_with("left: "))
                left.push_back(text.substr(6));
        for (const auto& picture : form.gallery.pictures)
            photos.push_back(picture.path.substr(drive.At("Hangar\\").size()));
        for (const auto& [path, part, reason] : view.queue)
            waiting.push_back(LastPathComponent(path) + part + (reason.empty() ? "" : ": " + reason));
        program->ReadCollection(std::chrono::hours(1));
        for (const auto& category : program->GetCollection().Arrange())
            for (const auto& package : category.packages)
                collection.push_back(DescribeMarks(package));
        const int image = view.imageIndex;
        const std::map<std::string, std::string> fields = {
            {"name", view.packageName},
            {"proposed", view.proposedName},
            {"caption", view.caption},
            {"profile", view.profile},
            {"opened", std::to_string(view.openRevision) + " " + GroupText(view.groupToOpen)},
            {"archives", joined(view.lastArchives)},
            {"side", view.header},
            {"size", view.sizeText},
            {"title", shown.aircraftTitle},
            {"panel", shown.panelText},
            {"sound", shown.soundText},
            {"package", shown.path},
            {"picture", image ? LastPathComponent(shown.pictures.at(std::size_t(image) - 1)) : ""},
            {"categories", joined(view.categories)},
            {"packages", joined(form.PackageLines())},
            {"counts", view.statusCounts},
            {"collection", joined(collection)},
            {"queue", joined(waiting)},
            {"undo", view.undoText},
            {"redo", view.redoText},
            {"status", form.status},
            {"box", user.subject + (user.preset == Answer::No ? ", Enter is No" : "")},
            {"list", form.listCaption + ": " + joined(form.listLines)},
            {"shown", std::to_string(form.listShows)},
            {"revision", std::to_string(view.listRevision)},
            {"opened on", dialogs.pictureDirectory},
            {"comings", std::to_string(form.comings)},
            {"left", joined(left)},
            {"photos", form.gallery.caption + ": " + joined(photos)},
            {"hangar", program->GetSettings().locations.HangarDir},
            {"first", program->GetSettings().LocationProfiles[0].firstPackage},
            {"started", joined(launcher.started)},
            {"ends", std::to_string(form.ends)},
        };
        return fields.at(field);
    }

    const Case script;
    FaultyFiles disk{drive.Files()};
    std::vector<Texts> faults;
    std::map<std::string, std::string> before; // the drive

    const Verbs deeds = {
        {"fill", {": ", [this](auto& directory, auto& outline) { drive.Fill(directory, In(outline)); }}},
        {"put", {" = ", [this](auto& file, auto& bytes) { drive.Put(file, In(bytes)); }}},
        {"unicode", {" = ", [this](auto& file, auto& text) { drive.Put(file, TwoByteText(In(text))); }}},
        {"pack",
         {[this](auto& file) { drive.Put(file, ZipBuilder().Add(LastPathComponent(file), drive.Get(file)).Bytes()); }}},
        {"aircraft", {[this](auto& directory) { PackageBuilder(drive, directory); }}},
        {"zip",
         {": ",
          [this](auto& file, auto& outline) {
              ZipBuilder zip;
              for (const auto& member : Split(outline, ", ")) {
                  auto [name, bytes] = Cut(member, "=");
                  std::ranges::replace(name, '\\', '/');
                  zip.Add(name, bytes.starts_with('@') ? drive.Get(bytes.substr(1)) : In(bytes));
              }
              drive.Put(file, zip.Bytes());
          }}},
        {"empty",
         {[this](auto& directory) { EXPECT_TRUE(DeleteContents(drive.Files(), drive.At(directory)).empty()); }}},
        {"delete", {[this](auto& line) {
             const auto path = drive.Files().HostPath(drive.At(WithoutBackslash(line)));
             EXPECT_NE(std::filesystem::remove_all(path), 0u) << "not there";
         }}},
        {"move",
         {" -> ",
          [this](auto& from, auto& to) {
              const Status moved = drive.Files().Rename(drive.At(from), drive.At(to));
              if (moved.fault == FileFault::BadName)
                  GTEST_SKIP() << "no such names on this machine";
              Require(moved);
          }}},
        {"readonly", {[this](auto& file) { Require(drive.Files().SetReadOnly(drive.At(file), true)); }}},
        {"link",
         {" -> ",
          [this](auto& path, auto& target) {
              if (!drive.MakeLink(path, target))
                  GTEST_SKIP() << "no links on this machine";
          }}},
        {"noon", {[this](auto& directory) {
             for (const auto& name : drive.Names(directory))
                 if (!name.ends_with('\\'))
                     Require(
                         drive.Files().SetTime(drive.At(directory + "\\" + name), FileTime(std::chrono::hours(12))));
         }}},
        {"void", {[this](auto& file) {
             const FileTime time = drive.Files().Info(drive.At(file))->time;
             drive.Put(file, "");
             Require(drive.Files().SetTime(drive.At(file), time));
         }}},
        {"fail", {[this](auto& line) {
             line.empty() ? faults.clear() : faults.push_back(Split(line, " "));
             disk.FailWhere([this](auto& change, auto& path) {
                 for (const auto& fault : faults)
                     if ((fault[0] == "*" || fault[0] == change) &&
                         (fault[1] == "*" || path.find(fault[1]) != path.npos))
                         return fault[2] == "Memory" ? throw std::bad_alloc() : Faults.at(fault[2]);
                 return FileFault::None;
             });
         }}},
        {"space", {[this](auto& bytes) { disk.freeSpace = std::stoull(bytes); }}},
        {"headless", {[this](auto&) { launcher.hasDesktop = false; }}},
        {"close", {[this](auto&) { form.isListVisible = false; }}},
        {"stop", {[this](auto&) { program->StopAfterThis(); }}},
        {"leave", {[this](auto&) {
             for (int i = 0; i < 2; ++i)
                 program->Shutdown();
         }}},
        {"now", {[this](auto&) { before = drive.Tree(); }}},
        {"tree", {": ", [this](auto& directory, auto& outline) { EXPECT_EQ(drive.Outline(directory), In(outline)); }}},
        {"names",
         {": ", [this](auto& directory, auto& names) { EXPECT_EQ(drive.Names(directory), Split(names, ", ")); }}},
        {"file", {" = ", [this](auto& file, auto& bytes) { EXPECT_EQ(drive.Get(file), In(bytes)); }}},
        {"packed", {[this](auto& file) { EXPECT_THAT(drive.Get(file), testing::StartsWith("PK")); }}},
        {"same", {"but ", [this](auto&, auto& changes) { ExpectTree(before, changes); }}},
        {"alike", {", ", [this](auto& one, auto& other) { EXPECT_EQ(drive.Tree(one), drive.Tree(other)); }}},
        {"lists",
         {": ", [this](auto& file,
                       auto& text) { EXPECT_THAT(Split(drive.Get(file), "\r\n"), testing::Contains(In(text))); }}},
        {"has", {[this](auto& path) { EXPECT_TRUE(drive.Has(path)); }}},
        {"lacks", {[this](auto& path) { EXPECT_FALSE(drive.Has(path)); }}},
        {"shows", {": ", [this](auto& field, auto& text) { EXPECT_EQ(Shown(field), In(text, "|")); }}},
    };
    const Verbs actions = {
        {"start", {[this](auto& how) { Restart(how); }}},
        {"do", {[this](auto& name) { Run(name); }}},
        {"hangar", {[this](auto&) { program->GoToHangar(); }}},
        {"staging", {[this](auto&) { program->GoToStaging(); }}},
        {"refresh", {[this](auto&) { program->Refresh(); }}},
        {"undo", {[this](auto&) { program->UndoLast(); }}},
        {"redo", {[this](auto&) { program->RedoLast(); }}},
        {"exit", {[this](auto&) { program->Shutdown(); }}},
        {"category", {[this](auto& row) { program->ChooseCategory(std::stoi(row)); }}},
        {"select", {[this](auto& path) { Select(In(path)); }}},
        {"name", {[this](auto& text) { program->SetPackageName(In(text)); }}},
        {"drop", {[this](auto& files) { program->OfferArchives(Paths(files)); }}},
        {"queue",
         {" ",
          [this](auto& command, auto& rows) {
              if (command == "all") {
                  dialogs.chosenCategories.assign(1, rows.empty() ? std::nullopt : std::optional(rows));
                  program->TakeAllArchives();
              } else if (command == "next") {
                  program->TakeNextArchive();
              } else if (command == "skip") {
                  program->SkipArchive();
              } else if (command == "remove") {
                  program->RemoveFromQueue(Rows(rows));
              } else {
                  const auto routine = command == "mix" ? &Program::AddArchiveToStaging : &Program::TakeArchive;
                  (*program.*routine)(std::stoi(rows));
              }
              form.onStatus.clear();
          }}},
        {"last", {[this](auto& row) { program->ProcessLastArchive(std::stoi(row)); }}},
        {"add", {[this](auto& files) {
             dialogs.chosenPictures.files = Paths(files);
             program->ImportImageFiles();
         }}},
        {"dropped", {[this](auto& files) {
             OfferedPictures offered;
             offered.files = Paths(files);
             program->ImportDroppedImages(offered);
         }}},
        {"paste", {[this](auto& bytes) {
             dialogs.clipboardPictures.jpeg = bytes;
             program->ImportImageClipboard();
         }}},
        {"open", {" ", [this](auto& group, auto& row) { program->OpenComponent(GroupNamed(group), std::stoi(row)); }}},
        {"folder",
         {" ", [this](auto& group, auto& row) { program->ShowComponentInFolder(GroupNamed(group), std::stoi(row)); }}},
        {"erase", {" ", [this](auto& group, auto& rows) { program->DeleteComponents(GroupNamed(group), Rows(rows)); }}},
        {"line", {[this](auto& row) { program->ChooseFileListLine(std::stoi(row)); }}},
        {"show", {[this](auto& package) { program->ShowPackage(PackageRefOf(package)); }}},
        {"new", {[this](auto&) { program->NewCategory(); }}},
        {"recategory", {[this](auto& category) { program->RenameCategory(category); }}},
        {"moveto", {[this](auto& category) { program->MoveToCategory(category); }}},
        {"photo", {[this](auto& row) { program->ChooseGalleryPicture(std::stoi(row)); }}},
        {"moveeach", {" -> ", [this](auto& list, auto& category) { program->MoveEach(Packages(list), category); }}},
        {"each",
         {" ",
          [this](auto& command, auto& list) {
              static const std::map<std::string, void (Program::*)(const std::vector<PackageRef>&)> routines = {
                  {"install", &Program::InstallEach},      {"remove", &Program::RemoveEach},
                  {"gauges", &Program::CheckGaugesOfEach}, {"refs", &Program::CheckReferencesOfEach},
                  {"compress", &Program::CompressEach},    {"decompress", &Program::DecompressEach},
                  {"delete", &Program::DeleteEach}};
              (*program.*routines.at(command))(Packages(list));
              form.onStatus.clear();
          }}},
    };
    const Verbs dialogue = {
        {"say", Message(MessageIcon::None)},
        {"warn", Message(MessageIcon::Exclamation)},
        {"inform", Message(MessageIcon::Information)},
        {"alarm", Message(MessageIcon::Critical)},
        {"install", {[this](auto& text) { user.ExpectInstallStatus(In(text, "\n")); }}},
        {"import", {[this](auto& text) { user.ExpectImportStatus(In(text, "\n")); }}},
        {"archive",
         {[this](auto& file) { user.ExpectZipFile(file.empty() ? std::nullopt : std::optional(drive.At(file))); }}},
        {"enter", {" -> ", [this](auto& prompt, auto& text) { user.ExpectText(In(prompt, "\n"), In(text)); }}},
        {"pick", {" -> ", [this](auto& rows, auto& row) { user.ExpectConfigurations(Split(rows, "|"), Row(row)); }}},
        {"choose",
         {" -> ",
          [this](auto& parts, auto& row) {
              dialogs.aircraft.push_back({Split(In(parts, "\n"), "\n"), Row(row)});
          }}},
        {"take", {" -> ", [this](auto& names, auto& rows) { user.ExpectImport(Split(names, "|"), Rows(rows)); }}},
        {"locations", {[this](auto& list) {
             Texts entered = Split(list, ", ");
             entered.resize(3);
             for (auto& path : entered)
                 path = path.empty() ? "" : drive.At(path);
             dialogs.Enter({entered[0], entered[1], entered[2]});
         }}},
        {"closed", {[this](auto&) { dialogs.Close(); }}},
        {"info",
         {" -> ",
          [this](auto& fields, auto& outcome) {
              user.ExpectInfo(
                  [this, entries = Split(fields, ", "), isTaken = outcome == "taken"](const InfoForm& shown) {
                      static const std::map<std::string, std::string AircraftInfo::*> members = {
                          {"id", &AircraftInfo::atcId},
                          {"maker", &AircraftInfo::manufacturer},
                          {"type", &AircraftInfo::type},
                          {"variation", &AircraftInfo::variation},
                          {"performance", &AircraftInfo::performance}};
                      AircraftInfo entered = shown.info;
                      for (const auto& entry : entries)
                          entered.*members.at(Cut(entry, "=").first) = In(Cut(entry, "=").second);
                      EXPECT_EQ(shown.accept(entered), isTaken);
                  });
          }}},
        {"gauges",
         {" -> ",
          [this](auto& names, auto& deletions) {
              std::vector<std::vector<int>> rows;
              for (const auto& each : Split(deletions, " -> "))
                  rows.push_back(Rows(each));
              user.ExpectUnusedGauges(Split(names, "|"), rows);
          }}},
        {"rename", {[this](auto& line) {
             std::vector<RenameEntry> entries;
             for (const auto& entry : Split(line, " -> "))
                 entries.push_back({In(Cut(entry, "|").first), In(Cut(entry, "|").second)});
             const RenameEntry shown = entries.front();
             entries.erase(entries.begin());
             user.ExpectRename(shown, line.find('|') != line.npos, entries);
         }}},
        {"at",
         {": ",
          [this](auto& turn, auto& what) {
              const auto [verb, text] = Cut(what, " ");
              form.onStatus[turn + ":"] = [this, line = Line{0, verb, text}] { Do(line); };
          }}},
        {"then",
         {" ",
          [this](auto& verb, auto& text) {
              user.Then([this, line = Line{0, verb, text}] { Do(line); });
          }}},
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
    using Directory = std::filesystem::directory_iterator;
    for (const auto& path : std::set<std::filesystem::path>(Directory(KORVADEX_CASES), Directory())) {
        auto cases = ReadCases(path);
        cases.erase(cases.begin());
        for (const Case& text : cases)
            testing::RegisterTest(("Cases_" + path.stem().string()).c_str(), text.name.c_str(), nullptr, nullptr,
                                  text.file.c_str(), text.lines.empty() ? 0 : text.lines.front().number,
                                  [=]() -> CaseTest* { return new CaseTest(text); });
    }
    return true;
}();

} // namespace
} // namespace korvadex::test
