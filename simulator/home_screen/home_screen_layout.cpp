#include "simulator/home_screen/home_screen_layout.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmoranth::simulator {
namespace {

// Sources. 375 × 667: a real 750 × 1334 screenshot measured by pixel, which agrees with public
// re-creations of the screen. 375 × 812: grid after a public re-creation made on iOS 11, dock from
// a real 1125 × 2436 screenshot, page dots midway between the last labels and the dock. 768 × 1024:
// grid after a public re-creation of iOS 10 in portrait, which iOS 12 kept and iPadOS 13 calls
// "bigger"; the floating dock, the label's size, the pad held sideways and all status bars are
// estimates.
constexpr HomeScreenMetrics kUprightPad{.kind = DeviceKind::pad,
                                        .screenWidth = 768,
                                        .screenHeight = 1024,
                                        .columns = 4,
                                        .rows = 5,
                                        .iconSide = 76,
                                        .firstIcon = {81.5, 88},
                                        .pitchX = 176,
                                        .pitchY = 161,
                                        .labelSize = 14,
                                        .labelBaseline = 19,
                                        .dockStyle = DockStyle::floating,
                                        .dockHeight = 104,
                                        .dockInset = 20,
                                        .dockBottom = 10,
                                        .dockRadius = 31,
                                        .dockIconTop = 14,
                                        .dockIconGap = 20,
                                        .pageDotsY = 890,
                                        .pageDotSide = 8,
                                        .pageDotPitch = 18,
                                        .statusBarHeight = 20,
                                        .statusTimeX = 384,
                                        .statusTimeSize = 12};

constexpr HomeScreenMetrics heldSideways(HomeScreenMetrics pad) {
    pad.screenWidth = 1024;
    pad.screenHeight = 768;
    pad.columns = 5;
    pad.rows = 4;
    pad.firstIcon = {100, 70};
    pad.pitchX = 187;
    pad.pitchY = 142;
    pad.pageDotsY = 634;
    pad.statusTimeX = 512;
    return pad;
}

constexpr std::array<HomeScreenMetrics, 4> kMetrics{{
    {.kind = DeviceKind::phone,
     .screenWidth = 375,
     .screenHeight = 812,
     .columns = 4,
     .rows = 6,
     .iconSide = 60,
     .firstIcon = {27, 72},
     .pitchX = 87,
     .pitchY = 310.0 / 3,
     .labelSize = 12,
     .labelBaseline = 16,
     .dockStyle = DockStyle::rounded,
     .dockHeight = 94,
     .dockInset = 10,
     .dockBottom = 10,
     .dockRadius = 31,
     .dockIconTop = 17,
     .dockIconGap = 27,
     .pageDotsY = 688,
     .pageDotSide = 8,
     .pageDotPitch = 17,
     .statusBarHeight = 44,
     .statusTimeX = 54,
     .statusTimeSize = 16},
    {.kind = DeviceKind::phone,
     .screenWidth = 375,
     .screenHeight = 667,
     .columns = 4,
     .rows = 6,
     .iconSide = 60,
     .firstIcon = {27, 28},
     .pitchX = 87,
     .pitchY = 88,
     .labelSize = 12,
     .labelBaseline = 16,
     .dockStyle = DockStyle::classic,
     .dockHeight = 96,
     .dockInset = 0,
     .dockBottom = 0,
     .dockRadius = 0,
     .dockIconTop = 14,
     .dockIconGap = 27,
     .pageDotsY = 563.5,
     .pageDotSide = 7,
     .pageDotPitch = 16,
     .statusBarHeight = 20,
     .statusTimeX = 187.5,
     .statusTimeSize = 12},
    kUprightPad,
    heldSideways(kUprightPad),
}};

// Share of the type's size from the middle of a line's box down to the baseline, and the box's
// height: the system face's ascent 0.96875 and descent 0.2412 (tables of the font).
constexpr double kMiddleToBaseline = (0.96875 - 0.2412) / 2;
constexpr double kLineHeight = 1.25;
// Labels keep this much free between two columns.
constexpr double kLabelMargin = 5;

// What a dock has to show.
struct DockContents {
    double icons;
    bool hasDivider;
};

platform::Rect dockFrameOf(const HomeScreenMetrics& metrics, const ScreenDescription& screen,
                           const DockContents& contents) {
    const double y = screen.height - metrics.dockBottom - metrics.dockHeight;
    double width = screen.width - 2 * metrics.dockInset;
    if (metrics.dockStyle == DockStyle::floating) {
        // The divider has a gap on either side of its own.
        const double gaps = contents.icons + (contents.hasDivider ? 2 : 1);
        const double needed = contents.icons * metrics.iconSide + gaps * metrics.dockIconGap;
        width = std::min(width, needed);
    }
    const double x = snapToPixels((screen.width - width) / 2, screen.scale);
    return {{x, snapToPixels(y, screen.scale)}, {width, metrics.dockHeight}};
}

// Of as many icons as the dock has.
double dockIconX(const HomeScreenMetrics& metrics, const platform::Rect& dock, double index,
                 double count) {
    if (metrics.dockStyle == DockStyle::floating) {
        return dock.origin.x + metrics.dockIconGap +
               index * (metrics.iconSide + metrics.dockIconGap);
    }
    // Below the columns of the pages when it is full, otherwise in the middle.
    return metrics.firstIcon.x + (index + (metrics.columns - count) / 2) * metrics.pitchX;
}

}  // namespace

const HomeScreenMetrics& homeScreenMetrics(DeviceKind kind, const ScreenDescription& screen) {
    const auto distance = [&](const HomeScreenMetrics& metrics) {
        // A device of another kind is never nearer.
        const double other = metrics.kind == kind ? 0 : 1e6;
        return other + std::abs(metrics.screenWidth - screen.width) +
               std::abs(metrics.screenHeight - screen.height);
    };
    return *std::min_element(kMetrics.begin(), kMetrics.end(),
                             [&](const HomeScreenMetrics& a, const HomeScreenMetrics& b) {
                                 return distance(a) < distance(b);
                             });
}

double snapToPixels(double points, double scale) {
    return scale > 0 ? std::round(points * scale) / scale : points;
}

LabelPlace labelPlace(const HomeScreenMetrics& metrics, double scale) {
    const double height = std::ceil(metrics.labelSize * kLineHeight);
    return {.width = metrics.pitchX - kLabelMargin,
            .top = snapToPixels(
                metrics.labelBaseline - kMiddleToBaseline * metrics.labelSize - height / 2, scale),
            .height = height};
}

HomeScreenLayout layoutHomeScreen(const HomeScreenMetrics& metrics, const ScreenDescription& screen,
                                  const HomeScreenApps& apps) {
    const auto slot = [&](const HomeScreenItem& item, double x, double y) {
        return IconSlot{item,
                        {{snapToPixels(x, screen.scale), snapToPixels(y, screen.scale)},
                         {metrics.iconSide, metrics.iconSide}}};
    };
    HomeScreenLayout layout;
    layout.pages.emplace_back();
    int row = 0;
    int column = 0;
    for (const HomeScreenItem& item : apps.items) {
        if (row == metrics.rows) {
            layout.pages.emplace_back();
            row = 0;
        }
        layout.pages.back().push_back(slot(item, metrics.firstIcon.x + column * metrics.pitchX,
                                           metrics.firstIcon.y + row * metrics.pitchY));
        if (++column == metrics.columns) {
            column = 0;
            ++row;
        }
    }
    const bool isFloating = metrics.dockStyle == DockStyle::floating;
    const std::span<const App> suggested = isFloating ? apps.suggested : std::span<const App>();
    const auto count = static_cast<double>(apps.dock.size() + suggested.size());
    const bool hasDivider = !apps.dock.empty() && !suggested.empty();
    layout.dockFrame = dockFrameOf(metrics, screen, {count, hasDivider});
    const double top = layout.dockFrame.origin.y + metrics.dockIconTop;
    double index = 0;
    for (const App& app : apps.dock) {
        layout.dock.push_back(
            slot({&app, nullptr}, dockIconX(metrics, layout.dockFrame, index++, count), top));
    }
    if (hasDivider) {
        layout.dividerX = dockIconX(metrics, layout.dockFrame, index, count);
    }
    for (const App& app : suggested) {
        const double x = dockIconX(metrics, layout.dockFrame, index++, count) +
                         (hasDivider ? metrics.dockIconGap : 0);
        layout.suggested.push_back(slot({&app, nullptr}, x, top));
    }
    return layout;
}

}  // namespace velmoranth::simulator
