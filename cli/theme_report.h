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
#include <string_view>
#include <vector>

namespace velmoranth::cli {

// A part that themes have a picture for and that is not shown, and the setting behind it.
struct PartOff {
    std::string_view name;
    std::string_view setting;
};

// The command that tells more, for the very device that is shown, up to the request: "velmoranth
// explain A --ios 12 -- ".
struct MoreBehind {
    std::string command;
    std::size_t themeCount = 1;
};

struct ThemeReport {
    bool isThemingOn = true;
    std::vector<std::string> themedApps;          // that are shown, by their identifiers
    std::vector<std::string> otherApps;           // that are shown and no theme has an icon for
    std::size_t moreIcons = 0;                    // of apps that are not shown
    bool hasMoreIcons = false;                    // whether there may be others of these
    std::set<std::filesystem::path> iconFolders;  // of a theme, where icons are looked for
    // That are shown with theming on: "mask", "folder", "badges".
    std::vector<std::string_view> parts;
    std::vector<PartOff> partsOff;
    // Why nothing more was found out: a process that ended early, say.
    std::optional<desktop::Problem> failure = {};
    std::vector<Effect> effects;         // files of the mask, the overlay and the shadow
    std::vector<NearMiss> nearMisses;    // files that lie where nothing looks
    std::vector<std::string> deadLinks;  // links that lead nowhere, with their themes' names
    std::vector<AskedFile> unreadable;   // files that were found and gave nothing
    std::vector<std::string> calendar;   // lines about the property list that it was drawn by
};

// Of a device that shows these apps, or a fresh device's own when there are none. Changes the
// device's preferences meanwhile.
[[nodiscard]] ThemeReport reportThemes(const Investigation& investigation,
                                       const std::vector<simulator::NamedApp>& apps = {});

// Lines for standard error, the first one the sum.
[[nodiscard]] std::vector<std::string> linesOf(const ThemeReport& report, const MoreBehind& more);

}  // namespace velmoranth::cli
