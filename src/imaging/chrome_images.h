// The theme's images for the home screen's furniture: folder icon, badge, page dots and dock, and
// the colours that themes write in hexadecimal. Each image is searched for anew on every call, in a
// fixed order of files, this system's own layout before the one that other themes use; the first
// that loads is taken.
#pragma once

#include "platform/foundation.h"
#include "platform/uikit.h"

namespace velmoranth::imaging {

class ChromeImages {
  public:
    // A new image view for behind a folder's icon, tagged, as large as an icon (60 points, 76 on a
    // pad), at (0, 0). Never nil; without an image when the theme has none.
    [[nodiscard]] static platform::ImageViewRef FolderImage();

    // A new image view of 30 × 30 points with the badge's background. Never nil; without an image
    // when the theme has none.
    [[nodiscard]] static platform::ImageViewRef badgeImage();

    // The dot of the current page, or of the others. Nil when the theme has none.
    [[nodiscard]] static platform::ImageRef pageDots(bool isCurrent);

    // The dot of the search page. Nil when the theme has none.
    [[nodiscard]] static platform::ImageRef spotlightPageDot();

    // A new image view with the dock's background, at `frame` (points) moved down by 10. Never nil;
    // without an image when the theme has none. A pad has one image held upright and another held
    // sideways.
    [[nodiscard]] static platform::ImageViewRef SBDockImgWithFrame(const platform::Rect& frame);

    // Six hexadecimal digits, bare or after 0x, white space around them: an opaque colour. Anything
    // else, a leading number sign included, is gray. A pair that begins with no digit counts as 0.
    [[nodiscard]] static platform::Color colorWithHexString(const platform::NullableString& string);
};

}  // namespace velmoranth::imaging
