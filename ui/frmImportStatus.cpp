#include "ui/frmImportStatus.h"

#include "ui/qt_text.h"
#include "ui_frmImportStatus.h"

namespace korvadex {

frmImportStatus::frmImportStatus(const std::string& text, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmImportStatus>()) {
    ui->setupUi(this);
    ui->txtImportStatus->setPlainText(LinesToQt(text));
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    ui->cmdOK->setFocus();
}

frmImportStatus::~frmImportStatus() = default;

} // namespace korvadex
