#include "cuts/trials.h"

#include "cuts/ground.h"
#include "cuts/trees.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <set>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace korvadex::test {

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

constexpr const char* App = "C:\\App\\";
constexpr const char* SecondApp = "C:\\App2\\";
constexpr const char* Settings = "App/kx.ini";
constexpr unsigned LongestRun = 120; // seconds

Lines ReadLines(const std::string& path) {
    Lines lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

void Shell(const std::string& command) {
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("failed: " + command);
}

// Where one job works.
class Place {
  public:
    // mode: of the trials.
    Place(std::string job, const std::string& mode)
        : base(std::move(job)), isImage(mode.starts_with("ext4")), isSimulatorApart(mode == "volumes") {
        fs::create_directory(base);
    }
    ~Place() { Unmount(); }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    std::string Drive() const { return base + "/c"; }
    std::string Said() const { return base + ".said"; }
    std::string Calls() const { return base + ".calls"; }

    // The drive, as it was prepared.
    void Begin(const std::string& prepared) {
        Unmount();
        if (isImage && !fs::exists(base + ".first")) {
            Shell("truncate -s 32M " + base + ".first && mkfs.ext4 -q " + base + ".first");
            Mount("-o loop " + base + ".first", base);
            Shell("cp -a " + prepared + " " + Drive());
            Unmount();
        }
        if (isImage) {
            fs::remove(base + ".image"); // the device of the last one may still be there
            Shell("cp --sparse=always " + base + ".first " + base + ".image");
            Mount("-o loop " + base + ".image", base);
        } else {
            fs::remove_all(Drive());
            fs::create_directories(Drive() + "/FS");
            if (isSimulatorApart)
                Mount("-t tmpfs -o mode=755 simulator", Drive() + "/FS");
            Shell("cp -a " + prepared + "/. " + Drive());
        }
        fs::remove(Said());
        fs::remove(Calls());
    }
    // After a cut: what the volume still has.
    void Return() {
        if (isImage) {
            Unmount();
            Mount("-o loop " + base + ".image", base);
        }
    }

  private:
    void Mount(const std::string& what, const std::string& directory) {
        Shell("mount " + what + " " + directory);
        mounted = directory;
    }
    void Unmount() {
        if (!mounted.empty())
            Shell("umount " + mounted);
        mounted.clear();
    }
    const std::string base;
    const bool isImage, isSimulatorApart;
    std::string mounted;
};

// --- this program, started again

pid_t Begin(const Place& place, const Lines& arguments, const std::string& how, int at) {
    const pid_t child = fork();
    if (child != 0)
        return child;
    const int said = open(place.Said().c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
    dup2(said, 1);
    dup2(said, 2);
    if (!how.empty()) {
        const auto self = fs::read_symlink("/proc/self/exe");
        setenv("LD_PRELOAD", (self.parent_path() / "libkorvadex_cut.so").c_str(), 1);
        setenv("KORVADEX_CUT_BELOW", (place.Drive() + "/").c_str(), 1);
        setenv("KORVADEX_CUT_LIST", place.Calls().c_str(), 1);
        setenv("KORVADEX_CUT_HOW", how.c_str(), 1);
        setenv("KORVADEX_CUT_AT", std::to_string(at).c_str(), 1);
    }
    std::vector<char*> words = {const_cast<char*>("korvadex_cuts")};
    for (const auto& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    alarm(LongestRun);
    execv("/proc/self/exe", words.data());
    _exit(127);
}

// "" when it ended by itself, "killed", "stopped", or what went wrong.
std::string Wait(pid_t child) {
    int status = 0;
    if (waitpid(child, &status, WUNTRACED) != child)
        return "cannot be waited for";
    if (WIFSTOPPED(status))
        return "stopped";
    if (WIFSIGNALED(status))
        return WTERMSIG(status) == SIGKILL ? "killed" : "signal " + std::to_string(WTERMSIG(status));
    return WEXITSTATUS(status) == 0 ? "" : "code " + std::to_string(WEXITSTATUS(status));
}

std::string Execute(const Place& place, const Lines& arguments, const std::string& how = "", int at = 0) {
    return Wait(Begin(place, arguments, how, at));
}

// --- one command

// What is left out of a comparison: the program's own names and what it keeps for itself.
bool IsOwnOfProgram(const std::string& path) {
    const auto name = path.substr(path.rfind('/') + 1);
    return name.starts_with("~kx~") || path == "App/journal" || path == "App/queue.txt" || path == "App2";
}

enum class Verdict { Before, After, Told, Neither };
constexpr const char* VerdictNames[] = {"before", "after", "told", "NEITHER"};
struct Outcome {
    int call = 0;
    Verdict verdict = Verdict::Neither;
    std::string detail;
};

class CommandTrials {
  public:
    CommandTrials(std::string name, const Trials& how, std::string directory)
        : command(std::move(name)), trials(how), base(std::move(directory)), prepared(base + "/prepared") {
        PrepareGround(command, prepared, trials.mode == "volumes");
        before = Read(prepared);
        settingsSeen.insert(before.at(Settings).bytes);
        Place place(base + "/uncut", trials.mode);
        place.Begin(prepared);
        Require(Restart(place), "the start");
        RequireNone(From(before, Read(place.Drive())), "a start alone changes");
        after = RunUncut(place);
        settingsSeen.insert(after.at(Settings).bytes);
        calls = ReadLines(place.Calls());
        commandEnd = std::size_t(std::ranges::find(calls, std::string("unlink ") + CommandEndMark) - calls.begin());
        const Lines uncut = ReadLines(place.Said());
        said.insert(uncut.begin(), uncut.end());
        RequireNone(From(after, RunUncut(place)), "another run ends otherwise");
        if (trials.mode == "second") {
            afterTwice = RunUncut(place, 2);
            settingsSeen.insert(afterTwice.at(Settings).bytes);
            place.Begin(prepared); // the other one was first
            for (const char* app : {SecondApp, App})
                Require(Execute(place, {"--run", place.Drive(), command, app}), "after the other one");
            settingsSeen.insert(Read(place.Drive()).at(Settings).bytes);
        }
        if (const std::string reversed = CommandBefore(command); !reversed.empty()) {
            PrepareGround(reversed, base + "/goal", trials.mode == "volumes");
            const HostTree goal = Read(base + "/goal");
            settingsSeen.insert(goal.at(Settings).bytes);
            RequireNone(From(goal, after), "does not lead back");
        }
        if (trials.only != 0)
            std::cout << command << ", uncut:\n" << Text(uncut) << "--\n" << Text(Differences(before, after)) << "--\n";
        if (Differences(before, after).empty())
            throw std::runtime_error(command + " changes nothing:\n" + Text(uncut));
    }

    std::vector<Outcome> TryAll() {
        std::vector<int> chosen;
        const int count = int(calls.size()) + (IsPowerCut() ? 1 : 0);
        for (int call = 1; call <= count; call += trials.every)
            chosen.push_back(call);
        if (trials.only != 0)
            chosen = {trials.only};
        std::vector<pid_t> children;
        for (int job = 0; job < trials.jobs; ++job) {
            const pid_t child = fork();
            if (child == 0)
                Work(job, chosen);
            children.push_back(child);
        }
        std::vector<Outcome> outcomes;
        for (int job = 0; job < trials.jobs; ++job) {
            Require(Wait(children[std::size_t(job)]), "a job");
            for (const std::string& line : ReadLines(Results(job))) {
                const auto tab = line.find('\t');
                outcomes.push_back({std::stoi(line), Verdict(line[tab + 1] - '0'), line.substr(tab + 3)});
            }
        }
        std::ranges::sort(outcomes, {}, &Outcome::call);
        return outcomes;
    }
    std::size_t CallCount() const { return calls.size(); }

  private:
    bool IsPowerCut() const { return trials.mode.starts_with("ext4"); }
    bool IsFault() const { return trials.mode == "eio" || trials.mode == "enospc"; }
    std::string Results(int job) const { return base + "/job" + std::to_string(job) + ".results"; }

    static HostTree Read(const std::string& drive) { return WithoutRootTimes(ReadTree(drive, IsOwnOfProgram)); }
    // Also what the program keeps for itself, but for that of the second installation.
    static HostTree ReadAll(const std::string& drive) {
        return WithoutRootTimes(ReadTree(
            drive, [](const std::string& path) { return path.starts_with("App2") || path.ends_with("~kx~lock"); }));
    }
    // Each run of the program may write these, or beside them.
    static HostTree WithoutRootTimes(HostTree tree) {
        for (auto& [path, entry] : tree)
            if (path == Settings || path.find('/') == path.npos)
                entry.time.clear();
        return tree;
    }
    // The settings are also written when the program ends: both those before and those after the command are right.
    Lines From(const HostTree& wanted, HostTree now) const {
        if (TreeEntry& settings = now[Settings]; settingsSeen.contains(settings.bytes))
            settings = wanted.at(Settings);
        return Differences(wanted, now);
    }
    static std::string Text(const Lines& lines) {
        std::string text;
        for (const auto& line : lines)
            text += line + "\n";
        return text;
    }
    void Require(const std::string& problem, const std::string& what) const {
        if (!problem.empty())
            throw std::runtime_error(command + ": " + what + ": " + problem);
    }

    void RequireNone(const Lines& differences, const std::string& what) const {
        Require(differences.empty() ? "" : differences[0], what);
    }

    std::string Give(const Place& place, const std::string& how, int at) {
        return Execute(place, {"--run", place.Drive(), command, App}, how, at);
    }
    std::string Restart(const Place& place, const std::string& how = "", int at = 0) {
        return Execute(place, {"--restart", place.Drive(), App}, how, at);
    }
    HostTree RunUncut(Place& place, int times = 1) {
        place.Begin(prepared);
        // Of these the calls are counted as the full disk counts them.
        for (int turn = 0; turn < times; ++turn)
            Require(Give(place, trials.mode == "enospc" ? "enospc" : "count", 0), "uncut");
        Require(Restart(place), "the start after it");
        return Read(place.Drive());
    }

    [[noreturn]] void Work(int job, const std::vector<int>& chosen) {
        int code = 0;
        try {
            Place place(base + "/job" + std::to_string(job), trials.mode);
            std::ofstream results(Results(job));
            for (std::size_t i = std::size_t(job); i < chosen.size(); i += std::size_t(trials.jobs)) {
                const Outcome outcome = Try(place, chosen[i]);
                results << outcome.call << "\t" << int(outcome.verdict) << "\t" << outcome.detail << std::endl;
            }
            if (trials.only != 0 && job == 0) {
                std::cout << "cut:\n" << Text(ReadLines(place.Said()));
                std::cout << "-- from before:\n" << Text(Differences(before, Read(place.Drive())));
                std::cout << "-- from after:\n" << Text(Differences(after, Read(place.Drive()))) << std::flush;
            }
        } catch (const std::exception& problem) {
            std::cerr << problem.what() << std::endl;
            code = 1;
        }
        _exit(code);
    }

    Outcome Try(Place& place, int call) {
        place.Begin(prepared);
        isGivenTwice = false;
        std::string problem;
        if (trials.mode == "second")
            problem = RunWithSecond(place, call);
        else
            problem = Give(place, trials.mode == "again" || trials.mode == "volumes" ? "kill" : trials.mode, call);
        const bool isTold = IsFault() && HasNewLine(place);
        if (problem == "killed")
            problem.clear();
        place.Return();
        if (trials.mode == "again")
            CutRestarts(place, call);
        if (trials.mode == "enospc") // still full
            static_cast<void>(Restart(place, "enospc", 1));
        if (problem.empty())
            problem = Restart(place);
        return Judge(place, call, problem, isTold);
    }

    // The start that mends is cut as well, each time a little later, until it comes to its end.
    void CutRestarts(const Place& place, int call) {
        std::mt19937 dice(static_cast<unsigned>(call));
        for (unsigned width = 2; Restart(place, "kill", int(1 + dice() % width)) == "killed"; width *= 2)
            continue;
    }

    // Another installation gives the same command while this one stands still.
    std::string RunWithSecond(const Place& place, int call) {
        const pid_t first = Begin(place, {"--run", place.Drive(), command, App}, "stop", call);
        std::string problem = Wait(first);
        if (problem != "stopped")
            return problem;
        const auto standing = ReadAll(place.Drive());
        const bool hasBegun = !From(before, Read(place.Drive())).empty();
        problem = Execute(place, {"--run", place.Drive(), command, SecondApp});
        const auto changed = Differences(standing, ReadAll(place.Drive()));
        // Where the first one had done nothing yet, the second may have come before it.
        if (!changed.empty() && (hasBegun || !From(after, Read(place.Drive())).empty()))
            problem = "the second one changed " + changed[0];
        isGivenTwice = !changed.empty();
        kill(first, SIGCONT);
        const std::string ending = Wait(first);
        return problem.empty() ? ending : problem;
    }

    bool HasNewLine(const Place& place) const {
        return std::ranges::any_of(ReadLines(place.Said()),
                                   [&](const std::string& line) { return !said.contains(line); });
    }

    Outcome Judge(const Place& place, int call, const std::string& problem, bool isTold) const {
        const std::size_t index = std::size_t(call) - 1;
        std::string detail = index < calls.size() ? calls[index] : "the end";
        const HostTree now = Read(place.Drive());
        const auto fromBefore = From(before, now), fromAfter = From(isGivenTwice ? afterTwice : after, now);
        if (!problem.empty())
            return {call, Verdict::Neither, detail + ": " + problem};
        for (const auto& entry : fs::recursive_directory_iterator(place.Drive()))
            if (entry.path().filename() == "~kx~scratch" &&
                entry.path().string().find("/~kx~kept/") == std::string::npos)
                return {call, Verdict::Neither, detail + ": scratch is left: " + entry.path().string()};
        const bool hasEnded = index >= commandEnd;
        if (fromAfter.empty() && (hasEnded || !fromBefore.empty()))
            return {call, Verdict::After, detail};
        if (fromBefore.empty() && hasEnded)
            return {call, Verdict::Neither, detail + ": all is as before, after the command had ended"};
        if (fromBefore.empty())
            return {call, Verdict::Before, detail};
        const auto& least = fromBefore.size() < fromAfter.size() ? fromBefore : fromAfter;
        detail += ": " + std::to_string(fromBefore.size()) + " from before, " + std::to_string(fromAfter.size()) +
                  " from after: " + least[0];
        return {call, isTold && IsMixture(now) ? Verdict::Told : Verdict::Neither, detail};
    }

    // Each thing is as it was before or as it is after; the settings may have what was chosen until the fault.
    bool IsMixture(const HostTree& now) const {
        const auto at = [](const HostTree& tree, const std::string& path) {
            const auto found = tree.find(path);
            return found == tree.end() ? TreeEntry() : found->second;
        };
        std::set<std::string> paths;
        for (const auto* tree : {&now, &before, &after})
            for (const auto& [path, entry] : *tree)
                paths.insert(path);
        return std::ranges::all_of(paths, [&](const std::string& path) {
            const TreeEntry there = at(now, path);
            return path == Settings || there == at(before, path) || there == at(after, path);
        });
    }

    const std::string command;
    const Trials trials;
    const std::string base, prepared;
    HostTree before, after, afterTwice;
    bool isGivenTwice = false; // one after the other
    Lines calls;
    std::size_t commandEnd = 0; // among them
    std::set<std::string> said, settingsSeen;
};

} // namespace

int TryCommand(const std::string& command, const Trials& trials) {
    std::string base = (fs::temp_directory_path() / "korvadex-cuts-XXXXXX").string();
    if (mkdtemp(base.data()) == nullptr)
        throw std::runtime_error("no temporary directory could be made: " + base);
    int counts[std::size(VerdictNames)] = {};
    try {
        CommandTrials all(command, trials, base);
        std::cout << command << ": " << all.CallCount() << " calls" << std::flush;
        const auto outcomes = all.TryAll();
        for (const Outcome& outcome : outcomes)
            ++counts[int(outcome.verdict)];
        for (std::size_t i = 0; i < std::size(VerdictNames); ++i)
            std::cout << ", " << counts[i] << " " << VerdictNames[i];
        std::cout << "\n";
        constexpr int maxShown = 4;
        int shown = 0;
        for (const Outcome& outcome : outcomes)
            if (outcome.verdict == Verdict::Neither && ++shown <= maxShown)
                std::cout << "  --at " << outcome.call << ": " << outcome.detail << "\n";
        std::cout << std::flush;
    } catch (const std::exception& problem) {
        std::cout << problem.what() << std::endl;
        counts[int(Verdict::Neither)] = 1;
    }
    if (trials.only == 0)
        fs::remove_all(base);
    else
        std::cout << "all of it is in " << base << "\n";
    return counts[int(Verdict::Neither)];
}

} // namespace korvadex::test
