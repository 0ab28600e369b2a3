#include "ui/icons.h"

#include <QSize>

// A resource in a static library is not found before this ran; the macro wants to stand outside of any namespace.
static void InitIcons() {
    Q_INIT_RESOURCE(icons);
}

namespace korvadex {

QIcon NamedIcon(const QString& name) {
    InitIcons();
    QIcon icon;
    for (const int size : {KORVADEX_ICON_SIZES})
        icon.addFile(QString(":/icons/%1-%2.png").arg(name).arg(size), QSize(size, size));
    return icon;
}

} // namespace korvadex
