// What the simulator shows of an aircraft, and what air traffic control calls it.
#pragma once

#include "media/aircraft_info.h"

#include <QDialog>
#include <QTimer>

#include <memory>

class QComboBox;

namespace Ui {
class frmInfo;
}

namespace korvadex {

class frmInfo : public QDialog {
    Q_OBJECT

  public:
    frmInfo(const InfoForm& form, QWidget* parent);
    ~frmInfo() override;

    // Escape, and the window's own button.
    void reject() override;

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void Show(const AircraftInfo& info);
    AircraftInfo Entry() const;
    void Apply();
    void Gather();
    void Offer(const InfoOffers& offers);

    const InfoForm form;
    std::unique_ptr<Ui::frmInfo> ui;
    QTimer gathering;
    // Once all is gathered; kept while a list is open.
    std::optional<InfoOffers> gathered;
};

} // namespace korvadex
