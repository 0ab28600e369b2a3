// The dialog in which the user says where Staging, the Hangar and the simulator are.
#pragma once

#include "app/main_view.h"
#include "platform/file_system.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmLocations;
}

namespace korvadex {

class frmLocations : public QDialog {
    Q_OBJECT

  public:
    // The check box changes settings.AskLocationAtStart at once; everything else is left alone.
    frmLocations(const FileSystem& files, Settings& settings, QWidget* parent);
    ~frmLocations() override;

    // What stood in the dialog when it was accepted.
    LocationsEntry Entry() const;

  private:
    void ChooseProfile(int index);

    Settings& settings;
    std::unique_ptr<Ui::frmLocations> ui;
};

} // namespace korvadex
