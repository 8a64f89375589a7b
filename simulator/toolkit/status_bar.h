// The status bar: the clock, signal and battery, white.
#pragma once

#include "platform/uikit.h"
#include "simulator/device.h"
#include "simulator/home_screen/home_screen_layout.h"

namespace velmoranth::simulator {

// A view over the top of the screen.
[[nodiscard]] platform::ViewRef makeStatusBar(const DeviceConfiguration& device,
                                              const HomeScreenMetrics& metrics);

}  // namespace velmoranth::simulator
