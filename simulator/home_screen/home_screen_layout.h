// Where things lie on the home screen: one table of measurements, and the slots that follow from
// it. Points, snapped to the screen's pixels.
#pragma once

#include "platform/core_graphics.h"
#include "simulator/device.h"
#include "simulator/home_screen/apps.h"

#include <optional>
#include <vector>

namespace velmoranth::simulator {

// classic: full width, to the screen's bottom, with labels. rounded: inset, no labels. floating: a
// platter as wide as its icons need, no labels.
enum class DockStyle { classic, rounded, floating };

// Points.
struct HomeScreenMetrics {
    DeviceKind kind;
    double screenWidth;
    double screenHeight;

    int columns;
    int rows;
    double iconSide;
    platform::Point firstIcon;  // top left of the first icon
    double pitchX;              // from one icon's left to the next one's
    double pitchY;

    double labelSize;      // of the type
    double labelBaseline;  // below the icon's bottom edge

    DockStyle dockStyle;
    double dockHeight;
    double dockInset;    // left and right; of a floating dock what it keeps free at least
    double dockBottom;   // between dock and screen
    double dockRadius;   // of its continuous corners
    double dockIconTop;  // from the dock's top to its icons
    double dockIconGap;  // between icons of a floating dock, and beside the outermost

    double pageDotsY;  // centre
    double pageDotSide;
    double pageDotPitch;

    double statusBarHeight;
    double statusTimeX;     // centre of the clock
    double statusTimeSize;  // of the type
};

// The measurements of the screen's size, or of the nearest size of the same kind.
[[nodiscard]] const HomeScreenMetrics& homeScreenMetrics(DeviceKind kind,
                                                         const ScreenDescription& screen);

// A length rounded to the pixels of the screen.
[[nodiscard]] double snapToPixels(double points, double scale);

// The box of a label under an icon.
struct LabelPlace {
    double width = 0;  // widest
    double top = 0;    // below the icon's bottom edge
    double height = 0;
};

[[nodiscard]] LabelPlace labelPlace(const HomeScreenMetrics& metrics, double scale);

struct IconSlot {
    HomeScreenItem item;
    platform::Rect icon;  // on the screen
};

struct HomeScreenLayout {
    std::vector<std::vector<IconSlot>> pages;  // at least one
    std::vector<IconSlot> dock;
    std::vector<IconSlot> suggested;  // to the right of a floating dock's divider; else none
    platform::Rect dockFrame;         // what the dock's background covers
    // The middle of a floating dock's divider; none without icons on both of its sides.
    std::optional<double> dividerX;
};

// As many pages as the apps need.
[[nodiscard]] HomeScreenLayout layoutHomeScreen(const HomeScreenMetrics& metrics,
                                                const ScreenDescription& screen,
                                                const HomeScreenApps& apps = stockApps());

}  // namespace velmoranth::simulator
