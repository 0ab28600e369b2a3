#include "package/load_package.h"

#include "package/aircraft_cfg.h"
#include "package/classification.h"
#include "package/config_readers.h"
#include "package/duplicates.h"
#include "package/file_primitives.h"
#include "package/pictures.h"
#include "platform/windows_path.h"

#include <algorithm>
#include <optional>

namespace korvadex {

namespace {

std::vector<FileEntry>& FilesOf(LoadedPackage& package, Group group) {
    return package.ComponentFiles[static_cast<std::size_t>(group)];
}

// One load from beginning to end; the groups are filled in the order that their readers need.
class Loader {
  public:
    Loader(CommandContext& commandContext, LoadedPackage& loaded, ChoiceQuestion choiceQuestion)
        : context(commandContext), package(loaded), question(choiceQuestion) {}

    LoadOutcome Run();

  private:
    std::vector<FileEntry> Collect(Group group);
    std::vector<FileEntry> CollectNames(std::initializer_list<std::string_view> names);
    void FillComponentList(Group group);
    std::vector<std::string> FindTwins();
    std::vector<FileEntry> TakeCollected(Group group);
    void ReadPanelConfigs();
    void ReadSoundConfigs();
    void ReadMarker();
    LoadOutcome SettleConfiguration();
    void LoadAircraft();
    void RefreshInfo(const std::string& path);
    void WarnOfExecutables();
    void NoteCut(ListCut cut);
    void SetTexts();

    CommandContext& context;
    LoadedPackage& package;
    const ChoiceQuestion question;
    bool settles = false;                 // duplicate names in Staging
    std::optional<std::string> keptTitle; // of the configuration that was kept just now
    DuplicateChoice choice;
    bool arePanelConfigsRead = false;
    std::array<std::optional<std::vector<FileEntry>>, GroupCount> collected; // as long as the tree is as it was
};

void Loader::NoteCut(ListCut cut) {
    if (package.cut == ListCut::None)
        package.cut = cut;
}

std::vector<FileEntry> Loader::Collect(Group group) {
    FileList list = CollectGroup(package.tree, group, package.panelBitmapNames, context.limits);
    NoteCut(list.cut);
    SortByName(list.entries);
    return std::move(list.entries);
}

std::vector<FileEntry> Loader::CollectNames(std::initializer_list<std::string_view> names) {
    std::vector<FileEntry> found;
    for (const auto name : names) {
        for (auto& file : CollectFiles(package.tree, name, FileMode::Name, context.limits).entries)
            found.push_back(std::move(file));
    }
    return found;
}

std::vector<FileEntry> Loader::TakeCollected(Group group) {
    auto& files = collected[static_cast<std::size_t>(group)];
    return files ? std::move(*files) : Collect(group);
}

void Loader::FillComponentList(Group group) {
    auto files = TakeCollected(group);
    bool isChanged = false;
    if (!package.isChoiceOpen && question != ChoiceQuestion::AsItIs)
        isChanged = SettleDocuments(context, package.isStaging, files, package.tree);
    if (settles)
        isChanged = SettleStagingDuplicates(context, choice, files, package.tree) || isChanged;
    if (isChanged)
        collected = {};
    FilesOf(package, group) = std::move(files);
}

// Before anything is renamed in what may turn out to be no package at all.
std::vector<std::string> Loader::FindTwins() {
    ReadPanelConfigs();
    for (int group = 0; group < GroupCount; ++group) {
        auto& files = collected[static_cast<std::size_t>(group)].emplace(Collect(static_cast<Group>(group)));
        if (auto twins = FilesOfOneName(files); !twins.empty())
            return twins;
    }
    return {};
}

// What the configurations name counts only after it is settled which of them stay.
void Loader::ReadPanelConfigs() {
    if (arePanelConfigsRead)
        return;
    arePanelConfigsRead = true;
    auto configs = CollectNames({"panel.cfg", "oldpanel.cfg"});
    if (settles) {
        SortByName(configs);
        SettleStagingDuplicates(context, choice, configs, package.tree);
    }
    for (const auto& config : configs)
        ReadPanelAlias(context.files, config.path, package);
}

void Loader::ReadSoundConfigs() {
    for (const auto& file : FilesOf(package, Sound)) {
        if (file.key == "sound.cfg" || file.key == "oldsound.cfg")
            ReadSoundAlias(context.files, file.path, package);
    }
}

void Loader::ReadMarker() {
    for (const auto& marker : CollectNames({"kx_compression.txt"}))
        ReadCompressionMarker(context.files, marker.path, package);
}

// Before anything else is touched: what the configurations that go have in common with the one that stays is
// neither a duplicate nor to be lost with them.
LoadOutcome Loader::SettleConfiguration() {
    const auto configs = CollectNames({"aircraft.cfg"});
    if (configs.empty())
        return {};
    const AircraftCfg cfg = ReadAircraftCfg(context.files, configs.front().path);
    const std::size_t count = ReadConfigurations(cfg).size();
    const bool isSettled = cfg.read && (count == 0 || (count == 1 && cfg.title != MultipleTitle));
    if (configs.size() == 1 && isSettled)
        return {};
    package.isChoiceOpen = true;
    if (configs.size() > 1 || !cfg.read || question != ChoiceQuestion::Ask)
        return {};
    const auto kept = ChooseConfiguration(context, cfg, package.tree);
    if (!kept)
        return {};
    package.isChoiceOpen = false;
    package.tree = WalkTree(context.files, package.path);
    keptTitle = kept->title;
    return {.isConfigurationChosen = kept->wasAsked, .twins = {}};
}

// Fills the Aircraft group and reads its aircraft.cfg.
void Loader::LoadAircraft() {
    FillComponentList(Aircraft);
    const auto& listed = FilesOf(package, Aircraft);
    const auto file = std::ranges::find(listed, "aircraft.cfg", &FileEntry::key);
    if (file == listed.end())
        return;
    const std::string path = file->path;
    package.aircraftCfg = ReadAircraftCfg(context.files, path);
    const char* openTitle = package.aircraftCfg.read ? ChoiceOpenTitle : UnreadTitle;
    package.aircraftTitle = package.isChoiceOpen ? openTitle : keptTitle.value_or(package.aircraftCfg.title);
    if (settles && !keptTitle && package.aircraftCfg.title != MultipleTitle) {
        ClearVariationValues(context, package.aircraftCfg);
        RefreshInfo(path);
    }
}

void Loader::RefreshInfo(const std::string& path) {
    const auto info = context.files.Info(path);
    if (!info)
        return;
    for (auto* files : {&package.tree.files, &FilesOf(package, Aircraft)}) {
        for (auto& file : *files) {
            if (file.path == path)
                file.info = *info;
        }
    }
}

void Loader::WarnOfExecutables() {
    const FileList executables = CollectFiles(package.tree, "exe", FileMode::Extension, context.limits);
    if (!package.isStaging || executables.entries.empty() || question == ChoiceQuestion::Again)
        return;
    context.user.Tell(
        "An executable file was found in the Staging directory.  It may be an installation executable.  "
        "If it is, please execute it and install into MSFS as instructed.  "
        "Then select the 'Remove all from Staging option' to clear the Staging directory.  "
        "After this you can use the 'Import package from MSFS' option if you'd like to import the aircraft you've "
        "just installed.",
        MessageIcon::Information);
}

void Loader::SetTexts() {
    const auto text = [](const std::string& alias, bool isEmpty, const char* none, const char* original) {
        return !alias.empty() ? alias : std::string(isEmpty ? none : original);
    };
    package.panelText =
        text(package.PackagePanelAlias, FilesOf(package, Panel).empty(), "None  (No panel)", "None  (Original panel)");
    package.soundText =
        text(package.PackageSoundAlias, FilesOf(package, Sound).empty(), "None  (No sound)", "None  (Original sound)");
    package.pictures = ListPictures(FilesOf(package, Images));
}

LoadOutcome Loader::Run() {
    LoadOutcome outcome;
    package.tree = WalkTree(context.files, package.path);
    if (package.isStaging) {
        outcome = SettleConfiguration();
    } else {
        outcome.twins = FindTwins();
        if (!outcome.twins.empty())
            return outcome;
    }
    settles = package.isStaging && !package.isChoiceOpen && question != ChoiceQuestion::AsItIs;

    FillComponentList(Images);
    ReadMarker();
    LoadAircraft();
    FillComponentList(Model);
    ReadPanelConfigs();
    FillComponentList(Panel);
    FillComponentList(Sound);
    ReadSoundConfigs();
    for (const Group group : {Texture, Gauges, Documentation, Miscellaneous})
        FillComponentList(group);
    WarnOfExecutables();
    FillComponentList(Unrecognized);
    SetTexts();
    return outcome;
}

} // namespace

LoadOutcome LoadPackage(CommandContext& context, const PackageRef& ref, LoadedPackage& package,
                        ChoiceQuestion question) {
    package = LoadedPackage{};
    package.path = ref.Directory(context.locations);
    package.ref = ref;
    return Loader(context, package, question).Run();
}

LoadOutcome LoadStaging(CommandContext& context, LoadedPackage& package, ChoiceQuestion question) {
    package = LoadedPackage{};
    package.path = context.locations.StagingDir;
    package.isStaging = true;
    return Loader(context, package, question).Run();
}

bool HasChangedOnDisk(const FileSystem& files, const LoadedPackage& package) {
    const Tree now = WalkTree(files, package.path);
    return now.files != package.tree.files || now.directories != package.tree.directories ||
           now.unreadable != package.tree.unreadable;
}

bool HasSeveralAircraftCfg(const CommandContext& context) {
    return CollectFiles(WalkTree(context.files, context.locations.StagingDir), "aircraft.cfg", FileMode::Name,
                        context.limits)
               .entries.size() > 1;
}

void CheckSingleAircraftCfg(CommandContext& context) {
    const std::string& staging = context.locations.StagingDir;
    if (!HasSeveralAircraftCfg(context))
        return;
    context.launcher.OpenInFileManager(staging, WindowState::Minimised);
    context.user.Tell(
        "More than one aircraft configuration file (aircraft.cfg) was detected in the Staging Directory.  "
        "Korvadex can only handle one aircraft configuration file at a time.  "
        "Please remove the components for the other aircraft from the Staging directory so that only one is left and "
        "hit 'OK' to continue.  "
        "For your convenience a Minimized Windows Explorer session has been opened to the Staging directory.",
        MessageIcon::Exclamation);
    if (!HasSeveralAircraftCfg(context))
        return;
    if (context.user.AskYesNo("Korvadex cannot handle more than one aircraft.cfg in the Staging directory.  "
                              "Would you like to remove all files from the Staging directory?",
                              MessageIcon::Exclamation)) {
        if (const auto remaining = DeleteTree(context, staging); !remaining.empty())
            TellDeleted(context, remaining);
        return;
    }
    context.user.Tell(
        "Korvadex will now terminate since it cannot handle more than one aircraft.cfg file in the Staging directory",
        MessageIcon::Exclamation);
    throw ProgramEnd{};
}

} // namespace korvadex
