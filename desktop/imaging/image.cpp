#include "desktop/imaging/image.h"

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace velmoranth::desktop {

DesktopImage::DesktopImage(platform::BitmapImageRef bitmap, double scale,
                           ImageDescription description)
    : bitmap_(std::move(bitmap)),
      scale_(std::isfinite(scale) && scale > 0 ? scale : 1),
      description_(description) {}

std::string DesktopImage::description() const {
    const char* const format = description_ == ImageDescription::ios12
                                   ? "<UIImage: %p>, {%.17g, %.17g}"
                                   : "<UIImage:%p anonymous {%.17g, %.17g}>";
    const platform::Size points = size();
    char text[128];
    const int length = std::snprintf(text, sizeof text, format, static_cast<const void*>(this),
                                     points.width, points.height);
    return {text, static_cast<std::size_t>(length)};
}

platform::Size DesktopImage::size() const {
    if (bitmap_ == nullptr) {
        return {};
    }
    return {static_cast<double>(bitmap_->layout().width) / scale_,
            static_cast<double>(bitmap_->layout().height) / scale_};
}

}  // namespace velmoranth::desktop
