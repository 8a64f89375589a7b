#include "desktop/text/fonts.h"

#include <memory>

namespace velmoranth::desktop {

namespace {

// +[UIFont systemFontSize], points.
constexpr double kSystemFontSize = 14;

}  // namespace

platform::FontRef DesktopFonts::fontWithNameSize(const platform::NullableString& name,
                                                 double size) {
    if (!name || *name != "Inter") {
        return nullptr;
    }
    TextStyle style;
    style.family = *name;
    style.size = size > 0 ? size : kSystemFontSize;
    return std::make_shared<DesktopFont>(style);
}

}  // namespace velmoranth::desktop
