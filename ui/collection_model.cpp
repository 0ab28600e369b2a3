#include "ui/collection_model.h"

#include "ui/icons.h"
#include "ui/qt_text.h"

#include <QFont>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace korvadex {

namespace {

bool HaveSameRows(const CollectionView& a, const CollectionView& b) {
    return std::ranges::equal(a, b, [](const CollectionCategory& one, const CollectionCategory& other) {
        return one.name == other.name &&
               std::ranges::equal(one.packages, other.packages, {}, &CollectionPackage::ref, &CollectionPackage::ref);
    });
}

// Keeps the place of a mark that is not there.
QIcon NoIcon() {
    QPixmap empty(16, 16);
    empty.fill(Qt::transparent);
    return empty;
}

// On a selected row it stands on a white ground: its colours are lost on that of the row.
QIcon Mark(const QString& name) {
    QIcon mark = NamedIcon(name);
    for (const QSize& size : mark.availableSizes()) {
        QPixmap grounded(size);
        grounded.fill(Qt::transparent);
        QPainter painter(&grounded);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawRoundedRect(grounded.rect(), size.width() / 5.0, size.height() / 5.0);
        painter.drawPixmap(grounded.rect(), mark.pixmap(size, 1.0));
        painter.end();
        mark.addPixmap(grounded, QIcon::Selected);
    }
    return mark;
}

} // namespace

CollectionModel::CollectionModel(QObject* parent)
    : QAbstractItemModel(parent), installed(Mark("Installed")), compressed(Mark("Compress")), alias(Mark("Alias")),
      missingGauges(Mark("MissingGauges")), none(NoIcon()) {}

void CollectionModel::Show(CollectionView shown) {
    if (!HaveSameRows(view, shown)) {
        beginResetModel();
        view = std::move(shown);
        endResetModel();
        return;
    }
    view = std::move(shown);
    if (view.empty())
        return;
    emit dataChanged(index(0, 0), index(rowCount() - 1, 0));
    for (int row = 0; row < rowCount(); ++row)
        if (const QModelIndex category = index(row, 0); rowCount(category) > 0)
            emit dataChanged(index(0, 0, category), index(rowCount(category) - 1, 0, category));
}

// The internal id is 0 for a category, for a package one more than its category's row.
QModelIndex CollectionModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || column != 0 || row >= rowCount(parent))
        return {};
    return createIndex(row, column, quintptr(parent.isValid() ? parent.row() + 1 : 0));
}

QModelIndex CollectionModel::parent(const QModelIndex& index) const {
    const quintptr id = index.isValid() ? index.internalId() : 0;
    return id == 0 ? QModelIndex() : createIndex(int(id) - 1, 0, quintptr(0));
}

int CollectionModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return int(view.size());
    return parent.internalId() == 0 ? int(view[std::size_t(parent.row())].packages.size()) : 0;
}

int CollectionModel::columnCount(const QModelIndex& /*parent*/) const {
    return 1;
}

const CollectionPackage* CollectionModel::PackageAt(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == 0)
        return nullptr;
    return &view[index.internalId() - 1].packages[std::size_t(index.row())];
}

std::string CollectionModel::CategoryAt(const QModelIndex& index) const {
    const QModelIndex category = index.parent().isValid() ? index.parent() : index;
    return category.isValid() ? view[std::size_t(category.row())].name : "";
}

QModelIndex CollectionModel::IndexOf(const PackageRef& package) const {
    const auto category = std::ranges::find(view, package.category, &CollectionCategory::name);
    if (category == view.end())
        return {};
    const QModelIndex parent = index(int(category - view.begin()), 0);
    if (package.IsNone())
        return parent;
    const auto found = std::ranges::find(category->packages, package, &CollectionPackage::ref);
    return found == category->packages.end() ? QModelIndex()
                                             : index(int(found - category->packages.begin()), 0, parent);
}

QVariant CollectionModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const auto* package = PackageAt(index);
    return package ? DataOf(*package, role) : DataOf(view[std::size_t(index.row())], role);
}

QVariant CollectionModel::DataOf(const CollectionCategory& category, int role) const {
    const auto shown = category.packages.size();
    if (role == Qt::DisplayRole)
        return ToQt(category.name) + (shown == category.count ? QString("  (%1)").arg(shown)
                                                              : QString("  (%1 of %2)").arg(shown).arg(category.count));
    if (role == Qt::FontRole) {
        QFont bold;
        bold.setBold(true);
        return bold;
    }
    return {};
}

QVariant CollectionModel::DataOf(const CollectionPackage& package, int role) const {
    switch (role) {
    case Qt::DisplayRole:
        return ToQt(package.ref.name);
    case Qt::DecorationRole:
        return package.isInstalled ? installed : none;
    case Qt::ToolTipRole:
        return PlainToolTip(ToQt(DescribePackage(package)));
    case Qt::AccessibleTextRole:
        return ToQt(DescribeMarks(package));
    case MarksRole: {
        QVariantList marks;
        if (!package.missingGauges.empty())
            marks.append(missingGauges);
        if (!package.facts.alias.empty())
            marks.append(alias);
        if (package.facts.isCompressed)
            marks.append(compressed);
        return marks;
    }
    default:
        return {};
    }
}

} // namespace korvadex
