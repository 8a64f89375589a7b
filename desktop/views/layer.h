// A view's layer on Linux: what it looks like. The view's own properties (alpha, background colour,
// clipping, hidden) are those of its layer, as on the platform.
#pragma once

#include "desktop/imaging/graphics_context.h"
#include "platform/uikit.h"

#include <string>

namespace velmoranth::desktop {

class ViewNode;

class DesktopLayer final : public platform::Layer {
  public:
    struct Appearance {
        platform::Color backgroundColor = platform::kClearColor;
        double cornerRadius = 0;  // points
        double opacity = 1;
        bool masksToBounds = false;
        bool hidden = false;
        Shadow shadow;
    };

    explicit DesktopLayer(ViewNode* owner) : owner_(owner) {}

    [[nodiscard]] std::string className() const override { return "CALayer"; }

    [[nodiscard]] platform::Rect bounds() const override { return bounds_; }

    // Opacity applies to each drawing operation, as the platform's does here. A layer whose view is
    // gone, and a context of another make, draw nothing.
    void renderInContext(const platform::GraphicsContextRef& context) override;

    Appearance appearance;

  private:
    friend class ViewNode;

    ViewNode* owner_;  // null when the view is gone
    platform::Rect bounds_;
};

}  // namespace velmoranth::desktop
