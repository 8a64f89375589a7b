// The platform's own images of app icons, as the process keeps them: drawn when first asked for,
// shared from then on. It counts what is asked for, so that a test or a person can see how often a
// replaced method went to the platform.
#pragma once

#include "desktop/imaging/images.h"
#include "platform/uikit.h"
#include "simulator/artwork/artwork.h"
#include "simulator/toolkit/time_of_day.h"

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace velmoranth::simulator {

enum class IconMasking {
    masked,    // in the rounded shape that the home screen shows
    unmasked,  // square, as the app brings it
};

// The apps whose icons show the day and the time.
inline constexpr std::string_view kCalendarIdentifier = "com.apple.mobilecal";
inline constexpr std::string_view kClockIdentifier = "com.apple.mobiletimer";

// Nil without pixels.
[[nodiscard]] platform::BitmapImageRef bitmapOf(FurniturePicture picture);

class StockImages {
  public:
    // `images` must outlive this object. Clocks show `time`.
    StockImages(const desktop::DesktopImages& images, TimeOfDay time)
        : images_(images), time_(time) {}

    // The app's icon, `side` points at `scale` pixels per point. An app that is not there has the
    // generic icon. Nil for a size that is not positive or too large. Safe on any thread.
    [[nodiscard]] platform::ImageRef icon(const std::string& bundleIdentifier, double side,
                                          double scale, IconMasking masking);

    // The calendar's icon without weekday and day, in the icon's shape; otherwise as icon(), and
    // counted with it.
    [[nodiscard]] platform::ImageRef calendarBase(double side, double scale);

    // What is drawn of the furniture, at `scale` pixels per point. Nil when nothing is.
    [[nodiscard]] platform::ImageRef picture(FurniturePicture picture, double scale) const;

    // Counts a request for an app's icon that is made of other images than these.
    void noteRequest(const std::string& bundleIdentifier);

    // How often icon() was called for the app, and what was noted.
    [[nodiscard]] int requests(const std::string& bundleIdentifier) const;

  private:
    struct Key {
        std::string name;
        int pixels;
        double scale;
        IconMasking masking;

        friend auto operator<=>(const Key&, const Key&) = default;
    };

    // The image that is kept under `name`, or the square of the pixels that `draw` gives, which are
    // kept for all names of that look.
    [[nodiscard]] platform::ImageRef kept(
        const std::string& bundleIdentifier, const std::string& name, const std::string& look,
        double side, double scale, IconMasking masking,
        const std::function<std::vector<std::uint8_t>(int pixels)>& draw);

    const desktop::DesktopImages& images_;
    const TimeOfDay time_;
    mutable std::mutex mutex_;
    std::map<Key, platform::ImageRef> icons_;
    std::map<Key, std::shared_ptr<const platform::Data>> looks_;
    std::map<std::string, int> requests_;
};

}  // namespace velmoranth::simulator
