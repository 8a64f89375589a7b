// Handles of UIKit's images, and of the home screen's kinds of images.
#pragma once

#include "platform/springboard.h"
#include "platform/uikit.h"

#include "device/platform/handle.h"

#include <concepts>

@class UIImage;
@class _UIImageContent;

namespace velmoranth::device {

// UIImage, as which interface it is known.
template <std::derived_from<platform::Image> Interface>
struct HandleFor<Interface> final : Handle<Interface, UIImage> {
    using Handle<Interface, UIImage>::Handle;
    using Handle<Interface, UIImage>::object;

    [[nodiscard]] platform::Size size() const override;
    [[nodiscard]] double scale() const override;
    [[nodiscard]] platform::BitmapImageRef bitmap() const override;
    [[nodiscard]] bool hasCIImage() const override;
};

// _UIImageContent.
template <>
struct HandleFor<platform::UIImageContent> final
    : Handle<platform::UIImageContent, _UIImageContent> {
    using Handle::Handle;

    [[nodiscard]] platform::CUINamedVectorGlyphRef vectorGlyph() const override;
};

}  // namespace velmoranth::device
