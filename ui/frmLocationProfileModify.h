// One location profile: its name and its three directories, to be entered, changed or cleared.
#pragma once

#include "app/profiles.h"
#include "platform/file_system.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmLocationProfileModify;
}

namespace korvadex {

class frmLocationProfileModify : public QDialog {
    Q_OBJECT

  public:
    frmLocationProfileModify(FileSystem& files, ProfileEditor& profiles, int ProfileBeingEdited, QWidget* parent);
    ~frmLocationProfileModify() override;

  private:
    void Show(const LocationProfile& profile);
    // Closes the dialog when the profile was taken.
    void Accept();

    ProfileEditor& profiles;
    const int ProfileBeingEdited;
    std::unique_ptr<Ui::frmLocationProfileModify> ui;
};

} // namespace korvadex
