// Stretching a picture over a rectangle of pixels, each axis for itself: an axis that shrinks
// averages the area that a pixel covers, one that grows is bicubic (Catmull-Rom), one that keeps
// its size on whole pixels copies. Work on premultiplied pixels, so no colour bleeds from
// transparent ones.
//
// pixman has a filter of this kind as well: it takes 20 times as long to enlarge 180 × 180 pixels
// to 540 × 540, 5 times as long to shrink them back, and is up to 50 of 255 away where colours are
// steep.
#pragma once

#include "desktop/imaging/pixels.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoranth::desktop {

// How one axis of the picture lies on the pixels of the target.
struct Axis {
    double start = 0;  // target pixels
    double end = 0;    // after start
    bool flipped = false;
    std::size_t sourceSize = 0;  // pixels
    std::int64_t first = 0;      // target pixels that are wanted: [first, last)
    std::int64_t last = 0;
};

// The pixels of the source that make up each wanted pixel of the target.
struct AxisWeights {
    struct Span {
        std::size_t source = 0;  // first pixel
        std::size_t weight = 0;  // index of its weight
        std::size_t count = 0;
    };

    std::vector<Span> spans;
    std::vector<float> weights;          // a span's add up to 1
    std::vector<std::uint8_t> coverage;  // how much of the target pixel the picture covers
    bool wholePixels = true;             // coverage is 255 everywhere
};

[[nodiscard]] AxisWeights axisWeights(const Axis& axis);

// The whole picture over so many pixels, tight rows.
[[nodiscard]] std::vector<std::uint8_t> stretch(const PixelView& source, PixelSize size);

// Gives the rows of the stretched picture from the first wanted one to the last.
class Resampler {
  public:
    // `source` must outlive this object.
    Resampler(const PixelView& source, const Axis& horizontal, const Axis& vertical);

    // Row `index` counted from the first wanted one: premultiplied B, G, R, A for each wanted
    // column, without the coverage of the edges. Valid until the next call.
    [[nodiscard]] const std::uint8_t* row(std::size_t index);
    // The coverage of that row's pixels; null when it is all of each.
    [[nodiscard]] const std::uint8_t* coverage(std::size_t index);

  private:
    [[nodiscard]] const float* sourceRow(std::size_t y);

    // Bicubic needs four rows at a time; an area average walks through them one by one.
    static constexpr std::size_t kKeptRows = 4;

    PixelView source_;
    AxisWeights horizontal_;
    AxisWeights vertical_;
    std::size_t firstSource_ = 0;  // column that a wanted pixel is made of, and as many on from it
    std::size_t sources_ = 0;
    std::vector<float> wide_;  // these pixels of one row
    std::vector<float> kept_[kKeptRows];
    std::size_t keptIndex_[kKeptRows];
    std::vector<float> sum_;
    std::vector<std::uint8_t> row_;
    std::vector<std::uint8_t> coverage_;
};

}  // namespace velmoranth::desktop
