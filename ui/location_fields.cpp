#include "ui/location_fields.h"

#include "platform/windows_path.h"
#include "ui/frmDirSelect.h"
#include "ui/qt_text.h"
#include "ui_location_fields.h"

namespace korvadex {

LocationFields::LocationFields(QWidget* parent)
    : QWidget(parent), ui(std::make_unique<Ui::LocationFields>()) {
    ui->setupUi(this);
    setFocusProxy(ui->txtStagingDir);
}

LocationFields::~LocationFields() = default;

void LocationFields::SetFiles(const FileSystem& files) {
    const auto browse = [this, &files](QPushButton* button, QLineEdit* box) {
        connect(button, &QPushButton::clicked, this, [this, &files, box] {
            frmDirSelect browser(files, FromQt(box->text()), this);
            browser.exec();
            box->setText(ToQt(browser.BrowseResult()));
        });
    };
    browse(ui->cmdStagingDir, ui->txtStagingDir);
    browse(ui->cmdHangarDir, ui->txtHangarDir);
    browse(ui->cmdMSFSDir, ui->txtMSFSDir);
}

void LocationFields::SetLocations(const Locations& locations) {
    ui->txtStagingDir->setText(ToQt(locations.StagingDir));
    ui->txtHangarDir->setText(ToQt(locations.HangarDir));
    ui->txtMSFSDir->setText(ToQt(locations.MsfsDir));
}

Locations LocationFields::Entry() const {
    const auto directory = [](const QLineEdit* box) { return AddBackslash(FromQt(box->text())); };
    return {directory(ui->txtStagingDir), directory(ui->txtHangarDir), directory(ui->txtMSFSDir)};
}

} // namespace korvadex
