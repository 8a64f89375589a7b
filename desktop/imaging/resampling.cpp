#include "desktop/imaging/resampling.h"

#include "desktop/imaging/compositing.h"

#include <algorithm>
#include <cmath>
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
        float sum[4] = {0, 0, 0, 0};
        for (std::size_t i = 0; i < span.count; ++i) {
            for (std::size_t c = 0; c < 4; ++c) {
                sum[c] += weights[i] * static_cast<float>(from[i * 4 + c]);
            }
        }
        std::copy(std::begin(sum), std::end(sum), row.begin() + static_cast<std::ptrdiff_t>(x * 4));
    }
    return row.data();
}

const std::uint8_t* Resampler::row(std::size_t index) {
    const AxisWeights::Span& span = vertical_.spans[index];
    // Half a step up, so that cutting off the fraction rounds.
    std::fill(sum_.begin(), sum_.end(), 0.5F);
    for (std::size_t i = 0; i < span.count; ++i) {
        const float weight = vertical_.weights[span.weight + i];
        const float* const from = sourceRow(span.source + i);
        for (std::size_t x = 0; x < sum_.size(); ++x) {
            sum_[x] += weight * from[x];
        }
    }
    for (std::size_t x = 0; x < sum_.size(); x += 4) {
        const float alpha = std::clamp(sum_[x + 3], 0.0F, 255.0F);
        for (std::size_t c = 0; c < 3; ++c) {
            // Bicubic overshoots: a colour stays within its alpha.
            row_[x + c] = static_cast<std::uint8_t>(std::clamp(sum_[x + c], 0.0F, alpha));
        }
        row_[x + 3] = static_cast<std::uint8_t>(alpha);
    }
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
