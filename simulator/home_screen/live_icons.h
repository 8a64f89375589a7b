// The two icons that the home screen draws itself: the calendar, which shows weekday and day of the
// device's date, and from iOS 13 on the clock, whose hands are drawn over a face that is asked for
// by its name.
#pragma once

#include "desktop/imaging/images.h"
#include "platform/foundation.h"
#include "platform/springboard.h"
#include "simulator/home_screen/icon_views.h"
#include "simulator/screen_context.h"

#include <memory>
#include <string>

namespace velmoranth::simulator {

// The clock's face, by its name, and the bundle that has it.
inline constexpr const char* kClockFace = "ClockIconBackgroundSquare";
inline constexpr const char* kClockBundle = "com.apple.SpringBoardHome";

// What an icon of the home screen is asked for with.
[[nodiscard]] platform::SBIconImageInfo iconImageInfo(double side, double scale);

// The base with weekday and day over it, in the locale's words; at the base's size, at `scale`
// pixels per point. Nil for a base without a bitmap.
[[nodiscard]] platform::ImageRef drawCalendarIcon(const platform::ImageRef& base, double scale,
                                                  platform::Dates& dates,
                                                  const desktop::DesktopImages& images);

// The image stretched to what the info says, in the icon's shape when that is asked for: what the
// clock's face becomes. Nil for nil.
[[nodiscard]] platform::ImageRef processedIconImage(const platform::ImageRef& image,
                                                    const platform::SBIconImageInfo& info,
                                                    bool includingMask,
                                                    const desktop::DesktopImages& images);

// SBHClockApplicationIconImageView: the face is its contents, the hands lie over it.
class ClockIconImageView final : public IconImageView {
  public:
    explicit ClockIconImageView(platform::SBIconRef icon);

    [[nodiscard]] std::string className() const override {
        return "SBHClockApplicationIconImageView";
    }

    // Over the whole of the face.
    void setHands(const platform::ImageRef& hands);

    [[nodiscard]] const platform::ImageViewRef& hands() const { return hands_; }

  private:
    platform::ImageViewRef hands_;
};

// The image view of an app's icon, of the class that the system has for it.
[[nodiscard]] std::shared_ptr<IconImageView> makeIconImageView(const platform::SBIconRef& icon,
                                                               const App& app,
                                                               const SystemVersion& system);

// The methods of both icons, after the home screen's classes.
void addLiveIconMethods(const ScreenContext& context);

}  // namespace velmoranth::simulator
