// The choice of one configuration out of an aircraft.cfg that holds several.
#pragma once

#include "package/reduce_staging.h"
#include "ui/picture_loader.h"

#include <QDialog>

#include <memory>
#include <string>
#include <vector>

namespace Ui {
class frmMultipleCfg;
}

namespace korvadex {

class frmMultipleCfg : public QDialog {
    Q_OBJECT

  public:
    frmMultipleCfg(std::vector<ConfigurationRow> rows, const FileSystem& files, UserDialogs& user, QWidget* parent);
    ~frmMultipleCfg() override;

    // The selected row, from 0; -1 for none.
    int Choice() const;

  private:
    void Choose();
    void ShowPictures();
    void ShowPicture(const std::string& path);

    const std::vector<ConfigurationRow> rows;
    UserDialogs& user;
    std::unique_ptr<Ui::frmMultipleCfg> ui;
    PictureLoader pictures;
};

} // namespace korvadex
