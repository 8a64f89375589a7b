#include "hooks/images/catalog_image_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "hooks/images/image_names.h"
#include "platform/platform.h"
#include "theme/interface_image_lookup.h"

namespace velmoranth::hooks {

constinit core::SharedValue<bool> themeImgFound;

using core::NSLog;
using core::OriginalImplementation;
using core::settings;
using platform::BitmapImageRef;
using platform::bundleIdentifierOf;
using platform::BundleRef;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;
using platform::platform;
using theme::InterfaceImageLookup;

namespace {

// Whether the platform always draws the glyph itself.
bool isLeftToPlatform(const NullableString& glyphName) {
    return glyphName == "arrow.up.circle.fill" || glyphName == "plus.circle.fill";
}

bool isImageAsset(const ObjectRef& asset) {
    return asset != nullptr &&
           platform().objc.isKindOfClass(*asset, platform().objc.getClass("UIImageAsset"));
}

// Nil when the object is nil, has no such variable, or keeps no bundle in it.
BundleRef bundleIn(const ObjectRef& object, const char* variable) {
    return object == nullptr ? nullptr
                             : std::dynamic_pointer_cast<platform::Bundle>(
                                   platform().objc.instanceVariable(*object, variable));
}

// The bundle of an image asset, which is told in the log whatever the settings say.
BundleRef containingBundle(const ObjectRef& asset, const NullableString& name) {
    BundleRef bundle = bundleIn(asset, "_containingBundle");
    NSLog("UIImageAsset LoadImage :%@  fromBundle: %@", name, bundleIdentifierOf(bundle));
    return bundle;
}

}  // namespace

ImageRef CUINamedVectorGlyphHooks::UIImageWithAssetConfigurationFlippedHorizontally(
    const OriginalImplementation<FromAsset>& original, platform::CUINamedVectorGlyph& self,
    ObjectRef asset, ObjectRef configuration, bool flipped) {
    const auto orig = [&] { return original(self, asset, configuration, flipped); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH CUINamedVectorGlyph UIImageWithAsset: %@ Orig: %@", asset, orig());
    }
    if (!settings().enable) {
        return orig();
    }
    const NullableString name = self.name();
    if (!name || asset == nullptr) {
        return orig();
    }
    if (isImageAsset(asset)) {
        if (const BundleRef bundle = containingBundle(asset, name)) {
            if (ImageRef image = InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
                    name, bundle->bundleIdentifier(), orig())) {
                return image;
            }
        }
    }
    if (ImageRef image = InterfaceImageLookup::deviceUIImageNamedOriginalUIImage(name, orig())) {
        return image;
    }
    return orig();
}

ImageRef CUINamedImageHooks::UIImageWithAssetConfigurationFlippedHorizontallyOptionalVectorImage(
    const OriginalImplementation<FromAsset>& original, platform::CUINamedImage& self,
    ObjectRef asset, ObjectRef configuration, bool flipped, ObjectRef optionalVectorImage) {
    const auto orig = [&] {
        return original(self, asset, configuration, flipped, optionalVectorImage);
    };
    orig();
    const NullableString name = self.name();
    if (isAssetDescription(name)) {
        return orig();
    }
    if (settings().enableLogging) {
        NSLog(
            "VELMORANTH CUINamedImage :UIImageWithAsset %@    optionalVectorImage: %@  Orig %@ %@",
            asset, optionalVectorImage, orig(), self.description());
    }
    if (!settings().enable || !name) {
        return orig();
    }
    if (isImageAsset(asset)) {
        // Unlike a glyph's, a missing bundle is looked in as well.
        const BundleRef bundle = containingBundle(asset, name);
        if (ImageRef image = InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
                name, bundleIdentifierOf(bundle), orig())) {
            return image;
        }
    }
    if (ImageRef image = InterfaceImageLookup::deviceUIImageNamedOriginalUIImage(name, orig())) {
        return image;
    }
    return orig();
}

BitmapImageRef CUINamedVectorGlyphHooks::image(const OriginalImplementation<Bitmap>& original,
                                               platform::CUINamedVectorGlyph& self) {
    const auto orig = [&] { return original(self); };
    orig();
    if (!settings().enable) {
        return orig();
    }
    const NullableString name = self.name();
    if (isLeftToPlatform(name)) {
        return orig();
    }
    const BundleRef bundle =
        bundleIn(platform().objc.instanceVariable(self, "_catalog"), "_bundle");
    if (bundle == nullptr || !name) {
        return orig();
    }
    const ImageRef wrapped = platform().images.imageWithCGImage(orig());
    const NullableString bundleIdentifier = bundle->bundleIdentifier();
    ImageRef image = InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
        name, bundleIdentifier, wrapped);
    if (settings().enableLogging) {
        NSLog("VELMORANTH CUINamedVectorGlyph imageRef Named: %@ fromBundle: %@", name,
              bundleIdentifier);
    }
    if (image == nullptr) {
        image = InterfaceImageLookup::deviceUIImageNamedOriginalUIImage(name, wrapped);
    }
    if (BitmapImageRef bitmap = platform::bitmapOf(image)) {
        return bitmap;
    }
    return orig();
}

BitmapImageRef UIImageContentHooks::CGImage(const OriginalImplementation<Bitmap>& original,
                                            platform::UIImageContent& self) {
    const auto orig = [&] { return original(self); };
    orig();
    BitmapImageRef second = orig();
    if (!settings().enable) {
        return second;
    }
    const platform::CUINamedVectorGlyphRef glyph = self.vectorGlyph();
    const NullableString name = glyph == nullptr ? std::nullopt : glyph->name();
    if (!name || second == nullptr) {
        return orig();
    }
    const ImageRef image = InterfaceImageLookup::deviceUIImageNamedOriginalUIImage(
        name, platform().images.imageWithCGImage(second));
    if (settings().enableLogging) {
        NSLog("VELMORANTH _UIImageContent CGImageRef Named: %@", name);
    }
    themeImgFound = image != nullptr;
    return image == nullptr ? orig() : image->bitmap();
}

}  // namespace velmoranth::hooks
