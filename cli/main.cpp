#include "app/own_files.h"
#include "cli/command_line.h"
#include "cli/console.h"
#include "platform/environment.h"

#include <iostream>

int main(int count, char** given) {
    using namespace korvadex;
    const auto arguments = OpenConsole(count, given);
    const auto files = MakeHostFileSystem();
    const auto launcher = MakeHostLauncher(*files);
    const Streams streams{std::cin, std::cout, std::cerr, IsTerminal(StandardStream::In),
                          IsTerminal(StandardStream::Error)};
    return RunCommandLine(arguments, streams,
                          {.files = *files,
                           .launcher = *launcher,
                           .appDir = [&] { return AppDirectory(*files, RunningExecutable()); },
                           .absolute = AbsoluteHostPath,
                           .noteInterrupts = NoteInterrupts,
                           .wasInterrupted = WasInterrupted});
}
