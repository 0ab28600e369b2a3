// The archives that wait for Staging: a list with the reasons of those that were left, and what can be done with it.
#pragma once

#include "app/archive_queue.h"

#include <QWidget>

#include <vector>

class QLabel;
class QMenu;
class QPushButton;
class QTreeWidget;

namespace korvadex {

class QueuePanel : public QWidget {
    Q_OBJECT

  public:
    explicit QueuePanel(QWidget* parent = nullptr);

    void Show(const std::vector<QueuedArchive>& archives);

  signals:
    void NextChosen();
    void SkipChosen();
    void TakeAllChosen();
    // Positions in the list that is shown, from 0.
    void TakeChosen(int row);
    void AddChosen(int row);
    void RemoveChosen(const std::vector<int>& rows);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::vector<int> Selected() const;
    void ShowReason();
    void ShowWhatCanWork();
    void TakeCurrent();
    void Remove();
    void ShowMenu(const QPoint& at);

    QLabel* lblQueue;
    QTreeWidget* list;
    QLabel* lblReason; // of the current row, for which the column is often too narrow
    QPushButton* cmdUnqueue;
    std::vector<QueuedArchive> shown;
    bool hasReasons = false;
};

} // namespace korvadex
