#include "desktop/imaging/graphics_context.h"

#include "desktop/imaging/compositing.h"
#include "desktop/imaging/coverage.h"
#include "desktop/imaging/gradient.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmoranth::desktop {

using platform::Color;

namespace {

PixelRect whole(PixelSize size) {
    return {0, 0, static_cast<std::int64_t>(size.width), static_cast<std::int64_t>(size.height)};
}

PixelRect intersection(const PixelRect& a, const PixelRect& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

std::size_t unsignedOf(std::int64_t value) {
    return static_cast<std::size_t>(value);
}

void makeOpaqueBlack(platform::Data& memory) {
    for (std::size_t i = 3; i < memory.size(); i += 4) {
        memory[i] = 255;
    }
}

// Rows of one value a pixel: the picture of a gray context.
platform::Data grayOf(const PixelView& pixels, std::size_t bytesPerRow) {
    platform::Data gray(bytesPerRow * pixels.height);
    for (std::size_t y = 0; y < pixels.height; ++y) {
        for (std::size_t x = 0; x < pixels.width; ++x) {
            gray[y * bytesPerRow + x] = pixels.row(y)[x * 4];
        }
    }
    return gray;
}

}  // namespace

std::shared_ptr<DesktopGraphicsContext> DesktopGraphicsContext::create(
    const Configuration& configuration) {
    const std::size_t snapshotPixel = configuration.content == Content::gray ? 1 : 4;
    if (!bitmapBytes(configuration.size, 4, 0) ||
        !bitmapBytes(configuration.size, snapshotPixel, configuration.bytesPerRow) ||
        !std::isfinite(configuration.scale) || configuration.scale <= 0) {
        return nullptr;
    }
    return std::make_shared<DesktopGraphicsContext>(Key{}, configuration);
}

DesktopGraphicsContext::DesktopGraphicsContext(Key /*key*/, const Configuration& configuration)
    : configuration_(configuration),
      memoryBytesPerRow_(configuration.content == Content::gray
                             ? configuration.size.width * 4
                             : std::max(configuration.bytesPerRow, configuration.size.width * 4)) {
    const bool upwards = configuration.origin == Origin::bottomLeft;
    state_.transform = {.scaleX = configuration.scale,
                        .scaleY = upwards ? -configuration.scale : configuration.scale,
                        .offsetX = 0,
                        .offsetY = upwards ? static_cast<double>(configuration.size.height) : 0};
    state_.clip = whole(configuration.size);
}

void DesktopGraphicsContext::makeWritable() {
    if (memory_ == nullptr) {
        memory_ = std::make_shared<platform::Data>(memoryBytesPerRow_ * configuration_.size.height);
        if (configuration_.content != Content::premultiplied && layers_.empty()) {
            makeOpaqueBlack(*memory_);
        }
    } else if (shared_) {
        memory_ = std::make_shared<platform::Data>(*memory_);
    }
    shared_ = false;
}

PixelView DesktopGraphicsContext::pixels() {
    if (memory_ == nullptr) {
        makeWritable();
    }
    return {memory_->data(), configuration_.size.width, configuration_.size.height,
            memoryBytesPerRow_};
}

MutablePixels DesktopGraphicsContext::mutablePixels() {
    makeWritable();
    return {memory_->data(), configuration_.size.width, configuration_.size.height,
            memoryBytesPerRow_};
}

platform::BitmapImageRef DesktopGraphicsContext::createImage() {
    const PixelView view = pixels();
    if (configuration_.content != Content::gray) {
        shared_ = true;
        return DesktopBitmapImage::createPremultiplied(memory_, configuration_.size,
                                                       memoryBytesPerRow_,
                                                       configuration_.content == Content::opaque);
    }
    const std::size_t bytesPerRow = std::max(configuration_.bytesPerRow, view.width);
    const platform::BitmapLayout layout{.width = view.width,
                                        .height = view.height,
                                        .bitsPerComponent = 8,
                                        .bitsPerPixel = 8,
                                        .bytesPerRow = bytesPerRow,
                                        .colorSpace = platform::ColorSpace::deviceGray};
    return DesktopBitmapImage::create(
        {layout, std::make_shared<const platform::Data>(grayOf(view, bytesPerRow)), {}});
}

void DesktopGraphicsContext::translateCTM(double x, double y) {
    UserTransform& transform = state_.transform;
    const double offsetX = transform.offsetX + transform.scaleX * x;
    const double offsetY = transform.offsetY + transform.scaleY * y;
    if (std::isfinite(offsetX) && std::isfinite(offsetY)) {
        transform.offsetX = offsetX;
        transform.offsetY = offsetY;
    }
}

void DesktopGraphicsContext::scaleCTM(double x, double y) {
    UserTransform& transform = state_.transform;
    const double scaleX = transform.scaleX * x;
    const double scaleY = transform.scaleY * y;
    if (std::isfinite(scaleX) && std::isfinite(scaleY)) {
        transform.scaleX = scaleX;
        transform.scaleY = scaleY;
    }
}

void DesktopGraphicsContext::drawLinearGradient(const platform::GradientRef& gradient,
                                                platform::Point start, platform::Point end,
                                                std::uint32_t options) {
    const auto ours = std::dynamic_pointer_cast<const DesktopGradient>(gradient);
    const double dx = end.x - start.x;
    const double dy = end.y - start.y;
    const double length = dx * dx + dy * dy;
    if (ours == nullptr || !std::isfinite(length) || length <= 0 || state_.clip.empty()) {
        return;
    }
    makeWritable();
    const UserTransform& transform = state_.transform;
    const auto byteOf = [](double value) {
        return static_cast<std::uint8_t>(std::lround(value * 255));
    };
    for (std::int64_t y = state_.clip.top; y < state_.clip.bottom; ++y) {
        const double userY = (static_cast<double>(y) + 0.5 - transform.offsetY) / transform.scaleY;
        for (std::int64_t x = state_.clip.left; x < state_.clip.right; ++x) {
            const double userX =
                (static_cast<double>(x) + 0.5 - transform.offsetX) / transform.scaleX;
            const double t = ((userX - start.x) * dx + (userY - start.y) * dy) / length;
            if ((t < 0 && (options & platform::kGradientDrawsBeforeStartLocation) == 0) ||
                (t > 1 && (options & platform::kGradientDrawsAfterEndLocation) == 0)) {
                continue;
            }
            const Color color = ours->colorAt(t);
            const std::uint8_t pixel[4] = {byteOf(color.blue * color.alpha),
                                           byteOf(color.green * color.alpha),
                                           byteOf(color.red * color.alpha), byteOf(color.alpha)};
            compositeRow(memory_->data() + unsignedOf(y) * memoryBytesPerRow_ + unsignedOf(x) * 4,
                         pixel, 1, 255, clipRow(x, y));
        }
    }
}

void DesktopGraphicsContext::saveState() {
    saved_.push_back(state_);
}

void DesktopGraphicsContext::restoreState() {
    const std::size_t floor = layers_.empty() ? 0 : layers_.back().savedStates;
    if (saved_.size() > floor) {
        state_ = std::move(saved_.back());
        saved_.pop_back();
    }
}

void DesktopGraphicsContext::beginTransparencyLayer(double opacity, const Shadow& shadow) {
    makeWritable();
    layers_.push_back({.memory = std::move(memory_),
                       .shared = shared_,
                       .opacity = opacity > 0 ? std::min(opacity, 1.0) : 0,
                       .shadow = shadow,
                       .savedStates = saved_.size(),
                       .state = state_});
    memory_ = nullptr;
    shared_ = false;
    makeWritable();
}

void DesktopGraphicsContext::endTransparencyLayer() {
    if (layers_.empty()) {
        return;
    }
    const std::shared_ptr<platform::Data> content = std::move(memory_);
    Layer layer = std::move(layers_.back());
    layers_.pop_back();
    memory_ = std::move(layer.memory);
    shared_ = layer.shared;
    saved_.resize(layer.savedStates);
    state_ = std::move(layer.state);
    const PixelView view{content->data(), configuration_.size.width, configuration_.size.height,
                         memoryBytesPerRow_};
    makeWritable();
    if (state_.clip.empty()) {
        return;
    }
    const auto opacity = static_cast<std::uint8_t>(std::lround(layer.opacity * 255));
    if (!(layer.shadow.opacity > 0)) {
        compositeAll(view, opacity, *memory_);
    } else if (opacity == 255) {
        castShadow(view, layer.shadow, *memory_);
        compositeAll(view, opacity, *memory_);
    } else {
        // The shadow does not shine through what covers it: the two become one picture first.
        platform::Data group(memoryBytesPerRow_ * configuration_.size.height);
        castShadow(view, layer.shadow, group);
        compositeAll(view, 255, group);
        compositeAll({group.data(), view.width, view.height, view.bytesPerRow}, opacity, *memory_);
    }
}

void DesktopGraphicsContext::compositeAll(const PixelView& content, std::uint8_t opacity,
                                          platform::Data& memory) const {
    const std::size_t left = unsignedOf(state_.clip.left);
    for (std::int64_t y = state_.clip.top; y < state_.clip.bottom; ++y) {
        compositeRow(memory.data() + unsignedOf(y) * memoryBytesPerRow_ + left * 4,
                     content.row(unsignedOf(y)) + left * 4,
                     unsignedOf(state_.clip.right - state_.clip.left), opacity, nullptr);
    }
}

void DesktopGraphicsContext::castShadow(const PixelView& content, const Shadow& shadow,
                                        platform::Data& memory) const {
    // The content's extent, so that blurring costs what is there.
    PixelRect extent{static_cast<std::int64_t>(content.width),
                     static_cast<std::int64_t>(content.height), 0, 0};
    for (std::size_t y = 0; y < content.height; ++y) {
        for (std::size_t x = 0; x < content.width; ++x) {
            if (content.row(y)[x * 4 + 3] != 0) {
                const auto column = static_cast<std::int64_t>(x);
                const auto line = static_cast<std::int64_t>(y);
                extent = {std::min(extent.left, column), std::min(extent.top, line),
                          std::max(extent.right, column + 1), std::max(extent.bottom, line + 1)};
            }
        }
    }
    const double deviation = std::clamp(shadow.radius * configuration_.scale, 0.0, 256.0);
    if (extent.empty() || !std::isfinite(deviation)) {
        return;
    }
    const auto margin = static_cast<std::int64_t>(std::ceil(deviation * 3));
    const std::size_t width = unsignedOf(extent.right - extent.left + 2 * margin);
    const std::size_t height = unsignedOf(extent.bottom - extent.top + 2 * margin);
    std::vector<std::uint8_t> coverage(width * height);
    for (std::int64_t y = extent.top; y < extent.bottom; ++y) {
        for (std::int64_t x = extent.left; x < extent.right; ++x) {
            coverage[unsignedOf(y - extent.top + margin) * width +
                     unsignedOf(x - extent.left + margin)] =
                content.row(unsignedOf(y))[unsignedOf(x) * 4 + 3];
        }
    }
    blurCoverage(coverage, width, height, deviation);
    const auto pixelsOf = [this](double points) {
        constexpr double kFar = 1e6;
        const double value = points * configuration_.scale;
        return std::isfinite(value) ? std::llround(std::clamp(value, -kFar, kFar)) : 0;
    };
    const std::int64_t left = extent.left - margin + pixelsOf(shadow.offset.x);
    const std::int64_t top = extent.top - margin + pixelsOf(shadow.offset.y);
    const PixelRect shown =
        intersection(state_.clip, {left, top, left + static_cast<std::int64_t>(width),
                                   top + static_cast<std::int64_t>(height)});
    const double alpha = std::clamp(shadow.color.alpha * shadow.opacity, 0.0, 1.0);
    if (shown.empty() || !(alpha > 0)) {
        return;
    }
    const auto byteOf = [alpha](double value, double factor) {
        return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * factor * 255));
    };
    const std::uint8_t color[4] = {byteOf(shadow.color.blue, alpha),
                                   byteOf(shadow.color.green, alpha),
                                   byteOf(shadow.color.red, alpha), byteOf(1, alpha)};
    const std::size_t count = unsignedOf(shown.right - shown.left);
    for (std::int64_t y = shown.top; y < shown.bottom; ++y) {
        std::uint8_t* row =
            coverage.data() + unsignedOf(y - top) * width + unsignedOf(shown.left - left);
        if (const std::uint8_t* clip = clipRow(shown.left, y)) {
            multiplyCoverage(row, clip, count);
        }
        compositeColorRow(
            memory.data() + unsignedOf(y) * memoryBytesPerRow_ + unsignedOf(shown.left) * 4, color,
            count, row);
    }
}

}  // namespace velmoranth::desktop
