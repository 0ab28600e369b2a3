#include "ui/frmFileList.h"

#include "app/overviews.h"
#include "ui/qt_text.h"
#include "ui/window_geometry.h"
#include "ui_frmFileList.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>

namespace korvadex {

frmFileList::frmFileList(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmFileList>()) {
    ui->setupUi(this);
    ui->lstFileList->installEventFilter(this);
    ui->txtFilter->installEventFilter(this);
    connect(ui->txtFilter, &QLineEdit::textChanged, this, &frmFileList::ApplyFilter);
    connect(ui->lstFileList, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem* item) { emit LineChosen(ui->lstFileList->row(item)); });
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::close);
    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] {
        ui->txtFilter->setFocus(Qt::ShortcutFocusReason);
        ui->txtFilter->selectAll();
    });
}

frmFileList::~frmFileList() = default;

void frmFileList::ShowLines(const QString& caption, const std::vector<ListLine>& newLines) {
    const bool isRefreshed = isVisible() && caption == windowTitle();
    if (isRefreshed) {
        const int row = ui->lstFileList->currentRow();
        const ListLine line = row >= 0 ? lines[std::size_t(row)] : ListLine{};
        const int scrolled = ui->lstFileList->verticalScrollBar()->value();
        FillList(newLines);
        if (row >= 0)
            ui->lstFileList->setCurrentRow(RowNow(row, line));
        ApplyFilter();
        ui->lstFileList->doItemsLayout(); // the range of the scroll bar, now
        ui->lstFileList->verticalScrollBar()->setValue(scrolled);
        return;
    }
    setWindowTitle(caption);
    ui->lstFileList->setAccessibleName(caption);
    FillList(newLines);
    ui->txtFilter->clear();
    ui->lstFileList->scrollToTop();
    ui->lstFileList->setFocus();
    show();
    raise();
}

void frmFileList::FillList(const std::vector<ListLine>& newLines) {
    lines = newLines;
    QStringList texts;
    for (const auto& line : lines)
        texts.append(ToQt(LineText(line)));
    ui->lstFileList->clear();
    ui->lstFileList->addItems(texts);
}

int frmFileList::RowNow(int row, const ListLine& line) const {
    // The nearest of that name, which may have been installed or removed meanwhile; else the same place.
    const int count = int(lines.size());
    const auto isSame = [&](int at) {
        const auto& other = lines[std::size_t(at)];
        return other.package.name == line.package.name && (other.IsHeading() ? other == line : !line.IsHeading());
    };
    for (int distance = 0; distance < std::max(count, row + 1); ++distance)
        for (const int at : {row - distance, row + distance})
            if (at >= 0 && at < count && isSame(at))
                return at;
    return std::min(row, count - 1);
}

void frmFileList::ApplyFilter() {
    const QString filter = ui->txtFilter->text().trimmed();
    const auto matches = [&](QStringView text) { return text.contains(filter, Qt::CaseInsensitive); };
    // From below, so that a heading knows whether anything of its category is seen.
    bool hasPackages = false, isAnySeen = false;
    int first = -1;
    for (int row = ui->lstFileList->count() - 1; row >= 0; --row) {
        auto* item = ui->lstFileList->item(row);
        const ListLine& line = lines[std::size_t(row)];
        const bool isHeading = line.IsHeading(), isPackage = !line.package.name.empty();
        bool isMatch = false;
        if (isHeading && !hasPackages)
            isMatch = matches(ToQt(line.package.category));
        else if (isPackage)
            isMatch = matches(item->text());
        if (isMatch)
            first = row;
        item->setHidden(!filter.isEmpty() && !isMatch && !(isHeading && isAnySeen));
        if (isHeading)
            hasPackages = isAnySeen = false;
        else if (isPackage) {
            hasPackages = true;
            isAnySeen = isAnySeen || isMatch;
        }
    }
    // Enter in the field takes the first that is left.
    if (!filter.isEmpty() && !IsSeen(ui->lstFileList->currentRow()))
        ui->lstFileList->setCurrentRow(first);
    if (const auto* current = ui->lstFileList->currentItem())
        ui->lstFileList->scrollToItem(current);
}

bool frmFileList::IsSeen(int row) const {
    return row >= 0 && !ui->lstFileList->item(row)->isHidden();
}

void frmFileList::ApplyGeometry(const WindowGeometry& geometry) {
    if (geometry.height <= 0 || geometry.width <= 0)
        return;
    // A run that never showed the window saves no place for it: it stands over the main window.
    const bool hasPlace = geometry.top != 0 || geometry.left != 0;
    SetGeometryInTwips(*this,
                       {hasPlace ? std::optional(geometry.top) : std::nullopt,
                        hasPlace ? std::optional(geometry.left) : std::nullopt, geometry.height, geometry.width});
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
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const bool isInFilter = watched == ui->txtFilter;
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (const int row = ui->lstFileList->currentRow(); IsSeen(row))
            emit LineChosen(row);
        return true;
    case Qt::Key_Escape: // closes the window when there is nothing to clear
        if (!isInFilter || ui->txtFilter->text().isEmpty())
            break;
        ui->txtFilter->clear();
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (isInFilter) {
            QCoreApplication::sendEvent(ui->lstFileList, event);
            return true;
        }
        break;
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace korvadex
