// velmoranth device uninstall
#include "cli/commands.h"
#include "cli/device_check.h"
#include "cli/installed_themes.h"
#include "cli/linked_themes.h"
#include "cli/messages.h"
#include "cli/near_path.h"
#include "cli/preferences.h"
#include "cli/settings_device.h"
#include "desktop/files/cleanup.h"
#include "desktop/files/descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using desktop::Problem;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

Result<void> checkInstalled(const DeviceRoot& root, const std::string& theme) {
    const bool isName =
        !theme.empty() && theme != "." && theme != ".." && theme.find('/') == std::string::npos;
    if (isName && kindAt(root, themePlace(theme)) != ItemKind::none) {
        return {};
    }
    const std::string folder = onThisMachine(root, kInstalledThemes);
    std::string more;
    if (!isName) {
        const std::vector<std::string> names = namesIn(root, kInstalledThemes);
        more = "; give a theme's name, as in " +
               (names.empty() ? "MyTheme.theme" : shown(names.front()));
    } else if (const fs::path near = nearPath(folder + "/" + theme); !near.empty()) {
        more = "; did you mean " + shown(near.filename().string()) + "?";
    }
    return tl::unexpected(Problem{"there is no theme " + inQuotes(theme) + more, folder});
}

// A link goes, and not what it leads to. The theme leaves its place first, so that it is never
// there with half of its files, however this ends.
Result<void> remove(const DeviceRoot& root, const std::string& theme) {
    const std::string passing = passingPlace(root, theme);
    {
        const desktop::RemovedAtEnd gone(onThisMachine(root, passing));
        const desktop::FolderEntry from = root.openParentToChange(themePlace(theme));
        const desktop::FolderEntry to = root.openParentToChange(passing);
        if (!from.folder.isOpen() || !to.folder.isOpen() ||
            ::renameat(from.folder.get(), from.name.c_str(), to.folder.get(), to.name.c_str()) !=
                0) {
            return tl::unexpected(
                desktop::problemOfErrno(errno, onThisMachine(root, themePlace(theme))));
        }
    }
    if (kindAt(root, passing) != ItemKind::none) {
        return tl::unexpected(
            Problem{"not all that the theme held could be removed; what is left lies here",
                    onThisMachine(root, passing)});
    }
    return {};
}

// The command that takes the removed themes off the list of the active ones.
void noteActive(const DeviceRoot& root, const std::vector<std::string>& removed) {
    std::vector<std::string> active = activeThemes(root);
    const auto gone = std::erase_if(active, [&](const std::string& name) {
        return std::ranges::find(removed, name) != removed.end();
    });
    if (gone > 0) {
        note(std::string(gone == 1 ? "it is" : "they are") +
             " still among the active themes, where nothing comes of it; velmoranth settings set " +
             forShell("ActiveThemes=" + joinedThemes(active)) + " --root " +
             forShell(root.hostFolder()) + " tidies up");
    }
}

ExitCode runDeviceUninstall(const Arguments& arguments) {
    const auto folder = arguments.value("--root");
    if (!folder) {
        return fail(ExitCode::wrongUsage,
                    "velmoranth device uninstall needs --root DIR, the device that has the theme");
    }
    desktop::cleanUpOnSignals();
    const auto root = openForThemes(*folder);
    if (!root) {
        return fail(ExitCode::badInput, root.error());
    }
    for (const std::string& theme : arguments.positionals()) {
        if (auto checked = checkInstalled(**root, theme); !checked) {
            return fail(ExitCode::badInput, checked.error());
        }
    }
    std::vector<std::string> removed;
    for (const std::string& theme : arguments.positionals()) {
        if (std::ranges::find(removed, theme) != removed.end()) {
            continue;
        }
        if (auto done = remove(**root, theme); !done) {
            return fail(ExitCode::badInput, done.error());
        }
        print(shown(onThisMachine(**root, kInstalledThemes)) + ": " + shown(theme) +
              " is removed\n");
        removed.push_back(theme);
    }
    noteActive(**root, removed);
    return ExitCode::done;
}

constexpr std::array<Option, 1> kUninstallOptions{{{"--root", "", "DIR", "the device"}}};

}  // namespace

Command deviceUninstallCommand() {
    return {.name = "device uninstall",
            .summary = "Take themes off a device.",
            .positionalNames = "THEME...",
            .description =
                "Each THEME is the name of a folder in the device's Library/Themes. Of a linked "
                "one the link goes, and the\nfolder that it leads to stays as it is.",
            .options = kUninstallOptions,
            .examples = {"velmoranth device uninstall MyTheme.theme --root mydevice",
                         "velmoranth device uninstall Icons.theme Dots.theme --root mydevice"},
            .leastPositionals = 1,
            .mostPositionals = 1000,
            .run = runDeviceUninstall};
}

}  // namespace velmoranth::cli
