#include "tests/support/random_roads.h"

#include "platform/windows_path.h"
#include "tests/support/road_ground.h"

namespace korvadex::test {

namespace {

using Kind = AddonFile::Kind;

int IndexOf(const std::vector<std::string>& names, const std::string& name) {
    return static_cast<int>(std::ranges::find(names, name) - names.begin());
}

std::string AsWindowsPath(std::string path) {
    std::ranges::replace(path, '/', '\\');
    return path;
}

class Road : private RoadGround {
  public:
    using RoadGround::RoadGround;

    // From the archive into the Hangar and the simulator, sometimes once more through Staging, and out.
    void Single() {
        Bring();
        StartAgainSometimes();
        ShowInHangar();
        if (dice.OneIn(2))
            Compress();
        Install();
        RunOnPackage("check references", &Program::CheckPackageReferences);
        if (dice.OneIn(2))
            GoThroughStaging();
        RemoveFromSim();
        ExpectSimulator();
        StartAgainSometimes();
        ShowInHangar();
        if (dice.OneIn(2))
            GoThroughStaging();
        Decompress();
        kept.clear();
        Attempt(
            "remove from Hangar", [&] { program->RemovePackageFromHangar(); },
            [&] { return !drive.Has(PackagePath()); });
    }

    // From a simulator where it was put by hand.
    void Imported() {
        addon = MakeAddon(dice, pool);
        user.toImport = package = SimName(addon.name);
        PutByHand();
        const FileTree before = drive.Tree("FS"), installed = drive.Tree(InstalledPath());
        Expect(installed);
        Do("import", [&] {
            program->GoToStaging();
            program->ImportIntoStaging();
        });
        Choose();
        for (const auto& [path, bytes] : drive.Tree("FS\\gauges"))
            if (addon.gauges[chosen].contains(FoldCase(path.substr(0, path.rfind('.')))))
                kept.emplace(PlainName(path), bytes);
        CheckKept();
        CopyToHangar();
        if (drive.Tree("FS") != before)
            Violation("the import changed the simulator");
        ShowInHangar();
        isByHand = true;
        RemoveFromSim();
        if (user.HasSaid("files that this package doesn't have"))
            return;
        Contents gone = ContentsOf(installed);
        std::erase_if(gone, [](const auto& content) { return content.first == "aircraft.cfg"; });
        ExpectHolds("what went without a question: the package", ContentsOf(drive.Tree(PackagePath())), gone);
    }

    // Several packages with gauges in common, a panel lent, put in and taken out in any order.
    void Fleet() {
        std::vector<std::pair<std::string, std::string>> packages;
        for (int count = 0; count < 3; ++count) {
            Bring();
            packages.emplace_back(category, package);
        }
        const auto select = [&](std::size_t index) {
            std::tie(category, package) = packages[index];
            ShowInHangar();
        };
        user.isRandom = false;
        kept.clear(); // looked at on the other roads
        select(0);
        if (drive.Has(PackagePath() + "Panel\\panel.cfg") && program->Package().PackagePanelAlias.empty()) {
            RunOnPackage("create alias", &Program::CreatePanelAlias);
            select(1);
            RunOnPackage("paste alias", &Program::PastePanelAlias);
        }
        for (int turn = 0; turn < 8; ++turn) {
            select(dice.Below(packages.size()));
            if (dice.OneIn(3))
                RemoveFromSim();
            else
                Install();
        }
        const bool isBatch = dice.OneIn(2);
        for (std::size_t turn = 0; turn < 2; ++turn) // a lender goes after its borrowers
            if (isBatch)
                Do("uninstall all", [&] { program->UninstallAll(); });
            else
                for (std::size_t i = 0; i < packages.size(); ++i) {
                    select((i + dice.Below(2)) % packages.size());
                    RemoveFromSim();
                }
        for (std::size_t i = 0; !isBatch && i < 2 * packages.size(); ++i) {
            select(i % packages.size());
            RemoveFromSim();
        }
        ExpectSimulator();
    }

  private:
    void RunOnPackage(const std::string& what, void (Program::*command)()) {
        const FileTree before = drive.Tree();
        Do(what, [&] { (*program.*command)(); });
        if (user.said.empty() && drive.Tree() == before)
            Violation("nothing was done and nothing said");
    }

    // --- into Staging

    void Bring() {
        addon = MakeAddon(dice, pool);
        drive.Put("Packed\\" + addon.archiveName, addon.Archive());
        Expect({});
        const bool isEmpty = !dice.OneIn(4);
        if (!isEmpty) {
            drive.Put("Staging\\left over.txt", "from before");
            OfferToQueue();
        }
        Attempt(
            "process archive",
            [&] {
                if (isEmpty)
                    program->OfferArchives({ArchivePath()});
                else
                    program->AddArchiveToStaging(0);
            },
            [&] { return drive.Has("Staging\\ZIP_" + addon.archiveName); }, !isEmpty);
        if (!drive.Has("Staging\\ZIP_" + addon.archiveName))
            throw RoadEnd{};
        if (drive.Has(QueueFile))
            Violation("is in Staging, and waits in the queue still");
        Choose();
        if (isEmpty && program->View().packageName != addon.titles[chosen])
            Violation("proposes the name \"" + program->View().packageName + "\"");
        CopyToHangar();
    }

    // Where Staging holds files an archive waits, and nothing else happens.
    void OfferToQueue() {
        const FileTree before = drive.Tree();
        Do("offer archive", [&] { program->OfferArchives({ArchivePath()}); });
        FileTree now = drive.Tree();
        const auto queue = now.extract(QueueFile);
        if (!queue || !queue.mapped().starts_with(ArchivePath()) || now != before || !user.said.empty())
            Violation("does not wait in the queue, or something else happened");
    }
    std::string ArchivePath() const { return drive.At("Packed\\" + addon.archiveName); }

    // What would replace another file is left out of the add-on.
    void PutByHand() {
        std::erase_if(addon.files, [&](const AddonFile& file) {
            const bool isBelow = !file.isNested && file.path.starts_with(addon.directory);
            const std::string path = AsWindowsPath(file.path.substr(isBelow ? addon.directory.size() : 0));
            const std::string target = file.kind == Kind::Gauge ? "FS\\gauges\\" + file.Name() : InstalledPath() + path;
            const bool isTaken = drive.Has(target);
            if (!isTaken)
                PutInSimulator(target, file.bytes);
            return isTaken;
        });
    }

    // An add-on is about to come; what will be in Staging when the choice is asked, by default its archive.
    void Expect(const FileTree& tree) {
        isNestedWanted = true;
        kept.clear();
        sacrificed.clear();
        chosen = 0;
        hasChosen = addon.titles.size() == 1;
        mayDecline = mood == Mood::Hesitant || (mood == Mood::Random && dice.OneIn(3));
        user.choose = [this, tree](const auto& items) {
            CheckUnchosen(items, tree.empty() ? ArchiveTree() : tree);
            return PickOne();
        };
    }
    FileTree ArchiveTree() const {
        const std::string directory = "ZIP_" + addon.archiveName + "\\";
        FileTree tree;
        for (const AddonFile& file : addon.files)
            if (!file.isNested || isNestedWanted)
                tree[directory + (file.isNested ? "NestedZIP1_" + std::string(NestedArchive) + "\\" : "") +
                     AsWindowsPath(file.path)] = file.bytes;
        return tree;
    }
    void CheckUnchosen(const std::vector<std::string>& items, const FileTree& wanted) {
        const auto pathsOf = [](const FileTree& tree) {
            Contents paths;
            for (const auto& [path, bytes] : tree)
                if (!path.ends_with('\\') && !IsJunk(path))
                    paths.emplace(FoldCase(path), bytes);
            return paths;
        };
        ExpectHolds("before the choice Staging", pathsOf(drive.Tree("Staging")), pathsOf(wanted));
        if (items.size() != addon.titles.size())
            return Violation("the choice offers " + std::to_string(items.size()) + " configurations");
        for (std::size_t i = 0; i < items.size(); ++i)
            if (items[i].find(addon.titles[i]) == std::string::npos)
                Violation("the choice does not show the title of " + items[i]);
    }
    std::optional<int> PickOne() {
        RoadReport::Answers& answers = report.questions["(which configuration; no: closed without one)"];
        if (mayDecline) {
            ++answers.no;
            mayDecline = false;
            declined = drive.Tree("Staging");
            return std::nullopt;
        }
        ++answers.yes;
        hasChosen = true;
        chosen = dice.Below(addon.titles.size());
        return static_cast<int>(chosen);
    }

    // Once the choice is declined, Staging stays as it is, and each way on asks again.
    void Choose() {
        if (!hasChosen) {
            if (drive.Tree("Staging") != declined)
                Violation("the choice was declined, and Staging has changed");
            mayDecline = true;
            const FileTree hangar = drive.Tree("Hangar");
            Do("copy without a choice", [&] {
                program->SetPackageName("Undecided");
                program->CopyStagingToHangar();
            });
            if (drive.Tree("Hangar") != hangar || drive.Tree("Staging") != declined)
                Violation("no configuration is chosen, and yet something was copied or changed");
            mayDecline = false;
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
        for (const AddonFile& file : addon.files)
            if (file.IsNeededBy(chosen) && (!file.isNested || isNestedWanted) &&
                (file.kind == Kind::Plain || (file.kind == Kind::Gauge && user.toImport.empty())))
                kept.emplace(PlainName(file.Name()), file.bytes);
        CheckKept();
        CheckTitle();
    }
    void CheckTitle() {
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

    // --- into the Hangar and back

    void CopyToHangar() {
        category = dice.Of<std::string>({"Jets", "Props"});
        const std::string proposed = program->View().packageName;
        const bool isTaken = drive.Has("Hangar\\Jets\\" + proposed) || drive.Has("Hangar\\Props\\" + proposed);
        if (!user.toImport.empty())
            package = user.toImport;
        else if (proposed.empty() || isTaken || dice.OneIn(3))
            package = addon.name + " no " + std::to_string(++copies);
        else
            package = proposed;
        Attempt(
            "copy to Hangar",
            [&] {
                program->ChooseCategory(IndexOf(program->View().categories, category));
                program->SetPackageName(package);
                program->CopyStagingToHangar();
            },
            [&] { return drive.Has(PackagePath()); }, false);
        if (!drive.Has(PackagePath()))
            throw RoadEnd{};
        gaugesOf[package] = addon.gauges[chosen];
        unpacked = drive.Tree(PackagePath());
        if (!drive.Tree("Staging").empty())
            Attempt(
                "clear Staging", [&] { program->RemoveAllFromStaging(); },
                [&] { return drive.Tree("Staging").empty(); });
    }

    void ShowInHangar() {
        const FileTree before = drive.Tree("Hangar");
        Do("show in the Hangar", [&] {
            program->GoToHangar();
            program->ChooseCategory(IndexOf(program->View().categories, category));
            program->ChoosePackage(IndexOf(form.PackageLines(), IsInstalled() ? "< " + package + " >" : package));
        });
        if (program->Package().path != drive.At(PackagePath()))
            Violation("the Hangar does not show " + PackagePath());
        if (!user.said.empty() || drive.Tree("Hangar") != before)
            Violation("showing a package changes or says something");
        if (!isPacked)
            unpacked = drive.Tree(PackagePath());
    }

    bool HasMarker() const { return drive.Has(PackagePath() + "KX_Compression.txt"); }
    void Compress() {
        beforePacking = drive.States(PackagePath());
        isPacked = true;
        Attempt(
            "compress", [&] { program->CompressShownPackage(); }, [&] { return HasMarker(); });
    }
    void Decompress() {
        if (!isPacked)
            return;
        Attempt(
            "decompress", [&] { program->DecompressShownPackage(); }, [&] { return !HasMarker(); });
        isPacked = false;
        if (drive.States(PackagePath()) != beforePacking)
            Violation("packed and unpacked, the package is another");
    }

    void GoThroughStaging() {
        const Contents before = ContentsOf(unpacked);
        user.saysYes = mood != Mood::Hesitant;
        Do("copy to Staging", [&] { program->CopyPackageToStaging(); });
        user.saysYes = true;
        isPacked = HasMarker(); // the package is still there, and its copy gets another name
        Decompress();
        Do("go to Staging", [&] { program->GoToStaging(); });
        if (ContentsOf(drive.Tree("Staging")) != before)
            Violation("Staging does not hold what the package held");
        const std::string original = package;
        const bool wasInstalled = IsInstalled();
        CopyToHangar();
        if (ContentsOf(unpacked) != before)
            Violation("the package is another after its way through Staging");
        if (wasInstalled) // it is taken out under the name that it was installed with
            package = original;
        if (!drive.Has(PackagePath()))
            throw RoadEnd{};
        ShowInHangar();
    }

    // --- into the simulator and out

    void Install() {
        const LoadedPackage& shown = program->Package();
        const bool wasInstalled = IsInstalled();
        const bool hasAlias = !shown.PackagePanelAlias.empty() || !shown.PackageSoundAlias.empty();
        RunOnPackage("install", &Program::InstallPackage);
        if (wasInstalled || (hasAlias && !IsInstalled()))
            return;
        if (!IsInstalled()) {
            Violation("was not installed");
            throw RoadEnd{};
        }
        if (!hasAlias)
            CheckInstalled();
        CheckCrossCheck();
        RunOnPackage("cross-check", &Program::CheckPackageGauges);
        CheckCrossCheck();
    }
    void CheckInstalled() {
        FileTree own; // the rest stands beside other aircraft's, where what was there stays
        for (const auto& [path, bytes] : unpacked) {
            const std::string name = LastPathComponent(path);
            const bool isEffect = PlainName(path).ends_with(".fx");
            if (!path.starts_with("Gauges\\") && !path.starts_with("Miscellaneous\\"))
                own[path] = bytes;
            else if (!path.ends_with('\\') && (!isEffect || drive.Has("FS\\effects")) &&
                     !drive.Has((path.starts_with("Gauges\\") ? "FS\\gauges\\"
                                 : isEffect                   ? "FS\\effects\\"
                                                              : "FS\\modules\\") +
                                name))
                Violation("the simulator lacks " + name);
        }
        ExpectHolds("the installed aircraft", ContentsOf(drive.Tree(InstalledPath())), ContentsOf(own));
    }
    // What the last box says of the installed panel.
    void CheckCrossCheck() {
        const std::string text = user.said.empty() ? "" : user.said.back().text;
        const std::set<std::string>& gauges = gaugesOf[package];
        if (hasLostPanel || gauges.empty() || !drive.Has(InstalledPath() + "panel\\panel.cfg") ||
            !program->Package().PackagePanelAlias.empty())
            return;
        if (text.find("PASSED") == std::string::npos && text.find("Possible problem") == std::string::npos)
            Violation("the gauges were not checked: " + text);
        for (const std::string& gauge : gauges) {
            const std::string file = "FS\\gauges\\" + gauge;
            const bool isNamed = text.find("\r\n" + gauge + ".gau\r\n") != std::string::npos;
            if ((drive.Has(file + ".gau") || drive.Has(file + ".cab")) == isNamed)
                Violation("the cross-check is wrong about " + gauge + ": " + text);
        }
    }

    void RemoveFromSim() {
        if (!IsInstalled())
            return;
        Attempt(
            "remove from simulator", [&] { program->RemovePackageFromSim(); },
            [&] { return !IsInstalled() || user.HasSaid("(via alias)"); });
        if (user.HasSaid("Done.") == IsInstalled())
            Violation("says that it is done and is not, or the other way round");
    }

    static constexpr const char* QueueFile = "App\\queue.txt";
    std::map<std::string, std::pair<std::string, FileInfo>> beforePacking;
    std::map<std::string, std::set<std::string>> gaugesOf; // that the panels of packages name
    FileTree declined;                                     // Staging when the choice was declined
    int copies = 0;
    bool hasChosen = false, mayDecline = false;
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
