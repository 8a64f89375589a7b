#include "desktop/imaging/mask_samples.h"

namespace velmoranth::desktop {

std::size_t byteSampleStride(const platform::BitmapLayout& layout) {
    return layout.bitsPerComponent >= 8 && layout.bitsPerPixel % 8 == 0 ? layout.bitsPerPixel / 8
                                                                        : 0;
}

void expandSamples(const platform::BitmapLayout& layout, const std::uint8_t* row,
                   std::uint8_t* samples) {
    if (const std::size_t stride = byteSampleStride(layout); stride != 0) {
        for (std::size_t x = 0; x < layout.width; ++x) {
            samples[x] = row[x * stride];
        }
        return;
    }
    // Most significant bit first. A sample of 1, 2 or 4 bits never crosses a byte when the pixel's
    // bits are a multiple of it; one that would is read bit by bit.
    const std::size_t bits = layout.bitsPerComponent;
    if (bits == 0 || bits > 16) {
        return;
    }
    const unsigned greatest = (1U << bits) - 1U;
    for (std::size_t x = 0; x < layout.width; ++x) {
        unsigned value = 0;
        for (std::size_t bit = x * layout.bitsPerPixel; bit < x * layout.bitsPerPixel + bits;
             ++bit) {
            value = (value << 1U) | ((row[bit / 8] >> (7 - bit % 8)) & 1U);
        }
        samples[x] = static_cast<std::uint8_t>(value * 255U / greatest);
    }
}

}  // namespace velmoranth::desktop
