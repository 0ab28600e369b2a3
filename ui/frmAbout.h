// What program this is, and which version.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmAbout;
}

namespace korvadex {

// "Version 1.0"
QString VersionText();

class frmAbout : public QDialog {
    Q_OBJECT

  public:
    explicit frmAbout(QWidget* parent);
    ~frmAbout() override;

  private:
    std::unique_ptr<Ui::frmAbout> ui;
};

} // namespace korvadex
