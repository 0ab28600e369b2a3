#include "ui/frmDirSelect.h"

#include "platform/windows_path.h"
#include "ui/input_box.h"
#include "ui/message_box.h"
#include "ui/qt_text.h"
#include "ui/wheel_guard.h"
#include "ui/window_geometry.h"
#include "ui_frmDirSelect.h"

#include <QStyle>

namespace korvadex {

namespace {

constexpr int PathRole = Qt::UserRole;       // the full path, with a trailing backslash
constexpr int IsReadRole = Qt::UserRole + 1; // the subdirectories are in the tree

std::string PathOf(const QTreeWidgetItem* item) {
    return FromQt(item->data(0, PathRole).toString());
}

QTreeWidgetItem* NewItem(const QString& text, const std::string& path, const QIcon& icon) {
    auto* item = new QTreeWidgetItem({text});
    item->setData(0, PathRole, ToQt(path));
    item->setIcon(0, icon);
    // Whether there is anything below is only known when the user opens it.
    item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return item;
}

} // namespace

frmDirSelect::frmDirSelect(FileSystem& fileSystem, std::string startDir, QWidget* parent)
    : QDialog(parent), files(fileSystem), result(std::move(startDir)), ui(std::make_unique<Ui::frmDirSelect>()) {
    ui->setupUi(this);
    KeepWheelFromChoices(*this);
    for (const auto& drive : files.Drives())
        ui->Drive1->addItem(ToQt(drive));
    connect(ui->Drive1, &QComboBox::currentTextChanged, this, [this](const QString& root) { ShowDrive(FromQt(root)); });
    connect(ui->Dir1, &QTreeWidget::itemExpanded, this, &frmDirSelect::ReadSubdirectories);
    connect(ui->cmdNewDirectory, &QPushButton::clicked, this, &frmDirSelect::MakeDirectory);
    connect(ui->cmdOk, &QPushButton::clicked, this, &frmDirSelect::TakeResult);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    ShowDrive(FromQt(ui->Drive1->currentText()));
    if (IsDrivePath(result))
        GoTo(AddBackslash(result));
    ui->Dir1->setFocus();
    FitToScreen(*this);
}

frmDirSelect::~frmDirSelect() = default;

void frmDirSelect::ShowDrive(const std::string& root) {
    ui->Dir1->clear();
    if (root.empty())
        return;
    auto* item = NewItem(ToQt(root), root, style()->standardIcon(QStyle::SP_DriveHDIcon));
    ui->Dir1->addTopLevelItem(item);
    item->setExpanded(true);
    ui->Dir1->setCurrentItem(item);
}

void frmDirSelect::GoTo(const std::string& directory) {
    const int drive = ui->Drive1->findText(ToQt(directory.substr(0, 3)), Qt::MatchFixedString);
    if (drive < 0 || !files.IsDirectory(directory))
        return;
    ui->Drive1->setCurrentIndex(drive);
    QTreeWidgetItem* item = ui->Dir1->topLevelItem(0);
    for (bool isFound = true; isFound && !EqualNoCase(PathOf(item), directory);) {
        item->setExpanded(true);
        isFound = false;
        for (int i = 0; i < item->childCount() && !isFound; ++i) {
            isFound = IsAtOrBelow(directory, PathOf(item->child(i)));
            if (isFound)
                item = item->child(i);
        }
    }
    ui->Dir1->setCurrentItem(item);
    item->setExpanded(true);
    ui->Dir1->scrollToItem(item, QAbstractItemView::PositionAtCenter);
}

void frmDirSelect::ReadSubdirectories(QTreeWidgetItem* item) {
    if (item->data(0, IsReadRole).toBool())
        return;
    item->setData(0, IsReadRole, true);
    const auto entries = files.List(PathOf(item));
    if (entries) {
        const QIcon icon = style()->standardIcon(QStyle::SP_DirIcon);
        for (const DirectoryEntry& entry : *entries) {
            const std::string path = PathOf(item) + entry.name + "\\";
            const bool isDirectory = entry.info.kind == EntryKind::Directory ||
                                     (entry.info.kind == EntryKind::Link && files.IsDirectory(path));
            if (isDirectory && !IsOwnName(entry.name))
                item->addChild(NewItem(ToQt(entry.name), path, icon));
        }
    }
    if (item->childCount() == 0)
        item->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicator);
}

void frmDirSelect::MakeDirectory() {
    QTreeWidgetItem* parent = ui->Dir1->currentItem();
    if (!parent)
        return;
    const std::string above = PathOf(parent);
    InputBox box("The name of the new directory in " + ToQt(above), false, this);
    if (box.exec() != QDialog::Accepted || box.Text().trimmed().isEmpty())
        return;
    const std::string name = FromQt(box.Text().trimmed()), path = above + name + "\\";
    const bool isName = IsStorableName(name) && !IsOwnName(name);
    if (const auto fault = isName ? files.CreateDirectory(path).fault : FileFault::BadName; fault != FileFault::None) {
        const auto text = "The directory " + path + " could not be made (" + DescribeFault(fault) +
                          ").  Please choose another name or another place.";
        MessageBox(ToQt(text), MessageButtons::Ok, MessageIcon::Exclamation, {}, this).Ask();
        return;
    }
    qDeleteAll(parent->takeChildren());
    parent->setData(0, IsReadRole, false);
    parent->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    ReadSubdirectories(parent);
    parent->setExpanded(true);
    for (int i = 0; i < parent->childCount(); ++i)
        if (EqualNoCase(PathOf(parent->child(i)), path))
            ui->Dir1->setCurrentItem(parent->child(i));
    ui->Dir1->setFocus();
}

void frmDirSelect::TakeResult() {
    if (const auto* item = ui->Dir1->currentItem()) {
        result = WithoutBackslash(PathOf(item));
        isCancelled = false;
    }
    accept();
}

} // namespace korvadex
