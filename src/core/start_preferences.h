// The file that a process looks for when it starts.
#pragma once

namespace velmoranth::core {

// Below the home directory, with a path that begins at the root itself: never the preferences in
// force. Where it is missing, a process that starts asks for the factory preferences.
inline constexpr const char* kPreferencesAtStart =
    "/var/mobile//User/Library/Preferences/com.qor.velmoranthprefs.plist";

}  // namespace velmoranth::core
