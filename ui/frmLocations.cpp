#include "ui/frmLocations.h"

#include "ui/qt_text.h"
#include "ui/wheel_guard.h"
#include "ui_frmLocations.h"

namespace korvadex {

frmLocations::frmLocations(const FileSystem& files, Settings& currentSettings, QWidget* parent)
    : QDialog(parent), settings(currentSettings), ui(std::make_unique<Ui::frmLocations>()) {
    ui->setupUi(this);
    KeepWheelFromChoices(*this);
    const auto& profiles = settings.LocationProfiles;
    for (int row = 0; row < int(profiles.size()); ++row)
        if (const auto& name = profiles[std::size_t(row)].name; !name.empty())
            ui->cboLocationProfile->addItem(ToQt(name), row);
    const auto current = std::size_t(settings.CurrentProfile);
    ui->cboLocationProfile->setCurrentIndex(ui->cboLocationProfile->findData(settings.CurrentProfile));
    ui->cboLocationProfile->setEditText(ToQt(profiles[current].name));
    ui->locationFields->SetFiles(files);
    ui->locationFields->SetLocations(settings.locations);
    ui->chkAskForLocations->setChecked(settings.AskLocationAtStart);
    ui->locationFields->setFocus();

    connect(ui->cboLocationProfile, &QComboBox::activated, this, &frmLocations::ChooseProfile);
    connect(ui->chkAskForLocations, &QCheckBox::clicked, this,
            [this](bool isChecked) { settings.AskLocationAtStart = isChecked; });
    connect(ui->cmdAccept, &QPushButton::clicked, this, &QDialog::accept);
}

frmLocations::~frmLocations() = default;

LocationsEntry frmLocations::Entry() const {
    return {FromQt(ui->cboLocationProfile->currentText()), ui->locationFields->Entry()};
}

void frmLocations::ChooseProfile(int index) {
    const int row = ui->cboLocationProfile->itemData(index).toInt();
    const LocationProfile& profile = settings.LocationProfiles[std::size_t(row)];
    ui->locationFields->SetLocations({profile.StagingDir, profile.HangarDir, profile.MsfsDir});
}

} // namespace korvadex
