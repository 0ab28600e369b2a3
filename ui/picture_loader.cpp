#include "ui/picture_loader.h"

#include "ui/qt_text.h"

#include <QBuffer>

#include <algorithm>

namespace korvadex {

PictureLoader::PictureLoader(const FileSystem& fileSystem, QObject* parent) : QObject(parent), files(fileSystem) {
    pool.setMaxThreadCount(1);
}

PictureLoader::~PictureLoader() {
    pool.waitForDone();
}

void PictureLoader::Want(const std::vector<std::string>& newPaths, const QSize& newBox) {
    paths = newPaths;
    box = newBox;
    std::erase_if(entries,
                  [&](const auto& entry) { return std::find(paths.begin(), paths.end(), entry.first) == paths.end(); });
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
    if (const PictureBytes read = ReadPictureBytes(ToQt(files.HostPath(path))); read.failure.trouble.isEmpty())
        Decode(path, read.bytes);
    else
        Take(path, box, read.failure);
}

void PictureLoader::Decode(const std::string& path, const QByteArray& bytes) {
    isDecoding = true;
    pool.start([this, path, bytes, size = box, begun = generation] {
        QBuffer buffer;
        buffer.setData(bytes);
        buffer.open(QIODevice::ReadOnly);
        const LoadedPicture picture = DecodePicture(buffer, size);
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
