// Writes PNG files: rows are unpremultiplied and filtered, then deflated in one go.
#include "desktop/image_io/deflate.h"
#include "desktop/image_io/image_io.h"
#include "desktop/image_io/png_rows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

namespace {

using image_io::PngFilter;
using platform::Data;

constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";
constexpr std::uint8_t kColorGray = 0;
constexpr std::uint8_t kColorRgb = 2;
constexpr std::uint8_t kColorRgba = 6;
constexpr std::size_t kLargest = 0x7FFFFFFF;  // a PNG's width, height and chunk length

// How the rows of a picture are filtered: all with the first filter, or each with the one of these
// that brings it nearest to zero.
struct Strategy {
    std::array<PngFilter, image_io::kPngFilterCount> filters;
    std::size_t filterCount;
};

constexpr Strategy kUnfiltered = {{PngFilter::none}, 1};
constexpr Strategy kUp = {{PngFilter::up}, 1};
constexpr Strategy kBestOfAll = {
    {PngFilter::none, PngFilter::sub, PngFilter::up, PngFilter::average, PngFilter::paeth}, 5};

// Flat artwork deflates best unfiltered, gradients and photographs filtered. Which it is, a sample
// of the rows tells: bands of kBandRows rows, all rows of a small picture. Over 214 icons of themes
// that makes files a fifth smaller than filtering always, and takes less time.
struct Effort {
    int deflateLevel;
    std::array<Strategy, 2> strategies;
};

constexpr Effort kFast = {1, {kUnfiltered, kUp}};
constexpr Effort kBalanced = {6, {kUnfiltered, kBestOfAll}};
constexpr std::size_t kBandRows = 8;
constexpr std::size_t kBands = 4;
constexpr int kSampleDeflateLevel = 1;

// 2^32 / alpha, rounded up: multiplying by it divides by alpha exactly below 2^24.
constexpr auto kReciprocals = [] {
    std::array<std::uint64_t, 256> table = {};
    for (std::uint64_t alpha = 1; alpha < table.size(); ++alpha) {
        table[alpha] = ((std::uint64_t{1} << 32) + alpha - 1) / alpha;
    }
    return table;
}();

// color * 255 / alpha, rounded to nearest, at most 255.
std::uint8_t straight(std::uint8_t color, std::uint8_t alpha) {
    const std::uint64_t value = (color * 255U + alpha / 2U) * kReciprocals[alpha] >> 32;
    return static_cast<std::uint8_t>(std::min<std::uint64_t>(value, 255));
}

void toRgbRow(const std::uint8_t* source, std::uint8_t* target, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        target[3 * x] = source[4 * x + 2];
        target[3 * x + 1] = source[4 * x + 1];
        target[3 * x + 2] = source[4 * x];
    }
}

void toRgbaRow(const std::uint8_t* source, std::uint8_t* target, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        const std::uint8_t* from = source + 4 * x;
        std::uint8_t* to = target + 4 * x;
        const std::uint8_t alpha = from[3];
        if (alpha == 255) {
            const std::array<std::uint8_t, 4> rgba = {from[2], from[1], from[0], 255};
            std::memcpy(to, rgba.data(), rgba.size());
        } else if (alpha == 0) {
            std::memset(to, 0, 4);
        } else {
            const std::array<std::uint8_t, 4> rgba = {straight(from[2], alpha),
                                                      straight(from[1], alpha),
                                                      straight(from[0], alpha), alpha};
            std::memcpy(to, rgba.data(), rgba.size());
        }
    }
}

bool isOpaque(std::span<const std::uint8_t> pixels, std::size_t width, std::size_t height,
              std::size_t bytesPerRow) {
    for (std::size_t y = 0; y < height; ++y) {
        const std::uint8_t* row = pixels.data() + y * bytesPerRow;
        std::uint8_t alpha = 255;
        for (std::size_t x = 0; x < width; ++x) {
            alpha &= row[4 * x + 3];
        }
        if (alpha != 255) {
            return false;
        }
    }
    return true;
}

// How far a filtered row is from zero: small differences of either sign deflate best.
std::uint32_t weight(std::span<const std::uint8_t> row) {
    std::uint32_t sum = 0;
    for (const std::uint8_t byte : row) {
        sum += byte < 128U ? byte : 256U - byte;
    }
    return sum;
}

// A picture as a PNG file has it: straight R, G, B and A where it is not opaque, in filtered rows,
// each after the number of its filter.
class Rows {
  public:
    Rows(std::span<const std::uint8_t> pixels, std::size_t width, std::size_t bytesPerRow,
         std::size_t pixelBytes)
        : pixels_(pixels),
          width_(width),
          bytesPerRow_(bytesPerRow),
          pixelBytes_(pixelBytes),
          convert_(pixelBytes == 4 ? toRgbaRow : toRgbRow),
          row_(width * pixelBytes),
          above_(width * pixelBytes),
          candidate_(width * pixelBytes) {}

    // What `count` rows take.
    [[nodiscard]] std::size_t bytes(std::size_t count) const { return (row_.size() + 1) * count; }

    // `rows` is as long as that.
    void filter(std::size_t first, std::size_t count, const Strategy& strategy,
                std::uint8_t* rows) {
        const std::size_t size = row_.size();
        if (first == 0) {
            std::ranges::fill(above_, std::uint8_t{0});
        } else {
            convert_(pixels_.data() + (first - 1) * bytesPerRow_, above_.data(), width_);
        }
        for (std::size_t y = 0; y < count; ++y) {
            convert_(pixels_.data() + (first + y) * bytesPerRow_, row_.data(), width_);
            const std::span<std::uint8_t> target(rows + y * (size + 1) + 1, size);
            rows[y * (size + 1)] = static_cast<std::uint8_t>(filterRow(strategy, target));
            std::swap(row_, above_);
        }
    }

  private:
    PngFilter filterRow(const Strategy& strategy, std::span<std::uint8_t> target) {
        PngFilter best = strategy.filters[0];
        applyFilter(best, row_, above_, pixelBytes_, target);
        if (strategy.filterCount == 1) {
            return best;
        }
        std::uint32_t bestWeight = weight(target);
        for (std::size_t i = 1; i < strategy.filterCount; ++i) {
            applyFilter(strategy.filters[i], row_, above_, pixelBytes_, candidate_);
            const std::uint32_t candidateWeight = weight(candidate_);
            if (candidateWeight < bestWeight) {
                best = strategy.filters[i];
                bestWeight = candidateWeight;
                std::ranges::copy(candidate_, target.begin());
            }
        }
        return best;
    }

    std::span<const std::uint8_t> pixels_;
    std::size_t width_;
    std::size_t bytesPerRow_;
    std::size_t pixelBytes_;
    void (*convert_)(const std::uint8_t*, std::uint8_t*, std::size_t);
    Data row_;
    Data above_;
    Data candidate_;
};

// Size of a sample of the rows, deflated.
std::size_t sampleSize(Rows& rows, std::size_t height, const Strategy& strategy) {
    Data sample;
    const std::size_t step = std::max(kBandRows, height / kBands);
    for (std::size_t first = 0; first < height; first += step) {
        const std::size_t before = sample.size();
        const std::size_t count = std::min(kBandRows, height - first);
        sample.resize(before + rows.bytes(count));
        rows.filter(first, count, strategy, sample.data() + before);
    }
    return image_io::deflateZlib(sample, kSampleDeflateLevel).size();
}

Data deflatedRows(Rows& rows, std::size_t height, const Effort& effort) {
    const auto& [plain, filtering] = effort.strategies;
    const Strategy& chosen =
        sampleSize(rows, height, plain) <= sampleSize(rows, height, filtering) ? plain : filtering;
    const std::size_t bytes = rows.bytes(height);
    const auto filtered = std::make_unique_for_overwrite<std::uint8_t[]>(bytes);
    rows.filter(0, height, chosen, filtered.get());
    return image_io::deflateZlib({filtered.get(), bytes}, effort.deflateLevel);
}

void appendBigEndian32(Data& data, std::size_t value) {
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        data.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

void appendChunk(Data& file, std::string_view type, std::span<const std::uint8_t> data) {
    appendBigEndian32(file, data.size());
    const std::size_t start = file.size();
    file.insert(file.end(), type.begin(), type.end());
    file.insert(file.end(), data.begin(), data.end());
    appendBigEndian32(file, image_io::crc32(std::span(file).subspan(start)));
}

// The whole file around the deflated rows.
Data pngFile(std::size_t width, std::size_t height, std::uint8_t color, const Data& stream) {
    Data header;
    appendBigEndian32(header, width);
    appendBigEndian32(header, height);
    // Bit depth, colour type, compression, filter and interlace method.
    const std::array<std::uint8_t, 5> kind = {8, color, 0, 0, 0};
    header.insert(header.end(), kind.begin(), kind.end());
    constexpr std::array<std::uint8_t, 1> kPerceptual = {0};

    Data file(kSignature.begin(), kSignature.end());
    file.reserve(stream.size() + 128);
    appendChunk(file, "IHDR", header);
    appendChunk(file, "sRGB", kPerceptual);
    appendChunk(file, "IDAT", stream);
    appendChunk(file, "IEND", {});
    return file;
}

}  // namespace

Data encodePng(std::span<const std::uint8_t> premultipliedBgra, std::size_t width,
               std::size_t height, std::size_t bytesPerRow, PngEffort effort) {
    if (width == 0 || height == 0 || width > kLargest || height > kLargest ||
        bytesPerRow < width * 4 || premultipliedBgra.size() < width * 4 ||
        (premultipliedBgra.size() - width * 4) / bytesPerRow < height - 1) {
        return {};
    }
    const std::size_t pixelBytes = isOpaque(premultipliedBgra, width, height, bytesPerRow) ? 3 : 4;
    Rows rows(premultipliedBgra, width, bytesPerRow, pixelBytes);
    const Data stream = deflatedRows(rows, height, effort == PngEffort::fast ? kFast : kBalanced);
    if (stream.size() > kLargest) {
        return {};
    }

    return pngFile(width, height, pixelBytes == 3 ? kColorRgb : kColorRgba, stream);
}

Data encodeGrayPng(std::span<const std::uint8_t> samples, std::size_t width, std::size_t height) {
    if (width == 0 || height == 0 || width > kLargest || height > kLargest ||
        samples.size() / width < height) {
        return {};
    }
    Data rows;
    rows.reserve((width + 1) * height);
    for (std::size_t y = 0; y < height; ++y) {
        rows.push_back(static_cast<std::uint8_t>(PngFilter::none));
        const auto row = samples.subspan(y * width, width);
        rows.insert(rows.end(), row.begin(), row.end());
    }
    const Data stream = image_io::deflateZlib(rows, kBalanced.deflateLevel);
    return stream.size() > kLargest ? Data() : pngFile(width, height, kColorGray, stream);
}

}  // namespace velmoranth::desktop
