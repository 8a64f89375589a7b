// The notifications that tell the processes of a device what has changed.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace velmoranth::cli {

enum class Notification { preferences, themeChanged, developing, compileAssets };

struct NotificationRow {
    std::string_view shortName;
    std::string_view name;
    std::string_view summary;
};

// In the order of the enumeration.
inline constexpr std::array<NotificationRow, 4> kNotifications{{
    {"prefs", "com.qor.velmoranthprefs.prefs", "the preferences have changed"},
    {"themechanged", "com.qor.velmoranththemechanged.prefs", "the active themes have changed"},
    {"developingprefs", "com.qor.velmoranthdevelopingprefs.prefs",
     "the preferences for theme makers have changed"},
    {"compileassets", "com.qor.velmoranthcompileassets.prefs", "assets are to be compiled"},
}};

[[nodiscard]] constexpr std::string_view nameOf(Notification notification) {
    return kNotifications.at(static_cast<std::size_t>(notification)).name;
}

}  // namespace velmoranth::cli
