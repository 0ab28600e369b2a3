// A small canvas for drawn pictures: gradients and smooth-edged shapes, the same pixels on every machine.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace korvadex::demo {

struct Color {
    std::uint8_t red = 0, green = 0, blue = 0;
};

// t from 0 (all a) to 1 (all b).
Color Mix(Color a, Color b, double t);

struct Point {
    double x = 0, y = 0;
};
using Outline = std::vector<Point>;
// The colour at a place of a shape, in the shape's own coordinates.
using Paint = std::function<Color(double x, double y)>;

// A closed curve through the points, as an outline with many more of them.
Outline Smooth(const Outline& points);
Outline Ellipse(Point center, double radiusX, double radiusY);

class Canvas {
  public:
    Canvas(int width, int height);

    int Width() const { return width; }
    int Height() const { return height; }
    Color At(int x, int y) const { return pixels[Index(x, y)]; }

    // From here on shapes are given in coordinates that are scaled, then moved, to pixels.
    void SetView(double newScale, Point newOrigin);

    // Every pixel; the paint gets pixel coordinates.
    void FillAll(const Paint& paint);
    // alpha from 0 (unseen) to 1 (covers).
    void Fill(const Outline& outline, const Paint& paint, double alpha = 1);
    void Fill(const Outline& outline, Color color, double alpha = 1);
    // A straight line of that thickness.
    void Line(Point from, Point to, double thickness, Color color, double alpha = 1);

  private:
    std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
    void AddSpan(std::vector<double>& coverage, double from, double to) const;

    int width, height;
    double scale = 1;
    Point origin;
    std::vector<Color> pixels;
};

} // namespace korvadex::demo
