// Between the platform's geometry and the engine's.
#pragma once

#include "platform/core_graphics.h"

#include <CoreGraphics/CGGeometry.h>

namespace velmoranth::device {

[[nodiscard]] inline platform::Point fromNative(CGPoint point) {
    return {point.x, point.y};
}

[[nodiscard]] inline platform::Size fromNative(CGSize size) {
    return {size.width, size.height};
}

[[nodiscard]] inline platform::Rect fromNative(CGRect rect) {
    return {fromNative(rect.origin), fromNative(rect.size)};
}

[[nodiscard]] inline CGPoint toNative(const platform::Point& point) {
    return {point.x, point.y};
}

[[nodiscard]] inline CGSize toNative(const platform::Size& size) {
    return {size.width, size.height};
}

[[nodiscard]] inline CGRect toNative(const platform::Rect& rect) {
    return {toNative(rect.origin), toNative(rect.size)};
}

}  // namespace velmoranth::device
