// The result of the gauge cross-check of an installed package.
#pragma once

#include <QDialog>

#include <memory>
#include <string>

namespace Ui {
class frmInstallStatus;
}

namespace korvadex {

class frmInstallStatus : public QDialog {
    Q_OBJECT

  public:
    frmInstallStatus(const std::string& text, QWidget* parent);
    ~frmInstallStatus() override;

  private:
    std::unique_ptr<Ui::frmInstallStatus> ui;
};

} // namespace korvadex
