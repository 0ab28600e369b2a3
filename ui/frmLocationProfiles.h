// The ten location profiles by name, each with a button that leads to its directories.
#pragma once

#include "app/profiles.h"
#include "platform/file_system.h"

#include <QDialog>

#include <array>
#include <memory>

class QLineEdit;
class QPushButton;

namespace Ui {
class frmLocationProfiles;
}

namespace korvadex {

class frmLocationProfiles : public QDialog {
    Q_OBJECT

  public:
    frmLocationProfiles(FileSystem& files, ProfileEditor& profiles, QWidget* parent);
    ~frmLocationProfiles() override;

  private:
    void AddSlot(int slot);
    void Modify(int slot);
    void ShowNames();

    FileSystem& files;
    ProfileEditor& profiles;
    std::unique_ptr<Ui::frmLocationProfiles> ui;
    std::array<QLineEdit*, ProfileCount> txtLocationProfile{};
    std::array<QPushButton*, ProfileCount> cmdModifyProfile{};
};

} // namespace korvadex
