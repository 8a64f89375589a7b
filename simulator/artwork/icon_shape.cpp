// The continuous corner: a corner whose curvature grows from nothing, so that it needs more of the
// edge than its radius. The numbers of its curve are those published with PaintCode's analysis of
// the platform's rounded rectangle.
#include "simulator/artwork/artwork.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace velmoranth::simulator {
namespace {

struct CornerPoint {
    double x, y;
};

// Distances from the corner in radii; the walk starts on the top edge and ends on the left one.
constexpr double kCornerReach = 1.528665;
constexpr CornerPoint kStart{kCornerReach, 0};

struct CornerCurve {
    CornerPoint firstControl, secondControl, end;
};

constexpr CornerPoint between(CornerPoint a, CornerPoint b, double share) {
    return {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share};
}

// A straight piece as a curve, so that the whole corner is one table.
constexpr CornerCurve straight(CornerPoint from, CornerPoint to) {
    return {between(from, to, 1.0 / 3), between(from, to, 2.0 / 3), to};
}

constexpr std::array kCorner{
    CornerCurve{{1.088493, 0}, {0.868407, 0}, {0.669934, 0.065496}},
    straight({0.669934, 0.065496}, {0.631494, 0.074911}),
    CornerCurve{{0.372824, 0.169060}, {0.169060, 0.372824}, {0.074911, 0.631494}},
    straight({0.074911, 0.631494}, {0.065496, 0.669934}),
    CornerCurve{{0, 0.868407}, {0, 1.088493}, {0, kCornerReach}},
};

CornerPoint onCurve(CornerPoint from, const CornerCurve& curve, double t) {
    const CornerPoint a = between(from, curve.firstControl, t);
    const CornerPoint b = between(curve.firstControl, curve.secondControl, t);
    const CornerPoint c = between(curve.secondControl, curve.end, t);
    return between(between(a, b, t), between(b, c, t), t);
}

// The corner as points in pixels, y rising and x falling.
std::vector<CornerPoint> flattenedCorner(double radius) {
    constexpr int kSteps = 96;
    std::vector<CornerPoint> points{{kStart.x * radius, 0}};
    CornerPoint from = kStart;
    for (const CornerCurve& curve : kCorner) {
        for (int step = 1; step <= kSteps; ++step) {
            const CornerPoint p = onCurve(from, curve, static_cast<double>(step) / kSteps);
            points.push_back({p.x * radius, p.y * radius});
        }
        from = curve.end;
    }
    return points;
}

// Coverage of the first `side` by `side` pixels of the corner, exact along x and sampled along y.
std::vector<double> cornerCoverage(double radius, int side) {
    constexpr int kLinesPerPixel = 32;
    const auto count = static_cast<std::size_t>(side);
    const std::vector<CornerPoint> points = flattenedCorner(radius);
    std::vector<double> coverage(count * count, 0.0);
    std::size_t next = 1;
    for (int line = 0; line < side * kLinesPerPixel; ++line) {
        const double y = (line + 0.5) / kLinesPerPixel;
        while (next < points.size() && points[next].y <= y) {
            ++next;
        }
        double edge = 0;
        if (next < points.size()) {
            const CornerPoint above = points[next - 1];
            const CornerPoint below = points[next];
            edge = above.x + (below.x - above.x) * (y - above.y) / (below.y - above.y);
        }
        double* row = &coverage[static_cast<std::size_t>(line / kLinesPerPixel) * count];
        for (int x = 0; x < side; ++x) {
            row[x] += std::clamp(x + 1 - edge, 0.0, 1.0) / kLinesPerPixel;
        }
    }
    return coverage;
}

}  // namespace

std::vector<std::uint8_t> continuousCornerCoverage(int widthPixels, int heightPixels,
                                                   double radius) {
    if (widthPixels <= 0 || heightPixels <= 0 || widthPixels > kMaximumWallpaperPixels ||
        heightPixels > kMaximumWallpaperPixels) {
        return {};
    }
    const auto width = static_cast<std::size_t>(widthPixels);
    const auto height = static_cast<std::size_t>(heightPixels);
    std::vector<std::uint8_t> shape(width * height, 255);
    const int shorter = std::min(widthPixels, heightPixels);
    const double largest = shorter / 2.0 / kCornerReach;
    const double clamped = radius > 0 ? std::min(radius, largest) : 0.0;  // also for not-a-number
    if (clamped <= 0) {
        return shape;
    }
    const int side =
        std::min(static_cast<int>(std::ceil(clamped * kCornerReach)), (shorter + 1) / 2);
    const auto count = static_cast<std::size_t>(side);
    const std::vector<double> corner = cornerCoverage(clamped, side);
    for (std::size_t y = 0; y < count; ++y) {
        for (std::size_t x = 0; x < count; ++x) {
            // The two ways to see a pixel are averaged, so that the corner is its own mirror image.
            const double covered = (corner[y * count + x] + corner[x * count + y]) / 2;
            const auto value = static_cast<std::uint8_t>(std::lround(covered * 255));
            const std::size_t right = width - 1 - x;
            const std::size_t bottom = height - 1 - y;
            shape[y * width + x] = value;
            shape[y * width + right] = value;
            shape[bottom * width + x] = value;
            shape[bottom * width + right] = value;
        }
    }
    return shape;
}

std::vector<std::uint8_t> iconShapeCoverage(int pixels) {
    if (pixels <= 0 || pixels > kMaximumIconPixels) {
        return {};
    }
    return continuousCornerCoverage(pixels, pixels, pixels * kIconCornerRadiusShare);
}

void applyIconShape(std::vector<std::uint8_t>& bgra, int pixels) {
    const std::vector<std::uint8_t> shape = iconShapeCoverage(pixels);
    if (shape.empty() || bgra.size() != shape.size() * 4) {
        return;
    }
    for (std::size_t pixel = 0; pixel < shape.size(); ++pixel) {
        if (shape[pixel] == 255) {
            continue;
        }
        for (std::size_t component = pixel * 4; component < pixel * 4 + 4; ++component) {
            bgra[component] =
                static_cast<std::uint8_t>((bgra[component] * shape[pixel] + 127) / 255);
        }
    }
}

}  // namespace velmoranth::simulator
