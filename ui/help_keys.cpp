#include "ui/help_keys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <algorithm>

namespace korvadex {

namespace {

constexpr std::pair<const char*, const char*> Chapters[] = {
    {"mnuBar", "menus"},
    {"Toolbar1", "toolbar"},
    {"pnlCollection", "collection"},
    {"pnlQueue", "queue"},
    {"picPackage", "pictures"},
    {"txtPackageName", "hangar"},
    {"messageBox", "trouble"},
    {"zipFileDialog", "zip"},
    {"pictureFileDialog", "pictures"},
    {"frmAbout", "about"},
    {"frmDirSelect", "start"},
    {"frmFileList", "lists"},
    {"frmGaugeStatus", "crosscheck"},
    {"frmHistory", "history"},
    {"frmInfo", "information"},
    {"frmLocationProfileModify", "locations"},
    {"frmLocationProfiles", "locations"},
    {"frmLocations", "start"},
    {"frmMSFSImport", "import"},
    {"frmMultipleCfg", "configurations"},
    {"frmPhotos", "gallery"},
    {"frmRename", "renaming"},
    {"frmSeveralAircraft", "several"},
    {"frmUnusedGauges", "gauges"},
};

const char* ChapterOf(const QWidget* widget) {
    for (; widget; widget = widget->parentWidget())
        for (const auto& [name, chapter] : Chapters)
            if (widget->objectName() == name)
                return chapter;
    return "";
}

} // namespace

std::span<const std::pair<const char*, const char*>> HelpChapters() {
    return Chapters;
}

HelpKeys::HelpKeys(QObject* parent, std::function<void(const char*)> openChapter)
    : QObject(parent), open(std::move(openChapter)) {
    qApp->installEventFilter(this);
}

bool HelpKeys::eventFilter(QObject* watched, QEvent* event) {
    if ((event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) || !watched->isWidgetType())
        return false;
    const auto* pressed = static_cast<QKeyEvent*>(event);
    if (pressed->key() != Qt::Key_F1 || pressed->modifiers() != Qt::NoModifier)
        return false;
    if (event->type() == QEvent::ShortcutOverride) // it is to come as a key
        event->accept();
    else if (!pressed->isAutoRepeat())
        open(ChapterOf(static_cast<const QWidget*>(watched)));
    return true;
}

} // namespace korvadex
