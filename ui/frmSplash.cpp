#include "ui/frmSplash.h"

#include "ui/frmAbout.h"
#include "ui/icons.h"
#include "ui_frmSplash.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScreen>
#include <QTimer>

namespace korvadex {

namespace {

constexpr int SplashTime = 700; // ms

} // namespace

frmSplash::frmSplash(std::function<void()> showHangar)
    : QFrame(nullptr, Qt::SplashScreen), ui(std::make_unique<Ui::frmSplash>()) {
    ui->setupUi(this);
    ui->lblVersion->setText(VersionText());
    ui->lblIcon->setPixmap(NamedIcon("korvadex").pixmap(QSize(96, 96), devicePixelRatioF()));
    move(screen()->availableGeometry().center() - rect().center());

    auto* timer = new QTimer(this);
    timer->setObjectName("Timer1");
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, [this, showHangar = std::move(showHangar)] {
        showHangar();
        hide();
    });
    timer->start(SplashTime);
    QCoreApplication::instance()->installEventFilter(this);
}

frmSplash::~frmSplash() = default;

bool frmSplash::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && watched != this && watched->isWidgetType() &&
        static_cast<QWidget*>(watched)->isWindow()) {
        QCoreApplication::instance()->removeEventFilter(this);
        hide();
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace korvadex
