// Pictures that were looked at before they were kept, in pictures/. With VELMORANTH_KEEP_PICTURES
// set the pictures are written instead: look at each before it is committed.
//
// Tolerance: a component may differ by kSmallDifference everywhere (another rounding), and beyond
// that in kMostOddPixels of the pixels, and of the pixels of any tile in kMostOddOfTile (another
// rasteriser of letters), so that nothing as small as a page dot can go missing. A failure leaves
// the difference as a picture: gray where nothing differs, the brighter the more it does. With
// another release of the interface's face, whose letters have other shapes, a case is skipped.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmoranth::tests {

inline constexpr int kSmallDifference = 3;
inline constexpr double kMostOddPixels = 0.002;
inline constexpr std::size_t kTile = 8;  // pixels a side
inline constexpr std::size_t kMostOddOfTile = 16;

struct GoldenPicture {
    std::size_t width = 0;
    std::size_t height = 0;
    // Premultiplied B, G, R, A, top row first.
    std::vector<std::uint8_t> pixels;
};

// A failure of the test when the picture differs from the kept one of that name.
void expectGolden(const std::string& name, const GoldenPicture& picture);

}  // namespace velmoranth::tests
