// velmoranth device install
#include "cli/commands.h"
#include "cli/device_check.h"
#include "cli/linked_themes.h"
#include "cli/messages.h"
#include "cli/settings_device.h"
#include "desktop/files/cleanup.h"
#include "desktop/files/create_device_root.h"

#include "makers/conversion/theme_input.h"
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

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

Result<void> makeLink(const DeviceRoot& root, const makers::FoundTheme& theme) {
    std::error_code error;
    const std::string target = fs::canonical(theme.folder, error);
    const desktop::FolderEntry place =
        root.openParentToChange(std::string(kInstalledThemes) + "/" + theme.name);
    if (error || !place.folder.isOpen() ||
        ::symlinkat(target.c_str(), place.folder.get(), place.name.c_str()) != 0) {
        return tl::unexpected(desktop::problemOfErrno(error ? error.value() : errno, theme.folder));
    }
    return {};
}

// Whole or not at all: beside its place first.
Result<void> copy(const DeviceRoot& root, const makers::FoundTheme& theme) {
    const std::string beside = std::string(kInstalledThemes) + "/." + theme.name + ".new";
    const desktop::RemovedAtEnd partial(onThisMachine(root, beside));
    if (auto copied = desktop::importFolder(root, theme.folder, beside); !copied) {
        return aboutTheme(theme.folder, "the theme cannot be copied: " + copied.error().message);
    }
    const desktop::FolderEntry from = root.openParentToChange(beside);
    if (!from.folder.isOpen() ||
        ::renameat2(from.folder.get(), from.name.c_str(), from.folder.get(), theme.name.c_str(),
                    RENAME_NOREPLACE) != 0) {
        return tl::unexpected(desktop::problemOfErrno(errno, theme.folder));
    }
    return {};
}

// The folder, or each theme of the package or archive.
Result<makers::ThemeInput> themesOf(const std::string& path, bool isLinked) {
    if (makers::isFile(path)) {
        return isLinked ? aboutTheme(path,
                                     "only a folder can be linked; without --link what is in "
                                     "this is copied")
                        : makers::openInput(path, makers::Purpose::show);
    }
    auto theme = makers::themeAsGiven(path);
    if (!theme) {
        return tl::unexpected(std::move(theme.error()));
    }
    makers::ThemeInput input{.path = path};
    input.themes.push_back(std::move(*theme));
    return input;
}

Result<void> install(const DeviceRoot& root, const std::string& path, bool isLinked) {
    const auto input = themesOf(path, isLinked);
    if (!input) {
        return tl::unexpected(input.error());
    }
    for (const makers::FoundTheme& theme : input->themes) {
        if (theme.name.empty() || !isPlainText(theme.name)) {
            return aboutTheme(path,
                              "the folder's name can be no theme's: it has none, or not "
                              "plain text");
        }
        if (kindAt(root, std::string(kInstalledThemes) + "/" + theme.name) != ItemKind::none) {
            return aboutTheme(path, "the device has a theme " + inQuotes(theme.name) +
                                        " already; remove that first");
        }
        if (auto done = isLinked ? makeLink(root, theme) : copy(root, theme); !done) {
            return done;
        }
        print(shown(onThisMachine(root, kInstalledThemes)) + ": " + shown(theme.name) +
              (isLinked ? " is linked" : " is installed") + "\n");
    }
    return {};
}

ExitCode runDeviceInstall(const Arguments& arguments) {
    const auto folder = arguments.value("--root");
    if (!folder) {
        return fail(ExitCode::wrongUsage,
                    "velmoranth device install needs --root DIR, the device that gets the theme");
    }
    desktop::cleanUpOnSignals();
    const auto root = openDevice(*folder);
    if (!root) {
        return fail(ExitCode::badInput, root.error());
    }
    for (const std::string& path : arguments.positionals()) {
        if (auto done = install(**root, path, arguments.has("--link")); !done) {
            return fail(ExitCode::badInput, done.error());
        }
    }
    return flushResults() ? ExitCode::done : ExitCode::badInput;
}

constexpr std::array<Option, 2> kInstallOptions{
    {{"--root", "", "DIR", "the device"},
     {"--link", "", "", "link the theme's folder, which the device then reads where it lies"}}};

}  // namespace

Command deviceInstallCommand() {
    return {
        .name = "device install",
        .summary = "Put themes on a device.",
        .positionalNames = "THEME...",
        .description =
            "Each THEME is a folder, a package (.deb) or an archive, as preview takes it. It is "
            "copied, or with --link\nread where it lies, so that what is saved there shows on "
            "the device. velmoranth settings set ActiveThemes=NAME\nmakes it active.",
        .options = kInstallOptions,
        .examples = {"velmoranth device install MyTheme.theme --root mydevice --link",
                     "velmoranth device install OldTheme.deb --root mydevice"},
        .leastPositionals = 1,
        .mostPositionals = 1000,
        .run = runDeviceInstall};
}

}  // namespace velmoranth::cli
