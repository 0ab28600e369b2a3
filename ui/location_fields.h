// The three directories in a dialog: Staging, Hangar and simulator, each typed or browsed for.
#pragma once

#include "app/settings.h"
#include "platform/file_system.h"

#include <QWidget>

#include <memory>

class QLineEdit;
class QPushButton;

namespace Ui {
class LocationFields;
}

namespace korvadex {

class LocationFields : public QWidget {
    Q_OBJECT

  public:
    explicit LocationFields(QWidget* parent);
    ~LocationFields() override;

    // The disk that the browse buttons show; they do nothing before.
    void SetFiles(const FileSystem& files);
    void SetLocations(const Locations& locations);
    // With their backslashes; "" stays empty.
    Locations Entry() const;

  private:
    std::unique_ptr<Ui::LocationFields> ui;
};

} // namespace korvadex
