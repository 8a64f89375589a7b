// The search for an app's icon in the active themes: IconBundles/<identifier>-large.png, and
// nothing else.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

namespace velmoranth::theme {

class AppIconLookup {
  public:
    // The icon of the first active theme that has the file, as it loads (nil when that file is no
    // readable image: no further theme is tried); the fall-back itself when no theme has it. Hands
    // the fall-back to the image dump first when dumping is on.
    [[nodiscard]] static platform::ImageRef searchforIconInIconBundlesWithLeafIdentifierForImg(
        const platform::NullableString& leafIdentifier, const platform::ImageRef& fallBack);
};

}  // namespace velmoranth::theme
