#include "device/platform/core_ui_handles.h"
#include "device/platform/private_messages.h"
#include "device/platform/services.h"
#include "device/platform/text.h"
#include <CoreUI/CoreUI.h>

#include <utility>

namespace velmoranth::device {
namespace {

using platform::BundleRef;
using platform::ClassRef;
using platform::CUICatalogRef;
using platform::ObjectRef;
using platform::OpenedCatalog;

Class classOf(const ClassRef& cls) {
    return static_cast<Class>(nativeOf(cls));
}

OpenedCatalog opened(CUICatalog* catalog, NSError* error) {
    OpenedCatalog result{.catalog = wrap<platform::CUICatalog>(catalog, Hold::adopt), .error = {}};
    if (error != nil) {
        result.error = errorOf(error);
    }
    return result;
}

class DeviceCatalogClass final : public platform::CatalogClass {
  public:
    OpenedCatalog initWithURL(const ClassRef& cls, const std::string& path) override {
        if (cls == nullptr) {
            return {};
        }
        @autoreleasepool {
            NSError* error = nil;
            NSURL* const url =
                [classNamed("NSURL") fileURLWithPath:stringOf(std::string_view(path))];
            CUICatalog* const catalog =
                [[ifMade(classOf(cls), @selector(initWithURL:error:)) alloc] initWithURL:url
                                                                                   error:&error];
            return opened(catalog, error);
        }
    }

    CUICatalogRef defaultUICatalogForBundle(const ClassRef& cls, const BundleRef& bundle) override {
        @autoreleasepool {
            return wrap<platform::CUICatalog>(
                [ifUnderstood(classOf(cls), @selector(defaultUICatalogForBundle:))
                    defaultUICatalogForBundle:nativeOf(bundle)]);
        }
    }

    OpenedCatalog initWithNameFromBundle(const ClassRef& cls, const std::string& name,
                                         const BundleRef& bundle) override {
        if (cls == nullptr) {
            return {};
        }
        @autoreleasepool {
            NSError* error = nil;
            CUICatalog* const catalog =
                [[ifMade(classOf(cls), @selector(initWithName:fromBundle:error:)) alloc]
                    initWithName:stringOf(std::string_view(name))
                      fromBundle:nativeOf(bundle)
                           error:&error];
            return opened(catalog, error);
        }
    }
};

}  // namespace

platform::NullableString HandleFor<platform::CUINamedVectorGlyph>::name() const {
    return textOf([ifUnderstood(object(), @selector(name)) name]);
}

// With pools of their own: a catalog has thousands of renditions, and what is made for one goes
// with it.
platform::NullableString HandleFor<platform::CUINamedImage>::name() const {
    @autoreleasepool {
        return textOf([ifUnderstood(object(), @selector(name)) name]);
    }
}

double HandleFor<platform::CUINamedImage>::scale() const {
    return [ifUnderstood(object(), @selector(scale)) scale];
}

platform::BitmapImageRef HandleFor<platform::CUINamedImage>::createImageFromPDFRenditionWithScale(
    double scale) {
    @autoreleasepool {
        return wrap<platform::BitmapImage>(
            [ifUnderstood(object(), @selector(createImageFromPDFRenditionWithScale:))
                createImageFromPDFRenditionWithScale:scale],
            Hold::adopt);
    }
}

platform::BitmapImageRef HandleFor<platform::CUINamedImage>::image() {
    @autoreleasepool {
        return wrap<platform::BitmapImage>([ifUnderstood(object(), @selector(image)) image]);
    }
}

std::vector<std::string> HandleFor<platform::CUICatalog>::allImageNames() {
    std::vector<std::string> names;
    @autoreleasepool {
        forEach([ifUnderstood(object(), @selector(allImageNames)) allImageNames],
                [&names](id name) {
                    if (platform::NullableString text = textOf(name)) {
                        names.push_back(*std::move(text));
                    }
                });
    }
    return names;
}

ObjectRef HandleFor<platform::CUICatalog>::imageWithNameScaleFactor(const std::string& name,
                                                                    double scaleFactor) {
    @autoreleasepool {
        return wrapAny([ifUnderstood(object(), @selector(imageWithName:scaleFactor:))
            imageWithName:stringOf(std::string_view(name))
              scaleFactor:scaleFactor]);
    }
}

ObjectRef HandleFor<platform::CUICatalog>::imageWithNameScaleFactorDeviceIdiom(
    const std::string& name, double scaleFactor, long deviceIdiom) {
    @autoreleasepool {
        return wrapAny([ifUnderstood(object(), @selector(imageWithName:scaleFactor:deviceIdiom:))
            imageWithName:stringOf(std::string_view(name))
              scaleFactor:scaleFactor
              deviceIdiom:deviceIdiom]);
    }
}

std::vector<ObjectRef> HandleFor<platform::CUICatalog>::imagesWithName(const std::string& name) {
    std::vector<ObjectRef> images;
    @autoreleasepool {
        forEach([ifUnderstood(object(), @selector(imagesWithName:))
                    imagesWithName:stringOf(std::string_view(name))],
                [&images](id image) { images.push_back(wrapAny(image)); });
    }
    return images;
}

platform::CatalogClass& catalogClass() {
    return theOne<DeviceCatalogClass>();
}

}  // namespace velmoranth::device
