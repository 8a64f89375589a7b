// The platform's masking rule: alpha times what a mask lets through.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "platform/core_graphics.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace velmoranth::desktop {

// Whether an image can serve as a mask: an image mask, or a gray image without alpha.
[[nodiscard]] bool canMask(const DesktopBitmapImage& mask);

// The samples of a row as bytes, 0 to 255, `layout.width` of them: the first bitsPerComponent bits
// of each pixel, stretched to the whole range. 16-bit samples have their high byte first, unless
// the byte order is little. `row` holds bytesPerRow bytes.
void readSamples(std::uint8_t* samples, const std::uint8_t* row,
                 const platform::BitmapLayout& layout);

// The image with each pixel times 1 - S of the mask, at the image's size. Nil when the image cannot
// be drawn.
[[nodiscard]] std::shared_ptr<DesktopBitmapImage> maskImage(const DesktopBitmapImage& image,
                                                            const DesktopBitmapImage& mask);

}  // namespace velmoranth::desktop
