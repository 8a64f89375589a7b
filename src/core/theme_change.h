// What happens when the user picks another theme or another order of themes.
#pragma once

#include "platform/core_foundation.h"

#include <string>

namespace velmoranth::core {

// Observer of "com.qor.velmoranththemechanged.prefs": reloads the settings, drops the effect images
// and the themed icons and, on iOS 12, asks again for each app icon that had been asked for in
// format 2, so that the home screen shows the new theme at once.
void ThemePreferencesChangedCallback(platform::DarwinNotificationCenter& center, void* observer,
                                     const std::string& name, const void* object,
                                     const platform::Dictionary* userInfo);

}  // namespace velmoranth::core
