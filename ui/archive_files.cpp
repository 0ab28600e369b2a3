#include "ui/archive_files.h"

#include "package/archive_names.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace korvadex {

void OfferArchives(QFileDialog& dialog, const QString& kind) {
    dialog.setNameFilters({"Zip files (*.zip)",
                           QString::fromStdString("All archives (*.zip " + OtherArchivePatterns() + ")"),
                           "Zip files that are programs (*.exe)"});
    dialog.setDefaultSuffix("zip");
    dialog.selectNameFilter(kind);
}

QStringList ArchiveFilesIn(const QMimeData* data) {
    QStringList archives;
    for (const QUrl& url : data ? data->urls() : QList<QUrl>()) {
        const bool isArchive = MayBeArchiveName(url.fileName().toStdString());
        if (url.isLocalFile() && (isArchive || QFileInfo(url.toLocalFile()).isDir()))
            archives.append(url.toLocalFile());
    }
    return archives;
}

} // namespace korvadex
