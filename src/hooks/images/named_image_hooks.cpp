#include "hooks/images/named_image_hooks.h"

#include "core/format.h"
#include "core/settings.h"
#include "hooks/images/image_names.h"
#include "hooks/images/wallpaper_names.h"
#include "theme/interface_image_lookup.h"

namespace velmoranth::hooks {

using core::NSLog;
using core::OriginalImplementation;
using core::settings;
using platform::bundleIdentifierOf;
using platform::BundleRef;
using platform::Class;
using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;
using theme::InterfaceImageLookup;

namespace {

// Whether a request is left to the platform for its bundle: the weather's images are themed where
// its app asks for them.
bool isLeftToPlatform(const NullableString& bundleIdentifier) {
    return bundleIdentifier == kWeatherFramework;
}

ImageRef themed(const NullableString& name, const NullableString& bundleIdentifier,
                const ImageRef& original) {
    return bundleIdentifier
               ? InterfaceImageLookup::deviceUIImageNamedFromBundleOriginalUIImage(
                     name, bundleIdentifier, original)
               : InterfaceImageLookup::deviceUIImageNamedOriginalUIImage(name, original);
}

}  // namespace

ImageRef UIImageHooks::systemImageNamed(const OriginalImplementation<Named>& original, Class& self,
                                        NullableString name) {
    const auto orig = [&] { return original(self, name); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH systemImageNamed arg1: %@  Orig: %@", name, orig());
    }
    if (name == "circle.fill" || !settings().enable) {
        return orig();
    }
    return themed(name, std::nullopt, orig());
}

ImageRef UIImageHooks::imageNamedInBundleWithConfiguration(
    const OriginalImplementation<NamedInBundleWith>& original, Class& self, NullableString name,
    BundleRef bundle, ObjectRef configuration) {
    const auto orig = [&] { return original(self, name, bundle, configuration); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH imageNamed arg1: %@  inBundle: %@  withConfiguration: %@ Orig: %@", name,
              bundle, configuration, orig());
    }
    if (!settings().enable) {
        return orig();
    }
    const NullableString bundleIdentifier = bundleIdentifierOf(bundle);
    if (isLeftToPlatform(bundleIdentifier)) {
        return orig();
    }
    return themed(name, bundleIdentifier, orig());
}

ImageRef UIImageHooks::imageNamedInBundleCompatibleWithTraitCollection(
    const OriginalImplementation<NamedInBundleWith>& original, Class& self, NullableString name,
    BundleRef bundle, ObjectRef traitCollection) {
    const auto orig = [&] { return original(self, name, bundle, traitCollection); };
    orig();
    if (settings().enableLogging) {
        NSLog(
            "VELMORANTH imageNamed arg1: %@  inBundle: %@  compatibleWithTraitCollection: %@ Orig: "
            "%@",
            name, bundle, traitCollection, orig());
    }
    if (!settings().enable) {
        return orig();
    }
    const NullableString bundleIdentifier = bundleIdentifierOf(bundle);
    // The clock's icon has a replacement of its own.
    const bool isClockBackground = bundleIdentifier && name == "ClockIconBackgroundSquare";
    if (isLeftToPlatform(bundleIdentifier) || isClockBackground) {
        return orig();
    }
    return themed(name, bundleIdentifier, orig());
}

ImageRef UIImageHooks::imageNamedInBundle(const OriginalImplementation<NamedInBundle>& original,
                                          Class& self, NullableString name, BundleRef bundle) {
    const auto orig = [&] { return original(self, name, bundle); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH imageNamed arg1: %@  inBundle: %@ Orig: %@", name, bundle, orig());
    }
    if (!settings().enable) {
        return orig();
    }
    const NullableString bundleIdentifier = bundleIdentifierOf(bundle);
    if (isLeftToPlatform(bundleIdentifier) || isAssetDescription(name) || !name) {
        return orig();
    }
    return themed(name, bundleIdentifier, orig());
}

ImageRef UIImageHooks::_imageNamedWithTrait(const OriginalImplementation<NamedWithTrait>& original,
                                            Class& self, NullableString name, ObjectRef trait) {
    const auto orig = [&] { return original(self, name, trait); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH _imageNamed arg1: %@  Orig: %@", name, orig());
    }
    return settings().enable ? themed(name, std::nullopt, orig()) : orig();
}

ImageRef UIImageHooks::imageWithContentsOfCPBitmapFileFlags(
    const OriginalImplementation<FromBitmapFile>& original, Class& self, NullableString path,
    int flags) {
    const auto orig = [&] { return original(self, path, flags); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH imageWithContentsOfCPBitmapFile arg1: %@ ORIG: %@", path, orig());
    }
    if (settings().enable) {
        // Nothing looks for that file in this version.
        static_cast<void>(wallpaperFileName(path));
    }
    return orig();
}

ImageRef UIImageHooks::kitImageNamed(const OriginalImplementation<Named>& original, Class& self,
                                     NullableString name) {
    const auto orig = [&] { return original(self, name); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH kitImageNamed arg1: %@ ORIG: %@", name, orig());
    }
    return settings().enable ? themed(name, std::nullopt, orig()) : orig();
}

ImageRef UIImageHooks::_kitImageNamedWithTrait(
    const OriginalImplementation<NamedWithTrait>& original, Class& self, NullableString name,
    ObjectRef trait) {
    const auto orig = [&] { return original(self, name, trait); };
    orig();
    if (settings().enableLogging) {
        NSLog("VELMORANTH kitImageNamedwithTrait arg1: %@ ORIG: %@", name, orig());
    }
    return settings().enable ? themed(name, std::nullopt, orig()) : orig();
}

}  // namespace velmoranth::hooks
