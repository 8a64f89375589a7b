// The objects of the small CoreGraphics, for its own sources.
#pragma once

#include "device/standins/core_graphics.h"

#include <vector>

@interface CGColorSpaceStandIn : StandIn {
  @public
    CGColorSpaceModel model_;
}
@end

@interface CGDataProviderStandIn : StandIn {
  @public
    velmoranth::standins::Bytes* bytes_;
}
@end

@interface CGImageStandIn : StandIn {
  @public
    velmoranth::standins::ImageLayout* layout_;
    CGDataProviderStandIn* provider_;
    CGColorSpaceStandIn* space_;
    CGImageStandIn* mask_;
    BOOL isMask_;
}
@end

@interface CGGradientStandIn : StandIn {
  @public
    // Red, green, blue, alpha, location.
    std::vector<std::vector<CGFloat>>* stops_;
}
@end

@interface CGContextStandIn : StandIn {
  @public
    velmoranth::standins::ImageLayout* layout_;
    velmoranth::standins::Bytes* memory_;
    CGPoint translation_;
    CGFloat scale_;
    BOOL isFlipped_;
}
@end

namespace velmoranth::standins {

// Each with a reference for the caller.
[[nodiscard]] CGColorSpaceStandIn* newColorSpace(CGColorSpaceModel model);
[[nodiscard]] CGDataProviderStandIn* newProvider(const Bytes& bytes);
[[nodiscard]] CGImageStandIn* newImage(const ImageLayout& layout, CGDataProviderStandIn* provider);

template <class Object>
[[nodiscard]] Object* objectOf(const void* reference) {
    return static_cast<Object*>((id) const_cast<void*>(reference));
}

}  // namespace velmoranth::standins
