// The picture of the package that is shown, with the buttons that belong to it.
#pragma once

#include "ui/photo_view.h"

#include <QWidget>

#include <memory>

class QTimer;

namespace Ui {
class PictureBox;
}

namespace korvadex {

// Shows one picture file, decoded at the size shown.
class PictureView : public PhotoView {
    Q_OBJECT

  public:
    explicit PictureView(QWidget* parent = nullptr);

    // A path as the host names it; "" for no picture. False when it cannot be shown.
    bool SetPicture(const QString& hostPath, const QString& fileName);

    QSize sizeHint() const override { return {320, 220}; }

  signals:
    void NextRequested(); // a click, or a key
    void PreviousRequested();
    void DeleteRequested();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Decode();

    QString path, name;
    QTimer* decodeAgain;
};

class PictureBox : public QWidget {
    Q_OBJECT

  public:
    explicit PictureBox(QWidget* parent = nullptr);
    ~PictureBox() override;

    // The file's host path, the name that is shown beside it, and which one of how many it is.
    void ShowPicture(const QString& hostPath, const QString& fileName, int index, int count);
    void ShowNoPicture();
    // A file that is none of the package's pictures: it cannot be deleted here, nor made the first. False when it
    // cannot be shown: then one of the others is to be.
    bool ShowOther(const QString& hostPath, const QString& fileName);
    bool IsOther() const { return isOther; }

  signals:
    void NextRequested();
    void PreviousRequested();
    void DeleteRequested();
    void FirstRequested();
    void PasteRequested();
    // Host paths. Sent when the program that they were dragged from no longer waits.
    void PicturesDropped(const QStringList& hostPaths);

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void ShowCount(int index, int count);

    std::unique_ptr<Ui::PictureBox> ui;
    bool isOther = false;
};

} // namespace korvadex
