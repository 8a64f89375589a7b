#include "theme/icon_theming.h"

#include "core/settings.h"
#include "imaging/icon_effects.h"
#include "theme/app_icon_lookup.h"

namespace velmoranth::theme {

using imaging::IconEffects;
using platform::ImageRef;

ImageRef withIconMask(const ImageRef& image) {
    if (core::settings().enableIconMask) {
        if (const ImageRef mask = IconEffects::iconMask()) {
            return IconEffects::maskImageWithMask(image, mask);
        }
    }
    return image;
}

ImageRef withOverlay(const ImageRef& image) {
    return core::settings().enableOverlay ? IconEffects::redrawIconWithOverlay(image) : image;
}

ImageRef themedIcon(const platform::NullableString& identifier, const ImageRef& fallBack) {
    return withOverlay(withIconMask(
        AppIconLookup::searchforIconInIconBundlesWithLeafIdentifierForImg(identifier, fallBack)));
}

}  // namespace velmoranth::theme
