#include "ui/frmHistory.h"

#include "ui/qt_text.h"
#include "ui/wheel_guard.h"
#include "ui_frmHistory.h"

#include <QHeaderView>

#include <algorithm>

namespace korvadex {

namespace {

enum Column { Time, Command, Package, Files, Size, State };

QString ChangeText(ChangeKind kind) {
    switch (kind) {
    case ChangeKind::Came:
        return "came";
    case ChangeKind::Went:
        return "went";
    case ChangeKind::Changed:
        return "changed";
    case ChangeKind::Renamed:
        break;
    }
    return "renamed";
}

} // namespace

frmHistory::frmHistory(HistoryEditor& historyEditor, Guard windowGuard, QWidget* parent)
    : QDialog(parent), history(historyEditor), guard(std::move(windowGuard)), ui(std::make_unique<Ui::frmHistory>()) {
    ui->setupUi(this);
    KeepWheelFromChoices(*this);
    ui->spnCommands->setRange(1, MostHistoryCommands);
    ui->spnMegabytes->setRange(1, MostHistoryMegabytes);
    ui->splHistory->setStretchFactor(0, 3);
    ui->splHistory->setStretchFactor(1, 2);
    connect(ui->lstCommands, &QTreeWidget::itemSelectionChanged, this, &frmHistory::ShowSelected);
    const auto press = [this](QPushButton* button, const std::function<void()>& deed) {
        connect(button, &QPushButton::clicked, this, [this, deed] {
            Do(deed);
            FocusList(); // the button may be grey now
        });
    };
    press(ui->cmdTakeBack, [this] { history.TakeBackTo(Row()); });
    press(ui->cmdDoAgain, [this] { history.DoAgainTo(Row()); });
    press(ui->cmdEmpty, [this] { history.Empty(); });
    connect(ui->cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    for (auto* field : {ui->spnCommands, ui->spnMegabytes})
        connect(field, &QSpinBox::editingFinished, this, &frmHistory::TakeLimits);
    for (const int column : {Files, Size})
        ui->lstCommands->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    ShowCommands();
    ui->lstCommands->header()->setStretchLastSection(false);
    ui->lstCommands->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    ui->lstCommands->header()->setSectionResizeMode(Package, QHeaderView::Stretch);
    FocusList();
}

frmHistory::~frmHistory() = default;

int frmHistory::Row() const {
    const auto selected = ui->lstCommands->selectedItems();
    return selected.isEmpty() ? -1 : ui->lstCommands->indexOfTopLevelItem(selected.first());
}

void frmHistory::ShowCommands() {
    const int row = std::max(0, Row());
    const auto rows = history.Rows();
    {
        const QSignalBlocker quiet(ui->lstCommands);
        ui->lstCommands->clear();
        for (const HistoryRow& shown : rows) {
            auto* item = new QTreeWidgetItem(ui->lstCommands);
            int column = 0;
            for (const auto* text :
                 {&shown.time, &shown.command, &shown.package, &shown.files, &shown.size, &shown.state})
                item->setText(column++, ToQt(*text));
            item->setToolTip(Package, ToQt(shown.package).toHtmlEscaped());
            item->setData(State, Qt::UserRole, ToQt(shown.reason));
            for (const int number : {Files, Size})
                item->setTextAlignment(number, Qt::AlignRight | Qt::AlignVCenter);
        }
        if (!rows.empty())
            ui->lstCommands->setCurrentItem(
                ui->lstCommands->topLevelItem(std::min(row, ui->lstCommands->topLevelItemCount() - 1)));
    }
    ui->stkHistory->setCurrentWidget(rows.empty() ? ui->wgtInvitation : ui->wgtLists);
    ui->cmdEmpty->setEnabled(!rows.empty());
    ui->spnCommands->setValue(history.Limits().commands);
    ui->spnMegabytes->setValue(MegabytesOf(history.Limits().bytes));
    ui->lblKept->setText(ToQt(history.DescribeKept()));
    ShowSelected();
}

void frmHistory::FocusList() {
    if (ui->stkHistory->currentWidget() == ui->wgtLists)
        ui->lstCommands->setFocus();
    else
        ui->cmdClose->setFocus();
}

void frmHistory::ShowSelected() {
    const int row = Row();
    ui->cmdTakeBack->setEnabled(row >= 0 && history.UndosTo(row) > 0);
    ui->cmdDoAgain->setEnabled(row >= 0 && history.RedosTo(row) > 0);
    const QString reason =
        row < 0 ? QString() : ui->lstCommands->topLevelItem(row)->data(State, Qt::UserRole).toString();
    ui->lblReason->setText(reason);
    ui->lblReason->setVisible(!reason.isEmpty());
    ShowFiles(row);
}

void frmHistory::ShowFiles(int row) {
    ui->lstFiles->clear();
    if (row < 0)
        return;
    QList<QTreeWidgetItem*> items;
    for (const FileChange& change : history.FilesOf(row)) {
        const QString to = change.newPath.empty() ? "" : "  ->  " + ToQt(change.newPath);
        items.append(new QTreeWidgetItem({ChangeText(change.kind), ToQt(change.path) + to}));
    }
    ui->lstFiles->addTopLevelItems(items);
    ui->lstFiles->resizeColumnToContents(0);
}

void frmHistory::Do(const std::function<void()>& deed) {
    if (isBusy)
        return;
    isBusy = true;
    const bool mayStay = guard(deed);
    isBusy = false;
    if (!mayStay)
        return QDialog::done(Rejected);
    ShowCommands();
}

// Not at every digit that is typed: 100 begins with 1.
void frmHistory::TakeLimits() {
    const HistoryLimits limits = {.commands = ui->spnCommands->value(), .bytes = BytesOf(ui->spnMegabytes->value())};
    if (limits != history.Limits())
        Do([&] { history.SetLimits(limits); });
}

void frmHistory::done(int result) {
    if (isBusy)
        return;
    TakeLimits();
    QDialog::done(result);
}

} // namespace korvadex
