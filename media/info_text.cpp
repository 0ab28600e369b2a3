#include "media/info_text.h"

#include "platform/code_page.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>

namespace korvadex {

const std::array<InfoField, 8> ConfigurationFields = {{
    {.key = "atc_id=", .name = "tail number", .text = &AircraftInfo::atcId},
    {.key = "atc_airline=", .name = "airline call sign", .text = &AircraftInfo::atcAirline},
    {.key = "atc_flight_number=", .name = "flight number", .text = &AircraftInfo::atcFlightNumber},
    {.key = "atc_heavy=", .name = "heavy", .flag = &AircraftInfo::isHeavy},
    {.key = "ui_manufacturer=", .name = "manufacturer", .text = &AircraftInfo::manufacturer},
    {.key = "ui_type=", .name = "type", .text = &AircraftInfo::type},
    {.key = "ui_variation=", .name = "variation", .text = &AircraftInfo::variation},
    {.key = "description=", .name = "description", .text = &AircraftInfo::description, .hasLines = true},
}};
const std::array<InfoField, 4> GeneralFields = {{
    {.key = "atc_type=", .name = "ATC type", .text = &AircraftInfo::atcType},
    {.key = "atc_model=", .name = "ATC model", .text = &AircraftInfo::atcModel},
    {.key = "editable=", .name = "editable", .flag = &AircraftInfo::isEditable},
    {.key = "performance=", .name = "performance", .text = &AircraftInfo::performance, .hasLines = true},
}};

namespace {

using Fields = std::span<const InfoField>;

// --- the lines of the file

struct Line {
    std::string_view text, end; // end: CR LF, LF, CR, or nothing in the last line
};

Line TakeLine(std::string_view& rest) {
    const std::size_t length = std::min(rest.find_first_of("\r\n"), rest.size());
    Line line{rest.substr(0, length), {}};
    rest.remove_prefix(length);
    line.end = rest.substr(0, rest.starts_with("\r\n") ? 2 : 1);
    rest.remove_prefix(line.end.size());
    return line;
}

// How a new line ends: as all others do, or with CR LF where they differ.
std::string_view LineEndOf(std::string_view bytes) {
    std::set<std::string_view> ends;
    while (!bytes.empty())
        ends.insert(TakeLine(bytes).end);
    ends.erase("");
    return ends.size() == 1 ? *ends.begin() : "\r\n";
}

// Knows which fields the lines belong to that it is shown one after the other.
class SectionReader {
  public:
    // True when the line begins a section.
    bool IsHeader(const Line& line) {
        const std::string_view text = line.text;
        // An indented header begins no section that is edited, but what follows it is another's.
        if (!text.substr(std::min(text.find_first_not_of(" \t"), text.size())).starts_with("["))
            return false;
        fields = {};
        if (!hasConfiguration && (StartsWithNoCase(text, "[fltsim.") || StartsWithNoCase(text, "[fltsim]"))) {
            hasConfiguration = true;
            fields = ConfigurationFields;
        } else if (!hasGeneral && StartsWithNoCase(text, "[general]")) {
            hasGeneral = true;
            fields = GeneralFields;
        }
        return true;
    }
    // The managed field of this section that the line sets; none for any other line.
    const InfoField* FieldOf(const Line& line) const {
        const auto found = std::find_if(fields.begin(), fields.end(), [&](const InfoField& field) {
            return StartsWithNoCase(line.text, field.key);
        });
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

std::string ValueIn(const Line& line, const InfoField& field) {
    std::string value(Trim(FromCodePage(line.text.substr(field.key.size()))));
    return field.hasLines ? EscapeConfigText(value, true) : value;
}

// 1 and "1" are on, 0 and what is no number are off.
bool IsOn(std::string_view value) {
    const std::size_t first = value.find_first_not_of("\"0");
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

void TakeValue(const Line& line, const InfoField& field, AircraftInfo& info) {
    if (field.flag)
        info.*field.flag = IsOn(ValueIn(line, field));
    else
        info.*field.text = ValueIn(line, field);
}

bool HasValueOf(const Line& line, const InfoField& field, const AircraftInfo& info) {
    AircraftInfo read;
    TakeValue(line, field, read);
    return field.flag ? read.*field.flag == info.*field.flag : read.*field.text == info.*field.text;
}

// The line that counts of each field that the file has.
struct ManagedLines {
    std::map<const InfoField*, Line> first;
    bool hasConfiguration = false;
};

ManagedLines FindManagedLines(std::string_view bytes) {
    ManagedLines found;
    SectionReader sections;
    while (!bytes.empty()) {
        const Line line = TakeLine(bytes);
        const InfoField* field = sections.IsHeader(line) ? nullptr : sections.FieldOf(line);
        if (field)
            found.first.emplace(field, line);
    }
    found.hasConfiguration = sections.HasConfiguration();
    return found;
}

// --- the new file

class Rewriter {
  public:
    Rewriter(const AircraftInfo& newInfo, std::string_view before)
        : info(newInfo), lineEnd(LineEndOf(before)), old(FindManagedLines(before)) {}

    void Keep(const Line& line) {
        bytes.append(line.text).append(line.end);
        if (line.text.find_first_not_of(" \t") != std::string_view::npos)
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
        bytes.append("[General]").append(lineEnd);
        lastText = bytes.size();
        EndSection(GeneralFields);
    }
    std::string Take() { return std::move(bytes); }

  private:
    // A value that is not changed stays as it is spelt: there may be a mark in it that would read back as another.
    std::string LinesFor(Fields fields) const {
        std::string lines;
        for (const InfoField& field : fields) {
            const std::string value = ValueFor(field, info);
            if (value.empty())
                continue;
            const auto line = old.first.find(&field);
            if (line != old.first.end() && HasValueOf(line->second, field, info))
                lines.append(line->second.text).append(lineEnd);
            else if (const auto encoded = ToCodePage(value))
                lines.append(field.key).append(*encoded).append(lineEnd);
        }
        return lines;
    }
    void EndLastLine() {
        if (!bytes.empty() && !bytes.ends_with('\n') && !bytes.ends_with('\r'))
            bytes += lineEnd;
        lastText = bytes.size();
    }

    const AircraftInfo& info;
    const std::string_view lineEnd;
    const ManagedLines old;
    std::string bytes;
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
    constexpr std::pair<std::string_view, std::string_view> marks[] = {
        {"\\n", "\r\n"}, {"\\t", "\t"}, {"\\s", ";"}};
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

ConfigInfo ReadAircraftInfo(std::string_view bytes) {
    const ManagedLines found = FindManagedLines(bytes);
    ConfigInfo result;
    for (const auto& [field, line] : found.first)
        TakeValue(line, *field, result.info);
    result.hasConfiguration = found.hasConfiguration;
    return result;
}

std::string WithAircraftInfo(std::string_view bytes, const AircraftInfo& info) {
    Rewriter rewriter(info, bytes);
    SectionReader sections;
    while (!bytes.empty()) {
        const Line line = TakeLine(bytes);
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
