#include "imaging/rendered_layer.h"

#include "platform/platform.h"

namespace velmoranth::imaging {

platform::ImageRef renderedLayer(const platform::LayerRef& layer) {
    platform::ImageContexts& contexts = platform::platform().imageContexts;
    contexts.beginImageContextWithOptions(layer->bounds().size, false, 0);
    layer->renderInContext(contexts.getCurrentContext());
    platform::ImageRef image = contexts.getImageFromCurrentImageContext();
    contexts.endImageContext();
    return image;
}

}  // namespace velmoranth::imaging
