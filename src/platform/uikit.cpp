#include "platform/uikit.h"

namespace velmoranth::platform {

Size sizeOf(const ImageRef& image) {
    return image ? image->size() : Size{};
}

BitmapImageRef bitmapOf(const ImageRef& image) {
    return image ? image->bitmap() : nullptr;
}

}  // namespace velmoranth::platform
