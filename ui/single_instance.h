// One program at a time for one directory of settings.
#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace korvadex {

class SingleInstance : public QObject {
    Q_OBJECT

  public:
    enum class Outcome {
        First, // and those that start later are told of by Asked
        Shown, // another one runs, and was asked to come to the front
        Busy   // another one runs, and gives no answer at the moment
    };

    // The directory of the settings, as the host names it.
    explicit SingleInstance(const QString& directory);

    // Takes the place, if it is free. What a killed program left behind does not keep anybody out, and where the
    // system offers no way to tell the place counts as free.
    Outcome Claim();
    // Another one may take the place.
    void GiveUp();

  signals:
    void Asked();

  private:
    void Answer();

    const QString name;
    QLocalServer server;
};

} // namespace korvadex
