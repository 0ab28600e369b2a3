// The icons of the program, drawn in ui/icons.
#pragma once

#include <QIcon>
#include <QString>

namespace korvadex {

// By the name of its drawing: "Install", "korvadex". In the sizes for a scale of 100 % to 400 %.
QIcon NamedIcon(const QString& name);

} // namespace korvadex
