#include "demo/pictures.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <stdexcept>
#include <utility>

namespace korvadex::demo {

namespace {

const QColor Dark(36, 40, 48), White(250, 251, 252), Black(12, 13, 16), Metal(206, 210, 214);

// From 0 (all a) to 1 (all b).
QColor Mix(const QColor& a, const QColor& b, double share) {
    const auto mix = [&](int from, int to) { return static_cast<int>(std::lround(from + (to - from) * share)); };
    return QColor(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()));
}

QColor Veil(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

QLinearGradient Downwards(const QRectF& box, const QColor& top, const QColor& bottom) {
    QLinearGradient paint(box.topLeft(), box.bottomLeft());
    paint.setColorAt(0, top);
    paint.setColorAt(1, bottom);
    return paint;
}

// x and y in turn.
using Points = std::initializer_list<double>;

QPolygonF Polygon(Points points) {
    QPolygonF polygon;
    for (const double* at = points.begin(); at != points.end(); at += 2)
        polygon.append({at[0], at[1]});
    return polygon;
}

// A closed curve through the points.
QPainterPath Curve(const QPolygonF& points) {
    const auto at = [&](qsizetype i) { return points[(i + points.size()) % points.size()]; };
    QPainterPath path(points.front());
    for (qsizetype i = 0; i < points.size(); ++i)
        path.cubicTo(at(i) + (at(i + 1) - at(i - 1)) / 6, at(i + 1) - (at(i + 2) - at(i)) / 6, at(i + 1));
    return path;
}
QPainterPath Curve(Points points) {
    return Curve(Polygon(points));
}

QImage EmptyPicture(int width, int height) {
    QImage picture(width, height, QImage::Format_RGB32);
    picture.setDotsPerMeterX(2835); // else those of the screen
    picture.setDotsPerMeterY(2835);
    return picture;
}

class Brush : public QPainter {
  public:
    Brush(QImage& picture, const Livery& colors) : QPainter(&picture), livery(colors) {
        setRenderHint(Antialiasing);
        setPen(Qt::NoPen);
    }

    void Disc(const QPointF& center, double radiusX, double radiusY, const QBrush& paint) {
        setBrush(paint);
        drawEllipse(center, radiusX, radiusY);
    }
    // Its light fades towards the edge.
    void Glow(const QPointF& center, double radiusX, double radiusY, const QColor& color, double alpha) {
        QRadialGradient paint(QPointF(), 1);
        paint.setColorAt(0, Veil(color, alpha));
        paint.setColorAt(0.3, Veil(color, alpha * 0.8));
        paint.setColorAt(1, Veil(color, 0));
        save();
        translate(center);
        scale(radiusX, radiusY);
        Disc({}, 1, 1, paint);
        restore();
    }
    void Line(const QLineF& line, const QColor& color, double thickness, const QList<qreal>& dashes = {}) {
        QPen pen(color, thickness, Qt::SolidLine, Qt::FlatCap);
        if (!dashes.empty())
            pen.setDashPattern(dashes);
        setPen(pen);
        drawLine(line);
        setPen(Qt::NoPen);
    }

    // Lit from above.
    void Shape(const QPainterPath& path, const QColor& color) {
        fillPath(path, Downwards(path.boundingRect(), Mix(color, White, 0.25), Mix(color, Dark, 0.45)));
    }
    void Shape(Points points, const QColor& color) { Shape(Curve(points), color); }
    // With straight edges.
    void Plate(Points points, const QColor& color) {
        QPainterPath path;
        path.addPolygon(Polygon(points));
        Shape(path, color);
    }
    // With a stripe, at that height in the middle, that rises towards the tail.
    void Body(Points points, const Livery& colors, double stripeAt, double stripeWidth) {
        const double reach = stripeWidth * 4;
        QLinearGradient paint(500, stripeAt, 500 - 0.06 * reach, stripeAt + reach);
        double from = 0;
        for (const auto& [to, color] : {std::pair(0.002, colors.body), std::pair(0.25, colors.stripe),
                                        std::pair(0.34, colors.body), std::pair(1.0, colors.belly)}) {
            paint.setColorAt(from, color);
            paint.setColorAt(to, color);
            from = to + 0.002;
        }
        const QPainterPath path = Curve(points);
        fillPath(path, paint);
        QLinearGradient light = Downwards(path.boundingRect(), Veil(White, 0.55), Veil(Dark, 0.40));
        light.setColorAt(0.3, Veil(White, 0));
        light.setColorAt(0.301, Veil(Dark, 0));
        fillPath(path, light);
    }
    void Glass(const QPainterPath& path) {
        fillPath(path, Downwards(path.boundingRect(), {190, 222, 240}, {52, 78, 104}));
    }
    void Glass(Points points) { Glass(Curve(points)); }
    void Windows(int count, const QPointF& first, const QPointF& step, double width, double height) {
        for (int i = 0; i < count; ++i) {
            QPainterPath path;
            path.addEllipse(first + i * step, width, height);
            Glass(path);
        }
    }
    void Wheel(const QPointF& axle, double radius, const QPointF& leg) {
        Line({leg, axle}, {150, 154, 160}, 9);
        Disc(axle, radius, radius, Black);
        Disc(axle, radius * 0.45, radius * 0.45, QColor(168, 172, 178));
    }
    void Propeller(double x, double y, double radius, const QColor& spinner) {
        Disc({x, y}, radius * 0.09, radius, Veil(White, 0.30));
        Disc({x, y}, radius * 0.03, radius, Veil(Dark, 0.25));
        Shape({x - 14, y - 18, x + 8, y - 10, x + 24, y, x + 8, y + 10, x - 14, y + 18}, spinner);
    }

    const Livery& livery;
};

// ---- the sky and what lies below it

struct SceneColors {
    QColor zenith, horizon, sun, hills, ground;
    double horizonAt; // as a share of the height
    QPointF sunAt;
    double clouds;
};

const SceneColors Scenes[] = {
    {{58, 120, 196}, {214, 232, 244}, {255, 252, 236}, {120, 156, 150}, {88, 132, 92}, 0.84, {0.82, 0.14}, 0.8},
    {{44, 52, 96}, {250, 176, 118}, {255, 226, 170}, {84, 76, 104}, {46, 48, 66}, 0.80, {0.22, 0.69}, 0.35},
    {{74, 140, 198}, {206, 230, 240}, {255, 250, 230}, {96, 138, 140}, {58, 122, 152}, 0.72, {0.82, 0.14}, 0.8}};

void DrawCloud(Brush& brush, const QPointF& at, double size, double alpha) {
    for (const auto& [x, y, radius] :
         {std::array{-1.6, 0.2, 0.7}, {-0.8, -0.1, 1.0}, {0.0, -0.35, 1.2}, {0.9, -0.05, 1.0}, {1.7, 0.2, 0.7}})
        brush.Glow(at + QPointF(x, y) * size, radius * size * 1.3, radius * size * 0.7, White, alpha);
}

void DrawHills(Brush& brush, double width, double base, double height, double first, const QColor& color) {
    QPolygonF hills{{width * 1.2, base * 2}, {width * -0.2, base * 2}};
    for (int i = -1; i <= 13; ++i)
        hills.append({width * i / 12, base - height * (0.5 + 0.5 * std::sin(first + i * 1.9))});
    brush.fillPath(Curve(hills), color);
}

void DrawScene(Brush& brush, Scene scene, double width, double height) {
    const SceneColors& colors = Scenes[static_cast<std::size_t>(scene)];
    const double horizon = height * colors.horizonAt;
    brush.fillRect(QRectF(0, 0, width, height), Downwards({0, 0, width, horizon}, colors.zenith, colors.horizon));
    const QPointF sun(width * colors.sunAt.x(), height * colors.sunAt.y());
    brush.Glow(sun, height * 0.28, height * 0.28, colors.sun, 0.7);
    brush.Disc(sun, height * 0.05, height * 0.05, Veil(colors.sun, 0.9));
    DrawCloud(brush, {width * 0.16, height * 0.17}, height * 0.085, colors.clouds);
    DrawCloud(brush, {width * 0.60, height * 0.11}, height * 0.055, colors.clouds * 0.8);
    DrawCloud(brush, {width * 0.93, height * 0.36}, height * 0.07, colors.clouds * 0.7);
    const double shore = horizon + height * 0.03;
    DrawHills(brush, width, horizon + 2, height * 0.10, 3, Mix(colors.hills, colors.horizon, 0.35));
    DrawHills(brush, width, shore, height * 0.07, 8, colors.hills);
    const QRectF ground(0, shore, width, height - shore);
    brush.fillRect(ground, Downwards(ground, colors.ground, Mix(colors.ground, Black, 0.35)));
    for (int i = 0; scene == Scene::Lake && i < 14; ++i)
        brush.Disc({width * (i * 37 % 100) / 100, horizon + height * (0.045 + 0.017 * i)}, width * (0.05 + 0.006 * i),
                   1.2 + 0.12 * i, Veil(White, 0.22));
}

// ---- aircraft, in a box of 1000 x 400

void Fin(Brush& brush, Points points) {
    brush.Plate(points, brush.livery.stripe);
    brush.Line({points.begin()[0], points.begin()[1], points.begin()[2], points.begin()[3]}, Veil(Dark, 0.35), 3);
}

void DrawLightProp(Brush& brush) {
    Fin(brush, {150, 190, 72, 62, 118, 58, 262, 168});
    brush.Body({70,  186, 250, 158, 430, 118, 560, 88,  668, 90,  742, 136, 850,
                154, 896, 176, 888, 214, 815, 244, 600, 258, 420, 244, 200, 212},
               brush.livery, 182, 24);
    brush.Glass({560, 106, 622, 100, 670, 104, 720, 142, 640, 152, 556, 152});
    brush.Glass({470, 126, 540, 108, 540, 152, 476, 158});
    brush.Line({640, 96, 640, 154}, brush.livery.body, 6);
    brush.Shape({60, 178, 190, 176, 214, 184, 190, 192, 60, 190}, brush.livery.body);
    brush.Line({560, 96, 604, 244}, Metal, 7);
    brush.Shape({452, 78, 560, 62, 690, 68, 716, 82, 690, 94, 470, 94}, brush.livery.body);
    brush.Wheel({590, 312}, 24, {560, 250});
    brush.Wheel({828, 306}, 20, {822, 236});
    brush.Propeller(904, 192, 96, brush.livery.stripe);
}

void DrawAmphibian(Brush& brush) {
    Fin(brush, {150, 190, 58, 34, 120, 30, 262, 178});
    brush.Shape({70, 60, 30, 56, 20, 66, 120, 74, 196, 68, 150, 60}, brush.livery.body);
    brush.Body({78,  184, 270, 176, 480, 128, 600, 104, 708, 118, 800, 176, 914, 204,
                922, 226, 860, 268, 700, 292, 520, 292, 500, 268, 300, 236, 130, 206},
               brush.livery, 208, 22);
    brush.Glass({590, 122, 650, 118, 706, 130, 766, 172, 680, 178, 584, 174});
    brush.Windows(3, {380, 196}, {56, -5}, 15, 14);
    brush.Plate({430, 120, 520, 106, 520, 74, 450, 74}, brush.livery.body);
    brush.Shape({350, 68, 460, 50, 600, 54, 632, 66, 600, 80, 366, 82}, brush.livery.body);
    brush.Shape({420, 44, 560, 24, 640, 30, 664, 46, 640, 62, 440, 58}, brush.livery.stripe);
    brush.Propeller(668, 46, 74, brush.livery.body);
    brush.Line({560, 80, 600, 236}, Metal, 6);
    brush.Shape({520, 246, 600, 232, 700, 240, 716, 256, 640, 274, 560, 270}, brush.livery.stripe);
}

void DrawHeavyProp(Brush& brush) {
    Fin(brush, {150, 176, 50, 16, 128, 12, 290, 150});
    brush.Body(
        {50, 170, 240, 136, 460, 122, 760, 122, 866, 146, 940, 196, 936, 222, 860, 256, 700, 268, 440, 266, 220, 228},
        brush.livery, 190, 20);
    brush.Windows(10, {330, 170}, {46, 0}, 13, 15);
    brush.Glass({826, 148, 862, 150, 904, 182, 850, 184, 822, 180});
    brush.Shape({30, 166, 180, 160, 214, 170, 180, 182, 40, 180}, brush.livery.body);
    brush.Wheel({560, 346}, 28, {552, 262});
    brush.Wheel({860, 330}, 22, {850, 252});
    brush.Shape({420, 236, 560, 214, 700, 222, 726, 240, 690, 254, 440, 254}, brush.livery.body);
    brush.Body({480, 230, 640, 202, 740, 206, 772, 230, 740, 256, 620, 268, 500, 254},
               {brush.livery.stripe, brush.livery.body, brush.livery.stripe}, 226, 8);
    brush.Propeller(780, 231, 92, brush.livery.stripe);
}

void DrawJet(Brush& brush) {
    Fin(brush, {150, 178, 36, 22, 112, 18, 290, 156});
    brush.Body(
        {40, 166, 240, 144, 480, 140, 800, 142, 900, 164, 962, 204, 952, 222, 860, 240, 500, 246, 260, 226, 120, 190},
        brush.livery, 186, 14);
    brush.Windows(18, {280, 176}, {30, 0}, 6, 8);
    brush.Glass({868, 162, 896, 166, 922, 184, 884, 186});
    brush.Shape({20, 160, 150, 156, 190, 166, 140, 176, 30, 172}, brush.livery.body);
    brush.Plate({360, 254, 560, 222, 664, 222, 620, 236, 400, 262}, brush.livery.body);
    brush.Shape({470, 256, 560, 244, 626, 248, 636, 268, 620, 288, 540, 290, 480, 278}, brush.livery.stripe);
    brush.Disc({632, 268}, 8, 18, Dark);
}

void DrawHelicopter(Brush& brush) {
    brush.Body({120, 170, 330, 176, 470, 168, 470, 220, 330, 212, 120, 186}, brush.livery, 192, 10);
    Fin(brush, {150, 182, 82, 96, 120, 92, 210, 176});
    brush.Body({440, 160, 520, 124, 640, 116, 752, 138, 826, 196, 836, 236, 770, 272, 600, 284, 480, 266, 430, 214},
               brush.livery, 214, 22);
    brush.Glass({664, 134, 740, 148, 806, 200, 808, 222, 740, 226, 668, 210});
    brush.Glass({556, 140, 646, 132, 650, 208, 560, 206});
    brush.Plate({556, 124, 664, 118, 648, 84, 580, 84}, brush.livery.stripe);
    brush.Line({614, 88, 614, 62}, Dark, 10);
    brush.Disc({614, 60}, 396, 7, Veil(Dark, 0.42));
    brush.Disc({614, 58}, 396, 3, Veil(White, 0.35));
    brush.Disc({104, 140}, 50, 50, Veil(White, 0.26));
    brush.Disc({104, 140}, 8, 8, Dark);
    brush.Line({540, 276, 520, 326}, Dark, 8);
    brush.Line({700, 276, 720, 326}, Dark, 8);
    brush.Shape({440, 322, 790, 322, 830, 306, 836, 312, 796, 332, 440, 332}, Dark);
}

constexpr void (*Aircraft[])(Brush&) = {DrawLightProp, DrawAmphibian, DrawHeavyProp, DrawJet, DrawHelicopter};

void DrawDial(Brush& brush, const QPointF& center, double radius, double angle) {
    brush.Disc(center, radius * 1.1, radius * 1.1, QColor(96, 100, 106));
    brush.Disc(center, radius, radius, Black);
    for (int i = 0; i < 36; ++i) {
        QLineF tick = QLineF::fromPolar(radius * 0.94, i * 10);
        tick.setP1(tick.pointAt(0.9));
        brush.Line(tick.translated(center), Veil(White, 0.6), radius * 0.03);
    }
    brush.Line(QLineF::fromPolar(radius * 0.78, angle).translated(center), brush.livery.stripe, radius * 0.07);
    brush.Disc(center, radius * 0.1, radius * 0.1, White);
}

QByteArray Encoded(const QImage& picture, const char* format, int quality = -1) {
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    if (!writer.write(picture))
        throw std::runtime_error("a picture: " + writer.errorString().toStdString());
    return buffer.data();
}

} // namespace

QImage DrawAircraft(AircraftKind kind, const Livery& livery, Scene scene, int width, int height) {
    constexpr double BoxWidth = 1000, BoxHeight = 400;
    QImage picture = EmptyPicture(width, height);
    Brush brush(picture, livery);
    DrawScene(brush, scene, width, height);
    const double scale = std::min(width * 0.84 / BoxWidth, height * 0.8 / BoxHeight);
    brush.translate((width - BoxWidth * scale) / 2, height * 0.46 - BoxHeight * scale / 2);
    brush.scale(scale, scale);
    Aircraft[static_cast<std::size_t>(kind)](brush);
    return picture;
}

QImage DrawLivery(const Livery& livery, int sheet, int size) {
    QImage picture = EmptyPicture(size, size);
    Brush brush(picture, livery);
    brush.fillRect(picture.rect(), Downwards(picture.rect(), Mix(livery.body, White, 0.2), livery.belly));
    brush.scale(size / 100.0, size / 100.0);
    const double stripe = 42 + 7 * (sheet % 3);
    brush.fillPath(
        Curve({-100, stripe, 40, stripe - 4, 200, stripe - 16, 200, stripe, 40, stripe + 10, -100, stripe + 12}),
        livery.stripe);
    if (sheet % 2 == 0)
        brush.Windows(6, {16, 26}, {13, 0}, 3.8, 5);
    else
        brush.Plate({62, 8, 94, 8, 86, 30, 54, 30}, livery.stripe);
    for (double seam = 12.5; seam < 100; seam += 12.5) { // where the sheets of metal meet
        brush.Line({seam, 0, seam, 100}, Veil(Dark, 0.22), 0.4);
        brush.Line({seam + 1.2, 1, seam + 1.2, 100}, Veil(Dark, 0.25), 0.8, {1, 3}); // rivets
    }
    return picture;
}

QImage DrawPanel(const Livery& livery, int width, int height) {
    QImage picture = EmptyPicture(width, height);
    Brush brush(picture, livery);
    const QColor metal = Mix(livery.body, {70, 74, 80}, 0.82);
    brush.fillRect(picture.rect(), Downwards(picture.rect(), metal, Mix(metal, Dark, 0.6)));
    brush.fillRect(picture.rect(), QBrush(Veil(White, 0.04), Qt::Dense5Pattern));
    const double w = width, h = height;
    brush.fillPath(Curve({-40, 0, w * 0.5, -8, w + 40, 0, w + 40, h * 0.10, w * 0.5, h * 0.05, -40, h * 0.10}), Black);
    const double radius = h / 5.4;
    const int columns = std::max(1, static_cast<int>(w / (radius * 2.5)));
    for (int i = 0; i < 2 * columns; ++i)
        DrawDial(brush, {w * (i % columns + 0.5) / columns, h * (i < columns ? 0.34 : 0.76)}, radius, 150 - 62 * i);
    return picture;
}

QByteArray Bitmap24(const QImage& picture) {
    return Encoded(picture, "bmp");
}

QByteArray Bitmap8(const QImage& picture) {
    return Encoded(picture.convertToFormat(QImage::Format_Indexed8, Qt::OrderedDither), "bmp");
}

QByteArray Jpeg(const QImage& picture) {
    return Encoded(picture, "jpg", 85);
}

} // namespace korvadex::demo
