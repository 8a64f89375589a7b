// Handles of UIKit's images and fonts, and of the home screen's kinds of images.
#pragma once

#include "platform/springboard.h"
#include "platform/uikit.h"

#include "device/platform/handle.h"

namespace velmoranth::device {

// UIImage, as which interface it is known.
template <class Interface>
class ImageHandle final : public Handle<Interface> {
  public:
    using Handle<Interface>::Handle;

    [[nodiscard]] platform::Size size() const override;
    [[nodiscard]] double scale() const override;
    [[nodiscard]] platform::BitmapImageRef bitmap() const override;
    [[nodiscard]] bool hasCIImage() const override;
};

extern template class ImageHandle<platform::Image>;
extern template class ImageHandle<platform::SBIconLabelImage>;
extern template class ImageHandle<platform::UNNotificationIcon>;

template <>
struct HandleFor<platform::Image> {
    using Type = ImageHandle<platform::Image>;
};

template <>
struct HandleFor<platform::SBIconLabelImage> {
    using Type = ImageHandle<platform::SBIconLabelImage>;
};

template <>
struct HandleFor<platform::UNNotificationIcon> {
    using Type = ImageHandle<platform::UNNotificationIcon>;
};

// UIFont, which is only passed on.
using FontHandle = Handle<platform::Font>;

// _UIImageContent.
class UIImageContentHandle final : public Handle<platform::UIImageContent> {
  public:
    using Handle::Handle;

    [[nodiscard]] platform::CUINamedVectorGlyphRef vectorGlyph() const override;
};

template <>
struct HandleFor<platform::UIImageContent> {
    using Type = UIImageContentHandle;
};

}  // namespace velmoranth::device
