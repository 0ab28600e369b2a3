#include "demo/aircraft_files.h"

#include <QFile>

#include <cstdint>
#include <stdexcept>

// A resource in a static library is not found before this ran; the macro wants to stand outside of any namespace.
static void InitFiles() {
    Q_INIT_RESOURCE(demo);
}

namespace korvadex::demo {

namespace {

QString Template(const char* name) {
    return QString::fromLatin1(OwnFile(name));
}

QString AircraftCfg(const Aircraft& aircraft) {
    QString text;
    for (const Look& look : aircraft.looks)
        text += Template("fltsim.cfg")
                    .arg(&look - aircraft.looks.data())
                    .arg(look.title, aircraft.type, look.texture, aircraft.maker, look.variation);
    return text + Template("aircraft.cfg").arg(aircraft.maker, aircraft.type);
}

QString PanelCfg(const QString& bitmap, const QStringList& gauges) {
    QString text = Template("panel.cfg").arg(bitmap);
    for (qsizetype i = 0; i < gauges.size(); ++i)
        text += QString("gauge0%1=%2,  %3,24,96,96\n").arg(i).arg(gauges[i]).arg(20 + 124 * i);
    return text;
}

QByteArray InCodePage(QString text) {
    return text.replace("\n", "\r\n").toLatin1();
}

// With the runs and repetitions that real files have.
QByteArray Filler(const QString& name, qsizetype size) {
    std::uint32_t state = 2166136261u;
    for (const char letter : name.toUtf8())
        state = (state ^ static_cast<unsigned char>(letter)) * 16777619u;
    QByteArray bytes;
    while (bytes.size() < size) {
        state = state * 1664525u + 1013904223u;
        bytes.append(1 + (state >> 28), static_cast<char>(state >> 16));
    }
    return bytes.left(size);
}

class Maker {
  public:
    Maker(const Aircraft& subject, const QString& tree) : aircraft(subject) {
        for (const QString& line : tree.split('\n')) {
            const auto colon = line.indexOf(':');
            const QString directory = colon < 0 ? QString() : line.left(colon).trimmed() + '/';
            for (const QString& name : line.mid(colon + 1).split(','))
                names.append(directory + name.trimmed());
        }
    }

    Files Make() {
        Files files;
        for (const QString& name : names) {
            const QString text = TextOf(name);
            files.emplace_back(name, text.isEmpty() ? BytesOf(name) : InCodePage(text));
        }
        return files;
    }

  private:
    // "" for what is not text.
    QString TextOf(const QString& name) const {
        if (name.endsWith("aircraft.cfg"))
            return AircraftCfg(aircraft);
        if (name.endsWith("panel.cfg"))
            return PanelCfg(Other("panel/", ".bmp") + ".bmp", aircraft.gauges);
        if (name.endsWith("model.cfg"))
            return "[models]\nnormal=" + Other("model/", ".mdl") + '\n';
        if (name.endsWith("sound.cfg"))
            return Template("sound.cfg").arg(Other("sound/", ".wav"));
        if (name.endsWith("_check.txt"))
            return Template("check.txt").arg(aircraft.looks.front().title);
        return name.endsWith(".fx") ? Template("effect.fx") : "";
    }

    QByteArray BytesOf(const QString& name) {
        const QString kind = name.right(4).toLower();
        if (kind == ".jpg")
            return Jpeg(DrawAircraft(aircraft.kind, LookOf(name).livery, SceneOf(name), 640, 400));
        if (kind == ".bmp")
            return name.contains("panel/", Qt::CaseInsensitive) ? Bitmap8(DrawPanel(LookOf(name).livery, 640, 240))
                                                                : Texture(name);
        if (kind == ".cab")
            return OwnFile("gauge.cab");
        if (kind == ".wav")
            return OwnFile(name.endsWith("horn.wav")      ? "horn.wav"
                           : name.endsWith("turbine.wav") ? "turbine.wav"
                                                          : "engine.wav");
        if (kind == ".exe")
            return OwnFile("fs2002.exe");
        return kind == ".mdl" ? Filler(name, 65544) : kind == ".air" ? Filler(name, 9216) : "MZ" + Filler(name, 24574);
    }

    // The first of that kind, without its extension.
    QString Other(const char* directory, const QString& extension) const {
        for (const QString& name : names)
            if (name.contains(directory, Qt::CaseInsensitive) && name.endsWith(extension))
                return name.mid(name.lastIndexOf('/') + 1).chopped(extension.size());
        throw std::runtime_error("the example lacks a file in " + std::string(directory));
    }

    const Look& LookOf(const QString& name) const {
        for (const Look& look : aircraft.looks)
            if (!look.texture.isEmpty() && name.contains(look.texture))
                return look;
        return aircraft.looks.front();
    }
    static Scene SceneOf(const QString& name) {
        return name.endsWith("dusk.jpg") ? Scene::Dusk : name.endsWith("lake.jpg") ? Scene::Lake : Scene::Day;
    }
    // No two of an aircraft are the same; some have a palette, some not.
    QByteArray Texture(const QString& name) {
        const QImage picture = DrawLivery(LookOf(name).livery, sheets, 256);
        return ++sheets % 3 == 2 ? Bitmap24(picture) : Bitmap8(picture);
    }

    const Aircraft& aircraft;
    QStringList names;
    int sheets = 0;
};

} // namespace

Files FilesOf(const Aircraft& aircraft, const QString& tree, const std::vector<std::pair<QString, QString>>& texts) {
    Files files = Maker(aircraft, tree).Make();
    for (const auto& [name, text] : texts)
        files.emplace_back(name, InCodePage(text));
    return files;
}

QByteArray OwnFile(const QString& name) {
    InitFiles();
    QFile file(":/demo/" + name);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(name.toStdString() + " is missing");
    return file.readAll();
}

} // namespace korvadex::demo
