// What the settings panel and the engine agree upon: where the preferences lie, and the Darwin
// notifications that tell of a change.
#pragma once

#include <string>
#include <string_view>

namespace velmoranth::core {

inline constexpr const char* kPreferencesFileName = "com.qor.velmoranthprefs.plist";
inline constexpr const char* kPreferencesFolder = "/User/Library/Preferences";
// The preferences in force.
inline constexpr const char* kPreferencesPath =
    "/User/Library/Preferences/com.qor.velmoranthprefs.plist";
inline constexpr const char* kFactoryPreferences =
    "/User/Library/VelMoranth/DefaultSettings/com.qor.velmoranthprefs.plist";
// Of the copies that a user has saved under names.
inline constexpr const char* kSavedFolder = "/User/Library/VelMoranth/UserSettings";
// What a copy is for a moment while it is saved.
inline constexpr const char* kStagingCopy =
    "/User/Library/VelMoranth/UserSettings/com.qor.velmoranthprefs.plist";

// The file of a saved copy. A blank before and after the name belong to it.
[[nodiscard]] inline std::string savedCopyFile(std::string_view name) {
    return " " + std::string(name) + " " + kPreferencesFileName;
}

[[nodiscard]] inline std::string savedCopyPath(std::string_view name) {
    return std::string(kSavedFolder) + "/" + savedCopyFile(name);
}

inline constexpr const char* kPreferencesNotice = "com.qor.velmoranthprefs.prefs";
inline constexpr const char* kThemeChangedNotice = "com.qor.velmoranththemechanged.prefs";
inline constexpr const char* kDevelopingNotice = "com.qor.velmoranthdevelopingprefs.prefs";
inline constexpr const char* kCompileAssetsNotice = "com.qor.velmoranthcompileassets.prefs";

}  // namespace velmoranth::core
