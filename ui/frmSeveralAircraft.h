// The choice of one aircraft out of an archive that holds several.
#pragma once

#include "package/aircraft_parts.h"
#include "package/dialogs.h"

#include <QDialog>

#include <memory>
#include <vector>

namespace Ui {
class frmSeveralAircraft;
}

namespace korvadex {

class frmSeveralAircraft : public QDialog {
    Q_OBJECT

  public:
    frmSeveralAircraft(const std::vector<AircraftPart>& parts, UserDialogs& user, QWidget* parent);
    ~frmSeveralAircraft() override;

    // The selected row, from 0; -1 for none.
    int Choice() const;

  private:
    void Choose();

    UserDialogs& user;
    std::unique_ptr<Ui::frmSeveralAircraft> ui;
};

} // namespace korvadex
