// velmoranth preview
#include "cli/cleanup.h"
#include "cli/commands.h"
#include "cli/comparison.h"
#include "cli/device_check.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/picture_file.h"
#include "cli/preferences.h"
#include "cli/preview_options.h"
#include "cli/throw_away_device.h"
#include "simulator/launcher.h"

#include <fcntl.h>
#include <fmt/core.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using simulator::RenderedScreen;
using simulator::RunningScreen;
using simulator::ScreenRequest;

namespace {

// The device to show, and what the picture of it is called.
struct Shown {
    std::unique_ptr<ThrowAwayDevice> throwAway;  // null with a root of the user's
    std::string folder;
    std::string caption;
};

Result<void> checkLog(const std::string& path) {
    if (path.empty() || path == "-") {
        return {};
    }
    const desktop::Descriptor file(
        ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0666));
    if (!file.isOpen()) {
        Problem problem = desktop::problemOfErrno(errno, path);
        problem.message = "the log cannot be written: " + problem.message;
        return tl::unexpected(std::move(problem));
    }
    return {};
}

Result<Shown> deviceOfThemes(const PreviewOptions& options) {
    const auto themes = findThemes(options.themes);
    if (!themes) {
        return tl::unexpected(themes.error());
    }
    std::vector<std::string> names;
    std::string caption;
    for (const ThemeFolder& theme : *themes) {
        names.push_back(theme.name);
        caption += (caption.empty() ? "" : " + ") + theme.name;
    }
    platform::Dictionary preferences = previewPreferences(names);
    for (const auto& [key, value] : options.settings) {
        preferences.insert_or_assign(key, value);
    }
    auto device = ThrowAwayDevice::create(*themes, preferences);
    if (!device) {
        return tl::unexpected(std::move(device.error()));
    }
    std::string folder = (*device)->folder();
    return Shown{std::move(*device), std::move(folder), std::move(caption)};
}

Result<Shown> deviceOfUser(const PreviewOptions& options) {
    const auto root = openDevice(options.root);
    if (!root) {
        return tl::unexpected(root.error());
    }
    if (options.kind != PreviewKind::stock) {
        for (const std::string& line : oddPreferences(**root)) {
            warn(line);
        }
    }
    return Shown{nullptr, options.root, "Themed"};
}

ScreenRequest requestFor(const PreviewOptions& options, const Shown& device) {
    ScreenRequest request;
    request.device = options.device;
    request.rootFolder = device.folder;
    request.page = options.page;
    request.logDestination = options.log;
    request.loadEngine = options.kind != PreviewKind::stock;
    return request;
}

void notePage(const PreviewOptions& options, const RenderedScreen& screen) {
    if (screen.page != options.page) {
        note(fmt::format("there is no page {}; this is page {} of {}", options.page, screen.page,
                         screen.pageCount));
    }
}

// Writes the picture and says so.
Result<void> deliver(const PreviewOptions& options, const simulator::Picture& picture) {
    auto written = writePicture(picture, options.output);
    if (written && !options.writesToStandardOutput()) {
        const simulator::SystemVersion& system = options.device.system;
        print(fmt::format("{}: {} × {} pixels, iOS {}.{}, {}\n", shown(options.output),
                          picture.width, picture.height, system.major, system.minor,
                          options.deviceName));
        static_cast<void>(flushResults());
    }
    return written;
}

Result<void> drawOnce(const PreviewOptions& options, const Shown& device) {
    const ScreenRequest request = requestFor(options, device);
    const auto screen = simulator::renderHomeScreen(request);
    if (!screen) {
        return tl::unexpected(screen.error());
    }
    notePage(options, *screen);
    if (options.kind != PreviewKind::sideBySide) {
        return deliver(options, screen->picture);
    }
    ScreenRequest stockRequest = request;
    stockRequest.loadEngine = false;
    const auto stock = simulator::renderHomeScreen(stockRequest);
    if (!stock) {
        return tl::unexpected(stock.error());
    }
    return deliver(options,
                   sideBySide({stock->picture, "Stock"}, {screen->picture, device.caption}));
}

// Ends only with a problem; a signal ends the process.
Result<void> follow(const PreviewOptions& options, const Shown& device) {
    const auto running = RunningScreen::start(requestFor(options, device));
    if (!running) {
        return tl::unexpected(running.error());
    }
    auto screen = (*running)->render();
    if (screen) {
        notePage(options, *screen);
        note("following; velmoranth notify NAME --root " + shown(device.folder) +
             " has it drawn again, Ctrl-C ends it");
    }
    for (;;) {
        if (screen) {
            if (auto delivered = deliver(options, screen->picture); !delivered) {
                return delivered;
            }
        } else if ((*running)->processId() == 0) {
            return tl::unexpected(screen.error());
        }
        screen = (*running)->nextPicture(std::chrono::hours(1));
    }
}

ExitCode runPreview(const Arguments& arguments) {
    const auto options = readPreviewOptions(arguments);
    if (!options) {
        return fail(ExitCode::wrongUsage, options.error());
    }
    for (const auto& checked : {checkOutput(options->output), checkLog(options->log)}) {
        if (!checked) {
            return fail(ExitCode::badInput, checked.error());
        }
    }
    cleanUpOnSignals();
    const auto device = options->root.empty() ? deviceOfThemes(*options) : deviceOfUser(*options);
    if (!device) {
        return fail(ExitCode::badInput, device.error());
    }
    const auto drawn = options->follow ? follow(*options, *device) : drawOnce(*options, *device);
    return drawn ? ExitCode::done : fail(ExitCode::badInput, drawn.error());
}

std::string preferenceHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    for (const PreferenceKey& key : preferenceKeys()) {
        rows.emplace_back(
            std::string(key.name) + (key.kind == PreferenceKind::number ? "=NUMBER" : "=yes|no"),
            key.summary);
    }
    return "preferences for --set (yes, true, on and 1 mean the same):\n" + twoColumns(rows);
}

constexpr std::array<std::string_view, 5> kExamples{
    "velmoranth preview MyTheme.theme",
    "velmoranth preview Badges.theme Icons.theme --ios 12 --device pad -o pad.png",
    "velmoranth preview MyTheme.theme --compare --set enableOverlay=no",
    "velmoranth preview MyTheme.theme --set enableLogging=yes --log - -o - | display",
    "velmoranth preview --root mydevice --follow",
};

}  // namespace

Command previewCommand() {
    return {
        .name = "preview",
        .summary = "Draw the home screen with these themes.",
        .positionalNames = "THEME...",
        .description =
            "Each THEME is a folder; where several have a picture the first one's is shown. "
            "The run has a device\nof its own, which is gone afterwards; theming, icon mask and "
            "overlay are on unless --set says otherwise.",
        .options = previewOptionTable(),
        .examples = kExamples,
        .leastPositionals = 0,
        .mostPositionals = 100000,
        .run = runPreview,
        .moreHelp = preferenceHelp};
}

}  // namespace velmoranth::cli
