#include "ui/frmInstallStatus.h"

#include "ui/qt_text.h"
#include "ui_frmInstallStatus.h"

namespace korvadex {

frmInstallStatus::frmInstallStatus(const std::string& text, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmInstallStatus>()) {
    ui->setupUi(this);
    ui->txtInstallStatus->setPlainText(LinesToQt(text));
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    ui->cmdOK->setFocus();
}

frmInstallStatus::~frmInstallStatus() = default;

} // namespace korvadex
