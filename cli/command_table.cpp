#include "cli/command_table.h"

#include "app/history_editor.h"
#include "cli/json.h"
#include "package/file_primitives.h"
#include "package/presence.h"
#include "package/progress.h"
#include "platform/windows_path.h"
#include "sim/import.h"
#include "sim/unused_gauges.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace korvadex {

namespace {

// --- what was named

// "Jets/Lear" and "Jets\Lear\" are "Jets\Lear".
PackageRef NamedPackage(std::string text) {
    std::ranges::replace(text, '/', '\\');
    return PackageRefOf(WithoutBackslash(text));
}

// False, after a message, when one of them is not.
bool AreThere(CommandRun& run, std::initializer_list<Place> places) {
    const auto gone = DescribeGone(run.host.files, run.program.GetSettings().locations, places);
    if (!gone.empty())
        run.user.Tell(gone + GoneAdvice(), MessageIcon::Exclamation);
    return gone.empty();
}

// None, after a message, when one of them is not there or may be several.
std::vector<PackageRef> FindPackages(CommandRun& run, const std::vector<std::string>& words) {
    if (!AreThere(run, {Place::Hangar}))
        return {};
    std::vector<PackageRef> found;
    for (const std::string& word : words) {
        const PackageRef wanted = NamedPackage(word);
        std::vector<PackageRef> fitting;
        for (const HangarCategory& category : run.program.GetCollection().Listing())
            for (const HangarPackage& package : category.packages)
                if (EqualNoCase(package.name, wanted.name) &&
                    (wanted.category.empty() || EqualNoCase(category.name, wanted.category)))
                    fitting.push_back({category.name, package.name});
        if (fitting.size() == 1) {
            found.push_back(fitting.front());
            continue;
        }
        std::string text = "There is no package " + wanted.Text() + " in the Hangar.  Nothing was done.";
        if (!fitting.empty())
            text = "Several packages are called " + wanted.name + ".  Please say which.  Nothing was done.";
        for (const PackageRef& each : fitting)
            text += "\r\n  " + each.Text();
        run.user.Tell(text, MessageIcon::Exclamation);
        return {};
    }
    return found;
}

std::string FindCategory(const Program& program, const std::string& wanted) {
    for (const HangarCategory& category : program.GetCollection().Listing())
        if (EqualNoCase(category.name, wanted))
            return category.name;
    return "";
}

// What the Hangar holds, with all that is known of it.
CollectionView ReadHangar(CommandRun& run) {
    while (run.program.ReadCollection(std::chrono::hours(1))) {
    }
    return run.program.GetCollection().Arrange();
}

bool HasAll(CommandRun& run, const std::vector<PackageRef>& packages, bool isWantedInSim) {
    return std::ranges::all_of(packages, [&](const PackageRef& package) {
        return IsInstalled(run.host.files, run.program.GetSettings().locations, package) == isWantedInSim;
    });
}

// --- commands that only look

// "2026-11-22T10:47:05Z"
std::string JsonTime(FileTime time) {
    using namespace std::chrono;
    const auto seconds = floor<std::chrono::seconds>(time);
    const auto day = floor<days>(seconds);
    const year_month_day date(day);
    const hh_mm_ss clock(seconds - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return JsonText(text);
}

std::vector<std::pair<std::string, std::string>> JsonMembers(const CollectionPackage& package) {
    const auto text = [](bool value) { return std::string(value ? "true" : "false"); };
    std::vector<std::pair<std::string, std::string>> members = {
        {"category", JsonText(package.ref.category)},
        {"name", JsonText(package.ref.name)},
        {"installed", text(package.isInstalled)},
    };
    if (const PackageFacts& facts = package.facts; facts.isRead)
        members.insert(members.end(), {{"title", JsonText(facts.title)},
                                       {"compressed", text(facts.isCompressed)},
                                       {"bytes", std::to_string(facts.bytes)},
                                       {"added", JsonTime(facts.added)},
                                       {"alias", JsonText(facts.alias)}});
    return members;
}

bool List(CommandRun& run) {
    const Program& program = run.program;
    if (!AreThere(run, {Place::Hangar}))
        return false;
    std::string category;
    if (const auto wanted = run.user.category) {
        category = FindCategory(program, *wanted);
        if (category.empty()) {
            run.user.Tell("There is no category " + *wanted + " in the Hangar.", MessageIcon::Exclamation);
            return false;
        }
    }
    std::vector<std::string> objects;
    const bool areNames = run.arguments.Has("--names");
    for (const CollectionCategory& each : areNames ? program.GetCollection().Arrange() : ReadHangar(run))
        for (const CollectionPackage& package : each.packages) {
            if (!category.empty() && each.name != category)
                continue;
            if (run.arguments.Has("--json"))
                objects.push_back("\n  " + JsonObject(JsonMembers(package)));
            else
                run.screen.Say(areNames ? package.ref.Text() : each.name + "\\" + DescribeMarks(package));
        }
    if (run.arguments.Has("--json"))
        run.screen.Say(JsonArray(objects));
    return true;
}

bool Show(CommandRun& run) {
    const auto found = FindPackages(run, run.words);
    if (found.empty())
        return false;
    run.program.ShowPackage(found.front());
    const LoadedPackage& loaded = run.program.Package();
    if (loaded.ref != found.front() || run.user.WasWarned())
        return false;
    CollectionPackage shown;
    for (const CollectionCategory& each : ReadHangar(run))
        for (const CollectionPackage& package : each.packages)
            if (package.ref == found.front())
                shown = package;
    std::string text = DescribePackage(shown);
    std::vector<std::pair<std::string, std::string>> groups;
    for (std::size_t group = 0; group < loaded.ComponentFiles.size(); ++group) {
        std::vector<std::string> names;
        for (const FileEntry& file : loaded.ComponentFiles[group])
            names.push_back(file.path.substr(loaded.path.size()));
        if (!names.empty())
            text += "\r\n\r\n" + std::string(ComponentGroupNames[group]) + ":";
        for (std::string& name : names) {
            text += "\r\n  " + name;
            name = JsonText(name);
        }
        groups.emplace_back(ComponentGroupNames[group], JsonArray(names));
    }
    auto members = JsonMembers(shown);
    members.emplace_back("files", JsonObject(groups));
    run.screen.Say(run.arguments.Has("--json") ? JsonObject(members) : text);
    return true;
}

bool Check(CommandRun& run) {
    const auto packages = FindPackages(run, run.words);
    if (packages.empty())
        return false;
    if (run.arguments.Has("--aliases")) {
        run.user.ExpectConfirmation(); // to go on with the sound
        run.program.CheckReferencesOfEach(packages);
        return true;
    }
    run.program.CheckGaugesOfEach(packages);
    bool isMissing = false;
    for (const CollectionCategory& each : run.program.GetCollection().Arrange())
        for (const CollectionPackage& package : each.packages)
            isMissing = isMissing ||
                        (std::ranges::find(packages, package.ref) != packages.end() && !package.missingGauges.empty());
    return HasAll(run, packages, true) && !isMissing;
}

// --- commands for packages

bool Install(CommandRun& run) {
    const auto packages = FindPackages(run, run.words);
    const bool wasInstalled = packages.empty() || !HasAll(run, packages, false);
    if (!packages.empty())
        run.program.InstallEach(packages);
    return !wasInstalled && HasAll(run, packages, true);
}

bool Remove(CommandRun& run) {
    const auto packages = FindPackages(run, run.words);
    const bool wasThere = !packages.empty() && HasAll(run, packages, true);
    if (!packages.empty())
        run.program.RemoveEach(packages);
    return wasThere && HasAll(run, packages, false);
}

bool Repack(CommandRun& run, bool compress) {
    if (run.arguments.Has("--all") == !run.words.empty()) {
        run.user.Tell("Please name the packages, or give --all for all of the Hangar.", MessageIcon::Exclamation);
        return false;
    }
    if (run.arguments.Has("--all")) {
        run.user.ExpectConfirmation();
        compress ? run.program.CompressAll() : run.program.DecompressAll();
        return true;
    }
    const auto packages = FindPackages(run, run.words);
    if (packages.empty())
        return false;
    compress ? run.program.CompressEach(packages) : run.program.DecompressEach(packages);
    return true;
}

bool Compress(CommandRun& run) {
    return Repack(run, true);
}

bool Decompress(CommandRun& run) {
    return Repack(run, false);
}

bool Move(CommandRun& run) {
    const std::string wanted = run.words.back(), category = FindCategory(run.program, wanted);
    run.words.pop_back();
    const auto packages = FindPackages(run, run.words);
    if (packages.empty())
        return false;
    if (category.empty()) {
        run.user.Tell("There is no category " + wanted + " in the Hangar.  Nothing was done.",
                      MessageIcon::Exclamation);
        return false;
    }
    if (packages.size() == 1 && packages.front().category == category)
        run.user.Tell("It is in that category already.");
    run.program.MoveEach(packages, category);
    return std::ranges::all_of(packages, [&](const PackageRef& package) {
        const auto& listing = run.program.GetCollection().Listing();
        return package.category != category && std::ranges::any_of(listing, [&](const HangarCategory& each) {
                   return each.name == category && std::ranges::any_of(each.packages, [&](const HangarPackage& other) {
                              return other.name == package.name;
                          });
               });
    });
}

// --- what comes into the Hangar

std::size_t CountPackages(const Program& program) {
    std::size_t count = 0;
    for (const HangarCategory& category : program.GetCollection().Listing())
        count += category.packages.size();
    return count;
}

bool Add(CommandRun& run) {
    std::vector<std::string> paths;
    for (const std::string& word : run.words) {
        const std::string absolute = IsDrivePath(word) ? word : run.host.absolute(word);
        paths.push_back(IsDrivePath(word) ? word : run.host.files.SourceFromHost(absolute));
        if (!IsDrivePath(paths.back())) // outside of the drives
            run.screen.SayInPlaceOf(paths.back(), absolute);
    }
    const auto before = CountPackages(run.program);
    run.program.TakeArchives(paths);
    return CountPackages(run.program) > before;
}

bool Import(CommandRun& run) {
    if (!AreThere(run, {Place::Hangar, Place::Simulator}))
        return false;
    const std::vector<std::string> there = run.program.ImportableAircraft();
    if (run.words.empty())
        for (const std::string& name : there)
            run.screen.Say(name);
    std::vector<std::string> wanted;
    for (const std::string& word : run.words) {
        const auto found =
            std::ranges::find_if(there, [&](const std::string& name) { return EqualNoCase(name, word); });
        if (found == there.end()) {
            run.user.Tell("MSFS has no aircraft " + word +
                              " that the Hangar lacks.  \"korvadex-cli import\" names those that it has.  Nothing was "
                              "done.",
                          MessageIcon::Exclamation);
            return false;
        }
        wanted.push_back(*found);
    }
    if (wanted.empty())
        return true;
    const auto before = CountPackages(run.program);
    run.program.ImportEach(wanted);
    return CountPackages(run.program) > before;
}

// --- the simulator, and the way back

bool IsCalled(const UnusedGauge& gauge, const std::string& word) {
    return EqualNoCase(word, gauge.name) || EqualNoCase(word, LastPathComponent(gauge.path));
}

bool UnusedGauges(CommandRun& run) {
    bool isDone = false;
    const auto isWanted = [&](const UnusedGauge& gauge) {
        return run.words.empty() ||
               std::ranges::any_of(run.words, [&](const std::string& word) { return IsCalled(gauge, word); });
    };
    run.user.useUnusedGauges = [&](const UnusedGaugesForm& form) {
        const auto unused = form.search([&](int value, int maximum) {
            if (run.host.wasInterrupted())
                throw Stopped{};
            run.screen.ShowProgress(static_cast<int>(100LL * value / maximum), "");
        });
        for (const std::string& word : run.words)
            if (std::ranges::none_of(unused, [&](const UnusedGauge& gauge) { return IsCalled(gauge, word); }))
                return run.user.Tell("There is no unused gauge " + word + " in MSFS.  Nothing was done.",
                                     MessageIcon::Exclamation);
        std::vector<int> rows;
        for (std::size_t row = 0; row < unused.size(); ++row)
            if (isWanted(unused[row])) {
                rows.push_back(static_cast<int>(row));
                run.screen.Say(unused[row].name);
            }
        isDone = true;
        if (rows.empty())
            run.screen.Warn("There are no such gauges.");
        if (run.arguments.Has("--delete") && !rows.empty())
            isDone = std::ranges::none_of(form.remove(rows), isWanted);
    };
    run.user.ExpectConfirmation(); // that it may take a while
    run.program.ShowUnusedGauges();
    return isDone;
}

bool Reverse(CommandRun& run, void (Program::*command)(), std::string MainView::*from, std::string MainView::*to) {
    const std::string text = run.program.View().*from;
    (run.program.*command)();
    return !text.empty() && run.program.View().*to == text;
}

bool Undo(CommandRun& run) {
    return Reverse(run, &Program::UndoLast, &MainView::undoText, &MainView::redoText);
}

bool Redo(CommandRun& run) {
    return Reverse(run, &Program::RedoLast, &MainView::redoText, &MainView::undoText);
}

bool ShowTheHistory(CommandRun& run) {
    bool isShown = false;
    run.user.useHistory = [&](HistoryEditor& history) {
        isShown = true;
        for (const HistoryRow& row : history.Rows()) {
            std::string line = row.time + "  " + row.command + (row.package.empty() ? "" : " " + row.package);
            if (!row.files.empty())
                line += "  (" + row.files + (row.files == "1" ? " file, " : " files, ") + row.size + ")";
            run.screen.Say(line + (row.state.empty() ? "" : "  " + row.state));
        }
    };
    run.program.ShowHistory();
    return isShown;
}

constexpr LineCommand Commands[] = {
    {"setup", "--staging DIRECTORY --hangar DIRECTORY --msfs DIRECTORY", "the three directories, once", nullptr,
     RunFor::Commands, 0, 0, "--staging --hangar --msfs"},
    {"list", "[--category NAME] [--names|--json]", "the packages of the Hangar", List, RunFor::Looking, 0, 0,
     "--category --names --json"},
    {"show", "PACKAGE [--json]", "what is known of a package, and its files", Show, RunFor::Looking, 1, 1, "--json"},
    {"check", "[--aliases] PACKAGE...", "which gauges MSFS lacks for it, or who uses its panel or sound", Check,
     RunFor::Looking, 1, AnyNumber, "--aliases"},
    {"add", "ARCHIVE|DIRECTORY... [--category NAME]", "archives into the Hangar", Add, RunFor::Commands, 1, AnyNumber,
     "--category"},
    {"install", "PACKAGE...", "copies packages to MSFS", Install, RunFor::Commands, 1, AnyNumber},
    {"remove", "PACKAGE...", "removes packages from MSFS; the Hangar keeps them", Remove, RunFor::Commands, 1,
     AnyNumber},
    {"compress", "PACKAGE...|--all", "packs their files, so that they take less room", Compress, RunFor::Commands, 0,
     AnyNumber, "--all"},
    {"decompress", "PACKAGE...|--all", "unpacks them again", Decompress, RunFor::Commands, 0, AnyNumber, "--all"},
    {"move", "PACKAGE... CATEGORY", "to another category of the Hangar", Move, RunFor::Commands, 2, AnyNumber},
    {"import", "[AIRCRAFT...] [--category NAME]", "aircraft of MSFS into the Hangar, or their names", Import,
     RunFor::Commands, 0, AnyNumber, "--category", true},
    {"unused-gauges", "[--delete] [GAUGE...]", "gauges in MSFS that no aircraft uses", UnusedGauges, RunFor::Commands,
     0, AnyNumber, "--delete"},
    {"undo", "", "takes back the last command", Undo},
    {"redo", "", "does again what was taken back", Redo},
    {"history", "", "the commands of the last time, the newest first", ShowTheHistory, RunFor::Looking},
};

} // namespace

std::span<const LineCommand> LineCommands() {
    return Commands;
}

} // namespace korvadex
