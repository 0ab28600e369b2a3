// Picture files as pictures of the size that is shown, decoded one after another beside the windows.
#pragma once

#include "platform/file_system.h"
#include "ui/picture_reader.h"

#include <QObject>
#include <QSize>
#include <QString>
#include <QThreadPool>

#include <map>
#include <string>
#include <vector>

class QByteArray;

namespace korvadex {

// The file itself is read at once, in the thread of the windows. The other thread works on those bytes alone.
class PictureLoader : public QObject {
    Q_OBJECT

  public:
    explicit PictureLoader(const FileSystem& files, QObject* parent = nullptr);
    ~PictureLoader() override;

    // The pictures that are wanted, the most urgent first. All others are forgotten. One that is there in another size
    // stays until it is there in this one.
    void Want(const std::vector<std::string>& newPaths, const QSize& newBox);
    // The files may hold something else now.
    void Forget();
    // Null while the picture is not there yet.
    const LoadedPicture* Find(const std::string& path) const;

  signals:
    void Loaded(const std::string& path);

  private:
    struct Entry {
        LoadedPicture picture;
        QSize box;
    };
    void ContinueLater();
    void Continue();
    void Decode(const std::string& path, const QByteArray& bytes);
    void Take(const std::string& path, const QSize& size, const LoadedPicture& picture);

    const FileSystem& files;
    std::vector<std::string> paths;
    QSize box;
    std::map<std::string, Entry> entries;
    bool isDecoding = false, isWaiting = false;
    int generation = 0; // grows when what is being decoded may be out of date
    QThreadPool pool;
};

} // namespace korvadex
