// What can be done to packages that are selected in a list: the entries of its menu, and its keys.
#pragma once

#include "app/commands.h"

#include <functional>
#include <vector>

class QAbstractScrollArea;
class QAction;
class QKeyEvent;
class QKeySequence;
class QMenu;
class QPoint;
class QString;

namespace korvadex {

// An entry whose key is only to be seen: the list handles its keys itself.
QAction* AddEntry(QMenu& menu, const char* name, const QString& caption, const QKeySequence& key);
// Whether a command can do more than refuse to work on these.
using CanWorkOn = std::function<bool(const PackageCommand&, const std::vector<PackageRef>&)>;
// PackageCommands for these packages; the chosen one is given when the menu has gone, as it may show windows of its
// own.
void AddPackageCommands(QMenu& menu, const std::vector<PackageRef>& packages, const CanWorkOn& canWork,
                        const std::function<void(const PackageCommand&)>& give);
// nullptr for other keys.
const PackageCommand* PackageCommandOf(const QKeyEvent& pressed);
// Opens the menu at a point of the list, which may have scrolled out of sight.
void OpenMenu(QMenu& menu, const QAbstractScrollArea& list, const QPoint& at);

} // namespace korvadex
