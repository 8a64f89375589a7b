// Handles of CoreGraphics' objects, which have calls of their own for references.
#pragma once

#include "platform/core_graphics.h"

#include "device/platform/handle.h"

namespace velmoranth::device {

// The image for a caller who does not own it: it lives as long as the caller's pool. Null for nil.
[[nodiscard]] void* autoreleased(const platform::BitmapImageRef& image);

}  // namespace velmoranth::device
