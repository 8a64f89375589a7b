#include "desktop/imaging/gradient.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace velmoranth::desktop {

namespace {

using platform::Color;
using platform::ColorSpace;

bool allFinite(const std::vector<double>& numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](double n) { return std::isfinite(n); });
}

double mix(double from, double to, double share) {
    return from + (to - from) * share;
}

}  // namespace

std::shared_ptr<DesktopGradient> DesktopGradient::create(
    ColorSpace space, const std::vector<double>& components,
    const std::optional<std::vector<double>>& locations) {
    if (space == ColorSpace::indexed || components.empty() || !allFinite(components)) {
        return nullptr;
    }
    const std::size_t each = space == ColorSpace::deviceGray ? 2 : 4;
    const std::size_t count = components.size() / each;
    if (components.size() % each != 0 ||
        (locations && (locations->size() != count || !allFinite(*locations)))) {
        return nullptr;
    }
    std::vector<Stop> stops(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto component = [&](std::size_t c) {
            return std::clamp(components[i * each + c], 0.0, 1.0);
        };
        const std::size_t green = each == 4 ? 1 : 0;
        const std::size_t blue = each == 4 ? 2 : 0;
        stops[i].color = {component(0), component(green), component(blue), component(each - 1)};
        stops[i].location =
            locations ? std::clamp((*locations)[i], 0.0, 1.0)
                      : (count == 1 ? 0 : static_cast<double>(i) / static_cast<double>(count - 1));
    }
    std::stable_sort(stops.begin(), stops.end(),
                     [](const Stop& a, const Stop& b) { return a.location < b.location; });
    return std::make_shared<DesktopGradient>(std::move(stops));
}

Color DesktopGradient::colorAt(double t) const {
    const auto after = std::find_if(stops_.begin(), stops_.end(),
                                    [t](const Stop& stop) { return stop.location > t; });
    if (after == stops_.begin()) {
        return stops_.front().color;
    }
    if (after == stops_.end()) {
        return stops_.back().color;
    }
    const Stop& from = *(after - 1);
    const Stop& to = *after;
    const double share = (t - from.location) / (to.location - from.location);
    return {mix(from.color.red, to.color.red, share), mix(from.color.green, to.color.green, share),
            mix(from.color.blue, to.color.blue, share),
            mix(from.color.alpha, to.color.alpha, share)};
}

}  // namespace velmoranth::desktop
