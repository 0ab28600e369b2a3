#include "ui/frmFileList.h"

#include "app/overviews.h"
#include "ui/qt_text.h"
#include "ui/window_geometry.h"
#include "ui_frmFileList.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>
#include <utility>

namespace korvadex {

frmFileList::frmFileList(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmFileList>()) {
    ui->setupUi(this);
    ui->lstFileList->installEventFilter(this);
    ui->txtFilter->installEventFilter(this);
    connect(ui->txtFilter, &QLineEdit::textChanged, this, &frmFileList::ApplyFilter);
    connect(ui->lstFileList, &QListWidget::itemClicked, this, [this](const QListWidgetItem* item) {
        if (QApplication::keyboardModifiers() == Qt::NoModifier && ui->lstFileList->selectedItems().size() <= 1)
            emit LineChosen(ui->lstFileList->row(item)); // otherwise lines are being selected
    });
    connect(ui->lstFileList, &QListWidget::customContextMenuRequested, this, &frmFileList::ShowMenu);
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
        std::vector<std::pair<int, ListLine>> selected;
        for (const auto* item : ui->lstFileList->selectedItems())
            selected.emplace_back(ui->lstFileList->row(item), lines[std::size_t(ui->lstFileList->row(item))]);
        const int scrolled = ui->lstFileList->verticalScrollBar()->value();
        FillList(newLines);
        if (row >= 0)
            ui->lstFileList->setCurrentRow(RowNow(row, line));
        if (selected.size() > 1)
            for (const auto& [at, before] : selected)
                if (const int now = RowNow(at, before); lines[std::size_t(now)].package == before.package)
                    ui->lstFileList->item(now)->setSelected(true);
        ApplyFilter();
        ui->lstFileList->doItemsLayout(); // the range of the scroll bar, now
        ui->lstFileList->verticalScrollBar()->setValue(scrolled);
        return;
    }
    setWindowTitle(caption);
    ui->lstFileList->setAccessibleName(caption);
    const bool isReport = std::ranges::any_of(newLines, [](const ListLine& line) { return !line.text.empty(); });
    ui->lstFileList->setWordWrap(isReport); // sentences
    ui->lstFileList->setResizeMode(isReport ? QListView::Adjust : QListView::Fixed);
    FillList(newLines);
    ui->txtFilter->clear();
    ui->lstFileList->scrollToTop();
    ui->lstFileList->setFocus();
    show();
    raise();
    activateWindow();
    isNew = true;
}

void frmFileList::TakeKeyboard() {
    if (std::exchange(isNew, false) && isVisible())
        activateWindow();
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

std::vector<PackageRef> frmFileList::SelectedPackages() const {
    std::vector<PackageRef> packages;
    for (std::size_t row = 0; row < lines.size(); ++row) {
        const PackageRef& package = lines[row].package;
        if (!package.IsNone() && IsSeen(int(row)) && ui->lstFileList->item(int(row))->isSelected() &&
            std::find(packages.begin(), packages.end(), package) == packages.end())
            packages.push_back(package);
    }
    return packages;
}

void frmFileList::Give(const PackageCommand& command) {
    if (const auto packages = SelectedPackages(); !packages.empty())
        emit CommandGiven(command, packages);
}

void frmFileList::Follow(const PackageRef& package) {
    if (package == std::exchange(followed, package) || package.IsNone() || ui->lstFileList->selectedItems().size() > 1)
        return;
    const auto isLine = [&](int row) {
        const PackageRef& other = lines[std::size_t(row)].package;
        return other.name == package.name && (other.category.empty() || other == package) && IsSeen(row);
    };
    if (const int current = ui->lstFileList->currentRow(); current >= 0 && isLine(current))
        return;
    for (int row = 0; row < int(lines.size()); ++row)
        if (isLine(row))
            return ui->lstFileList->setCurrentRow(row);
}

void frmFileList::ShowMenu(const QPoint& at) {
    const std::vector<PackageRef> packages = SelectedPackages();
    const auto count = packages.size();
    if (count == 0)
        return;
    auto* menu = new QMenu(this);
    menu->setObjectName("mnuPackages");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (count == 1) {
        QAction* show = menu->addAction("&Show", this, [this] { emit LineChosen(ui->lstFileList->currentRow()); });
        show->setObjectName("mnuShowPackage");
        QAction* rename = menu->addAction(RenameCommand().caption);
        connect(
            rename, &QAction::triggered, this, [this] { Give(RenameCommand()); }, Qt::QueuedConnection);
        rename->setObjectName(RenameCommand().entry);
        rename->setShortcut(QKeySequence(RenameCommand().shortcut));
        rename->setShortcutContext(Qt::WidgetShortcut);
        rename->setShortcutVisibleInContextMenu(true);
        menu->addSeparator();
    } else {
        menu->addSection(QString("%1 packages").arg(count));
    }
    AddPackageCommands(*menu, packages, canWork, [this](const PackageCommand& command) { Give(command); });
    OpenMenu(*menu, *ui->lstFileList, at);
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
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return QDialog::eventFilter(watched, event);
    const bool isInFilter = watched == ui->txtFilter;
    const auto* pressed = static_cast<QKeyEvent*>(event);
    const PackageCommand* command = isInFilter ? nullptr : PackageCommandOf(*pressed);
    if (event->type() == QEvent::ShortcutOverride) {
        event->setAccepted(command); // the main window has some of the keys, too
        return command;
    }
    if (command) {
        Give(*command);
        return true;
    }
    switch (pressed->key()) {
    case Qt::Key_F2:
        if (!isInFilter && SelectedPackages().size() == 1)
            Give(RenameCommand());
        return true;
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
