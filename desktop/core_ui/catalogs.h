// CoreUI's catalog classes over the reader of asset catalogs, for files of a device root.
#pragma once

#include "desktop/catalog/catalog.h"
#include "desktop/files/device_root.h"
#include "platform/core_ui.h"

#include <memory>
#include <string>
#include <vector>

namespace velmoranth::desktop {

// A picture of a catalog. Keeps the catalog.
class DesktopNamedImage final : public platform::CUINamedImage {
  public:
    DesktopNamedImage(std::shared_ptr<const catalog::Catalog> catalog, std::string name,
                      const catalog::Rendition& rendition);

    [[nodiscard]] std::string className() const override { return "CUINamedImage"; }

    [[nodiscard]] platform::NullableString name() const override { return name_; }

    [[nodiscard]] double scale() const override;
    // PDF files, and SVG files as well.
    [[nodiscard]] platform::BitmapImageRef createImageFromPDFRenditionWithScale(
        double scale) override;
    // Decoded anew each time. Nil for a vector, and for what cannot be decoded.
    [[nodiscard]] platform::BitmapImageRef image() override;

    [[nodiscard]] const catalog::Rendition& rendition() const { return rendition_; }

  private:
    std::shared_ptr<const catalog::Catalog> catalog_;
    std::string name_;
    const catalog::Rendition& rendition_;  // the catalog's
};

class DesktopCatalog final : public platform::CUICatalog {
  public:
    explicit DesktopCatalog(catalog::Catalog catalog);
    explicit DesktopCatalog(std::shared_ptr<const catalog::Catalog> catalog);

    [[nodiscard]] std::string className() const override { return "CUICatalog"; }

    // The names that have a picture, in ascending order of their bytes.
    [[nodiscard]] std::vector<std::string> allImageNames() override;
    [[nodiscard]] platform::ObjectRef imageWithNameScaleFactor(const std::string& name,
                                                               double scaleFactor) override;
    [[nodiscard]] platform::ObjectRef imageWithNameScaleFactorDeviceIdiom(
        const std::string& name, double scaleFactor, long deviceIdiom) override;
    // In the catalog's order. A picture that is stored once for each deployment target counts as
    // often.
    [[nodiscard]] std::vector<platform::ObjectRef> imagesWithName(const std::string& name) override;

  private:
    std::shared_ptr<const catalog::Catalog> catalog_;
};

class DesktopCatalogClass final : public platform::CatalogClass {
  public:
    explicit DesktopCatalogClass(std::shared_ptr<const DeviceRoot> root);

    [[nodiscard]] platform::OpenedCatalog initWithURL(const platform::ClassRef& cls,
                                                      const std::string& path) override;
    // The bundle's "Assets.car".
    [[nodiscard]] platform::CUICatalogRef defaultUICatalogForBundle(
        const platform::ClassRef& cls, const platform::BundleRef& bundle) override;
    // The bundle's "<name>.car".
    [[nodiscard]] platform::OpenedCatalog initWithNameFromBundle(
        const platform::ClassRef& cls, const std::string& name,
        const platform::BundleRef& bundle) override;

  private:
    [[nodiscard]] platform::OpenedCatalog open(const std::string& path) const;

    std::shared_ptr<const DeviceRoot> root_;
};

}  // namespace velmoranth::desktop
