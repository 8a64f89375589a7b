// Which screen `velmoranth preview` shows: the options around --screen, understood and checked.
#pragma once

#include "cli/arguments.h"
#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "simulator/process/launcher.h"

#include <string>
#include <vector>

namespace velmoranth::cli {

struct ScreenOptions {
    simulator::ScreenKind kind = simulator::ScreenKind::home;
    int page = 1;
    std::string item;  // identifier of the folder or icon; "" for the one that the page offers
    int folderPage = 1;
    bool steps = false;
    std::string wallpaper;                  // a picture of this machine; "" for the drawn one
    std::string appsFrom;                   // what --apps says; "" for a fresh device's
    std::vector<simulator::NamedApp> apps;  // what the home screen shows; none for those
};

// The screens that are to be drawn: with --all-screens all, with --sheet those that --screen names,
// or all but the lists of pictures and the panel, otherwise one. The problem is one of usage.
[[nodiscard]] desktop::Result<std::vector<simulator::ScreenKind>> readScreenKinds(
    const Arguments& arguments);

// What else is said of it, or of them all; `kind` is home for several. The problem is one of usage.
[[nodiscard]] desktop::Result<ScreenOptions> readScreenOptions(
    const Arguments& arguments, const std::vector<simulator::ScreenKind>& kinds);

// Whether it shows the apps that themes have icons for, in place of a fresh device's.
[[nodiscard]] bool showsAppsOfThemes(const ScreenOptions& options);

// Finds the apps that --apps, or the screen of icons, wants of the device's themes or of the user's
// list, and among them what --folder or --icon names. Until then that is a word in `item`.
[[nodiscard]] desktop::Result<void> findApps(ScreenOptions& options,
                                             const desktop::DeviceRoot& root,
                                             const simulator::SystemVersion& system);

}  // namespace velmoranth::cli
