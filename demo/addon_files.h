// The files of the example's aircraft: configuration files as their authors write them, and stand-ins for
// what only the simulator reads.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvadex::demo {

// Lines of "\n" become lines of CR LF.
std::string Text(std::string_view lines);

struct Configuration {
    std::string title, texture, variation; // texture "" for the plain directory
};
// One [fltsim.N] section for each configuration, and what follows them.
std::string AircraftCfg(const std::vector<Configuration>& configurations, const std::string& maker,
                        const std::string& type);
// A panel with that background and these gauges, each as "file!gauge" or "file".
std::string PanelCfg(const std::string& bitmap, const std::vector<std::string>& gauges);
std::string AliasCfg(const std::string& alias);
std::string ModelCfg(const std::string& model);
std::string SoundCfg(const std::string& wave);
std::string Checklist(const std::string& name);

// Stand-ins of a plausible size, different for each name: flight model, 3-D model, gauge, library.
std::string FlightModel(const std::string& name);
std::string Model3D(const std::string& name);
std::string GaugeLibrary(const std::string& name);
std::string GaugeCabinet(const std::string& name, const std::string& bitmap);
// An effect as the simulator's text files describe it.
std::string Effect(const std::string& texture);
// A program that says, when it is started, that it is none.
std::string StandInProgram();

} // namespace korvadex::demo
