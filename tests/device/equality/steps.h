// The steps of the scenarios, by what they ask for.
#pragma once

#include "device/equality/requests.h"

namespace velmoranth::equality {

inline constexpr const char* kMainPreferences = "com.qor.velmoranthprefs.prefs";
inline constexpr const char* kThemeChanged = "com.qor.velmoranththemechanged.prefs";
inline constexpr const char* kDevelopingPreferences = "com.qor.velmoranthdevelopingprefs.prefs";
inline constexpr const char* kCompileAssets = "com.qor.velmoranthcompileassets.prefs";

[[nodiscard]] const Steps& appIconSteps();
[[nodiscard]] const Steps& interfaceImageSteps();
[[nodiscard]] const Steps& chromeSteps();
// After the preferences of that name have taken the place of those that were there, and without.
[[nodiscard]] Steps settingsSteps(Text next);
[[nodiscard]] const Steps& panelSteps();
[[nodiscard]] const Steps& dumpSteps();
[[nodiscard]] const Steps& soundSteps();
[[nodiscard]] const Steps& catalogSteps();
[[nodiscard]] const Steps& startUpSteps();

}  // namespace velmoranth::equality
