#include "ui/frmLocationProfileModify.h"

#include "ui/qt_text.h"
#include "ui_frmLocationProfileModify.h"

namespace korvadex {

frmLocationProfileModify::frmLocationProfileModify(FileSystem& files, ProfileEditor& profileEditor, int slot,
                                                   QWidget* parent)
    : QDialog(parent), profiles(profileEditor), ProfileBeingEdited(slot),
      ui(std::make_unique<Ui::frmLocationProfileModify>()) {
    ui->setupUi(this);
    ui->locationFields->Begin(files, profiles.GetSettings(), true);
    Show(profiles.Entry(slot));
    ui->txtProfileName->setFocus();
    connect(ui->cmdAccept, &QPushButton::clicked, this, &frmLocationProfileModify::Accept);
    connect(ui->cmdClear, &QPushButton::clicked, this, [this] {
        profiles.Clear(ProfileBeingEdited);
        accept();
    });
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmLocationProfileModify::~frmLocationProfileModify() = default;

void frmLocationProfileModify::Show(const LocationProfile& profile) {
    ui->txtProfileName->setText(ToQt(profile.name));
    ui->locationFields->SetLocations({profile.StagingDir, profile.HangarDir, profile.MsfsDir});
}

void frmLocationProfileModify::Accept() {
    const Locations entered = ui->locationFields->Entry();
    LocationProfile profile{
        FromQt(ui->txtProfileName->text()), entered.StagingDir, entered.HangarDir, entered.MsfsDir, "", ""};
    const bool isTaken = profiles.Accept(ProfileBeingEdited, profile);
    Show(profile);
    if (isTaken)
        accept();
}

} // namespace korvadex
