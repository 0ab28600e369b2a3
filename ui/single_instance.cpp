#include "ui/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QLockFile>

namespace korvadex {

namespace {

constexpr int LongestStart = 10000, ConnectTime = 1000, AnswerTime = 3000; // ms
constexpr int MaxAttempts = 10;

// The same for all paths that lead there, another one for another user.
QString NameOf(const QString& directory) {
    const QString user = qEnvironmentVariable("USER", qEnvironmentVariable("USERNAME"));
    const QString place = QFileInfo(directory).canonicalFilePath() + '\n' + user;
    const auto hash = QCryptographicHash::hash(place.toUtf8(), QCryptographicHash::Sha1);
    return "korvadex-" + QString::fromLatin1(hash.toHex());
}

} // namespace

SingleInstance::SingleInstance(const QString& directory) : name(NameOf(directory)) {
    // Such a name is gone with its process.
    server.setSocketOptions(QLocalServer::AbstractNamespaceOption);
    connect(&server, &QLocalServer::newConnection, this, &SingleInstance::Answer);
}

SingleInstance::Outcome SingleInstance::Claim() {
    // Of two that start at one moment the second is to find the first listening.
    QLockFile starting(QDir::temp().filePath(name + ".lock"));
    starting.setStaleLockTime(LongestStart);
    static_cast<void>(starting.tryLock(LongestStart));

    for (int attempt = 0; attempt < MaxAttempts; ++attempt) {
        QLocalSocket first;
        first.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
        first.connectToServer(name);
        if (first.waitForConnected(ConnectTime)) {
            if (first.waitForReadyRead(AnswerTime))
                return Outcome::Shown;
            if (first.state() == QLocalSocket::ConnectedState)
                return Outcome::Busy;
            continue; // it has just ended
        }
        if (server.listen(name) || server.serverError() != QAbstractSocket::AddressInUseError)
            return Outcome::First;
    }
    return Outcome::Busy;
}

void SingleInstance::GiveUp() {
    server.close();
}

void SingleInstance::Answer() {
    while (QLocalSocket* other = server.nextPendingConnection()) {
        connect(other, &QLocalSocket::disconnected, other, &QObject::deleteLater);
        emit Asked();
        other->write("shown");
        other->disconnectFromServer();
    }
}

} // namespace korvadex
