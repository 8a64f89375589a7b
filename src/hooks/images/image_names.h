// Names that the replacements of image sources share.
#pragma once

#include "platform/foundation.h"

#include <string_view>

namespace velmoranth::hooks {

inline constexpr std::string_view kWeatherFramework = "com.apple.weather-framework";

// Whether the toolkit has named an image by its description; such images are left to it.
[[nodiscard]] inline bool isAssetDescription(const platform::NullableString& name) {
    return name && name->starts_with("<image asset");
}

}  // namespace velmoranth::hooks
