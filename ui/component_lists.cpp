#include "ui/component_lists.h"

#include "platform/date_text.h"
#include "platform/windows_path.h"
#include "ui/qt_text.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QLocale>

#include <algorithm>

namespace korvadex {

namespace {

QString GroupName(int group) {
    const auto name = ComponentGroupNames[std::size_t(group)];
    return QString::fromUtf8(name.data(), qsizetype(name.size()));
}

QString Describe(const FileEntry& file) {
    return ToQt(file.path) + "\n" + QLocale().toString(qulonglong(file.info.size)) + " bytes, " +
           ToQt(ShortDateTime(file.info.time));
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
        lstComponents[std::size_t(group)] = list;
        addTab(list, GroupName(group));
    }
}

void ComponentLists::ShowFiles(const LoadedPackage& package) {
    for (int group = 0; group < GroupCount; ++group) {
        QListWidget* list = lstComponents[std::size_t(group)];
        const auto& files = package.ComponentFiles[std::size_t(group)];
        const int row = list->currentRow();
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
    std::vector<int> positions;
    for (const auto& index : list->selectionModel()->selectedIndexes())
        positions.push_back(index.row());
    std::sort(positions.begin(), positions.end());
    emit DeleteRequested(group, positions);
    return true;
}

} // namespace korvadex
