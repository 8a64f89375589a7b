// velmoranth preview
#include "cli/commands.h"
#include "cli/help.h"
#include "cli/messages.h"
#include "cli/picture_file.h"
#include "cli/preferences.h"
#include "cli/preview_delivery.h"
#include "cli/preview_drawing.h"
#include "cli/preview_follow.h"
#include "cli/preview_options.h"
#include "cli/preview_report.h"
#include "cli/preview_steps.h"
#include "cli/throw_away_device.h"
#include "desktop/files/cleanup.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <cerrno>
#include <future>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Problem;
using desktop::Result;
using simulator::RenderedScreen;

namespace {

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
    if (auto found = findApps(options->screen, *device->root, options->device.system); !found) {
        const ExitCode code = fail(ExitCode::badInput, found.error());
        if (showsAppsOfThemes(options->screen)) {
            HiddenReport(*options, *device).tell();
        }
        return code;
    }
    const auto draw = options->screen.steps                      ? drawAllSteps
                      : options->extent != PreviewExtent::screen ? drawSeveral
                                                                 : drawOnce;
    if (options->follow) {
        return follow(*options, *device);
    }
    HiddenReport hidden(*options, *device);
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
            "Each THEME is a folder, a package (.deb) or an archive (.zip, .tar.xz and so on), or "
            "- for one on standard\n"
            "input; where several have a picture the first one's is shown. The run has a device of "
            "its own, which is gone\n"
            "afterwards; theming, icon mask and overlay are on unless --set says otherwise.",
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
        .moreHelp = preferenceHelp,
        .apart = previewOptionsApart(),
        .needed = neededByPreview()};
}

}  // namespace velmoranth::cli
