// The services of a process without a screen and without the engine, for tests of its classes.
// Which classes it has is the test's business.
#pragma once

#include "desktop/dates/dates.h"
#include "simulator/screen_context.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::simulator {

struct BareProcess {
    explicit BareProcess(DeviceConfiguration configuration,
                         std::string_view mainBundle = kHomeScreenBundle,
                         std::shared_ptr<const desktop::DeviceRoot> root = nullptr)
        : device(std::move(configuration)), toolkit(device, images, std::move(root), mainBundle) {}

    std::vector<std::string> warnings;
    DeviceConfiguration device;
    desktop::Runtime runtime{[this](const std::string& line) { warnings.push_back(line); }};
    desktop::DesktopImageContexts contexts{3, desktop::ImageDescription::ios13};
    desktop::DesktopImages images{{.root = nullptr, .screenScale = 3}, contexts};
    StockImages stock{images, timeOfDay(device.date)};
    ToolkitImages toolkit;
    desktop::DesktopViews views;
    desktop::DesktopApplication application;
    desktop::DesktopDates dates{{.locale = device.locale, .date = device.date, .timeZone = "UTC"}};
    ScreenContext context{.device = device,
                          .runtime = runtime,
                          .images = images,
                          .stockImages = stock,
                          .toolkit = toolkit,
                          .views = views,
                          .application = application,
                          .dates = dates};
};

}  // namespace velmoranth::simulator
