// UIImage on Linux: a bitmap and a scale.
#pragma once

#include "platform/uikit.h"

#include <memory>
#include <string>

namespace velmoranth::desktop {

// What "%@" prints for an image; the two releases differ.
enum class ImageDescription {
    ios12,  // <UIImage: 0x…>, {60, 60}
    ios13,  // <UIImage:0x… anonymous {60, 60}>
};

class DesktopImage : public platform::Image {
  public:
    // `bitmap` may be nil: the size is 0 × 0 then. A scale that is not positive counts as 1.
    DesktopImage(platform::BitmapImageRef bitmap, double scale, ImageDescription description);

    [[nodiscard]] std::string className() const override { return "UIImage"; }

    [[nodiscard]] std::string description() const override;
    [[nodiscard]] platform::Size size() const override;

    [[nodiscard]] double scale() const override { return scale_; }

    [[nodiscard]] platform::BitmapImageRef bitmap() const override { return bitmap_; }

    [[nodiscard]] bool hasCIImage() const override { return false; }

  private:
    platform::BitmapImageRef bitmap_;
    double scale_;
    ImageDescription description_;
};

}  // namespace velmoranth::desktop
