#include "ui/picture_reader.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>

namespace korvadex {

namespace {

// Beyond these a picture is not even begun: a file of a few bytes may claim to hold any number of pixels.
constexpr qint64 MostBytes = 256 * 1024 * 1024;
constexpr qint64 MostMegabytes = 256; // of a picture in memory

constexpr const char* Photographs[] = {"jpeg", "gif", "png", "bmp", "webp", "tiff"};

LoadedPicture Trouble(const QString& cause, const QString& advice) {
    return {{}, {}, cause, advice};
}

LoadedPicture TooLarge(const QSize& size) {
    return Trouble(QString("the picture is too large (%1 x %2 pixels)").arg(size.width()).arg(size.height()),
                   "Save a smaller copy of it with a paint program.");
}

LoadedPicture Damaged() {
    return Trouble("the file is damaged", "Put a whole copy in its place, or delete it.");
}

// In memory, before it is made smaller.
qint64 Megabytes(const QSize& size, QImage::Format format) {
    const qint64 bits = std::max<qint64>(32, QImage::toPixelFormat(format).bitsPerPixel());
    return qint64(size.width()) * size.height() * bits / 8 / 1024 / 1024;
}

// The end of a JPEG file stands behind its last scan; without it the picture was cut off.
bool IsCutOff(QIODevice& jpeg) {
    jpeg.seek(0);
    const QByteArray bytes = jpeg.readAll();
    return bytes.lastIndexOf("\xFF\xD9") < bytes.lastIndexOf("\xFF\xDA");
}

} // namespace

LoadedPicture DecodePicture(QIODevice& device, const QSize& box, PictureFormats formats) {
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    const bool isPhotograph =
        std::find(std::begin(Photographs), std::end(Photographs), format) != std::end(Photographs);
    if (!reader.canRead() || (!isPhotograph && formats == PictureFormats::Photographs))
        return Trouble("the file holds no picture", "It may be misnamed: try another program, or delete it.");
    const QSize stored = reader.size();
    if (stored.isValid() && Megabytes(stored, reader.imageFormat()) > MostMegabytes)
        return TooLarge(stored);
    // One limit for all threads, so it is set once.
    [[maybe_unused]] static const bool isLimited = (QImageReader::setAllocationLimit(MostMegabytes), true);
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize most = isTurned ? box.transposed() : box;
    if (box.isValid() && (stored.width() > most.width() || stored.height() > most.height()))
        reader.setScaledSize(stored.scaled(most, Qt::KeepAspectRatio).expandedTo({1, 1}));
    LoadedPicture picture;
    picture.image = reader.read();
    if (picture.image.isNull())
        return Damaged();
    if (format == "jpeg" && IsCutOff(device)) {
        picture.trouble = Damaged().trouble;
        picture.advice = Damaged().advice;
    }
    picture.natural = !stored.isValid() ? picture.image.size() : isTurned ? stored.transposed() : stored;
    return picture;
}

LoadedPicture CheckPictureFile(const QString& hostPath) {
    const QFileInfo file(hostPath);
    if (!file.isFile())
        return Trouble("the file is no longer there", "Press F5 to see what the package holds now.");
    if (!file.isReadable())
        return Trouble("access to the file was denied", "Give yourself the right to read it.");
    if (file.size() == 0)
        return Trouble("the file is empty", "Delete it, or put a whole copy in its place.");
    return {};
}

PictureBytes ReadPictureBytes(const QString& hostPath) {
    if (const LoadedPicture failure = CheckPictureFile(hostPath); !failure.trouble.isEmpty())
        return {{}, failure};
    QFile file(hostPath);
    if (file.size() > MostBytes)
        return {{}, Trouble("the file is too large", "Save a smaller copy of it with a paint program.")};
    if (!file.open(QIODevice::ReadOnly))
        return {{}, Trouble("the file cannot be read", "Close the program that uses it.")};
    return {file.readAll(), {}};
}

LoadedPicture ReadPictureFile(const QString& hostPath, const QSize& box) {
    PictureBytes read = ReadPictureBytes(hostPath);
    if (!read.failure.trouble.isEmpty())
        return read.failure;
    QBuffer buffer(&read.bytes);
    buffer.open(QIODevice::ReadOnly);
    return DecodePicture(buffer, box);
}

} // namespace korvadex
