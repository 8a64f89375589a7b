// A notification's banner over the home screen.
#pragma once

#include "platform/springboard.h"
#include "simulator/screen_context.h"
#include "simulator/screens/home_overlay.h"
#include "simulator/toolkit/class_names.h"

#include <memory>
#include <utility>

namespace velmoranth::simulator {

// UNNotificationIcon (iOS 13). Empty until its initialiser has run.
class NotificationIcon final : public Named<"UNNotificationIcon", platform::UNNotificationIcon>,
                               public std::enable_shared_from_this<NotificationIcon> {
  public:
    // The platform's initialiser, with the image that the icon shows.
    platform::ImageRef init(platform::ImageRef image) {
        image_ = std::move(image);
        return shared_from_this();
    }

    [[nodiscard]] platform::Size size() const override { return platform::sizeOf(image_); }

    [[nodiscard]] double scale() const override { return image_ == nullptr ? 1 : image_->scale(); }

    [[nodiscard]] platform::BitmapImageRef bitmap() const override {
        return platform::bitmapOf(image_);
    }

    [[nodiscard]] bool hasCIImage() const override { return false; }

  private:
    platform::ImageRef image_;
};

// The classes of notifications, after the base classes.
void registerNotificationClasses(const ScreenContext& context);

class NotificationScreen final : public HomeOverlay {
  public:
    explicit NotificationScreen(const ScreenContext& context);

    [[nodiscard]] std::vector<ShownIcon> shownIcons() const override { return home().shownIcons(); }
};

}  // namespace velmoranth::simulator
