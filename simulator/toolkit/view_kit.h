// Plain pieces that the screens of apps are made of, and the colours of each system's light
// appearance.
#pragma once

#include "desktop/text/text.h"
#include "platform/uikit.h"
#include "simulator/device.h"

#include <string_view>

namespace velmoranth::simulator {

struct AppColors {
    platform::Color tint;
    platform::Color background;  // behind groups of rows
    platform::Color card;        // of a row
    platform::Color bar;
    platform::Color separator;
    platform::Color text;
    platform::Color secondaryText;
    platform::Color field;        // of a search field
    platform::Color destructive;  // of what cannot be taken back
};

[[nodiscard]] const AppColors& appColors(const SystemVersion& system);

[[nodiscard]] platform::ViewRef makeBox(const platform::Rect& frame, const platform::Color& color,
                                        double cornerRadius = 0);

[[nodiscard]] desktop::TextStyle textStyle(
    double size, const platform::Color& color,
    desktop::TextAlignment alignment = desktop::TextAlignment::left,
    desktop::FontWeight weight = desktop::FontWeight::regular);

[[nodiscard]] desktop::TextStyle centered(
    double size, const platform::Color& color,
    desktop::FontWeight weight = desktop::FontWeight::regular);
[[nodiscard]] desktop::TextStyle rightAligned(double size, const platform::Color& color);

// One line, cut off with "…" where it does not fit.
[[nodiscard]] platform::ViewRef makeText(std::string_view text, const desktop::TextStyle& style,
                                         const platform::Rect& frame);

// The share of its own size, at most 1, at which an image fits into the slot.
[[nodiscard]] double shareInSlot(platform::Size image, platform::Size slot);

// Where an image view goes: at its own size in the middle of the slot, on whole pixels; smaller,
// with its proportions, when it does not fit, or `share` says so.
[[nodiscard]] platform::Rect placeInSlot(platform::Size image, const platform::Rect& slot,
                                         double scale, double share = 1);

// An image view of that frame, over which the image is stretched; nil for nil.
[[nodiscard]] platform::ViewRef makeStretchedImage(const platform::ImageRef& image,
                                                   const platform::Rect& frame);

// An image view in the slot; nil for nil, which addSubview passes over.
[[nodiscard]] platform::ViewRef makeImage(const platform::ImageRef& image,
                                          const platform::Rect& slot, double scale,
                                          double share = 1);

// Points at the screen's bottom that belong to no control: on a screen without a home button.
[[nodiscard]] double bottomInset(const DeviceConfiguration& device);

[[nodiscard]] double statusBarHeight(const DeviceConfiguration& device);

}  // namespace velmoranth::simulator
