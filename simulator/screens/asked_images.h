// The images of a screen that are asked for anew at every layout, so that a change of theme shows
// in the next picture.
#pragma once

#include "desktop/views/views.h"
#include "platform/uikit.h"
#include "simulator/toolkit/view_kit.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace velmoranth::simulator {

// fill: stretched over the slot. fit: at its own size in the middle of the slot, smaller when it is
// too large.
enum class ImagePlacement { fill, fit };

class AskedImages {
  public:
    // Adds an image view to `superview`; empty until the image has been asked for. `slot` is in the
    // superview's coordinates.
    void add(platform::View& superview, const platform::Rect& slot, ImagePlacement placement,
             std::function<platform::ImageRef()> ask) {
        auto view = std::make_shared<desktop::DesktopImageView>(slot);
        superview.addSubview(view);
        images_.push_back({std::move(view), slot, placement, std::move(ask)});
    }

    // Shows what each image is now; nil shows nothing. `scale` is the screen's.
    void ask(double scale) const {
        for (const Asked& asked : images_) {
            const platform::ImageRef image = asked.ask();
            asked.view->setImage(image);
            if (image != nullptr && asked.placement == ImagePlacement::fit) {
                asked.view->setFrame(placeInSlot(image->size(), asked.slot, scale));
            }
        }
    }

  private:
    struct Asked {
        std::shared_ptr<desktop::DesktopImageView> view;
        platform::Rect slot;
        ImagePlacement placement;
        std::function<platform::ImageRef()> ask;
    };

    std::vector<Asked> images_;
};

}  // namespace velmoranth::simulator
