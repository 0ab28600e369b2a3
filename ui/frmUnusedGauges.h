// The gauges of the simulator that no aircraft uses, to pick some of them and delete them.
#pragma once

#include "sim/unused_gauges.h"
#include "ui/painting.h"

#include <QDialog>

#include <memory>
#include <vector>

namespace Ui {
class frmUnusedGauges;
}

namespace korvadex {

class frmUnusedGauges : public QDialog {
    Q_OBJECT

  public:
    frmUnusedGauges(const UnusedGaugesForm& form, QWidget* parent);
    ~frmUnusedGauges() override;

    // Stops the search while it runs.
    void reject() override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void Search();
    void ShowProgress(int value, int maximum);
    void Delete();
    void ShowGauges(const std::vector<UnusedGauge>& gauges);

    const UnusedGaugesForm form;
    std::unique_ptr<Ui::frmUnusedGauges> ui;
    Painting painting;
    bool isStarted = false;
    bool isSearching = false, isStopWanted = false;
};

} // namespace korvadex
