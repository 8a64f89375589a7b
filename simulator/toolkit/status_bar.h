// The status bar: the clock, signal and battery.
#pragma once

#include "platform/uikit.h"
#include "simulator/device.h"

namespace velmoranth::simulator {

// A view over the top of the screen: white over a wallpaper, black over an app's light bar.
[[nodiscard]] platform::ViewRef makeStatusBar(const DeviceConfiguration& device,
                                              const platform::Color& color = platform::kWhiteColor);

}  // namespace velmoranth::simulator
