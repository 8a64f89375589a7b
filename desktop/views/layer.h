// A view's layer on Linux: what it looks like. The view's own properties (alpha, background colour,
// clipping, hidden) are those of its layer, as on the platform.
#pragma once

#include "desktop/imaging/graphics_context.h"
#include "desktop/views/animation.h"
#include "platform/uikit.h"

#include <optional>
#include <string>
#include <string_view>

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
        // Casts the shadow on the screen in place of what the layer draws; its own coordinates.
        std::optional<platform::Rect> shadowPath;
    };

    explicit DesktopLayer(ViewNode* owner) : owner_(owner) {}

    [[nodiscard]] std::string className() const override { return "CALayer"; }

    [[nodiscard]] platform::Rect bounds() const override { return bounds_; }

    // Opacity applies to each drawing operation, as the platform's does here. A layer whose view is
    // gone, and a context of another make, draw nothing.
    void renderInContext(const platform::GraphicsContextRef& context) override;

    void setOpacity(float opacity) override;

    // Clamped to 0..1, NaN is 0; animated in a block.
    void changeOpacity(double opacity);

    // What the screen shows while an animation moves it.
    [[nodiscard]] double shownOpacity() const {
        return opacityTransition_.shown(appearance.opacity);
    }

    void setMasksToBounds(bool masks) override;
    void setShadowColor(const platform::Color& color) override;
    void setShadowOpacity(float opacity) override;
    void setShadowOffset(platform::Size offset) override;
    void setShadowRadius(double radius) override;
    void setShadowPathRect(const platform::Rect& rect) override;

    Appearance appearance;

  private:
    friend class ViewNode;

    template <class... Arguments>
    void tell(std::string_view message, const Arguments&... arguments) const;

    ViewNode* owner_;  // null when the view is gone
    platform::Rect bounds_;
    Transition<double> opacityTransition_;
};

}  // namespace velmoranth::desktop
