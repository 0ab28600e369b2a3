// The list to choose a package from, and the part of it that is offered while something stands in the filter field.
#pragma once

#include "app/hangar_listing.h"

#include <QComboBox>

#include <vector>

namespace korvadex {

// A row keeps its index whether it is offered or not; the current one stays current.
class PackageChooser : public QComboBox {
    Q_OBJECT

  public:
    using QComboBox::QComboBox;

    // A row for each, with marks where it is installed. The current row is given by its index, -1 for none.
    void ShowPackages(const std::vector<HangarPackage>& packages, int index);

    // Offers only the packages whose names contain this, without case; all for "". To be called again after the
    // rows have changed.
    void SetFilter(const QString& filter);

    bool IsOffered(int index) const;
    int FirstOffered() const; // -1 when there is none
    int OfferedCount() const;
};

} // namespace korvadex
