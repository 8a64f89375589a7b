#include "simulator/screens/icon_places.h"

#include "simulator/screens/notification_screen.h"
#include "simulator/screens/switcher_screen.h"
#include "simulator/screens/today_screen.h"

#include <memory>
#include <optional>

namespace velmoranth::simulator {
namespace {

using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;
using platform::Size;

constexpr int kWidgetFormat = 5;

}  // namespace

ImageRef widgetIcon(const std::string& app, const ScreenContext& context) {
    desktop::Runtime& runtime = context.runtime;
    const auto info = std::make_shared<WidgetInfo>(app);
    const ObjectRef extension = std::make_shared<WidgetExtension>(app);
    if (context.device.system.major < 13) {
        return runtime.send<ImageRef, int, NullableString, ObjectRef>(
            *info, "_queue_iconWithFormat:forWidgetWithIdentifier:extension:", kWidgetFormat,
            info->widgetIdentifier(), extension);
    }
    return runtime.send<ImageRef, Size, double, NullableString, ObjectRef>(
        *info, "_queue_iconWithSize:scale:forWidgetWithIdentifier:extension:",
        Size{kWidgetSide, kWidgetSide}, context.scale(), info->widgetIdentifier(), extension);
}

ImageRef suggestedIcon(const std::string& app, const ScreenContext& context) {
    return context.runtime.sendToClass<ImageRef, NullableString>("APWUtil",
                                                                 "iconForBundleIdentifier:", app);
}

ImageRef switcherIcon(const std::string& app, const ScreenContext& context) {
    const auto banner =
        std::make_shared<SuggestionBannerView>(platform::Rect{{0, 0}, {300, 60}}, app, "");
    return context.runtime.send<ImageRef, NullableString, ObjectRef>(
        *banner, "_iconImageFromAppWithBundleIdentifier:withIconImageCache:", app,
        context.iconImageCache);
}

ImageRef notificationIcon(const std::string& app, const ScreenContext& context) {
    if (context.device.system.major < 13) {
        return nullptr;
    }
    return context.runtime.send<ImageRef, NullableString, NullableString, NullableString>(
        *std::make_shared<NotificationIcon>(),
        "_initWithName:path:applicationIdentifier:", std::nullopt, std::nullopt, app);
}

}  // namespace velmoranth::simulator
