// Archives that are chosen in a file dialog or dragged to a window.
#pragma once

#include <QStringList>

class QMimeData;

namespace korvadex {

// For the file dialog: zip archives first, then the programs that unpack themselves.
QString ArchiveFileFilter();
// The local files among what is dragged (none for null) whose names say that they are archives, as host paths.
QStringList ArchiveFilesIn(const QMimeData* data);

} // namespace korvadex
