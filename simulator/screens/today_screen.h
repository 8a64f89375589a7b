// The today view: widgets as cards over the blurred wallpaper. A widget's icon is asked for by a
// message to its WGWidgetInfo, those of the suggested apps by messages to APWUtil.
#pragma once

#include "platform/springboard.h"
#include "simulator/screen_context.h"
#include "simulator/screens/home_overlay.h"

#include <memory>
#include <string>
#include <utility>

namespace velmoranth::simulator {

// WGWidgetInfo.
class WidgetInfo final : public platform::WGWidgetInfo {
  public:
    // Nil for a widget without an identifier of its own.
    explicit WidgetInfo(platform::NullableString identifier) : identifier_(std::move(identifier)) {}

    [[nodiscard]] std::string className() const override { return "WGWidgetInfo"; }

    [[nodiscard]] platform::NullableString widgetIdentifier() const override { return identifier_; }

  private:
    platform::NullableString identifier_;
};

// NSExtension: the part of an app that a widget is.
class WidgetExtension final : public platform::Object {
  public:
    explicit WidgetExtension(std::string appIdentifier)
        : appIdentifier_(std::move(appIdentifier)) {}

    [[nodiscard]] std::string className() const override { return "NSExtension"; }

    // The bundle identifier of the app that the widget comes with.
    [[nodiscard]] const std::string& appIdentifier() const { return appIdentifier_; }

  private:
    std::string appIdentifier_;
};

// The classes of the today view, after the toolkit's.
void registerTodayClasses(const ScreenContext& context);

class TodayScreen final : public HomeOverlay {
  public:
    explicit TodayScreen(const ScreenContext& context);
};

}  // namespace velmoranth::simulator
