// The status bar of the main window: what a command says, how far it is, its Stop, and the counts.
#pragma once

#include "ui/painting.h"

#include <QStatusBar>

class QLabel;
class QProgressBar;
class QPushButton;

namespace korvadex {

class StatusBar : public QStatusBar {
    Q_OBJECT

  public:
    explicit StatusBar(QWidget* parent = nullptr);

    void ShowText(const QString& text);
    void ShowCounts(const QString& text);
    // The bar. Showing and stepping keep the window painted.
    void ShowProgress(int minimum, int maximum);
    void SetProgress(int value);
    void HideProgress();
    void OfferStop(bool isOffered);

  signals:
    void StopRequested();

  private:
    QLabel* lblStatus;
    QProgressBar* prbProgress;
    QPushButton* cmdStop;
    QLabel* lblCounts;
    Painting painting;
};

} // namespace korvadex
