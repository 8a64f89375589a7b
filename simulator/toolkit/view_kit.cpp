#include "simulator/toolkit/view_kit.h"

#include "desktop/views/views.h"
#include "simulator/home_screen/home_screen_layout.h"

#include <algorithm>
#include <cstdint>

namespace velmoranth::simulator {
namespace {

using platform::Color;
using platform::Rect;
using platform::ViewRef;

constexpr Color rgb(std::uint32_t value) {
    return {((value >> 16) & 0xFF) / 255.0, ((value >> 8) & 0xFF) / 255.0, (value & 0xFF) / 255.0,
            1};
}

constexpr AppColors kColorsOf12{rgb(0x007AFF), rgb(0xEFEFF4), rgb(0xFFFFFF),
                                rgb(0xF7F7F7), rgb(0xC8C7CC), rgb(0x000000),
                                rgb(0x8E8E93), rgb(0xE3E3E6), rgb(0xFF3B30)};
constexpr AppColors kColorsOf13{rgb(0x007AFF), rgb(0xF2F2F7), rgb(0xFFFFFF),
                                rgb(0xF8F8F8), rgb(0xC6C6C8), rgb(0x000000),
                                rgb(0x8A8A8E), rgb(0xE4E4E8), rgb(0xFF3B30)};

const HomeScreenMetrics& metricsOf(const DeviceConfiguration& device) {
    return homeScreenMetrics(device.kind, device.screen);
}

}  // namespace

const AppColors& appColors(const SystemVersion& system) {
    return system.major < 13 ? kColorsOf12 : kColorsOf13;
}

ViewRef makeBox(const Rect& frame, const Color& color, double cornerRadius) {
    auto view = std::make_shared<desktop::DesktopView>(frame);
    view->setBackgroundColor(color);
    view->desktopLayer()->appearance.cornerRadius = cornerRadius;
    return view;
}

desktop::TextStyle textStyle(double size, const platform::Color& color,
                             desktop::TextAlignment alignment, desktop::FontWeight weight) {
    return {.weight = weight, .size = size, .color = color, .alignment = alignment};
}

desktop::TextStyle centered(double size, const Color& color, desktop::FontWeight weight) {
    return textStyle(size, color, desktop::TextAlignment::center, weight);
}

desktop::TextStyle rightAligned(double size, const Color& color) {
    return textStyle(size, color, desktop::TextAlignment::right);
}

ViewRef makeText(std::string_view text, const desktop::TextStyle& style, const Rect& frame) {
    auto label = std::make_shared<desktop::DesktopLabel>(std::string(text), style);
    label->setFrame(frame);
    return label;
}

double shareInSlot(platform::Size image, platform::Size slot) {
    return std::min({1.0, slot.width / image.width, slot.height / image.height});
}

Rect placeInSlot(platform::Size image, const Rect& slot, double scale, double share) {
    share = std::min(share, shareInSlot(image, slot.size));
    const platform::Size size{image.width * share, image.height * share};
    return {{snapToPixels(slot.origin.x + (slot.size.width - size.width) / 2, scale),
             snapToPixels(slot.origin.y + (slot.size.height - size.height) / 2, scale)},
            size};
}

ViewRef makeStretchedImage(const platform::ImageRef& image, const Rect& frame) {
    if (image == nullptr) {
        return nullptr;
    }
    auto view = std::make_shared<desktop::DesktopImageView>(frame);
    view->setImage(image);
    return view;
}

ViewRef makeImage(const platform::ImageRef& image, const Rect& slot, double scale, double share) {
    return image == nullptr
               ? nullptr
               : makeStretchedImage(image, placeInSlot(image->size(), slot, scale, share));
}

double bottomInset(const DeviceConfiguration& device) {
    constexpr double kTallStatusBar = 30;
    constexpr double kHomeIndicator = 34;
    return device.kind == DeviceKind::phone && statusBarHeight(device) > kTallStatusBar
               ? kHomeIndicator
               : 0;
}

double statusBarHeight(const DeviceConfiguration& device) {
    return metricsOf(device).statusBarHeight;
}

}  // namespace velmoranth::simulator
