#include "ui/frmUnusedGauges.h"

#include "package/progress.h"
#include "ui/list_keys.h"
#include "ui/qt_text.h"
#include "ui_frmUnusedGauges.h"

#include <QKeyEvent>

#include <algorithm>

namespace korvadex {

frmUnusedGauges::frmUnusedGauges(const UnusedGaugesForm& gaugesForm, QWidget* parent)
    : QDialog(parent), form(gaugesForm), ui(std::make_unique<Ui::frmUnusedGauges>()) {
    ui->setupUi(this);
    ui->cmdDelete->setEnabled(false);
    ui->cmdOK->setEnabled(false);
    connect(ui->cmdStop, &QPushButton::clicked, this, &frmUnusedGauges::reject);
    connect(ui->cmdDelete, &QPushButton::clicked, this, &frmUnusedGauges::Delete);
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    SelectByFirstKey(*ui->lstFileList);
    ui->lstFileList->setFocus();
}

frmUnusedGauges::~frmUnusedGauges() = default;

void frmUnusedGauges::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (isStarted)
        return;
    isStarted = true;
    // Once the window stands.
    QMetaObject::invokeMethod(this, &frmUnusedGauges::Search, Qt::QueuedConnection);
}

void frmUnusedGauges::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete)
        ui->cmdDelete->click();
    else
        QDialog::keyPressEvent(event);
}

void frmUnusedGauges::reject() {
    if (!isSearching)
        return QDialog::reject();
    isStopWanted = true;
    ui->cmdStop->setEnabled(false);
}

void frmUnusedGauges::Search() {
    isSearching = true;
    painting.SetStop(ui->cmdStop);
    ShowGauges(form.search([this](int value, int maximum) { ShowProgress(value, maximum); }));
    ui->prbProgress->setValue(ui->prbProgress->maximum());
    isSearching = false;
    ui->cmdStop->hide();
    ui->cmdDelete->setEnabled(true);
    ui->cmdOK->setEnabled(true);
}

void frmUnusedGauges::ShowProgress(int value, int maximum) {
    ui->prbProgress->setRange(1, maximum);
    ui->prbProgress->setValue(value);
    painting.Step();
    if (isStopWanted)
        throw Stopped{};
}

void frmUnusedGauges::Delete() {
    std::vector<int> rows;
    for (const auto* item : ui->lstFileList->selectedItems())
        rows.push_back(ui->lstFileList->row(item));
    const std::vector<UnusedGauge> left = form.remove(rows);
    if (std::ssize(left) != ui->lstFileList->count()) // else the selection stays
        ShowGauges(left);
}

void frmUnusedGauges::ShowGauges(const std::vector<UnusedGauge>& gauges) {
    const int row = ui->lstFileList->currentRow();
    ui->lstFileList->clear();
    for (const auto& gauge : gauges) {
        auto* item = new QListWidgetItem(ToQt(gauge.name), ui->lstFileList);
        item->setToolTip(ToQt(gauge.path).toHtmlEscaped());
    }
    // Where the keyboard is; what is selected there would be deleted next.
    const int current = std::min(std::max(row, 0), ui->lstFileList->count() - 1);
    ui->lstFileList->setCurrentRow(current, QItemSelectionModel::NoUpdate);
    if (gauges.empty())
        ui->lblFileList->setText("There are no unused &gauges.");
}

} // namespace korvadex
