// The interface images that a process of the device has before anything is replaced: those of its
// bundles' catalogs, the parts of a switch, and stored wallpapers. Pictures are drawn when first
// asked for and shared from then on. It notes what is asked for by name, so that a test or a person
// can see what reached the platform. Safe on any thread.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/imaging/images.h"
#include "platform/uikit.h"
#include "simulator/device.h"
#include "simulator/toolkit/device_bundles.h"
#include "simulator/toolkit/toolkit_objects.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::simulator {

// How often an image was asked for; nil for a request without a bundle's identifier.
struct NamedImageRequest {
    std::string name;
    platform::NullableString bundleIdentifier;
    int count = 0;

    friend bool operator==(const NamedImageRequest&, const NamedImageRequest&) = default;
};

class ToolkitImages {
  public:
    // `images` must outlive this object. A nil root has no stored wallpapers; a main bundle that
    // the device does not have is nil.
    ToolkitImages(const DeviceConfiguration& device, const desktop::DesktopImages& images,
                  std::shared_ptr<const desktop::DeviceRoot> root, std::string_view mainBundle);

    // Pixels per point of the screen that the pictures are drawn for.
    [[nodiscard]] double scale() const { return device_.screen.scale; }

    // The device's bundle of that identifier, always the same object; nil when it has none.
    [[nodiscard]] platform::BundleRef bundle(std::string_view identifier) const;

    // That of the process's own program.
    [[nodiscard]] platform::BundleRef mainBundle() const { return bundle(mainBundle_); }

    // What the catalog of the bundle with that identifier has under the name; nil when it has no
    // such thing, and for nil.
    [[nodiscard]] std::shared_ptr<VectorGlyph> glyph(
        const platform::NullableString& name, const platform::NullableString& bundleIdentifier,
        double side);
    [[nodiscard]] std::shared_ptr<NamedImage> namedImage(
        const platform::NullableString& name, const platform::NullableString& bundleIdentifier);

    // UIImages of the process's kind; nil for a nil bitmap. That of a catalog's contents takes a
    // tint where they do.
    [[nodiscard]] platform::ImageRef image(const platform::BitmapImageRef& bitmap,
                                           const CatalogContents& contents) const;
    [[nodiscard]] platform::ImageRef image(const platform::BitmapImageRef& bitmap,
                                           double scale) const;

    // An image that takes a tint, filled with it; every other as it is.
    [[nodiscard]] platform::ImageRef tinted(const platform::ImageRef& image,
                                            const platform::Color& tint) const;

    // The bundle's image or glyph as it is without any message; nil when there is none.
    [[nodiscard]] platform::ImageRef stockImage(const std::string& name,
                                                const std::string& bundleIdentifier,
                                                double glyphSide = kGlyphSide);

    // The switch's knob with its shadow, always the same object, and its track.
    [[nodiscard]] platform::ImageRef switchKnob();
    [[nodiscard]] platform::ImageRef switchTrack(bool isOn);

    // The stored wallpaper at that path of the device, at the screen's scale; nil when it is
    // missing, no such file, or too large.
    [[nodiscard]] platform::ImageRef storedWallpaper(const platform::NullableString& path) const;

    // Notes a request for a name. Nil and names beyond the first few thousand are not noted.
    void note(const platform::NullableString& name,
              const platform::NullableString& bundleIdentifier);
    // What was noted, in the order of each one's first request.
    [[nodiscard]] std::vector<NamedImageRequest> requests() const;

  private:
    // Catalog, name, a glyph's side.
    using Key = std::pair<std::pair<const BundleCatalog*, std::string>, double>;

    [[nodiscard]] const BundleCatalog* catalog(std::string_view bundleIdentifier, CatalogKind kind,
                                               std::string_view name) const;
    [[nodiscard]] CatalogContents contents(const BundleCatalog& catalog, const std::string& name,
                                           double side);
    [[nodiscard]] platform::BitmapImageRef drawn(const BundleCatalog& catalog,
                                                 const std::string& name, double side);

    DeviceConfiguration device_;
    const desktop::DesktopImages& images_;
    std::shared_ptr<const desktop::DeviceRoot> root_;
    std::string mainBundle_;
    std::map<std::string, std::shared_ptr<LoadedBundle>, std::less<>> bundles_;

    mutable std::mutex mutex_;
    std::map<Key, platform::BitmapImageRef> drawn_;
    std::map<std::string, platform::ImageRef, std::less<>> switchParts_;
    std::vector<NamedImageRequest> requests_;
};

}  // namespace velmoranth::simulator
