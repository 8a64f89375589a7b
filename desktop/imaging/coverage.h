// How much of each pixel a shape covers, a byte a pixel in tight rows, and how such a picture is
// blurred.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmoranth::desktop {

// A rectangle in pixels with corners of the given radii, relative to the coverage's own top left.
struct RoundedRect {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    double radiusX = 0;
    double radiusY = 0;
};

// width × height bytes. Radii are limited to half of the sides; without radii the edges are exact
// area shares.
[[nodiscard]] std::vector<std::uint8_t> coverageOf(const RoundedRect& shape, std::size_t width,
                                                   std::size_t height);

// A Gaussian blur of width × height bytes, its deviation in pixels, as three box averages. Beyond
// the edges there is nothing. Not positive does nothing; deviations above 256 count as 256.
void blurCoverage(std::vector<std::uint8_t>& coverage, std::size_t width, std::size_t height,
                  double deviation);
// The same with a deviation for each axis.
void blurCoverage(std::vector<std::uint8_t>& coverage, std::size_t width, std::size_t height,
                  double deviationX, double deviationY);

}  // namespace velmoranth::desktop
