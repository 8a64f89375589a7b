// What themes did to a device, in a few lines below a preview's own: what they have pictures for,
// and what lies in them and does not show. By asking a device for every app and every part of the
// home screen.
#pragma once

#include "cli/explanation.h"
#include "desktop/result/result.h"
#include "simulator/home_screen/installed_apps.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmoranth::cli {

struct ThemeReport {
    std::vector<std::string> themedApps;          // that are shown, by their identifiers
    std::vector<std::string> otherApps;           // that are shown and no theme has an icon for
    std::size_t moreIcons = 0;                    // of apps that are not shown
    bool hasMoreIcons = false;                    // whether there may be others of these
    std::set<std::filesystem::path> iconFolders;  // of a theme, where icons are looked for
    std::vector<std::string> parts;               // "mask", "folder", "badges"
    // Why nothing more was found out: a process that ended early, say.
    std::optional<desktop::Problem> failure = {};
    std::vector<Effect> effects;        // files of the mask, the overlay and the shadow
    std::vector<NearMiss> nearMisses;   // files that lie where nothing looks
    std::vector<AskedFile> unreadable;  // files that were found and gave nothing
    std::vector<std::string> calendar;  // lines about the property list that it was drawn by
};

// Of a device that shows these apps, or a fresh device's own when there are none. May run beside
// other work; the device's preferences are read only.
[[nodiscard]] ThemeReport reportThemes(const Investigation& investigation,
                                       const std::vector<simulator::NamedApp>& apps = {});

// What its mask does to an opaque icon: a line that says that it hides everything or nothing, ""
// otherwise. The device has a theme with such an icon meanwhile.
[[nodiscard]] std::string judgeMask(const Investigation& investigation, const ThemeReport& report);

// Lines for standard error, the first one the sum. `themes` are the words of the command line.
[[nodiscard]] std::vector<std::string> linesOf(const ThemeReport& report,
                                               const std::vector<std::string>& themes);

}  // namespace velmoranth::cli
