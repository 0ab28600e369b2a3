#include "ui/frmSeveralAircraft.h"

#include "ui/list_keys.h"
#include "ui/qt_text.h"
#include "ui_frmSeveralAircraft.h"

namespace korvadex {

namespace {

// "Lear 45  (3 configurations)" and below it "Jets\Lear,  120 files"
QString Describe(const AircraftPart& part) {
    std::string text = part.caption;
    if (part.configurations > 1)
        text += "  (" + std::to_string(part.configurations) + " configurations)";
    text += part.name == "." ? "\nThe top of the archive" : "\n" + part.name;
    text += ",  " + std::to_string(part.files) + (part.files == 1 ? " file" : " files");
    return ToQt(text);
}

} // namespace

frmSeveralAircraft::frmSeveralAircraft(const std::vector<AircraftPart>& parts, UserDialogs& dialogs, QWidget* parent)
    : QDialog(parent), user(dialogs), ui(std::make_unique<Ui::frmSeveralAircraft>()) {
    ui->setupUi(this);
    for (const AircraftPart& part : parts)
        ui->lstAircraft->addItem(Describe(part));
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmSeveralAircraft::Choose);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->lstAircraft, &QListWidget::itemDoubleClicked, this, &frmSeveralAircraft::Choose);
    SelectByFirstKey(*ui->lstAircraft);
    ui->lstAircraft->setFocus();
}

frmSeveralAircraft::~frmSeveralAircraft() = default;

int frmSeveralAircraft::Choice() const {
    return ui->lstAircraft->row(ui->lstAircraft->selectedItems().value(0));
}

void frmSeveralAircraft::Choose() {
    if (!ui->lstAircraft->selectedItems().isEmpty())
        return accept();
    user.Tell("Please pick an aircraft by selecting it and selecting 'OK', or by double clicking it.");
}

} // namespace korvadex
