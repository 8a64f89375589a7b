// velmoranth device install
#include "cli/commands.h"
#include "cli/dead_links.h"
#include "cli/device_check.h"
#include "cli/installed_themes.h"
#include "cli/late_progress.h"
#include "cli/linked_themes.h"
#include "cli/messages.h"
#include "cli/near_path.h"
#include "cli/preferences.h"
#include "cli/theme_folders.h"
#include "desktop/files/cleanup.h"
#include "desktop/files/create_device_root.h"
#include "desktop/files/file_calls.h"

#include "makers/conversion/theme_input.h"
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::DeviceRoot;
using desktop::Problem;
using desktop::Result;

namespace {

namespace fs = std::filesystem;

// The problem is one of the theme at `path`.
tl::unexpected<Problem> aboutTheme(const std::string& path, std::string message) {
    return tl::unexpected(Problem{std::move(message), path});
}

Result<void> makeLink(const DeviceRoot& root, const makers::FoundTheme& theme,
                      const std::string& path) {
    std::error_code error;
    const std::string target = fs::canonical(theme.folder, error);
    const desktop::FolderEntry place = root.openParentToChange(path);
    if (error || !place.folder.isOpen() ||
        ::symlinkat(target.c_str(), place.folder.get(), place.name.c_str()) != 0) {
        return tl::unexpected(desktop::problemOfErrno(error ? error.value() : errno, theme.folder));
    }
    return {};
}

Result<void> copy(const DeviceRoot& root, const makers::FoundTheme& theme,
                  const std::string& path) {
    LateProgress progress;
    std::size_t made = 0;
    desktop::FileCalls calls;
    calls.openat = [&, open = calls.openat](int folder, const char* name, int flags,
                                            unsigned mode) {
        // Those of a folder that has grown since it was listed go without.
        if ((flags & O_CREAT) != 0 && made < theme.files.size()) {
            progress.show(++made, theme.files.size(), "file");
        }
        return open(folder, name, flags, mode);
    };
    auto copied = desktop::importFolder(root, theme.folder, path, calls);
    if (!copied) {
        return aboutTheme(theme.folder, "the theme cannot be copied: " + copied.error().message);
    }
    return {};
}

// The copy or the link comes to its place; what was there is gone then.
Result<void> place(const DeviceRoot& root, const makers::FoundTheme& theme, bool isLinked,
                   bool replaces) {
    const std::string path = passingPlace(root, theme.name);
    const desktop::RemovedAtEnd partial(onThisMachine(root, path));
    if (auto made = isLinked ? makeLink(root, theme, path) : copy(root, theme, path); !made) {
        return made;
    }
    const desktop::FolderEntry from = root.openParentToChange(path);
    if (!from.folder.isOpen() ||
        ::renameat2(from.folder.get(), from.name.c_str(), from.folder.get(), theme.name.c_str(),
                    replaces ? RENAME_EXCHANGE : RENAME_NOREPLACE) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, theme.folder));
    }
    return {};
}

// Whether the folder is the device's own theme of that name.
bool isInPlace(const DeviceRoot& root, const makers::FoundTheme& theme) {
    std::error_code error;
    const fs::path installed = onThisMachine(root, kInstalledThemes);
    return fs::canonical(theme.folder, error) == fs::canonical(installed, error) / theme.name;
}

// The folder, or each theme of the package or archive.
Result<makers::ThemeInput> themesOf(const std::string& path, bool isLinked) {
    if (makers::isFile(path)) {
        return isLinked ? aboutTheme(path,
                                     "only a folder can be linked; without --link what is in "
                                     "this is copied")
                        : makers::openInput(path, makers::Purpose::show);
    }
    if (struct stat status{}; ::stat(path.c_str(), &status) != 0) {
        return tl::unexpected(makers::notThere(errno, path));
    }
    if (const std::string why = whyNoTheme(path); !why.empty()) {
        return aboutTheme(path, why);
    }
    auto theme = makers::themeAsGiven(path);
    if (!theme) {
        return tl::unexpected(std::move(theme.error()));
    }
    makers::ThemeInput input{.path = path};
    input.themes.push_back(std::move(*theme));
    return input;
}

struct InstallOptions {
    bool isLinked = false;
    bool replaces = false;
};

Result<void> checkPlace(const DeviceRoot& root, const makers::FoundTheme& theme,
                        const std::string& path, bool replaces) {
    if (theme.name.empty() || !isPlainText(theme.name)) {
        return aboutTheme(path,
                          "the folder's name can be no theme's: it has none, or not plain text");
    }
    if (isInPlace(root, theme)) {
        return aboutTheme(path, "this is the device's own theme already");
    }
    if (!replaces && kindAt(root, themePlace(theme.name)) != ItemKind::none) {
        return aboutTheme(path, "the device has a theme " + inQuotes(theme.name) +
                                    " already; --force replaces it, velmoranth device uninstall " +
                                    forShell(theme.name) + " --root " +
                                    forShell(root.hostFolder()) + " removes it");
    }
    return {};
}

// Adds the names of what is installed.
Result<void> install(const DeviceRoot& root, const std::string& path, const InstallOptions& options,
                     std::vector<std::string>& names) {
    const auto input = themesOf(path, options.isLinked);
    if (!input) {
        return tl::unexpected(input.error());
    }
    warnOf(input->warning);
    for (const makers::FoundTheme& theme : input->themes) {
        if (auto checked = checkPlace(root, theme, path, options.replaces); !checked) {
            return checked;
        }
        const bool isThere = kindAt(root, themePlace(theme.name)) != ItemKind::none;
        if (auto done = place(root, theme, options.isLinked, isThere); !done) {
            return done;
        }
        print(shown(onThisMachine(root, kInstalledThemes)) + ": " + shown(theme.name) +
              (options.isLinked ? " is linked" : " is installed") +
              (isThere ? " in place of the one that was there\n" : "\n"));
        names.push_back(theme.name);
        if (const std::string hidden = hiddenPicturesIn(path, theme); !hidden.empty()) {
            note(hidden);
        }
        const auto asShown = openWithLinkedThemes(root.hostFolder());
        std::vector<std::string> links =
            asShown ? deadLinksOf(**asShown, theme.name) : std::vector<std::string>();
        for (std::string& link : links) {
            link.insert(0, theme.name + "/");
        }
        if (const std::string line = aboutDeadLinks(links); !line.empty()) {
            note(line);
        }
    }
    return {};
}

// Which of the themes do not show yet, and what makes them, before those that do.
void noteInactive(const DeviceRoot& root, const std::vector<std::string>& names) {
    std::vector<std::string> active = activeThemes(root);
    // Those that are not installed any more would be named for ever.
    const auto asShown = openWithLinkedThemes(root.hostFolder());
    std::erase_if(active, [&](const std::string& name) {
        return asShown &&
               !desktop::Descriptor((*asShown)->openFile(themePlace(name), O_PATH | O_DIRECTORY))
                    .isOpen();
    });
    std::vector<std::string> inactive;
    std::ranges::copy_if(names, std::back_inserter(inactive), [&](const std::string& name) {
        return std::ranges::find(active, name) == active.end();
    });
    const platform::Dictionary preferences = preferencesOn(root);
    const bool isOn = platform::boolValue(platform::objectForKey(preferences, "enable"));
    if (inactive.empty() && (isOn || names.empty())) {
        return;
    }
    active.insert(active.begin(), inactive.begin(), inactive.end());
    const std::string command =
        (inactive.empty() ? "" : " " + forShell("ActiveThemes=" + joinedThemes(active))) +
        (isOn ? "" : " enable=yes");
    std::string listed;
    for (const std::string& name : inactive) {
        listed += (listed.empty() ? "" : ", ") + shown(name);
    }
    note((inactive.empty()       ? "theming is off on this device"
          : inactive.size() == 1 ? listed + " is not active yet"
                                 : listed + " are not active yet") +
         "; velmoranth settings set" + command + " --root " + forShell(root.hostFolder()) +
         (inactive.empty()       ? " has it on"
          : inactive.size() == 1 ? " has it shown"
                                 : " has them shown"));
}

ExitCode runDeviceInstall(const Arguments& arguments) {
    const auto folder = arguments.value("--root");
    if (!folder) {
        return fail(ExitCode::wrongUsage,
                    "velmoranth device install needs --root DIR, the device that gets the theme");
    }
    if (const auto named = noneEmpty(arguments.positionals(), "THEME"); !named) {
        return fail(ExitCode::wrongUsage, named.error());
    }
    desktop::cleanUpOnSignals();
    const auto root = openForThemes(*folder);
    if (!root) {
        return fail(ExitCode::badInput, root.error());
    }
    std::vector<std::string> names;
    Result<void> done;
    for (const std::string& path : arguments.positionals()) {
        done = install(**root, path,
                       {.isLinked = arguments.has("--link"), .replaces = arguments.has("--force")},
                       names);
        if (!done) {
            break;
        }
    }
    noteInactive(**root, names);
    if (!done) {
        return fail(ExitCode::badInput, withNearPath(done.error(), arguments.positionals()));
    }
    return ExitCode::done;
}

constexpr std::array<Option, 3> kInstallOptions{
    {{"--root", "", "DIR", "the device"},
     {"--link", "", "", "link the theme's folder, which the device then reads where it lies"},
     {"--force", "", "", "replace a theme of that name"}}};

}  // namespace

Command deviceInstallCommand() {
    return {
        .name = "device install",
        .summary = "Put themes on a device.",
        .positionalNames = "THEME...",
        .description =
            "Each THEME is a folder, a package (.deb) or an archive, as preview takes it. It is "
            "copied, or with --link\nread where it lies, so that what is saved there shows on "
            "the device. Which command makes it active is said\nthen.",
        .options = kInstallOptions,
        .examples = {"velmoranth device install MyTheme.theme --root mydevice --link",
                     "velmoranth device install OldTheme.deb --root mydevice",
                     "velmoranth device install MyTheme.theme --root mydevice --force"},
        .leastPositionals = 1,
        .mostPositionals = 1000,
        .run = runDeviceInstall};
}

}  // namespace velmoranth::cli
