#include "ui/frmLocations.h"

#include "app/first_locations.h"
#include "ui/location_advisor.h"
#include "ui/qt_text.h"
#include "ui/wheel_guard.h"
#include "ui_frmLocations.h"

#include <QShortcut>
#include <QTimer>

namespace korvadex {

namespace {

// How often it is looked whether the read-me page could be opened.
constexpr int OpeningsInterval = 200; // ms

} // namespace

frmLocations::frmLocations(FileSystem& files, Settings& currentSettings, const LocationsForm& form, QWidget* parent)
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
    const Locations& entered = settings.locations;
    const bool isNothingEntered = (entered.StagingDir + entered.HangarDir + entered.MsfsDir).empty();
    ui->locationFields->SetLocations(form.purpose == LocationsFor::FirstStart && isNothingEntered
                                         ? ProposeLocations(files, FindPlaces(files))
                                         : entered);
    // Locations that were refused a moment ago are not known for that.
    Settings known;
    known.AppDir = settings.AppDir;
    known.LocationProfiles = settings.kept.LocationProfiles;
    ui->locationFields->Begin(files, known, form.purpose != LocationsFor::Start);
    ui->chkAskForLocations->setChecked(settings.AskLocationAtStart);
    ui->locationFields->setFocus();

    connect(ui->cboLocationProfile, &QComboBox::activated, this, &frmLocations::ChooseProfile);
    connect(ui->chkAskForLocations, &QCheckBox::clicked, this,
            [this](bool isChecked) { settings.AskLocationAtStart = isChecked; });
    connect(ui->cmdAccept, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    ConnectHelp(form);
    PrepareFor(form.purpose);
}

frmLocations::~frmLocations() = default;

LocationsEntry frmLocations::Entry() const {
    return {FromQt(ui->cboLocationProfile->currentText()), ui->locationFields->Entry()};
}

void frmLocations::PrepareFor(LocationsFor purpose) {
    if (purpose != LocationsFor::Change) {
        ui->cmdCancel->setText("E&xit");
        ui->cmdCancel->setAccessibleName("Exit");
    }
    if (purpose != LocationsFor::FirstStart)
        return ui->lblIntroduction->hide();
    setWindowTitle("Korvadex: locations");
    // There is only one to choose from.
    ui->lblLocationProfile->hide();
    ui->cboLocationProfile->hide();
    resize(width(), layout()->totalHeightForWidth(width())); // all of the introduction
}

void frmLocations::ConnectHelp(const LocationsForm& form) {
    auto* check = new QTimer(this);
    check->setInterval(OpeningsInterval);
    connect(check, &QTimer::timeout, this, [check, checkOpenings = form.checkOpenings] {
        check->stop(); // a message may come
        if (checkOpenings && checkOpenings())
            check->start();
    });
    connect(ui->cmdHelp, &QPushButton::clicked, this, [check, openReadMe = form.openReadMe] {
        if (openReadMe)
            openReadMe();
        check->start();
    });
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, ui->cmdHelp, &QPushButton::click);
}

void frmLocations::ChooseProfile(int index) {
    const int row = ui->cboLocationProfile->itemData(index).toInt();
    const LocationProfile& profile = settings.LocationProfiles[std::size_t(row)];
    ui->locationFields->SetLocations({profile.StagingDir, profile.HangarDir, profile.MsfsDir});
}

} // namespace korvadex
