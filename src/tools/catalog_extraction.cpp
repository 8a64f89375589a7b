#include "tools/catalog_extraction.h"

#include "core/format.h"
#include "platform/numbers.h"
#include "platform/platform.h"
#include "platform/strings.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace velmoranth::tools {

using core::NSLog;
using core::stringWithFormat;
using platform::BitmapImageRef;
using platform::BundleRef;
using platform::CUICatalog;
using platform::CUICatalogRef;
using platform::CUINamedImage;
using platform::ImageRef;
using platform::lastPathComponent;
using platform::NullableString;
using platform::ObjectRef;
using platform::OpenedCatalog;
using platform::platform;

namespace {

// The platform takes numbers of device kinds as they stand in catalogs.
constexpr long kPhoneIdiom = 1;
constexpr long kCarIdiom = 4;
// As a scale factor: whatever there is.
constexpr double kAnyScale = 0;

// Makes the catalog classes available to a process that has not loaded them.
void loadCoreUI() {
    platform().bundles.load(
        platform().bundles.bundleWithPath("/System/Library/PrivateFrameworks/CoreUI.framework"));
}

OpenedCatalog openCatalog(const std::string& path, const BundleRef& bundle) {
    const platform::ClassRef cls = platform().objc.getClass("CUICatalog");
    OpenedCatalog opened;
    if (isCatalogFile(path)) {
        opened = platform().catalogClass.initWithURL(cls, path);
    } else {
        opened.catalog = platform().catalogClass.defaultUICatalogForBundle(cls, bundle);
    }
    if (opened.catalog != nullptr && !opened.error) {
        return opened;
    }
    OpenedCatalog again = platform().catalogClass.initWithNameFromBundle(
        cls, platform::stringByDeletingPathExtension(lastPathComponent(path)), bundle);
    if (!again.error) {
        again.error = std::move(opened.error);
    }
    return again;
}

// Nil for an object that is no CUINamedImage.
std::shared_ptr<CUINamedImage> asNamedImage(const ObjectRef& object) {
    return object != nullptr &&
                   platform().objc.isKindOfClass(*object, platform().objc.getClass("CUINamedImage"))
               ? std::dynamic_pointer_cast<CUINamedImage>(object)
               : nullptr;
}

// False when there is no bitmap; a file that could not be written counts as well.
bool extractRendition(const ObjectRef& object, const std::string& folder) {
    const std::shared_ptr<CUINamedImage> rendition = asNamedImage(object);
    if (rendition == nullptr) {
        return false;
    }
    const NullableString name = rendition->name();
    const double scale = rendition->scale();
    BitmapImageRef bitmap = rendition->createImageFromPDFRenditionWithScale(scale);
    if (bitmap == nullptr) {
        bitmap = rendition->image();
    }
    if (bitmap == nullptr) {
        return false;
    }
    const std::string path =
        stringWithFormat("%@/%@", folder,
                         extractedFileName(name.value_or("(null)"), scale, bitmap->layout().width,
                                           bitmap->layout().height));
    NSLog("Extracting %s\n", path.c_str());
    const ImageRef image = platform().images.imageWithCGImage(bitmap);
    if (const std::optional<platform::Data> data = platform().images.pngRepresentation(image)) {
        platform().fileManager.writeToFileAtomically(*data, path);
    }
    return true;
}

int extractAll(CUICatalog& catalog, const std::vector<std::string>& names,
               const std::string& folder) {
    int count = 0;
    for (const std::string& name : names) {
        for (const ObjectRef& rendition : extractedRenditions(catalog, name)) {
            count += extractRendition(rendition, folder) ? 1 : 0;
        }
    }
    return count;
}

void logError(const std::optional<platform::Error>& error) {
    const std::string text = error ? platform::description(*error) : "(null)";
    NSLog("Velmoranth Assets %s", text.c_str());
}

void extractCatalog(const std::string& path, const std::string& extractionPath) {
    loadCoreUI();
    const BundleRef bundle = platform().bundles.bundleWithPath(path);
    const std::string folder = extractionFolder(path, extractionPath);
    if (!platform().fileManager.fileExistsAtPath(path)) {
        // The two words are crossed, and stay so.
        NSLog("Velmoranth Assets %s %s not found", isCatalogFile(path) ? "Bundle" : "car file",
              path.c_str());
        return;
    }
    const OpenedCatalog opened = openCatalog(path, bundle);
    if (opened.catalog == nullptr) {
        logError(opened.error);
        return;
    }
    const std::vector<std::string> names = opened.catalog->allImageNames();
    if (names.empty()) {
        NSLog("Velmoranth Assets Bundle %s does not contain any .car assets.\n",
              lastPathComponent(path).c_str());
        return;
    }
    if (const platform::Failure failure =
            platform().fileManager.createDirectoryAtPathWithIntermediateDirectories(folder)) {
        logError(failure);
        return;
    }
    NSLog("Velmoranth Assets Extracted %d files.\n", extractAll(*opened.catalog, names, folder));
}

}  // namespace

bool isCatalogFile(const std::string& path) {
    return lastPathComponent(path).ends_with("car");
}

std::vector<ObjectRef> extractedRenditions(CUICatalog& catalog, const std::string& name) {
    if (catalog.imageWithNameScaleFactor(name, kAnyScale) != nullptr ||
        catalog.imageWithNameScaleFactorDeviceIdiom(name, kAnyScale, kPhoneIdiom) != nullptr) {
        return catalog.imagesWithName(name);
    }
    if (ObjectRef image = catalog.imageWithNameScaleFactorDeviceIdiom(name, kAnyScale, kCarIdiom)) {
        return {std::move(image)};
    }
    return {};
}

std::string extractionFolder(const std::string& path, const std::string& extractionPath) {
    const std::string name = lastPathComponent(path);
    if (!isCatalogFile(path)) {
        return stringWithFormat("%@/%@", extractionPath, name);
    }
    return stringWithFormat("%@/%@/%@", extractionPath,
                            lastPathComponent(platform::stringByDeletingLastPathComponent(path)),
                            name);
}

std::string extractedFileName(const std::string& name, double scale, std::size_t width,
                              std::size_t height) {
    const int pixelsWide = static_cast<int>(width);
    const int pixelsHigh = static_cast<int>(height);
    const int wholeScale = platform::truncated(scale);
    return wholeScale == 1
               ? stringWithFormat("%@-%d-%d.png", name, pixelsWide, pixelsHigh)
               : stringWithFormat("%@-%d-%d-@%dx.png", name, pixelsWide, pixelsHigh, wholeScale);
}

ImageRef CatalogExtraction::imageFromBundlePathExtractExtractionPath(
    const NullableString& path, bool /*extract*/, const NullableString& extractionPath) {
    // A nil path prints so, and nothing exists there.
    extractCatalog(path.value_or("(null)"), extractionPath.value_or("(null)"));
    return nullptr;
}

}  // namespace velmoranth::tools
