// The steps of a movement, each a picture of its own: a folder that opens and closes, or the image
// of success that comes and goes.
#pragma once

#include "desktop/result/result.h"
#include "simulator/process/launcher.h"

#include <functional>
#include <string>

namespace velmoranth::cli {

inline constexpr int kStepsPerSecond = 20;
// The closed folder, seven steps to the open one, and seven back.
inline constexpr int kStepsToOpen = 7;

// How many steps a screen has; 0 for one without.
[[nodiscard]] int stepCount(simulator::ScreenKind screen);

// The file of a step, from 1: "out/preview.png" has "out/preview-01.png".
[[nodiscard]] std::string stepFile(const std::string& output, int step);

// Draws every step of the request's screen, first to last, and hands each over; a problem of the
// receiver ends it.
[[nodiscard]] desktop::Result<void> drawSteps(
    const simulator::ScreenRequest& request,
    const std::function<desktop::Result<void>(int step, const simulator::RenderedScreen& screen)>&
        receive);

}  // namespace velmoranth::cli
