// What the screens of a process are made with.
#pragma once

#include "desktop/imaging/images.h"
#include "desktop/runtime/runtime.h"
#include "desktop/views/view_controllers.h"
#include "desktop/views/views.h"
#include "simulator/device.h"
#include "simulator/toolkit/stock_images.h"
#include "simulator/toolkit/toolkit_images.h"

namespace velmoranth::simulator {

// Everything outlives the screen. The process's classes are known to the runtime.
struct AppContext {
    const DeviceConfiguration& device;
    desktop::Runtime& runtime;
    const desktop::DesktopImages& images;
    StockImages& stockImages;
    desktop::DesktopViews& views;
    // Images of bundles and of the toolkit itself; screens ask for them by messages.
    ToolkitImages& toolkit;
    // Its key window is there when a screen has appeared.
    desktop::DesktopApplication& application;

    [[nodiscard]] double scale() const { return device.screen.scale; }

    [[nodiscard]] platform::Rect bounds() const {
        return {{0, 0}, {device.screen.width, device.screen.height}};
    }
};

}  // namespace velmoranth::simulator
