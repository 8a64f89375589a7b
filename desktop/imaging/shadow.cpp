#include "desktop/imaging/shadow.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace velmoranth::desktop {

namespace {

// The integral of a Gaussian's distribution function up to `x`: max(x, 0), smoothed.
double smoothedRamp(double x, double deviation) {
    // Narrower than this a pixel cannot show it.
    constexpr double kSharp = 1e-3;
    if (deviation < kSharp) {
        return std::max(x, 0.0);
    }
    const double z = x / deviation;
    const double density = std::exp(-z * z / 2) / std::sqrt(2 * std::numbers::pi);
    const double below = std::erfc(-z / std::numbers::sqrt2) / 2;
    return x * below + deviation * density;
}

// Added before the fraction is cut off, it rounds.
constexpr double kHalfStep = 0.5;

double toGrid(double position) {
    constexpr double kGrid = 1024;
    return std::round(position * kGrid) / kGrid;
}

}  // namespace

ShadowTiles::Span ShadowTiles::span(double from, double to, double deviation,
                                    std::int64_t clipFirst, std::int64_t clipLast,
                                    std::int64_t& origin) {
    const double start = std::floor(toGrid(from));
    origin = static_cast<std::int64_t>(start);
    const double reach = std::ceil(deviation * kShadowDeviations);
    Span result{.from = toGrid(from) - start,
                .to = toGrid(from) - start + toGrid(to - from),
                .deviation = deviation};
    result.first = std::max(clipFirst - origin, -static_cast<std::int64_t>(reach));
    result.last =
        std::min(clipLast - origin, static_cast<std::int64_t>(std::ceil(result.to) + reach));
    return result;
}

// How much of each wanted pixel the blurred span covers: the blurred edge's integral over it.
std::vector<double> ShadowTiles::profile(const Span& span) {
    std::vector<double> result;
    result.reserve(static_cast<std::size_t>(span.last - span.first));
    const auto rampsUpTo = [&](std::int64_t pixel) {
        const auto x = static_cast<double>(pixel);
        return smoothedRamp(x - span.from, span.deviation) -
               smoothedRamp(x - span.to, span.deviation);
    };
    double before = rampsUpTo(span.first);
    for (std::int64_t i = span.first; i < span.last; ++i) {
        const double after = rampsUpTo(i + 1);
        result.push_back(std::clamp(after - before, 0.0, 1.0));
        before = after;
    }
    return result;
}

std::vector<std::uint8_t> ShadowTiles::blurred(const Span& horizontal, const Span& vertical) {
    const std::vector<double> columns = profile(horizontal);
    const std::vector<double> rows = profile(vertical);
    std::vector<std::uint8_t> coverage;
    coverage.reserve(columns.size() * rows.size());
    for (const double row : rows) {
        // A Gaussian of two dimensions is the product of two of one.
        std::transform(columns.begin(), columns.end(), std::back_inserter(coverage),
                       [row](double column) {
                           return static_cast<std::uint8_t>(row * column * 255 + kHalfStep);
                       });
    }
    return coverage;
}

ShadowTile ShadowTiles::tile(const BlurredRect& rect, const PixelRect& clip) {
    std::int64_t x = 0;
    std::int64_t y = 0;
    const Span horizontal = span(rect.left, rect.right, rect.deviationX, clip.left, clip.right, x);
    const Span vertical = span(rect.top, rect.bottom, rect.deviationY, clip.top, clip.bottom, y);
    ShadowTile result{
        .area = {x + horizontal.first, y + vertical.first, x + horizontal.last, y + vertical.last},
        .coverage = nullptr};
    if (result.area.empty()) {
        return {};
    }
    const auto found = std::find_if(kept_.begin(), kept_.end(), [&](const Kept& kept) {
        return kept.horizontal == horizontal && kept.vertical == vertical;
    });
    if (found != kept_.end()) {
        result.coverage = found->coverage;
        return result;
    }
    ++made_;
    result.coverage =
        std::make_shared<const std::vector<std::uint8_t>>(blurred(horizontal, vertical));
    if (result.coverage->size() > kKeptBytes) {
        return result;
    }
    keptBytes_ += result.coverage->size();
    while (keptBytes_ > kKeptBytes) {
        keptBytes_ -= kept_.front().coverage->size();
        kept_.erase(kept_.begin());
    }
    kept_.push_back({horizontal, vertical, result.coverage});
    return result;
}

}  // namespace velmoranth::desktop
