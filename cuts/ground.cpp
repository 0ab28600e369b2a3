#include "cuts/ground.h"

#include "app/history_editor.h"
#include "app/program.h"
#include "platform/drive_map_posix.h"
#include "platform/windows_path.h"
#include "tests/support/command_fixture.h"
#include "tests/support/fake_converter.h"
#include "tests/support/faulty_files.h"
#include "tests/support/package_builder.h"
#include "tests/support/recording_window.h"
#include "tests/support/zip_builder.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

namespace korvadex::test {

namespace {

constexpr const char* AppDir = "C:\\App\\";

// Says Yes and takes the first of what is offered, but gives nothing up.
class ReadyUser : public UserDialogs {
  public:
    explicit ReadyUser(bool saysNothing) : isSilent(saysNothing) {}
    bool leavesChoiceOpen = false, hasNamedCategory = false;

    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon,
                              const MessageOptions&) override {
        Print(text);
        for (const char* question :
             {"Do you want to try again?", "Shall it be deleted all the same?", "Do you want to go on all the same?"})
            if (text.find(question) != std::string::npos)
                return {Answer::No, false};
        return {buttons == MessageButtons::YesNo ? Answer::Yes : Answer::Ok, false};
    }
    std::optional<std::string> AskText(const std::string& prompt, bool) override {
        Print(prompt);
        // A name that was not taken is asked for again.
        const bool isNewCategory = prompt.find("category") != prompt.npos && !std::exchange(hasNamedCategory, true);
        return isNewCategory ? std::optional<std::string>("Renamed") : std::nullopt;
    }
    std::optional<std::string> ChooseZipFile(const std::string&, const std::string&) override {
        return "C:\\Downloads\\Pair.zip";
    }
    std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>&) override {
        return leavesChoiceOpen ? std::nullopt : std::optional(0);
    }
    void ShowInstallStatus(const std::string& text) override { Print(text); }
    void ShowImportStatus(const std::string& text) override { Print(text); }
    void ShowRename(const RenameForm& form) override { form.accept({"Renamed", "Another title"}); }
    void ShowUnusedGauges(const UnusedGaugesForm& form) override {
        form.search([](int, int) {});
        form.remove({0, 1});
    }
    void ShowMSFSImport(const ImportForm& form) override { form.accept(0); }
    void ShowInfo(const InfoForm& form) override {
        AircraftInfo entered = form.info;
        entered.atcId = "N45";
        form.accept(entered);
    }

  private:
    void Print(std::string text) const {
        if (isSilent)
            return;
        std::erase(text, '\r');
        std::ranges::replace(text, '\n', '|');
        std::cout << "  " << text << std::endl;
    }
    const bool isSilent;
};

struct Command {
    std::string name;
    std::string before; // steps; see Run::Do
    std::string itself;
    bool canBeUndone = true;
};

const std::string Lear = "Jets\\Lear 45; ", Cub = "Props\\Cub; ", Alias = "Jets\\Alias Jet; ",
                  Glider = "Props\\Glider; ";
const std::string Clear = "staging; mnuRemoveStaging; ";
const std::string Install = "mnuHangarToMsfs; ";
const std::string InstallAll = Lear + Install + Cub + Install + Alias + Install;
const std::string PastePanel = Lear + "mnuCreatePanelAlias; " + Glider + "mnuPastePanelAlias";
const std::string PasteSound = Lear + "mnuCreateSoundAlias; " + Glider + "mnuPasteSoundAlias";

const Command Commands[] = {
    {"copy to Hangar", "", Lear + "staging; name New Plane; mnuStagingToHangar"},
    {"clear Staging", "", "staging; mnuRemoveStaging"},
    {"erase panel", "", "staging; mnuRemovePanelFromStaging"},
    {"erase aircraft", "", "staging; mnuRemoveAircraftFromStaging"},
    {"erase sound", "", "staging; mnuRemoveSoundFromStaging"},
    {"choose configuration", Clear + "leave open; drop", "staging; refresh"},
    {"process ZIP", Clear, "staging; mnuProcessZipFile"},
    {"mix", "drop", "mix"},
    {"take all", Clear + "drop all; mnuRemoveStaging", "take all"},
    {"import", Clear, "mnuImportFromMSFS"},
    {"import again", Clear + "mnuImportFromMSFS", "mnuImportFromMSFS"},
    {"remove from Hangar", "", Lear + "mnuRemoveFromHangar"},
    {"install", "", Lear + Install},
    {"install packed", Lear + "mnuCompress", Lear + Install},
    {"install shared", Lear + Install, Cub + Install},
    {"install alias", Cub + Install, Alias + Install},
    {"remove", Lear + Install, Lear + "mnuRemoveFromMsfs"},
    {"remove shared", Lear + Install + Cub + Install, Cub + "mnuRemoveFromMsfs"},
    {"uninstall all", InstallAll, "mnuUninstallAll"},
    {"uninstall category", InstallAll, Lear + "mnuUninstallCategory"},
    {"install each", "", "each install"},
    {"install each but one", "", "spoil; each install"},
    {"remove each", InstallAll, "each remove"},
    {"delete each", "", "each delete"},
    {"compress each", "", "each compress"},
    {"compress each but one", "", "spoil; each compress"},
    {"move each", InstallAll, "each move"},
    {"copy to Staging", Clear, Lear + "mnuCopyToStaging"},
    {"rename", "", Lear + "mnuRename"},
    {"paste panel alias", "", PastePanel},
    {"paste sound alias", "", PasteSound},
    {"restore old panel", PastePanel, Glider + "mnuRestoreOldPanel"},
    {"restore old sound", PasteSound, Glider + "mnuRestoreOldSound"},
    {"unused gauges", "", "mnuUnusedGauges"},
    {"compress", "", Lear + "mnuCompress"},
    {"decompress", Lear + "mnuCompress", Lear + "mnuDecompress"},
    {"compress all", "", "mnuCompressAll"},
    {"decompress all", "mnuCompressAll", "mnuDecompressAll"},
    {"import pictures", "", Lear + "mnuImportImage"},
    {"import screenshot", "", Lear + "mnuImportImageClipboard"},
    {"make picture first", "", Lear + "next picture; make first"},
    {"delete picture", "", Lear + "delete picture"},
    {"create notes", "", Cub + "mnuCreateNotes"},
    {"delete notes", "", Lear + "mnuDeleteNotes"},
    {"delete files", "", Lear + "delete files"},
    {"delete staged files", "", "staging; delete files"},
    {"information", "", Lear + "mnuInformation"},
    {"new category", "", "new category"},
    {"rename category", InstallAll, "rename category"},
    {"move", InstallAll, Lear + "move"},
    {"first package", "", Lear + "first package", false},
};

constexpr std::string_view Undo = "undo ", Redo = "redo ";

struct Steps {
    std::string before, justBefore, itself;
};
Steps StepsOf(const std::string& name) {
    const bool isUndo = name.starts_with(Undo), isRedo = name.starts_with(Redo);
    const auto found = std::ranges::find(Commands, isUndo || isRedo ? name.substr(Undo.size()) : name, &Command::name);
    if (found == std::end(Commands))
        throw std::runtime_error("no such command: " + name);
    if (isUndo)
        return {found->before, found->itself, "undo"};
    if (isRedo)
        return {found->before, found->itself + "; undo", "redo"};
    return {found->before, "", found->itself};
}

// Then the user sees it, and gives no command.
struct NotInHangar : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The program from its start to its end.
class Run {
  public:
    Run(FileSystem& files, const std::string& appDir, bool isSilent)
        : user(isSilent), program(files, launcher, user, dialogs, converter, window, appDir, "") {
        window.geometry.reset();
        dialogs.chosenPictures.files = {"C:\\Pictures\\new.png", "C:\\Pictures\\left.jpg"};
        dialogs.clipboardPictures.jpeg = "a screenshot";
        dialogs.chosenCategories = {"More Jets"};
        isStarted = program.Start();
    }
    ~Run() { program.Shutdown(); }

    // CATEGORY\PACKAGE: is shown. mnu...: an entry of the menus. Or one of those below.
    void Do(const std::string& steps) {
        for (std::size_t from = 0; from < steps.size();) {
            const std::size_t end = std::min(steps.find("; ", from), steps.size());
            if (end > from)
                DoStep(steps.substr(from, end - from));
            from = end + 2;
        }
    }
    bool isStarted = false;
    std::function<void()> look;

  private:
    void DoStep(const std::string& step) {
        static const std::map<std::string, void (Program::*)()> buttons = {
            {"staging", &Program::GoToStaging},
            {"refresh", &Program::Refresh},
            {"undo", &Program::UndoLast},
            {"redo", &Program::RedoLast},
            {"new category", &Program::NewCategory},
            {"first package", &Program::SetFirstPackage},
            {"next picture", &Program::ShowNextImage},
            {"make first", &Program::MakeShownImageFirst},
            {"delete picture", &Program::DeleteShownImage}};
        if (const auto button = buttons.find(step); button != buttons.end())
            (program.*button->second)();
        else if (step.starts_with("mnu"))
            program.RunCommand(step);
        else if (step.starts_with("each "))
            DoEach(step.substr(5));
        else if (const auto bar = step.find('\\'); bar != step.npos)
            Select(step.substr(0, bar), step.substr(bar + 1));
        else if (step.starts_with("name "))
            program.SetPackageName(step.substr(5));
        else if (step == "look")
            look();
        else if (step == "drop")
            program.OfferArchives({"C:\\Downloads\\Pair.zip"});
        else if (step == "drop all") // the first goes into Staging
            program.OfferArchives({"C:\\Downloads\\Pair.zip", "C:\\Downloads\\Many\\"});
        else if (step == "mix")
            program.AddArchiveToStaging(0);
        else if (step == "take all")
            program.TakeAllArchives();
        else if (step.starts_with("stop "))
            StopAtStep(std::stoi(step.substr(5)));
        else if (step == "undo what stays")
            CountCommands() > commandsBefore ? program.UndoLast() : void();
        else if (step == "leave open")
            user.leavesChoiceOpen = true;
        else if (step == "rename category")
            program.RenameCategory("Jets");
        else if (step == "move")
            program.MoveToCategory("Props");
        else if (step == "delete files")
            program.DeleteComponents(Documentation, {0, 1});
        else
            throw std::runtime_error("no such step: " + step);
    }
    // Of the bar of the next command.
    void StopAtStep(int number) {
        commandsBefore = CountCommands();
        window.onStep = [this, left = number]() mutable {
            if (--left == 0)
                program.StopAfterThis();
        };
    }
    std::size_t CountCommands() {
        std::size_t count = 0;
        dialogs.useHistory = [&](HistoryEditor& history) { count = history.Rows().size(); };
        program.ShowHistory();
        return count;
    }
    // Of the packages that are there: one that cannot be installed, and borrowers before their lender.
    void DoEach(const std::string& command) {
        static const std::map<std::string, void (Program::*)(const std::vector<PackageRef>&)> routines = {
            {"install", &Program::InstallEach},
            {"remove", &Program::RemoveEach},
            {"delete", &Program::DeleteEach},
            {"compress", &Program::CompressEach}};
        const std::vector<PackageRef> packages = {
            {"Jets", "Alias Jet"}, {"Jets", "None"}, {"Jets", "Lear 45"}, {"Props", "Cub"}};
        if (command == "move")
            program.MoveEach(packages, "Props");
        else
            (program.*routines.at(command))(packages);
    }
    void Select(const std::string& category, const std::string& package) {
        const auto& categories = program.View().categories;
        program.ChooseCategory(int(std::ranges::find(categories, category) - categories.begin()));
        const auto& packages = program.View().packages;
        program.ChoosePackage(int(std::ranges::find(packages, package, &HangarPackage::name) - packages.begin()));
        if (LastPathComponent(WithoutBackslash(program.Package().path)) != package)
            throw NotInHangar("not in the Hangar: " + package);
    }

    ReadyUser user;
    RecordingLauncher launcher;
    ScriptedLocations dialogs;
    FakeConverter converter;
    RecordingWindow window;
    Program program;
    std::size_t commandsBefore = 0;
};

// The same with these steps. One of them may be to spoil a package, which many at once then leave as it was,
// after a part of the work: it cannot come to its place in the simulator, nor can one of its files be packed.
bool RunSteps(
    FileSystem& files, const std::string& appDir, const std::string& steps, bool isSilent,
    const std::function<void()>& look = [] {}) {
    constexpr std::string_view spoil = "spoil; ";
    const auto at = steps.find(spoil);
    const bool isSpoiled = at != steps.npos;
    FaultyFiles spoiled(files);
    spoiled.FailWhere([](const std::string& change, const std::string& path) {
        const bool isIts = (change == "Rename" && path.ends_with("aircraft\\Lear_45")) ||
                           (change == "Replace" && path.ends_with("Lear 45\\Texture\\large.bmp"));
        return isIts ? FileFault::Denied : FileFault::None;
    });
    Run run(isSpoiled ? spoiled : files, appDir, isSilent);
    run.look = look;
    run.Do(isSpoiled ? std::string(steps).erase(at, spoil.size()) : steps);
    return run.isStarted;
}

std::string Zip(std::initializer_list<std::pair<std::string, std::string>> members) {
    ZipBuilder zip;
    for (const auto& [name, bytes] : members)
        zip.Add(name, bytes);
    return zip.Bytes();
}

void Fill(TemporaryDrive& drive) {
    for (const char* settings : {"App\\kx.ini", "App2\\kx.ini"})
        drive.Put(settings, "ALTLOCATION0=Main\r\nALTSTAGINGDIR0=C:\\Staging\\\r\nALTHANGARDIR0=C:\\Hangar\\\r\n"
                            "ALTMSFSDIR0=C:\\FS\\\r\nALTFIRSTPACKAGE0=\r\nLOCATIONLAST=0\r\nLOCATIONLASTZIP=\r\n");
    const std::string large(200'000, 'x'), panel = "[Window00]\r\ngauge00=LearClock,1,2\r\ngauge01=CubDial,1,2\r\n";
    PackageBuilder(drive, "Hangar\\Jets\\Lear 45\\")
        .With("Documentation\\kx_note.txt", "Nosewheel steers badly.")
        .With("Images\\second.jpg", "JFIF 2")
        .With("Texture\\large.bmp", large);
    drive.Fill("Hangar\\Jets\\Alias Jet",
               "aircraft.cfg=[fltsim.0], Model\\a.mdl=mdl, Texture\\a.bmp=BM, Gauges\\Alias.gau=MZ alias");
    drive.Put("Hangar\\Jets\\Alias Jet\\Panel\\panel.cfg", "[fltsim]\r\nalias=Cub\\panel\r\n");
    drive.Fill(
        "Hangar\\Props\\Cub",
        "aircraft.cfg=[fltsim.0], Model\\c.mdl=mdl, Texture\\c.bmp=BM, Sound\\sound.cfg=x, Gauges\\LearClock.gau="
        "MZ clock, Gauges\\CubDial.gau=MZ dial, Miscellaneous\\smoke.fx=smoke, Miscellaneous\\cub.dll=MZ");
    drive.Put("Hangar\\Props\\Cub\\Panel\\panel.cfg", panel);
    drive.Fill("Hangar\\Props\\Glider", "aircraft.cfg=[fltsim.0], Sound\\sound.cfg=wind, Sound\\wind.wav=RIFF");
    drive.Put("Hangar\\Props\\Glider\\Panel\\panel.cfg", panel);
    PackageBuilder(drive, "Staging\\ZIP_new.zip\\").With("Texture\\large.bmp", large).With("b.txt", "b");
    PackageBuilder(drive, "FS\\aircraft\\My_Plane\\");
    drive.Fill("FS", "aircraft\\Stock_1\\aircraft.cfg=[fltsim.0], gauges\\stock.gau=MZ stock, gauges\\old.gau=MZ old, "
                     "gauges\\older.gau=MZ older, gauges\\LearCab.cab=MSCF the simulator's, effects\\a.fx=a, "
                     "sound\\stock.wav=RIFF, modules\\stock.dll=MZ, fs2002.exe=MZ");
    drive.Put("FS\\aircraft\\Stock_1\\panel\\panel.cfg", "gauge00=stock,1,2\r\n");
    const std::string two =
        "[fltsim.0]\r\ntitle=Red\r\ntexture=red\r\n\r\n[fltsim.1]\r\ntitle=Blue\r\ntexture=blue\r\n";
    drive.Put("Downloads\\Pair.zip", Zip({{"aircraft.cfg", two},
                                          {"texture.red/a.bmp", large},
                                          {"texture.blue/a.bmp", "blue"},
                                          {"panel/panel.cfg", panel},
                                          {"gauges.zip", Zip({{"pair.gau", "MZ pair"}, {"readme.txt", "nested"}})},
                                          {"readme.txt", "outer"}}));
    for (const auto& [name, model] :
         {std::pair("Fine", "model.cfg"), std::pair("Lacking", "none.cfg"), std::pair("Third", "model.cfg")})
        drive.Put(std::string("Downloads\\Many\\") + name + ".zip",
                  Zip({{"aircraft.cfg", std::string("[fltsim.0]\r\ntitle=") + name + "\r\ntexture=\r\n"},
                       {model, "model"},
                       {"panel/panel.cfg", panel},
                       {"sound/sound.cfg", "sound"},
                       {"texture/a.bmp", large}}));
    drive.Fill("Pictures", "new.png=PNG, left.jpg=JFIF left");
}

// What is new gets a time long ago, each its own and always the same, so that a later change of it is seen.
void Age(const std::string& hostDirectory) {
    namespace fs = std::filesystem;
    const auto now = fs::file_time_type::clock::now();
    constexpr auto first = std::chrono::sys_days(std::chrono::January / 2 / 2006);
    for (const auto& entry : fs::recursive_directory_iterator(hostDirectory))
        if (now - entry.last_write_time() < std::chrono::hours(24)) {
            const auto number = std::hash<std::string>()(entry.path().string().substr(hostDirectory.size()));
            fs::last_write_time(entry.path(), std::chrono::file_clock::from_sys(
                                                  first + std::chrono::nanoseconds(number % 1'000'000'000'000'000)));
        }
}

void SetAttribute(TemporaryDrive& drive, const std::string& path, const char* value) {
    const std::string host = drive.Files().HostPath(drive.At(path));
    if (setxattr(host.c_str(), "user.DOSATTRIB", value, 3, 0) != 0)
        std::cerr << "no attributes here: " << host << "\n";
}

// A directory that is a volume of its own, as long as this lives.
class OwnVolume {
  public:
    explicit OwnVolume(std::string hostDirectory) : directory(std::move(hostDirectory)) {
        std::filesystem::create_directory(directory);
        if (std::system(("mount -t tmpfs -o mode=755 simulator '" + directory + "'").c_str()) != 0)
            throw std::runtime_error("cannot mount " + directory);
    }
    ~OwnVolume() { static_cast<void>(umount(directory.c_str())); }
    OwnVolume(const OwnVolume&) = delete;
    OwnVolume& operator=(const OwnVolume&) = delete;

  private:
    const std::string directory;
};

} // namespace

std::vector<std::string> CommandsWithUndo() {
    std::vector<std::string> names;
    for (const Command& command : Commands)
        if (command.canBeUndone)
            names.push_back(command.name);
    return names;
}

std::vector<std::string> CutCommands() {
    std::vector<std::string> names;
    for (const Command& command : Commands)
        names.push_back(command.name);
    for (const std::string_view reversal : {Undo, Redo})
        for (const std::string& command : CommandsWithUndo())
            names.push_back(std::string(reversal) + command);
    return names;
}

std::string CommandBefore(const std::string& command) {
    const std::string name = command.substr(std::min(command.size(), Undo.size()));
    return command.starts_with(Undo) ? name : command.starts_with(Redo) ? std::string(Undo) + name : "";
}

void PrepareGround(const std::string& command, const std::string& hostDirectory, bool isSimulatorApart) {
    TemporaryDrive drive;
    const std::string root = drive.Files().HostPath("C:\\");
    const std::optional<OwnVolume> volume = isSimulatorApart ? std::optional<OwnVolume>(root + "/FS") : std::nullopt;
    Fill(drive);
    for (const char* path : {"Hangar\\Jets\\Lear 45\\Documentation\\readme.txt", "Staging\\ZIP_new.zip\\Lear.air",
                             "FS\\gauges\\old.gau", "FS\\gauges\\LearCab.cab"})
        static_cast<void>(drive.Files().SetReadOnly(drive.At(path), true));
    for (const char* path :
         {"Hangar\\Jets\\Lear 45\\Lear.air", "Hangar\\Jets\\Lear 45\\Texture", "FS\\gauges\\older.gau",
          "Staging\\ZIP_new.zip\\Panel\\panel.cfg", "Staging\\ZIP_new.zip\\Panel"})
        SetAttribute(drive, path, "0x2");
    Age(root);
    const Steps steps = StepsOf(command);
    RunSteps(drive.Files(), AppDir, steps.before, true);
    Age(root);
    if (!steps.justBefore.empty())
        RunSteps(drive.Files(), AppDir, steps.justBefore, true);
    if (std::system(("cp -a '" + root + "' '" + hostDirectory + "'").c_str()) != 0)
        throw std::runtime_error("cannot copy to " + hostDirectory);
}

std::string CommandSteps(const std::string& command) {
    return StepsOf(command).itself;
}

void RunCommandOn(const std::string& hostDirectory, const std::string& appDir, const std::string& command) {
    const auto end = [&] { unlink((hostDirectory + "/" + CommandEndMark).c_str()); };
    try {
        DoOn(hostDirectory, appDir, CommandSteps(command) + "; look", end);
    } catch (const NotInHangar& gone) {
        std::cout << "  " << gone.what() << std::endl;
        end();
    }
}

bool DoOn(const std::string& hostDirectory, const std::string& appDir, const std::string& steps,
          const std::function<void()>& look) {
    const auto files = MakeDriveFileSystem({{{'c', hostDirectory}}});
    return RunSteps(*files, appDir, steps, false, look);
}

} // namespace korvadex::test
