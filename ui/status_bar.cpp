#include "ui/status_bar.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace korvadex {

StatusBar::StatusBar(QWidget* parent)
    : QStatusBar(parent), lblStatus(new QLabel), prbProgress(new QProgressBar), cmdStop(new QPushButton("Stop")),
      lblCounts(new QLabel) {
    lblStatus->setObjectName("lblStatus");
    lblStatus->setTextFormat(Qt::PlainText);
    lblStatus->setSizePolicy(QSizePolicy::Ignored,
                             QSizePolicy::Preferred); // a long text never widens the window
    lblStatus->setContentsMargins(6, 0, 6, 0);
    addWidget(lblStatus, 1);
    prbProgress->setObjectName("prbProgress");
    prbProgress->setAccessibleName("Progress");
    prbProgress->setMaximumWidth(240);
    prbProgress->hide();
    addPermanentWidget(prbProgress);
    cmdStop->setObjectName("cmdStop");
    cmdStop->setAccessibleName("Stop");
    cmdStop->setToolTip("Stop the command (Esc)");
    cmdStop->setFocusPolicy(Qt::NoFocus);
    cmdStop->hide();
    addPermanentWidget(cmdStop);
    connect(cmdStop, &QPushButton::clicked, this, [this] {
        cmdStop->setEnabled(false);
        emit StopRequested();
    });
    lblCounts->setObjectName("lblCounts");
    lblCounts->setTextFormat(Qt::PlainText);
    lblCounts->setContentsMargins(6, 0, 6, 0);
    addPermanentWidget(lblCounts);
}

void StatusBar::ShowText(const QString& text) {
    lblStatus->setText(text);
}

void StatusBar::ShowCounts(const QString& text) {
    lblCounts->setText(text);
}

void StatusBar::ShowProgress(int minimum, int maximum) {
    prbProgress->setRange(minimum, maximum);
    prbProgress->setValue(minimum);
    prbProgress->show();
    painting.Start();
    SetProgress(minimum);
}

void StatusBar::SetProgress(int value) {
    prbProgress->setValue(value);
    painting.Step();
}

void StatusBar::HideProgress() {
    prbProgress->hide();
}

void StatusBar::OfferStop(bool isOffered) {
    cmdStop->setEnabled(isOffered);
    cmdStop->setVisible(isOffered);
    painting.SetStop(isOffered ? cmdStop : nullptr);
}

} // namespace korvadex
