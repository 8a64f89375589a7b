// The samples of an image mask, or of a gray image that serves as one: the first bitsPerComponent
// bits of each pixel as they are stored, whatever else the pixel holds.
#pragma once

#include "platform/core_graphics.h"

#include <cstddef>
#include <cstdint>

namespace velmoranth::desktop {

// Bytes from one sample to the next when every sample is a byte on a byte boundary, otherwise 0.
[[nodiscard]] std::size_t byteSampleStride(const platform::BitmapLayout& layout);

// The samples of one row as 0 to 255, layout.width of them. 16-bit samples give their high byte.
void expandSamples(const platform::BitmapLayout& layout, const std::uint8_t* row,
                   std::uint8_t* samples);

}  // namespace velmoranth::desktop
