#include "desktop/imaging/graphics_context.h"

#include "desktop/imaging/compositing.h"
#include "desktop/imaging/coverage.h"
#include "desktop/imaging/gradient.h"

#include "record/operations.h"
#include "record/recorder.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmoranth::desktop {

using platform::Color;

namespace {

PixelRect whole(PixelSize size) {
    return {0, 0, static_cast<std::int64_t>(size.width), static_cast<std::int64_t>(size.height)};
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
    : configuration_(configuration) {
    const bool upwards = configuration.origin == Origin::bottomLeft;
    state_.transform = {.scaleX = configuration.scale,
                        .scaleY = upwards ? -configuration.scale : configuration.scale,
                        .offsetX = 0,
                        .offsetY = upwards ? static_cast<double>(configuration.size.height) : 0};
    state_.clip = whole(configuration.size);
    const std::size_t tight = configuration.size.width * 4;
    surface_.area = state_.clip;
    surface_.bytesPerRow =
        configuration.content == Content::gray ? tight : std::max(configuration.bytesPerRow, tight);
}

void DesktopGraphicsContext::makeWritable(Surface& surface, bool black) {
    if (surface.memory == nullptr) {
        surface.memory =
            std::make_shared<platform::Data>(surface.bytesPerRow * surface.area.height());
        if (black) {
            makeOpaqueBlack(*surface.memory);
        }
    } else if (surface.shared) {
        surface.memory = std::make_shared<platform::Data>(*surface.memory);
    }
    surface.shared = false;
}

void DesktopGraphicsContext::makeWritable() {
    makeWritable(surface_, layers_.empty() && startsBlack());
}

PixelView DesktopGraphicsContext::pixels() {
    Surface& surface = base();
    if (surface.memory == nullptr) {
        makeWritable(surface, startsBlack());
    }
    return {surface.memory->data(), configuration_.size.width, configuration_.size.height,
            surface.bytesPerRow};
}

MutablePixels DesktopGraphicsContext::mutablePixels() {
    Surface& surface = base();
    makeWritable(surface, startsBlack());
    return {surface.memory->data(), configuration_.size.width, configuration_.size.height,
            surface.bytesPerRow};
}

platform::BitmapImageRef DesktopGraphicsContext::createImage() {
    record::tell(*this, record::messageOf("GraphicsContext", "createImage"));
    const PixelView view = pixels();
    if (configuration_.content != Content::gray) {
        base().shared = true;
        return DesktopBitmapImage::createPremultiplied(base().memory, configuration_.size,
                                                       view.bytesPerRow,
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
    record::tell(*this, record::messageOf("GraphicsContext", "translateCTM"), x, y);
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
    record::tell(*this, record::messageOf("GraphicsContext", "drawLinearGradient"), start, end,
                 options);
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
            compositeRow(surface_.at(x, y), pixel, 1, 255, clipRow(x, y));
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

}  // namespace velmoranth::desktop
