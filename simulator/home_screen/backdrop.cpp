#include "simulator/home_screen/backdrop.h"

#include "desktop/imaging/compositing.h"
#include "desktop/imaging/graphics_context.h"
#include "simulator/artwork/artwork.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace velmoranth::simulator {
namespace {

using desktop::DesktopBitmapImage;
using desktop::DesktopGraphicsContext;
using desktop::MutablePixels;

constexpr std::size_t kChannels = 4;

// The mean of 2 × radius + 1 neighbours for each pixel of a line; beyond its ends the end counts.
void averageLine(std::uint8_t* line, std::size_t count, std::size_t step, int radius,
                 std::vector<std::uint8_t>& copy) {
    copy.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        copy[i] = line[i * step];
    }
    const auto last = static_cast<std::ptrdiff_t>(count) - 1;
    const auto at = [&](std::ptrdiff_t i) -> int {
        return copy[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(i, 0, last))];
    };
    const int width = 2 * radius + 1;
    int sum = 0;
    for (int i = -radius; i <= radius; ++i) {
        sum += at(i);
    }
    for (std::ptrdiff_t i = 0; i <= last; ++i) {
        line[static_cast<std::size_t>(i) * step] =
            static_cast<std::uint8_t>((sum + width / 2) / width);
        sum += at(i + radius + 1) - at(i - radius);
    }
}

// Three rounds of averaging come close to a Gaussian with this deviation.
void blur(const MutablePixels& pixels, double deviation) {
    constexpr int kRounds = 3;
    const int radius = std::max(
        1, static_cast<int>(std::lround((std::sqrt(4 * deviation * deviation + 1) - 1) / 2)));
    std::vector<std::uint8_t> copy;
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            for (std::size_t y = 0; y < pixels.height; ++y) {
                averageLine(pixels.row(y) + channel, pixels.width, kChannels, radius, copy);
            }
            for (std::size_t x = 0; x < pixels.width; ++x) {
                averageLine(pixels.data + x * kChannels + channel, pixels.height,
                            pixels.bytesPerRow, radius, copy);
            }
        }
    }
}

void multiplyByShape(const MutablePixels& pixels, double cornerRadius) {
    if (!(cornerRadius > 0)) {
        return;
    }
    const std::vector<std::uint8_t> coverage = continuousCornerCoverage(
        static_cast<int>(pixels.width), static_cast<int>(pixels.height), cornerRadius);
    if (coverage.size() != pixels.width * pixels.height) {
        return;
    }
    for (std::size_t y = 0; y < pixels.height; ++y) {
        desktop::multiplyRow(pixels.row(y), pixels.row(y), pixels.width,
                             coverage.data() + y * pixels.width);
    }
}

// The part of the wallpaper under the frame, at about 1 / shrink of its pixels. The frame fills the
// outermost pixels too: half of one beyond the wallpaper would let the material shine through.
std::shared_ptr<DesktopGraphicsContext> shrunkPart(const desktop::PixelView& wallpaper,
                                                   const platform::Rect& frame, double scale,
                                                   double shrink) {
    const auto pixels = [&](double points) {
        return std::max(1.0, std::round(points * scale / shrink));
    };
    const platform::Size size{pixels(frame.size.width), pixels(frame.size.height)};
    auto part = DesktopGraphicsContext::create(
        {.size = {static_cast<std::size_t>(size.width), static_cast<std::size_t>(size.height)}});
    if (part != nullptr) {
        const double perPointX = size.width / frame.size.width;
        const double perPointY = size.height / frame.size.height;
        part->drawPixels(wallpaper, {{-frame.origin.x * perPointX, -frame.origin.y * perPointY},
                                     {static_cast<double>(wallpaper.width) / scale * perPointX,
                                      static_cast<double>(wallpaper.height) / scale * perPointY}});
    }
    return part;
}

// Nil for a size that cannot be drawn.
std::shared_ptr<DesktopGraphicsContext> makeContext(platform::Size size, double scale) {
    return DesktopGraphicsContext::create(
        {.size = {static_cast<std::size_t>(std::lround(size.width * scale)),
                  static_cast<std::size_t>(std::lround(size.height * scale))},
         .scale = scale});
}

}  // namespace

std::shared_ptr<DesktopBitmapImage> makeBackdrop(const desktop::PixelView& wallpaper,
                                                 const platform::Rect& frame, double scale,
                                                 const BackdropStyle& style) {
    if (wallpaper.empty() || !(frame.size.width > 0) || !(frame.size.height > 0)) {
        return nullptr;
    }
    // A blur hides what is smaller than it, so it is made at a fraction of the pixels.
    const double shrink = std::max(1.0, style.blurRadius * scale / 6);
    const auto part = shrunkPart(wallpaper, frame, scale, shrink);
    const auto whole = makeContext(frame.size, scale);
    if (part == nullptr || whole == nullptr) {
        return nullptr;
    }
    blur(part->mutablePixels(), style.blurRadius * scale / shrink);
    const platform::Rect bounds{{0, 0}, frame.size};
    whole->drawPixels(part->pixels(), bounds);
    whole->fillRect(bounds, style.tint);
    multiplyByShape(whole->mutablePixels(), style.cornerRadius * scale);
    return std::dynamic_pointer_cast<DesktopBitmapImage>(whole->createImage());
}

std::shared_ptr<DesktopBitmapImage> makePlate(platform::Size size, double scale,
                                              const platform::Color& color, double cornerRadius) {
    const auto plate = makeContext(size, scale);
    if (plate == nullptr) {
        return nullptr;
    }
    plate->fillRect({{0, 0}, size}, color);
    multiplyByShape(plate->mutablePixels(), cornerRadius * scale);
    return std::dynamic_pointer_cast<DesktopBitmapImage>(plate->createImage());
}

}  // namespace velmoranth::simulator
