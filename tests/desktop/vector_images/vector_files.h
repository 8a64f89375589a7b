// Makes small vector files for tests.
#pragma once

#include "desktop/vector_images/vector_images.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::desktop {

using FileBytes = std::vector<std::uint8_t>;
using Pixel = std::array<int, 4>;  // blue, green, red, alpha; premultiplied

inline constexpr Pixel kNothing{0, 0, 0, 0};
inline constexpr Pixel kRed{0, 0, 255, 255};
inline constexpr Pixel kBlue{255, 0, 0, 255};

[[nodiscard]] FileBytes bytesOf(std::string_view text);

struct PdfPage {
    std::string mediaBox = "0 0 10 8";
    std::string content;
    std::string more = {};  // of the page's dictionary, such as "/CropBox [0 0 1 1]"
};

// A sound PDF file with these pages. Objects that `objects` lists follow from number `firstObject`
// of the pages' own on; "/GS" is a graphics state of half opacity.
[[nodiscard]] FileBytes pdf(const std::vector<PdfPage>& pages,
                            const std::vector<std::string>& objects = {},
                            std::string_view trailer = {});
// The number of the first of those objects.
[[nodiscard]] std::size_t firstObject(std::size_t pageCount);

// `attributes` of the root, and what is in it.
[[nodiscard]] FileBytes svg(std::string_view attributes, std::string_view content);

// {-1, -1, -1, -1} outside.
[[nodiscard]] Pixel pixel(const DrawnImage& image, std::uint32_t x, std::uint32_t y);

// Whether this build has the library, or this machine the program; a test skips when not.
[[nodiscard]] bool hasLibrary(std::string_view name);

}  // namespace velmoranth::desktop
