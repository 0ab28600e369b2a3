#include "ui/package_chooser.h"

#include "app/overviews.h"
#include "ui/qt_text.h"

#include <QListView>
#include <QStandardItemModel>

#include <algorithm>

namespace korvadex {

namespace {

// How many lines the list has before it scrolls.
constexpr int LinesAtOnce = 20;

} // namespace

void PackageChooser::ShowPackages(const std::vector<HangarPackage>& packages, int index) {
    QStringList texts, shown;
    for (const auto& package : packages)
        texts.append(ToQt(LineText({PackageRefOf(package.name), package.isInstalled})));
    for (int row = 0; row < count(); ++row)
        shown.append(itemText(row));
    if (texts != shown) {
        clear();
        for (qsizetype row = 0; row < texts.size(); ++row)
            addItem(texts[row], ToQt(packages[std::size_t(row)].name));
    }
    setCurrentIndex(index);
}

void PackageChooser::SetFilter(const QString& filter) {
    const QString part = filter.trimmed();
    auto* rows = qobject_cast<QStandardItemModel*>(model());
    auto* list = qobject_cast<QListView*>(view());
    int offered = 0, linesNeeded = 0;
    for (int row = 0; row < count(); ++row) {
        const QString name = itemData(row).toString();
        const bool isOffered = name.contains(part, Qt::CaseInsensitive);
        if (IsOffered(row) != isOffered)
            rows->item(row)->setEnabled(isOffered); // arrow keys and wheel pass over it
        if (list->isRowHidden(row) == isOffered)
            list->setRowHidden(row, !isOffered);
        if (isOffered && offered++ < LinesAtOnce)
            linesNeeded = row + 1;
    }
    // The height of the open list is measured over so many rows, hidden ones among them.
    setMaxVisibleItems(std::max(linesNeeded, LinesAtOnce));
}

bool PackageChooser::IsOffered(int index) const {
    return index >= 0 && (model()->flags(model()->index(index, modelColumn())) & Qt::ItemIsEnabled);
}

int PackageChooser::FirstOffered() const {
    for (int row = 0; row < count(); ++row)
        if (IsOffered(row))
            return row;
    return -1;
}

int PackageChooser::OfferedCount() const {
    int offered = 0;
    for (int row = 0; row < count(); ++row)
        offered += IsOffered(row);
    return offered;
}

} // namespace korvadex
