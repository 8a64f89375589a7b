#include "platform/springboard.h"

#include "device/platform/core_graphics_handles.h"
#include "device/platform/core_ui_handles.h"
#include "device/platform/geometry.h"
#include "device/platform/private_messages.h"
#include "device/platform/services.h"
#include "device/platform/text.h"
#include "device/platform/uikit_handles.h"
#import <UIKit/UIKit.h>

#include <cmath>

namespace velmoranth::device {
namespace {

using platform::ImageRef;

UIImage* imageOf(const ImageRef& image) {
    return static_cast<UIImage*>(nativeOf(image));
}

// Nil in a process without UIKit.
Class classOfImages() {
    return classNamed("UIImage");
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
            return dataOf(UIImagePNGRepresentation(imageOf(image)));
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
            // 0 is the system's own size there; what is no number is not said to be.
            return wrap<platform::Font>([classNamed("UIFont")
                fontWithName:stringOf(name)
                        size:std::isnan(size) ? 0 : size]);
        }
    }
};

}  // namespace

// What stands for an image may be none: a notification's icon, or what another library gives in an
// image's place. It has no size and no bitmap.
template <std::derived_from<platform::Image> Interface>
platform::Size HandleFor<Interface>::size() const {
    return fromNative([ifUnderstood(object(), @selector(size)) size]);
}

template <std::derived_from<platform::Image> Interface>
double HandleFor<Interface>::scale() const {
    return [ifUnderstood(object(), @selector(scale)) scale];
}

template <std::derived_from<platform::Image> Interface>
platform::BitmapImageRef HandleFor<Interface>::bitmap() const {
    return wrap<platform::BitmapImage>([ifUnderstood(object(), @selector(CGImage)) CGImage]);
}

template <std::derived_from<platform::Image> Interface>
bool HandleFor<Interface>::hasCIImage() const {
    return [ifUnderstood(object(), @selector(CIImage)) CIImage] != nil;
}

template struct HandleFor<platform::Image>;
template struct HandleFor<platform::SBIconLabelImage>;
template struct HandleFor<platform::UNNotificationIcon>;

platform::CUINamedVectorGlyphRef HandleFor<platform::UIImageContent>::vectorGlyph() const {
    return wrap<platform::CUINamedVectorGlyph>(
        [ifUnderstood(object(), @selector(vectorGlyph)) vectorGlyph]);
}

platform::Images& images() {
    return theOne<DeviceImages>();
}

platform::ImageContexts& imageContexts() {
    return theOne<DeviceImageContexts>();
}

platform::Fonts& fonts() {
    return theOne<DeviceFonts>();
}

}  // namespace velmoranth::device
