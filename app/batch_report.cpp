#include "app/batch_report.h"

#include "package/file_primitives.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <map>

namespace korvadex {

namespace {

bool IsPlain(const Turn& turn) {
    return turn.isDone && turn.notes.empty();
}

// A line for each sentence.
std::vector<std::string> LinesOf(const std::string& note) {
    std::vector<std::string> lines;
    for (std::size_t from = 0; from < note.size();) {
        const std::size_t end = std::min({note.find("\r\n", from), note.find("  ", from), note.size()});
        if (end > from)
            lines.push_back(note.substr(from, end - from));
        from = end + 2;
    }
    return lines;
}

class Report {
  public:
    Report(const std::vector<Turn>& all, const FileSystem& files, const Locations& locations)
        : turns(all), simAircraft(files, locations) {
        for (const Turn& turn : turns)
            ++categories[FoldCase(turn.package.name)];
    }

    template<class Wanted>
    void Add(const std::string& heading, Wanted isWanted) {
        if (std::ranges::none_of(turns, isWanted))
            return;
        lines.insert(lines.end(), {ListLine{}, ListLine{.text = " -->  " + heading}, ListLine{}});
        for (const Turn& turn : turns) {
            if (!isWanted(turn))
                continue;
            const bool isOnlyOne = categories[FoldCase(turn.package.name)] == 1;
            lines.push_back({.package = turn.package,
                             .isInstalled = simAircraft.Holds(turn.package.name),
                             .text = isOnlyOne || !turn.title.empty() ? turn.title : turn.package.Text()});
            for (const std::string& note : turn.notes)
                for (const std::string& line : LinesOf(note))
                    lines.push_back({.package = turn.package, .text = "        " + line});
        }
    }

    std::vector<ListLine> lines;

  private:
    const std::vector<Turn>& turns;
    const SimAircraft simAircraft;
    std::map<std::string, int> categories; // how many have a package of the name
};

} // namespace

std::string Counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string CountDone(const std::string& done, const std::vector<Turn>& turns, const std::string& what) {
    const auto count = std::ranges::count_if(turns, &Turn::isDone);
    return std::to_string(count) + " of " + Counted(turns.size(), what) +
           (count == 1 || turns.size() == 1 ? " was " : " were ") + done + ".";
}

Overview BuildReport(const std::string& caption, const std::string& headline, const std::string& done,
                     const std::vector<Turn>& turns, const FileSystem& files, const Locations& locations) {
    Report report(turns, files, locations);
    report.lines.push_back({.text = headline});
    report.Add("Not " + done, [](const Turn& turn) { return !turn.isDone; });
    const std::string heading = std::string(1, static_cast<char>(done[0] - 'a' + 'A')) + done.substr(1);
    report.Add(heading + ", with something to be said", [](const Turn& turn) { return turn.isDone && !IsPlain(turn); });
    report.Add(heading, IsPlain);
    return {caption, std::move(report.lines)};
}

void TellReport(UserDialogs& user, const std::string& headline, const std::string& ofTheOthers,
                const std::vector<Turn>& turns) {
    const bool isAllDone = std::ranges::all_of(turns, &Turn::isDone);
    if (std::ranges::all_of(turns, IsPlain))
        user.Tell("Done.");
    else if (isAllDone)
        user.Tell("Done.\r\n\r\nThere is something to be said about some of the packages, as shown in the list.",
                  MessageIcon::Information);
    else
        user.Tell(headline + "\r\n\r\n" + ofTheOthers + "  The list shows the reasons.", MessageIcon::Exclamation);
}

} // namespace korvadex
