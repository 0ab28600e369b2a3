#include "package/erase_staging.h"

#include "package/classification.h"
#include "package/config_readers.h"
#include "package/file_primitives.h"
#include "package/sound_names.h"

#include <initializer_list>
#include <optional>

namespace korvadex {

namespace {

const char* QuestionFor(StagingPart part) {
    switch (part) {
    case StagingPart::Panel:
        return "Are you sure you want to erase the panel components from the staging directory?";
    case StagingPart::Aircraft:
        return "Are you sure you want to erase the aircraft body components (aircraft, model, texture, "
               "kneeboard text) from the staging directory?";
    case StagingPart::Sound:
        break;
    }
    return "Are you sure you want to erase the sound components from the staging directory?  "
           "(Please note that some sounds are embedded in gauges.  "
           "If so they will not be removed until you remove the panel.)";
}

// One look at Staging; what to delete is known before the first file goes, as the configurations that tell go
// too.
class Eraser {
  public:
    Eraser(CommandContext& command, const Tree& staging) : context(command), tree(staging) {}

    // None, after a message, when it cannot be told.
    std::optional<std::vector<FileEntry>> FilesOf(StagingPart part) {
        switch (part) {
        case StagingPart::Panel:
            if (!ReadPanelConfigs() || !ReadSoundConfigs())
                return std::nullopt;
            AddGroups({Panel, Gauges});
            AddGaugeSounds();
            break;
        case StagingPart::Aircraft:
            if (!ReadPanelConfigs()) // a bitmap is the panel's or a texture
                return std::nullopt;
            AddGroups({Aircraft, Model, Texture});
            Add(CollectFiles(tree, "diz", FileMode::Extension, Unlimited));
            break;
        case StagingPart::Sound:
            AddGroups({Sound});
            break;
        }
        return std::move(found);
    }

  private:
    void Add(const FileList& list) { found.insert(found.end(), list.entries.begin(), list.entries.end()); }

    void AddGroups(std::initializer_list<Group> groups) {
        for (const Group group : groups)
            Add(CollectGroup(tree, group, bitmapNames, Unlimited));
    }

    void AddGaugeSounds() {
        for (const auto& file : CollectFiles(tree, "wav", FileMode::Extension, Unlimited).entries)
            if (IsGaugeSound(file.key, soundLines))
                found.push_back(file);
    }

    bool ReadPanelConfigs() {
        for (const char* name : {"panel.cfg", "oldpanel.cfg"})
            for (const auto& file : CollectFiles(tree, name, FileMode::Name, Unlimited).entries)
                if (const auto status = ReadPanelBitmapNames(context.files, file.path, bitmapNames); !status)
                    return Refuse(file.path, status);
        return true;
    }

    bool ReadSoundConfigs() {
        for (const auto& file : CollectFiles(tree, "sound.cfg", FileMode::Name, Unlimited).entries) {
            const auto lines = ReadSoundLines(context.files, file.path);
            if (!lines)
                return Refuse(file.path, lines.status());
            soundLines.insert(soundLines.end(), lines->begin(), lines->end());
        }
        return true;
    }

    bool Refuse(const std::string& path, const Status& status) {
        context.user.Tell("The file " + path + " could not be read (" + DescribeFault(status) +
                              ").  Nothing was deleted.",
                          MessageIcon::Exclamation);
        return false;
    }

    CommandContext& context;
    const Tree& tree;
    PanelBitmapNames bitmapNames;
    std::vector<std::string> soundLines;
    std::vector<FileEntry> found;
};

} // namespace

bool ErasePartOfStaging(CommandContext& context, StagingPart part) {
    if (!context.user.AskYesNo(QuestionFor(part)))
        return false;
    const Tree tree = WalkTree(context.files, context.locations.StagingDir, WalkFor::Search);
    if (!tree.unreadable.empty()) {
        context.user.Tell("The directory " + tree.unreadable.front() + " could not be read.  Nothing was deleted.",
                          MessageIcon::Exclamation);
        return false;
    }
    const auto found = Eraser(context, tree).FilesOf(part);
    if (!found)
        return false;
    if (found->empty()) {
        context.user.Tell("Staging holds nothing of that kind.  Nothing was deleted.");
        return true;
    }
    std::vector<std::string> remaining;
    for (const auto& file : *found) {
        if (auto explained = DeleteOrExplain(context.files, file.path); !explained.empty())
            remaining.push_back(std::move(explained));
    }

    if (part == StagingPart::Panel)
        context.user.Tell(
            "There may be images of the panel remaining because there is no way of knowing what an image is "
            "associated with.  Check the Images tab and remove any that are unwanted.",
            MessageIcon::Information);
    if (part == StagingPart::Aircraft)
        context.user.Tell(
            "There may be images of the aircraft remaining because there is no way of knowing what an image is "
            "associated with.  Check the Images tab and remove any that are unwanted.",
            MessageIcon::Information);
    TellDeleted(context, remaining);
    return true;
}

} // namespace korvadex
