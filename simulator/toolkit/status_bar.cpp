#include "simulator/toolkit/status_bar.h"

#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/time_of_day.h"
#include "simulator/toolkit/view_kit.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string>

namespace velmoranth::simulator {
namespace {

using platform::Color;

std::string clockText(const DeviceConfiguration& device) {
    const TimeOfDay time = timeOfDay(device.date);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%d:%02d", time.hour, time.minute);
    return text.data();
}

// Four bars on a common base line.
void addSignal(platform::View& bar, double left, double bottom, const Color& color) {
    constexpr double kWidth = 3;
    constexpr double kPitch = 4.67;
    for (int i = 0; i < 4; ++i) {
        const double height = 4 + 2.2 * i;
        bar.addSubview(
            makeBox({{left + i * kPitch, bottom - height}, {kWidth, height}}, color, 0.8));
    }
}

void addBattery(platform::View& bar, double left, double centreY, const Color& color) {
    Color faint = color;
    faint.alpha = 0.4;
    bar.addSubview(makeBox({{left, centreY - 5.5}, {22, 11}}, faint, 2.7));
    bar.addSubview(makeBox({{left + 2, centreY - 3.5}, {18, 7}}, color, 1.3));
    bar.addSubview(makeBox({{left + 23, centreY - 2}, {1.4, 4}}, faint, 0.7));
}

}  // namespace

platform::ViewRef makeStatusBar(const DeviceConfiguration& device, const Color& color) {
    const HomeScreenMetrics& metrics = homeScreenMetrics(device.kind, device.screen);
    const platform::Rect frame{{0, 0}, {device.screen.width, metrics.statusBarHeight}};
    const auto bar = std::make_shared<NamedView>("UIStatusBar_Modern", frame);
    // In the tall bar beside a notch the line sits below the middle.
    const bool tall = metrics.statusBarHeight > 30;
    const double centreY = metrics.statusBarHeight / 2 + (tall ? 2 : 0);

    constexpr double kTimeWidth = 80;
    const double x = snapToPixels(metrics.statusTimeX - kTimeWidth / 2, device.screen.scale);
    bar->addSubview(makeText(clockText(device),
                             centered(metrics.statusTimeSize, color, desktop::FontWeight::semibold),
                             {{x, centreY - 10}, {kTimeWidth, 20}}));

    const double right = device.screen.width - (tall ? 14 : 6);
    addBattery(*bar, right - 24.4, centreY, color);
    if (device.kind == DeviceKind::phone) {
        addSignal(*bar, tall ? right - 24.4 - 25 : 6, centreY + 5.3, color);
    }
    return bar;
}

}  // namespace velmoranth::simulator
