// Shadows in pixels: what they look like, and the blurred shape of a rectangle, which is made once
// for all rectangles that are alike.
#pragma once

#include "desktop/imaging/pixels.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace velmoranth::desktop {

// The largest standard deviation of a blur, and from how far away something may cast a shadow.
inline constexpr double kMaxShadowDeviation = 256;
inline constexpr double kMaxShadowReach = 1024;
// Where a Gaussian's eighth bit ends.
inline constexpr double kShadowDeviations = 3;

struct DeviceShadow {
    double deviationX = 0;
    double deviationY = 0;
    double offsetX = 0;
    double offsetY = 0;
    std::uint8_t color[4] = {};  // premultiplied B, G, R, A
};

// Coverage of the pixels of `area`, tight rows.
struct ShadowTile {
    PixelRect area;
    std::shared_ptr<const std::vector<std::uint8_t>> coverage;
};

// The rectangle between the edges, blurred; pixels.
struct BlurredRect {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    double deviationX = 0;
    double deviationY = 0;
};

class ShadowTiles {
  public:
    // What `clip` shows of it. Rectangles of the same size, deviations and place within a pixel
    // (edges are taken to a 1024th) share the coverage when the clip cuts them alike. Kept ones
    // take at most kKeptBytes in all.
    [[nodiscard]] ShadowTile tile(const BlurredRect& rect, const PixelRect& clip);

    // How many were blurred, not found.
    [[nodiscard]] std::size_t made() const { return made_; }

    static constexpr std::size_t kKeptBytes = std::size_t{8} * 1024 * 1024;

  private:
    // Along one axis, relative to the whole pixel at the rectangle's start.
    struct Span {
        double from = 0;
        double to = 0;
        double deviation = 0;
        std::int64_t first = 0;  // pixels [first, last) are wanted
        std::int64_t last = 0;

        friend bool operator==(const Span&, const Span&) = default;
    };

    struct Kept {
        Span horizontal;
        Span vertical;
        std::shared_ptr<const std::vector<std::uint8_t>> coverage;
    };

    [[nodiscard]] static Span span(double from, double to, double deviation, std::int64_t clipFirst,
                                   std::int64_t clipLast, std::int64_t& origin);
    [[nodiscard]] static std::vector<double> profile(const Span& span);
    [[nodiscard]] static std::vector<std::uint8_t> blurred(const Span& horizontal,
                                                           const Span& vertical);

    std::vector<Kept> kept_;
    std::size_t keptBytes_ = 0;
    std::size_t made_ = 0;
};

}  // namespace velmoranth::desktop
