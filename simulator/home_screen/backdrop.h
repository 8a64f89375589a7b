// The materials of the home screen, in shapes with continuous corners: what lies behind a dock or a
// folder, blurred and tinted, and plates of one colour.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/imaging/pixels.h"
#include "platform/core_graphics.h"

#include <memory>

namespace velmoranth::simulator {

struct BackdropStyle {
    double blurRadius = 20;  // points, the standard deviation
    platform::Color tint{1, 1, 1, 0.22};
    double cornerRadius = 0;  // points
};

// The material for `frame` (points) of a screen whose wallpaper is `wallpaper`, at `scale` pixels
// per point. Nil when the frame is empty or not on the wallpaper.
[[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> makeBackdrop(
    const desktop::PixelView& wallpaper, const platform::Rect& frame, double scale,
    const BackdropStyle& style);

// `size` points of that colour. Nil for a size that cannot be drawn.
[[nodiscard]] std::shared_ptr<desktop::DesktopBitmapImage> makePlate(platform::Size size,
                                                                     double scale,
                                                                     const platform::Color& color,
                                                                     double cornerRadius);

}  // namespace velmoranth::simulator
