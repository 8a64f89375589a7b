#include "desktop/views/layer.h"

#include "desktop/views/view_node.h"

#include "record/operations.h"
#include "record/recorder.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>

namespace velmoranth::desktop {

// A layer is known by its view.
template <class... Arguments>
void DesktopLayer::tell(std::string_view message, const Arguments&... arguments) const {
    const platform::View* const view = owner_ == nullptr ? nullptr : owner_->asView();
    record::tell(view == nullptr ? static_cast<const platform::Object&>(*this) : *view, message,
                 arguments...);
}

void DesktopLayer::renderInContext(const platform::GraphicsContextRef& context) {
    tell(record::messageOf("Layer", "renderInContext"), context);
    const record::InPlatform platform;
    const auto ours = std::dynamic_pointer_cast<DesktopGraphicsContext>(context);
    if (owner_ != nullptr && ours != nullptr) {
        owner_->render(*ours, ViewNode::OpacityRule::eachOperation);
    }
}

void DesktopLayer::changeOpacity(double opacity) {
    opacityTransition_.set(appearance.opacity,
                           std::isnan(opacity) ? 0 : std::clamp(opacity, 0.0, 1.0));
}

void DesktopLayer::setOpacity(float opacity) {
    tell(record::messageOf("Layer", "setOpacity"), opacity);
    changeOpacity(opacity);
}

void DesktopLayer::setMasksToBounds(bool masks) {
    tell(record::messageOf("Layer", "setMasksToBounds"), masks);
    appearance.masksToBounds = masks;
}

void DesktopLayer::setShadowColor(const platform::Color& color) {
    tell(record::messageOf("Layer", "setShadowColor"), color);
    appearance.shadow.color = color;
}

void DesktopLayer::setShadowOpacity(float opacity) {
    tell(record::messageOf("Layer", "setShadowOpacity"), opacity);
    appearance.shadow.opacity = static_cast<double>(opacity);
}

void DesktopLayer::setShadowOffset(platform::Size offset) {
    tell(record::messageOf("Layer", "setShadowOffset"), offset);
    appearance.shadow.offset = {offset.width, offset.height};
}

void DesktopLayer::setShadowRadius(double radius) {
    tell(record::messageOf("Layer", "setShadowRadius"), radius);
    appearance.shadow.radius = radius;
}

void DesktopLayer::setShadowPathRect(const platform::Rect& rect) {
    tell(record::messageOf("Layer", "setShadowPathRect"), rect);
    appearance.shadowPath = rect;
}

}  // namespace velmoranth::desktop
