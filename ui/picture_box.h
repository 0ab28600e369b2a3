// The picture of the package that is shown, with the buttons that belong to it.
#pragma once

#include <QImage>
#include <QWidget>

#include <memory>

namespace Ui {
class PictureBox;
}

namespace korvadex {

// Paints one picture file, decoded at the size shown and never enlarged.
class PictureView : public QWidget {
    Q_OBJECT

  public:
    explicit PictureView(QWidget* parent = nullptr);

    // A path as the host names it; "" for no picture.
    void SetPicture(const QString& hostPath);
    const QImage& Picture() const { return picture; }

    QSize sizeHint() const override { return {320, 220}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void Decode();

    QString path;
    QImage picture;
    QSize natural; // in the file, turned as it is shown
    QTimer* decodeAgain;
};

class PictureBox : public QWidget {
    Q_OBJECT

  public:
    explicit PictureBox(QWidget* parent = nullptr);
    ~PictureBox() override;

    // The file's host path and the name that is shown beside it.
    void ShowPicture(const QString& hostPath, const QString& fileName);
    void ShowNoPicture();

  private:
    std::unique_ptr<Ui::PictureBox> ui;
};

} // namespace korvadex
