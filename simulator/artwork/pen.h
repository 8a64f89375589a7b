// The drawing pen: the few vector operations that glyphs are made of, over cairo,
// which is used because it fills and strokes with even antialiasing at any scale. Cairo's types
// stay in pen.cpp.
//
// The unit is a hundredth of the icon's side: the icon reaches from (0, 0) to (100, 100), y down,
// whatever its pixels; a pen made with a size of its own has that instead. Every stroke has round
// ends and joins.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

struct _cairo;

namespace velmoranth::simulator {

/// A colour as 0xRRGGBB with an opacity beside it.
struct Ink {
    std::uint32_t rgb = 0xFFFFFF;
    double opacity = 1;
};

constexpr Ink faded(Ink ink, double opacity) {
    return {ink.rgb, ink.opacity * opacity};
}

class Pen {
  public:
    /// Draws into `bgra`, which holds `widthPixels * heightPixels` pixels, outlives the pen and
    /// reaches from (0, 0) to (`width`, `height`) in units of the caller's.
    Pen(std::vector<std::uint8_t>& bgra, int widthPixels, int heightPixels, double width,
        double height);
    ~Pen();
    Pen(const Pen&) = delete;
    Pen& operator=(const Pen&) = delete;

    // Outlines. Each adds to the current path and returns the pen, so that a shape reads as one
    // line.

    /// Letters M, L, H, V, C, Q and Z with absolute coordinates, as SVG has them. Text of ours
    /// only: it is not checked.
    Pen& path(std::string_view commands);
    Pen& circle(double x, double y, double radius);
    Pen& ellipse(double x, double y, double radiusX, double radiusY);
    /// Degrees, 0 to the right, clockwise; joined to what is there already unless a new path
    /// begins.
    Pen& arc(double x, double y, double radius, double fromDegrees, double toDegrees);
    Pen& roundRect(double x, double y, double width, double height, double radius);
    Pen& line(double x1, double y1, double x2, double y2);
    /// A closed polygon of corner points on a circle, alternating two radii when the inner one is
    /// not zero.
    Pen& star(double x, double y, int points, double radius, double innerRadius);

    // Marks. Each uses the path up.

    void fill(Ink ink);
    void stroke(Ink ink, double width);
    /// Fills and strokes in one colour: the outline with its corners rounded by half the width.
    /// Opaque inks only.
    void fillRounded(Ink ink, double width);
    /// Limits what follows to the path, until the next `restore`.
    Pen& clip();
    /// Keeps what follows off the path's inside, until the next `restore`: how one shape leaves a
    /// gap around another.
    Pen& clipAway();

    void fillGradient(Ink top, Ink bottom, double fromY, double toY);
    void glow(double x, double y, double radius, Ink centre);

    void save();
    void restore();
    void turn(double degrees, double aboutX, double aboutY);

    /// Draws the same `count` times, turned about a point by the same angle each time, from 0
    /// degrees on; `draw` is given how often it has been called.
    template <typename Draw>
    void turnRound(int count, double degrees, double aboutX, double aboutY, const Draw& draw) {
        for (int i = 0; i < count; ++i) {
            save();
            turn(degrees * i, aboutX, aboutY);
            draw(i);
            restore();
        }
    }

    void shift(double x, double y);
    void grow(double factor, double aboutX, double aboutY);

  private:
    void useInk(Ink ink);

    _cairo* context_ = nullptr;
};

}  // namespace velmoranth::simulator
