#include "desktop/text/fonts.h"

#include "desktop/text/phone_faces.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>

namespace velmoranth::desktop {

namespace {

// The system face by a name of its own: ".SFUIDisplay-Light", ".SF UI Text". Nothing for other
// names, and for styles that it does not have.
std::optional<TextStyle> privateSystemFace(std::string_view name) {
    for (const std::string_view start :
         {".SFUIText", ".SFUIDisplay", ".SFUI", ".SF UI Text", ".SF UI Display"}) {
        if (!name.starts_with(start)) {
            continue;
        }
        std::string_view rest = name.substr(start.size());
        if (rest.starts_with('-')) {
            rest.remove_prefix(1);
        } else if (!rest.empty()) {
            continue;
        }
        if (const auto style = faceStyleOf(rest); style && !style->condensed) {
            return TextStyle{.weight = style->weight, .italic = style->italic};
        }
    }
    return std::nullopt;
}

std::optional<TextStyle> faceNamed(std::string_view name, int systemVersion) {
    if (auto system = privateSystemFace(name)) {
        if (systemVersion < 13) {
            return system;
        }
        name = "TimesNewRomanPSMT";
    }
    const PhoneFace* const face = phoneFaceNamed(name, systemVersion);
    if (face == nullptr) {
        return std::nullopt;
    }
    return TextStyle{.family = face->drawnIn, .weight = face->weight, .italic = face->italic};
}

}  // namespace

platform::FontRef DesktopFonts::fontWithNameSize(const platform::NullableString& name,
                                                 double size) {
    std::optional<TextStyle> style = name ? faceNamed(*name, systemVersion_) : std::nullopt;
    if (!style) {
        return nullptr;
    }
    style->size = size > 0 ? std::min(size, kLargestTextSize) : kSystemFontSize;
    return std::make_shared<DesktopFont>(*style);
}

}  // namespace velmoranth::desktop
