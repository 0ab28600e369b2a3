// One picture on a window, with room for some lines of text below it.
#pragma once

#include "ui/picture_reader.h"

#include <QIcon>
#include <QWidget>

namespace korvadex {

class PhotoView : public QWidget {
    Q_OBJECT

  public:
    explicit PhotoView(QWidget* parent = nullptr, int linesOfText = 0);

    // Nothing at all.
    void ShowNothing();
    // An icon in the place of a picture.
    void ShowEmblem(const QIcon& icon);
    // What was loaded, or null while it is not there yet.
    void ShowPicture(const LoadedPicture* loaded, const QString& text);
    void SetMarked(bool isMarkedNow);
    // An icon in a corner, over the picture.
    void ShowBadge(const QIcon& icon);

    // How many pixels of the screen a picture may have here.
    QSize Box() const;
    const LoadedPicture& Picture() const { return picture; }
    const QString& Text() const { return caption; }
    bool IsLoading() const { return content == Content::Loading; }
    bool IsMarked() const { return isMarked; }
    // What is said in the place of the picture, or across a part of one; "" when all of it is there.
    QString Trouble() const;

    QSize sizeHint() const override { return {150, 130}; }
    QSize minimumSizeHint() const override { return {72, 64}; }

  signals:
    void Clicked();
    void DoubleClicked();
    void Resized();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    enum class Content { Nothing, Emblem, Loading, Picture };
    QRect PictureArea() const;
    // Close to the text; without one in the middle.
    QRectF Placed(const QSizeF& size) const;
    QColor TextColor() const;
    void PaintPicture(QPainter& painter) const;
    void PaintPlaceholder(QPainter& painter) const;
    void PaintCaption(QPainter& painter) const;
    void PaintBadge(QPainter& painter) const;

    Content content = Content::Nothing;
    LoadedPicture picture;
    QIcon emblem, badge;
    QString caption;
    bool isMarked = false;
    const int captionLines;
};

} // namespace korvadex
