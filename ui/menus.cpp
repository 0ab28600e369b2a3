#include "ui/menus.h"

#include "app/main_window.h"
#include "platform/windows_path.h"
#include "ui/qt_text.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QProxyStyle>

#include <algorithm>

namespace korvadex {

namespace {

constexpr qsizetype LongestObject = 60;

QString ObjectText(const std::string& object) {
    QString text = ToQt(object);
    if (text.size() > LongestObject) {
        qsizetype end = LongestObject - 3;
        if (text[end].isLowSurrogate())
            --end;
        text = text.left(end) + "...";
    }
    // What follows a tab would stand where the keys do.
    return text.replace('\t', ' ').replace('&', "&&");
}

class ScrollingMenus : public QProxyStyle {
  public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override {
        return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

} // namespace

void KeepInOneColumn(QMenu& menu) {
    auto* style = new ScrollingMenus(QApplication::style()->name());
    style->setParent(&menu);
    menu.setStyle(style);
}

Menus::Menus(QMenuBar* bar) : QObject(bar) {
    for (const Menu& row : MainMenus()) {
        QMenu* menu = bar->addMenu(row.caption);
        menu->setObjectName(row.name);
        KeepInOneColumn(*menu);
        connect(menu, &QMenu::aboutToShow, this, &Menus::Opened);
        if (row.side)
            ofOneSide.emplace_back(*row.side, menu);
        for (const Command& command : row.commands) {
            if (const char* separator = command.extras.separator)
                menu->addSeparator()->setObjectName(separator);
            const bool hasChoices = command.extras.choices;
            QAction* entry =
                hasChoices ? menu->addMenu(command.caption)->menuAction() : menu->addAction(command.caption);
            entry->setObjectName(command.entry);
            entry->setShortcut(QKeySequence(command.extras.shortcut));
            entry->setCheckable(command.extras.tick != nullptr);
            entries.emplace_back(&command, entry);
            if (!hasChoices)
                connect(entry, &QAction::triggered, this, [this, &command] { emit Chosen(command.entry); });
        }
    }
    // Quit and About stay where the table has them, on every desktop.
    for (auto* entry : bar->findChildren<QAction*>())
        entry->setMenuRole(QAction::NoRole);
}

void Menus::ShowState(const MainView& view) {
    for (const auto& [command, entry] : entries) {
        if (const auto object = command->extras.object)
            entry->setText((view.*object).empty() ? QString(command->caption)
                                                  : command->caption + (" " + ObjectText(view.*object)));
        if (const auto tick = command->extras.tick)
            entry->setChecked(view.*tick);
        if (const auto choices = command->extras.choices)
            ShowChoices(*command, *entry->menu(), view.*choices);
        entry->setEnabled(CanWork(*command, view));
    }
}

void Menus::ShowChoices(const Command& command, QMenu& menu, const std::vector<std::string>& choices) {
    QStringList paths;
    for (const std::string& choice : choices)
        paths.append(ToQt(choice));
    if (paths == menu.property("paths").toStringList())
        return;
    menu.setProperty("paths", paths);
    menu.clear();
    for (int row = 0; row < std::min(int(paths.size()), 10); ++row) {
        const std::string& path = choices[std::size_t(row)];
        QAction* entry = menu.addAction(QString("&%1  ").arg((row + 1) % 10) + ObjectText(LastPathComponent(path)) +
                                        "  -  " + ObjectText(ParentDirectory(path)));
        // The list may change, and the entry go with it.
        connect(
            entry, &QAction::triggered, this, [this, &command, row] { emit ChoiceMade(command, row); },
            Qt::QueuedConnection);
    }
}

void Menus::ShowSide(Side side) {
    for (const auto& [itsSide, menu] : ofOneSide) {
        const bool isVisible = itsSide == side;
        menu->menuAction()->setVisible(isVisible);
        // Qt lets a hidden menu take its key: Alt+O would open the visible one only every other time.
        menu->setTitle(isVisible ? "&Options" : "Options");
    }
}

} // namespace korvadex
