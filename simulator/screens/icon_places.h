// App icons beside the home screen: where each place asks for one, with the message that it sends.
#pragma once

#include "platform/uikit.h"
#include "simulator/screen_context.h"

#include <string>

namespace velmoranth::simulator {

// What the today view asks for, a widget's app by its bundle identifier.
[[nodiscard]] platform::ImageRef widgetIcon(const std::string& app, const ScreenContext& context);
// What the today view asks for, an app that it suggests.
[[nodiscard]] platform::ImageRef suggestedIcon(const std::string& app,
                                               const ScreenContext& context);
// What the app switcher's banner asks for.
[[nodiscard]] platform::ImageRef switcherIcon(const std::string& app, const ScreenContext& context);
// What a notification asks for on iOS 13. Nil on iOS 12, where it shows the icon as any list does.
[[nodiscard]] platform::ImageRef notificationIcon(const std::string& app,
                                                  const ScreenContext& context);

// Sides in points.
inline constexpr double kWidgetSide = 20;
inline constexpr double kSuggestionSide = 60;
inline constexpr double kBannerSide = 32;
inline constexpr double kNotificationSide = 20;

}  // namespace velmoranth::simulator
