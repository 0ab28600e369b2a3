#include "ui/archive_files.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace korvadex {

void OfferArchives(QFileDialog& dialog) {
    dialog.setNameFilter("Zip files (*.zip);;Zip files that are programs (*.exe)");
    dialog.setDefaultSuffix("zip");
}

QStringList ArchiveFilesIn(const QMimeData* data) {
    QStringList archives;
    for (const QUrl& url : data ? data->urls() : QList<QUrl>()) {
        const QString name = url.fileName();
        const bool isArchive = name.endsWith(".zip", Qt::CaseInsensitive) || name.endsWith(".exe", Qt::CaseInsensitive);
        if (url.isLocalFile() && (isArchive || QFileInfo(url.toLocalFile()).isDir()))
            archives.append(url.toLocalFile());
    }
    return archives;
}

} // namespace korvadex
