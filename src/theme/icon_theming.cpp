#include "theme/icon_theming.h"

#include "core/settings.h"
#include "imaging/icon_effects.h"
#include "theme/app_icon_lookup.h"

namespace velmoranth::theme {

using imaging::IconEffects;
using platform::ImageRef;

ImageRef themedIcon(const platform::NullableString& identifier, const ImageRef& fallBack) {
    ImageRef image =
        AppIconLookup::searchforIconInIconBundlesWithLeafIdentifierForImg(identifier, fallBack);
    if (core::settings().enableIconMask) {
        if (const ImageRef mask = IconEffects::iconMask()) {
            image = IconEffects::maskImageWithMask(image, mask);
        }
    }
    if (core::settings().enableOverlay) {
        image = IconEffects::redrawIconWithOverlay(image);
    }
    return image;
}

}  // namespace velmoranth::theme
