// The user's active themes, in their order of priority, and what is asked about the selected one.
// The list is read from the preferences file on every call, so a change takes effect at the next
// lookup without any notice.
#pragma once

#include "platform/foundation.h"

#include <string>
#include <vector>

namespace velmoranth::theme {

// A folder name below /Library/Themes/, as it stands in "ActiveThemes".
using ThemeName = std::string;

// The names in file order; the first has the highest priority. Empty when the file, the key or an
// array under it is missing. An entry that is no string counts as what it prints as.
[[nodiscard]] std::vector<ThemeName> activeThemes();

// Whether the current device says of itself that it is a pad. Asked afresh on every call; a device
// that does not answer is a phone.
[[nodiscard]] bool deviceIsPad();

class ThemeSelection {
  public:
    // The selected theme's folder for this system's files, "" without active themes. Nothing is
    // checked on disk.
    [[nodiscard]] static std::string selectedTheme();
    // The path of the first active theme's Info.plist that exists, nil when none does.
    [[nodiscard]] static platform::NullableString currentThemePlist();
    // Always false.
    [[nodiscard]] static bool userChangedThemes();
    // "ipad" or "iphone".
    [[nodiscard]] static std::string DetectUserDevice();
};

}  // namespace velmoranth::theme
