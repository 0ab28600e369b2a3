// The collection beside the form: a tree of categories and packages, with a filter and an order.
#pragma once

#include "app/collection.h"
#include "app/commands.h"
#include "ui/package_menu.h"

#include <QPersistentModelIndex>
#include <QWidget>

#include <set>
#include <string>
#include <vector>

class QComboBox;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QMenu;
class QTreeView;

namespace korvadex {

class CollectionModel;

class CollectionPanel : public QWidget {
    Q_OBJECT

  public:
    explicit CollectionPanel(QWidget* parent = nullptr);

    // The collection, which lives as long as this, and the package that the form shows. On the Staging side the keys
    // only move about: Enter or a click goes to the package.
    void Show(const Collection& collection, const PackageRef& shown, bool isHangarSide);
    // What has become known meanwhile.
    void Refresh();
    void FocusFilter();
    // A selection is handed on in a moment; this does it now, before anything else works on what is shown.
    void Settle();

    CanWorkOn canWork; // for its menu; without it all can

  signals:
    void PackageChosen(const PackageRef& package);
    // An entry of the menus, or "cmdExplore", for the package.
    void CommandChosen(const PackageRef& package, const char* entry);
    // One of PackageCommands, for at least one package, in the order shown.
    void CommandGiven(const PackageCommand& command, const std::vector<PackageRef>& packages);
    void MoveChosen(const std::vector<PackageRef>& packages, const std::string& category);
    void RenameChosen(const std::string& category);
    void NewCategoryChosen();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // False when the key is none of PackageCommands, or nothing is selected.
    bool GiveByKey(const QKeyEvent& pressed, bool isOnlyAsked);
    bool PressTreeKey(int key);
    bool PressFilterKey(int key);
    void Arrange();
    void ShowCount();
    void Expand();
    void Follow();
    void TakeSelection();
    // The packages that are selected, in the order shown; those in a category that is folded up are not among them.
    std::vector<PackageRef> Selected() const;
    // The package that is selected alone; none when there are several, or a category.
    PackageRef SelectedAlone() const;
    void Rename();
    void SelectPackagesOf(const std::string& category);
    void ShowMenu(const QPoint& at);
    void AddEntriesOfOne(QMenu& menu, const CollectionPackage& package);
    void AddEntriesOfMany(QMenu& menu, const std::vector<PackageRef>& packages);
    void AddEntriesOfCategory(QMenu& menu, const std::string& category);
    void AddTargets(QMenu& menu, const std::vector<PackageRef>& packages);

    QLineEdit* txtFilter;
    QComboBox* cboOrder;
    QLabel* lblCount;
    QTreeView* tree;
    CollectionModel* model;
    const Collection* collection = nullptr;
    PackageRef shown;
    int shownRevision = -1;
    std::set<std::string> collapsed; // categories
    bool isArranging = false;        // what changes in the tree is not of the user's doing
    bool isHangarSide = true, isChoicePending = false;
    bool isFollowed = false; // what is shown was selected since
};

} // namespace korvadex
