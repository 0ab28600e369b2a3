#include "app/collection.h"

#include "media/info_text.h"
#include "package/aircraft_cfg.h"
#include "package/config_readers.h"
#include "package/filter_words.h"
#include "package/meg.h"
#include "package/name_list.h"
#include "platform/date_text.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <functional>
#include <map>
#include <span>

namespace korvadex {

namespace {

std::string WordsOf(const std::string& name, const AircraftCfg& cfg) {
    std::string words = name;
    const auto add = [&](const std::string& text) { words += text.empty() ? "" : "\n" + text; };
    for (const Configuration& configuration : ReadConfigurations(cfg))
        add(configuration.title);
    const AircraftInfo info = ReadAircraftInfo(cfg.text).info;
    for (const auto& fields :
         {std::span<const InfoField>(ConfigurationFields), std::span<const InfoField>(GeneralFields)})
        for (const InfoField& field : fields)
            if (field.text)
                add(info.*field.text);
    return FoldCase(words);
}

// Changes with every name, size and time in the directory.
std::size_t StateOf(const std::vector<DirectoryEntry>& listed) {
    std::string state;
    for (const DirectoryEntry& entry : listed)
        state += entry.name + "\n" + std::to_string(entry.info.size) + " " +
                 std::to_string(entry.info.time.time_since_epoch().count()) + "\n";
    return std::hash<std::string>()(state);
}

bool ComesBefore(const CollectionPackage& a, const CollectionPackage& b, CollectionOrder order) {
    switch (order) {
    case CollectionOrder::Installed:
        return a.isInstalled && !b.isInstalled;
    case CollectionOrder::Size:
        return a.facts.bytes > b.facts.bytes;
    case CollectionOrder::Added:
        return a.facts.added > b.facts.added;
    case CollectionOrder::Name:
        break;
    }
    return false; // as they are listed
}

} // namespace

std::string DescribeMarks(const CollectionPackage& package) {
    std::string marks = package.ref.name;
    marks += package.isInstalled ? ", installed in MSFS" : "";
    marks += package.facts.isCompressed ? ", compressed" : "";
    marks += package.facts.alias.empty() ? "" : ", uses " + package.facts.alias;
    marks += package.missingGauges.empty() ? "" : ", gauges are missing";
    return marks;
}

std::string DescribePackage(const CollectionPackage& package) {
    const PackageFacts& facts = package.facts;
    std::string text = package.ref.Text();
    const auto add = [&](const std::string& line) { text += "\r\n" + line; };
    if (!facts.title.empty() && facts.title != package.ref.name)
        add(facts.title);
    if (package.isInstalled)
        add("Installed in MSFS");
    if (facts.isRead)
        add(MegText(facts.bytes) + (facts.isCompressed ? " (compressed)" : ""));
    if (facts.isRead)
        add("Added " + ShortDateTime(facts.added));
    if (!facts.alias.empty())
        add("Uses " + facts.alias + " via alias");
    if (!package.missingGauges.empty())
        add("Gauges that were missing in MSFS at the last check: " + ListNames(package.missingGauges));
    return text;
}

void Collection::Take(const HangarListing& hangar) {
    if (hangar == taken)
        return;
    taken = hangar;
    ++revision;
    nextCategory = nextEntry = 0;
    std::map<std::string, Entry> known;
    for (Category& category : categories)
        for (Entry& entry : category.entries)
            known.emplace(entry.package.ref.Text(), std::move(entry));
    categories.clear();
    for (const HangarCategory& listed : hangar) {
        Category& category = categories.emplace_back(Category{listed.name, {}});
        for (const HangarPackage& package : listed.packages) {
            const PackageRef ref{listed.name, package.name};
            const auto found = known.find(ref.Text());
            Entry& entry = category.entries.emplace_back(found == known.end() ? Entry() : std::move(found->second));
            entry.package.ref = ref;
            entry.package.isInstalled = package.isInstalled;
            if (!package.isInstalled)
                entry.package.missingGauges.clear();
            if (entry.words.empty())
                entry.words = FoldCase(package.name);
        }
    }
}

void Collection::LookAgain() {
    nextCategory = nextEntry = 0;
    for (Category& category : categories)
        for (Entry& entry : category.entries)
            entry.isToBeSeen = true;
}

void Collection::Forget(const PackageRef& package) {
    nextCategory = nextEntry = 0;
    for (Category& category : categories)
        for (Entry& entry : category.entries)
            if (entry.package.ref == package) {
                entry.isToBeSeen = true;
                entry.seen = 0;
            }
}

bool Collection::ReadMore(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    for (; nextCategory < categories.size(); ++nextCategory, nextEntry = 0)
        for (auto& entries = categories[nextCategory].entries; nextEntry < entries.size(); ++nextEntry) {
            if (!entries[nextEntry].isToBeSeen)
                continue;
            if (std::chrono::steady_clock::now() >= end)
                return true;
            Look(entries[nextEntry]);
        }
    return false;
}

void Collection::Look(Entry& entry) {
    entry.isToBeSeen = false;
    const auto listed = files.List(entry.package.ref.Directory(locations));
    const std::size_t state = listed ? StateOf(*listed) : 0;
    if (listed && entry.seen == state)
        return;
    entry.seen = state;
    const PackageFacts before = entry.package.facts;
    const std::string words = entry.words;
    entry.package.facts = {};
    if (listed)
        Read(entry, *listed);
    if (entry.package.facts != before || entry.words != words)
        ++revision;
}

void Collection::Read(Entry& entry, const std::vector<DirectoryEntry>& listed) {
    const std::string directory = entry.package.ref.Directory(locations);
    PackageFacts& facts = entry.package.facts;
    facts.isRead = true;
    // No host tells when it was made. What changes in a package later changes the times of some of its directories
    // only.
    const auto own = files.Info(WithoutBackslash(directory));
    facts.added = own ? own->time : FileTime::max();
    for (const DirectoryEntry& each : listed)
        if (each.info.kind == EntryKind::Directory)
            facts.added = std::min(facts.added, each.info.time);
    LoadedPackage aliases;
    std::string cfgPath;
    for (const FileEntry& file : WalkTree(files, directory).files) {
        facts.bytes += file.info.size;
        if (file.key == "aircraft.cfg" && cfgPath.empty())
            cfgPath = file.path;
        else if (file.key == "panel.cfg")
            ReadPanelAlias(files, file.path, aliases);
        else if (file.key == "sound.cfg")
            ReadSoundAlias(files, file.path, aliases);
        else if (file.key == FoldCase(CompressionMarkerName))
            facts.isCompressed = true;
    }
    facts.alias = aliases.PackagePanelAlias.empty() ? aliases.PackageSoundAlias : aliases.PackagePanelAlias;
    const AircraftCfg cfg = cfgPath.empty() ? AircraftCfg() : ReadAircraftCfg(files, cfgPath);
    facts.title = cfg.title == MultipleTitle ? "" : cfg.title;
    entry.words = WordsOf(entry.package.ref.name, cfg);
}

void Collection::NoteMissingGauges(std::string_view name, const std::vector<std::string>& missing) {
    for (Category& category : categories)
        for (Entry& entry : category.entries)
            if (EqualNoCase(entry.package.ref.name, name) && entry.package.missingGauges != missing) {
                entry.package.missingGauges = missing;
                ++revision;
            }
}

CollectionView Collection::Arrange(std::string_view filter, CollectionOrder order) const {
    const FilterWords words(filter);
    CollectionView view;
    for (const Category& category : categories) {
        CollectionCategory shown{category.name, category.entries.size(), {}};
        for (const Entry& entry : category.entries)
            if (words.AreIn(entry.words))
                shown.packages.push_back(entry.package);
        if (order != CollectionOrder::Name)
            std::ranges::stable_sort(shown.packages,
                                     [&](const auto& a, const auto& b) { return ComesBefore(a, b, order); });
        if (words.IsEmpty() || !shown.packages.empty())
            view.push_back(std::move(shown));
    }
    return view;
}

} // namespace korvadex
