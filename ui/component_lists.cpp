#include "ui/component_lists.h"

#include "package/meg.h"
#include "platform/date_text.h"
#include "platform/windows_path.h"
#include "ui/qt_text.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QTabBar>

#include <algorithm>

namespace korvadex {

namespace {

QString GroupName(int group) {
    const auto name = ComponentGroupNames[std::size_t(group)];
    return QString::fromUtf8(name.data(), qsizetype(name.size()));
}

QString Describe(const FileEntry& file) {
    QString size = ToQt(SizeText(file.info.size));
    if (file.info.size >= 1024)
        size += " (" + QLocale().toString(qulonglong(file.info.size)) + " bytes)";
    return ToQt(file.path) + "\n" + size + ", " + ToQt(ShortDateTime(file.info.time));
}

} // namespace

ComponentLists::ComponentLists(QWidget* parent) : QTabWidget(parent) {
    setAccessibleName("Components");
    for (int group = 0; group < GroupCount; ++group) {
        auto* list = new QListWidget;
        list->setObjectName(QString("lstComponents_%1").arg(group));
        list->setAccessibleName(GroupName(group));
        list->setSelectionMode(QAbstractItemView::ExtendedSelection);
        list->setUniformItemSizes(true);
        list->installEventFilter(this);
        connect(list, &QListWidget::itemDoubleClicked, this,
                [this, group, list](QListWidgetItem* item) { emit OpenRequested(group, list->row(item)); });
        connect(list, &QListWidget::itemSelectionChanged, this, &ComponentLists::SelectionChanged);
        list->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(list, &QListWidget::customContextMenuRequested, this,
                [this, group](const QPoint& at) { ShowMenu(group, at); });
        lstComponents[std::size_t(group)] = list;
        addTab(list, GroupName(group));
    }
    connect(this, &QTabWidget::currentChanged, this, &ComponentLists::SelectionChanged);
}

std::optional<std::pair<int, int>> ComponentLists::SelectedFile() const {
    const auto positions = SelectedPositions(currentIndex());
    return positions.size() == 1 ? std::optional(std::pair(currentIndex(), positions.front())) : std::nullopt;
}

void ComponentLists::ClearSelection() {
    lstComponents[std::size_t(currentIndex())]->clearSelection();
}

void ComponentLists::ShowFiles(const LoadedPackage& package) {
    for (int group = 0; group < GroupCount; ++group) {
        QListWidget* list = lstComponents[std::size_t(group)];
        const auto& files = package.ComponentFiles[std::size_t(group)];
        const int row = list->currentRow();
        const QSignalBlocker filling(list);
        list->clear();
        for (const FileEntry& file : files) {
            auto* item = new QListWidgetItem(ToQt(LastPathComponent(file.path)), list);
            item->setToolTip(PlainToolTip(Describe(file)));
        }
        // The keyboard stays where it was after a deletion; nothing is selected.
        if (row >= 0 && !files.empty())
            list->setCurrentRow(std::min(row, int(files.size()) - 1), QItemSelectionModel::NoUpdate);
        const auto count = QString(" (%1)").arg(files.size());
        setTabText(group, files.empty() ? GroupName(group) : GroupName(group) + count);
    }
    DimEmptyTabs();
}

void ComponentLists::DimEmptyTabs() {
    for (int group = 0; group < GroupCount; ++group) {
        const bool isEmpty = lstComponents[std::size_t(group)]->count() == 0;
        // An invalid colour is that of the palette.
        tabBar()->setTabTextColor(group,
                                  isEmpty && isEnabled() ? palette().color(QPalette::PlaceholderText) : QColor());
    }
}

void ComponentLists::changeEvent(QEvent* event) {
    QTabWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange)
        DimEmptyTabs();
}

bool ComponentLists::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* pressed = static_cast<QKeyEvent*>(event);
        const auto list = std::find(lstComponents.begin(), lstComponents.end(), watched);
        if (list != lstComponents.end() && (pressed->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier &&
            PressKey(int(list - lstComponents.begin()), pressed->key()))
            return true;
    }
    return QTabWidget::eventFilter(watched, event);
}

bool ComponentLists::PressKey(int group, int key) {
    const QListWidget* list = lstComponents[std::size_t(group)];
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && list->currentRow() >= 0) {
        emit OpenRequested(group, list->currentRow());
        return true;
    }
    if (key != Qt::Key_Delete)
        return false;
    emit DeleteRequested(group, SelectedPositions(group));
    return true;
}

std::vector<int> ComponentLists::SelectedPositions(int group) const {
    std::vector<int> positions;
    for (const auto& index : lstComponents[std::size_t(group)]->selectionModel()->selectedIndexes())
        positions.push_back(index.row());
    std::sort(positions.begin(), positions.end());
    return positions;
}

void ComponentLists::ShowMenu(int group, const QPoint& at) {
    QListWidget* list = lstComponents[std::size_t(group)];
    const int row = list->currentRow();
    // The mouse selects what it points at; the menu key has only the place of the keyboard.
    if (row >= 0 && list->selectedItems().empty())
        list->setCurrentRow(row);
    const auto positions = SelectedPositions(group);
    if (positions.empty())
        return;
    auto* menu = new QMenu(this);
    menu->setObjectName("mnuComponents");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char* name, const QString& caption, Qt::Key key, auto&& command) {
        QAction* entry = menu->addAction(caption, this, command);
        entry->setObjectName(name);
        if (key == Qt::Key_unknown)
            return;
        entry->setShortcut(key); // to be seen only: the list handles its keys itself
        entry->setShortcutContext(Qt::WidgetShortcut);
        entry->setShortcutVisibleInContextMenu(true);
    };
    add("mnuOpenComponent", "&Open", Qt::Key_Return, [=, this] { emit OpenRequested(group, row); });
    add("mnuShowComponentInFolder", "Show in &folder", Qt::Key_unknown,
        [=, this] { emit ShowInFolderRequested(group, row); });
    menu->addSeparator();
    const auto count = positions.size();
    add("mnuDeleteComponents", count == 1 ? QString("&Delete") : QString("&Delete %1 files").arg(count), Qt::Key_Delete,
        [=, this] { emit DeleteRequested(group, positions); });
    const QRect inside = list->viewport()->rect();
    menu->popup(list->viewport()->mapToGlobal(
        QPoint(std::clamp(at.x(), inside.left(), inside.right()), std::clamp(at.y(), inside.top(), inside.bottom()))));
}

} // namespace korvadex
