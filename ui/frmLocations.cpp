#include "ui/frmLocations.h"

#include "platform/windows_path.h"
#include "ui/frmDirSelect.h"
#include "ui/qt_text.h"
#include "ui_frmLocations.h"

namespace korvadex {

frmLocations::frmLocations(const FileSystem& fileSystem, Settings& currentSettings, QWidget* parent)
    : QDialog(parent), files(fileSystem), settings(currentSettings),
      ui(std::make_unique<Ui::frmLocations>()) {
    ui->setupUi(this);
    const auto& profiles = settings.LocationProfiles;
    for (int row = 0; row < int(profiles.size()); ++row)
        if (const auto& name = profiles[std::size_t(row)].name; !name.empty())
            ui->cboLocationProfile->addItem(ToQt(name), row);
    const auto current = std::size_t(settings.CurrentProfile);
    ui->cboLocationProfile->setCurrentIndex(ui->cboLocationProfile->findData(settings.CurrentProfile));
    ui->cboLocationProfile->setEditText(ToQt(profiles[current].name));
    ui->txtStagingDir->setText(ToQt(settings.locations.StagingDir));
    ui->txtHangarDir->setText(ToQt(settings.locations.HangarDir));
    ui->txtMSFSDir->setText(ToQt(settings.locations.MsfsDir));
    ui->chkAskForLocations->setChecked(settings.AskLocationAtStart);
    ui->txtStagingDir->setFocus();

    connect(ui->cboLocationProfile, &QComboBox::activated, this, &frmLocations::ChooseProfile);
    connect(ui->cmdStagingDir, &QPushButton::clicked, this, [this] { Browse(ui->txtStagingDir); });
    connect(ui->cmdHangarDir, &QPushButton::clicked, this, [this] { Browse(ui->txtHangarDir); });
    connect(ui->cmdMSFSDir, &QPushButton::clicked, this, [this] { Browse(ui->txtMSFSDir); });
    connect(ui->chkAskForLocations, &QCheckBox::clicked, this,
            [this](bool isChecked) { settings.AskLocationAtStart = isChecked; });
    connect(ui->cmdAccept, &QPushButton::clicked, this, &QDialog::accept);
}

frmLocations::~frmLocations() = default;

LocationsEntry frmLocations::Entry() const {
    const auto directory = [](const QLineEdit* box) { return AddBackslash(FromQt(box->text())); };
    return {FromQt(ui->cboLocationProfile->currentText()),
            {directory(ui->txtStagingDir), directory(ui->txtHangarDir), directory(ui->txtMSFSDir)}};
}

void frmLocations::ChooseProfile(int index) {
    const int row = ui->cboLocationProfile->itemData(index).toInt();
    const LocationProfile& profile = settings.LocationProfiles[std::size_t(row)];
    ui->txtStagingDir->setText(ToQt(profile.StagingDir));
    ui->txtHangarDir->setText(ToQt(profile.HangarDir));
    ui->txtMSFSDir->setText(ToQt(profile.MsfsDir));
}

void frmLocations::Browse(QLineEdit* box) {
    frmDirSelect browser(files, FromQt(box->text()), this);
    browser.exec();
    box->setText(ToQt(browser.BrowseResult()));
}

} // namespace korvadex
