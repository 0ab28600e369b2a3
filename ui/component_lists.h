// The ten lists of a package's files, one for each component group, behind tabs.
#pragma once

#include "package/loaded_package.h"

#include <QTabWidget>

#include <array>
#include <optional>
#include <utility>
#include <vector>

class QListWidget;

namespace korvadex {

class ComponentLists : public QTabWidget {
    Q_OBJECT

  public:
    explicit ComponentLists(QWidget* parent = nullptr);

    // Fills all lists anew. A row keeps its place: position p of a list is position p of its group.
    void ShowFiles(const LoadedPackage& package);
    // Group and position, when exactly one file of the open list is selected.
    std::optional<std::pair<int, int>> SelectedFile() const;
    void ClearSelection();

  signals:
    // Another list, or another selection in it; not while they are filled.
    void SelectionChanged();
    // A double click or Enter on a file.
    void OpenRequested(int group, int position);
    void ShowInFolderRequested(int group, int position);
    // The Delete key or the menu; positions in ascending order, none when nothing is selected.
    void DeleteRequested(int group, const std::vector<int>& positions);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    bool PressKey(int group, int key);
    void ShowMenu(int group, const QPoint& at);
    // In ascending order.
    std::vector<int> SelectedPositions(int group) const;
    void DimEmptyTabs();

    std::array<QListWidget*, GroupCount> lstComponents{};
};

} // namespace korvadex
