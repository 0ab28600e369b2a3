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
};

struct Command {
    constexpr Command(const char* inMenu, const char* text, void (Program::*starts)(), const CommandExtras& more = {})
        : entry(inMenu), caption(text), routine(starts), extras(more) {}

    const char* entry;
    const char* caption;
    void (Program::*routine)();
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
};
std::span<const PackageCommand> PackageCommands();

// The command of this menu entry; an entry that does not exist is a broken promise (std::invalid_argument).
const Command& CommandOfEntry(std::string_view entry);
// What the button of this key starts on this side; nullptr when it does nothing there.
const Command* CommandOfKey(std::string_view key, Side side);

} // namespace korvadex
