// The search for interface images in the active themes: by bundle and name, loose by name, and
// chrome images in folders of a theme. All candidates of the first active theme are tried before
// any of the second, and a candidate counts as found only when it loads.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

#include <string>
#include <vector>

namespace velmoranth::theme {

class InterfaceImageLookup {
  public:
    // The theme's image for a name in a bundle, or the platform's image. The first image found
    // under a name, by this search or the loose one and for any bundle, answers for that name for
    // the life of the process. A miss is not remembered.
    [[nodiscard]] static platform::ImageRef deviceUIImageNamedFromBundleOriginalUIImage(
        const platform::NullableString& name, const platform::NullableString& bundleIdentifier,
        const platform::ImageRef& original);

    // The same among the loose images of a theme, on the same caches.
    [[nodiscard]] static platform::ImageRef deviceUIImageNamedOriginalUIImage(
        const platform::NullableString& name, const platform::ImageRef& original);

    // The first "/Library/Themes/<theme>/<folder><image string>" that loads, nil when none does.
    // The two are joined as they stand: a folder ends in "/".
    [[nodiscard]] static platform::ImageRef searchFolderForImageStr(const std::string& folder,
                                                                    const std::string& imageString);

    // The same over several folders of each theme, in the order given.
    [[nodiscard]] static platform::ImageRef searchFoldersForImageString(
        const std::vector<std::string>& folders, const std::string& imageString);

    // Whether the name was given before; the first time, remembers the image under it and logs.
    static bool hasSearchForImageNamedOrBundleForImg(const std::string& name,
                                                     const platform::ImageRef& image);
};

}  // namespace velmoranth::theme
