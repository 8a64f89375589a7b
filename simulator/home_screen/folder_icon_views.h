// A folder's icon: the plate, and on it the miniatures of the first nine of its icons.
#pragma once

#include "desktop/views/views.h"
#include "platform/springboard.h"
#include "simulator/home_screen/icon_views.h"
#include "simulator/screen_context.h"
#include "simulator/toolkit/named_views.h"

#include <utility>
#include <vector>

namespace velmoranth::simulator {

// SBFolderIconImageView. "_backgroundView" is the plate.
class FolderIconImageView final
    : public NamedAs<"SBFolderIconImageView", platform::SBFolderIconImageView> {
  public:
    // Made and sent initWithFrame:. `icon` is a FolderIcon.
    [[nodiscard]] static platform::ViewRef create(const ScreenContext& context,
                                                  const platform::SBIconRef& icon,
                                                  const platform::Rect& frame);

    [[nodiscard]] platform::SBIconRef icon() const override { return icon_; }

    [[nodiscard]] bool isAnimating() const override { return isAnimating_; }

    void setAnimating(bool isAnimating) { isAnimating_ = isAnimating; }

    [[nodiscard]] const platform::ViewRef& backgroundView() const { return plate_; }

    // What the plate shows: the blurred wallpaper where the folder lies.
    void setPlateImage(const platform::ImageRef& image);

    // The platform's initialiser. Running it again starts anew.
    platform::ViewRef init(const platform::Rect& frame);

    // What the platform's layoutSubviews does; asks the image cache for each miniature.
    void placeSubviews();

    DarkeningOverlay overlay;

  private:
    FolderIconImageView(const ScreenContext& context, platform::SBIconRef icon)
        : context_(context), icon_(std::move(icon)) {}

    const ScreenContext& context_;
    platform::SBIconRef icon_;
    bool isAnimating_ = false;
    platform::ImageRef plateImage_;
    platform::ViewRef plate_;
    platform::ViewRef grid_;  // "_leftWrapperView"
    std::vector<platform::ImageViewRef> cells_;
};

}  // namespace velmoranth::simulator
