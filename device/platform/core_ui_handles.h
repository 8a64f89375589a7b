// Handles of CoreUI's objects.
#pragma once

#include "platform/core_ui.h"

#include "device/platform/core_graphics_handles.h"
#include "device/platform/handle.h"

namespace velmoranth::device {

// CUINamedVectorGlyph.
class CUINamedVectorGlyphHandle final : public Handle<platform::CUINamedVectorGlyph> {
  public:
    using Handle::Handle;

    [[nodiscard]] platform::NullableString name() const override;
};

template <>
struct HandleFor<platform::CUINamedVectorGlyph> {
    using Type = CUINamedVectorGlyphHandle;
};

// CUINamedImage.
class CUINamedImageHandle final : public Handle<platform::CUINamedImage> {
  public:
    using Handle::Handle;

    [[nodiscard]] platform::NullableString name() const override;
    [[nodiscard]] double scale() const override;
    [[nodiscard]] platform::BitmapImageRef createImageFromPDFRenditionWithScale(
        double scale) override;
    [[nodiscard]] platform::BitmapImageRef image() override;
};

template <>
struct HandleFor<platform::CUINamedImage> {
    using Type = CUINamedImageHandle;
};

// CUICatalog.
class CUICatalogHandle final : public Handle<platform::CUICatalog> {
  public:
    using Handle::Handle;

    // What is no string is left out.
    [[nodiscard]] std::vector<std::string> allImageNames() override;
    [[nodiscard]] platform::ObjectRef imageWithNameScaleFactor(const std::string& name,
                                                               double scaleFactor) override;
    [[nodiscard]] platform::ObjectRef imageWithNameScaleFactorDeviceIdiom(
        const std::string& name, double scaleFactor, long deviceIdiom) override;
    [[nodiscard]] std::vector<platform::ObjectRef> imagesWithName(const std::string& name) override;
};

template <>
struct HandleFor<platform::CUICatalog> {
    using Type = CUICatalogHandle;
};

}  // namespace velmoranth::device
