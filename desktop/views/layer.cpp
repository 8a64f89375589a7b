#include "desktop/views/layer.h"

#include "desktop/views/view_node.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace velmoranth::desktop {

void DesktopLayer::renderInContext(const platform::GraphicsContextRef& context) {
    const auto ours = std::dynamic_pointer_cast<DesktopGraphicsContext>(context);
    if (owner_ != nullptr && ours != nullptr) {
        owner_->render(*ours, ViewNode::OpacityRule::eachOperation);
    }
}

void DesktopLayer::changeOpacity(double opacity) {
    opacityTransition_.set(appearance.opacity,
                           std::isnan(opacity) ? 0 : std::clamp(opacity, 0.0, 1.0));
}

}  // namespace velmoranth::desktop
