#include "desktop/imaging/resampling.h"

#include "desktop/imaging/compositing.h"
#include "desktop/imaging/wide_vectors.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace velmoranth::desktop {

namespace {

// Sizes that differ by less are the same: a third of a point times three is not quite a pixel.
constexpr double kPixelTolerance = 1e-6;

double catmullRom(double distance) {
    const double x = std::abs(distance);
    if (x < 1) {
        return (1.5 * x - 2.5) * x * x + 1;
    }
    if (x < 2) {
        return ((-0.5 * x + 2.5) * x - 4) * x + 2;
    }
    return 0;
}

double clampToSource(double position, std::size_t size) {
    return std::clamp(position, 0.0, static_cast<double>(size));
}

void addAreaSpan(AxisWeights& result, double center, double width, std::size_t size) {
    const double from = clampToSource(center - width / 2, size);
    const double to = clampToSource(center + width / 2, size);
    auto first = std::min(static_cast<std::size_t>(from), size - 1);
    const auto last = std::min(static_cast<std::size_t>(std::max(std::ceil(to), 1.0)), size);
    first = std::min(first, last - 1);
    const std::size_t offset = result.weights.size();
    double sum = 0;
    for (std::size_t i = first; i < last; ++i) {
        const auto left = static_cast<double>(i);
        const double share = std::max(std::min(to, left + 1) - std::max(from, left), 0.0);
        result.weights.push_back(static_cast<float>(share));
        sum += share;
    }
    if (sum <= 0) {  // the target pixel lies outside: its nearest source pixel
        result.weights[offset] = 1;
        sum = 1;
    }
    for (std::size_t i = offset; i < result.weights.size(); ++i) {
        result.weights[i] = static_cast<float>(result.weights[i] / sum);
    }
    result.spans.push_back({first, offset, last - first});
}

void addCubicSpan(AxisWeights& result, double center, std::size_t size) {
    const double position = center - 0.5;
    const double base = std::floor(position);
    const auto limit = static_cast<double>(size - 1);
    const double lowest = std::clamp(base - 1, 0.0, limit);
    const double highest = std::clamp(base + 2, 0.0, limit);
    const std::size_t offset = result.weights.size();
    result.weights.resize(offset + static_cast<std::size_t>(highest - lowest) + 1, 0.0F);
    // Beyond the edge the edge pixel goes on.
    for (int tap = -1; tap <= 2; ++tap) {
        const double index = std::clamp(base + tap, 0.0, limit);
        result.weights[offset + static_cast<std::size_t>(index - lowest)] +=
            static_cast<float>(catmullRom(position - (base + tap)));
    }
    result.spans.push_back(
        {static_cast<std::size_t>(lowest), offset, result.weights.size() - offset});
}

bool isWhole(double position) {
    return std::abs(position - std::round(position)) < kPixelTolerance;
}

// Half a step up, so that cutting off the fraction rounds.
constexpr float kHalfStep = 0.5F;

// A pixel's four components.
using Components = float __attribute__((vector_size(16)));

Components load(const float* from) {
    Components result;
    std::memcpy(&result, from, sizeof(result));
    return result;
}

void store(float* to, Components components) {
    std::memcpy(to, &components, sizeof(components));
}

// A row as numbers.
[[gnu::always_inline]] inline void toNumbers(float* to, const std::uint8_t* components,
                                             std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        to[i] = components[i];
    }
}

// The bytes of pixels from their sums, half a step up. Bicubic overshoots: a colour stays within
// its alpha, which stays within a byte.
template <class SumOf>
[[gnu::always_inline]] inline void toPixels(std::uint8_t* to, std::size_t pixels,
                                            const SumOf& sumOf) {
    constexpr std::size_t kPiece = 64;
    for (std::size_t first = 0; first < pixels; first += kPiece) {
        const std::size_t count = std::min(kPiece, pixels - first);
        std::uint8_t bytes[kPiece * 4];
        for (std::size_t i = 0; i < count * 4; ++i) {
            bytes[i] = static_cast<std::uint8_t>(
                std::clamp(static_cast<std::int32_t>(sumOf(first * 4 + i)), 0, 255));
        }
        std::uint8_t alphas[kPiece * 4] = {};
        for (std::size_t i = 0; i < count; ++i) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, bytes + i * 4, 4);
            const std::uint32_t two = pixel >> 24U | pixel >> 24U << 8U;
            const std::uint32_t four = two | two << 16U;
            std::memcpy(alphas + i * 4, &four, 4);
        }
        for (std::size_t i = 0; i < count * 4; ++i) {
            to[first * 4 + i] = std::min(bytes[i], alphas[i]);
        }
    }
}

[[gnu::always_inline]] inline void mixFour(std::uint8_t* to, std::size_t pixels,
                                           const float* const* rows, const float* weights) {
    const float* const row0 = rows[0];
    const float* const row1 = rows[1];
    const float* const row2 = rows[2];
    const float* const row3 = rows[3];
    const float weight0 = weights[0];
    const float weight1 = weights[1];
    const float weight2 = weights[2];
    const float weight3 = weights[3];
    toPixels(to, pixels, [=](std::size_t i) __attribute__((always_inline)) {
        return kHalfStep + row0[i] * weight0 + row1[i] * weight1 + row2[i] * weight2 +
               row3[i] * weight3;
    });
}

[[gnu::always_inline]] inline void addTimes(float* sum, const float* from, float weight,
                                            std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        sum[i] += from[i] * weight;
    }
}

[[gnu::always_inline]] inline void sumsToPixels(std::uint8_t* to, std::size_t pixels,
                                                const float* sums) {
    toPixels(to, pixels, [=](std::size_t i) __attribute__((always_inline)) { return sums[i]; });
}

// A pixel's sum over a span: bicubic's four pixels at once, an area's one by one.
Components sumOf(const float* from, const float* weights, std::size_t count) {
    if (count == 4) {
        const Components four = load(weights);
        return load(from) * __builtin_shufflevector(four, four, 0, 0, 0, 0) +
               load(from + 4) * __builtin_shufflevector(four, four, 1, 1, 1, 1) +
               load(from + 8) * __builtin_shufflevector(four, four, 2, 2, 2, 2) +
               load(from + 12) * __builtin_shufflevector(four, four, 3, 3, 3, 3);
    }
    Components sum{};
    for (std::size_t i = 0; i < count; ++i) {
        sum += load(from + i * 4) * weights[i];
    }
    return sum;
}

}  // namespace

AxisWeights axisWeights(const Axis& axis) {
    const auto size = static_cast<double>(axis.sourceSize);
    const double length = axis.end - axis.start;
    const double step = size / length;  // source pixels for a target pixel
    const bool sameSize = std::abs(length - size) < kPixelTolerance;
    const bool copies = sameSize && isWhole(axis.start);
    AxisWeights result;
    const auto wanted = static_cast<std::size_t>(std::max<std::int64_t>(axis.last - axis.first, 0));
    result.spans.reserve(wanted);
    result.coverage.reserve(wanted);
    for (std::int64_t i = axis.first; i < axis.last; ++i) {
        const auto left = static_cast<double>(i);
        double center = (left + 0.5 - axis.start) * step;
        if (axis.flipped) {
            center = size - center;
        }
        if (copies) {
            const double index = std::clamp(std::floor(center), 0.0, size - 1);
            result.spans.push_back({static_cast<std::size_t>(index), result.weights.size(), 1});
            result.weights.push_back(1);
        } else if (step > 1 && !sameSize) {
            addAreaSpan(result, center, step, axis.sourceSize);
        } else {
            addCubicSpan(result, std::clamp(center, 0.0, size), axis.sourceSize);
        }
        const double covered =
            std::clamp(std::min(left + 1, axis.end) - std::max(left, axis.start), 0.0, 1.0);
        const auto byte = covered > 1 - kPixelTolerance
                              ? std::uint8_t{255}
                              : static_cast<std::uint8_t>(std::lround(covered * 255));
        result.coverage.push_back(byte);
        result.wholePixels = result.wholePixels && byte == 255;
    }
    return result;
}

std::vector<std::uint8_t> stretch(const PixelView& source, PixelSize size) {
    const auto axis = [](std::size_t from, std::size_t to) {
        return Axis{.end = static_cast<double>(to),
                    .sourceSize = from,
                    .last = static_cast<std::int64_t>(to)};
    };
    Resampler resampler(source, axis(source.width, size.width), axis(source.height, size.height));
    std::vector<std::uint8_t> result;
    result.reserve(size.width * size.height * 4);
    for (std::size_t y = 0; y < size.height; ++y) {
        const std::uint8_t* const row = resampler.row(y);
        result.insert(result.end(), row, row + size.width * 4);
    }
    return result;
}

Resampler::Resampler(const PixelView& source, const Axis& horizontal, const Axis& vertical)
    : source_(source), horizontal_(axisWeights(horizontal)), vertical_(axisWeights(vertical)) {
    const std::size_t width = horizontal_.spans.size();
    for (auto& row : kept_) {
        row.resize(width * 4);
    }
    std::fill(std::begin(keptIndex_), std::end(keptIndex_),
              std::numeric_limits<std::size_t>::max());
    sum_.resize(width * 4);
    row_.resize(width * 4);
    coverage_.resize(width);
    if (width > 0) {
        const AxisWeights::Span& left = horizontal_.spans.front();
        const AxisWeights::Span& right = horizontal_.spans.back();
        firstSource_ = std::min(left.source, right.source);
        sources_ = std::max(left.source + left.count, right.source + right.count) - firstSource_;
        wide_.resize(sources_ * 4);
    }
}

const float* Resampler::sourceRow(std::size_t y) {
    const std::size_t slot = y % kKeptRows;
    float* const row = kept_[slot].data();
    if (keptIndex_[slot] == y) {
        return row;
    }
    keptIndex_[slot] = y;
    const std::uint8_t* const pixels = source_.row(y) + firstSource_ * 4;
    float* const wide = wide_.data();
    callWide<toNumbers>(wide, pixels, sources_ * 4);
    const float* const weights = horizontal_.weights.data();
    float* to = row;
    for (const AxisWeights::Span& span : horizontal_.spans) {
        store(to,
              sumOf(wide + (span.source - firstSource_) * 4, weights + span.weight, span.count));
        to += 4;
    }
    return row;
}

const std::uint8_t* Resampler::row(std::size_t index) {
    const AxisWeights::Span& span = vertical_.spans[index];
    const float* const weights = vertical_.weights.data() + span.weight;
    const std::size_t pixels = horizontal_.spans.size();
    if (span.count == kKeptRows) {
        const float* const rows[] = {sourceRow(span.source), sourceRow(span.source + 1),
                                     sourceRow(span.source + 2), sourceRow(span.source + 3)};
        callWide<mixFour>(row_.data(), pixels, static_cast<const float* const*>(rows), weights);
        return row_.data();
    }
    std::ranges::fill(sum_, kHalfStep);
    for (std::size_t i = 0; i < span.count; ++i) {
        callWide<addTimes>(sum_.data(), sourceRow(span.source + i), weights[i], sum_.size());
    }
    callWide<sumsToPixels>(row_.data(), pixels, static_cast<const float*>(sum_.data()));
    return row_.data();
}

const std::uint8_t* Resampler::coverage(std::size_t index) {
    const std::uint8_t vertical = vertical_.coverage[index];
    if (horizontal_.wholePixels && vertical == 255) {
        return nullptr;
    }
    std::transform(
        horizontal_.coverage.begin(), horizontal_.coverage.end(), coverage_.begin(),
        [vertical](std::uint8_t horizontal) { return multiply255(horizontal, vertical); });
    return coverage_.data();
}

}  // namespace velmoranth::desktop
