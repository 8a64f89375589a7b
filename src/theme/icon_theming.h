// The treatment that every app icon gets, whatever asked for it: the theme's file or the fall-back,
// then the mask, then the overlay, each as its setting says.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

namespace velmoranth::theme {

// Nil flows through: an unreadable theme file gives a nil image.
[[nodiscard]] platform::ImageRef themedIcon(const platform::NullableString& identifier,
                                            const platform::ImageRef& fallBack);

}  // namespace velmoranth::theme
