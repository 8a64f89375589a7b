// What a picture starts from: its size in pixels, and transparent pixels. Private to the folder.
#pragma once

#include "simulator/artwork/artwork.h"
#include "simulator/artwork/pen.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace velmoranth::simulator {

// 0 for what is not a positive number or beyond the cap.
inline int pixelsFor(double points, double scale) {
    const double pixels = std::round(points * scale);
    if (!(points > 0) || !(scale > 0) || !(pixels <= kMaximumFurniturePixels)) {
        return 0;
    }
    return std::max(1, static_cast<int>(pixels));
}

// Transparent, or without pixels when either side is 0.
inline FurniturePicture blankPicture(int widthPixels, int heightPixels) {
    if (widthPixels == 0 || heightPixels == 0) {
        return {};
    }
    FurniturePicture picture{.widthPixels = widthPixels, .heightPixels = heightPixels, .bgra = {}};
    picture.bgra.resize(static_cast<std::size_t>(widthPixels) *
                        static_cast<std::size_t>(heightPixels) * 4);
    return picture;
}

// A picture of that many points, drawn by `draw(Pen&)` in units of which the picture has
// `unitsWide` by `unitsHigh`. Nothing is drawn when the size is out of range.
template <typename Draw>
FurniturePicture drawnPicture(double width, double height, double scale, double unitsWide,
                              double unitsHigh, const Draw& draw) {
    FurniturePicture picture = blankPicture(pixelsFor(width, scale), pixelsFor(height, scale));
    if (!picture.bgra.empty()) {
        Pen pen(picture.bgra, picture.widthPixels, picture.heightPixels, unitsWide, unitsHigh);
        draw(pen);
    }
    return picture;
}

// The names of a table's rows, in its order.
template <typename Row, std::size_t Count>
constexpr std::array<std::string_view, Count> namesOf(const std::array<Row, Count>& rows) {
    std::array<std::string_view, Count> names;
    std::ranges::transform(rows, names.begin(), &Row::name);
    return names;
}

// The row of that name, nullptr when there is none.
template <typename Row, std::size_t Count>
const Row* rowNamed(const std::array<Row, Count>& rows, std::string_view name) {
    const auto row = std::ranges::find(rows, name, &Row::name);
    return row == rows.end() ? nullptr : &*row;
}

}  // namespace velmoranth::simulator
