// The home screen's private classes that replacements receive, each with the accessors that the
// engine sends. Every message goes to the object itself, so an accessor may be replaced too.
#pragma once

#include "platform/foundation.h"
#include "platform/objc_runtime.h"
#include "platform/uikit.h"

#include <memory>

namespace velmoranth::platform {

// SBIcon.
class SBIcon : public Object {
  public:
    [[nodiscard]] virtual NullableString leafIdentifier() const = 0;
    [[nodiscard]] virtual NullableString nodeIdentifier() const = 0;
    [[nodiscard]] virtual NullableString uniqueIdentifier() const = 0;
};

using SBIconRef = std::shared_ptr<SBIcon>;

// SBApplicationIcon, the icon of an app.
class SBApplicationIcon : public SBIcon {};

// SBHIconImageCache (iOS 13): the home screen's cache of icon images.
class SBHIconImageCache : public Object {};

// SBIconImageView: the view that shows an icon's image.
class SBIconImageView : public View {
  public:
    [[nodiscard]] virtual SBIconRef icon() const = 0;
};

}  // namespace velmoranth::platform
