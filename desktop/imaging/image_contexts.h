// UIKit's image contexts on Linux: a stack for each thread.
#pragma once

#include "desktop/imaging/graphics_context.h"
#include "desktop/imaging/image.h"
#include "platform/uikit.h"

#include <cstdint>
#include <memory>

namespace velmoranth::desktop {

class DesktopImageContexts final : public platform::ImageContexts {
  public:
    // `screenScale` is what scale 0 stands for, pixels per point; not positive counts as 1.
    DesktopImageContexts(double screenScale, ImageDescription description);

    // Pixels are points × scale, rounded up. Makes no context for a size that is not positive or
    // finite, or over kMaxBitmapSide or kMaxBitmapBytes. A scale that is not finite or negative
    // counts as the screen's.
    void beginImageContextWithOptions(platform::Size size, bool opaque, double scale) override;
    [[nodiscard]] platform::GraphicsContextRef getCurrentContext() override;
    [[nodiscard]] platform::ImageRef getImageFromCurrentImageContext() override;
    void endImageContext() override;

    // The same as getCurrentContext(), with all that it can draw.
    [[nodiscard]] std::shared_ptr<DesktopGraphicsContext> current() const;

  private:
    std::uint64_t id_;  // tells this object's entries in a thread's stack from another's
    double screenScale_;
    ImageDescription description_;
};

}  // namespace velmoranth::desktop
