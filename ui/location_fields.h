// The three directories in a dialog: Staging, Hangar and simulator, each typed or browsed for, with a word under each
// on what would be found there.
#pragma once

#include "app/location_advice.h"
#include "app/settings.h"
#include "platform/file_system.h"

#include <QWidget>

#include <memory>

class QLabel;
class QLineEdit;

namespace Ui {
class LocationFields;
}

namespace korvadex {

class LocationAdvisor;

class LocationFields : public QWidget {
    Q_OBJECT

  public:
    explicit LocationFields(QWidget* parent);
    ~LocationFields() override;

    // The disk that the browse buttons show, and what the words depend on (see AdviseOn). The buttons do nothing
    // before, and there are no words.
    void Begin(FileSystem& files, const Settings& settings, bool stagingMustBeEmpty);
    void SetLocations(const Locations& locations);
    // With their backslashes; "" stays empty.
    Locations Entry() const;

  private:
    void Browse(FileSystem& files, QLineEdit* box);
    void ShowWord(const LocationWord& word, QLineEdit* box, QLabel* image, QLabel* label);

    std::unique_ptr<Ui::LocationFields> ui;
    LocationAdvisor* advisor = nullptr;
};

} // namespace korvadex
