#include "ui/frmMSFSImport.h"

#include "ui/list_keys.h"
#include "ui/qt_text.h"
#include "ui_frmMSFSImport.h"

namespace korvadex {

frmMSFSImport::frmMSFSImport(const ImportForm& importForm, QWidget* parent)
    : QDialog(parent), form(importForm), ui(std::make_unique<Ui::frmMSFSImport>()) {
    ui->setupUi(this);
    for (const auto& name : form.names)
        ui->lstPackages->addItem(ToQt(name));
    if (form.names.empty())
        ui->lblPackages->setText("There is no aircraft in Flight Simulator that is not in the &Hangar.");
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmMSFSImport::Choose);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->lstPackages, &QListWidget::itemDoubleClicked, this, &frmMSFSImport::Choose);
    SelectByFirstKey(*ui->lstPackages);
    ui->lstPackages->setFocus();
}

frmMSFSImport::~frmMSFSImport() = default;

void frmMSFSImport::reject() {
    if (!isCopying)
        QDialog::reject();
}

void frmMSFSImport::Choose() {
    isCopying = true;
    const bool isDone = form.accept(ui->lstPackages->row(ui->lstPackages->selectedItems().value(0)));
    isCopying = false;
    if (isDone)
        accept();
}

} // namespace korvadex
