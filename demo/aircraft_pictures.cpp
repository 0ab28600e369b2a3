#include "demo/aircraft_pictures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace korvadex::demo {

namespace {

constexpr Color Dark{36, 40, 48}, White{250, 251, 252}, Black{12, 13, 16};

// Shapes are drawn in a box of 1000 x 400, nose to the right.
constexpr double BoxWidth = 1000, BoxHeight = 400;

// ---- the sky and what lies below it

struct SceneColors {
    Color zenith, horizon, sun, far, near;
    double horizonAt; // as a share of the height
};

SceneColors ColorsOf(Scene scene) {
    switch (scene) {
    case Scene::Dusk:
        return {{44, 52, 96}, {250, 176, 118}, {255, 226, 170}, {84, 76, 104}, {46, 48, 66}, 0.80};
    case Scene::Lake:
        return {{74, 140, 198}, {206, 230, 240}, {255, 250, 230}, {96, 138, 140}, {58, 122, 152}, 0.72};
    case Scene::Day:
        break;
    }
    return {{58, 120, 196}, {214, 232, 244}, {255, 252, 236}, {120, 156, 150}, {88, 132, 92}, 0.84};
}

void Cloud(Canvas& canvas, Point at, double size, double alpha) {
    static constexpr struct {
        double x, y, r;
    } Puffs[] = {{-1.6, 0.2, 0.7}, {-0.8, -0.1, 1}, {0, -0.35, 1.2}, {0.9, -0.05, 1}, {1.7, 0.2, 0.7}};
    for (const auto& puff : Puffs)
        for (int ring = 3; ring >= 1; --ring) // several rings one over the other: a soft edge
            canvas.Fill(Ellipse({at.x + puff.x * size, at.y + puff.y * size}, puff.r * size * (0.6 + 0.18 * ring),
                                puff.r * size * (0.32 + 0.10 * ring)),
                        White, alpha / 3);
}

void Ridge(Canvas& canvas, double base, double height, int seed, Color color) {
    Outline ridge;
    const double width = canvas.Width();
    unsigned state = static_cast<unsigned>(seed) * 2654435761u + 12345u;
    for (int i = -1; i <= 13; ++i) {
        state = state * 1664525u + 1013904223u;
        ridge.push_back({width * i / 12, base - height * ((state >> 24) / 255.0)});
    }
    ridge.push_back({width * 1.2, canvas.Height() * 1.2});
    ridge.push_back({-width * 0.2, canvas.Height() * 1.2});
    canvas.Fill(Smooth(ridge), color);
}

void DrawScene(Canvas& canvas, Scene scene) {
    const SceneColors colors = ColorsOf(scene);
    const double width = canvas.Width(), height = canvas.Height(), horizon = height * colors.horizonAt;
    canvas.FillAll([&](double, double y) { return Mix(colors.zenith, colors.horizon, y / horizon); });
    const Point sun = scene == Scene::Dusk ? Point{width * 0.22, horizon * 0.86} : Point{width * 0.82, height * 0.14};
    for (int ring = 6; ring >= 1; --ring)
        canvas.Fill(Ellipse(sun, height * 0.035 * ring, height * 0.035 * ring), colors.sun, 0.16);
    const double cloudAlpha = scene == Scene::Dusk ? 0.28 : 0.5;
    Cloud(canvas, {width * 0.16, height * 0.17}, height * 0.085, cloudAlpha);
    Cloud(canvas, {width * 0.60, height * 0.11}, height * 0.055, cloudAlpha * 0.8);
    Cloud(canvas, {width * 0.93, height * 0.36}, height * 0.07, cloudAlpha * 0.7);
    Ridge(canvas, horizon + 2, height * 0.10, 3, Mix(colors.far, colors.horizon, 0.35));
    Ridge(canvas, horizon + height * 0.03, height * 0.07, 8, colors.far);
    canvas.Fill({{0, horizon + height * 0.03}, {width, horizon + height * 0.03}, {width, height}, {0, height}},
                [&](double, double y) {
                    return Mix(colors.near, Mix(colors.near, Black, 0.35), (y - horizon) / (height - horizon));
                });
    if (scene == Scene::Lake)
        for (int i = 0; i < 14; ++i) {
            const double y = horizon + height * (0.045 + 0.017 * i);
            const double x = width * ((i * 37 % 100) / 100.0);
            canvas.Fill(Ellipse({x, y}, width * (0.05 + 0.006 * i), 1.2 + 0.12 * i), White, 0.22);
        }
}

// ---- aircraft

// Lit from above, with a stripe between two heights that rises towards the tail.
Paint BodyPaint(const Livery& livery, double top, double bottom, double stripeAt, double stripeWidth) {
    return [=](double x, double y) {
        const double place = (y - top) / (bottom - top);
        const double stripe = stripeAt + (x - 500) * 0.06;
        Color color = livery.body;
        if (y > stripe && y < stripe + stripeWidth)
            color = livery.stripe;
        else if (y > stripe + stripeWidth * 1.35)
            color = livery.belly;
        return place < 0.3 ? Mix(White, color, 0.45 + place * 1.8) : Mix(color, Dark, (place - 0.3) * 0.55);
    };
}

Paint Shaded(Color color, double top, double bottom) {
    return [=](double, double y) {
        return Mix(Mix(color, White, 0.25), Mix(color, Dark, 0.45), (y - top) / (bottom - top));
    };
}

Paint Glass(double top, double bottom) {
    return [=](double, double y) { return Mix({190, 222, 240}, {52, 78, 104}, (y - top) / (bottom - top)); };
}

void Wheel(Canvas& canvas, Point axle, double radius, Point leg) {
    canvas.Line(leg, axle, 9, {150, 154, 160});
    canvas.Fill(Ellipse(axle, radius, radius), Black);
    canvas.Fill(Ellipse(axle, radius * 0.45, radius * 0.45), {168, 172, 178});
}

void Propeller(Canvas& canvas, Point hub, double radius, Color spinner) {
    canvas.Fill(Ellipse(hub, radius * 0.09, radius), White, 0.30);
    canvas.Fill(Ellipse(hub, radius * 0.03, radius), Dark, 0.25);
    canvas.Fill(Smooth({{hub.x - 14, hub.y - 18},
                        {hub.x + 8, hub.y - 10},
                        {hub.x + 24, hub.y},
                        {hub.x + 8, hub.y + 10},
                        {hub.x - 14, hub.y + 18}}),
                Shaded(spinner, hub.y - 18, hub.y + 18));
}

void Fin(Canvas& canvas, const Livery& livery, const Outline& outline, double top, double bottom) {
    canvas.Fill(outline, Shaded(livery.stripe, top, bottom));
    canvas.Line(outline[0], outline[1], 3, Dark, 0.35);
}

void DrawLightProp(Canvas& canvas, const Livery& livery) {
    Fin(canvas, livery, {{150, 190}, {72, 62}, {118, 58}, {262, 168}}, 60, 190);
    canvas.Fill(Smooth({{70, 186},
                        {250, 158},
                        {430, 118},
                        {560, 88},
                        {668, 90},
                        {742, 136},
                        {850, 154},
                        {896, 176},
                        {888, 214},
                        {815, 244},
                        {600, 258},
                        {420, 244},
                        {200, 212}}),
                BodyPaint(livery, 88, 258, 182, 24));
    canvas.Fill(Smooth({{560, 106}, {622, 100}, {670, 104}, {720, 142}, {640, 152}, {556, 152}}), Glass(100, 152));
    canvas.Fill(Smooth({{470, 126}, {540, 108}, {540, 152}, {476, 158}}), Glass(100, 156));
    canvas.Line({640, 96}, {640, 154}, 6, livery.body);
    canvas.Fill(Smooth({{60, 178}, {190, 176}, {214, 184}, {190, 192}, {60, 190}}), Shaded(livery.body, 174, 194));
    canvas.Line({560, 96}, {604, 244}, 7, {206, 210, 214});
    canvas.Fill(Smooth({{452, 78}, {560, 62}, {690, 68}, {716, 82}, {690, 94}, {470, 94}}),
                Shaded(livery.body, 60, 100));
    Wheel(canvas, {590, 312}, 24, {560, 250});
    Wheel(canvas, {828, 306}, 20, {822, 236});
    Propeller(canvas, {904, 192}, 96, livery.stripe);
}

void DrawAmphibian(Canvas& canvas, const Livery& livery) {
    Fin(canvas, livery, {{150, 190}, {58, 34}, {120, 30}, {262, 178}}, 30, 190);
    canvas.Fill(Smooth({{70, 60}, {30, 56}, {20, 66}, {120, 74}, {196, 68}, {150, 60}}), Shaded(livery.body, 52, 78));
    canvas.Fill(Smooth({{78, 184},
                        {270, 176},
                        {480, 128},
                        {600, 104},
                        {708, 118},
                        {800, 176},
                        {914, 204},
                        {922, 226},
                        {860, 268},
                        {700, 292},
                        {520, 292},
                        {500, 268},
                        {300, 236},
                        {130, 206}}),
                BodyPaint(livery, 104, 292, 208, 22));
    canvas.Fill(Smooth({{590, 122}, {650, 118}, {706, 130}, {766, 172}, {680, 178}, {584, 174}}), Glass(116, 178));
    for (int i = 0; i < 3; ++i)
        canvas.Fill(Ellipse({380.0 + 56 * i, 196.0 - 5 * i}, 15, 14), Glass(170, 214));
    canvas.Fill({{430, 120}, {520, 106}, {520, 74}, {450, 74}}, Shaded(livery.body, 70, 122));
    canvas.Fill(Smooth({{350, 68}, {460, 50}, {600, 54}, {632, 66}, {600, 80}, {366, 82}}),
                Shaded(livery.body, 48, 84));
    canvas.Fill(Smooth({{420, 44}, {560, 24}, {640, 30}, {664, 46}, {640, 62}, {440, 58}}),
                Shaded(livery.stripe, 24, 64));
    Propeller(canvas, {668, 46}, 74, livery.body);
    canvas.Line({560, 80}, {600, 236}, 6, {206, 210, 214});
    canvas.Fill(Smooth({{520, 246}, {600, 232}, {700, 240}, {716, 256}, {640, 274}, {560, 270}}),
                Shaded(livery.stripe, 230, 276));
}

void DrawHeavyProp(Canvas& canvas, const Livery& livery) {
    Fin(canvas, livery, {{150, 176}, {50, 16}, {128, 12}, {290, 150}}, 12, 176);
    canvas.Fill(Smooth({{50, 170},
                        {240, 136},
                        {460, 122},
                        {760, 122},
                        {866, 146},
                        {940, 196},
                        {936, 222},
                        {860, 256},
                        {700, 268},
                        {440, 266},
                        {220, 228}}),
                BodyPaint(livery, 122, 268, 190, 20));
    for (int i = 0; i < 10; ++i)
        canvas.Fill(Ellipse({330.0 + 46 * i, 170}, 13, 15), Glass(156, 186));
    canvas.Fill(Smooth({{826, 148}, {862, 150}, {904, 182}, {850, 184}, {822, 180}}), Glass(146, 186));
    canvas.Fill(Smooth({{30, 166}, {180, 160}, {214, 170}, {180, 182}, {40, 180}}), Shaded(livery.body, 160, 184));
    Wheel(canvas, {560, 346}, 28, {552, 262});
    Wheel(canvas, {860, 330}, 22, {850, 252});
    canvas.Fill(Smooth({{420, 236}, {560, 214}, {700, 222}, {726, 240}, {690, 254}, {440, 254}}),
                Shaded(livery.body, 212, 258));
    canvas.Fill(Smooth({{480, 230}, {640, 202}, {740, 206}, {772, 230}, {740, 256}, {620, 268}, {500, 254}}),
                BodyPaint({livery.stripe, livery.body, livery.stripe}, 202, 268, 226, 8));
    Propeller(canvas, {780, 231}, 92, livery.stripe);
}

void DrawJet(Canvas& canvas, const Livery& livery) {
    Fin(canvas, livery, {{150, 178}, {36, 22}, {112, 18}, {290, 156}}, 18, 178);
    canvas.Fill(Smooth({{40, 166},
                        {240, 144},
                        {480, 140},
                        {800, 142},
                        {900, 164},
                        {962, 204},
                        {952, 222},
                        {860, 240},
                        {500, 246},
                        {260, 226},
                        {120, 190}}),
                BodyPaint(livery, 140, 246, 186, 14));
    for (int i = 0; i < 18; ++i)
        canvas.Fill(Ellipse({280.0 + 30 * i, 176}, 6, 8), Glass(166, 188));
    canvas.Fill(Smooth({{868, 162}, {896, 166}, {922, 184}, {884, 186}}), Glass(160, 188));
    canvas.Fill(Smooth({{20, 160}, {150, 156}, {190, 166}, {140, 176}, {30, 172}}), Shaded(livery.body, 154, 178));
    canvas.Fill({{360, 254}, {560, 222}, {664, 222}, {620, 236}, {400, 262}}, Shaded(livery.body, 220, 262));
    canvas.Fill(Smooth({{470, 256}, {560, 244}, {626, 248}, {636, 268}, {620, 288}, {540, 290}, {480, 278}}),
                Shaded(livery.stripe, 244, 290));
    canvas.Fill(Ellipse({632, 268}, 8, 18), Dark);
}

void DrawHelicopter(Canvas& canvas, const Livery& livery) {
    canvas.Fill(Smooth({{120, 170}, {330, 176}, {470, 168}, {470, 220}, {330, 212}, {120, 186}}),
                BodyPaint(livery, 166, 222, 192, 10));
    Fin(canvas, livery, {{150, 182}, {82, 96}, {120, 92}, {210, 176}}, 92, 182);
    canvas.Fill(Smooth({{440, 160},
                        {520, 124},
                        {640, 116},
                        {752, 138},
                        {826, 196},
                        {836, 236},
                        {770, 272},
                        {600, 284},
                        {480, 266},
                        {430, 214}}),
                BodyPaint(livery, 116, 284, 214, 22));
    canvas.Fill(Smooth({{664, 134}, {740, 148}, {806, 200}, {808, 222}, {740, 226}, {668, 210}}), Glass(130, 226));
    canvas.Fill(Smooth({{556, 140}, {646, 132}, {650, 208}, {560, 206}}), Glass(130, 212));
    canvas.Fill({{556, 124}, {664, 118}, {648, 84}, {580, 84}}, Shaded(livery.stripe, 84, 124));
    canvas.Line({614, 88}, {614, 62}, 10, Dark);
    canvas.Fill(Ellipse({614, 60}, 396, 7), Dark, 0.42);
    canvas.Fill(Ellipse({614, 58}, 396, 3), White, 0.35);
    canvas.Fill(Ellipse({104, 140}, 50, 50), White, 0.26);
    canvas.Fill(Ellipse({104, 140}, 8, 8), Dark);
    canvas.Line({540, 276}, {520, 326}, 8, Dark);
    canvas.Line({700, 276}, {720, 326}, 8, Dark);
    canvas.Fill(Smooth({{440, 322}, {790, 322}, {830, 306}, {836, 312}, {796, 332}, {440, 332}}), Dark);
}

void DrawShapes(Canvas& canvas, AircraftKind kind, const Livery& livery) {
    switch (kind) {
    case AircraftKind::LightProp:
        return DrawLightProp(canvas, livery);
    case AircraftKind::Amphibian:
        return DrawAmphibian(canvas, livery);
    case AircraftKind::HeavyProp:
        return DrawHeavyProp(canvas, livery);
    case AircraftKind::Jet:
        return DrawJet(canvas, livery);
    case AircraftKind::Helicopter:
        return DrawHelicopter(canvas, livery);
    }
}

} // namespace

Canvas DrawAircraft(AircraftKind kind, const Livery& livery, Scene scene, int width, int height) {
    Canvas canvas(width, height);
    DrawScene(canvas, scene);
    const double scale = std::min(width * 0.84 / BoxWidth, height * 0.8 / BoxHeight);
    canvas.SetView(scale, {(width - BoxWidth * scale) / 2, height * 0.46 - BoxHeight * scale / 2});
    DrawShapes(canvas, kind, livery);
    return canvas;
}

Canvas DrawLivery(const Livery& livery, int sheet, int size) {
    Canvas canvas(size, size);
    const double s = size;
    canvas.FillAll([&](double, double y) { return Mix(Mix(livery.body, White, 0.2), livery.belly, y / s); });
    const double stripe = s * (0.42 + 0.07 * (sheet % 3));
    canvas.Fill(Smooth({{-s, stripe},
                        {s * 0.4, stripe - s * 0.04},
                        {s * 2, stripe - s * 0.16},
                        {s * 2, stripe},
                        {s * 0.4, stripe + s * 0.10},
                        {-s, stripe + s * 0.12}}),
                livery.stripe);
    for (int i = 1; i < 8; ++i) { // where the sheets of metal meet, and their rivets
        const double x = s * i / 8;
        canvas.Line({x, 0}, {x, s}, 1, Dark, 0.22);
        for (int rivet = 0; rivet < size; rivet += 8)
            canvas.Fill(Ellipse({x + 3, rivet + 3.0}, 1, 1), Dark, 0.25);
    }
    if (sheet % 2 == 0)
        for (int i = 0; i < 6; ++i)
            canvas.Fill(Ellipse({s * (0.16 + 0.13 * i), s * 0.26}, s * 0.038, s * 0.05), Glass(s * 0.2, s * 0.32));
    else
        canvas.Fill({{s * 0.62, s * 0.08}, {s * 0.94, s * 0.08}, {s * 0.86, s * 0.30}, {s * 0.54, s * 0.30}},
                    livery.stripe);
    return canvas;
}

Canvas DrawPanel(const Livery& livery, int dials, int width, int height) {
    Canvas canvas(width, height);
    const Color sheet = Mix(livery.body, {70, 74, 80}, 0.82);
    canvas.FillAll([&](double x, double y) {
        const Color color = Mix(sheet, Dark, y / height * 0.6);
        return (static_cast<int>(x) * 7 + static_cast<int>(y) * 13) % 5 == 0 ? Mix(color, White, 0.03) : color;
    });
    canvas.Fill(Smooth({{-40.0, 0},
                        {width * 0.5, -8},
                        {width + 40.0, 0},
                        {width + 40.0, height * 0.10},
                        {width * 0.5, height * 0.05},
                        {-40.0, height * 0.10}}),
                Black);
    const int columns = (dials + 1) / 2;
    const double radius = std::min(width / (columns * 2.5), height / 5.4);
    for (int i = 0; i < dials; ++i) {
        const Point center{width * (i % columns + 0.5) / columns, height * (i < columns ? 0.34 : 0.76)};
        canvas.Fill(Ellipse(center, radius * 1.08, radius * 1.08), {96, 100, 106});
        canvas.Fill(Ellipse(center, radius, radius), Black);
        for (const Point& tick : Ellipse({0, 0}, 1, 1)) // 64 steps around the dial
            canvas.Line({center.x + tick.x * radius * 0.84, center.y + tick.y * radius * 0.84},
                        {center.x + tick.x * radius * 0.94, center.y + tick.y * radius * 0.94}, 1.2, White, 0.55);
        const Outline around = Ellipse({0, 0}, 1, 1);
        const Point& hand = around[static_cast<std::size_t>(i * 11 + 37) % around.size()];
        canvas.Line(center, {center.x + hand.x * radius * 0.78, center.y + hand.y * radius * 0.78}, radius * 0.07,
                    livery.stripe);
        canvas.Fill(Ellipse(center, radius * 0.1, radius * 0.1), White);
    }
    return canvas;
}

} // namespace korvadex::demo
