// The platform's own images of app icons, as the process keeps them: drawn when first asked for,
// shared from then on. It counts what is asked for, so that a test or a person can see how often a
// replaced method went to the platform.
#pragma once

#include "desktop/imaging/images.h"
#include "platform/uikit.h"
#include "simulator/artwork/artwork.h"

#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace velmoranth::simulator {

enum class IconMasking {
    masked,    // in the rounded shape that the home screen shows
    unmasked,  // square, as the app brings it
};

class StockImages {
  public:
    // `images` must outlive this object.
    explicit StockImages(const desktop::DesktopImages& images) : images_(images) {}

    // The app's icon, `side` points at `scale` pixels per point. An app that is not there has the
    // generic icon. Nil for a size that is not positive or too large. Safe on any thread.
    [[nodiscard]] platform::ImageRef icon(const std::string& bundleIdentifier, double side,
                                          double scale, IconMasking masking);

    // The furniture's images, at `scale` pixels per point. Nil for a size that cannot be drawn.
    // The background of a badge of that size (points).
    [[nodiscard]] platform::ImageRef badgeBackground(platform::Size size, double scale) const;
    // A dot of the page control, `side` points across: of the current page, or of another.
    [[nodiscard]] platform::ImageRef pageDot(double side, double scale, bool isCurrent) const;
    // The magnifier that stands for the search page.
    [[nodiscard]] platform::ImageRef searchDot(double side, double scale, bool isCurrent) const;
    // Black, in the shape of an icon of `side` points.
    [[nodiscard]] platform::ImageRef darkeningOverlay(double side, double scale) const;
    // The hairline along the top of a dock.
    [[nodiscard]] platform::ImageRef dockHighlight(double width, double scale) const;
    // The line between a floating dock's two lists.
    [[nodiscard]] platform::ImageRef dockDivider(double height, double scale) const;
    // Of a floating dock's platter; reaches kPlatterShadowReach beyond it on every side.
    [[nodiscard]] platform::ImageRef platterShadow(platform::Size size, double cornerRadius,
                                                   double scale) const;

    // How often icon() was called for the app.
    [[nodiscard]] int requests(const std::string& bundleIdentifier) const;

  private:
    struct Key {
        std::string bundleIdentifier;
        int pixels;
        double scale;
        IconMasking masking;

        friend auto operator<=>(const Key&, const Key&) = default;
    };

    [[nodiscard]] platform::ImageRef image(FurniturePicture picture, double scale) const;

    const desktop::DesktopImages& images_;
    mutable std::mutex mutex_;
    std::map<Key, platform::ImageRef> icons_;
    std::map<std::string, int> requests_;
};

}  // namespace velmoranth::simulator
