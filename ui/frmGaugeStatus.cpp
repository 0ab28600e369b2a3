#include "ui/frmGaugeStatus.h"

#include "ui/qt_text.h"
#include "ui_frmGaugeStatus.h"

namespace korvadex {

frmGaugeStatus::frmGaugeStatus(const char* name, const char* textName, const std::string& text, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmGaugeStatus>()) {
    ui->setupUi(this);
    setObjectName(name);
    ui->txtStatus->setObjectName(textName);
    ui->txtStatus->setPlainText(LinesToQt(text));
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    ui->cmdOK->setFocus();
}

frmGaugeStatus::~frmGaugeStatus() = default;

} // namespace korvadex
