// What the example's aircraft look like: pictures in flight, livery textures and instrument panels.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>

namespace korvadex::demo {

enum class AircraftKind { LightProp, Amphibian, HeavyProp, Jet, Helicopter };
enum class Scene { Day, Dusk, Lake };

struct Livery {
    QColor body, stripe, belly;
};

// The aircraft in side view, nose to the right, before a sky.
QImage DrawAircraft(AircraftKind kind, const Livery& livery, Scene scene, int width, int height);
// A livery sheet as it is wrapped around the model; `sheet` tells one sheet of an aircraft from the next.
QImage DrawLivery(const Livery& livery, int sheet, int size);
// An instrument panel with round dials in two rows, as many as have room.
QImage DrawPanel(const Livery& livery, int width, int height);

// The bytes of a file: a bitmap with 24 bits to a pixel, one with a palette, dithered as the liveries of that time
// were, and a JPEG, which takes a plug-in of Qt (on Windows found only while there is a QCoreApplication).
QByteArray Bitmap24(const QImage& picture);
QByteArray Bitmap8(const QImage& picture);
QByteArray Jpeg(const QImage& picture);

} // namespace korvadex::demo
