#include "simulator/toolkit/base_classes.h"

#include "desktop/views/view_node.h"
#include "simulator/toolkit/class_rows.h"

#include <array>

namespace velmoranth::simulator {
namespace {

using platform::ImageRef;
using platform::NullableString;

constexpr const char* kAppIconSelector = "_applicationIconImageForBundleIdentifier:format:scale:";

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

void addViewMethods(const ScreenContext& context) {
    using desktop::ViewNode;
    ClassMethods(context.runtime, "UIView")
        .add("layoutSubviews", [](platform::View&) {})
        .add("setHidden:", &platform::View::setHidden)
        .add("setAlpha:", &platform::View::setAlpha)
        .add("isHidden", &ViewNode::isHidden)
        .add("alpha", &ViewNode::alpha);
}

// Nil for a nil identifier; a scale of 0 is the screen's.
ImageRef appIcon(const ScreenContext& context, const NullableString& bundleIdentifier, int format,
                 double scale) {
    if (!bundleIdentifier) {
        return nullptr;
    }
    const double side = iconSideOfFormat(format, context.metrics.iconSide);
    const double pixelsPerPoint = scale == 0 ? context.scale() : scale;
    // Before iOS 13 the home screen writes the day on what this gives.
    if (context.device.system.major < 13 && format == kHomeScreenIconFormat &&
        *bundleIdentifier == kCalendarIdentifier) {
        return context.stockImages.calendarBase(side, pixelsPerPoint);
    }
    return context.stockImages.icon(*bundleIdentifier, side, pixelsPerPoint, IconMasking::masked);
}

}  // namespace

void registerBaseClasses(const ScreenContext& context) {
    addClasses(kClasses, context.device.system, context.runtime);
    addViewMethods(context);
    ClassMethods(context.runtime, "UIImage")
        .addToClass(kAppIconSelector,
                    [&context](const NullableString& bundleIdentifier, int format, double scale) {
                        return appIcon(context, bundleIdentifier, format, scale);
                    });
}

ImageRef askForAppIcon(const ScreenContext& context, const NullableString& bundleIdentifier,
                       int format) {
    return context.runtime.sendToClass<ImageRef, NullableString, int, double>(
        "UIImage", kAppIconSelector, bundleIdentifier, format, context.scale());
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
