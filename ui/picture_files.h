// Picture files on the disk and pictures on the clipboard, by way of Qt's readers.
#pragma once

#include "media/picture_import.h"
#include "platform/file_system.h"

#include <QImage>
#include <QString>
#include <QStringList>

class QMimeData;

namespace korvadex {

struct ReadPicture {
    QImage image;    // null when there is a problem
    QSize natural;   // of the picture in the file, turned as it is shown
    QString problem; // the cause and the next step: "the file is empty.  Delete it ..."
};

// Reads a file of any format that Qt knows by its content, no larger than box (device pixels; an invalid one
// sets no bound). A picture whose decoding would take too much memory is a problem. Safe in any thread.
ReadPicture ReadPictureFile(const QString& hostPath, const QSize& box = {});

// For PictureConverter: JPEG and GIF files stay as they are, all others become JPEG.
PreparedPicture PreparePicture(const QString& hostPath);

// "Pictures (*.bmp *.jpg ...)", for the file dialog.
QString PictureFileFilter();
// The local files among what is dragged or copied whose names say that they are pictures, as host paths.
QStringList PictureFilesIn(const QMimeData& data);
// With the paths that the program knows them by.
OfferedPictures OfferFiles(const FileSystem& files, const QStringList& hostPaths);
// Picture files; where there is none, the picture itself.
OfferedPictures OfferContent(const FileSystem& files, const QMimeData& data);

} // namespace korvadex
