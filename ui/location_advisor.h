// Looks, beside the windows, at the directories that are being typed: a drive that does not answer must not stop the
// keys.
#pragma once

#include "app/location_advice.h"

#include <QObject>

#include <memory>

class QTimer;

namespace korvadex {

// What this machine tells, with the directories in which this user keeps things.
UserPlaces FindPlaces(const FileSystem& files);

class LocationAdvisor : public QObject {
    Q_OBJECT

  public:
    // Keeps what it needs of the settings: see AdviseOn.
    LocationAdvisor(const FileSystem& files, const Settings& settings, bool stagingMustBeEmpty, QObject* parent);
    ~LocationAdvisor() override;

    // Looks when nothing else was asked for a moment; only the answer to the last question comes.
    void Ask(const Locations& entered);

  signals:
    void Answered(const LocationWords& words);

  private:
    struct Ground;
    struct Link;
    void Look();
    void Take(const LocationWords& words);

    std::shared_ptr<const Ground> ground;
    std::shared_ptr<Link> link;
    Locations entered;
    QTimer* pause;
    bool isLooking = false, isAskedAgain = false;
};

} // namespace korvadex
