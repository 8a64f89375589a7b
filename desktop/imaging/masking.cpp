#include "desktop/imaging/masking.h"

#include "desktop/imaging/compositing.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace velmoranth::desktop {

namespace {

using platform::AlphaInfo;
using platform::BitmapLayout;
using platform::ByteOrder;
using platform::ColorSpace;

// Whether a pixel's sample is a byte of its own, so that rows need no unpacking.
bool hasByteSamples(const BitmapLayout& layout) {
    return layout.bitsPerComponent == 8 && layout.bitsPerPixel % 8 == 0;
}

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
        readSamples(upper_.data(), data_ + vertical.first * layout_.bytesPerRow, layout_);
        readSamples(lower_.data(), data_ + vertical.second * layout_.bytesPerRow, layout_);
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

}  // namespace

bool canMask(const DesktopBitmapImage& mask) {
    const BitmapLayout& layout = mask.layout();
    return mask.isMask() ||
           (layout.colorSpace == ColorSpace::deviceGray && layout.alphaInfo == AlphaInfo::none);
}

void readSamples(std::uint8_t* samples, const std::uint8_t* row, const BitmapLayout& layout) {
    const std::size_t bits = layout.bitsPerComponent;
    if (bits == 16) {
        const std::size_t high = layout.byteOrder == ByteOrder::little32 ? 1 : 0;
        for (std::size_t x = 0; x < layout.width; ++x) {
            const std::uint8_t* const pixel = row + x * (layout.bitsPerPixel / 8);
            const std::uint32_t sample = pixel[high] * 256U + pixel[1 - high];
            samples[x] = static_cast<std::uint8_t>((sample * 255 + 32767) / 65535);
        }
        return;
    }
    if (hasByteSamples(layout)) {
        const std::size_t step = layout.bitsPerPixel / 8;
        for (std::size_t x = 0; x < layout.width; ++x) {
            samples[x] = row[x * step];
        }
        return;
    }
    // 255 divides evenly by 1, 3 and 15.
    const std::uint32_t largest = (1U << bits) - 1;
    for (std::size_t x = 0; x < layout.width; ++x) {
        const std::size_t bit = x * layout.bitsPerPixel;
        const std::size_t offset = bit % 8;
        std::uint32_t pair = row[bit / 8] * 256U;
        if (offset + bits > 8) {
            pair += row[bit / 8 + 1];
        }
        const std::uint32_t sample = (pair >> (16 - offset - bits)) & largest;
        samples[x] = static_cast<std::uint8_t>(sample * 255 / largest);
    }
}

std::shared_ptr<DesktopBitmapImage> maskImage(const DesktopBitmapImage& image,
                                              const DesktopBitmapImage& mask) {
    const PixelView source = image.pixels();
    if (source.empty()) {
        return nullptr;
    }
    const BitmapLayout& layout = mask.layout();
    const platform::DataProviderRef provider = mask.dataProvider();
    const std::size_t bytesPerRow = source.width * 4;
    auto result = std::make_shared<platform::Data>(bytesPerRow * source.height);
    if (mask.size() == image.size() && hasByteSamples(layout)) {
        for (std::size_t y = 0; y < source.height; ++y) {
            hideRow(result->data() + y * bytesPerRow, source.row(y), source.width,
                    provider->data() + y * layout.bytesPerRow, layout.bitsPerPixel / 8);
        }
    } else {
        StretchedSamples samples(mask, provider->data(), image.size());
        for (std::size_t y = 0; y < source.height; ++y) {
            hideRow(result->data() + y * bytesPerRow, source.row(y), source.width, samples.row(y),
                    1);
        }
    }
    return DesktopBitmapImage::createPremultiplied(std::move(result), image.size(), bytesPerRow);
}

}  // namespace velmoranth::desktop
