// A layer as an image.
#pragma once

#include "platform/uikit.h"

namespace velmoranth::imaging {

// The layer and what lies in it, drawn into a new image of its bounds' size at the main screen's
// scale. `layer` is not nil. Nil when the size is not positive.
[[nodiscard]] platform::ImageRef renderedLayer(const platform::LayerRef& layer);

}  // namespace velmoranth::imaging
