#include "desktop/imaging/bitmap_image.h"

#include "desktop/imaging/mask_samples.h"
#include "desktop/imaging/resampling.h"

#include <cstdio>
#include <limits>
#include <utility>

namespace velmoranth::desktop {

namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ByteOrder;
using platform::ColorSpace;

// Whether the samples hold all that the layout says, and the drawn form fits in a bitmap.
bool isSound(const BitmapLayout& layout, const Samples& samples) {
    if (samples == nullptr || layout.bitsPerComponent == 0 ||
        layout.bitsPerPixel < layout.bitsPerComponent || layout.bitsPerPixel > 1024 ||
        !bitmapBytes({layout.width, layout.height}, 4, 0)) {
        return false;
    }
    const std::size_t rowBytes = (layout.width * layout.bitsPerPixel + 7) / 8;
    return layout.bytesPerRow >= rowBytes &&
           layout.bytesPerRow <= std::numeric_limits<std::size_t>::max() / layout.height &&
           samples->size() >= layout.bytesPerRow * layout.height;
}

bool isMaskDepth(std::size_t bitsPerComponent) {
    return bitsPerComponent == 1 || bitsPerComponent == 2 || bitsPerComponent == 4 ||
           bitsPerComponent == 8;
}

bool isPremultipliedBgra(const BitmapLayout& layout) {
    return layout.bitsPerComponent == 8 && layout.bitsPerPixel == 32 &&
           layout.colorSpace == ColorSpace::deviceRGB &&
           layout.alphaInfo == AlphaInfo::premultipliedFirst &&
           layout.byteOrder == ByteOrder::little32;
}

std::vector<std::uint8_t> maskPixels(const BitmapLayout& layout, const std::uint8_t* data) {
    std::vector<std::uint8_t> pixels(layout.width * layout.height * 4);
    std::vector<std::uint8_t> samples(layout.width);
    for (std::size_t y = 0; y < layout.height; ++y) {
        expandSamples(layout, data + y * layout.bytesPerRow, samples.data());
        for (std::size_t x = 0; x < layout.width; ++x) {
            pixels[(y * layout.width + x) * 4 + 3] = static_cast<std::uint8_t>(255 - samples[x]);
        }
    }
    return pixels;
}

}  // namespace

DesktopBitmapImage::DesktopBitmapImage(Key /*key*/, DecodedImage image, bool mask,
                                       bool premultiplied, Interpolation interpolation)
    : image_(std::move(image)),
      mask_(mask),
      premultiplied_(premultiplied),
      interpolation_(interpolation) {}

std::shared_ptr<DesktopBitmapImage> DesktopBitmapImage::create(DecodedImage image) {
    if (!isSound(image.layout, image.samples)) {
        return nullptr;
    }
    const bool premultiplied = isPremultipliedBgra(image.layout);
    return std::make_shared<DesktopBitmapImage>(Key(), std::move(image), false, premultiplied,
                                                Interpolation::smooth);
}

std::shared_ptr<DesktopBitmapImage> DesktopBitmapImage::createPremultiplied(Samples samples,
                                                                            PixelSize size,
                                                                            std::size_t bytesPerRow,
                                                                            bool opaque) {
    DecodedImage image;
    image.layout = {.width = size.width,
                    .height = size.height,
                    .bitsPerComponent = 8,
                    .bitsPerPixel = 32,
                    .bytesPerRow = bytesPerRow,
                    .colorSpace = ColorSpace::deviceRGB,
                    .alphaInfo = opaque ? AlphaInfo::noneSkipFirst : AlphaInfo::premultipliedFirst,
                    .byteOrder = ByteOrder::little32};
    image.samples = std::move(samples);
    if (!isSound(image.layout, image.samples)) {
        return nullptr;
    }
    return std::make_shared<DesktopBitmapImage>(Key(), std::move(image), false, true,
                                                Interpolation::smooth);
}

std::shared_ptr<DesktopBitmapImage> DesktopBitmapImage::createMask(const BitmapLayout& layout,
                                                                   Samples samples,
                                                                   Interpolation interpolation) {
    if (!isMaskDepth(layout.bitsPerComponent) || !isSound(layout, samples)) {
        return nullptr;
    }
    DecodedImage image;
    image.layout = layout;
    image.layout.colorSpace = ColorSpace::deviceGray;
    image.layout.alphaInfo = AlphaInfo::none;
    image.layout.byteOrder = ByteOrder::standard;
    image.samples = std::move(samples);
    return std::make_shared<DesktopBitmapImage>(Key(), std::move(image), true, false,
                                                interpolation);
}

std::shared_ptr<const DesktopBitmapImage> DesktopBitmapImage::of(
    const platform::BitmapImageRef& image) {
    if (image == nullptr) {
        return nullptr;
    }
    if (auto own = std::dynamic_pointer_cast<DesktopBitmapImage>(image)) {
        return own;
    }
    if (image->isMask()) {
        return createMask(image->layout(), samplesOf(image->dataProvider()), Interpolation::none);
    }
    return create(
        {.layout = image->layout(), .samples = samplesOf(image->dataProvider()), .palette = {}});
}

std::string DesktopBitmapImage::description() const {
    char text[64];
    const int length =
        std::snprintf(text, sizeof text, "<CGImage %p>", static_cast<const void*>(this));
    return {text, static_cast<std::size_t>(length)};
}

PixelView DesktopBitmapImage::pixels() const {
    const BitmapLayout& layout = image_.layout;
    if (premultiplied_) {
        return {image_.samples->data(), layout.width, layout.height, layout.bytesPerRow};
    }
    std::call_once(converted_, [&] {
        pixels_ = mask_ ? maskPixels(layout, image_.samples->data()) : toPremultipliedBgra(image_);
    });
    const std::size_t bytesPerRow = layout.width * 4;
    if (pixels_.size() < bytesPerRow * layout.height) {
        return {};
    }
    return {pixels_.data(), layout.width, layout.height, bytesPerRow};
}

Samples DesktopBitmapImage::stretched(PixelSize size) const {
    const auto bytes = bitmapBytes(size, 4, 0);
    if (size == this->size() || !bytes || *bytes > kMostStretchedBytes) {
        return nullptr;
    }
    const std::scoped_lock lock(stretching_);
    const bool isAgain = std::exchange(askedSize_, size) == size;
    if (stretchedSize_ == size) {
        return stretched_;
    }
    const PixelView source = isAgain ? pixels() : PixelView{};
    if (source.empty()) {
        return nullptr;
    }
    stretchedSize_ = size;
    stretched_ = std::make_shared<const platform::Data>(stretch(source, size));
    return stretched_;
}

}  // namespace velmoranth::desktop
