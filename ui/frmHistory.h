// The commands of the last time, to take them back, do them again and see their files.
#pragma once

#include "app/history_editor.h"

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class frmHistory;
}

namespace korvadex {

class frmHistory : public QDialog {
    Q_OBJECT

  public:
    // guard runs what it is given; false when the window is to close.
    using Guard = std::function<bool(const std::function<void()>&)>;
    frmHistory(HistoryEditor& history, Guard guard, QWidget* parent);
    ~frmHistory() override;

    void done(int result) override;

  private:
    void ShowCommands();
    void ShowSelected();
    void FocusList();
    void ShowFiles(int row);
    // Runs the deed, and shows what has come of it.
    void Do(const std::function<void()>& deed);
    void TakeLimits();
    int Row() const; // -1: none is selected

    HistoryEditor& history;
    const Guard guard;
    std::unique_ptr<Ui::frmHistory> ui;
    bool isBusy = false;
};

} // namespace korvadex
