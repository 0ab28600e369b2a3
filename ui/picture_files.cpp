#include "ui/picture_files.h"

#include "ui/qt_text.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

namespace korvadex {

namespace {

constexpr qint64 MostPixels = 64 * 1024 * 1024; // 256 MB decoded
constexpr int JpegQuality = 90;

ReadPicture Unreadable(const QString& problem) {
    return {{}, {}, problem};
}

// What can be said before the content is looked at; "" when nothing is wrong.
QString ProblemOfFile(const QFileInfo& file) {
    if (!file.isFile())
        return "the file is no longer there.  Press F5 to see what the package holds now.";
    if (!file.isReadable())
        return "access to the file was denied.  Give yourself the right to read it.";
    if (file.size() == 0)
        return "the file is empty.  Delete it, or put a whole copy in its place.";
    return {};
}

QString TooLarge(const QSize& size) {
    return QString("it is too large (%1 x %2 pixels).  Save a smaller copy of it with a paint program.")
        .arg(size.width())
        .arg(size.height());
}

void Prepare(QImageReader& reader) {
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
}

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

ReadPicture ReadPictureFile(const QString& hostPath, const QSize& box) {
    if (const QString problem = ProblemOfFile(QFileInfo(hostPath)); !problem.isEmpty())
        return Unreadable(problem);
    QImageReader reader(hostPath);
    Prepare(reader);
    if (!reader.canRead())
        return Unreadable(
            "the file holds no picture.  It may be misnamed: try another program, or delete it.");
    const QSize stored = reader.size();
    if (qint64(stored.width()) * stored.height() > MostPixels)
        return Unreadable(TooLarge(stored));
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize bound = isTurned ? box.transposed() : box;
    if (box.isValid() && (stored.width() > bound.width() || stored.height() > bound.height()))
        reader.setScaledSize(stored.scaled(bound, Qt::KeepAspectRatio).expandedTo({1, 1}));
    ReadPicture result;
    result.image = reader.read();
    if (result.image.isNull())
        return Unreadable("the file is damaged.  Put a whole copy in its place, or delete it.");
    result.natural = !stored.isValid() ? result.image.size() : isTurned ? stored.transposed() : stored;
    return result;
}

PreparedPicture PreparePicture(const QString& hostPath) {
    const QString problem = ProblemOfFile(QFileInfo(hostPath));
    if (!problem.isEmpty())
        return {{}, {}, FromQt(problem)};
    const QByteArray format = QImageReader::imageFormat(hostPath); // by content
    if (format == "jpeg" || format == "gif")
        return {format == "gif" ? ".gif" : ".jpg", {}, {}};
    const ReadPicture picture = ReadPictureFile(hostPath);
    if (picture.image.isNull())
        return {{}, {}, FromQt(picture.problem)};
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
    for (const QString& hostPath : hostPaths) {
        if (const auto path = files.PathFromHost(FromQt(hostPath)))
            offered.files.push_back(*path);
        else
            offered.unreachable.push_back(FromQt(hostPath));
    }
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
