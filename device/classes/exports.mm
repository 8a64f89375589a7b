// The two bitmap functions as C knows them: the caller owns what they give.
#include "imaging/bitmap_functions.h"

#include "device/platform/core_graphics_handles.h"
#import <Foundation/Foundation.h>

namespace velmoranth::device {

extern "C" {

__attribute__((visibility("default"))) CGImageRef CreateGradientImage(int pixelsWide,
                                                                      int pixelsHigh) {
    @autoreleasepool {
        return CGImageRetain(nativeImage(imaging::CreateGradientImage(pixelsWide, pixelsHigh)));
    }
}

__attribute__((visibility("default"))) CGContextRef MyCreateBitmapContext(int pixelsWide,
                                                                          int pixelsHigh) {
    @autoreleasepool {
        return CGContextRetain(
            nativeContext(imaging::MyCreateBitmapContext(pixelsWide, pixelsHigh)));
    }
}
}

}  // namespace velmoranth::device
