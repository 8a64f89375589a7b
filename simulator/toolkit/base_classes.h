// The classes that every process with an interface has, whatever it shows: views, and UIImage with
// the icons of apps.
#pragma once

#include "simulator/screen_context.h"

namespace velmoranth::simulator {

// Makes the classes and methods known. Comes before every other class.
void registerBaseClasses(const ScreenContext& context);

// What an app sends for the icon of an app in one of the platform's formats.
[[nodiscard]] platform::ImageRef askForAppIcon(const ScreenContext& context,
                                               const platform::NullableString& bundleIdentifier,
                                               int format);

// The icon's side in points that a format of the platform's icon requests stands for; the home
// screen's for 2 and for every format that is not in the table.
[[nodiscard]] double iconSideOfFormat(int format, double homeScreenIconSide);

// The home screen's format.
inline constexpr int kHomeScreenIconFormat = 2;

}  // namespace velmoranth::simulator
