#include "cli/preview_steps.h"

#include "simulator/home_screen/open_folder.h"
#include "simulator/screens/panel_screen.h"

#include <fmt/core.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <utility>

namespace velmoranth::cli {

using desktop::Result;
using simulator::AdvanceAction;
using simulator::RenderedScreen;
using simulator::RunningScreen;
using simulator::ScreenAction;

namespace {

static_assert(kStepsToOpen / double{kStepsPerSecond} >= simulator::kFolderDuration,
              "the last step is the end of the movement");

// Than a step, since times are sums of fractions; seconds.
constexpr double kALittleLonger = 1e-6;

constexpr int kFolderSteps = 1 + 2 * kStepsToOpen;

// Seconds from the beginning: twice on the way, at the end of it, and when it has gone.
constexpr std::array kSuccessTimes{0.1, 0.2, simulator::kSuccessGrows,
                                   simulator::kSuccessStays + 0.1};

using Receive = std::function<Result<void>(int step, const RenderedScreen& screen)>;

// Beside the panel, in the middle of the screen's height.
simulator::TapAction tapBeside(const simulator::ShownFolder& folder, double scale) {
    return {{folder.x / 2 / scale, (folder.y + folder.height / 2) / scale}};
}

Result<void> drawFolderSteps(const simulator::ScreenRequest& request, const Receive& receive) {
    simulator::ScreenRequest closed = request;
    closed.screen = simulator::ScreenKind::home;
    const auto running = RunningScreen::start(closed);
    if (!running) {
        return tl::unexpected(running.error());
    }
    RunningScreen& screen = **running;
    Result<RenderedScreen> drawn = screen.render();
    Result<void> done;
    for (int step = 1;; ++step) {
        if (!drawn) {
            return tl::unexpected(drawn.error());
        }
        done = receive(step, *drawn);
        if (!done || step == kFolderSteps) {
            return done;
        }
        if (step == 1) {
            done = screen.act(simulator::OpenFolderAction{request.item});
            if (done && request.folderPage != 1) {
                done = screen.act(simulator::TurnFolderPageAction{request.folderPage});
            }
        } else if (step == 1 + kStepsToOpen && drawn->folder) {
            done = screen.act(tapBeside(*drawn->folder, drawn->picture.scale));
        }
        if (done) {
            done = screen.act(AdvanceAction{1.0 / kStepsPerSecond + kALittleLonger});
        }
        if (!done) {
            return done;
        }
        drawn = screen.render();
    }
}

// Once it has gone, by the row that brings it again.
Result<void> drawSuccessSteps(const simulator::ScreenRequest& request, const Receive& receive) {
    const auto running = RunningScreen::start(request);
    if (!running) {
        return tl::unexpected(running.error());
    }
    RunningScreen& screen = **running;
    const platform::Rect row =
        simulator::panelRow(simulator::PanelTask::applySettings, request.device);
    Result<void> done = screen.act(AdvanceAction{simulator::kSuccessStays});
    if (done) {
        done = screen.act(simulator::TapAction{
            {row.origin.x + row.size.width / 2, row.origin.y + row.size.height / 2}});
    }
    double now = 0;
    for (std::size_t step = 0; done && step < kSuccessTimes.size(); ++step) {
        done = screen.act(AdvanceAction{kSuccessTimes.at(step) - now + kALittleLonger});
        now = kSuccessTimes.at(step);
        if (!done) {
            break;
        }
        const auto drawn = screen.render();
        if (!drawn) {
            return tl::unexpected(drawn.error());
        }
        done = receive(static_cast<int>(step) + 1, *drawn);
    }
    return done;
}

}  // namespace

int stepCount(simulator::ScreenKind screen) {
    switch (screen) {
        case simulator::ScreenKind::folder:
            return kFolderSteps;
        case simulator::ScreenKind::panelSuccess:
            return static_cast<int>(kSuccessTimes.size());
        default:
            return 0;
    }
}

std::string stepFile(const std::string& output, int step) {
    const std::filesystem::path path(output);
    std::filesystem::path file = path;
    file.replace_filename(
        fmt::format("{}-{:02}{}", path.stem().string(), step, path.extension().string()));
    return file.string();
}

Result<void> drawSteps(
    const simulator::ScreenRequest& request,
    const std::function<Result<void>(int step, const RenderedScreen& screen)>& receive) {
    return request.screen == simulator::ScreenKind::panelSuccess
               ? drawSuccessSteps(request, receive)
               : drawFolderSteps(request, receive);
}

}  // namespace velmoranth::cli
