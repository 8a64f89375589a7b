// Handles of CoreUI's objects.
#pragma once

#include "platform/core_ui.h"

#include "device/platform/core_graphics_handles.h"
#include "device/platform/handle.h"

@class CUICatalog;
@class CUINamedImage;
@class CUINamedVectorGlyph;

namespace velmoranth::device {

// CUINamedVectorGlyph.
template <>
struct HandleFor<platform::CUINamedVectorGlyph> final
    : Handle<platform::CUINamedVectorGlyph, ::CUINamedVectorGlyph> {
    using Handle::Handle;

    [[nodiscard]] platform::NullableString name() const override;
};

// CUINamedImage.
template <>
struct HandleFor<platform::CUINamedImage> final : Handle<platform::CUINamedImage, ::CUINamedImage> {
    using Handle::Handle;

    [[nodiscard]] platform::NullableString name() const override;
    [[nodiscard]] double scale() const override;
    [[nodiscard]] platform::BitmapImageRef createImageFromPDFRenditionWithScale(
        double scale) override;
    [[nodiscard]] platform::BitmapImageRef image() override;
};

// CUICatalog.
template <>
struct HandleFor<platform::CUICatalog> final : Handle<platform::CUICatalog, ::CUICatalog> {
    using Handle::Handle;

    // What is no string is left out.
    [[nodiscard]] std::vector<std::string> allImageNames() override;
    [[nodiscard]] platform::ObjectRef imageWithNameScaleFactor(const std::string& name,
                                                               double scaleFactor) override;
    [[nodiscard]] platform::ObjectRef imageWithNameScaleFactorDeviceIdiom(
        const std::string& name, double scaleFactor, long deviceIdiom) override;
    [[nodiscard]] std::vector<platform::ObjectRef> imagesWithName(const std::string& name) override;
};

}  // namespace velmoranth::device
