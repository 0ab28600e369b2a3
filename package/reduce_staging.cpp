#include "package/reduce_staging.h"

#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/pictures.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <set>
#include <utility>

namespace korvadex {

namespace {

// The directory that a configuration's value stands for: "" -> texture, "red" -> texture.red,
// "\red" -> texture\red.
std::string DirectoryFor(const std::string& word, const std::string& value) {
    if (value.empty())
        return word;
    return value.starts_with("\\") ? word + value : word + "." + value;
}

struct Kind {
    const char *word, *caption;
    std::string Configuration::*value;
};
constexpr Kind Kinds[] = {{"texture", "Texture", &Configuration::texture},
                          {"model", "Model", &Configuration::model},
                          {"panel", "Panel", &Configuration::panel},
                          {"sound", "Sound", &Configuration::sound}};

// FindSavedDirectory compares the ending alone (oldpanel.1 ends like panel.1): only a whole name is acted on.
// The one beside the aircraft.cfg is meant; elsewhere it must be the only one of its name, as among several
// there may be another add-on's.
std::string FindWholeName(DirectoryList saved, const std::string& name, const std::string& cfgPath) {
    std::vector<std::string> hits;
    for (;;) {
        std::string hit = FindSavedDirectory(saved, name);
        if (hit.empty())
            break;
        if (EqualNoCase(hit, ParentDirectory(cfgPath) + name))
            return hit;
        std::erase(saved.paths, hit);
        if (EqualNoCase(LastPathComponent(hit), name))
            hits.push_back(std::move(hit));
    }
    return hits.size() == 1 ? hits.front() : "";
}

// True for every directory that the configuration's value may stand for: texture.red, texture\red.
bool IsNamed(const std::string& directory, const Kind& kind, const Configuration& configuration) {
    return EndsWithNoCase(directory, "\\" + DirectoryFor(kind.word, configuration.*kind.value));
}

// The kept configuration's directory of a kind; the plain one where it has none of its own.
std::string DirectoryOf(const DirectoryList& saved, const Kind& kind, const std::string& cfgPath,
                        const Configuration& configuration) {
    const std::string own = FindWholeName(saved, DirectoryFor(kind.word, configuration.*kind.value), cfgPath);
    return own.empty() ? FindWholeName(saved, kind.word, cfgPath) : own;
}

// The name of an aircraft for comparison: blanks and "_" are the same in the simulator.
std::string Folded(std::string_view name) {
    return FoldCase(UnderscoresToSpaces(name));
}

// Follows the aliases of the kept panel and sound to other directories of the same aircraft.
class OwnAliases {
  public:
    OwnAliases(CommandContext& command, const DirectoryList& savedDirectories, const std::string& config)
        : context(command), saved(savedDirectories), cfgPath(config) {
        own.insert(Folded(WithoutBackslash(LastPathComponent(ParentDirectory(cfgPath)))));
        own.insert(Folded(ReadImportName(context.files, context.locations)));
    }

    void Follow(const Configuration& kept) {
        for (const Kind& kind : Kinds) {
            if (kind.value == &Configuration::panel || kind.value == &Configuration::sound)
                Follow(kind, DirectoryOf(saved, kind, cfgPath, kept));
        }
    }

    std::vector<std::string> used; // directories that an alias leads to
    // Files that hold such an alias: with the kept configuration in the plain directory it would lead to itself.
    std::vector<std::string> stubs;

  private:
    void Follow(const Kind& kind, std::string directory) {
        const std::string file = std::string("\\") + kind.word + ".cfg";
        while (!directory.empty()) {
            const std::string config = directory + file;
            const std::string alias = AliasIn(kind, config);
            const std::string lender = FindWholeName(saved, LastPathComponent(alias), cfgPath);
            const std::string aircraft = LastPathComponent(WithoutBackslash(ParentDirectory(alias)));
            if (alias.empty() || lender.empty() || EqualNoCase(lender, directory) || IsOther(aircraft) ||
                std::ranges::find(used, lender) != used.end())
                return;
            used.push_back(lender);
            const auto lent = context.files.Info(lender + file);
            if (own.contains(Folded(aircraft)) && lent && lent->kind == EntryKind::File)
                stubs.push_back(config);
            directory = lender;
        }
    }

    std::string AliasIn(const Kind& kind, const std::string& config) const {
        LoadedPackage read;
        const bool isPanel = kind.value == &Configuration::panel;
        (isPanel ? ReadPanelAlias : ReadSoundAlias)(context.files, config, read);
        return isPanel ? read.PackagePanelAlias : read.PackageSoundAlias;
    }

    // An archive need not tell the name of its aircraft; one that is in the Hangar or in the simulator is another.
    bool IsOther(const std::string& aircraft) const {
        if (own.contains(Folded(aircraft)))
            return false;
        for (const auto& name : {aircraft, UnderscoresToSpaces(aircraft), SpacesToUnderscores(aircraft)}) {
            if (!FindSimAircraftDirectory(context.files, context.locations, name).empty())
                return true;
            for (const auto& category : SubdirectoryNames(context.files, context.locations.HangarDir))
                if (HasSubdirectory(context.files, context.locations.HangarDir + category + "\\", name))
                    return true;
        }
        return false;
    }

    CommandContext& context;
    const DirectoryList& saved;
    const std::string cfgPath;
    std::set<std::string> own; // names of the aircraft itself
};

// Emptying a directory must take nothing that the kept configuration needs: not its file, not its
// directories.
bool HoldsWhatIsKept(const DirectoryList& saved, const std::string& directory, const std::string& cfgPath,
                     const Configuration& kept, const std::vector<std::string>& used) {
    const std::string place = AddBackslash(directory);
    const auto isNamed = [&](const std::string& path) {
        return std::ranges::any_of(Kinds, [&](const Kind& kind) { return IsNamed(path, kind, kept); });
    };
    return IsAtOrBelow(cfgPath, place) ||
           std::ranges::any_of(used, [&](const auto& path) { return IsAtOrBelow(path, place); }) ||
           std::ranges::any_of(saved.paths,
                               [&](const std::string& path) { return IsAtOrBelow(path, place) && isNamed(path); });
}

// The kept configuration has a directory of its own; without it, the plain one is what it will use.
bool HasOwnDirectory(const DirectoryList& saved, const Kind& kind, const Configuration& kept) {
    return std::ranges::any_of(saved.paths, [&](const std::string& path) { return IsNamed(path, kind, kept); });
}

// The words that tell a configuration from the others: those of its texture and of its title alone.
std::set<std::string> OwnWords(const std::vector<Configuration>& configurations, std::size_t row) {
    constexpr std::size_t shortest = 3; // "1" is in too many names
    const auto words = [](const Configuration& configuration) {
        std::set<std::string> found;
        std::string word;
        for (const char c : FoldCase(configuration.texture + " " + configuration.title) + " ") {
            if (c != ' ' && c != '\\' && std::string_view("_-.,()\"").find(c) == std::string_view::npos)
                word += c;
            else if (word.size() >= shortest)
                found.insert(std::exchange(word, ""));
            else
                word.clear();
        }
        return found;
    };
    auto own = words(configurations[row]);
    for (std::size_t other = 0; other < configurations.size(); ++other)
        for (const auto& word : other == row ? std::set<std::string>{} : words(configurations[other]))
            own.erase(word);
    return own;
}

// The first picture in the configuration's directories, or one with a word of its own in the name.
std::string PictureOf(const std::vector<std::string>& pictures, const DirectoryList& saved, const std::string& cfgPath,
                      const std::vector<Configuration>& configurations, std::size_t row) {
    for (const Kind& kind : Kinds) {
        const std::string directory =
            FindWholeName(saved, DirectoryFor(kind.word, configurations[row].*kind.value), cfgPath);
        for (const auto& picture : pictures)
            if (!directory.empty() && IsAtOrBelow(picture, directory + "\\"))
                return picture;
    }
    for (const auto& word : OwnWords(configurations, row))
        for (const auto& picture : pictures)
            if (FoldCase(LastPathComponent(picture)).find(word) != std::string::npos)
                return picture;
    return "";
}

} // namespace

std::string FindSavedDirectory(const DirectoryList& saved, std::string_view ending) {
    for (const auto& path : saved.paths) {
        if (path.empty())
            break;
        if (EndsWithNoCase(LastPathComponent(path), ending))
            return path;
    }
    return "";
}

std::vector<ConfigurationRow> ConfigurationRows(const Tree& tree, const std::string& cfgPath,
                                                const std::vector<Configuration>& configurations) {
    const DirectoryList saved{.paths = tree.directories};
    std::vector<FileEntry> images;
    for (const char* extension : {"jpg", "gif"})
        std::ranges::copy_if(tree.files, std::back_inserter(images), [&](const FileEntry& file) {
            return file.info.kind == EntryKind::File && MatchesPattern(file.key, extension, FileMode::Extension);
        });
    const auto pictures = ListPictures(images);
    std::vector<ConfigurationRow> rows;
    for (std::size_t row = 0; row < configurations.size(); ++row) {
        const Configuration& configuration = configurations[row];
        std::string detail;
        for (const Kind& kind : Kinds)
            if (const std::string& value = configuration.*kind.value; !value.empty())
                detail += (detail.empty() ? "" : ",  ") + std::string(kind.caption) + ": " + value;
        rows.push_back({configuration.title + "  (" + configuration.section + ")", detail,
                        PictureOf(pictures, saved, cfgPath, configurations, row)});
    }
    return rows;
}

Reduction::Reduction(CommandContext& command, const Tree& tree, const std::string& cfgPath,
                     const std::vector<Configuration>& configurations, std::size_t chosen)
    : context(command) {
    const DirectoryList saved{.paths = tree.directories};
    const Configuration& kept = configurations[chosen];
    OwnAliases aliases(context, saved, cfgPath);
    aliases.Follow(kept);
    files = aliases.stubs;
    for (std::size_t row = 0; row < configurations.size(); ++row) {
        for (const Kind& kind : Kinds) {
            const std::string& value = configurations[row].*kind.value;
            if (EqualNoCase(value, kept.*kind.value))
                continue; // the kept one itself, or shared with it
            if (value.empty() && !HasOwnDirectory(saved, kind, kept))
                continue;
            const std::string directory = FindWholeName(saved, DirectoryFor(kind.word, value), cfgPath);
            if (directory.empty())
                continue;
            if (kind.value == &Configuration::panel && value.empty()) { // its gauges and bitmaps may be shared
                if (std::ranges::find(aliases.used, directory) == aliases.used.end())
                    files.push_back(directory + "\\panel.cfg");
            } else if (!HoldsWhatIsKept(saved, directory, cfgPath, kept, aliases.used)) {
                directories.push_back(directory);
            }
        }
    }
}

bool Reduction::SetAside() {
    const auto move = [&](const std::string& path, bool isDirectory) -> Status {
        if (context.files.Info(path).fault() == FileFault::NotFound)
            return {}; // named twice, or with the directory that it lies in
        const auto scratch = MakeScratchName(context.files, context.locations, path);
        Status status = scratch.status();
        if (status)
            status = context.files.Rename(path, *scratch);
        if (status)
            moved.push_back({path, *scratch, isDirectory});
        else if (scratch)
            ReleaseScratch(context.files, *scratch);
        return {status.fault, path, status.nativeCode};
    };
    Status status;
    for (const auto& directory : directories)
        if (status)
            status = move(directory, true);
    for (const auto& file : files)
        if (status)
            status = move(file, false);
    if (status)
        return true;
    PutBack();
    context.user.Tell(
        status.path + " belongs to a configuration that is not kept, and could not be removed (" +
            DescribeFault(status) +
            ").  Nothing was changed.  Please close the programs that use its files, press F5 and choose again.",
        MessageIcon::Exclamation);
    return false;
}

void Reduction::PutBack() {
    for (auto entry = moved.rbegin(); entry != moved.rend(); ++entry) {
        if (context.files.Rename(entry->scratch, entry->path))
            ReleaseScratch(context.files, entry->scratch);
        else
            context.user.Tell(entry->path + " could not be put back to its place.  It is now called " + entry->scratch +
                                  "\r\n\r\nPlease move it back before Korvadex is started again.",
                              MessageIcon::Critical);
    }
    moved.clear();
}

void Reduction::Discard() {
    for (auto entry = moved.rbegin(); entry != moved.rend(); ++entry) {
        if (entry->isDirectory)
            static_cast<void>(context.files.CreateDirectory(entry->path));
        ReleaseScratch(context.files, entry->scratch);
    }
    moved.clear();
}

} // namespace korvadex
