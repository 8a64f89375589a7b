// What gives every app icon the theme's common treatment: mask, overlay, shadow, reflection,
// scaling, and the removal of tagged effect views. The effect images come from the first active
// theme that has them. Overlay and shadow image are kept until they are cleared; the mask is
// searched for on every call. The overlay is asked for on any thread and kept under a lock, the
// shadow on the main thread alone.
#pragma once

#include "platform/uikit.h"

namespace velmoranth::imaging {

class IconEffects {
  public:
    // The theme's mask image, nil when it has none. Logs its result on every call.
    [[nodiscard]] static platform::ImageRef iconMask();
    // Has no effect: the mask is kept nowhere. It stands beside the other two for the theme change.
    static void clearIconMask();
    // A new image at scale 1: the image where the mask's stored samples let it show. Nil when
    // either has no bitmap or the mask's layout makes no image mask.
    [[nodiscard]] static platform::ImageRef maskImageWithMask(const platform::ImageRef& image,
                                                              const platform::ImageRef& mask);

    // The theme's overlay image for this kind of device, nil when it has none.
    [[nodiscard]] static platform::ImageRef iconOverlay();
    static void clearIconOverlay();
    // The icon with the overlay stretched over it, at the screen's scale; the icon itself, after a
    // log line, when the theme has no overlay.
    [[nodiscard]] static platform::ImageRef redrawIconWithOverlay(const platform::ImageRef& icon);

    // A new image view with the theme's shadow, tagged and framed; without an image when the theme
    // has none. Never nil.
    static platform::ImageViewRef addShadowToIcon();
    static void clearShadowImg();

    // The lowest `height` points of the view, fading out; nil for a height of 0 (pixels).
    [[nodiscard]] static platform::ImageRef reflectedImageWithHeight(const platform::ViewRef& view,
                                                                     unsigned height);
    // The image redrawn at that size in points; its aspect ratio is not kept.
    [[nodiscard]] static platform::ImageRef imageWithImageScaledToSize(
        const platform::ImageRef& image, platform::Size size);

    // Each removes the first view with its tag from the trees of the view's direct subviews, at
    // most one a call.
    static void removeAllOverlaysfrom(const platform::ViewRef& view);
    static void removeAllShadowsfrom(const platform::ViewRef& view);
    static void removeFolderfrom(const platform::ViewRef& view);
    static void removeReflectedIconsfrom(const platform::ViewRef& view);
};

}  // namespace velmoranth::imaging
