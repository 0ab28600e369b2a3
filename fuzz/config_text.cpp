// The text of a configuration: nothing is lost when it is read, and a line takes the value that it is given.
#include "package/config_text.h"
#include "fuzz/check.h"
#include "package/aircraft_cfg.h"

namespace korvadex::fuzz {

namespace {

bool IsPartOf(std::string_view part, std::string_view line) {
    return part.empty() || (part.data() >= line.data() && part.data() + part.size() <= line.data() + line.size());
}

void CheckLine(const std::string& line) {
    const std::string_view key = KeyOf(line), section = SectionOf(line);
    Require(IsPartOf(key, line) && IsPartOf(section, line), "a key or section is a part of its line");
    Require(key.empty() || section.empty(), "a line is a section or has a key");
    if (key.empty())
        return;
    Require(IsPartOf(ValueOf(line), line), "a value is a part of its line");
    for (const std::string_view value : {ValueOf(line), std::string_view(), std::string_view("Lear 45; 'x'\\n")}) {
        const std::string changed = WithValue(line, value);
        Require(ValueOf(changed) == value, "a line takes the value that it is given");
        Require(KeyOf(changed) == key, "a line keeps its key");
    }
}

void CheckTitle(const AircraftCfg& cfg) {
    const auto titled = WithTitle(cfg, "Lear \xC3\xA9 45");
    Require(titled.has_value(), "this title fits into every encoding");
    const ConfigText read = ParseConfig(titled->Bytes());
    Require(read.lines.size() == cfg.text.lines.size(), "a title changes no other line");
    for (std::size_t i = 0; i < read.lines.size(); ++i) {
        const bool isTitle = i < MaxConfigLines && HasKey(cfg.text.lines[i].text, "title");
        Require(read.lines[i].end == cfg.text.lines[i].end, "a title keeps the end of its line");
        Require(isTitle ? ValueOf(read.lines[i].text) == "Lear \xC3\xA9 45"
                        : read.lines[i].bytes == cfg.text.lines[i].bytes,
                "a title stands where one stood, and nowhere else");
    }
}

} // namespace

void Run(std::string_view input) {
    AircraftCfg cfg;
    cfg.text = ParseConfig(input);
    Require(cfg.text.Bytes() == input, "the text is the bytes that were read");
    Require(!IsPlainConfig(input) || DecodeConfig(input) == input, "plain text stands for itself");
    for (const ConfigLine& line : cfg.text.lines)
        CheckLine(line.text);
    ReadConfigurations(cfg);
    CheckTitle(cfg);
}

} // namespace korvadex::fuzz
