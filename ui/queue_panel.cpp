#include "ui/queue_panel.h"

#include "platform/windows_path.h"
#include "ui/qt_text.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>

#include <algorithm>
#include <utility>

namespace korvadex {

namespace {

constexpr int NameColumn = 0, ReasonColumn = 1;
constexpr int WidestName = 120, FewestLines = 3, ReasonLines = 5;

QStringList TextsOf(const QueuedArchive& archive) {
    QString name = ToQt(LastPathComponent(archive.path));
    if (!archive.part.empty()) // what tells it from the others of the archive comes first
        name = ToQt(WithoutBackslash(archive.part)) + "  (" + name + ")";
    QString reason = LinesToQt(archive.reason).simplified();
    return {name, reason};
}

QAction* AddEntry(QMenu& menu, const char* name, const QString& caption, const QKeySequence& key = {}) {
    QAction* entry = menu.addAction(caption);
    entry->setObjectName(name);
    entry->setShortcut(key); // to be seen only: the list handles its keys itself
    entry->setShortcutContext(Qt::WidgetShortcut);
    entry->setShortcutVisibleInContextMenu(true);
    return entry;
}

} // namespace

QueuePanel::QueuePanel(QWidget* parent)
    : QWidget(parent), lblQueue(new QLabel), list(new QTreeWidget), lblReason(new QLabel) {
    lblQueue->setObjectName("lblQueue");
    lblQueue->setTextFormat(Qt::PlainText);
    list->setObjectName("lstQueue");
    list->setAccessibleName("Queue of archives");
    list->setHeaderLabels({"Archive", "Why it waits"});
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    list->setMinimumHeight(60);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lblReason->setObjectName("lblReason");
    lblReason->setTextFormat(Qt::PlainText);
    lblReason->setWordWrap(true);
    lblReason->setMinimumHeight(lblReason->fontMetrics().lineSpacing() * FewestLines);
    lblReason->setMaximumHeight(lblReason->fontMetrics().lineSpacing() * ReasonLines);
    lblReason->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    list->header()->setStretchLastSection(true);
    list->setColumnHidden(ReasonColumn, true);
    list->installEventFilter(this);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(9, 9, 3, 9);
    column->addWidget(lblQueue);
    column->addWidget(list);
    column->addWidget(lblReason);
    auto* buttons = new QGridLayout;
    column->addLayout(buttons);
    const auto add = [&](int row, int place, const char* name, const QString& text, const QString& toolTip) {
        auto* button = new QPushButton(text);
        button->setObjectName(name);
        button->setAccessibleName(toolTip);
        button->setToolTip(toolTip);
        buttons->addWidget(button, row, place);
        return button;
    };
    connect(add(0, 0, "cmdTakeNext", "Next", "Take the next archive into Staging"), &QPushButton::clicked, this,
            &QueuePanel::NextChosen);
    connect(add(0, 1, "cmdSkip", "Skip", "Put the archive in Staging back to the end of the queue"),
            &QPushButton::clicked, this, &QueuePanel::SkipChosen);
    cmdUnqueue = add(1, 0, "cmdUnqueue", "Remove", "Remove the selected archives from the queue");
    connect(cmdUnqueue, &QPushButton::clicked, this, &QueuePanel::Remove);
    connect(add(1, 1, "cmdTakeAll", "Take all ...", "Take all that need no question into the Hangar"),
            &QPushButton::clicked, this, &QueuePanel::TakeAllChosen);
    connect(list, &QTreeWidget::currentItemChanged, this, &QueuePanel::ShowReason);
    connect(list, &QTreeWidget::itemSelectionChanged, this, &QueuePanel::ShowWhatCanWork);
    ShowWhatCanWork();
    connect(list, &QTreeWidget::itemDoubleClicked, this, &QueuePanel::TakeCurrent);
    connect(list, &QTreeWidget::customContextMenuRequested, this, &QueuePanel::ShowMenu);
}

void QueuePanel::Show(const std::vector<QueuedArchive>& archives) {
    lblQueue->setText(archives.size() == 1 ? "1 archive waits" : QString::number(archives.size()) + " archives wait");
    if (archives == shown)
        return;
    // What is selected stays so.
    std::vector<QueuedArchive> selected;
    for (const int row : Selected())
        selected.push_back(shown[std::size_t(row)]);
    const auto isSame = [](const QueuedArchive& a, const QueuedArchive& b) {
        return a.path == b.path && a.part == b.part;
    };
    const int current = list->indexOfTopLevelItem(list->currentItem());
    shown = archives;
    list->clear();
    QList<QTreeWidgetItem*> rows;
    for (const QueuedArchive& archive : shown) {
        auto* row = new QTreeWidgetItem(TextsOf(archive));
        row->setToolTip(NameColumn, PlainToolTip(row->text(NameColumn) + "\n" + ToQt(archive.path)));
        row->setToolTip(ReasonColumn, PlainToolTip(LinesToQt(archive.reason)));
        rows.append(row);
    }
    list->addTopLevelItems(rows);
    const bool isAnyLeft = std::ranges::any_of(shown, [](const auto& archive) { return !archive.reason.empty(); });
    if (std::exchange(hasReasons, isAnyLeft) != isAnyLeft) {
        list->setColumnHidden(ReasonColumn, !isAnyLeft); // the names have all the room
        list->resizeColumnToContents(NameColumn);
        list->setColumnWidth(NameColumn, std::min(list->columnWidth(NameColumn), WidestName));
    }
    if (!rows.isEmpty())
        list->setCurrentItem(rows[std::clamp(current, 0, int(rows.size()) - 1)], 0, QItemSelectionModel::NoUpdate);
    for (std::size_t row = 0; row < shown.size(); ++row)
        rows[int(row)]->setSelected(
            std::ranges::any_of(selected, [&](const QueuedArchive& before) { return isSame(before, shown[row]); }));
    ShowReason();
    ShowWhatCanWork();
}

void QueuePanel::ShowWhatCanWork() {
    cmdUnqueue->setEnabled(!list->selectedItems().isEmpty());
}

void QueuePanel::ShowReason() {
    const QTreeWidgetItem* item = list->currentItem();
    const QString reason = item ? item->text(ReasonColumn) : QString();
    lblReason->setText(reason);
    lblReason->setToolTip(PlainToolTip(reason));
    lblReason->setVisible(!reason.isEmpty());
}

std::vector<int> QueuePanel::Selected() const {
    std::vector<int> rows;
    for (QTreeWidgetItem* item : list->selectedItems())
        rows.push_back(list->indexOfTopLevelItem(item));
    std::ranges::sort(rows);
    return rows;
}

bool QueuePanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* pressed = static_cast<QKeyEvent*>(event);
        const bool isEnter = pressed->key() == Qt::Key_Return || pressed->key() == Qt::Key_Enter;
        if ((isEnter || pressed->key() == Qt::Key_Delete) &&
            (pressed->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
            isEnter ? TakeCurrent() : Remove();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void QueuePanel::TakeCurrent() {
    if (const int row = list->indexOfTopLevelItem(list->currentItem()); row >= 0)
        emit TakeChosen(row);
}

void QueuePanel::Remove() {
    if (const auto rows = Selected(); !rows.empty())
        emit RemoveChosen(rows);
}

void QueuePanel::ShowMenu(const QPoint& at) {
    const auto rows = Selected();
    if (rows.empty())
        return;
    auto* menu = new QMenu(this);
    menu->setObjectName("mnuOfQueue");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (rows.size() == 1) {
        const int row = rows.front();
        connect(AddEntry(*menu, "mnuTakeArchive", "&Take into Staging", Qt::Key_Return), &QAction::triggered, this,
                [this, row] { emit TakeChosen(row); });
        connect(AddEntry(*menu, "mnuAddArchive", "&Add to what is in Staging"), &QAction::triggered, this,
                [this, row] { emit AddChosen(row); });
    }
    connect(AddEntry(*menu, "mnuUnqueue", "&Remove from the queue", Qt::Key_Delete), &QAction::triggered, this,
            [this, rows] { emit RemoveChosen(rows); });
    menu->popup(list->viewport()->mapToGlobal(at));
}

} // namespace korvadex
