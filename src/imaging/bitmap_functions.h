// The two exported bitmap functions behind the reflection. Callers hold what they return.
#pragma once

#include "platform/core_graphics.h"

#include <cstdint>

// A gray image of that size in pixels, 8 bits without alpha: a linear gradient from black at (0, 0)
// to white at (0, pixelsHigh), y upwards. Nil when a size is not positive.
[[gnu::visibility("default")]] velmoranth::platform::BitmapImageRef CreateGradientImage(
    std::int32_t pixelsWide, std::int32_t pixelsHigh);

// A bitmap context of that size in pixels: device RGB, 8 bits a component, premultiplied BGRA in
// memory. Nil when a size is not positive.
[[gnu::visibility("default")]] velmoranth::platform::GraphicsContextRef MyCreateBitmapContext(
    std::int32_t pixelsWide, std::int32_t pixelsHigh);
