#include "demo/canvas.h"

#include <algorithm>
#include <cmath>

namespace korvadex::demo {

namespace {

constexpr int SubLines = 4; // samples of one pixel row; along the row coverage is exact

std::uint8_t MixByte(std::uint8_t a, std::uint8_t b, double t) {
    return static_cast<std::uint8_t>(a + (b - a) * t + 0.5);
}

} // namespace

Color Mix(Color a, Color b, double t) {
    t = std::clamp(t, 0.0, 1.0);
    return {MixByte(a.red, b.red, t), MixByte(a.green, b.green, t), MixByte(a.blue, b.blue, t)};
}

// Catmull-Rom, eight steps to a piece: only sums and products, so that every machine gets the same points.
Outline Smooth(const Outline& points) {
    constexpr int Steps = 8;
    Outline curve;
    const std::size_t count = points.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Point& a = points[(i + count - 1) % count];
        const Point& b = points[i];
        const Point& c = points[(i + 1) % count];
        const Point& d = points[(i + 2) % count];
        const auto at = [](double p, double q, double r, double s, double t) {
            return 0.5 *
                   (2 * q + (r - p) * t + (2 * p - 5 * q + 4 * r - s) * t * t + (3 * q - p - 3 * r + s) * t * t * t);
        };
        for (int step = 0; step < Steps; ++step) {
            const double t = step / static_cast<double>(Steps);
            curve.push_back({at(a.x, b.x, c.x, d.x, t), at(a.y, b.y, c.y, d.y, t)});
        }
    }
    return curve;
}

// Walked along its tangent half-angle, which needs no sine.
Outline Ellipse(Point center, double radiusX, double radiusY) {
    constexpr int Steps = 16;
    Outline outline;
    for (int quarter = 0; quarter < 4; ++quarter) {
        for (int step = 0; step < Steps; ++step) {
            const double t = step / static_cast<double>(Steps);
            double x = (1 - t * t) / (1 + t * t), y = 2 * t / (1 + t * t);
            for (int turn = 0; turn < quarter; ++turn) {
                const double old = x;
                x = -y;
                y = old;
            }
            outline.push_back({center.x + radiusX * x, center.y + radiusY * y});
        }
    }
    return outline;
}

Canvas::Canvas(int pixelWidth, int pixelHeight)
    : width(pixelWidth), height(pixelHeight),
      pixels(static_cast<std::size_t>(pixelWidth) * static_cast<std::size_t>(pixelHeight)) {}

void Canvas::SetView(double newScale, Point newOrigin) {
    scale = newScale;
    origin = newOrigin;
}

void Canvas::FillAll(const Paint& paint) {
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            pixels[Index(x, y)] = paint(x, y);
}

void Canvas::AddSpan(std::vector<double>& coverage, double from, double to) const {
    from = std::clamp(from, 0.0, static_cast<double>(width));
    to = std::clamp(to, 0.0, static_cast<double>(width));
    for (int x = static_cast<int>(from); x < to; ++x)
        coverage[static_cast<std::size_t>(x)] +=
            (std::min(to, x + 1.0) - std::max(from, static_cast<double>(x))) / SubLines;
}

void Canvas::Fill(const Outline& outline, const Paint& paint, double alpha) {
    Outline shape;
    double top = height, bottom = 0, left = width, right = 0;
    for (const Point& point : outline) {
        shape.push_back({point.x * scale + origin.x, point.y * scale + origin.y});
        top = std::min(top, shape.back().y);
        bottom = std::max(bottom, shape.back().y);
        left = std::min(left, shape.back().x);
        right = std::max(right, shape.back().x);
    }
    const int firstX = std::max(0, static_cast<int>(left));
    std::vector<double> coverage(static_cast<std::size_t>(width)), crossings;
    for (int y = std::max(0, static_cast<int>(top)); y < height && y < bottom; ++y) {
        std::fill(coverage.begin() + firstX, coverage.end(), 0.0);
        for (int line = 0; line < SubLines; ++line) {
            const double at = y + (line + 0.5) / SubLines;
            crossings.clear();
            for (std::size_t i = 0; i < shape.size(); ++i) {
                const Point &a = shape[i], &b = shape[(i + 1) % shape.size()];
                if ((a.y <= at) != (b.y <= at))
                    crossings.push_back(a.x + (at - a.y) * (b.x - a.x) / (b.y - a.y));
            }
            std::sort(crossings.begin(), crossings.end());
            for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
                AddSpan(coverage, crossings[i], crossings[i + 1]);
        }
        for (int x = firstX; x < width && x < right; ++x) {
            const double covered = coverage[static_cast<std::size_t>(x)];
            if (covered > 0) {
                const Color color = paint((x + 0.5 - origin.x) / scale, (y + 0.5 - origin.y) / scale);
                pixels[Index(x, y)] = Mix(pixels[Index(x, y)], color, covered * alpha);
            }
        }
    }
}

void Canvas::Fill(const Outline& outline, Color color, double alpha) {
    Fill(
        outline, [color](double, double) { return color; }, alpha);
}

void Canvas::Line(Point from, Point to, double thickness, Color color, double alpha) {
    const double length = std::sqrt((to.x - from.x) * (to.x - from.x) + (to.y - from.y) * (to.y - from.y));
    const double acrossX = -(to.y - from.y) / length * thickness / 2;
    const double acrossY = (to.x - from.x) / length * thickness / 2;
    Fill({{from.x + acrossX, from.y + acrossY},
          {to.x + acrossX, to.y + acrossY},
          {to.x - acrossX, to.y - acrossY},
          {from.x - acrossX, from.y - acrossY}},
         color, alpha);
}

} // namespace korvadex::demo
