// The dialog in which the user says where Staging, the Hangar and the simulator are.
#pragma once

#include "app/program_dialogs.h"
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
    // The check box changes settings.AskLocationAtStart at once; everything else is left alone. At a first start it
    // explains itself, and proposes directories where none was entered yet.
    frmLocations(FileSystem& files, Settings& settings, const LocationsForm& form, QWidget* parent);
    ~frmLocations() override;

    // What stood in the dialog when it was accepted.
    LocationsEntry Entry() const;

  private:
    void ChooseProfile(int index);
    void PrepareFor(LocationsFor purpose);
    void ConnectHelp(const LocationsForm& form);

    Settings& settings;
    std::unique_ptr<Ui::frmLocations> ui;
};

} // namespace korvadex
