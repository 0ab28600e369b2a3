#include "ui/picture_files.h"

#include "ui/picture_reader.h"
#include "ui/qt_text.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

namespace korvadex {

namespace {

constexpr int JpegQuality = 90;

QImage OnWhite(const QImage& image) {
    if (!image.hasAlphaChannel())
        return image;
    QImage flat(image.size(), QImage::Format_RGB32);
    flat.fill(Qt::white);
    QPainter(&flat).drawImage(flat.rect(), image);
    return flat;
}

// "" when it could not be done.
std::string ToJpeg(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(JpegQuality);
    return writer.write(OnWhite(image)) ? bytes.toStdString() : std::string();
}

constexpr const char* NoJpeg = "it cannot be saved as JPEG.  Save it as JPEG with a paint program.";

} // namespace

PreparedPicture QtPictureConverter::Prepare(const std::string& path) {
    const QString hostPath = ToQt(files.HostPath(path));
    const auto problem = [](const LoadedPicture& failed) {
        return PreparedPicture{{}, {}, FromQt(failed.trouble + ".  " + failed.advice)};
    };
    if (const LoadedPicture failure = CheckPictureFile(hostPath); !failure.trouble.isEmpty())
        return problem(failure);
    const QByteArray format = QImageReader::imageFormat(hostPath); // by content
    if (format == "jpeg" || format == "gif")
        return {format == "gif" ? ".gif" : ".jpg", {}, {}};
    QFile file(hostPath);
    file.open(QIODevice::ReadOnly);
    const LoadedPicture picture = DecodePicture(file, {}, PictureFormats::All);
    if (picture.image.isNull())
        return problem(picture);
    const std::string jpeg = ToJpeg(picture.image);
    return {{}, jpeg, jpeg.empty() ? NoJpeg : ""};
}

QString PictureFileFilter() {
    QStringList patterns;
    for (const QByteArray& format : QImageReader::supportedImageFormats())
        patterns.append("*." + QString::fromLatin1(format));
    return "Pictures (" + patterns.join(' ') + ");;All files (*)";
}

QStringList PictureFilesIn(const QMimeData& data) {
    const auto formats = QImageReader::supportedImageFormats();
    QStringList pictures;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile() && formats.contains(QFileInfo(url.toLocalFile()).suffix().toLower().toLatin1()))
            pictures.append(url.toLocalFile());
    return pictures;
}

OfferedPictures OfferFiles(const FileSystem& files, const QStringList& hostPaths) {
    OfferedPictures offered;
    for (const QString& hostPath : hostPaths)
        offered.files.push_back(files.SourceFromHost(FromQt(hostPath)));
    return offered;
}

OfferedPictures OfferContent(const FileSystem& files, const QMimeData& data) {
    OfferedPictures offered = OfferFiles(files, PictureFilesIn(data));
    if (!offered.IsEmpty() || !data.hasImage())
        return offered;
    const auto image = qvariant_cast<QImage>(data.imageData());
    offered.jpeg = ToJpeg(image);
    if (image.isNull())
        offered.problem = "the program that it came from did not hand it over.  Copy it once more.";
    else if (offered.jpeg.empty())
        offered.problem = NoJpeg;
    return offered;
}

} // namespace korvadex
