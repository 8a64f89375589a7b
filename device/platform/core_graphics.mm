#include "device/platform/core_graphics_handles.h"
#include "device/platform/geometry.h"
#include "device/platform/services.h"

#include <memory>

namespace velmoranth::device {
namespace {

using platform::BitmapImageRef;
using platform::BitmapLayout;
using platform::ColorSpace;
using platform::DataProviderRef;

template <class Native, class Interface>
Native nativePart(const std::shared_ptr<Interface>& object) {
    return object == nullptr ? nullptr : static_cast<Native>(object->native());
}

ColorSpace colorSpaceOf(CGImageRef image) {
    const CGColorSpaceRef space = CGImageGetColorSpace(image);
    const CGColorSpaceModel model =
        space == nullptr ? kCGColorSpaceModelUnknown : CGColorSpaceGetModel(space);
    if (model == kCGColorSpaceModelMonochrome) {
        return ColorSpace::deviceGray;
    }
    return model == kCGColorSpaceModelIndexed ? ColorSpace::indexed : ColorSpace::deviceRGB;
}

BitmapLayout layoutOf(CGImageRef image) {
    return {.width = CGImageGetWidth(image),
            .height = CGImageGetHeight(image),
            .bitsPerComponent = CGImageGetBitsPerComponent(image),
            .bitsPerPixel = CGImageGetBitsPerPixel(image),
            .bytesPerRow = CGImageGetBytesPerRow(image),
            .colorSpace = colorSpaceOf(image),
            .alphaInfo = static_cast<platform::AlphaInfo>(CGImageGetAlphaInfo(image)),
            .byteOrder = static_cast<platform::ByteOrder>(CGImageGetBitmapInfo(image) &
                                                          kCGBitmapByteOrderMask)};
}

// A colour space for the length of a call; null for one that is not made by its name alone.
class DeviceColorSpace {
  public:
    explicit DeviceColorSpace(ColorSpace space) : space_(make(space)) {}

    DeviceColorSpace(const DeviceColorSpace&) = delete;
    DeviceColorSpace& operator=(const DeviceColorSpace&) = delete;

    ~DeviceColorSpace() { CGColorSpaceRelease(space_); }

    [[nodiscard]] CGColorSpaceRef get() const { return space_; }

  private:
    static CGColorSpaceRef make(ColorSpace space) {
        switch (space) {
            case ColorSpace::deviceGray:
                return CGColorSpaceCreateDeviceGray();
            case ColorSpace::deviceRGB:
                return CGColorSpaceCreateDeviceRGB();
            case ColorSpace::indexed:
                break;
        }
        return nullptr;
    }

    CGColorSpaceRef space_;
};

// Numbers of a gradient's stop.
std::size_t componentsPerStop(ColorSpace space) {
    return space == ColorSpace::deviceGray ? 2 : 4;
}

class DeviceCoreGraphics final : public platform::CoreGraphics {
  public:
    BitmapImageRef imageMaskCreate(std::size_t width, std::size_t height,
                                   std::size_t bitsPerComponent, std::size_t bitsPerPixel,
                                   std::size_t bytesPerRow, const DataProviderRef& provider,
                                   bool shouldInterpolate) override {
        if (provider == nullptr) {
            return nullptr;
        }
        return wrap<platform::BitmapImage>(
            CGImageMaskCreate(width, height, bitsPerComponent, bitsPerPixel, bytesPerRow,
                              nativePart<CGDataProviderRef>(provider), nullptr, shouldInterpolate),
            Hold::adopt);
    }

    BitmapImageRef imageCreateWithMask(const BitmapImageRef& image,
                                       const BitmapImageRef& mask) override {
        if (image == nullptr || mask == nullptr) {
            return nullptr;
        }
        return wrap<platform::BitmapImage>(
            CGImageCreateWithMask(nativeImage(image), nativeImage(mask)), Hold::adopt);
    }

    platform::GraphicsContextRef bitmapContextCreate(std::int64_t width, std::int64_t height,
                                                     std::size_t bitsPerComponent,
                                                     std::size_t bytesPerRow, ColorSpace space,
                                                     std::uint32_t bitmapInfo) override {
        // There a negative size is a very large one.
        if (width <= 0 || height <= 0) {
            return nullptr;
        }
        const DeviceColorSpace native(space);
        return wrap<platform::GraphicsContext>(
            CGBitmapContextCreate(nullptr, static_cast<std::size_t>(width),
                                  static_cast<std::size_t>(height), bitsPerComponent, bytesPerRow,
                                  native.get(), bitmapInfo),
            Hold::adopt);
    }

    platform::GradientRef gradientCreateWithColorComponents(
        ColorSpace space, const std::vector<double>& components,
        const std::optional<std::vector<double>>& locations) override {
        const std::size_t each = componentsPerStop(space);
        const std::size_t count = components.size() / each;
        // CoreGraphics reads as many numbers as the space and the count say, whatever is there.
        if (space == ColorSpace::indexed || count == 0 || components.size() % each != 0 ||
            (locations && locations->size() != count)) {
            return nullptr;
        }
        const DeviceColorSpace native(space);
        return wrap<platform::Gradient>(
            CGGradientCreateWithColorComponents(native.get(), components.data(),
                                                locations ? locations->data() : nullptr, count),
            Hold::adopt);
    }
};

}  // namespace

const BitmapLayout& HandleFor<platform::BitmapImage>::layout() const {
    std::call_once(layoutIsRead_, [this] { layout_ = layoutOf(object()); });
    return layout_;
}

DataProviderRef HandleFor<platform::BitmapImage>::dataProvider() const {
    return wrap<platform::DataProvider>(CGImageGetDataProvider(object()));
}

bool HandleFor<platform::BitmapImage>::isMask() const {
    return CGImageIsMask(object());
}

void HandleFor<platform::GraphicsContext>::translateCTM(double x, double y) {
    CGContextTranslateCTM(object(), x, y);
}

void HandleFor<platform::GraphicsContext>::drawLinearGradient(const platform::GradientRef& gradient,
                                                              platform::Point start,
                                                              platform::Point end,
                                                              std::uint32_t options) {
    if (gradient == nullptr) {
        return;
    }
    CGContextDrawLinearGradient(object(), nativePart<CGGradientRef>(gradient), toNative(start),
                                toNative(end), options);
}

BitmapImageRef HandleFor<platform::GraphicsContext>::createImage() {
    return wrap<platform::BitmapImage>(CGBitmapContextCreateImage(object()), Hold::adopt);
}

CGImageRef nativeImage(const BitmapImageRef& image) {
    return nativePart<CGImageRef>(image);
}

CGContextRef nativeContext(const platform::GraphicsContextRef& context) {
    return nativePart<CGContextRef>(context);
}

void* autoreleased(const BitmapImageRef& image) {
    const CGImageRef native = CGImageRetain(nativeImage(image));
    // CoreGraphics' objects are Objective-C's as well, and a pool takes them.
    return [(id)native autorelease];
}

platform::CoreGraphics& coreGraphics() {
    return theOne<DeviceCoreGraphics>();
}

}  // namespace velmoranth::device
