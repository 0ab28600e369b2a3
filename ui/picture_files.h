// Picture files that are chosen, dropped or copied, and the picture on the clipboard, as packages take them.
#pragma once

#include "media/picture_import.h"
#include "platform/file_system.h"

#include <QString>
#include <QStringList>

class QMimeData;

namespace korvadex {

// JPEG and GIF files stay as they are, all others become JPEG.
class QtPictureConverter : public PictureConverter {
  public:
    explicit QtPictureConverter(const FileSystem& fileSystem) : files(fileSystem) {}
    PreparedPicture Prepare(const std::string& path) override;

  private:
    const FileSystem& files;
};

// "Pictures (*.bmp *.jpg ...)", for the file dialog.
QString PictureFileFilter();
// The local files among what is dragged or copied whose names say that they are pictures, as host paths.
QStringList PictureFilesIn(const QMimeData& data);
// With the paths that the program knows them by.
OfferedPictures OfferFiles(const FileSystem& files, const QStringList& hostPaths);
// Picture files; where there is none, the picture itself.
OfferedPictures OfferContent(const FileSystem& files, const QMimeData& data);

} // namespace korvadex
