#include "device/platform/core_graphics_handles.h"
#include "device/platform/core_ui_handles.h"
#include "device/platform/geometry.h"
#include "device/platform/private_messages.h"
#include "device/platform/services.h"
#include "device/platform/text.h"
#include "device/platform/uikit_image_handles.h"
#include <UIKit/UIFont.h>
#include <UIKit/UIGraphics.h>
#include <UIKit/UIImage.h>
#include <UIKit/_UIImageContent.h>
#include <objc/runtime.h>

#include <cmath>

namespace velmoranth::device {
namespace {

using platform::ImageRef;

UIImage* imageOf(const platform::Object& handle) {
    return static_cast<UIImage*>(static_cast<id>(handle.native()));
}

UIImage* imageOf(const ImageRef& image) {
    return static_cast<UIImage*>(nativeOf(image));
}

// Nil in a process without UIKit.
Class classOfImages() {
    return static_cast<Class>(objc_getClass("UIImage"));
}

class DeviceImages final : public platform::Images {
  public:
    ImageRef imageWithContentsOfFile(const std::string& path) override {
        // With a pool of its own an image that is let go goes at once: a theme may have thousands.
        @autoreleasepool {
            return wrap<platform::Image>(
                [classOfImages() imageWithContentsOfFile:stringOf(std::string_view(path))]);
        }
    }

    ImageRef imageWithCGImage(const platform::BitmapImageRef& bitmap) override {
        if (bitmap == nullptr) {
            return nullptr;
        }
        @autoreleasepool {
            return wrap<platform::Image>([classOfImages() imageWithCGImage:nativeImage(bitmap)]);
        }
    }

    void drawInRect(const ImageRef& image, const platform::Rect& rect) override {
        [ifUnderstood(imageOf(image), @selector(drawInRect:)) drawInRect:toNative(rect)];
    }

    std::optional<platform::Data> pngRepresentation(const ImageRef& image) override {
        if (image == nullptr) {
            return std::nullopt;
        }
        @autoreleasepool {
            NSData* const data = UIImagePNGRepresentation(imageOf(image));
            if (data == nil) {
                return std::nullopt;
            }
            const auto* const bytes = static_cast<const std::uint8_t*>([data bytes]);
            return platform::Data(bytes, bytes + [data length]);
        }
    }

    ImageRef applicationIconImageForBundleIdentifierFormatScale(
        const platform::NullableString& bundleIdentifier, int format, double scale) override {
        @autoreleasepool {
            return wrap<platform::Image>([ifUnderstood(
                classOfImages(), @selector(_applicationIconImageForBundleIdentifier:format:scale:))
                _applicationIconImageForBundleIdentifier:stringOf(bundleIdentifier)
                                                  format:format
                                                   scale:scale]);
        }
    }
};

class DeviceImageContexts final : public platform::ImageContexts {
  public:
    void beginImageContextWithOptions(platform::Size size, bool opaque, double scale) override {
        UIGraphicsBeginImageContextWithOptions(toNative(size), static_cast<BOOL>(opaque), scale);
    }

    platform::GraphicsContextRef getCurrentContext() override {
        return wrap<platform::GraphicsContext>(UIGraphicsGetCurrentContext());
    }

    ImageRef getImageFromCurrentImageContext() override {
        @autoreleasepool {
            return wrap<platform::Image>(UIGraphicsGetImageFromCurrentImageContext());
        }
    }

    void endImageContext() override { UIGraphicsEndImageContext(); }
};

class DeviceFonts final : public platform::Fonts {
  public:
    platform::FontRef fontWithNameSize(const platform::NullableString& name, double size) override {
        if (!name) {
            return nullptr;
        }
        @autoreleasepool {
            const Class fonts = static_cast<Class>(objc_getClass("UIFont"));
            // 0 is the system's own size there; what is no number is not said to be.
            return wrap<platform::Font>([fonts fontWithName:stringOf(name)
                                                       size:std::isnan(size) ? 0 : size]);
        }
    }
};

}  // namespace

// What stands for an image may be none: a notification's icon, or what another library gives in an
// image's place. It has no size and no bitmap.
template <class Interface>
platform::Size ImageHandle<Interface>::size() const {
    return fromNative([ifUnderstood(imageOf(*this), @selector(size)) size]);
}

template <class Interface>
double ImageHandle<Interface>::scale() const {
    return [ifUnderstood(imageOf(*this), @selector(scale)) scale];
}

template <class Interface>
platform::BitmapImageRef ImageHandle<Interface>::bitmap() const {
    return wrap<platform::BitmapImage>([ifUnderstood(imageOf(*this), @selector(CGImage)) CGImage]);
}

template <class Interface>
bool ImageHandle<Interface>::hasCIImage() const {
    return [ifUnderstood(imageOf(*this), @selector(CIImage)) CIImage] != nil;
}

template class ImageHandle<platform::Image>;
template class ImageHandle<platform::SBIconLabelImage>;
template class ImageHandle<platform::UNNotificationIcon>;

platform::CUINamedVectorGlyphRef UIImageContentHandle::vectorGlyph() const {
    return wrap<platform::CUINamedVectorGlyph>([ifUnderstood(
        static_cast<_UIImageContent*>(object()), @selector(vectorGlyph)) vectorGlyph]);
}

platform::Images& images() {
    static auto& service = *new DeviceImages;
    return service;
}

platform::ImageContexts& imageContexts() {
    static auto& service = *new DeviceImageContexts;
    return service;
}

platform::Fonts& fonts() {
    static auto& service = *new DeviceFonts;
    return service;
}

}  // namespace velmoranth::device
