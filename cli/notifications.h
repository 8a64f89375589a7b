// The notifications that tell the processes of a device what has changed.
#pragma once

#include "core/preferences.h"

#include <array>
#include <string_view>

namespace velmoranth::cli {

struct NotificationRow {
    std::string_view shortName;
    std::string_view name;
    std::string_view summary;
};

inline constexpr std::array<NotificationRow, 4> kNotifications{{
    {"prefs", core::kPreferencesNotice, "the preferences have changed"},
    {"themechanged", core::kThemeChangedNotice, "the active themes have changed"},
    {"developingprefs", core::kDevelopingNotice, "the preferences for theme makers have changed"},
    {"compileassets", core::kCompileAssetsNotice, "assets are to be compiled"},
}};

}  // namespace velmoranth::cli
