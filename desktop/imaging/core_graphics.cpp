#include "desktop/imaging/core_graphics.h"

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/compositing.h"
#include "desktop/imaging/gradient.h"
#include "desktop/imaging/graphics_context.h"
#include "desktop/imaging/mask_samples.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ColorSpace;

// The combinations of a bitmap context that are supported.
struct ContextKind {
    ColorSpace space;
    std::size_t bitsPerComponent;
    std::uint32_t bitmapInfo;
    DesktopGraphicsContext::Content content;
};

constexpr ContextKind kContextKinds[] = {
    {ColorSpace::deviceGray, 8, 0, DesktopGraphicsContext::Content::gray},
    {ColorSpace::deviceRGB, 8, 8194, DesktopGraphicsContext::Content::premultiplied},
};

// Where on a mask's axis the pixel `index` of the image lies: two neighbours and the share of the
// second, in 1/256.
struct Place {
    std::size_t first = 0;
    std::size_t second = 0;
    std::uint32_t share = 0;
};

std::vector<Place> places(std::size_t imageSize, std::size_t maskSize, Interpolation rule) {
    std::vector<Place> result(imageSize);
    for (std::size_t i = 0; i < imageSize; ++i) {
        // The pixel's centre, as it falls into the mask's pixels.
        if (rule == Interpolation::none) {
            const std::size_t nearest = (2 * i + 1) * maskSize / (2 * imageSize);
            result[i] = {nearest, nearest, 0};
            continue;
        }
        const double position = (static_cast<double>(i) + 0.5) * static_cast<double>(maskSize) /
                                    static_cast<double>(imageSize) -
                                0.5;
        const double inside = std::clamp(position, 0.0, static_cast<double>(maskSize - 1));
        const auto first = static_cast<std::size_t>(inside);
        result[i] = {first, std::min(first + 1, maskSize - 1),
                     static_cast<std::uint32_t>(std::lround((inside - std::floor(inside)) * 256))};
    }
    return result;
}

// Rows of a mask's samples stretched to the image's size.
class StretchedSamples {
  public:
    StretchedSamples(const DesktopBitmapImage& mask, const std::uint8_t* data, PixelSize size)
        : layout_(mask.layout()),
          data_(data),
          columns_(places(size.width, layout_.width, mask.interpolation())),
          rows_(places(size.height, layout_.height, mask.interpolation())),
          upper_(layout_.width),
          lower_(layout_.width),
          row_(size.width) {}

    const std::uint8_t* row(std::size_t y) {
        const Place& vertical = rows_[y];
        expandSamples(layout_, data_ + vertical.first * layout_.bytesPerRow, upper_.data());
        expandSamples(layout_, data_ + vertical.second * layout_.bytesPerRow, lower_.data());
        for (std::size_t x = 0; x < row_.size(); ++x) {
            const Place& horizontal = columns_[x];
            const std::uint32_t upper = mix(upper_, horizontal);
            const std::uint32_t lower = mix(lower_, horizontal);
            row_[x] = static_cast<std::uint8_t>(
                (upper * (256 - vertical.share) + lower * vertical.share + 32768) >> 16);
        }
        return row_.data();
    }

  private:
    static std::uint32_t mix(const std::vector<std::uint8_t>& samples, const Place& place) {
        return samples[place.first] * (256 - place.share) + samples[place.second] * place.share;
    }

    const BitmapLayout& layout_;
    const std::uint8_t* data_;
    std::vector<Place> columns_;
    std::vector<Place> rows_;
    std::vector<std::uint8_t> upper_;
    std::vector<std::uint8_t> lower_;
    std::vector<std::uint8_t> row_;
};

// An image mask, or a gray image without alpha.
bool canMask(const DesktopBitmapImage& mask) {
    const BitmapLayout& layout = mask.layout();
    return mask.isMask() ||
           (layout.colorSpace == ColorSpace::deviceGray && layout.alphaInfo == AlphaInfo::none);
}

std::shared_ptr<DesktopBitmapImage> maskImage(const DesktopBitmapImage& image,
                                              const DesktopBitmapImage& mask) {
    const PixelView source = image.pixels();
    if (source.empty()) {
        return nullptr;
    }
    const BitmapLayout& layout = mask.layout();
    const std::uint8_t* const stored = mask.samples()->data();
    const std::size_t bytesPerRow = source.width * 4;
    const std::size_t stride = byteSampleStride(layout);
    auto result = std::make_shared<platform::Data>(bytesPerRow * source.height);
    if (stride != 0 && mask.size() == image.size()) {
        // Rows without gaps are one row.
        const bool isOne =
            source.bytesPerRow == bytesPerRow && layout.bytesPerRow == source.width * stride;
        const std::size_t rows = isOne ? 1 : source.height;
        const std::size_t pixels = isOne ? source.width * source.height : source.width;
        for (std::size_t y = 0; y < rows; ++y) {
            hideRow(result->data() + y * bytesPerRow, source.row(y), pixels,
                    stored + y * layout.bytesPerRow, stride);
        }
    } else {
        StretchedSamples samples(mask, stored, image.size());
        for (std::size_t y = 0; y < source.height; ++y) {
            hideRow(result->data() + y * bytesPerRow, source.row(y), source.width, samples.row(y),
                    1);
        }
    }
    return DesktopBitmapImage::createPremultiplied(std::move(result), image.size(), bytesPerRow);
}

}  // namespace

platform::BitmapImageRef DesktopCoreGraphics::imageMaskCreate(
    std::size_t width, std::size_t height, std::size_t bitsPerComponent, std::size_t bitsPerPixel,
    std::size_t bytesPerRow, const platform::DataProviderRef& provider, bool shouldInterpolate) {
    const platform::BitmapLayout layout{.width = width,
                                        .height = height,
                                        .bitsPerComponent = bitsPerComponent,
                                        .bitsPerPixel = bitsPerPixel,
                                        .bytesPerRow = bytesPerRow};
    return DesktopBitmapImage::createMask(
        layout, samplesOf(provider),
        shouldInterpolate ? Interpolation::smooth : Interpolation::none);
}

platform::BitmapImageRef DesktopCoreGraphics::imageCreateWithMask(
    const platform::BitmapImageRef& image, const platform::BitmapImageRef& mask) {
    const auto picture = DesktopBitmapImage::of(image);
    const auto through = DesktopBitmapImage::of(mask);
    if (picture == nullptr || through == nullptr || picture->isMask() || !canMask(*through)) {
        return nullptr;
    }
    return maskImage(*picture, *through);
}

platform::GraphicsContextRef DesktopCoreGraphics::bitmapContextCreate(
    std::int64_t width, std::int64_t height, std::size_t bitsPerComponent, std::size_t bytesPerRow,
    ColorSpace space, std::uint32_t bitmapInfo) {
    if (width <= 0 || height <= 0) {
        return nullptr;
    }
    for (const ContextKind& kind : kContextKinds) {
        if (kind.space == space && kind.bitsPerComponent == bitsPerComponent &&
            kind.bitmapInfo == bitmapInfo) {
            return DesktopGraphicsContext::create(
                {.size = {static_cast<std::size_t>(width), static_cast<std::size_t>(height)},
                 .scale = 1,
                 .origin = DesktopGraphicsContext::Origin::bottomLeft,
                 .content = kind.content,
                 .bytesPerRow = bytesPerRow});
        }
    }
    return nullptr;
}

platform::GradientRef DesktopCoreGraphics::gradientCreateWithColorComponents(
    ColorSpace space, const std::vector<double>& components,
    const std::optional<std::vector<double>>& locations) {
    return DesktopGradient::create(space, components, locations);
}

}  // namespace velmoranth::desktop
