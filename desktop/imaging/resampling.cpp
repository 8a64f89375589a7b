#include "desktop/imaging/resampling.h"

#include "desktop/imaging/compositing.h"

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

// One after the other, as a loop over them would add them.
void sumOfFour(float* sum, const float* const (&rows)[4], const float* weights, std::size_t count) {
    const float* const a = rows[0];
    const float* const b = rows[1];
    const float* const c = rows[2];
    const float* const d = rows[3];
    const float weightA = weights[0];
    const float weightB = weights[1];
    const float weightC = weights[2];
    const float weightD = weights[3];
    for (std::size_t x = 0; x < count; ++x) {
        sum[x] =
            (((kHalfStep + weightA * a[x]) + weightB * b[x]) + weightC * c[x]) + weightD * d[x];
    }
}

// A pixel's sums and its bytes, as vectors that g++ and clang both know.
using Sums = float __attribute__((vector_size(16)));
using Wholes = std::int32_t __attribute__((vector_size(16)));

Sums componentsOf(const std::uint8_t* pixel) {
    using Bytes = std::uint8_t __attribute__((vector_size(4)));
    Bytes bytes;
    std::memcpy(&bytes, pixel, sizeof(bytes));
    return __builtin_convertvector(__builtin_convertvector(bytes, Wholes), Sums);
}

// `count` sums, four a pixel, each half a step up. Bicubic overshoots: a colour stays within its
// alpha.
void toPixels(std::uint8_t* pixels, const float* sums, std::size_t count) {
    const Sums none{};
    const Sums most = none + 255.0F;
    for (std::size_t x = 0; x < count; x += 4) {
        Sums pixel;
        std::memcpy(&pixel, sums + x, sizeof(pixel));
        pixel = pixel > none ? pixel : none;
        pixel = pixel < most ? pixel : most;
        const Sums alpha = __builtin_shufflevector(pixel, pixel, 3, 3, 3, 3);
        pixel = pixel < alpha ? pixel : alpha;
        const auto whole = __builtin_convertvector(pixel, Wholes);
        const std::uint32_t bytes =
            static_cast<std::uint32_t>(whole[0]) | static_cast<std::uint32_t>(whole[1]) << 8 |
            static_cast<std::uint32_t>(whole[2]) << 16 | static_cast<std::uint32_t>(whole[3]) << 24;
        std::memcpy(pixels + x, &bytes, 4);
    }
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
}

const float* Resampler::sourceRow(std::size_t y) {
    const std::size_t slot = y % kKeptRows;
    std::vector<float>& row = kept_[slot];
    if (keptIndex_[slot] == y) {
        return row.data();
    }
    keptIndex_[slot] = y;
    const std::uint8_t* const pixels = source_.row(y);
    for (std::size_t x = 0; x < horizontal_.spans.size(); ++x) {
        const AxisWeights::Span& span = horizontal_.spans[x];
        const float* const weights = horizontal_.weights.data() + span.weight;
        const std::uint8_t* const from = pixels + span.source * 4;
        Sums sum{};
        for (std::size_t i = 0; i < span.count; ++i) {
            sum += weights[i] * componentsOf(from + i * 4);
        }
        std::memcpy(row.data() + x * 4, &sum, sizeof(sum));
    }
    return row.data();
}

const std::uint8_t* Resampler::row(std::size_t index) {
    const AxisWeights::Span& span = vertical_.spans[index];
    const float* const weights = vertical_.weights.data() + span.weight;
    // Pointers of our own: a byte that is written may be part of anything else, this object too.
    const std::size_t count = sum_.size();
    float* const sum = sum_.data();
    if (span.count == kKeptRows) {
        const float* const rows[] = {sourceRow(span.source), sourceRow(span.source + 1),
                                     sourceRow(span.source + 2), sourceRow(span.source + 3)};
        sumOfFour(sum, rows, weights, count);
    } else {
        std::fill_n(sum, count, kHalfStep);
        for (std::size_t i = 0; i < span.count; ++i) {
            const float weight = weights[i];
            const float* const from = sourceRow(span.source + i);
            for (std::size_t x = 0; x < count; ++x) {
                sum[x] += weight * from[x];
            }
        }
    }
    toPixels(row_.data(), sum, count);
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
