#include "ui/frmRename.h"

#include "ui/qt_text.h"
#include "ui_frmRename.h"

namespace korvadex {

frmRename::frmRename(const RenameForm& renameForm, QWidget* parent)
    : QDialog(parent), form(renameForm), ui(std::make_unique<Ui::frmRename>()) {
    ui->setupUi(this);
    ui->txtRenamePackageName->setText(ToQt(form.entry.packageName));
    ui->txtRenameAircraftTitle->setText(ToQt(form.entry.aircraftTitle));
    ui->txtRenameAircraftTitle->setEnabled(form.hasTitle);
    ui->lblRenameAircraftTitle->setEnabled(form.hasTitle);
    connect(ui->cmdAccept, &QPushButton::clicked, this, &frmRename::Accept);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    ui->txtRenamePackageName->setFocus();
    ui->txtRenamePackageName->selectAll();
}

frmRename::~frmRename() = default;

void frmRename::Accept() {
    if (form.accept({.packageName = FromQt(ui->txtRenamePackageName->text()),
                     .aircraftTitle = FromQt(ui->txtRenameAircraftTitle->text())}))
        accept();
}

} // namespace korvadex
