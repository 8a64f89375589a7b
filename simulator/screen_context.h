// What the classes, views and screens of a process are made with: the device and its measurements,
// the services, and the objects that they share.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/images.h"
#include "desktop/runtime/runtime.h"
#include "desktop/views/view_controllers.h"
#include "desktop/views/views.h"
#include "platform/foundation.h"
#include "simulator/device.h"
#include "simulator/home_screen/apps.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/home_screen/icon_controller.h"
#include "simulator/home_screen/icons.h"
#include "simulator/toolkit/stock_images.h"
#include "simulator/toolkit/toolkit_images.h"

#include <memory>
#include <utility>

namespace velmoranth::simulator {

// One a process. It and everything it refers to outlive every view, and every message.
struct ScreenContext {
    const DeviceConfiguration& device;
    desktop::Runtime& runtime;
    const desktop::DesktopImages& images;
    StockImages& stockImages;
    // Images of bundles and of the toolkit itself; screens ask for them by messages.
    ToolkitImages& toolkit;
    // Its clock moves what is animated.
    desktop::DesktopViews& views;
    // Its key window is there when a screen has appeared.
    desktop::DesktopApplication& application;
    platform::Dates& dates;
    const HomeScreenMetrics& metrics = homeScreenMetrics(device.kind, device.screen);
    // What the home screen shows, and what stands behind it; nil for the drawn wallpaper.
    HomeScreenApps apps = stockApps();
    std::shared_ptr<desktop::DesktopBitmapImage> wallpaper = nullptr;
    std::shared_ptr<IconController> iconController = std::make_shared<IconController>(runtime);
    // What icon views ask on iOS 13, and what folders' icons ask.
    std::shared_ptr<IconImageCache> iconImageCache = std::make_shared<IconImageCache>();
    std::shared_ptr<FolderIconImageCache> folderIconImageCache =
        std::make_shared<FolderIconImageCache>();

    [[nodiscard]] double scale() const { return device.screen.scale; }

    [[nodiscard]] platform::ImageRef picture(FurniturePicture drawn) const {
        return stockImages.picture(std::move(drawn), scale());
    }

    [[nodiscard]] platform::Rect bounds() const {
        return {{0, 0}, {device.screen.width, device.screen.height}};
    }
};

}  // namespace velmoranth::simulator
