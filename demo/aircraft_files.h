// The files of the example's aircraft, made from their names.
#pragma once

#include "demo/pictures.h"

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace korvadex::demo {

// One configuration of an aircraft. A file whose name has the texture in it shows it in this livery.
struct Look {
    QString title, texture, variation; // texture "" for the plain directory
    Livery livery;
};

struct Aircraft {
    AircraftKind kind{};
    QString maker, type;
    std::vector<Look> looks;
    QStringList gauges; // of its panel, each as "file!gauge" or "file"
};

// Relative names, with "/" between directories, and bytes.
using Files = std::vector<std::pair<QString, QByteArray>>;

// The files of a tree that has a line for each directory: "a.txt, b.txt", "Panel: panel.cfg, panel.bmp". What stands in
// them follows from their names, but for the texts (of the code page): configuration files as their authors write them,
// which name what the tree has of their kind, checklists ("..._check.txt"), effects, pictures ("... dusk.jpg", "...
// lake.jpg"), panels (in a directory "panel") and textures, sounds, a cabinet with two gauges, and stand-ins of a
// plausible size, different for each name, for what only the simulator reads.
Files FilesOf(const Aircraft& aircraft, const QString& tree,
              const std::vector<std::pair<QString, QString>>& texts = {});

// A file of the folder demo/files.
QByteArray OwnFile(const QString& name);

} // namespace korvadex::demo
