#include "sim/run_simulator.h"

#include <array>

namespace korvadex {

namespace {

// The newest first.
constexpr std::array<const char*, 6> Executables = {"fs2002.exe", "fs2000.exe",   "cfs2.exe",
                                                    "cfs.exe",    "fltsim98.exe", "fltsim95.exe"};

} // namespace

std::string FindSimulatorProgram(const FileSystem& files, const std::string& directory) {
    for (const char* name : Executables)
        if (const std::string path = directory + name; files.Info(path) && !files.IsDirectory(path))
            return path;
    return "";
}

void RunSimulator(CommandContext& context) {
    const std::string path = FindSimulatorProgram(context.files, context.locations.MsfsDir);
    if (path.empty()) {
        context.user.Tell("Flight Simulator executable not found.  Please check MSFS location supplied to Korvadex.",
                          MessageIcon::Exclamation);
        return;
    }
    const std::string reason = context.launcher.RunSimulator(path);
    if (reason.empty())
        context.display.ShowStatus(path + " is being started."); // which takes Wine some seconds
    else
        context.user.Tell(reason, MessageIcon::Exclamation);
}

} // namespace korvadex
