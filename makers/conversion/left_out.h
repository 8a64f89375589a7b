// What does not come along, by its name, and what comes along without showing.
#pragma once

#include "makers/conversion/plan.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace velmoranth::makers {

// The icon that iOS 12 has for the clock; iOS 13 draws the clock itself, upon a face of its own
// name.
inline constexpr const char* kClockIcon = "IconBundles/com.apple.mobiletimer-large.png";

// Why a file of this size, in bytes, is no part of a theme, by its name alone: clutter, an empty
// picture, a wallpaper, a text of another language, a script, the maker's own file. "" for a part.
[[nodiscard]] std::string_view whyLeftOut(const std::string& name, std::uint64_t size);

// All of those, and what cannot be read.
void leaveOutWhatIsNoTheme(Draft& draft);

// Fonts, sounds of formats that are not asked for, and so on.
void noteWithoutEffect(Draft& draft);

}  // namespace velmoranth::makers
