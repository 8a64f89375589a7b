#include "cli/preview_steps.h"

#include "simulator/open_folder.h"

#include <fmt/core.h>

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

// Beside the panel, in the middle of the screen's height.
simulator::TapAction tapBeside(const simulator::ShownFolder& folder, double scale) {
    return {{folder.x / 2 / scale, (folder.y + folder.height / 2) / scale}};
}

}  // namespace

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
        if (!done || step == kStepCount) {
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
        // A little longer than the step, since times are sums of fractions.
        constexpr double kStep = 1.0 / kStepsPerSecond + 1e-6;
        if (done) {
            done = screen.act(AdvanceAction{kStep});
        }
        if (!done) {
            return done;
        }
        drawn = screen.render();
    }
}

}  // namespace velmoranth::cli
