// The rows of the collection beside the form: categories, and their packages below them.
#pragma once

#include "app/collection.h"

#include <QAbstractItemModel>
#include <QIcon>

namespace korvadex {

class CollectionModel : public QAbstractItemModel {
    Q_OBJECT

  public:
    // The icons of what is to be marked behind the name of a package: a QVariantList of QIcon.
    static constexpr int MarksRole = Qt::UserRole;

    explicit CollectionModel(QObject* parent);

    // Shows these. Where the rows are the same as before they stay; otherwise the model is reset.
    void Show(CollectionView shown);
    const CollectionView& Shown() const { return view; }

    // nullptr for a category.
    const CollectionPackage* PackageAt(const QModelIndex& index) const;
    // Of a package the category that it is in; "" for no row.
    std::string CategoryAt(const QModelIndex& index) const;
    QModelIndex IndexOf(const PackageRef& package) const; // of the category for one without a name

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

  private:
    QVariant DataOf(const CollectionCategory& category, int role) const;
    QVariant DataOf(const CollectionPackage& package, int role) const;

    CollectionView view;
    const QIcon installed, compressed, alias, missingGauges, none;
};

} // namespace korvadex
