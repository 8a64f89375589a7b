#include "desktop/core_ui/catalogs.h"

#include "desktop/catalog/pictures.h"
#include "desktop/catalog_pictures/draw_picture.h"
#include "desktop/core_ui/bundles.h"
#include "desktop/files/descriptor.h"
#include "desktop/files/file_errors.h"
#include "desktop/imaging/bitmap_image.h"
#include "platform/strings.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <utility>

namespace velmoranth::desktop {

using catalog::Attribute;
using catalog::Catalog;
using catalog::Kind;
using catalog::Rendition;
using platform::BitmapImageRef;
using platform::BundleRef;
using platform::ClassRef;
using platform::ObjectRef;
using platform::OpenedCatalog;

namespace {

// NSFileReadCorruptFileError.
constexpr int kCorruptFile = 259;

constexpr std::uint16_t kUniversal = 0;

BitmapImageRef bitmapOf(Result<DrawnImage> drawn) {
    if (!drawn) {
        return nullptr;
    }
    const std::size_t width = drawn->width;
    return DesktopBitmapImage::createPremultiplied(
        std::make_shared<const platform::Data>(std::move(drawn->bgra)), {width, drawn->height},
        width * 4);
}

// The attributes by which a picture is made for less than every device and setting, those that
// change most of what is seen first. A picture that leaves one of them open is taken before one
// that does not.
std::array<std::uint16_t, 8> restrictions(const Catalog& catalog, const Rendition& rendition) {
    return {catalog.attribute(rendition, Attribute::appearance),
            catalog.attribute(rendition, Attribute::horizontalSizeClass),
            catalog.attribute(rendition, Attribute::verticalSizeClass),
            catalog.attribute(rendition, Attribute::displayGamut),
            catalog.attribute(rendition, Attribute::memoryClass),
            catalog.attribute(rendition, Attribute::graphicsClass),
            catalog.attribute(rendition, Attribute::subtype),
            catalog.attribute(rendition, Attribute::deploymentTarget)};
}

// What is stored of a name's pictures, in the catalog's order: each copy of a picture by itself.
std::vector<const Rendition*> allCopiesOf(const Catalog& catalog, const catalog::Facet* facet) {
    std::vector<const Rendition*> copies;
    if (facet != nullptr) {
        for (const std::size_t index : catalog.renditionsOf(*facet)) {
            if (const Rendition& rendition = catalog.renditions()[index]; rendition.isPicture()) {
                copies.push_back(&rendition);
            }
        }
    }
    return copies;
}

// How far a picture of this scale is from the one asked for: the least larger one first, then the
// greatest smaller one.
std::pair<bool, double> scaleDistance(double scale, double wanted) {
    if (wanted == 0) {
        return {false, 0};
    }
    return scale >= wanted ? std::pair(false, scale - wanted) : std::pair(true, wanted - scale);
}

}  // namespace

DesktopNamedImage::DesktopNamedImage(std::shared_ptr<const Catalog> catalog, std::string name,
                                     const Rendition& rendition)
    : catalog_(std::move(catalog)), name_(std::move(name)), rendition_(rendition) {}

double DesktopNamedImage::scale() const {
    return pictureScale(*catalog_, rendition_);
}

BitmapImageRef DesktopNamedImage::createImageFromPDFRenditionWithScale(double scale) {
    if (rendition_.kind != Kind::vector) {
        return nullptr;
    }
    return bitmapOf(drawPicture(*catalog_, rendition_, scale));
}

BitmapImageRef DesktopNamedImage::image() {
    return rendition_.kind == Kind::vector ? nullptr
                                           : bitmapOf(drawPicture(*catalog_, rendition_, scale()));
}

DesktopCatalog::DesktopCatalog(Catalog catalog)
    : DesktopCatalog(std::make_shared<const Catalog>(std::move(catalog))) {}

DesktopCatalog::DesktopCatalog(std::shared_ptr<const Catalog> catalog)
    : catalog_(std::move(catalog)) {}

std::vector<std::string> DesktopCatalog::allImageNames() {
    std::vector<std::string> names;
    for (const catalog::Facet& facet : catalog_->facets()) {
        if (!allCopiesOf(*catalog_, &facet).empty()) {
            names.emplace_back(facet.name);
        }
    }
    return names;
}

ObjectRef DesktopCatalog::imageWithNameScaleFactor(const std::string& name, double scaleFactor) {
    return imageWithNameScaleFactorDeviceIdiom(name, scaleFactor, kUniversal);
}

ObjectRef DesktopCatalog::imageWithNameScaleFactorDeviceIdiom(const std::string& name,
                                                              double scaleFactor,
                                                              long deviceIdiom) {
    std::vector<const Rendition*> candidates = allCopiesOf(*catalog_, catalog_->facet(name));
    const auto idiom = [this](const Rendition* rendition) {
        return catalog_->attribute(*rendition, Attribute::idiom);
    };
    std::erase_if(candidates, [&](const Rendition* rendition) {
        return idiom(rendition) != kUniversal && idiom(rendition) != deviceIdiom;
    });
    const auto rank = [&](const Rendition* rendition) {
        return std::tuple(idiom(rendition) != deviceIdiom, restrictions(*catalog_, *rendition),
                          scaleDistance(pictureScale(*catalog_, *rendition), scaleFactor));
    };
    const auto best = std::ranges::min_element(candidates, {}, rank);
    return best == candidates.end() ? nullptr
                                    : std::make_shared<DesktopNamedImage>(catalog_, name, **best);
}

std::vector<ObjectRef> DesktopCatalog::imagesWithName(const std::string& name) {
    std::vector<ObjectRef> images;
    for (const Rendition* rendition : allCopiesOf(*catalog_, catalog_->facet(name))) {
        images.push_back(std::make_shared<DesktopNamedImage>(catalog_, name, *rendition));
    }
    return images;
}

DesktopCatalogClass::DesktopCatalogClass(std::shared_ptr<const DeviceRoot> root)
    : root_(std::move(root)) {}

OpenedCatalog DesktopCatalogClass::open(const std::string& path) const {
    const Descriptor file(root_->openFile(path, O_RDONLY));
    if (!file.isOpen()) {
        return {.catalog = nullptr, .error = fileError(FileOperation::read, errno, path)};
    }
    // By its descriptor: the path was resolved inside the root, and is not resolved again.
    Result<Catalog> catalog = Catalog::open("/proc/self/fd/" + std::to_string(file.get()));
    if (!catalog) {
        platform::Error error;
        error.code = kCorruptFile;
        error.localizedDescription = "The file “" + platform::lastPathComponent(path) +
                                     "” couldn’t be opened because it isn’t in the correct format.";
        return {.catalog = nullptr, .error = std::move(error)};
    }
    return {.catalog = std::make_shared<DesktopCatalog>(*std::move(catalog)), .error = {}};
}

OpenedCatalog DesktopCatalogClass::initWithURL(const ClassRef& cls, const std::string& path) {
    return cls == nullptr ? OpenedCatalog{} : open(path);
}

platform::CUICatalogRef DesktopCatalogClass::defaultUICatalogForBundle(const ClassRef& cls,
                                                                       const BundleRef& bundle) {
    return initWithNameFromBundle(cls, "Assets", bundle).catalog;
}

OpenedCatalog DesktopCatalogClass::initWithNameFromBundle(const ClassRef& cls,
                                                          const std::string& name,
                                                          const BundleRef& bundle) {
    if (cls == nullptr) {
        return {};
    }
    const std::string file = name + ".car";
    const auto folder = std::dynamic_pointer_cast<DesktopBundle>(bundle);
    const std::string path = folder == nullptr ? std::string() : folder->pathForResource(file);
    if (path.empty()) {
        return {.catalog = nullptr, .error = fileError(FileOperation::read, ENOENT, file)};
    }
    return open(path);
}

}  // namespace velmoranth::desktop
