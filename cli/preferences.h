// The preferences that a theme maker may set for one run: one table of keys, and the dictionary
// that the preferences file is made of.
#pragma once

#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

enum class PreferenceKind { yesOrNo, number };

struct PreferenceKey {
    std::string_view name;  // the key in the preferences file
    PreferenceKind kind;
    std::string_view summary;
};

// Every key that can be set; the list of active themes is made from the themes of the run.
[[nodiscard]] std::span<const PreferenceKey> preferenceKeys();

// What a preview starts from: these active themes, with theming, icon mask and overlay on.
[[nodiscard]] platform::Dictionary previewPreferences(const std::vector<std::string>& themes);

// Sets "KEY=VALUE" in the dictionary. The problem names the nearest key or the values that a key
// takes.
[[nodiscard]] desktop::Result<void> setPreference(platform::Dictionary& preferences,
                                                  std::string_view assignment);

// Where the preferences file stands on the device.
inline constexpr const char* kPreferencesFile =
    "/var/mobile/Library/Preferences/com.qor.velmoranthprefs.plist";

}  // namespace velmoranth::cli
