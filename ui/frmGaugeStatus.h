// The result of a gauge cross-check: frmInstallStatus of an installed package, frmImportStatus while an aircraft is
// imported.
#pragma once

#include <QDialog>

#include <memory>
#include <string>

namespace Ui {
class frmGaugeStatus;
}

namespace korvadex {

class frmGaugeStatus : public QDialog {
    Q_OBJECT

  public:
    // The names of the window and of its text box.
    frmGaugeStatus(const char* name, const char* textName, const std::string& text, QWidget* parent);
    ~frmGaugeStatus() override;

  private:
    std::unique_ptr<Ui::frmGaugeStatus> ui;
};

} // namespace korvadex
