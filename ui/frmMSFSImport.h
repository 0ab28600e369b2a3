// The aircraft of the simulator that the Hangar does not have yet, one of them to be brought into Staging.
#pragma once

#include "sim/import.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmMSFSImport;
}

namespace korvadex {

class frmMSFSImport : public QDialog {
    Q_OBJECT

  public:
    frmMSFSImport(const ImportForm& form, QWidget* parent);
    ~frmMSFSImport() override;

    // Stays open while the chosen aircraft is being copied.
    void reject() override;

  private:
    void Choose();

    const ImportForm form;
    std::unique_ptr<Ui::frmMSFSImport> ui;
    bool isCopying = false;
};

} // namespace korvadex
