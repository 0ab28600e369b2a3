#include "sim/run_simulator.h"

#include <array>

namespace korvadex {

namespace {

// The newest first.
constexpr std::array<const char*, 6> Executables = {"fs2002.exe", "fs2000.exe",   "cfs2.exe",
                                                    "cfs.exe",    "fltsim98.exe", "fltsim95.exe"};

} // namespace

void RunSimulator(CommandContext& context) {
    for (const char* name : Executables) {
        const std::string path = context.locations.MsfsDir + name;
        if (!context.files.Info(path) || context.files.IsDirectory(path))
            continue;
        const std::string reason = context.launcher.RunSimulator(path);
        if (reason.empty())
            context.window.ShowStatus(path + " is being started."); // which takes Wine some seconds
        else
            context.user.Tell(reason, MessageIcon::Exclamation);
        return;
    }
    context.user.Tell(
        "Flight Simulator executable not found.  Please check MSFS location supplied to Korvadex.",
        MessageIcon::Exclamation);
}

} // namespace korvadex
