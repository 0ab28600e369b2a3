#include "cli/command_line.h"

#include "app/settings.h"
#include "cli/command_table.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <stdexcept>

namespace korvadex {

namespace {

constexpr const char* Name = "korvadex-cli";

std::string HelpText() {
    std::string text = "usage: " + std::string(Name) +
                       " COMMAND [OPTION...] [WORD...]\n\n"
                       "Keeps a collection of add-on aircraft for Microsoft Flight Simulator, as Korvadex does in its "
                       "window.\n\n";
    for (const LineCommand& command : LineCommands())
        text += std::string("  ") + command.name + " " + command.usage + "\n        " + command.help + "\n";
    return text +
           "\nA PACKAGE is \"Category\\Name\", also with /, or a name that only one package has.\n\n"
           "  --answer stop|yes|no  what is answered to every question; without it the terminal is asked.\n"
           "                        stop, and where there is no terminal: the command ends there, and what it has\n"
           "                        changed is taken back.  yes does not answer what cannot be taken back.\n"
           "  --help, --version\n\n"
           "Exit status: 0 done, 1 not done or not all of it, 2 a question is open, 3 wrong usage.\n"
           "Warnings and questions are written to the standard error.";
}

const LineCommand* FindCommand(const std::string& name) {
    const auto commands = LineCommands();
    const auto found =
        std::ranges::find(commands, name, [](const LineCommand& each) { return std::string(each.name); });
    return found == commands.end() ? nullptr : &*found;
}

bool Knows(const LineCommand& command, const std::string& option) {
    return option == "--answer" ||
           (" " + std::string(command.options) + " ").find(" " + option + " ") != std::string::npos;
}

// "" when the command can be run with these.
std::string DescribeMisuse(const Arguments& arguments, const LineCommand* command) {
    if (!command)
        return arguments.words.empty() ? "Which command?" : "There is no command " + arguments.words.front() + ".";
    for (const auto& [option, value] : arguments.options)
        if (!Knows(*command, option))
            return std::string(command->name) + " has no option " + option + ".";
    const auto answer = arguments.ValueOf("--answer");
    if (answer && *answer != "stop" && *answer != "yes" && *answer != "no")
        return "--answer takes stop, yes or no.";
    const std::size_t count = arguments.words.size() - 1;
    if (count < command->fewest || count > command->most)
        return std::string("usage: ") + Name + " " + command->name + (*command->usage ? " " : "") + command->usage;
    return "";
}

StandingAnswer AnswerIn(const Arguments& arguments) {
    const auto answer = arguments.ValueOf("--answer");
    return !answer            ? StandingAnswer::None
           : *answer == "yes" ? StandingAnswer::Yes
           : *answer == "no"  ? StandingAnswer::No
                              : StandingAnswer::Stop;
}

// The three directories of a first start, as paths with a drive letter; false, after a message, when one has none.
bool TakeLocations(const Arguments& arguments, const CommandLineHost& host, TextScreen& screen, TerminalUser& user) {
    Locations locations;
    for (const auto& [option, directory] : {std::pair{"--staging", &locations.StagingDir},
                                            {"--hangar", &locations.HangarDir},
                                            {"--msfs", &locations.MsfsDir}}) {
        const auto given = arguments.ValueOf(option);
        if (!given) {
            screen.Warn(std::string("The option ") + option + " is missing.");
            return false;
        }
        const auto path = IsDrivePath(*given) ? *given : host.files.PathFromHost(host.absolute(*given));
        if (!path) {
            screen.Warn("None of the drives that Korvadex knows leads to " + *given + ".");
            return false;
        }
        *directory = *path;
    }
    user.locations = locations;
    return true;
}

// What there is to answer at once, as the directories are not known yet, or are known already.
ExitCode TakeFirstStart(const LineCommand& command, const Arguments& arguments, const CommandLineHost& host,
                        const std::string& appDir, TextScreen& screen, TerminalUser& user) {
    const bool isFirst = host.files.Info(appDir + std::string(SettingsFileName)).fault() == FileFault::NotFound;
    if (!command.run && isFirst)
        return TakeLocations(arguments, host, screen, user) ? AllDone : WrongUsage;
    if (!command.run)
        screen.Warn("Korvadex knows its directories already, from " + appDir + std::string(SettingsFileName) +
                    ".  Please change them in its window (File, Locations).");
    else if (isFirst)
        screen.Warn("Korvadex has no settings in " + appDir +
                    " yet.  Please start its window once, or give it its three directories:\n" + Name +
                    " setup --staging DIRECTORY --hangar DIRECTORY --msfs DIRECTORY");
    return command.run && !isFirst ? AllDone : NotDone;
}

ExitCode RunCommand(const LineCommand& command, const Arguments& arguments, TextScreen& screen,
                    const CommandLineHost& host) {
    const std::string appDir = host.appDir();
    TerminalUser user(screen, AnswerIn(arguments));
    user.category = arguments.ValueOf("--category");
    if (const ExitCode code = TakeFirstStart(command, arguments, host, appDir, screen, user); code != AllDone)
        return code;
    const bool onlyLooks = command.looksWithoutWords && arguments.words.size() == 1;
    const RunFor runFor = onlyLooks ? RunFor::Looking : command.runFor;
    if (runFor != RunFor::Looking)
        host.noteInterrupts();

    Program* running = nullptr;
    TerminalWindow window(screen, [&] {
        if (running && host.wasInterrupted())
            running->StopAfterThis();
    });
    struct NoConverter : PictureConverter {
        PreparedPicture Prepare(const std::string&) override {
            return {"", "", "the command line reads no pictures.  Please import it in the window."};
        }
    } converter;
    Program program(host.files, host.launcher, user, user, converter, window, appDir, "");
    running = &program;
    user.isStarting = command.run != nullptr;
    bool isDone = program.Start(runFor);
    user.isStarting = false;
    if (isDone && runFor == RunFor::Looking && program.SeesHalfDone())
        screen.Warn("A command of Korvadex is at work here, or was cut off: what is shown may be half done.");
    if (isDone && command.run) {
        screen.HasSpoken();
        CommandRun run{program, user, screen, arguments, host, arguments.words};
        run.words.erase(run.words.begin());
        isDone = command.run(run);
        if (const std::string status = program.View().status; !screen.HasSpoken() && !status.empty())
            screen.Say(status);
    } else if (isDone) {
        screen.Say("Done.");
    }
    const bool wasStopped = program.WasStopped();
    program.Shutdown();
    if (user.HasOpenQuestion())
        return QuestionOpen;
    return isDone && !user.WasWarned() && !wasStopped ? AllDone : NotDone;
}

ExitCode RunLine(const std::vector<std::string>& given, TextScreen& screen, const CommandLineHost& host) {
    std::string problem;
    const Arguments arguments = ReadArguments(given, problem);
    if (problem.empty() && arguments.Has("--help")) {
        screen.Say(HelpText());
        return AllDone;
    }
    if (problem.empty() && arguments.Has("--version")) {
        screen.Say(std::string(Name) + " " + KORVADEX_VERSION);
        return AllDone;
    }
    const LineCommand* command = arguments.words.empty() ? nullptr : FindCommand(arguments.words.front());
    if (problem.empty())
        problem = DescribeMisuse(arguments, command);
    if (!problem.empty()) {
        screen.Warn(problem + "\n" + Name + " --help tells what there is.");
        return WrongUsage;
    }
    try {
        return RunCommand(*command, arguments, screen, host);
    } catch (const Asked&) {
        return QuestionOpen;
    } catch (const std::exception& trouble) {
        screen.Warn(std::string("Korvadex cannot go on.  ") + trouble.what());
        return NotDone;
    }
}

} // namespace

int RunCommandLine(const std::vector<std::string>& given, const Streams& streams, const CommandLineHost& host) {
    TextScreen screen(streams);
    const ExitCode code = RunLine(given, screen, host);
    if (code != AllDone || screen.IsComplete())
        return code;
    screen.Warn("The command is done, but what it had to say could not be written to its end.  Please look whether the "
                "disk is full.");
    return NotDone;
}

} // namespace korvadex
