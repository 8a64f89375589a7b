// Replacements on what the platform makes images of from its asset catalogs, past the loaders by
// name. Each calls the platform's method once at the start and drops the result, then anew wherever
// its result is needed.
#pragma once

#include "core/original_implementation.h"
#include "core/shared_value.h"
#include "platform/core_ui.h"
#include "platform/objc_runtime.h"
#include "platform/uikit.h"

namespace velmoranth::hooks {

extern "C" {
// Whether the last image content came from the theme: for others a plain boolean. Images are
// decoded on several threads; what the last of them has written is there, whole, and nothing is
// locked.
[[gnu::visibility("default")]] extern core::SharedValue<bool> themeImgFound;
}

struct CUINamedVectorGlyphHooks {
    // asset, configuration, flipped
    using FromAsset = platform::ImageRef(platform::CUINamedVectorGlyph&, platform::ObjectRef,
                                         platform::ObjectRef, bool);
    using Bitmap = platform::BitmapImageRef(platform::CUINamedVectorGlyph&);

    static platform::ImageRef UIImageWithAssetConfigurationFlippedHorizontally(
        const core::OriginalImplementation<FromAsset>& original,
        platform::CUINamedVectorGlyph& self, platform::ObjectRef asset,
        platform::ObjectRef configuration, bool flipped);
    static platform::BitmapImageRef image(const core::OriginalImplementation<Bitmap>& original,
                                          platform::CUINamedVectorGlyph& self);
};

struct CUINamedImageHooks {
    // asset, configuration, flipped, optional vector image
    using FromAsset = platform::ImageRef(platform::CUINamedImage&, platform::ObjectRef,
                                         platform::ObjectRef, bool, platform::ObjectRef);

    static platform::ImageRef UIImageWithAssetConfigurationFlippedHorizontallyOptionalVectorImage(
        const core::OriginalImplementation<FromAsset>& original, platform::CUINamedImage& self,
        platform::ObjectRef asset, platform::ObjectRef configuration, bool flipped,
        platform::ObjectRef optionalVectorImage);
};

struct UIImageContentHooks {
    using Bitmap = platform::BitmapImageRef(platform::UIImageContent&);

    static platform::BitmapImageRef CGImage(const core::OriginalImplementation<Bitmap>& original,
                                            platform::UIImageContent& self);
};

}  // namespace velmoranth::hooks
