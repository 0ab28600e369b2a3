// The result of the gauge cross-check while an aircraft is imported from the simulator.
#pragma once

#include <QDialog>

#include <memory>
#include <string>

namespace Ui {
class frmImportStatus;
}

namespace korvadex {

class frmImportStatus : public QDialog {
    Q_OBJECT

  public:
    frmImportStatus(const std::string& text, QWidget* parent);
    ~frmImportStatus() override;

  private:
    std::unique_ptr<Ui::frmImportStatus> ui;
};

} // namespace korvadex
