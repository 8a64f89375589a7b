// The six replacements through which the home screen and the toolkit obtain app icons. Each calls
// the platform's method once at the start and discards the result, then again wherever it needs the
// platform's image; these repeated calls are what callers of the platform have come to see, and
// stay.
#pragma once

#include "core/original_implementation.h"
#include "platform/foundation.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

namespace velmoranth::theme {

// +[UIImage _applicationIconImageForBundleIdentifier:format:scale:], two variants: that of iOS 12
// keeps what it made under "<identifier>.<format>"; that of iOS 13 keeps nothing and passes nil
// through.
struct UIImageApplicationIconHooks {
    using Signature = platform::ImageRef(platform::Class&, platform::NullableString, int, double);

    static platform::ImageRef _applicationIconImageForBundleIdentifierFormatScaleOniOS12(
        const core::OriginalImplementation<Signature>& original, platform::Class& self,
        platform::NullableString bundleIdentifier, int format, double scale);
    static platform::ImageRef _applicationIconImageForBundleIdentifierFormatScaleOniOS13(
        const core::OriginalImplementation<Signature>& original, platform::Class& self,
        platform::NullableString bundleIdentifier, int format, double scale);
};

// -[SBApplicationIcon getUnmaskedIconImage:] (iOS 12).
struct SBApplicationIconHooks {
    using Signature = platform::ImageRef(platform::SBApplicationIcon&, int);

    static platform::ImageRef getUnmaskedIconImage(
        const core::OriginalImplementation<Signature>& original, platform::SBApplicationIcon& self,
        int format);
};

// -[SBHIconImageCache imageForIcon:] and unmaskedImageForIcon:. Both share one kept image an icon.
struct SBHIconImageCacheHooks {
    using Signature = platform::ImageRef(platform::SBHIconImageCache&, platform::SBIconRef);

    static platform::ImageRef imageForIcon(const core::OriginalImplementation<Signature>& original,
                                           platform::SBHIconImageCache& self,
                                           platform::SBIconRef icon);
    static platform::ImageRef unmaskedImageForIcon(
        const core::OriginalImplementation<Signature>& original, platform::SBHIconImageCache& self,
        platform::SBIconRef icon);
};

// -[SBIconImageView contentsImage]; changes nothing on a phone.
struct SBIconImageViewHooks {
    using Signature = platform::ImageRef(platform::SBIconImageView&);

    static platform::ImageRef contentsImage(const core::OriginalImplementation<Signature>& original,
                                            platform::SBIconImageView& self);
};

}  // namespace velmoranth::theme
