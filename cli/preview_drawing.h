// Drawing the screens of a run of `velmoranth preview`.
#pragma once

#include "cli/preview_delivery.h"
#include "cli/preview_options.h"
#include "cli/throw_away_device.h"
#include "desktop/result/result.h"
#include "simulator/process/launcher.h"

#include <cstddef>
#include <functional>
#include <string_view>

namespace velmoranth::cli {

[[nodiscard]] simulator::ScreenRequest requestFor(
    const PreviewOptions& options, const DeviceOfRun& device, const ScreenOptions& screen,
    const simulator::DeviceConfiguration& configuration);

// The options' own screen and device.
[[nodiscard]] simulator::ScreenRequest requestFor(const PreviewOptions& options,
                                                  const DeviceOfRun& device);

// Whether the pages that were asked for are there. With an item given the page is the one where it
// lies. The problem is one of usage.
[[nodiscard]] desktop::Result<void> checkPages(const PreviewOptions& options,
                                               const simulator::RenderedScreen& screen);

// A page of a screen; beside the stock one when both are to be seen.
struct DrawnPage {
    simulator::RenderedScreen screen;  // its picture is in `picture`
    simulator::Picture picture;
    Placed place;  // of the themed screen in it
};

// In a process that then ends: what a process has shown before has a say in what it shows.
[[nodiscard]] desktop::Result<DrawnPage> drawPage(const PreviewOptions& options,
                                                  const DeviceOfRun& device,
                                                  const simulator::ScreenRequest& request);

// Does all of them, from 0, as many at once as this machine has processors, and shows how many are
// done. Once there is a problem no other is begun; the first one in their order is given.
[[nodiscard]] desktop::Result<void> doAtOnce(
    std::size_t count, std::string_view noun,
    const std::function<desktop::Result<void>(std::size_t index)>& work);

// Every screen of the options' device, each page in a file of the output's folder.
ExitCode drawAllScreens(const PreviewOptions& options, const DeviceOfRun& device);

// The options' screens of their devices in one picture.
ExitCode drawSheet(const PreviewOptions& options, const DeviceOfRun& device);

// The device of the run: one with the options' themes, or the user's own.
[[nodiscard]] desktop::Result<DeviceOfRun> deviceFor(const PreviewOptions& options);

// The options' screen, which fills its picture.
[[nodiscard]] ShownScreen shownOn(const PreviewOptions& options,
                                  const simulator::RenderedScreen& screen);

}  // namespace velmoranth::cli
