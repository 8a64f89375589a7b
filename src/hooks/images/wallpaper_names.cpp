#include "hooks/images/wallpaper_names.h"

#include <utility>

namespace velmoranth::hooks {

using platform::NullableString;

NullableString wallpaperFileName(NullableString path) {
    NullableString name = std::move(path);
    if (name == "/var/mobile/Library/SpringBoard/OriginalHomeBackground.cpbitmap") {
        name = "OriginalHomeBackground.png";
    }
    if (name == "/var/mobile/Library/SpringBoard/OriginalLockBackground.cpbitmap") {
        name = "LockBackground.png";
    }
    return name;
}

}  // namespace velmoranth::hooks
