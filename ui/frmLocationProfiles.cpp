#include "ui/frmLocationProfiles.h"

#include "ui/frmLocationProfileModify.h"
#include "ui/qt_text.h"
#include "ui_frmLocationProfiles.h"

#include <QLineEdit>

namespace korvadex {

frmLocationProfiles::frmLocationProfiles(FileSystem& fileSystem, ProfileEditor& profileEditor, QWidget* parent)
    : QDialog(parent), files(fileSystem), profiles(profileEditor), ui(std::make_unique<Ui::frmLocationProfiles>()) {
    ui->setupUi(this);
    for (int slot = 0; slot < int(txtLocationProfile.size()); ++slot)
        AddSlot(slot);
    setTabOrder(cmdModifyProfile.back(), ui->OKButton);
    ShowNames();
    connect(ui->OKButton, &QPushButton::clicked, this, &QDialog::accept);
    ui->OKButton->setFocus();
}

frmLocationProfiles::~frmLocationProfiles() = default;

void frmLocationProfiles::AddSlot(int slot) {
    auto* name = new QLineEdit(this);
    name->setObjectName("txtLocationProfile_" + QString::number(slot));
    name->setReadOnly(true);
    name->setFocusPolicy(Qt::ClickFocus); // Tab goes from button to button
    name->setMinimumWidth(220);
    name->setAccessibleName("Profile " + QString::number(slot + 1));
    auto* modify = new QPushButton("Modify", this);
    modify->setObjectName("cmdModifyProfile_" + QString::number(slot));
    modify->setAutoDefault(false);
    connect(modify, &QPushButton::clicked, this, [this, slot] { Modify(slot); });
    // Alt and the last digit of the number lead to the button.
    auto* number = new QLabel(slot == 9 ? "1&0" : "&" + QString::number(slot + 1), this);
    number->setTextFormat(Qt::PlainText);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    number->setBuddy(modify);

    ui->laySlots->addWidget(number, slot, 0);
    ui->laySlots->addWidget(name, slot, 1);
    ui->laySlots->addWidget(modify, slot, 2);
    txtLocationProfile[std::size_t(slot)] = name;
    cmdModifyProfile[std::size_t(slot)] = modify;
}

void frmLocationProfiles::Modify(int slot) {
    if (!profiles.CanModify(slot))
        return;
    frmLocationProfileModify(files, profiles, slot, this).exec();
    ShowNames();
}

void frmLocationProfiles::ShowNames() {
    const auto names = profiles.Names();
    for (std::size_t slot = 0; slot < names.size(); ++slot) {
        const QString name = ToQt(names[slot]);
        txtLocationProfile[slot]->setText(name);
        cmdModifyProfile[slot]->setAccessibleName(QString("Modify profile %1 %2").arg(slot + 1).arg(name).trimmed());
    }
}

} // namespace korvadex
