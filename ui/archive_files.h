// Archives that are chosen in a file dialog or dragged to a window.
#pragma once

#include <QStringList>

class QFileDialog;
class QMimeData;

namespace korvadex {

// The dialog offers zip archives first, then all kinds and the programs that unpack themselves. It begins with the kind
// that was shown last (QFileDialog::selectedNameFilter); "" for the first.
void OfferArchives(QFileDialog& dialog, const QString& kind);
// The local files among what is dragged (none for null) whose names say that they are archives, and directories, as
// host paths.
QStringList ArchiveFilesIn(const QMimeData* data);

} // namespace korvadex
