// Pictures beside and below each other.
#pragma once

#include "simulator/picture.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct Captioned {
    const simulator::Picture& picture;
    std::string caption;  // "" for none
};

struct CaptionedRow {
    std::string title = {};  // above it, at its left; "" for none
    std::vector<Captioned> pictures = {};
};

// Points; in the picture times its scale, rounded.
inline constexpr double kComparisonGap = 12;
inline constexpr double kCaptionHeight = 28;

// Where a picture lies in the one that it has become a part of; pixels.
struct Placed {
    std::size_t x = 0;
    std::size_t y = 0;
    std::size_t width = 0;
    std::size_t height = 0;

    friend bool operator==(const Placed&, const Placed&) = default;
};

struct Arranged {
    simulator::Picture picture;
    std::vector<Placed> places;  // row by row
};

// Rows below each other, each from the left with gaps between its pictures, captions and a title
// above where there are any; with `margin` points around it all and below each row but the last. At
// the scale of the first picture; there must be one.
[[nodiscard]] Arranged inRows(std::span<const CaptionedRow> rows, double margin = 0);

// One row of both.
[[nodiscard]] simulator::Picture sideBySide(const Captioned& left, const Captioned& right);

// A picture made that many pixels wide, its height in proportion and at least one pixel; one pixel
// a point.
[[nodiscard]] simulator::Picture shrunkToWidth(const simulator::Picture& picture,
                                               std::size_t width);

}  // namespace velmoranth::cli
