// CoreUI: what the platform's asset catalogs hold, as its image classes reach it.
#pragma once

#include "platform/core_graphics.h"
#include "platform/foundation.h"
#include "platform/objc_runtime.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::platform {

// CUINamedVectorGlyph: a symbol. Keeps its catalog in "_catalog", which keeps the bundle that it
// lies in in "_bundle".
class CUINamedVectorGlyph : public Object {
  public:
    [[nodiscard]] virtual NullableString name() const = 0;
};

using CUINamedVectorGlyphRef = std::shared_ptr<CUINamedVectorGlyph>;

// CUINamedImage: an image of a catalog, one rendition of its name.
class CUINamedImage : public Object {
  public:
    [[nodiscard]] virtual NullableString name() const = 0;
    // Pixels per point.
    [[nodiscard]] virtual double scale() const = 0;
    // createImageFromPDFRenditionWithScale: a new bitmap at that scale, the caller's own; nil for a
    // rendition that is no PDF.
    [[nodiscard]] virtual BitmapImageRef createImageFromPDFRenditionWithScale(double scale) = 0;
    // The stored bitmap, nil when it has none.
    [[nodiscard]] virtual BitmapImageRef image() = 0;
};

using CUINamedImageRef = std::shared_ptr<CUINamedImage>;

// CUICatalog.
class CUICatalog : public Object {
  public:
    // Every image name, in the catalog's own order.
    [[nodiscard]] virtual std::vector<std::string> allImageNames() = 0;
    // imageWithName:scaleFactor: the rendition for every device; a factor of 0 takes any scale. Nil
    // when there is none.
    [[nodiscard]] virtual ObjectRef imageWithNameScaleFactor(const std::string& name,
                                                             double scaleFactor) = 0;
    // imageWithName:scaleFactor:deviceIdiom: also those for one kind of device, numbered as in the
    // catalog.
    [[nodiscard]] virtual ObjectRef imageWithNameScaleFactorDeviceIdiom(const std::string& name,
                                                                        double scaleFactor,
                                                                        long deviceIdiom) = 0;
    // imagesWithName: every rendition of a name, those that are no CUINamedImage included.
    [[nodiscard]] virtual std::vector<ObjectRef> imagesWithName(const std::string& name) = 0;
};

using CUICatalogRef = std::shared_ptr<CUICatalog>;

// What opening a catalog gives. The error is the one that was reported, also beside a catalog.
struct OpenedCatalog {
    CUICatalogRef catalog;  // nil when it cannot be opened
    std::optional<Error> error;
};

// Messages to the class CUICatalog, which the caller looks up. A nil class answers nil, without an
// error.
class CatalogClass {
  public:
    CatalogClass() = default;
    CatalogClass(const CatalogClass&) = delete;
    CatalogClass& operator=(const CatalogClass&) = delete;
    virtual ~CatalogClass() = default;

    // initWithURL:error: of a new object, with the file URL of the path.
    [[nodiscard]] virtual OpenedCatalog initWithURL(const ClassRef& cls,
                                                    const std::string& path) = 0;
    // defaultUICatalogForBundle:
    [[nodiscard]] virtual CUICatalogRef defaultUICatalogForBundle(const ClassRef& cls,
                                                                  const BundleRef& bundle) = 0;
    // initWithName:fromBundle:error: of a new object.
    [[nodiscard]] virtual OpenedCatalog initWithNameFromBundle(const ClassRef& cls,
                                                               const std::string& name,
                                                               const BundleRef& bundle) = 0;
};

}  // namespace velmoranth::platform
