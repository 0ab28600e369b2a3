// The new name of a package, and the new title of its aircraft.
#pragma once

#include "package/rename.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmRename;
}

namespace korvadex {

class frmRename : public QDialog {
    Q_OBJECT

  public:
    frmRename(const RenameForm& form, QWidget* parent);
    ~frmRename() override;

  private:
    void Accept();

    const RenameForm form;
    std::unique_ptr<Ui::frmRename> ui;
};

} // namespace korvadex
