#include "ui/frmAbout.h"

#include "ui_frmAbout.h"

#include <QIcon>

namespace korvadex {

QString VersionText() {
    return "Version " KORVADEX_VERSION;
}

frmAbout::frmAbout(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmAbout>()) {
    ui->setupUi(this);
    ui->lblVersion->setText(VersionText());
    ui->lblIcon->setPixmap(QIcon(":/icons/korvadex.svg").pixmap(QSize(64, 64), devicePixelRatioF()));
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

frmAbout::~frmAbout() = default;

} // namespace korvadex
