#include "ui/status_bar.h"

#include "ui/qt_text.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>

namespace korvadex {

namespace {

// Says with dots that its text is cut off, and shows all of it in its tool tip.
class StatusLabel : public QLabel {
  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                              SeenText(), foregroundRole());
    }
    bool event(QEvent* event) override {
        if (event->type() == QEvent::ToolTip)
            setToolTip(SeenText() == text() ? QString() : PlainToolTip(text()));
        return QLabel::event(event);
    }

  private:
    QString SeenText() const { return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()); }
};

} // namespace

StatusBar::StatusBar(QWidget* parent)
    : QStatusBar(parent), lblStatus(new StatusLabel), prbProgress(new QProgressBar), cmdStop(new QPushButton("Stop")),
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
