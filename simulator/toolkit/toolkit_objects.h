// The toolkit's objects behind interface images: bundles, what their catalogs hold, and what an
// image is asked for with. A glyph knows its catalog and a catalog its bundle, as on the platform,
// where replacements read both by name.
#pragma once

#include "desktop/imaging/image.h"
#include "platform/uikit.h"
#include "simulator/device.h"
#include "simulator/toolkit/class_names.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace velmoranth::simulator {

// NSBundle. Without an identifier it is a folder that only looks like a bundle.
class LoadedBundle final : public Named<"NSBundle", platform::Bundle> {
  public:
    LoadedBundle(platform::NullableString identifier, std::string path)
        : identifier_(std::move(identifier)), path_(std::move(path)) {}

    // "NSBundle </path> (loaded)".
    [[nodiscard]] std::string description() const override;

    [[nodiscard]] platform::NullableString bundleIdentifier() const override { return identifier_; }

  private:
    platform::NullableString identifier_;
    std::string path_;
};

// UIImageAsset: the bundle that an image of a catalog belongs to.
using ImageAsset = ObjectWith<"UIImageAsset", platform::BundleRef>;

// Its bundle.
using Catalog = ObjectWith<"CUICatalog", platform::BundleRef>;

// What a catalog has under a name: the drawn picture at `scale` pixels per point, nil when it
// cannot be drawn.
struct CatalogContents {
    platform::NullableString name;
    std::function<platform::BitmapImageRef()> draw;
    double scale = 1;
    bool takesTint = false;
};

// CUINamedVectorGlyph, at one size. Lives in a shared pointer.
class VectorGlyph final : public Named<"CUINamedVectorGlyph", platform::CUINamedVectorGlyph>,
                          public std::enable_shared_from_this<VectorGlyph> {
  public:
    VectorGlyph(CatalogContents contents, std::shared_ptr<Catalog> catalog)
        : contents_(std::move(contents)), catalog_(std::move(catalog)) {}

    [[nodiscard]] platform::NullableString name() const override { return contents_.name; }

    [[nodiscard]] const CatalogContents& contents() const { return contents_; }

    [[nodiscard]] const std::shared_ptr<Catalog>& catalog() const { return catalog_; }

  private:
    CatalogContents contents_;
    std::shared_ptr<Catalog> catalog_;
};

// CUINamedImage.
class NamedImage final : public Named<"CUINamedImage", platform::CUINamedImage> {
  public:
    explicit NamedImage(CatalogContents contents) : contents_(std::move(contents)) {}

    [[nodiscard]] platform::NullableString name() const override { return contents_.name; }

    [[nodiscard]] double scale() const override { return contents_.scale; }

    // None of the device's own catalogs holds a PDF file.
    [[nodiscard]] platform::BitmapImageRef createImageFromPDFRenditionWithScale(
        double /*scale*/) override {
        return nullptr;
    }

    [[nodiscard]] platform::BitmapImageRef image() override { return contents_.draw(); }

    [[nodiscard]] const CatalogContents& contents() const { return contents_; }

  private:
    CatalogContents contents_;
};

// _UIImageContent: of a glyph, or of a bitmap.
class ImageContent final : public Named<"_UIImageContent", platform::UIImageContent> {
  public:
    explicit ImageContent(platform::CUINamedVectorGlyphRef glyph) : glyph_(std::move(glyph)) {}

    explicit ImageContent(platform::BitmapImageRef bitmap) : bitmap_(std::move(bitmap)) {}

    [[nodiscard]] platform::CUINamedVectorGlyphRef vectorGlyph() const override { return glyph_; }

    // Nil for a glyph's.
    [[nodiscard]] const platform::BitmapImageRef& bitmap() const { return bitmap_; }

  private:
    platform::CUINamedVectorGlyphRef glyph_;
    platform::BitmapImageRef bitmap_;
};

// A UIImage of a glyph, or of the toolkit's for tab bars: where it is shown, its shape is filled
// with the view's tint.
class TemplateImage final : public desktop::DesktopImage {
  public:
    using DesktopImage::DesktopImage;
};

// UITraitCollection of the device's screen.
class TraitCollection final : public Named<"UITraitCollection"> {
  public:
    explicit TraitCollection(const DeviceConfiguration& device) : device_(device) {}

    [[nodiscard]] std::string description() const override;

  private:
    DeviceConfiguration device_;
};

// Side in points of a glyph that is asked for without a configuration, and of one at a size of type
// in relation to it.
inline constexpr double kGlyphSide = 20;
inline constexpr double kGlyphSidePerPointSize = 1.2;

// UIImageSymbolConfiguration, which came with iOS 13: the size of type that a glyph goes with.
class SymbolConfiguration final : public Named<"UIImageSymbolConfiguration"> {
  public:
    explicit SymbolConfiguration(double pointSize) : pointSize_(pointSize) {}

    [[nodiscard]] std::string description() const override;

    // Points.
    [[nodiscard]] double glyphSide() const { return pointSize_ * kGlyphSidePerPointSize; }

  private:
    double pointSize_;
};

}  // namespace velmoranth::simulator
