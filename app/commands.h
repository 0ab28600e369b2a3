// Every command of the menus and the toolbar, in one table: the window builds both from it and starts what stands
// there.
#pragma once

#include "package/package_ref.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

class Program;
struct MainView;

enum class Side { Staging, Hangar };

// What has to be there for a command to do more than refuse, as far as it is known without a walk over the disk; each a
// bit. What a package holds is none of them: it may have come a moment ago.
enum Need : unsigned {
    NeedsNothing = 0,
    NeedsPackage = 1 << 0,      // one of the Hangar is selected
    NeedsInstalled = 1 << 1,    // and stands in the simulator
    NeedsNotInstalled = 1 << 2, // or does not
    NeedsShown = 1 << 3,        // that package, or Staging, is what the window shows
    NeedsHangarSide = 1 << 4,
    NeedsAnyPackage = 1 << 5, // in the Hangar
    NeedsStagedFiles = 1 << 6,
    NeedsPanelLender = 1 << 7, // held for a paste
    NeedsSoundLender = 1 << 8,
    NeedsQueued = 1 << 9, // an archive in the queue
};

// What not every command has.
struct CommandExtras {
    const char* separator = nullptr;         // the line above the entry
    std::optional<int> CommandCode{};        // its number in an Options menu
    const char* shortcut = "";               // "Ctrl+O": works while the entry's menu is visible
    const char* key = "";                    // of its button in the toolbar, which is also the name of the icon
    const char* toolTip = "";                // of the button
    bool hasButtonOnBothSides = false;       // although its menu has one side: the command goes there by itself
    std::string MainView::*object = nullptr; // stands behind the caption; there is nothing to do while it is empty
    bool MainView::*tick = nullptr;          // before the caption, while this is so
    // Opens a menu of its own with these, the first ten; there is nothing to choose while there are none.
    std::vector<std::string> MainView::*choices = nullptr;
    void (Program::*choose)(int) = nullptr; // by its position
    unsigned needs = NeedsNothing;
};

struct Command {
    constexpr Command(const char* inMenu, const char* text, void (Program::*starts)(), const CommandExtras& more = {})
        : entry(inMenu), caption(text), routine(starts), extras(more) {}

    const char* entry;
    const char* caption;
    void (Program::*routine)(); // none: there are only its choices
    CommandExtras extras;
};

struct Menu {
    const char* name;
    const char* caption;
    std::optional<Side> side; // that it belongs to; none: it is always visible
    std::span<const Command> commands;
};

// In their order.
std::span<const Menu> MainMenus();
// The buttons by their keys, in their order; "" is a separator.
std::span<const char* const> ToolbarKeys();

// What can be done to packages that are selected in a list.
struct PackageCommand {
    const char* entry;
    const char* caption;
    void (Program::*routine)(const std::vector<PackageRef>&);
    const char* shortcut = "";
    const char* separator = nullptr; // the line above the entry
    unsigned needs = NeedsNothing;   // of one of the packages at least
};
std::span<const PackageCommand> PackageCommands();
// For a list in which exactly one is selected.
const PackageCommand& RenameCommand();

// False when all that the command could do now is to refuse.
bool CanWork(const Command& command, const MainView& view);

// The command of this menu entry; an entry that does not exist is a broken promise (std::invalid_argument).
const Command& CommandOfEntry(std::string_view entry);
// What the button of this key starts on this side; nullptr when it does nothing there.
const Command* CommandOfKey(std::string_view key, Side side);

} // namespace korvadex
