#include "imaging/bitmap_functions.h"
#include "imaging/exported_functions.h"

namespace imaging = velmoranth::imaging;
namespace platform = velmoranth::platform;

platform::BitmapImageRef CreateGradientImage(std::int32_t pixelsWide, std::int32_t pixelsHigh) {
    return imaging::CreateGradientImage(pixelsWide, pixelsHigh);
}

platform::GraphicsContextRef MyCreateBitmapContext(std::int32_t pixelsWide,
                                                   std::int32_t pixelsHigh) {
    return imaging::MyCreateBitmapContext(pixelsWide, pixelsHigh);
}
