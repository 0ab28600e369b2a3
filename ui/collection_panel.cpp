#include "ui/collection_panel.h"

#include "ui/collection_model.h"
#include "ui/menus.h"
#include "ui/qt_text.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTreeView>

#include <algorithm>
#include <utility>

namespace korvadex {

namespace {

constexpr int MarkSize = 16, MarkGap = 2;

// Draws the marks of a package at the end of its row.
class MarkPainter : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QVariantList marks = index.data(CollectionModel::MarksRole).toList();
        const auto mode = option.state & QStyle::State_Selected ? QIcon::Selected : QIcon::Normal;
        QStyleOptionViewItem named = option;
        QRect place(option.rect.right() - MarkSize, option.rect.center().y() - MarkSize / 2, MarkSize, MarkSize);
        for (const QVariant& mark : marks) {
            mark.value<QIcon>().paint(painter, place, Qt::AlignCenter, mode);
            place.translate(-MarkSize - MarkGap, 0);
        }
        if (!marks.isEmpty())
            named.rect.setRight(place.right());
        QStyledItemDelegate::paint(painter, named, index);
    }
};

} // namespace

CollectionPanel::CollectionPanel(QWidget* parent)
    : QWidget(parent), txtFilter(new QLineEdit), cboOrder(new QComboBox), lblCount(new QLabel), tree(new QTreeView),
      model(new CollectionModel(this)) {
    txtFilter->setObjectName("txtCollectionFilter");
    txtFilter->setAccessibleName("Filter of the collection");
    txtFilter->setPlaceholderText("Filter the collection");
    txtFilter->setToolTip("Show only the packages with all these words in their names, titles or information (Ctrl+F)");
    txtFilter->setClearButtonEnabled(true);
    cboOrder->setObjectName("cboCollectionOrder");
    cboOrder->setAccessibleName("Order of the collection");
    cboOrder->addItems({"By name", "Installed first", "Largest first", "Newest first"}); // as CollectionOrder
    cboOrder->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cboOrder->setMinimumContentsLength(6);
    lblCount->setObjectName("lblCollectionCount");
    lblCount->setTextFormat(Qt::PlainText);
    tree->setObjectName("treCollection");
    tree->setAccessibleName("Collection");
    tree->setModel(model);
    tree->setItemDelegate(new MarkPainter(tree));
    tree->setHeaderHidden(true);
    tree->setUniformRowHeights(true);
    tree->setIndentation(14);
    tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    tree->setMinimumHeight(60);
    tree->installEventFilter(this);
    txtFilter->installEventFilter(this);

    auto* line = new QHBoxLayout;
    line->addWidget(cboOrder, 1);
    line->addWidget(lblCount);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(9, 9, 3, 9);
    column->addWidget(txtFilter);
    column->addLayout(line);
    column->addWidget(tree);

    connect(txtFilter, &QLineEdit::textChanged, this, &CollectionPanel::Arrange);
    connect(cboOrder, &QComboBox::activated, this, &CollectionPanel::Arrange);
    connect(tree, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        if (!isArranging && txtFilter->text().isEmpty())
            collapsed.insert(model->CategoryAt(index));
    });
    connect(tree, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        if (!isArranging)
            collapsed.erase(model->CategoryAt(index));
    });
    connect(tree->selectionModel(), &QItemSelectionModel::selectionChanged, this, &CollectionPanel::TakeSelection);
    connect(tree, &QTreeView::clicked, this, [this] {
        if (const PackageRef package = SelectedAlone(); !package.IsNone())
            emit PackageChosen(package);
    });
    connect(tree, &QTreeView::customContextMenuRequested, this, &CollectionPanel::ShowMenu);
}

// --- what is shown

void CollectionPanel::Show(const Collection& newCollection, const PackageRef& newShown, bool isNowHangarSide) {
    collection = &newCollection;
    isHangarSide = isNowHangarSide;
    isFollowed = isFollowed && newShown == shown;
    shown = newShown;
    Refresh();
    if (!isFollowed)
        Follow();
}

void CollectionPanel::Refresh() {
    if (collection && collection->Revision() != shownRevision)
        Arrange();
}

void CollectionPanel::Arrange() {
    if (!collection)
        return;
    shownRevision = collection->Revision();
    std::vector<PackageRef> selected;
    for (const QModelIndex& index : tree->selectionModel()->selectedIndexes())
        if (const auto* each = model->PackageAt(index))
            selected.push_back(each->ref);
    const auto* package = model->PackageAt(tree->currentIndex());
    const PackageRef current = package ? package->ref : PackageRef{model->CategoryAt(tree->currentIndex()), ""};
    const int scrolled = tree->verticalScrollBar()->value();
    bool isReset = false;
    const auto watch = connect(model, &QAbstractItemModel::modelReset, this, [&] { isReset = true; });
    isArranging = true;
    model->Show(collection->Arrange(FromQt(txtFilter->text()), CollectionOrder(cboOrder->currentIndex())));
    disconnect(watch);
    ShowCount();
    if (isReset) {
        Expand();
        QItemSelection selection;
        for (const PackageRef& ref : selected)
            if (const QModelIndex index = model->IndexOf(ref); index.isValid())
                selection.select(index, index);
        const QModelIndex place = model->IndexOf(current);
        if (selection.isEmpty() && place.isValid() && current.IsNone())
            selection.select(place, place);
        tree->selectionModel()->setCurrentIndex(place, QItemSelectionModel::NoUpdate);
        tree->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
        tree->verticalScrollBar()->setValue(scrolled);
        isFollowed = isFollowed && !selection.isEmpty();
        if (!isFollowed)
            Follow();
    }
    isArranging = false;
}

void CollectionPanel::ShowCount() {
    std::size_t left = 0, all = 0;
    for (const CollectionCategory& category : model->Shown())
        left += category.packages.size();
    for (const HangarCategory& category : collection->Listing())
        all += category.packages.size();
    lblCount->setText(left == all ? QString::number(all) : QString("%1 of %2").arg(left).arg(all));
}

// What the filter has left is seen whatever was folded up.
void CollectionPanel::Expand() {
    tree->expandAll();
    if (!txtFilter->text().trimmed().isEmpty())
        return;
    for (const std::string& category : collapsed)
        tree->collapse(model->IndexOf({category, ""}));
}

void CollectionPanel::Follow() {
    const QModelIndex index = shown.IsNone() ? QModelIndex() : model->IndexOf(shown);
    if (!index.isValid())
        return;
    isFollowed = true;
    collapsed.erase(shown.category);
    if (tree->selectionModel()->isSelected(index))
        return;
    const bool wasArranging = std::exchange(isArranging, true);
    tree->setCurrentIndex(index);
    tree->scrollTo(index);
    isArranging = wasArranging;
}

// --- what the user does

void CollectionPanel::FocusFilter() {
    txtFilter->setFocus(Qt::ShortcutFocusReason);
    txtFilter->selectAll();
}

void CollectionPanel::TakeSelection() {
    if (isArranging || !isHangarSide)
        return;
    isChoicePending = true;
    QMetaObject::invokeMethod(this, &CollectionPanel::Settle, Qt::QueuedConnection);
}

void CollectionPanel::Settle() {
    if (!std::exchange(isChoicePending, false))
        return;
    if (const PackageRef package = SelectedAlone(); !package.IsNone() && package != shown)
        emit PackageChosen(package);
}

std::vector<PackageRef> CollectionPanel::Selected() const {
    std::vector<std::pair<int, int>> rows;
    for (const QModelIndex& index : tree->selectionModel()->selectedIndexes())
        if (index.parent().isValid() && tree->isExpanded(index.parent()))
            rows.emplace_back(index.parent().row(), index.row());
    std::ranges::sort(rows);
    std::vector<PackageRef> packages;
    for (const auto& [category, row] : rows)
        packages.push_back(model->Shown()[std::size_t(category)].packages[std::size_t(row)].ref);
    return packages;
}

PackageRef CollectionPanel::SelectedAlone() const {
    const auto indexes = tree->selectionModel()->selectedIndexes();
    const auto* package = indexes.size() == 1 ? model->PackageAt(indexes.front()) : nullptr;
    return package ? package->ref : PackageRef();
}

bool CollectionPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == tree && (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress)) {
        const bool isOnlyAsked = event->type() == QEvent::ShortcutOverride; // the window has some of the keys, too
        if (GiveByKey(*static_cast<QKeyEvent*>(event), isOnlyAsked)) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::KeyPress) {
        const auto* pressed = static_cast<QKeyEvent*>(event);
        if ((pressed->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier &&
            (watched == tree ? PressTreeKey(pressed->key()) : PressFilterKey(pressed->key())))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool CollectionPanel::GiveByKey(const QKeyEvent& pressed, bool isOnlyAsked) {
    const PackageCommand* command = PackageCommandOf(pressed);
    const auto packages = command ? Selected() : std::vector<PackageRef>();
    if (packages.empty())
        return false;
    if (!isOnlyAsked)
        emit CommandGiven(*command, packages);
    return true;
}

bool CollectionPanel::PressTreeKey(int key) {
    const PackageRef package = SelectedAlone();
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!package.IsNone())
            emit PackageChosen(package);
        else if (const QModelIndex index = tree->currentIndex(); index.isValid() && !model->PackageAt(index))
            tree->setExpanded(index, !tree->isExpanded(index));
        return true;
    case Qt::Key_F2:
        Rename();
        return true;
    default:
        return false;
    }
}

bool CollectionPanel::PressFilterKey(int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter: // the first that is left, unless the selected one is among them
        if (SelectedAlone().IsNone() && !model->Shown().empty() && !model->Shown().front().packages.empty())
            tree->setCurrentIndex(model->IndexOf(model->Shown().front().packages.front().ref));
        if (const PackageRef package = SelectedAlone(); !package.IsNone())
            emit PackageChosen(package);
        tree->setFocus();
        return true;
    case Qt::Key_Down:
        tree->setFocus();
        return true;
    case Qt::Key_Escape:
        txtFilter->clear();
        tree->setFocus();
        return true;
    default:
        return false;
    }
}

void CollectionPanel::Rename() {
    if (const PackageRef package = SelectedAlone(); !package.IsNone())
        emit CommandChosen(package, "mnuRename");
    else if (const QModelIndex index = tree->currentIndex(); index.isValid() && !model->PackageAt(index))
        emit RenameChosen(model->CategoryAt(index));
}

void CollectionPanel::SelectPackagesOf(const std::string& category) {
    const QModelIndex parent = model->IndexOf({category, ""});
    if (!model->hasChildren(parent))
        return;
    tree->expand(parent);
    const QModelIndex first = model->index(0, 0, parent);
    const QItemSelection all(first, model->index(model->rowCount(parent) - 1, 0, parent));
    tree->selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    tree->selectionModel()->select(all, QItemSelectionModel::ClearAndSelect);
}

// --- the menu

void CollectionPanel::ShowMenu(const QPoint& at) {
    const QModelIndex index = tree->currentIndex();
    const bool isByKey = !tree->indexAt(at).isValid() || !tree->selectionModel()->isSelected(tree->indexAt(at));
    auto* menu = new QMenu(this);
    menu->setObjectName("mnuOfCollection");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto packages = Selected();
    if (packages.size() > 1)
        AddEntriesOfMany(*menu, packages);
    else if (packages.size() == 1)
        AddEntriesOfOne(*menu, *model->PackageAt(model->IndexOf(packages.front())));
    else if (index.isValid() && !model->PackageAt(index))
        AddEntriesOfCategory(*menu, model->CategoryAt(index));
    connect(AddEntry(*menu, "mnuNewCategory", "Ne&w category...", {}), &QAction::triggered, this,
            &CollectionPanel::NewCategoryChosen);
    const QRect row = tree->visualRect(index);
    OpenMenu(*menu, *tree, isByKey && row.isValid() ? row.center() : at);
}

void CollectionPanel::AddEntriesOfOne(QMenu& menu, const CollectionPackage& package) {
    const PackageRef ref = package.ref;
    connect(AddEntry(menu, "mnuShowPackage", "&Show", Qt::Key_Return), &QAction::triggered, this,
            [this, ref] { emit PackageChosen(ref); });
    const auto add = [&](const char* entry, const QKeySequence& key = {}, bool isPossible = true) {
        QAction* action = AddEntry(menu, entry, CommandOfEntry(entry).caption, key);
        action->setEnabled(isPossible);
        connect(action, &QAction::triggered, this, [this, ref, entry] { emit CommandChosen(ref, entry); });
    };
    const auto keyOf = [](const char* entry) { return QKeySequence(CommandOfEntry(entry).extras.shortcut); };
    menu.addSeparator();
    add("mnuHangarToMsfs", keyOf("mnuHangarToMsfs"), !package.isInstalled);
    add("mnuRemoveFromMsfs", keyOf("mnuRemoveFromMsfs"), package.isInstalled);
    menu.addSeparator();
    add("mnuGaugeCrosscheck", {}, package.isInstalled);
    add("mnuCheckRefs");
    menu.addSeparator();
    add("mnuCompress");
    add("mnuDecompress");
    add("mnuCopyToStaging");
    menu.addSeparator();
    AddTargets(menu, {ref});
    add("mnuRename", Qt::Key_F2);
    add("mnuRemoveFromHangar", Qt::Key_Delete);
    connect(AddEntry(menu, "cmdExplore", "&Explore", {}), &QAction::triggered, this,
            [this, ref] { emit CommandChosen(ref, "cmdExplore"); });
    menu.addSeparator();
}

void CollectionPanel::AddEntriesOfMany(QMenu& menu, const std::vector<PackageRef>& packages) {
    menu.addSection(QString("%1 packages").arg(packages.size()));
    AddPackageCommands(menu, packages, canWork,
                       [this, packages](const PackageCommand& command) { emit CommandGiven(command, packages); });
    menu.addSeparator();
    AddTargets(menu, packages);
}

void CollectionPanel::AddEntriesOfCategory(QMenu& menu, const std::string& category) {
    connect(AddEntry(menu, "mnuSelectPackages", "&Select its packages", {}), &QAction::triggered, this,
            [this, category] { SelectPackagesOf(category); });
    connect(AddEntry(menu, "mnuRenameCategory", "Re&name category", Qt::Key_F2), &QAction::triggered, this,
            [this, category] { emit RenameChosen(category); });
}

void CollectionPanel::AddTargets(QMenu& menu, const std::vector<PackageRef>& packages) {
    QMenu* targets = menu.addMenu("Mo&ve to category");
    targets->setObjectName("mnuMoveToCategory");
    KeepInOneColumn(*targets);
    for (const HangarCategory& category : collection->Listing()) {
        QAction* target = targets->addAction(ToQt(category.name).replace('&', "&&"));
        target->setEnabled(
            !std::ranges::all_of(packages, [&](const PackageRef& each) { return each.category == category.name; }));
        connect(target, &QAction::triggered, this,
                [this, packages, name = category.name] { emit MoveChosen(packages, name); });
    }
}

} // namespace korvadex
