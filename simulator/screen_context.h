// What the views of a screen are made with.
#pragma once

#include "desktop/imaging/images.h"
#include "desktop/runtime/runtime.h"
#include "desktop/views/views.h"
#include "simulator/device.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/home_screen/icons.h"
#include "simulator/toolkit/stock_images.h"

#include <memory>
#include <string>

namespace velmoranth::simulator {

// Everything outlives the views. The platform classes are known to the runtime.
struct ScreenContext {
    const DeviceConfiguration& device;
    const HomeScreenMetrics& metrics;
    desktop::Runtime& runtime;
    const desktop::DesktopImages& images;
    StockImages& stockImages;
    std::shared_ptr<FolderIconImageCache> folderIconImageCache;
    // Its clock moves what is animated.
    desktop::DesktopViews& views;

    [[nodiscard]] double scale() const { return device.screen.scale; }

    [[nodiscard]] platform::Rect bounds() const {
        return {{0, 0}, {device.screen.width, device.screen.height}};
    }
};

}  // namespace velmoranth::simulator
