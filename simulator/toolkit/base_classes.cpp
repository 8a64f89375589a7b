#include "simulator/toolkit/base_classes.h"

#include "desktop/views/view_node.h"
#include "simulator/toolkit/class_rows.h"

#include <array>
#include <functional>

namespace velmoranth::simulator {
namespace {

using desktop::Runtime;
using platform::ImageRef;
using platform::NullableString;

constexpr std::array kClasses{
    ClassRow{"NSObject", ""},
    ClassRow{"UIImage", "NSObject"},
    ClassRow{"UIView", "NSObject"},
    ClassRow{"UIWindow", "UIView"},
    ClassRow{"UIImageView", "UIView"},
    ClassRow{"UILabel", "UIView"},
    ClassRow{"UIControl", "UIView"},
    ClassRow{"UIPageControl", "UIControl"},
    ClassRow{"UIStatusBar_Modern", "UIView"},
};

// Sides of the platform's icon formats: settings, search, notifications.
struct FormatRow {
    int format;
    double side;  // points
};

constexpr std::array kFormats{FormatRow{0, 29}, FormatRow{1, 40}, FormatRow{5, 20}};

void addViewMethods(const BaseObjects& objects) {
    Runtime& runtime = objects.runtime;
    using desktop::ViewNode;
    runtime.addInstanceMethod("UIView", "layoutSubviews",
                              std::function<void(platform::View&)>([](platform::View&) {}));
    runtime.addInstanceMethod(
        "UIView", "setHidden:",
        std::function<void(platform::View&, bool)>(
            [](platform::View& view, bool hidden) { view.setHidden(hidden); }));
    runtime.addInstanceMethod(
        "UIView", "setAlpha:",
        std::function<void(platform::View&, double)>(
            [](platform::View& view, double alpha) { view.setAlpha(alpha); }));
    runtime.addInstanceMethod(
        "UIView", "isHidden",
        std::function<bool(ViewNode&)>([](const ViewNode& node) { return node.isHidden(); }));
    runtime.addInstanceMethod(
        "UIView", "alpha",
        std::function<double(ViewNode&)>([](const ViewNode& node) { return node.alpha(); }));
}

void addImageMethods(const SystemVersion& system, const BaseObjects& objects) {
    // Before iOS 13 the home screen writes the day on what this gives.
    const bool writesDayOnCalendar = system.major < 13;
    objects.runtime.addClassMethod(
        "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:",
        std::function<ImageRef(platform::Class&, NullableString, int, double)>(
            [objects, writesDayOnCalendar](platform::Class&, const NullableString& bundleIdentifier,
                                           int format, double scale) -> ImageRef {
                if (!bundleIdentifier) {
                    return nullptr;
                }
                const double side = iconSideOfFormat(format, objects.iconSide);
                const double pixelsPerPoint = scale == 0 ? objects.screenScale : scale;
                if (writesDayOnCalendar && format == kHomeScreenIconFormat &&
                    *bundleIdentifier == kCalendarIdentifier) {
                    return objects.stockImages.calendarBase(side, pixelsPerPoint);
                }
                return objects.stockImages.icon(*bundleIdentifier, side, pixelsPerPoint,
                                                IconMasking::masked);
            }));
}

}  // namespace

void registerBaseClasses(const SystemVersion& system, const BaseObjects& objects) {
    addClasses(kClasses, system, objects.runtime);
    addViewMethods(objects);
    addImageMethods(system, objects);
}

double iconSideOfFormat(int format, double homeScreenIconSide) {
    for (const FormatRow& row : kFormats) {
        if (row.format == format) {
            return row.side;
        }
    }
    return homeScreenIconSide;
}

}  // namespace velmoranth::simulator
