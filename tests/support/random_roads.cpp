#include "tests/support/random_roads.h"

#include "app/program.h"
#include "platform/text_file.h"
#include "platform/windows_path.h"
#include "sim/hangar_commands.h"
#include "tests/support/command_fixture.h"
#include "tests/support/random_addon.h"
#include "tests/support/recording_form.h"
#include "tests/support/temporary_drive.h"

#include <algorithm>
#include <functional>
#include <regex>

namespace korvadex::test {

namespace {

using Kind = AddonFile::Kind;
using Tree = std::map<std::string, std::string>; // as TemporaryDrive::Tree
using Contents =
    std::set<std::pair<std::string, std::string>>; // file names, lower case, without a number; bytes

std::string OneLine(const std::string& text) {
    static const std::regex lineEnds(R"((\r\n)+)");
    return std::regex_replace(text, lineEnds, " | ");
}

// "Images\Readme(2).TXT" -> "readme.txt"
std::string PlainName(const std::string& path) {
    static const std::regex number(R"(\(\d+\)(\.[^.]*)?$)");
    return std::regex_replace(FoldCase(LastPathComponent(path)), number, "$1");
}

bool IsJunk(const std::string& path) {
    const std::string name = FoldCase(LastPathComponent(path));
    return name == "thumbs.db" || name == "desktop.ini" || name == ".ds_store" || name == ".directory" ||
           FoldCase(path).find("__macosx\\") != std::string::npos;
}

// What a package consists of: neither what file managers left nor what the program keeps for itself.
Contents ContentsOf(const Tree& tree) {
    Contents contents;
    for (const auto& [path, bytes] : tree)
        if (!path.ends_with('\\') && !IsJunk(path) && !PlainName(path).starts_with("kx_"))
            contents.emplace(PlainName(path), bytes);
    return contents;
}

enum class Mood { Yes, Hesitant, Random }; // hesitant: No at first, Yes when the command is given again

struct Said {
    std::string text;
    Answer answer = Answer::Ok;
    MessageButtons buttons = MessageButtons::Ok;
    MessageIcon icon = MessageIcon::None;
};

struct RoadEnd {};

// Answers by mood; whatever is said is judged while it stands.
class AutomaticUser : public UserDialogs {
  public:
    AutomaticUser(Dice& roadDice, std::function<void(const Said&)> judgeText)
        : dice(roadDice), judge(std::move(judgeText)) {}

    bool saysYes = true, isRandom = false;
    std::function<std::optional<int>(const std::vector<std::string>&)> choose;
    std::string toImport;
    std::vector<Said> said;

    bool HasSaid(std::string_view text) const {
        return std::ranges::any_of(said,
                                   [&](const Said& one) { return one.text.find(text) != std::string::npos; });
    }

    CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                              const MessageOptions&) override {
        const bool yes = isRandom ? !dice.OneIn(3) : saysYes;
        const Answer answer = buttons == MessageButtons::Ok      ? Answer::Ok
                              : buttons == MessageButtons::YesNo ? (yes ? Answer::Yes : Answer::No)
                                                                 : (yes ? Answer::Ok : Answer::Cancel);
        Take({text, answer, buttons, icon});
        return {answer, false};
    }
    std::optional<std::string> AskText(const std::string& prompt, bool) override {
        Take({.text = prompt});
        return std::nullopt;
    }
    std::optional<std::string> ChooseZipFile(const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<int> ChooseConfiguration(const std::vector<std::string>& items) override {
        return choose(items);
    }
    void ShowInstallStatus(const std::string& text) override { Take({.text = text}); }
    void ShowImportStatus(const std::string& text) override { Take({.text = text}); }
    void ShowRename(const RenameForm&) override {}
    void ShowUnusedGauges(const UnusedGaugesForm&) override {}
    void ShowMSFSImport(const ImportForm& form) override {
        const auto found = std::ranges::find(form.names, toImport);
        if (found != form.names.end())
            form.accept(static_cast<int>(found - form.names.begin()));
    }
    void ShowInfo(const InfoForm&) override {}

  private:
    void Take(Said one) {
        said.push_back(std::move(one));
        judge(Said(said.back()));
    }
    Dice& dice;
    std::function<void(const Said&)> judge;
};

// One drive with a simulator and a Hangar, and what is done there.
class Road {
  public:
    Road(std::string name, std::uint64_t diceSeed, Mood roadMood, RoadReport& roadReport)
        : title(std::move(name)), dice(diceSeed), pool(MakeGaugePool(dice)), mood(roadMood),
          report(roadReport), user(dice, [this](const Said& said) { Judge(said); }) {
        drive.Fill("", "Staging\\, Hangar\\Jets\\, Hangar\\Props\\, FS\\aircraft\\, FS\\gauges\\, Packed\\");
        drive.Put("App\\kx.ini", "ALTLOCATION0=Main\r\nALTSTAGINGDIR0=" + drive.At("Staging\\") +
                                     "\r\nALTHANGARDIR0=" + drive.At("Hangar\\") +
                                     "\r\nALTMSFSDIR0=" + drive.At("FS\\") +
                                     "\r\nALTFIRSTPACKAGE0=\r\nLOCATIONLAST=0\r\nLOCATIONLASTZIP=\r\n");
        FillSimulator();
        user.isRandom = mood == Mood::Random;
        Start();
        ++report.roads;
    }

    // From the archive into the Hangar and the simulator, once more through Staging, and out.
    void Single() {
        const RandomAddon addon = MakeAddon(dice, pool);
        Bring(addon);
        StartAgainSometimes();
        ShowInHangar();
        CompressSometimes(2);
        Install();
        Hangar("check references", CheckPackageReferences);
        if (dice.OneIn(2))
            GoThroughStaging();
        RemoveFromSim();
        ExpectSimulator("after the removal");
        StartAgainSometimes();
        ShowInHangar();
        if (dice.OneIn(2))
            GoThroughStaging();
        Decompress();
        Attempt(
            "remove from Hangar",
            [&] {
                kept.clear();
                program->RunCommand(Side::Hangar, RemovePackageFromHangar);
            },
            [&] { return !drive.Has(PackagePath()); });
    }

    // From a simulator where it was put by hand.
    void Imported() {
        RandomAddon addon = MakeAddon(dice, pool);
        const std::string name = SimName(addon.name);
        PutByHand(addon, "FS\\aircraft\\" + name + "\\");
        const Tree before = drive.Tree("FS");
        Expect(addon, "", drive.Tree("FS\\aircraft\\" + name));
        user.toImport = name;
        Do("import", [&] {
            program->GoToStaging();
            program->RunCommand(Side::Staging, ImportIntoStaging);
        });
        Choose(addon);
        for (const auto& [path, bytes] : before)
            if (path.starts_with("gauges\\") &&
                addon.gauges[chosen].contains(FoldCase(path.substr(7, path.rfind('.') - 7))))
                kept.emplace(PlainName(path), bytes);
        CheckKept();
        CopyToHangar(addon);
        if (drive.Tree("FS") != before)
            Violation("the import changed the simulator");
        ShowInHangar();
        const Tree installed = drive.Tree("FS\\aircraft\\" + name);
        const Contents inHangar = ContentsOf(drive.Tree(PackagePath()));
        isByHand = true;
        RemoveFromSim();
        for (const auto& content : ContentsOf(installed))
            if (!inHangar.contains(content) && content.first != "aircraft.cfg" &&
                !user.HasSaid("files that this package doesn't have"))
                Violation("was in the simulator alone and went without a question: " + content.first);
    }

    // Several packages with gauges in common, panels lent, put in and taken out in any order.
    void Fleet() {
        std::vector<std::pair<std::string, std::string>> packages;
        for (int count = 0; count < 3; ++count) {
            Bring(MakeAddon(dice, pool));
            packages.emplace_back(category, package);
            kept.clear(); // looked at by the other roads
        }
        const auto select = [&](std::size_t index) {
            std::tie(category, package) = packages[index];
            ShowInHangar();
        };
        user.isRandom = false;
        user.saysYes = true;
        select(0);
        if (drive.Has(PackagePath() + "Panel\\panel.cfg") && program->Package().PackagePanelAlias.empty()) {
            Hangar("create alias", CreatePanelAlias);
            select(1);
            Hangar("paste alias", PastePanelAlias);
        }
        for (int turn = 0; turn < 8; ++turn) {
            select(dice.Below(packages.size()));
            if (dice.OneIn(3))
                RemoveFromSim();
            else
                Install();
        }
        if (dice.OneIn(2)) {
            Do("uninstall all", [&] { program->UninstallAll(); });
            Do("uninstall all", [&] { program->UninstallAll(); }); // lenders come after their borrowers
        } else {
            for (std::size_t turn = 0; turn < 2 * packages.size(); ++turn) {
                select((turn * 2 + 1) % packages.size());
                RemoveFromSim();
            }
        }
        ExpectSimulator("after all packages were removed");
    }

  private:
    void Start() {
        program =
            std::make_unique<Program>(drive.Files(), launcher, user, dialogs, form, drive.At("App\\"), "");
        program->Start();
    }
    void StartAgainSometimes() {
        if (!dice.OneIn(4))
            return;
        program->Shutdown();
        form.ends = 0;
        Start();
    }

    // --- the simulator

    void FillSimulator() {
        std::string panel = "[Window00]\r\nfile=stock.bmp\r\n";
        for (const auto& [name, versions] : pool) {
            if (dice.OneIn(3) && stock.insert("gauges\\" + name).second)
                panel += "gauge0" + std::to_string(panel.size() % 10) + "=" + name.substr(0, name.find('.')) +
                         ",1,2\r\n";
            if (dice.OneIn(3))
                PutAnyhow("FS\\gauges\\" + name, dice.Of(versions));
        }
        drive.Put("FS\\aircraft\\Stock_1\\panel\\panel.cfg", panel);
        drive.Put("FS\\aircraft\\Stock_1\\aircraft.cfg", "[fltsim.0]\r\ntitle=Stock 1\r\n");
        drive.Put("FS\\sound\\stock.wav", "RIFF");
        drive.Put("FS\\modules\\stock.dll", "MZ");
        if (dice.OneIn(2))
            drive.MakeDirectory("FS\\effects");
        simulator = drive.States("FS");
        simulatorTree = drive.Tree("FS");
    }

    bool MayStay(const std::string& path) const {
        return path.starts_with("effects\\") || path.starts_with("sound\\") ||
               path.starts_with("modules\\") || stock.contains(path); // the aircraft that was there wants it
    }
    void ExpectSimulator(const std::string& when) {
        const auto now = drive.States("FS");
        for (const auto& [path, state] : simulator)
            if (const auto there = now.find(path); there == now.end() || there->second != state)
                Violation(when + " the simulator has lost or changed " + path);
        for (const auto& [path, bytes] : drive.Tree("FS"))
            if (!simulatorTree.contains(path) && !MayStay(path))
                Violation(when + " the simulator still has " + path);
    }

    static std::string SimName(std::string name) {
        std::ranges::replace(name, ' ', '_');
        return name;
    }
    std::string InstalledPath() const { return "FS\\aircraft\\" + SimName(package) + "\\"; }
    std::string PackagePath() const { return "Hangar\\" + category + "\\" + package + "\\"; }
    bool IsInstalled() const { return drive.Has("FS\\aircraft\\" + SimName(package)); }

    void PutAnyhow(const std::string& path, const std::string& bytes) {
        drive.Put(path, bytes);
        if (dice.OneIn(5)) // as copied from a CD ROM
            static_cast<void>(drive.Files().SetReadOnly(drive.At(path), true));
    }
    // What would replace another file is left out of the add-on.
    void PutByHand(RandomAddon& addon, const std::string& directory) {
        std::erase_if(addon.files, [&](const AddonFile& file) {
            std::string path =
                file.isNested
                    ? file.path
                    : file.path.substr(file.path.starts_with(addon.directory) ? addon.directory.size() : 0);
            std::ranges::replace(path, '/', '\\');
            const bool isShared = file.kind == Kind::Gauge;
            const std::string target = isShared ? "FS\\gauges\\" + file.Name() : directory + path;
            if (drive.Has(target))
                return true;
            PutAnyhow(target, file.bytes);
            return false;
        });
    }

    // --- commands

    void Do(const std::string& what, const std::function<void()>& command) {
        step = what;
        user.said.clear();
        ++report.commands;
        command();
        if (form.ends > 0) {
            Violation("the program ended");
            throw RoadEnd{};
        }
        for (const auto& [path, bytes] : drive.Tree())
            if (path.find(ScratchDirectoryName) != std::string::npos)
                Violation("scratch is left: " + path);
        CheckKept();
    }
    void Hangar(const std::string& what, HangarCommand code) {
        const Tree before = drive.Tree();
        Do(what, [&] { program->RunCommand(Side::Hangar, code); });
        if (user.said.empty() && drive.Tree() == before)
            Violation("nothing was done and nothing said");
    }
    // Gives the command, and with the answers Yes once more where that did not do it.
    void Attempt(const std::string& what, const std::function<void()>& command,
                 const std::function<bool()>& isDone, bool changesOnYesOnly = true) {
        const auto keptBefore = kept;
        const Tree before = drive.Tree();
        const auto moodBefore = user.isRandom;
        user.saysYes = mood != Mood::Hesitant;
        Do(what, command);
        const bool isRefused = std::ranges::all_of(user.said, [](const Said& said) {
            return said.answer == Answer::No || said.answer == Answer::Cancel;
        });
        if (changesOnYesOnly && isRefused && !user.said.empty() && drive.Tree() != before)
            Violation("every answer was No, and yet something changed");
        user.saysYes = true;
        if (!isDone()) {
            user.isRandom = false;
            kept = keptBefore;
            Do(what, command);
        }
        user.isRandom = moodBefore;
        if (!isDone())
            Violation("was not done");
    }

    void Bring(const RandomAddon& addon) {
        drive.Put("Packed\\" + addon.archiveName, addon.Archive());
        Expect(addon, "ZIP_" + addon.archiveName + "\\", {});
        if (dice.OneIn(4))
            drive.Put("Staging\\left over.txt", "from before");
        Attempt(
            "process archive", [&] { program->ProcessArchives({drive.At("Packed\\" + addon.archiveName)}); },
            [&] { return drive.Has("Staging\\ZIP_" + addon.archiveName); }, !drive.Tree("Staging").empty());
        Choose(addon);
        CopyToHangar(addon);
    }

    // What will be in Staging when the choice is asked.
    void Expect(const RandomAddon& addon, const std::string& directory, const Tree& tree) {
        current = addon;
        isNestedWanted = true;
        kept.clear();
        sacrificed.clear();
        hasChosen = false;
        chosen = 0;
        mayCancel = mood == Mood::Hesitant || (mood == Mood::Random && dice.OneIn(3));
        user.choose = [this, directory, tree](const std::vector<std::string>& items) {
            return ChooseOne(items, directory, tree);
        };
        if (addon.titles.size() == 1)
            TakeConfiguration(0);
    }
    bool IsInStaging(const AddonFile& file) const { return !file.isNested || isNestedWanted; }
    void TakeConfiguration(std::size_t configuration) {
        hasChosen = true;
        chosen = configuration;
    }
    std::optional<int> ChooseOne(const std::vector<std::string>& items, const std::string& directory,
                                 Tree expected) {
        ++report.questions["(which configuration)"].yes;
        if (expected.empty())
            for (const AddonFile& file : current.files) {
                std::string path = file.path;
                std::ranges::replace(path, '/', '\\');
                if (IsInStaging(file))
                    expected[directory +
                             (file.isNested ? "NestedZIP1_" + std::string(NestedArchive) + "\\" : "") +
                             path] = file.bytes;
            }
        const auto filesOf = [](const Tree& tree) {
            Contents files;
            for (const auto& [path, bytes] : tree)
                if (!path.ends_with('\\') && !IsJunk(path) && !PlainName(path).starts_with("kx_"))
                    files.emplace(FoldCase(path), bytes);
            return files;
        };
        const Contents there = filesOf(drive.Tree("Staging"));
        for (const auto& [path, bytes] : filesOf(expected))
            if (!there.contains({path, bytes}))
                Violation("before the choice Staging lacks " + path);
        if (items.size() != current.titles.size())
            Violation("the choice offers " + std::to_string(items.size()) + " configurations");
        for (std::size_t i = 0; i < std::min(items.size(), current.titles.size()); ++i)
            if (items[i].find(current.titles[i]) == std::string::npos)
                Violation("the choice does not show the title of " + items[i]);
        if (!mayCancel)
            return PickOne();
        mayCancel = false;
        --report.questions["(which configuration)"].yes;
        ++report.questions["(which configuration)"].no;
        atCancel = drive.Tree("Staging");
        return std::nullopt;
    }
    int PickOne() {
        TakeConfiguration(dice.Below(current.titles.size()));
        return static_cast<int>(chosen);
    }

    // Once the choice is declined, Staging stays as it is, and each way on asks again.
    void Choose(const RandomAddon& addon) {
        if (!hasChosen && addon.titles.size() > 1) {
            if (drive.Tree("Staging") != atCancel)
                Violation("the choice was declined, and Staging has changed");
            mayCancel = true;
            const Tree hangar = drive.Tree("Hangar");
            Do("copy without a choice", [&] {
                program->SetPackageName("Undecided");
                program->RunCommand(Side::Staging, CopyStagingToHangar);
            });
            if (drive.Tree("Hangar") != hangar || drive.Tree("Staging") != atCancel)
                Violation("no configuration is chosen, and yet something was copied or changed");
            mayCancel = false;
            Do("show Staging again", [&] {
                program->SetPackageName("");
                StartAgainSometimes();
                program->GoToStaging();
            });
        }
        if (!hasChosen) {
            Violation("no configuration could be chosen");
            throw RoadEnd{};
        }
        KeepChosen(addon);
        CheckKept();
        CheckAircraftCfg(addon);
    }
    void KeepChosen(const RandomAddon& addon) {
        for (const AddonFile& file : addon.files)
            if (file.IsNeededBy(chosen) && IsInStaging(file) &&
                (file.kind == Kind::Plain || (file.kind == Kind::Gauge && user.toImport.empty())))
                kept.emplace(PlainName(file.Name()), file.bytes);
    }
    void CheckAircraftCfg(const RandomAddon& addon) {
        std::string text;
        for (const auto& [path, bytes] : drive.Tree("Staging"))
            if (PlainName(path) == "aircraft.cfg")
                text += bytes;
        for (std::size_t i = 0; i < addon.titles.size(); ++i)
            if ((text.find(addon.titles[i]) != std::string::npos) != (i == chosen))
                Violation("aircraft.cfg holds the wrong title: " + addon.titles[i]);
        if (program->Package().aircraftTitle != addon.titles[chosen])
            Violation("the window shows the title \"" + program->Package().aircraftTitle + "\"");
    }

    void CopyToHangar(const RandomAddon& addon) {
        category = dice.Of<std::string>({"Jets", "Props"});
        const auto& categories = program->View().categories;
        const auto index = std::ranges::find(categories, category) - categories.begin();
        package = user.toImport.empty() ? program->View().packageName : user.toImport;
        if (package.empty() || drive.Has("Hangar\\Jets\\" + package) ||
            drive.Has("Hangar\\Props\\" + package) || dice.OneIn(3))
            package = user.toImport.empty() ? addon.name + " no " + std::to_string(++copies) : user.toImport;
        Attempt(
            "copy to Hangar",
            [&] {
                program->ChooseCategory(static_cast<int>(index));
                program->SetPackageName(package);
                program->RunCommand(Side::Staging, CopyStagingToHangar);
                package = program->View().packageName.empty() ? package : program->View().packageName;
            },
            [&] { return drive.Has(PackagePath()); }, false);
        if (!drive.Has(PackagePath()))
            throw RoadEnd{};
        gaugesOf[package] = addon.gauges[chosen];
        unpacked = drive.Tree(PackagePath());
        isPacked = false;
        if (drive.Tree("Staging").empty())
            return;
        Attempt(
            "clear Staging", [&] { program->RunCommand(Side::Staging, RemoveAllFromStaging); },
            [&] { return drive.Tree("Staging").empty(); });
    }

    void ShowInHangar() {
        const Tree before = drive.Tree("Hangar");
        Do("show in the Hangar", [&] {
            program->GoToHangar();
            const auto& categories = program->View().categories;
            program->ChooseCategory(
                static_cast<int>(std::ranges::find(categories, category) - categories.begin()));
            const auto& packages = program->View().packages;
            const auto shown = IsInstalled() ? "< " + package + " >" : package;
            program->ChoosePackage(static_cast<int>(std::ranges::find(packages, shown) - packages.begin()));
        });
        if (program->Package().path != drive.At(PackagePath()))
            Violation("the Hangar does not show " + PackagePath());
        if (!user.said.empty() || drive.Tree("Hangar") != before)
            Violation("showing a package changes or says something");
        unpacked = isPacked ? unpacked : drive.Tree(PackagePath());
    }

    void CompressSometimes(std::size_t chances) {
        if (!dice.OneIn(chances))
            return;
        beforePacking = drive.States(PackagePath());
        isPacked = true;
        Attempt(
            "compress", [&] { program->RunCommand(Side::Hangar, CompressShownPackage); },
            [&] { return drive.Has(PackagePath() + "KX_Compression.txt"); });
    }
    void Decompress() {
        if (!isPacked)
            return;
        Attempt(
            "decompress", [&] { program->RunCommand(Side::Hangar, DecompressShownPackage); },
            [&] { return !drive.Has(PackagePath() + "KX_Compression.txt"); });
        isPacked = false;
        if (drive.States(PackagePath()) != beforePacking)
            Violation("packed and unpacked, the package is another");
    }

    void Install() {
        const bool wasInstalled = IsInstalled();
        const bool hasAlias =
            !program->Package().PackagePanelAlias.empty() || !program->Package().PackageSoundAlias.empty();
        Hangar("install", InstallPackage);
        if (wasInstalled || (hasAlias && !IsInstalled()))
            return;
        if (!IsInstalled()) {
            Violation("was not installed");
            throw RoadEnd{};
        }
        CheckInstalled(hasAlias);
        CheckCrossCheck();
        Hangar("cross-check", CheckPackageGauges);
        CheckCrossCheck();
    }
    void CheckInstalled(bool hasAlias) {
        const Tree now = drive.Tree("FS");
        for (const auto& [path, bytes] : unpacked) {
            const std::string name = PlainName(path);
            if (path.ends_with('\\') || name.starts_with("kx_") || (hasAlias && name.ends_with(".cfg")))
                continue;
            std::string target = InstalledPath().substr(3) + path;
            if (path.starts_with("Gauges\\"))
                target = "gauges\\" + LastPathComponent(path);
            else if (path.starts_with("Miscellaneous\\"))
                target = (name.ends_with(".fx") ? "effects\\" : "modules\\") + LastPathComponent(path);
            if (target.starts_with("effects\\") && !drive.Has("FS\\effects"))
                continue;
            const auto there = now.find(target);
            if (there == now.end())
                Violation("the simulator lacks " + target);
            else if (there->second != bytes && !MayStay(target) && !target.starts_with("gauges\\"))
                Violation("the simulator has other bytes of " + target);
        }
    }
    // What the last box says of the installed panel.
    void CheckCrossCheck() {
        if (user.said.empty() || user.said.back().text.find("...") == std::string::npos || hasLostPanel)
            return;
        const std::string& text = user.said.back().text;
        if (!drive.Has(InstalledPath() + "panel\\panel.cfg") || !program->Package().PackagePanelAlias.empty())
            return;
        const std::set<std::string>& gauges = gaugesOf[package];
        for (const std::string& gauge : gauges) {
            const bool isThere =
                drive.Has("FS\\gauges\\" + gauge + ".gau") || drive.Has("FS\\gauges\\" + gauge + ".cab");
            if (isThere == (text.find("\r\n" + gauge + ".gau\r\n") != std::string::npos))
                Violation("the cross-check is wrong about " + gauge + ": " + text);
        }
        if (text.find("PASSED") == std::string::npos && text.find("Possible problem") == std::string::npos &&
            !gauges.empty())
            Violation("the cross-check was bypassed: " + text);
    }

    void RemoveFromSim() {
        if (!IsInstalled())
            return;
        Attempt(
            "remove from simulator", [&] { program->RunCommand(Side::Hangar, RemovePackageFromSim); },
            [&] { return !IsInstalled() || user.HasSaid("(via alias)"); });
        if (user.HasSaid("Done.") == IsInstalled())
            Violation("says that it is done and is not, or the other way round");
    }

    void GoThroughStaging() {
        const Contents before = ContentsOf(unpacked);
        Do("copy to Staging", [&] {
            user.saysYes = mood != Mood::Hesitant;
            program->RunCommand(Side::Hangar, CopyPackageToStaging);
        });
        user.saysYes = true;
        isPacked = false;
        if (drive.Has(PackagePath() + "KX_Compression.txt")) { // the copy has another name
            isPacked = true;
            Decompress();
        }
        Do("go to Staging", [&] { program->GoToStaging(); });
        if (const Contents now = ContentsOf(drive.Tree("Staging")); now != before)
            Violation("Staging does not hold what the package held");
        const bool wasInstalled = IsInstalled();
        const std::string old = package;
        CopyToHangar(current);
        if (ContentsOf(unpacked) != before)
            Violation("the package is another after its way through Staging");
        if (old != package && wasInstalled) { // taken out under the name that it was installed with
            std::swap(package, const_cast<std::string&>(old));
            if (!drive.Has(PackagePath()))
                throw RoadEnd{};
        }
        ShowInHangar();
    }

    // --- what is always true

    void CheckKept() {
        if (isPacked || kept.empty())
            return;
        Contents there = ContentsOf(drive.Tree("Staging"));
        there.merge(ContentsOf(drive.Tree("Hangar")));
        std::erase_if(kept, [&](const auto& content) {
            const bool isLost = !there.contains(content) && !sacrificed.contains(content);
            if (isLost)
                Violation("lost without a question: " + content.first);
            return isLost; // said once
        });
    }

    std::string Bytes(const std::string& path) {
        const auto bytes = ReadBytes(drive.Files(), path);
        return bytes ? *bytes : "(none)";
    }

    void Judge(const Said& said) {
        Count(said);
        const std::string& text = said.text;
        const auto has = [&](std::string_view part) { return text.find(part) != std::string::npos; };
        if (user.said.size() > 200) {
            Violation("asks without an end: " + text);
            throw RoadEnd{};
        }
        if (has("A duplicate filename condition"))
            JudgeDuplicate(said);
        else if (has("file is missing from the package"))
            JudgeMissing(text.substr(4, text.find(' ', 4) - 4));
        else if (has("aren't used by the panel"))
            JudgeLeftBehind(text);
        else if (has("Would you like to clear the Staging area"))
            JudgeCopy();
        else if (has("Found another ZIP file"))
            isNestedWanted = said.answer == Answer::Yes;
        else if (has("files that this package doesn't have") && !isByHand)
            Violation("asks about a loss where there is none: " + text);
        else if (has("Would you like to remove this package from the hangar?"))
            JudgeStaged();
        else if (IsRefusal(said))
            JudgeRefusal(text);
    }
    void JudgeDuplicate(const Said& said) {
        static const std::regex path(R"(\r\n([A-Z]:\\[^\r\n]*)  \(Size: )");
        std::vector<std::string> paths;
        for (std::sregex_iterator hit(said.text.begin(), said.text.end(), path), end; hit != end; ++hit)
            paths.push_back((*hit)[1]);
        if (paths.size() != 2)
            return Violation("which two? " + said.text);
        if (Bytes(paths[0]) == Bytes(paths[1]))
            Violation("asks about two equal files: " + said.text);
        if (IsJunk(paths[0]))
            Violation("asks about a file manager's file: " + paths[0]);
        const std::string& loser = paths[said.answer == Answer::Yes ? 1 : 0];
        sacrificed.emplace(PlainName(loser), Bytes(loser));
        hasLostPanel = hasLostPanel || PlainName(loser) == "panel.cfg";
    }
    void JudgeMissing(const std::string& name) {
        for (const auto& [path, bytes] : drive.Tree("Staging"))
            if (FoldCase(LastPathComponent(path)) == name)
                Violation("says that " + name + " is missing, but there is " + path);
    }
    void JudgeLeftBehind(const std::string& text) {
        for (const auto& [path, bytes] : drive.Tree("Staging")) {
            const std::string name = LastPathComponent(path);
            if (text.find("\r\n" + name) == std::string::npos)
                continue;
            sacrificed.emplace(PlainName(path), bytes);
            if (!hasLostPanel && current.gauges[chosen].contains(FoldCase(name.substr(0, name.find('.')))))
                Violation("leaves behind a gauge that the panel names: " + name);
        }
    }
    // The copy is said to be done: whatever is in Staging must be in the package.
    void JudgeCopy() {
        const std::string name = program->View().packageName;
        const Contents copy = ContentsOf(drive.Tree("Hangar\\" + category + "\\" + name)),
                       staged = ContentsOf(drive.Tree("Staging"));
        for (const auto& content : staged)
            if (!copy.contains(content) && !sacrificed.contains(content))
                Violation("the package lacks " + content.first);
        for (const auto& content : copy)
            if (!staged.contains(content))
                Violation("the package has what Staging has not: " + content.first);
    }
    void JudgeStaged() {
        const Contents staged = ContentsOf(drive.Tree("Staging"));
        for (const auto& content : ContentsOf(unpacked))
            if (!staged.contains(content))
                Violation("Staging lacks " + content.first);
    }
    void JudgeRefusal(const std::string& text) {
        if (text.find("Package name already exists in ") == std::string::npos &&
            step != "copy without a choice")
            Violation("refuses: " + text);
    }

    void Count(const Said& said) {
        static const std::regex path(R"([A-Z]:\\[^\r\n]*?(?=\r|$|  |\)| exists| holds))"), number(R"(\d+)");
        std::string text = said.text;
        for (const std::string& name : {package, SimName(package), current.archiveName, current.name})
            for (std::size_t at; !name.empty() && (at = text.find(name)) != std::string::npos;)
                text.replace(at, name.size(), "<name>");
        text = std::regex_replace(std::regex_replace(text, path, "<path>"), number, "#");
        text = OneLine(text);
        if (const auto list = text.find("Possible problem ..."); list != std::string::npos)
            text.resize(list + 20);
        if (const auto list = text.find(" ... | ");
            list != std::string::npos && said.buttons != MessageButtons::Ok)
            text.resize(list + 4);
        if (said.buttons != MessageButtons::Ok)
            ++(said.answer == Answer::Yes || said.answer == Answer::Ok ? report.questions[text].yes
                                                                       : report.questions[text].no);
        else
            ++(IsRefusal(said) ? report.refusals : report.notices)[text];
    }
    static bool IsRefusal(const Said& said) {
        return said.buttons == MessageButtons::Ok &&
               (said.icon == MessageIcon::Exclamation || said.icon == MessageIcon::Critical);
    }
    void Violation(const std::string& text) {
        report.violations.push_back(title + ": " + step + ": " + OneLine(text));
    }

    const std::string title;
    Dice dice;
    const GaugePool pool;
    const Mood mood;
    RoadReport& report;
    TemporaryDrive drive;
    AutomaticUser user;
    RecordingLauncher launcher;
    ScriptedLocations dialogs;
    RecordingForm form;
    std::unique_ptr<Program> program;

    std::map<std::string, std::pair<std::string, FileInfo>> simulator, beforePacking;
    Tree simulatorTree, unpacked, atCancel;
    std::set<std::string> stock; // gauges that an aircraft of the simulator itself names
    std::string step, category, package;
    RandomAddon current;                                   // the last one that came in
    std::map<std::string, std::set<std::string>> gaugesOf; // that the panels of packages name
    Contents kept, sacrificed;
    std::size_t chosen = 0;
    int copies = 0;
    bool hasChosen = false, isNestedWanted = true, isPacked = false, isByHand = false, hasLostPanel = false,
         mayCancel = false;
};

} // namespace

void TakeRoads(std::uint64_t seed, int number, RoadReport& report) {
    const std::uint64_t diceSeed = seed * 1'000'003 + static_cast<std::uint64_t>(number);
    const std::string again = "--seed " + std::to_string(seed) + " --only " + std::to_string(number);
    const auto take = [&](const std::string& name, Mood mood, void (Road::*drive)()) {
        try {
            Road road(again + ", " + name, diceSeed, mood, report);
            (road.*drive)();
        } catch (const RoadEnd&) {
        }
    };
    take("yes", Mood::Yes, &Road::Single);
    take("no, then yes", Mood::Hesitant, &Road::Single);
    take("at random", Mood::Random, &Road::Single);
    take("import, yes", Mood::Yes, &Road::Imported);
    take("import, at random", Mood::Random, &Road::Imported);
    take("fleet", Mood::Random, &Road::Fleet);
}

} // namespace korvadex::test
