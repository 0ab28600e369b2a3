#include "ui/frmFileList.h"

#include "ui/qt_text.h"
#include "ui/window_geometry.h"
#include "ui_frmFileList.h"

#include <QKeyEvent>

namespace korvadex {

frmFileList::frmFileList(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmFileList>()) {
    ui->setupUi(this);
    ui->lstFileList->installEventFilter(this);
    connect(ui->lstFileList, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem* item) { emit LineChosen(item->text()); });
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::close);
}

frmFileList::~frmFileList() = default;

void frmFileList::ShowLines(const QString& caption, const std::vector<std::string>& lines) {
    setWindowTitle(caption);
    ui->lstFileList->setAccessibleName(caption);
    ui->lstFileList->clear();
    for (const auto& line : lines)
        ui->lstFileList->addItem(ToQt(line));
    show();
    raise();
}

void frmFileList::ApplyGeometry(const WindowGeometry& geometry) {
    if (geometry.height <= 0 || geometry.width <= 0)
        return;
    SetGeometryInTwips(*this, {geometry.top, geometry.left, geometry.height, geometry.width});
    lastGeometry = geometry;
}

std::optional<WindowGeometry> frmFileList::LastGeometry() const {
    return isVisible() ? GeometryInTwips(*this) : lastGeometry;
}

void frmFileList::hideEvent(QHideEvent* event) {
    if (!event->spontaneous())
        lastGeometry = GeometryInTwips(*this);
    QDialog::hideEvent(event);
}

bool frmFileList::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && ui->lstFileList->currentItem()) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            emit LineChosen(ui->lstFileList->currentItem()->text());
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace korvadex
