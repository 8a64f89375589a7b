#include "desktop/views/layer.h"

#include "desktop/views/view_node.h"

#include <memory>

namespace velmoranth::desktop {

void DesktopLayer::renderInContext(const platform::GraphicsContextRef& context) {
    const auto ours = std::dynamic_pointer_cast<DesktopGraphicsContext>(context);
    if (owner_ != nullptr && ours != nullptr) {
        owner_->render(*ours, ViewNode::OpacityRule::eachOperation);
    }
}

}  // namespace velmoranth::desktop
