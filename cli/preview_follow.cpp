#include "cli/preview_follow.h"

#include "cli/file_watch.h"
#include "cli/preview_delivery.h"
#include "cli/preview_drawing.h"
#include "cli/preview_report.h"
#include "simulator/process/launcher.h"

#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;
using simulator::RenderedScreen;
using simulator::RunningScreen;

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{200};

// Writes the picture of a screen that is followed and says so.
Result<void> deliverAgain(const PreviewOptions& options, const RenderedScreen& screen) {
    auto delivered = deliver(options, screen.picture, options.output, {shownOn(options, screen)});
    if (!delivered) {
        return tl::unexpected(std::move(delivered.error()));
    }
    tell(options, {&*delivered, 1}, {});
    return {};
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
        if (auto found = findApps(options.screen, *device->root, options.device.system); !found) {
            return tl::unexpected(std::move(found.error()));
        }
    }
    return device;
}

void waitForSave(FileWatch& watch) {
    while (!watch.hasChanged()) {
        std::this_thread::sleep_for(kBetweenLooks);
    }
}

// What is said about the themes, once each time that it is something else.
class FollowedReport {
  public:
    explicit FollowedReport(const PreviewOptions& options) : options_(options) {}

    // Finding it out takes about as long as a picture.
    void tellChange(const DeviceOfRun& device) {
        std::vector<std::string> lines;
        if (!options_.isQuiet && device.hidden) {
            lines = device.hidden();
        }
        auto report = PreviewReport(options_, device).find();
        lines.insert(lines.end(), report.lines.begin(), report.lines.end());
        if (report.problem) {
            lines.push_back(desktop::toLine(*report.problem));
        }
        if (lines != told_) {
            for (const std::string& line : lines) {
                note(line);
            }
            told_ = std::move(lines);
        }
    }

  private:
    const PreviewOptions& options_;
    std::vector<std::string> told_;
};

// Draws at every notice until a file is saved, or the device springs again, and has the report told
// when nothing has come for a moment. A problem of drawing is one; of the process it ends.
Result<void> drawUntilSaved(const PreviewOptions& options, const DeviceOfRun& device,
                            RunningScreen& running, FileWatch& watch, FollowedReport& report) {
    bool isTold = false;
    while (!watch.hasChanged()) {
        const auto screen = running.nextPicture(kBetweenLooks);
        if (screen) {
            if (auto delivered = deliverAgain(options, *screen); !delivered) {
                return delivered;
            }
            isTold = false;
        } else if (running.isToStartAgain()) {
            return {};
        } else if (running.processId() == 0) {
            return tl::unexpected(screen.error());
        } else if (!std::exchange(isTold, true)) {
            report.tellChange(device);
        }
    }
    return {};
}

std::string whatFollows(const PreviewOptions& options, const DeviceOfRun& device) {
    return options.root.empty()
               ? "following; a file of the themes that is saved has it drawn again, Ctrl-C ends it"
               : "following; a file of the themes that is saved or velmoranth notify NAME --root " +
                     shown(device.root->hostFolder()) + " has it drawn again, Ctrl-C ends it";
}

}  // namespace

ExitCode follow(const PreviewOptions& given, const DeviceOfRun& first) {
    PreviewOptions options = given;
    const DeviceOfRun* device = &first;
    Result<DeviceOfRun> renewed;
    FileWatch watch(watchedFiles(options, first), options.output);
    FollowedReport report(options);
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
            note(whatFollows(options, *device));
        }
        if (screen) {
            auto delivered = deliverAgain(options, *screen);
            if (delivered) {
                delivered = drawUntilSaved(options, *device, **running, watch, report);
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

}  // namespace velmoranth::cli
