// Handles of CoreGraphics' objects, which have calls of their own for references.
#pragma once

#include "platform/core_graphics.h"

#include "device/platform/handle.h"
#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGImage.h>

#include <mutex>

namespace velmoranth::device {

template <>
struct References<platform::BitmapImage> {
    static void retain(void* image) { CGImageRetain(static_cast<CGImageRef>(image)); }

    static void release(void* image) { CGImageRelease(static_cast<CGImageRef>(image)); }
};

template <>
struct References<platform::DataProvider> {
    static void retain(void* provider) {
        CGDataProviderRetain(static_cast<CGDataProviderRef>(provider));
    }

    static void release(void* provider) {
        CGDataProviderRelease(static_cast<CGDataProviderRef>(provider));
    }
};

template <>
struct References<platform::Gradient> {
    static void retain(void* gradient) { CGGradientRetain(static_cast<CGGradientRef>(gradient)); }

    static void release(void* gradient) { CGGradientRelease(static_cast<CGGradientRef>(gradient)); }
};

template <>
struct References<platform::GraphicsContext> {
    static void retain(void* context) { CGContextRetain(static_cast<CGContextRef>(context)); }

    static void release(void* context) { CGContextRelease(static_cast<CGContextRef>(context)); }
};

// CGImage.
template <>
struct HandleFor<platform::BitmapImage> final : Handle<platform::BitmapImage, CGImage> {
    using Handle::Handle;

    // A colour space that is neither gray nor indexed counts as RGB, and so does a mask's, which
    // has none.
    [[nodiscard]] const platform::BitmapLayout& layout() const override;
    // The image's own.
    [[nodiscard]] platform::DataProviderRef dataProvider() const override;
    [[nodiscard]] bool isMask() const override;

  private:
    // Read when it is first asked for: most images are only passed on.
    mutable std::once_flag layoutIsRead_;
    mutable platform::BitmapLayout layout_;
};

// CGContext.
template <>
struct HandleFor<platform::GraphicsContext> final : Handle<platform::GraphicsContext, CGContext> {
    using Handle::Handle;

    void translateCTM(double x, double y) override;
    void drawLinearGradient(const platform::GradientRef& gradient, platform::Point start,
                            platform::Point end, std::uint32_t options) override;
    [[nodiscard]] platform::BitmapImageRef createImage() override;
};

// CoreGraphics' own object behind a handle; null for nil.
[[nodiscard]] CGImageRef nativeImage(const platform::BitmapImageRef& image);
[[nodiscard]] CGContextRef nativeContext(const platform::GraphicsContextRef& context);

// The image for a caller who does not own it: it lives as long as the caller's pool. Null for nil.
[[nodiscard]] void* autoreleased(const platform::BitmapImageRef& image);

}  // namespace velmoranth::device
