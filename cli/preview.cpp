// velmoranth preview
#include "cli/commands.h"
#include "cli/device_check.h"
#include "cli/file_watch.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/picture_file.h"
#include "cli/preferences.h"
#include "cli/preview_delivery.h"
#include "cli/preview_drawing.h"
#include "cli/preview_options.h"
#include "cli/preview_report.h"
#include "cli/preview_steps.h"
#include "cli/throw_away_device.h"
#include "desktop/files/cleanup.h"
#include "simulator/process/launcher.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <future>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using simulator::RenderedScreen;
using simulator::RunningScreen;

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{200};

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

Result<DeviceOfRun> deviceFor(const PreviewOptions& options) {
    if (options.root.empty()) {
        return makeDevice(options.themes, options.settings);
    }
    auto root = openDevice(options.root);
    if (!root) {
        return tl::unexpected(std::move(root.error()));
    }
    if (options.kind != PreviewKind::stock) {
        warnOfPreferences(**root);
    }
    return DeviceOfRun{std::move(*root)};
}

// The options' screen, which fills its picture.
ShownScreen shownOn(const PreviewOptions& options, const RenderedScreen& screen) {
    return shownScreen(screen, options.screen.kind, {options.deviceName, options.device},
                       {.width = screen.picture.width, .height = screen.picture.height});
}

// Writes the picture of a screen that is followed and says so.
Result<void> deliverAgain(const PreviewOptions& options, const RenderedScreen& screen) {
    auto delivered = deliver(options, screen.picture, options.output, {shownOn(options, screen)});
    if (!delivered) {
        return tl::unexpected(std::move(delivered.error()));
    }
    tell(options, {&*delivered, 1}, {});
    return {};
}

ExitCode exitCodeOf(const Result<void>& drawn) {
    return drawn ? ExitCode::done : fail(ExitCode::badInput, drawn.error());
}

ExitCode drawAllSteps(const PreviewOptions& options, const DeviceOfRun& device) {
    ProgressLine progress;
    const int count = stepCount(options.screen.kind);
    Result<void> pages;
    const auto drawn =
        drawSteps(requestFor(options, device), [&](int step, const RenderedScreen& screen) {
            if (screen.folder && step == 1 + kStepsToOpen) {
                pages = checkPages(options, screen);
                if (!pages) {
                    return pages;
                }
            }
            progress.show(fmt::format("picture {} of {}", step, count));
            auto written = writePicture(screen.picture, stepFile(options.output, step));
            if (written && step == count) {
                progress.clear();
                print(textOf(DeliveredPicture{
                    .file = stepFile(options.output, 1) + " to " + stepFile(options.output, count),
                    .width = screen.picture.width,
                    .height = screen.picture.height,
                    .screens = {shownOn(options, screen)},
                    .verdict = {}}));
            }
            return written;
        });
    progress.clear();
    return pages ? exitCodeOf(drawn) : fail(ExitCode::wrongUsage, pages.error());
}

// Before the work: whether everything that is to be written can be.
Result<void> checkOutputs(const PreviewOptions& options) {
    if (options.extent == PreviewExtent::allScreens) {
        return {};  // a folder is made for them
    }
    if (!options.screen.steps) {
        return checkOutput(options.output);
    }
    // Many files are to lie in a folder of their own.
    std::error_code ignored;
    const std::filesystem::path folder = std::filesystem::path(options.output).parent_path();
    std::filesystem::create_directory(folder, ignored);
    for (int step = 1; step <= stepCount(options.screen.kind); ++step) {
        if (auto checked = checkOutput(stepFile(options.output, step)); !checked) {
            return checked;
        }
    }
    return {};
}

ExitCode drawOnce(const PreviewOptions& options, const DeviceOfRun& device) {
    PreviewReport report(options, device);
    const auto page = drawPage(options, device, requestFor(options, device));
    if (!page) {
        return fail(ExitCode::badInput, page.error());
    }
    if (auto pages = checkPages(options, page->screen); !pages) {
        return fail(ExitCode::wrongUsage, pages.error());
    }
    const auto delivered =
        deliver(options, page->picture, options.output,
                {shownScreen(page->screen, options.screen.kind,
                             {options.deviceName, options.device}, page->place)});
    if (!delivered) {
        return fail(ExitCode::badInput, delivered.error());
    }
    const ExitCode told = tell(options, {&*delivered, 1}, device.themes);
    const auto reported = report.tell();
    return reported ? told : fail(ExitCode::badInput, reported.error());
}

// Several screens, and what the themes did.
ExitCode drawSeveral(const PreviewOptions& options, const DeviceOfRun& device) {
    PreviewReport report(options, device);
    const ExitCode drawn = options.extent == PreviewExtent::sheet ? drawSheet(options, device)
                                                                  : drawAllScreens(options, device);
    if (drawn != ExitCode::done && drawn != ExitCode::nothingFound) {
        return drawn;
    }
    const auto reported = report.tell();
    return reported ? drawn : fail(ExitCode::badInput, reported.error());
}

// The files that the picture is made of, as the user has them.
std::vector<std::string> watchedFiles(const PreviewOptions& options, const DeviceOfRun& device) {
    std::vector<std::string> paths = options.themes;
    if (!options.root.empty()) {
        paths.push_back(options.root + "/Library/Themes");
        for (const desktop::Graft& graft : device.root->files().grafts) {
            paths.push_back(graft.folder);
        }
    }
    return paths;
}

// The device as it is after a change. That of themes is made anew, since what a theme is and which
// apps it has icons for may be another matter now.
Result<DeviceOfRun> renewDevice(PreviewOptions& options) {
    auto device =
        options.root.empty() ? makeDevice(options.themes, options.settings) : deviceFor(options);
    if (device) {
        if (auto found = findApps(options.screen, *device->root); !found) {
            return tl::unexpected(std::move(found.error()));
        }
    }
    return device;
}

// Draws at every notice until a file is saved, or the device springs again. A problem of drawing is
// one; of the process it ends.
Result<void> drawUntilSaved(const PreviewOptions& options, RunningScreen& running,
                            FileWatch& watch) {
    while (!watch.hasChanged()) {
        const auto screen = running.nextPicture(kBetweenLooks);
        if (screen) {
            if (auto delivered = deliverAgain(options, *screen); !delivered) {
                return delivered;
            }
        } else if (running.isToStartAgain()) {
            return {};
        } else if (running.processId() == 0) {
            return tl::unexpected(screen.error());
        }
    }
    return {};
}

void waitForSave(FileWatch& watch) {
    while (!watch.hasChanged()) {
        std::this_thread::sleep_for(kBetweenLooks);
    }
}

// Draws, again at every notice, and anew, as after a respring, once a file is saved and at a
// respring. Ends with a
// problem of the first picture or of writing one; a signal ends the process. Themes that are no
// themes for a while are waited for.
ExitCode follow(const PreviewOptions& given, const DeviceOfRun& first) {
    PreviewOptions options = given;
    const DeviceOfRun* device = &first;
    Result<DeviceOfRun> renewed;
    FileWatch watch(watchedFiles(options, first), options.output);
    for (bool isFirst = true;; isFirst = false) {
        auto running = RunningScreen::start(requestFor(options, *device));
        const auto screen = running ? (*running)->render()
                                    : Result<RenderedScreen>(tl::unexpected(running.error()));
        if (!screen && isFirst) {
            return fail(ExitCode::badInput, screen.error());
        }
        if (isFirst) {
            if (auto pages = checkPages(options, *screen); !pages) {
                return fail(ExitCode::wrongUsage, pages.error());
            }
            note(options.root.empty()
                     ? "following; a file of the themes that is saved has it drawn again, Ctrl-C "
                       "ends it"
                     : "following; a file of the themes that is saved or velmoranth notify NAME "
                       "--root " +
                           shown(device->root->hostFolder()) +
                           " has it drawn again, Ctrl-C ends it");
        }
        if (screen) {
            auto delivered = deliverAgain(options, *screen);
            if (delivered) {
                delivered = drawUntilSaved(options, **running, watch);
            }
            if (!delivered) {
                return fail(ExitCode::badInput, delivered.error());
            }
        } else {
            warn(desktop::toLine(screen.error()));
            waitForSave(watch);
        }
        for (renewed = renewDevice(options); !renewed; renewed = renewDevice(options)) {
            warn(desktop::toLine(renewed.error()));
            waitForSave(watch);
        }
        device = &*renewed;
    }
}

// What the themes have that does not show, found out beside the drawing.
class HiddenReport {
  public:
    HiddenReport(const PreviewOptions& options, const DeviceOfRun& device) {
        if (!options.isQuiet && options.kind != PreviewKind::stock && device.hidden) {
            lines_ = std::async(std::launch::async, device.hidden);
        }
    }

    void tell() {
        if (lines_.valid()) {
            for (const std::string& line : lines_.get()) {
                note(line);
            }
        }
    }

  private:
    std::future<std::vector<std::string>> lines_;
};

ExitCode runPreview(const Arguments& arguments) {
    auto options = readPreviewOptions(arguments);
    if (!options) {
        return fail(ExitCode::wrongUsage, options.error());
    }
    for (const auto& checked : {checkOutputs(*options), checkLog(options->log)}) {
        if (!checked) {
            return fail(ExitCode::badInput, checked.error());
        }
    }
    desktop::cleanUpOnSignals();
    const auto device = deviceFor(*options);
    if (!device) {
        return fail(ExitCode::badInput, device.error());
    }
    if (auto found = findApps(options->screen, *device->root); !found) {
        return fail(ExitCode::badInput, found.error());
    }
    const auto draw = options->follow                            ? follow
                      : options->screen.steps                    ? drawAllSteps
                      : options->extent != PreviewExtent::screen ? drawSeveral
                                                                 : drawOnce;
    HiddenReport hidden(*options, *device);
    if (options->follow) {  // which is drawn until the user ends it
        hidden.tell();
    }
    const ExitCode drawn = draw(*options, *device);
    if (drawn == ExitCode::done || drawn == ExitCode::nothingFound) {
        hidden.tell();
    }
    return drawn;
}

std::string preferenceHelp() {
    std::vector<std::pair<std::string, std::string>> rows;
    for (const SettingRow& row : kPreviewSettings) {
        rows.emplace_back(assignmentHelp(row),
                          std::string(row.summary) + (row.isOnInPreview ? "; on unless set"
                                                      : row.notice == core::kDevelopingNotice
                                                          ? "; of use with --root alone"
                                                          : ""));
    }
    return "preferences for --set (yes, true, on and 1 mean the same):\n" + twoColumns(rows);
}

}  // namespace

Command previewCommand() {
    return {
        .name = "preview",
        .summary = "Draw the home screen with these themes.",
        .positionalNames = "THEME...",
        .description =
            "Each THEME is a folder, a package (.deb) or an archive (.zip, .tar.xz and so on); "
            "where several have a\npicture the first one's is shown. The run has a device of its "
            "own, "
            "which is gone afterwards; theming,\nicon mask and overlay are on unless --set says "
            "otherwise.",
        .options = previewOptionTable(),
        .examples =
            {"velmoranth preview MyTheme.theme", "velmoranth preview OldTheme.deb -o old.png",
             "velmoranth preview Badges.theme Icons.theme --ios 12 --device pad -o pad.png",
             "velmoranth preview MyTheme.theme --compare --set enableOverlay=no",
             "velmoranth preview MyTheme.theme --set enableLogging=yes --log - -o - | display",
             "velmoranth preview --root mydevice --follow",
             "velmoranth preview MyTheme.theme --screen folder --folder Utilities -o folder.png",
             "velmoranth preview MyTheme.theme --screen folder --steps -o steps/open.png",
             "velmoranth preview MyTheme.theme --apps theme --wallpaper photo.jpg --page 2",
             "velmoranth preview MyTheme.theme --sheet --screen home,settings --device phone,pad",
             "velmoranth preview MyTheme.theme --all-screens --expect expected"},
        .leastPositionals = 0,
        .mostPositionals = 100000,
        .run = runPreview,
        .moreHelp = preferenceHelp};
}

}  // namespace velmoranth::cli
