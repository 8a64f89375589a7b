// The preferences: one table of keys with the values that they take and the notification that tells
// of a change, and the dictionary that the preferences file is made of.
#pragma once

#include "cli/notifications.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::cli {

enum class PreferenceKind { yesOrNo, number, themes };

struct PreferenceKey {
    std::string_view name;  // the key in the preferences file
    PreferenceKind kind;
    // What running processes are told when it has changed: of themes where pictures are kept that
    // have to be made again.
    Notification notification;
    std::string_view summary;
    std::string_view previewNote = {};  // what is different for a preview
};

// Every key that the system knows.
[[nodiscard]] std::span<const PreferenceKey> preferenceKeys();

// Those that can be set for one run; its list of active themes is made from its themes.
[[nodiscard]] std::span<const PreferenceKey> previewKeys();

// Null when there is none of that name.
[[nodiscard]] const PreferenceKey* findPreferenceKey(std::string_view name);

// "there is no preference "enabel"; did you mean enable?", or, with no key near, where to look.
[[nodiscard]] std::string noSuchPreference(std::string_view name,
                                           std::span<const PreferenceKey> keys,
                                           std::string_view whereListed);

// A value in words: "yes", "0.5"; nothing when the key does not take it. No list of themes.
[[nodiscard]] std::optional<platform::PropertyList> parsePreference(PreferenceKind kind,
                                                                    std::string_view text);

// What it takes: "yes or no".
[[nodiscard]] std::string_view takenBy(PreferenceKind kind);

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
