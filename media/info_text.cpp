#include "media/info_text.h"

#include "platform/windows_path.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>

namespace korvadex {

const std::array<InfoField, 8> ConfigurationFields = {{
    {.key = "atc_id", .name = "tail number", .text = &AircraftInfo::atcId},
    {.key = "atc_airline", .name = "airline call sign", .text = &AircraftInfo::atcAirline},
    {.key = "atc_flight_number", .name = "flight number", .text = &AircraftInfo::atcFlightNumber},
    {.key = "atc_heavy", .name = "heavy", .flag = &AircraftInfo::isHeavy},
    {.key = "ui_manufacturer", .name = "manufacturer", .text = &AircraftInfo::manufacturer},
    {.key = "ui_type", .name = "type", .text = &AircraftInfo::type},
    {.key = "ui_variation", .name = "variation", .text = &AircraftInfo::variation},
    {.key = "description", .name = "description", .text = &AircraftInfo::description, .hasLines = true},
}};
const std::array<InfoField, 4> GeneralFields = {{
    {.key = "atc_type", .name = "ATC type", .text = &AircraftInfo::atcType},
    {.key = "atc_model", .name = "ATC model", .text = &AircraftInfo::atcModel},
    {.key = "editable", .name = "editable", .flag = &AircraftInfo::isEditable},
    {.key = "performance", .name = "performance", .text = &AircraftInfo::performance, .hasLines = true},
}};

namespace {

using Fields = std::span<const InfoField>;

// How a new line ends: as all others do, or with CR LF where they differ.
std::string LineEndOf(const ConfigText& text) {
    std::set<std::string> ends;
    for (const ConfigLine& line : text.lines)
        ends.insert(line.end);
    ends.erase("");
    return ends.size() == 1 ? *ends.begin() : text.Encode("\r\n").value_or("\r\n");
}

// Knows which fields the lines belong to that it is shown one after the other.
class SectionReader {
  public:
    // True when the line begins a section.
    bool IsHeader(const ConfigLine& line) {
        const std::string_view section = SectionOf(line.text);
        if (section.empty())
            return false;
        fields = {};
        if (!hasConfiguration && (StartsWithNoCase(section, "fltsim.") || EqualNoCase(section, "fltsim"))) {
            hasConfiguration = true;
            fields = ConfigurationFields;
        } else if (!hasGeneral && EqualNoCase(section, "general")) {
            hasGeneral = true;
            fields = GeneralFields;
        }
        return true;
    }
    // The managed field of this section that the line sets; none for any other line.
    const InfoField* FieldOf(const ConfigLine& line) const {
        const auto found = std::find_if(fields.begin(), fields.end(),
                                        [&](const InfoField& field) { return HasKey(line.text, field.key); });
        return found == fields.end() ? nullptr : &*found;
    }
    Fields Current() const { return fields; }
    bool HasConfiguration() const { return hasConfiguration; }
    bool HasGeneral() const { return hasGeneral; }

  private:
    Fields fields; // of the section that the lines are in
    bool hasConfiguration = false, hasGeneral = false;
};

// --- values

std::string ValueIn(const ConfigLine& line, const InfoField& field) {
    std::string value(ValueOf(line.text));
    return field.hasLines ? EscapeConfigText(value, true) : value;
}

// What is no number is off.
bool IsOn(std::string_view value) {
    const std::size_t first = value.find_first_not_of('0');
    return first != std::string_view::npos && value[first] >= '1' && value[first] <= '9';
}

// What stands behind the key; "" when there is to be no such line.
std::string ValueFor(const InfoField& field, const AircraftInfo& info) {
    if (field.flag) {
        // Heavy is said only of aircraft that are.
        const char* off = field.flag == &AircraftInfo::isHeavy ? "" : "0";
        return info.*field.flag ? "1" : off;
    }
    std::string value = info.*field.text;
    return field.hasLines ? EscapeConfigText(value, false) : value;
}

void TakeValue(const ConfigLine& line, const InfoField& field, AircraftInfo& info) {
    if (field.flag)
        info.*field.flag = IsOn(ValueIn(line, field));
    else
        info.*field.text = ValueIn(line, field);
}

bool HasValueOf(const ConfigLine& line, const InfoField& field, const AircraftInfo& info) {
    AircraftInfo read;
    TakeValue(line, field, read);
    return field.flag ? read.*field.flag == info.*field.flag : read.*field.text == info.*field.text;
}

// The line that counts of each field that the file has.
struct ManagedLines {
    std::map<const InfoField*, const ConfigLine*> first;
    bool hasConfiguration = false;
};

ManagedLines FindManagedLines(const ConfigText& text) {
    ManagedLines found;
    SectionReader sections;
    for (const ConfigLine& line : text.lines) {
        const InfoField* field = sections.IsHeader(line) ? nullptr : sections.FieldOf(line);
        if (field)
            found.first.emplace(field, &line);
    }
    found.hasConfiguration = sections.HasConfiguration();
    return found;
}

// --- the new file

class Rewriter {
  public:
    Rewriter(const AircraftInfo& newInfo, const ConfigText& before)
        : info(newInfo), text(before), lineEnd(LineEndOf(before)), old(FindManagedLines(before)) {}

    void Keep(const ConfigLine& line) {
        bytes.append(line.bytes).append(line.end);
        isEnded = !line.end.empty();
        if (!TrimBlanks(line.text).empty())
            lastText = bytes.size();
    }
    // Puts the managed keys behind the last text so far; the empty line after them is one that stands there already,
    // or a new one.
    void EndSection(Fields fields) {
        std::string lines = LinesFor(fields);
        if (lines.empty())
            return;
        if (lastText == bytes.size()) {
            lines += lineEnd;
            EndLastLine();
        }
        bytes.insert(lastText, lines);
        lastText = bytes.size(); // only a header or the end of the file follows
    }
    void AddGeneral() {
        EndLastLine();
        bytes.append(text.Encode("[General]").value_or("")).append(lineEnd);
        lastText = bytes.size();
        EndSection(GeneralFields);
    }
    std::string Take() { return text.mark + bytes; }

  private:
    // A value that is not changed stays as it is spelt: there may be a mark in it that would read back as another.
    std::string LinesFor(Fields fields) const {
        std::string lines;
        for (const InfoField& field : fields) {
            const std::string value = ValueFor(field, info);
            if (value.empty())
                continue;
            const auto found = old.first.find(&field);
            const ConfigLine* line = found == old.first.end() ? nullptr : found->second;
            if (line && HasValueOf(*line, field, info))
                lines.append(line->bytes).append(lineEnd);
            else if (const auto encoded =
                         text.Encode(WithValue(line ? line->text : std::string(field.key) + "=", value)))
                lines.append(*encoded).append(lineEnd);
        }
        return lines;
    }
    void EndLastLine() {
        if (!isEnded)
            bytes += lineEnd;
        isEnded = true;
        lastText = bytes.size();
    }

    const AircraftInfo& info;
    const ConfigText& text;
    const std::string lineEnd;
    const ManagedLines old;
    std::string bytes;
    bool isEnded = true;      // of the last line
    std::size_t lastText = 0; // where the last line that is not blank ends
};

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at)) {
        text.replace(at, from.size(), to);
        at -= std::min<std::size_t>(at, 1); // with the letter before it, it may stand there again
    }
}

} // namespace

std::string& EscapeConfigText(std::string& text, bool decode) {
    constexpr std::pair<std::string_view, std::string_view> marks[] = {{"\\n", "\r\n"}, {"\\t", "\t"}, {"\\s", ";"}};
    for (const auto& [inFile, inDialog] : marks)
        ReplaceAll(text, decode ? inFile : inDialog, decode ? inDialog : inFile);
    if (decode) {
        ReplaceAll(text, "\\/", "/");
        return text;
    }
    std::string encoded;
    for (const char letter : text) {
        if (letter == '/')
            encoded += '\\';
        encoded += letter;
    }
    return text = std::move(encoded);
}

ConfigInfo ReadAircraftInfo(const ConfigText& text) {
    const ManagedLines found = FindManagedLines(text);
    ConfigInfo result;
    for (const auto& [field, line] : found.first)
        TakeValue(*line, *field, result.info);
    result.hasConfiguration = found.hasConfiguration;
    return result;
}

std::string WithAircraftInfo(const ConfigText& text, const AircraftInfo& info) {
    Rewriter rewriter(info, text);
    SectionReader sections;
    for (const ConfigLine& line : text.lines) {
        const Fields ended = sections.Current();
        if (sections.IsHeader(line)) {
            rewriter.EndSection(ended);
            rewriter.Keep(line);
        } else if (!sections.FieldOf(line)) {
            rewriter.Keep(line);
        }
    }
    rewriter.EndSection(sections.Current());
    if (!sections.HasGeneral())
        rewriter.AddGeneral();
    return rewriter.Take();
}

} // namespace korvadex
