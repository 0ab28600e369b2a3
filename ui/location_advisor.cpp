#include "ui/location_advisor.h"

#include "platform/windows_path.h"
#include "ui/qt_text.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>

#include <mutex>
#include <system_error>
#include <thread>

namespace korvadex {

namespace {

constexpr int Pause = 250; // ms

} // namespace

// For the other thread alone, which may be at work for longer than the advisor lives.
struct LocationAdvisor::Ground {
    Ground(const FileSystem& shown, const Settings& known, bool mustBeEmpty)
        : files(MakeFileSystemLike(shown)), places(FindPlaces(*files)), settings(known),
          stagingMustBeEmpty(mustBeEmpty) {}

    const std::unique_ptr<const FileSystem> files;
    const UserPlaces places;
    const Settings settings;
    const bool stagingMustBeEmpty;
};

struct LocationAdvisor::Link {
    std::mutex mutex;
    LocationAdvisor* advisor; // null when nobody waits for an answer any more
};

UserPlaces FindPlaces(const FileSystem& files) {
    UserPlaces places = FindUserPlaces(files);
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    for (const QString& directory :
         {QFileInfo(documents).path(), QStandardPaths::writableLocation(QStandardPaths::HomeLocation)})
        if (const auto path = files.PathFromHost(FromQt(directory)))
            places.homes.push_back(AddBackslash(*path));
    return places;
}

LocationAdvisor::LocationAdvisor(const FileSystem& files, const Settings& settings, bool stagingMustBeEmpty,
                                 QObject* parent)
    : QObject(parent), ground(std::make_shared<Ground>(files, settings, stagingMustBeEmpty)), link(new Link{{}, this}),
      pause(new QTimer(this)) {
    pause->setSingleShot(true);
    pause->setInterval(Pause);
    connect(pause, &QTimer::timeout, this, &LocationAdvisor::Look);
}

LocationAdvisor::~LocationAdvisor() {
    const std::lock_guard lock(link->mutex);
    link->advisor = nullptr;
}

void LocationAdvisor::Ask(const Locations& newlyEntered) {
    entered = newlyEntered;
    isAskedAgain = true;
    pause->start();
}

void LocationAdvisor::Look() {
    if (isLooking)
        return; // and again when it has come back
    isAskedAgain = false;
    const auto look = [to = link, on = ground, what = entered] {
        const LocationWords words = AdviseOn(*on->files, on->places, on->settings, what, on->stagingMustBeEmpty);
        const std::lock_guard lock(to->mutex);
        if (LocationAdvisor* advisor = to->advisor)
            QMetaObject::invokeMethod(
                advisor, [advisor, words] { advisor->Take(words); }, Qt::QueuedConnection);
    };
    try {
        std::thread(look).detach();
        isLooking = true;
    } catch (const std::system_error&) {
        // The system has no more threads: there is no word.
    }
}

void LocationAdvisor::Take(const LocationWords& words) {
    isLooking = false;
    if (!isAskedAgain)
        emit Answered(words);
    else if (!pause->isActive())
        Look();
}

} // namespace korvadex
