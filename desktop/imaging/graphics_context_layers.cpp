// The context's transparency layers and shadows.
#include "desktop/imaging/compositing.h"
#include "desktop/imaging/coverage.h"
#include "desktop/imaging/graphics_context.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmoranth::desktop {

namespace {

// Farther away than any picture, and near enough for whole numbers.
constexpr double kFarthestOffset = 1e6;
constexpr double kFarthestEdge = 1e7;

std::int64_t floorOf(double value) {
    return static_cast<std::int64_t>(std::floor(std::clamp(value, -kFarthestEdge, kFarthestEdge)));
}

std::int64_t ceilOf(double value) {
    return static_cast<std::int64_t>(std::ceil(std::clamp(value, -kFarthestEdge, kFarthestEdge)));
}

struct Edges {
    double low = 0;
    double high = 0;
};

// Along one axis. Nothing when it is empty or NaN.
std::optional<Edges> deviceEdges(double start, double length, double scale, double offset) {
    const double a = scale * start + offset;
    const double b = scale * (start + length) + offset;
    const Edges edges{std::max(std::min(a, b), -kFarthestEdge),
                      std::min(std::max(a, b), kFarthestEdge)};
    if (std::isnan(a) || std::isnan(b) || !(edges.low < edges.high)) {
        return std::nullopt;
    }
    return edges;
}

std::int64_t marginOf(double deviation) {
    return static_cast<std::int64_t>(std::ceil(deviation * kShadowDeviations));
}

}  // namespace

std::optional<DeviceShadow> DesktopGraphicsContext::toDevice(const Shadow& shadow) const {
    const double scaleX = std::abs(state_.transform.scaleX);
    const double scaleY = std::abs(state_.transform.scaleY);
    const double alpha =
        std::clamp(shadow.color.alpha, 0.0, 1.0) * std::clamp(shadow.opacity, 0.0, 1.0);
    DeviceShadow device{.deviationX = std::clamp(shadow.radius * scaleX, 0.0, kMaxShadowDeviation),
                        .deviationY = std::clamp(shadow.radius * scaleY, 0.0, kMaxShadowDeviation),
                        .offsetX = shadow.offset.x * scaleX,
                        .offsetY = shadow.offset.y * scaleY};
    const bool there = std::abs(device.offsetX) <= kFarthestOffset &&
                       std::abs(device.offsetY) <= kFarthestOffset &&
                       !std::isnan(device.deviationX) && !std::isnan(device.deviationY);
    if (!(alpha > 0) || !there) {
        return std::nullopt;
    }
    const double parts[4] = {shadow.color.blue, shadow.color.green, shadow.color.red, 1};
    for (std::size_t i = 0; i < 4; ++i) {
        const double part = parts[i] > 0 ? std::min(parts[i], 1.0) : 0;
        device.color[i] = static_cast<std::uint8_t>(std::lround(part * alpha * 255));
    }
    return device;
}

PixelRect DesktopGraphicsContext::layerArea(const Shadow& shadow,
                                            const std::optional<platform::Rect>& extent) const {
    if (!extent) {
        return state_.clip;
    }
    const UserTransform& transform = state_.transform;
    const auto columns =
        deviceEdges(extent->origin.x, extent->size.width, transform.scaleX, transform.offsetX);
    const auto rows =
        deviceEdges(extent->origin.y, extent->size.height, transform.scaleY, transform.offsetY);
    if (!columns || !rows) {
        return {};
    }
    const PixelRect wanted{floorOf(columns->low), floorOf(rows->low), ceilOf(columns->high),
                           ceilOf(rows->high)};
    PixelRect around = state_.clip;
    if (const std::optional<DeviceShadow> device = toDevice(shadow); device && !around.empty()) {
        const auto grow = [](std::int64_t& low, std::int64_t& high, double deviation,
                             double offset) {
            const double blur = deviation * kShadowDeviations;
            high += ceilOf(std::clamp(blur - offset + 1, 0.0, kMaxShadowReach));
            low -= ceilOf(std::clamp(blur + offset + 1, 0.0, kMaxShadowReach));
        };
        grow(around.left, around.right, device->deviationX, device->offsetX);
        grow(around.top, around.bottom, device->deviationY, device->offsetY);
    }
    return intersection(wanted, around);
}

void DesktopGraphicsContext::beginTransparencyLayer(double opacity, const Shadow& shadow,
                                                    const std::optional<platform::Rect>& extent) {
    const PixelRect area = layerArea(shadow, extent);
    layers_.push_back({.below = std::exchange(surface_, {}),
                       .opacity = opacity > 0 ? std::min(opacity, 1.0) : 0,
                       .shadow = shadow,
                       .savedStates = saved_.size(),
                       .state = state_});
    if (!area.empty() && bitmapBytes({area.width(), area.height()}, 4, 0)) {
        surface_.area = area;
        surface_.bytesPerRow = area.width() * 4;
    }
    // The old clip comes into play when the layer is drawn.
    state_.clip = surface_.area;
    state_.clipMask = nullptr;
}

void DesktopGraphicsContext::endTransparencyLayer() {
    if (layers_.empty()) {
        return;
    }
    const Surface content = std::move(surface_);
    Layer layer = std::move(layers_.back());
    layers_.pop_back();
    surface_ = std::move(layer.below);
    saved_.resize(layer.savedStates);
    state_ = std::move(layer.state);
    if (content.memory == nullptr || state_.clip.empty()) {
        return;
    }
    const auto opacity = static_cast<std::uint8_t>(std::lround(layer.opacity * 255));
    const std::optional<DeviceShadow> shadow = toDevice(layer.shadow);
    makeWritable();
    if (!shadow || opacity == 255) {
        if (shadow) {
            castShadow(content, *shadow, surface_);
        }
        compositeSurface(content, opacity, surface_);
        return;
    }
    // The shadow does not shine through what covers it: the two become one picture first.
    const State outside = std::exchange(state_, {});
    const std::int64_t marginX = marginOf(shadow->deviationX);
    const std::int64_t marginY = marginOf(shadow->deviationY);
    const PixelRect shaded{content.area.left + floorOf(shadow->offsetX) - marginX,
                           content.area.top + floorOf(shadow->offsetY) - marginY,
                           content.area.right + ceilOf(shadow->offsetX) + marginX,
                           content.area.bottom + ceilOf(shadow->offsetY) + marginY};
    Surface group;
    group.area =
        united(intersection(shaded, outside.clip), intersection(content.area, outside.clip));
    if (!group.area.empty()) {
        group.bytesPerRow = group.area.width() * 4;
        makeWritable(group, false);
        state_.clip = group.area;
        castShadow(content, *shadow, group);
        compositeSurface(content, 255, group);
    }
    state_ = outside;
    if (group.memory != nullptr) {
        compositeSurface(group, opacity, surface_);
    }
}

void DesktopGraphicsContext::compositeSurface(const Surface& content, std::uint8_t opacity,
                                              Surface& target) const {
    const PixelRect shown = intersection(content.area, state_.clip);
    for (std::int64_t y = shown.top; y < shown.bottom && !shown.empty(); ++y) {
        compositeRow(target.at(shown.left, y), content.at(shown.left, y), shown.width(), opacity,
                     clipRow(shown.left, y));
    }
}

void DesktopGraphicsContext::castShadow(const Surface& content, const DeviceShadow& shadow,
                                        Surface& target) const {
    // The content's extent, so that blurring costs what is there.
    PixelRect extent;
    for (std::int64_t y = content.area.top; y < content.area.bottom; ++y) {
        const std::uint8_t* const row = content.at(content.area.left, y);
        const std::size_t width = content.area.width();
        std::size_t first = 0;
        while (first < width && row[first * 4 + 3] == 0) {
            ++first;
        }
        if (first == width) {
            continue;
        }
        std::size_t last = width;
        while (row[last * 4 - 1] == 0) {
            --last;
        }
        extent = united(extent, {content.area.left + static_cast<std::int64_t>(first), y,
                                 content.area.left + static_cast<std::int64_t>(last), y + 1});
    }
    if (extent.empty()) {
        return;
    }
    const std::int64_t marginX = marginOf(shadow.deviationX);
    const std::int64_t marginY = marginOf(shadow.deviationY);
    PixelRect area{extent.left - marginX, extent.top - marginY, extent.right + marginX,
                   extent.bottom + marginY};
    std::vector<std::uint8_t> coverage(area.width() * area.height());
    for (std::int64_t y = extent.top; y < extent.bottom; ++y) {
        const std::uint8_t* const row = content.at(extent.left, y);
        std::uint8_t* const to = coverage.data() +
                                 static_cast<std::size_t>(y - area.top) * area.width() +
                                 static_cast<std::size_t>(marginX);
        for (std::size_t x = 0; x < extent.width(); ++x) {
            to[x] = row[x * 4 + 3];
        }
    }
    blurCoverage(coverage, area.width(), area.height(), shadow.deviationX, shadow.deviationY);
    const std::int64_t right = std::llround(shadow.offsetX);
    const std::int64_t down = std::llround(shadow.offsetY);
    area = {area.left + right, area.top + down, area.right + right, area.bottom + down};
    drawTile({area, std::make_shared<const std::vector<std::uint8_t>>(std::move(coverage))}, shadow,
             target);
}

void DesktopGraphicsContext::drawTile(const ShadowTile& tile, const DeviceShadow& shadow,
                                      Surface& target) const {
    const PixelRect shown = intersection(tile.area, state_.clip);
    if (shown.empty()) {
        return;
    }
    std::vector<std::uint8_t> masked(shown.width());
    for (std::int64_t y = shown.top; y < shown.bottom; ++y) {
        const std::uint8_t* row = tile.coverage->data() +
                                  static_cast<std::size_t>(y - tile.area.top) * tile.area.width() +
                                  static_cast<std::size_t>(shown.left - tile.area.left);
        if (const std::uint8_t* const clip = clipRow(shown.left, y)) {
            std::copy(row, row + shown.width(), masked.begin());
            multiplyCoverage(masked.data(), clip, shown.width());
            row = masked.data();
        }
        compositeColorRow(target.at(shown.left, y), shadow.color, shown.width(), row);
    }
}

void DesktopGraphicsContext::drawShadowOfRect(const platform::Rect& rect, const Shadow& shadow) {
    const UserTransform& transform = state_.transform;
    const auto columns =
        deviceEdges(rect.origin.x, rect.size.width, transform.scaleX, transform.offsetX);
    const auto rows =
        deviceEdges(rect.origin.y, rect.size.height, transform.scaleY, transform.offsetY);
    const std::optional<DeviceShadow> device = toDevice(shadow);
    if (!columns || !rows || !device || state_.clip.empty()) {
        return;
    }
    const ShadowTile tile = shadowTiles_.tile({.left = columns->low + device->offsetX,
                                               .top = rows->low + device->offsetY,
                                               .right = columns->high + device->offsetX,
                                               .bottom = rows->high + device->offsetY,
                                               .deviationX = device->deviationX,
                                               .deviationY = device->deviationY},
                                              state_.clip);
    if (tile.coverage != nullptr) {
        makeWritable();
        drawTile(tile, *device, surface_);
    }
}

}  // namespace velmoranth::desktop
