// The treatment that app icons get, whatever asked for them: the theme's file or the fall-back,
// then the mask, then the overlay, each as its setting says.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

namespace velmoranth::theme {

// The image with the theme's mask, when masks are on and the theme has one; else the image.
[[nodiscard]] platform::ImageRef withIconMask(const platform::ImageRef& image);

// The image with the theme's overlay, when overlays are on; else the image.
[[nodiscard]] platform::ImageRef withOverlay(const platform::ImageRef& image);

// Nil flows through: an unreadable theme file gives a nil image.
[[nodiscard]] platform::ImageRef themedIcon(const platform::NullableString& identifier,
                                            const platform::ImageRef& fallBack);

}  // namespace velmoranth::theme
