#include "ui/picture_loader.h"

#include "platform/text_file.h"
#include "ui/qt_text.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>

namespace korvadex {

namespace {

// Beyond these a picture is not even begun: a file of a few bytes may claim to hold any number of pixels.
constexpr std::uint64_t MostBytes = 64 * 1024 * 1024;
constexpr qint64 MostPixels = 64'000'000;

// Others, such as drawings that are made of commands, may take any time.
constexpr const char* Formats[] = {"jpeg", "gif", "png", "bmp", "webp", "tiff"};

constexpr const char* TooLarge = "This picture is too large to be shown.";
constexpr const char* CannotBeShown = "This picture cannot be shown.";

// The end of a JPEG file stands behind its last scan; without it the picture was cut off.
bool IsCutOff(const QByteArray& jpeg) {
    return jpeg.lastIndexOf("\xFF\xD9") < jpeg.lastIndexOf("\xFF\xDA");
}

LoadedPicture Trouble(const QString& text) {
    return {{}, {}, text};
}

} // namespace

LoadedPicture DecodePicture(const QByteArray& bytes, const QSize& box) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    if (std::find(std::begin(Formats), std::end(Formats), format) == std::end(Formats))
        return Trouble(CannotBeShown);
    const QSize stored = reader.size();
    if (qint64(stored.width()) * stored.height() > MostPixels)
        return Trouble(TooLarge);
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize most = isTurned ? box.transposed() : box;
    if (stored.width() > most.width() || stored.height() > most.height())
        reader.setScaledSize(stored.scaled(most, Qt::KeepAspectRatio).expandedTo({1, 1}));
    LoadedPicture picture{reader.read(), {}, {}};
    if (picture.image.isNull()) {
        // Formats that cannot be decoded smaller need room for all of it.
        const bool isRefused = stored.isValid() && qint64(stored.width()) * stored.height() * 4 >
                                                       qint64(reader.allocationLimit()) * 1024 * 1024;
        return Trouble(isRefused ? TooLarge : CannotBeShown);
    }
    if (format == "jpeg" && IsCutOff(bytes))
        picture.trouble = "This picture is damaged.";
    picture.natural = !stored.isValid() ? picture.image.size() : isTurned ? stored.transposed() : stored;
    return picture;
}

PictureLoader::PictureLoader(const FileSystem& fileSystem, QObject* parent)
    : QObject(parent), files(fileSystem) {
    pool.setMaxThreadCount(1);
}

PictureLoader::~PictureLoader() {
    pool.waitForDone();
}

void PictureLoader::Want(const std::vector<std::string>& newPaths, const QSize& newBox) {
    paths = newPaths;
    box = newBox;
    std::erase_if(entries, [&](const auto& entry) {
        return std::find(paths.begin(), paths.end(), entry.first) == paths.end();
    });
    ContinueLater();
}

void PictureLoader::Forget() {
    paths.clear();
    entries.clear();
    ++generation;
}

const LoadedPicture* PictureLoader::Find(const std::string& path) const {
    const auto found = entries.find(path);
    return found == entries.end() ? nullptr : &found->second.picture;
}

void PictureLoader::ContinueLater() {
    if (isWaiting || isDecoding)
        return;
    isWaiting = true;
    QMetaObject::invokeMethod(this, &PictureLoader::Continue, Qt::QueuedConnection);
}

void PictureLoader::Continue() {
    isWaiting = false;
    const auto next = std::find_if(paths.begin(), paths.end(), [&](const std::string& path) {
        const auto found = entries.find(path);
        return found == entries.end() || found->second.box != box;
    });
    if (next == paths.end() || box.isEmpty())
        return;
    const std::string path = *next;
    const auto info = files.Info(path);
    if (!info)
        Take(path, box,
             Trouble(info.fault() == FileFault::NotFound ? "This picture is no longer there."
                                                         : "This picture cannot be read."));
    else if (info->size == 0)
        Take(path, box, Trouble("This picture file is empty."));
    else if (info->size > MostBytes)
        Take(path, box, Trouble(TooLarge));
    else if (const auto bytes = ReadBytes(files, path))
        Decode(path, QByteArray::fromStdString(*bytes));
    else
        Take(path, box, Trouble("This picture cannot be read: " + ToQt(DescribeFault(bytes.fault())) + "."));
}

void PictureLoader::Decode(const std::string& path, const QByteArray& bytes) {
    isDecoding = true;
    pool.start([this, path, bytes, size = box, begun = generation] {
        const LoadedPicture picture = DecodePicture(bytes, size);
        QMetaObject::invokeMethod(
            this,
            [=, this] {
                isDecoding = false;
                if (begun == generation)
                    Take(path, size, picture);
                else
                    ContinueLater();
            },
            Qt::QueuedConnection);
    });
}

void PictureLoader::Take(const std::string& path, const QSize& size, const LoadedPicture& picture) {
    const bool isWanted = std::find(paths.begin(), paths.end(), path) != paths.end();
    if (isWanted) // perhaps in another size by now: still better than nothing
        entries[path] = {picture, size};
    ContinueLater();
    if (isWanted)
        emit Loaded(path);
}

} // namespace korvadex
