#include "simulator/toolkit/status_bar.h"

#include "desktop/dates/dates.h"
#include "desktop/text/text.h"
#include "desktop/views/views.h"
#include "simulator/toolkit/named_views.h"

#include <cmath>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>

namespace velmoranth::simulator {
namespace {

using desktop::DesktopLabel;
using desktop::DesktopView;

constexpr platform::Color kWhite{1, 1, 1, 1};
constexpr platform::Color kFaintWhite{1, 1, 1, 0.4};
// What the platform's own pictures show.
constexpr const char* kUsualTime = "9:41";

std::string clockText(const DeviceConfiguration& device) {
    if (!device.date) {
        return kUsualTime;
    }
    const double seconds = device.date->secondsSinceReferenceDate + desktop::kReferenceDate;
    std::tm local{};
    const auto time = static_cast<std::time_t>(std::isfinite(seconds) ? seconds : 0);
    if (localtime_r(&time, &local) == nullptr) {
        return kUsualTime;
    }
    char text[32];  // NOLINT(modernize-avoid-c-arrays): snprintf's buffer
    std::snprintf(text, sizeof text, "%d:%02d", local.tm_hour, local.tm_min);
    return text;
}

platform::ViewRef box(const platform::Rect& frame, const platform::Color& color, double radius) {
    const auto view = std::make_shared<DesktopView>(frame);
    view->setBackgroundColor(color);
    view->desktopLayer()->appearance.cornerRadius = radius;
    return view;
}

// Four bars on a common base line.
void addSignal(platform::View& bar, double left, double bottom) {
    constexpr double kBarWidth = 3;
    constexpr double kBarPitch = 4.67;
    for (int i = 0; i < 4; ++i) {
        const double height = 4 + 2.2 * i;
        bar.addSubview(
            box({{left + i * kBarPitch, bottom - height}, {kBarWidth, height}}, kWhite, 0.8));
    }
}

void addBattery(platform::View& bar, double left, double centreY) {
    const platform::Rect body{{left, centreY - 5.5}, {22, 11}};
    bar.addSubview(box(body, kFaintWhite, 2.7));
    bar.addSubview(box({{left + 2, centreY - 3.5}, {18, 7}}, kWhite, 1.3));
    bar.addSubview(box({{left + 23, centreY - 2}, {1.4, 4}}, kFaintWhite, 0.7));
}

}  // namespace

platform::ViewRef makeStatusBar(const DeviceConfiguration& device,
                                const HomeScreenMetrics& metrics) {
    const platform::Rect frame{{0, 0}, {device.screen.width, metrics.statusBarHeight}};
    const auto bar = std::make_shared<NamedView>("UIStatusBar_Modern", frame);
    // In the tall bar beside a notch the line sits below the middle.
    const bool tall = metrics.statusBarHeight > 30;
    const double centreY = metrics.statusBarHeight / 2 + (tall ? 2 : 0);

    const desktop::TextStyle style{.weight = desktop::FontWeight::semibold,
                                   .size = metrics.statusTimeSize,
                                   .color = kWhite,
                                   .alignment = desktop::TextAlignment::center};
    const auto time = std::make_shared<DesktopLabel>(clockText(device), style);
    constexpr double kTimeWidth = 80;
    const double x = snapToPixels(metrics.statusTimeX - kTimeWidth / 2, device.screen.scale);
    time->setFrame({{x, centreY - 10}, {kTimeWidth, 20}});
    bar->addSubview(time);

    const double right = device.screen.width - (tall ? 14 : 6);
    addBattery(*bar, right - 24.4, centreY);
    if (device.kind == DeviceKind::phone) {
        addSignal(*bar, tall ? right - 24.4 - 25 : 6, centreY + 5.3);
    }
    return bar;
}

}  // namespace velmoranth::simulator
