// The two bitmap functions as the library exports them on Linux: under their C names, with handles
// for what they give. On the phone they give the platform's own objects (device/classes).
#pragma once

#include "platform/core_graphics.h"

#include <cstdint>

extern "C" {

// imaging/bitmap_functions.h says what each gives.
[[nodiscard, gnu::visibility("default")]] velmoranth::platform::BitmapImageRef CreateGradientImage(
    std::int32_t pixelsWide, std::int32_t pixelsHigh);
[[nodiscard, gnu::visibility("default")]] velmoranth::platform::GraphicsContextRef
MyCreateBitmapContext(std::int32_t pixelsWide, std::int32_t pixelsHigh);
}
