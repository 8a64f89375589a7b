// The context's clips, fills and pictures: everything that puts a rectangle on pixels.
#include "desktop/imaging/compositing.h"
#include "desktop/imaging/coverage.h"
#include "desktop/imaging/graphics_context.h"
#include "desktop/imaging/resampling.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace velmoranth::desktop {

using platform::Rect;

namespace {

// Edges that the arithmetic leaves a hair beside a pixel's are on it.
constexpr double kPixelTolerance = 1e-6;
// Farther away nothing is drawn exactly; it keeps the arithmetic in whole numbers in range.
constexpr double kFarthest = 1e7;

double snapped(double position) {
    const double nearest = std::round(position);
    return std::abs(position - nearest) < kPixelTolerance ? nearest : position;
}

bool isWhole(double position) {
    return position == std::round(position);
}

std::size_t unsignedOf(std::int64_t value) {
    return static_cast<std::size_t>(value);
}

std::uint8_t opacityByte(double opacity) {
    return opacity > 0 ? static_cast<std::uint8_t>(std::lround(std::min(opacity, 1.0) * 255)) : 0;
}

}  // namespace

bool DesktopGraphicsContext::toDevice(const Rect& rect, DeviceRect& device) const {
    const UserTransform& transform = state_.transform;
    const double x0 = snapped(transform.scaleX * rect.origin.x + transform.offsetX);
    const double x1 =
        snapped(transform.scaleX * (rect.origin.x + rect.size.width) + transform.offsetX);
    const double y0 = snapped(transform.scaleY * rect.origin.y + transform.offsetY);
    const double y1 =
        snapped(transform.scaleY * (rect.origin.y + rect.size.height) + transform.offsetY);
    device = {.left = std::min(x0, x1),
              .top = std::min(y0, y1),
              .right = std::max(x0, x1),
              .bottom = std::max(y0, y1),
              .flippedX = x1 < x0,
              .flippedY = y1 < y0};
    const auto inRange = [](double value) { return std::abs(value) <= kFarthest; };
    return rect.size.width > 0 && rect.size.height > 0 && inRange(device.left) &&
           inRange(device.top) && inRange(device.right) && inRange(device.bottom) &&
           device.left < device.right && device.top < device.bottom;
}

PixelRect DesktopGraphicsContext::visible(const DeviceRect& device) const {
    const auto floorOf = [](double value) { return static_cast<std::int64_t>(std::floor(value)); };
    const auto ceilOf = [](double value) { return static_cast<std::int64_t>(std::ceil(value)); };
    return {std::max(state_.clip.left, floorOf(device.left)),
            std::max(state_.clip.top, floorOf(device.top)),
            std::min(state_.clip.right, ceilOf(device.right)),
            std::min(state_.clip.bottom, ceilOf(device.bottom))};
}

bool DesktopGraphicsContext::isSharp(const DeviceRect& device, double cornerRadius) {
    return !(cornerRadius > 0) && isWhole(device.left) && isWhole(device.top) &&
           isWhole(device.right) && isWhole(device.bottom);
}

std::vector<std::uint8_t> DesktopGraphicsContext::shapeCoverage(const DeviceRect& device,
                                                                double cornerRadius,
                                                                const PixelRect& shown) const {
    const double radius = std::max(cornerRadius, 0.0);
    const auto left = static_cast<double>(shown.left);
    const auto top = static_cast<double>(shown.top);
    return coverageOf({.left = device.left - left,
                       .top = device.top - top,
                       .right = device.right - left,
                       .bottom = device.bottom - top,
                       .radiusX = radius * std::abs(state_.transform.scaleX),
                       .radiusY = radius * std::abs(state_.transform.scaleY)},
                      shown.width(), shown.height());
}

const std::uint8_t* DesktopGraphicsContext::clipRow(std::int64_t x, std::int64_t y) const {
    if (state_.clipMask == nullptr) {
        return nullptr;
    }
    const std::size_t width = state_.clip.width();
    return state_.clipMask->data() + unsignedOf(y - state_.clip.top) * width +
           unsignedOf(x - state_.clip.left);
}

void DesktopGraphicsContext::clipToRect(const Rect& rect, double cornerRadius) {
    DeviceRect device;
    if (!toDevice(rect, device)) {
        state_.clip = {};
        state_.clipMask = nullptr;
        return;
    }
    const PixelRect shown = visible(device);
    if (shown.empty() || (isSharp(device, cornerRadius) && state_.clipMask == nullptr)) {
        state_.clip = shown.empty() ? PixelRect{} : shown;
        state_.clipMask = nullptr;
        return;
    }
    const std::size_t width = shown.width();
    const std::size_t height = shown.height();
    auto mask =
        std::make_shared<std::vector<std::uint8_t>>(shapeCoverage(device, cornerRadius, shown));
    if (state_.clipMask != nullptr) {
        for (std::size_t y = 0; y < height; ++y) {
            multiplyCoverage(mask->data() + y * width,
                             clipRow(shown.left, shown.top + static_cast<std::int64_t>(y)), width);
        }
    }
    state_.clip = shown;
    state_.clipMask = std::move(mask);
}

void DesktopGraphicsContext::fillRect(const Rect& rect, const platform::Color& color,
                                      double cornerRadius) {
    DeviceRect device;
    const double alpha = std::clamp(color.alpha, 0.0, 1.0);
    if (!(alpha > 0) || !toDevice(rect, device)) {
        return;
    }
    const PixelRect shown = visible(device);
    if (shown.empty()) {
        return;
    }
    const std::size_t width = shown.width();
    const std::size_t height = shown.height();
    std::vector<std::uint8_t> coverage;
    if (!isSharp(device, cornerRadius)) {
        coverage = shapeCoverage(device, cornerRadius, shown);
    }
    const auto byteOf = [alpha](double value) {
        return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * alpha * 255));
    };
    const std::uint8_t pixel[4] = {byteOf(color.blue), byteOf(color.green), byteOf(color.red),
                                   byteOf(1)};
    makeWritable();
    for (std::size_t y = 0; y < height; ++y) {
        const std::int64_t line = shown.top + static_cast<std::int64_t>(y);
        const std::uint8_t* factors = clipRow(shown.left, line);
        if (!coverage.empty()) {
            std::uint8_t* row = coverage.data() + y * width;
            if (factors != nullptr) {
                multiplyCoverage(row, factors, width);
            }
            factors = row;
        }
        compositeColorRow(surface_.at(shown.left, line), pixel, width, factors);
    }
}

void DesktopGraphicsContext::drawImage(const platform::BitmapImageRef& image, const Rect& rect,
                                       double opacity) {
    const auto bitmap = DesktopBitmapImage::of(image);
    if (bitmap == nullptr || drawStretched(*bitmap, rect, opacity)) {
        return;
    }
    drawPixels(bitmap->pixels(), rect, opacity);
}

bool DesktopGraphicsContext::drawStretched(const DesktopBitmapImage& image, const Rect& rect,
                                           double opacity) {
    DeviceRect device;
    const std::uint8_t byte = opacityByte(opacity);
    if (byte == 0 || !toDevice(rect, device) || device.flippedX || device.flippedY ||
        !isSharp(device, 0)) {
        return false;
    }
    const PixelRect shown = visible(device);
    const PixelSize size{static_cast<std::size_t>(device.right - device.left),
                         static_cast<std::size_t>(device.bottom - device.top)};
    // Of one that is cut off no more is stretched than is seen.
    if (shown.empty() || PixelSize{shown.width(), shown.height()} != size) {
        return false;
    }
    const Samples stretched = image.stretched(size);
    if (stretched != nullptr) {
        blit({stretched->data(), size.width, size.height, size.width * 4}, device, byte);
    }
    return stretched != nullptr;
}

void DesktopGraphicsContext::drawPixels(const PixelView& source, const Rect& rect, double opacity) {
    DeviceRect device;
    const std::uint8_t byte = opacityByte(opacity);
    if (source.empty() || byte == 0 || !toDevice(rect, device) || visible(device).empty()) {
        return;
    }
    const bool copies = !device.flippedX && !device.flippedY && isWhole(device.left) &&
                        isWhole(device.top) &&
                        device.right - device.left == static_cast<double>(source.width) &&
                        device.bottom - device.top == static_cast<double>(source.height);
    if (copies) {
        blit(source, device, byte);
    } else {
        resample(source, device, byte);
    }
}

// What begins as a picture that fills it all is copied, not cleared and then drawn on.
bool DesktopGraphicsContext::startsAs(const PixelRect& shown, std::uint8_t opacity) const {
    return surface_.memory == nullptr && shown == surface_.area && opacity == 255 &&
           state_.clipMask == nullptr && (!layers_.empty() || !startsBlack());
}

void DesktopGraphicsContext::blit(const PixelView& source, const DeviceRect& device,
                                  std::uint8_t opacity) {
    const PixelRect shown = visible(device);
    const std::size_t width = shown.width();
    if (startsAs(shown, opacity) && source.bytesPerRow == surface_.bytesPerRow &&
        source.width == shown.width() && source.height == shown.height()) {
        surface_.memory = std::make_shared<platform::Data>(
            source.data, source.data + source.bytesPerRow * source.height);
        surface_.shared = false;
        return;
    }
    makeWritable();
    const std::size_t skippedColumns =
        unsignedOf(shown.left - static_cast<std::int64_t>(device.left));
    for (std::int64_t y = shown.top; y < shown.bottom; ++y) {
        const std::size_t line = unsignedOf(y - static_cast<std::int64_t>(device.top));
        compositeRow(surface_.at(shown.left, y), source.row(line) + skippedColumns * 4, width,
                     opacity, clipRow(shown.left, y));
    }
}

void DesktopGraphicsContext::resample(const PixelView& source, const DeviceRect& device,
                                      std::uint8_t opacity) {
    const PixelRect shown = visible(device);
    Resampler resampler(source,
                        {.start = device.left,
                         .end = device.right,
                         .flipped = device.flippedX,
                         .sourceSize = source.width,
                         .first = shown.left,
                         .last = shown.right},
                        {.start = device.top,
                         .end = device.bottom,
                         .flipped = device.flippedY,
                         .sourceSize = source.height,
                         .first = shown.top,
                         .last = shown.bottom});
    if (startsAs(shown, opacity) && isSharp(device, 0) &&
        surface_.bytesPerRow == shown.width() * 4) {
        auto memory = std::make_shared<platform::Data>();
        memory->reserve(surface_.bytesPerRow * shown.height());
        for (std::size_t y = 0; y < shown.height(); ++y) {
            const std::uint8_t* const row = resampler.row(y);
            memory->insert(memory->end(), row, row + surface_.bytesPerRow);
        }
        surface_.memory = std::move(memory);
        surface_.shared = false;
        return;
    }
    makeWritable();
    const std::size_t width = shown.width();
    std::vector<std::uint8_t> factors(width);
    for (std::int64_t y = shown.top; y < shown.bottom; ++y) {
        const std::size_t index = unsignedOf(y - shown.top);
        const std::uint8_t* coverage = resampler.coverage(index);
        if (const std::uint8_t* clip = clipRow(shown.left, y)) {
            if (coverage == nullptr) {
                coverage = clip;
            } else {
                std::memcpy(factors.data(), coverage, width);
                multiplyCoverage(factors.data(), clip, width);
                coverage = factors.data();
            }
        }
        compositeRow(surface_.at(shown.left, y), resampler.row(index), width, opacity, coverage);
    }
}

}  // namespace velmoranth::desktop
