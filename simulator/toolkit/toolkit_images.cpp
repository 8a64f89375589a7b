#include "simulator/toolkit/toolkit_images.h"

#include "desktop/image_io/bitmap_file.h"
#include "desktop/imaging/bitmap_image.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/toolkit/stock_images.h"
#include "simulator/toolkit/tinted_images.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace velmoranth::simulator {
namespace {

using platform::BitmapImageRef;
using platform::ImageRef;
using platform::NullableString;

constexpr std::size_t kMostRequests = 4096;
// A wallpaper at four times the pixels of the largest screen.
constexpr std::size_t kLargestWallpaperFile = std::size_t{128} * 1024 * 1024;

}  // namespace

ToolkitImages::ToolkitImages(const DeviceConfiguration& device,
                             const desktop::DesktopImages& images,
                             std::shared_ptr<const desktop::DeviceRoot> root,
                             std::string_view mainBundle)
    : device_(device), images_(images), root_(std::move(root)), mainBundle_(mainBundle) {
    for (const BundleCatalog& row : bundleCatalogs()) {
        if (isIn(row.systems, device.system)) {
            std::shared_ptr<LoadedBundle>& bundle = bundles_[std::string(row.identifier)];
            if (bundle == nullptr) {
                bundle = std::make_shared<LoadedBundle>(std::string(row.identifier),
                                                        std::string(row.path));
            }
        }
    }
}

platform::BundleRef ToolkitImages::bundle(std::string_view identifier) const {
    const auto found = bundles_.find(identifier);
    return found == bundles_.end() ? nullptr : found->second;
}

const BundleCatalog* ToolkitImages::catalog(std::string_view bundleIdentifier, CatalogKind kind,
                                            std::string_view name) const {
    for (const BundleCatalog& row : bundleCatalogs()) {
        if (row.identifier == bundleIdentifier && row.kind == kind &&
            isIn(row.systems, device_.system) &&
            std::ranges::find(row.names(), name) != row.names().end()) {
            return &row;
        }
    }
    return nullptr;
}

BitmapImageRef ToolkitImages::drawn(const BundleCatalog& catalog, const std::string& name,
                                    double side) {
    const std::scoped_lock lock(mutex_);
    const auto [entry, isNew] = drawn_.try_emplace({{&catalog, name}, side});
    if (isNew) {
        entry->second = bitmapOf(catalog.draw(name, side, device_.screen.scale));
    }
    return entry->second;
}

CatalogContents ToolkitImages::contents(const BundleCatalog& catalog, const std::string& name,
                                        double side) {
    return {.name = name,
            .draw = [this, &catalog, name, side] { return drawn(catalog, name, side); },
            .scale = device_.screen.scale,
            .takesTint = takesTint(catalog, name)};
}

std::shared_ptr<VectorGlyph> ToolkitImages::glyph(const NullableString& name,
                                                  const NullableString& bundleIdentifier,
                                                  double side) {
    // A side that is no number could not be looked up.
    if (!name || !bundleIdentifier || !(side > 0)) {
        return nullptr;
    }
    const BundleCatalog* const row = catalog(*bundleIdentifier, CatalogKind::glyphs, *name);
    return row == nullptr ? nullptr
                          : std::make_shared<VectorGlyph>(
                                contents(*row, *name, side),
                                std::make_shared<Catalog>(bundle(*bundleIdentifier)));
}

std::shared_ptr<NamedImage> ToolkitImages::namedImage(const NullableString& name,
                                                      const NullableString& bundleIdentifier) {
    if (!name || !bundleIdentifier) {
        return nullptr;
    }
    const BundleCatalog* const row = catalog(*bundleIdentifier, CatalogKind::images, *name);
    return row == nullptr ? nullptr : std::make_shared<NamedImage>(contents(*row, *name, 0));
}

ImageRef ToolkitImages::image(const BitmapImageRef& bitmap, const CatalogContents& contents) const {
    if (bitmap == nullptr || !contents.takesTint) {
        return image(bitmap, contents.scale);
    }
    return std::make_shared<TemplateImage>(bitmap, contents.scale,
                                           device_.system.major < 13
                                               ? desktop::ImageDescription::ios12
                                               : desktop::ImageDescription::ios13);
}

ImageRef ToolkitImages::image(const BitmapImageRef& bitmap, double scale) const {
    return bitmap == nullptr ? nullptr : images_.makeImage(bitmap, scale);
}

ImageRef ToolkitImages::tinted(const ImageRef& image, const platform::Color& tint) const {
    if (std::dynamic_pointer_cast<TemplateImage>(image) == nullptr) {
        return image;
    }
    const auto bitmap = desktop::DesktopBitmapImage::of(image->bitmap());
    const desktop::PixelView pixels = bitmap == nullptr ? desktop::PixelView{} : bitmap->pixels();
    if (pixels.empty()) {
        return image;
    }
    const std::array<double, 4> components{tint.blue, tint.green, tint.red, 1};
    auto filled = std::make_shared<platform::Data>();
    filled->reserve(pixels.width * pixels.height * 4);
    for (std::size_t y = 0; y < pixels.height; ++y) {
        for (std::size_t x = 0; x < pixels.width; ++x) {
            const double alpha = pixels.row(y)[x * 4 + 3] * tint.alpha;
            for (const double component : components) {
                filled->push_back(static_cast<std::uint8_t>(std::lround(alpha * component)));
            }
        }
    }
    return images_.makeImage(
        desktop::DesktopBitmapImage::createPremultiplied(
            std::move(filled), {pixels.width, pixels.height}, pixels.width * 4),
        image->scale());
}

ImageRef ToolkitImages::stockImage(const std::string& name, const std::string& bundleIdentifier,
                                   double glyphSide) {
    if (const auto found = namedImage(name, bundleIdentifier)) {
        return image(found->contents().draw(), found->contents());
    }
    if (const auto found = glyph(name, bundleIdentifier, glyphSide)) {
        return image(found->contents().draw(), found->contents());
    }
    return nullptr;
}

ImageRef ToolkitImages::switchKnob() {
    const std::scoped_lock lock(mutex_);
    ImageRef& knob = switchParts_["knob"];
    if (knob == nullptr) {
        knob = image(bitmapOf(drawSwitchKnob(device_.screen.scale)), device_.screen.scale);
    }
    return knob;
}

ImageRef ToolkitImages::switchTrack(bool isOn) {
    const std::scoped_lock lock(mutex_);
    ImageRef& track = switchParts_[isOn ? "on" : "off"];
    if (track == nullptr) {
        track = image(bitmapOf(drawSwitchTrack(isOn, device_.system.major, device_.screen.scale)),
                      device_.screen.scale);
    }
    return track;
}

ImageRef ToolkitImages::storedWallpaper(const NullableString& path) const {
    if (!path || root_ == nullptr) {
        return nullptr;
    }
    const auto file = root_->readFile(*path, kLargestWallpaperFile);
    if (!file) {
        return nullptr;
    }
    auto decoded = desktop::decodeBitmapFile(*file);
    return decoded ? image(desktop::DesktopBitmapImage::create(std::move(*decoded)),
                           device_.screen.scale)
                   : nullptr;
}

void ToolkitImages::note(const NullableString& name, const NullableString& bundleIdentifier) {
    if (!name) {
        return;
    }
    const std::scoped_lock lock(mutex_);
    const auto found = std::ranges::find_if(requests_, [&](const NamedImageRequest& request) {
        return request.name == *name && request.bundleIdentifier == bundleIdentifier;
    });
    if (found != requests_.end()) {
        ++found->count;
    } else if (requests_.size() < kMostRequests) {
        requests_.push_back({*name, bundleIdentifier, 1});
    }
}

std::vector<NamedImageRequest> ToolkitImages::requests() const {
    const std::scoped_lock lock(mutex_);
    return requests_;
}

}  // namespace velmoranth::simulator
