// Pictures decoded from files, by way of Qt's readers.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

class QIODevice;

namespace korvadex {

struct LoadedPicture {
    QImage image;    // null when there is nothing that can be shown
    QSize natural;   // in pixels of the file, turned as it is shown
    QString trouble; // why there is none, or not all of it: "the file is empty"
    QString advice;  // then the next step: "Delete it, or put a whole copy in its place."
};

// Which formats are decoded: those of photographs, or all that Qt knows, drawings of commands among them.
enum class PictureFormats { Photographs, All };

// Goes by the content, not by the name. The picture fits into the box (pixels; an invalid one sets no bound) and is
// never enlarged. One whose decoding would take too much memory is trouble. Safe in any thread.
LoadedPicture DecodePicture(QIODevice& device, const QSize& box, PictureFormats formats = PictureFormats::Photographs);

// The whole file, which is closed again at once: another program, or a command, may want to rename or delete it.
struct PictureBytes {
    QByteArray bytes;
    LoadedPicture failure; // with its trouble when the file cannot be read or is empty
};
PictureBytes ReadPictureBytes(const QString& hostPath);

// Both in one.
LoadedPicture ReadPictureFile(const QString& hostPath, const QSize& box);

// What can be said of a file before its content is looked at; no trouble when nothing is wrong.
LoadedPicture CheckPictureFile(const QString& hostPath);

} // namespace korvadex
