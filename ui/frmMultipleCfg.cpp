#include "ui/frmMultipleCfg.h"

#include "package/dialogs.h"
#include "ui/list_keys.h"
#include "ui/qt_text.h"
#include "ui_frmMultipleCfg.h"

namespace korvadex {

frmMultipleCfg::frmMultipleCfg(const std::vector<std::string>& items, UserDialogs& dialogs, QWidget* parent)
    : QDialog(parent), user(dialogs), ui(std::make_unique<Ui::frmMultipleCfg>()) {
    ui->setupUi(this);
    for (const auto& item : items)
        ui->lstConfigs->addItem(ToQt(item));
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmMultipleCfg::Choose);
    connect(ui->lstConfigs, &QListWidget::itemDoubleClicked, this, &frmMultipleCfg::Choose);
    SelectByFirstKey(*ui->lstConfigs);
    ui->lstConfigs->setFocus();
}

frmMultipleCfg::~frmMultipleCfg() = default;

int frmMultipleCfg::Choice() const {
    return ui->lstConfigs->row(ui->lstConfigs->selectedItems().value(0));
}

void frmMultipleCfg::Choose() {
    if (!ui->lstConfigs->selectedItems().isEmpty())
        return accept();
    user.Tell("Please pick a configuration by selecting it and selecting 'OK', or by double clicking it.");
}

} // namespace korvadex
