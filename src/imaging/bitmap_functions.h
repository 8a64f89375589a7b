// The two bitmap functions behind the reflection. Callers hold what they return. They are exported
// under these names to C as well, by each side in its own form: imaging/exported_functions.h,
// device/classes/exports.mm.
#pragma once

#include "platform/core_graphics.h"

#include <cstdint>

namespace velmoranth::imaging {

// A gray image of that size in pixels, 8 bits without alpha: a linear gradient from black at (0, 0)
// to white at (0, pixelsHigh), y upwards. Nil when a size is not positive.
[[nodiscard]] platform::BitmapImageRef CreateGradientImage(std::int32_t pixelsWide,
                                                           std::int32_t pixelsHigh);

// A bitmap context of that size in pixels: device RGB, 8 bits a component, premultiplied BGRA in
// memory. Nil when a size is not positive.
[[nodiscard]] platform::GraphicsContextRef MyCreateBitmapContext(std::int32_t pixelsWide,
                                                                 std::int32_t pixelsHigh);

}  // namespace velmoranth::imaging
