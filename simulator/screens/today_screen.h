// The today view: widgets as cards over the blurred wallpaper. A widget's icon is asked for by a
// message to its WGWidgetInfo, those of the suggested apps by messages to APWUtil.
#pragma once

#include "platform/springboard.h"
#include "simulator/screen_context.h"
#include "simulator/screens/home_overlay.h"
#include "simulator/toolkit/class_names.h"

#include <string>
#include <utility>

namespace velmoranth::simulator {

// WGWidgetInfo.
class WidgetInfo final : public Named<"WGWidgetInfo", platform::WGWidgetInfo> {
  public:
    // Nil for a widget without an identifier of its own.
    explicit WidgetInfo(platform::NullableString identifier) : identifier_(std::move(identifier)) {}

    [[nodiscard]] platform::NullableString widgetIdentifier() const override { return identifier_; }

  private:
    platform::NullableString identifier_;
};

// The part of an app that a widget is: the bundle identifier of that app.
using WidgetExtension = ObjectWith<"NSExtension", std::string>;

// The classes of the today view, after the toolkit's.
void registerTodayClasses(const ScreenContext& context);

class TodayScreen final : public HomeOverlay {
  public:
    explicit TodayScreen(const ScreenContext& context);
};

}  // namespace velmoranth::simulator
