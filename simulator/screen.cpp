#include "simulator/screen.h"

#include "desktop/views/views.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace velmoranth::simulator {

using platform::ViewRef;

void layoutTree(desktop::Runtime& runtime, const ViewRef& view, const ViewRef& settled) {
    if (view != settled) {
        runtime.send<void>(*view, "layoutSubviews");
    }
    for (const ViewRef& subview : view->subviews()) {
        layoutTree(runtime, subview, settled);
    }
}

desktop::PixelSize pixelSizeOf(const ScreenDescription& screen) {
    const auto toPixels = [&screen](double points) {
        return static_cast<std::size_t>(std::max(1.0, std::round(points * screen.scale)));
    };
    return {toPixels(screen.width), toPixels(screen.height)};
}

std::shared_ptr<desktop::DesktopBitmapImage> drawTree(const ViewRef& window,
                                                      const ScreenDescription& screen) {
    return desktop::renderTree(window, pixelSizeOf(screen), screen.scale);
}

}  // namespace velmoranth::simulator
