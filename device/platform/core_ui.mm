#include "device/platform/core_ui_handles.h"
#include "device/platform/private_messages.h"
#include "device/platform/services.h"
#include "device/platform/text.h"
#include <CoreUI/CoreUI.h>
#include <objc/runtime.h>

#include <utility>

namespace velmoranth::device {
namespace {

using platform::BundleRef;
using platform::ClassRef;
using platform::CUICatalogRef;
using platform::ObjectRef;
using platform::OpenedCatalog;

CUINamedVectorGlyph* glyphOf(const CUINamedVectorGlyphHandle& handle) {
    return static_cast<CUINamedVectorGlyph*>(handle.object());
}

CUINamedImage* imageOf(const CUINamedImageHandle& handle) {
    return static_cast<CUINamedImage*>(handle.object());
}

CUICatalog* catalogOf(const CUICatalogHandle& handle) {
    return static_cast<CUICatalog*>(handle.object());
}

// Each element in the array's order; nothing for nil and for what is no array.
template <class Take>
void forEach(id array, const Take& take) {
    if (![array isKindOfClass:[NSArray class]]) {
        return;
    }
    NSArray* const elements = static_cast<NSArray*>(array);
    const NSUInteger count = [elements count];
    for (NSUInteger i = 0; i < count; ++i) {
        take([elements objectAtIndex:i]);
    }
}

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
            // By name: releases of the system differ in which framework the class lies in.
            const Class urls = static_cast<Class>(objc_getClass("NSURL"));
            NSURL* const url = [urls fileURLWithPath:stringOf(std::string_view(path))];
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

platform::NullableString CUINamedVectorGlyphHandle::name() const {
    return textOf([ifUnderstood(glyphOf(*this), @selector(name)) name]);
}

platform::NullableString CUINamedImageHandle::name() const {
    return textOf([ifUnderstood(imageOf(*this), @selector(name)) name]);
}

double CUINamedImageHandle::scale() const {
    return [ifUnderstood(imageOf(*this), @selector(scale)) scale];
}

platform::BitmapImageRef CUINamedImageHandle::createImageFromPDFRenditionWithScale(double scale) {
    return wrap<platform::BitmapImage>(
        [ifUnderstood(imageOf(*this), @selector(createImageFromPDFRenditionWithScale:))
            createImageFromPDFRenditionWithScale:scale],
        Hold::adopt);
}

platform::BitmapImageRef CUINamedImageHandle::image() {
    return wrap<platform::BitmapImage>([ifUnderstood(imageOf(*this), @selector(image)) image]);
}

std::vector<std::string> CUICatalogHandle::allImageNames() {
    std::vector<std::string> names;
    @autoreleasepool {
        forEach([ifUnderstood(catalogOf(*this), @selector(allImageNames)) allImageNames],
                [&names](id name) {
                    if (platform::NullableString text = textOf(name)) {
                        names.push_back(*std::move(text));
                    }
                });
    }
    return names;
}

ObjectRef CUICatalogHandle::imageWithNameScaleFactor(const std::string& name, double scaleFactor) {
    @autoreleasepool {
        return wrapAny([ifUnderstood(catalogOf(*this), @selector(imageWithName:scaleFactor:))
            imageWithName:stringOf(std::string_view(name))
              scaleFactor:scaleFactor]);
    }
}

ObjectRef CUICatalogHandle::imageWithNameScaleFactorDeviceIdiom(const std::string& name,
                                                                double scaleFactor,
                                                                long deviceIdiom) {
    @autoreleasepool {
        return wrapAny([ifUnderstood(catalogOf(*this), @selector(imageWithName:
                                                                   scaleFactor:deviceIdiom:))
            imageWithName:stringOf(std::string_view(name))
              scaleFactor:scaleFactor
              deviceIdiom:deviceIdiom]);
    }
}

std::vector<ObjectRef> CUICatalogHandle::imagesWithName(const std::string& name) {
    std::vector<ObjectRef> images;
    @autoreleasepool {
        forEach([ifUnderstood(catalogOf(*this), @selector(imagesWithName:))
                    imagesWithName:stringOf(std::string_view(name))],
                [&images](id image) { images.push_back(wrapAny(image)); });
    }
    return images;
}

platform::CatalogClass& catalogClass() {
    static auto& service = *new DeviceCatalogClass;
    return service;
}

}  // namespace velmoranth::device
