// The choice of one configuration out of an aircraft.cfg that holds several.
#pragma once

#include <QDialog>

#include <memory>
#include <string>
#include <vector>

namespace Ui {
class frmMultipleCfg;
}

namespace korvadex {

class UserDialogs;

class frmMultipleCfg : public QDialog {
    Q_OBJECT

  public:
    frmMultipleCfg(const std::vector<std::string>& items, UserDialogs& user, QWidget* parent);
    ~frmMultipleCfg() override;

    // The selected row, from 0; -1 for none.
    int Choice() const;

  private:
    void Choose();

    UserDialogs& user;
    std::unique_ptr<Ui::frmMultipleCfg> ui;
};

} // namespace korvadex
