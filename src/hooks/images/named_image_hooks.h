// Replacements of the class methods by which UIImage finds images by name. A name is offered to the
// theme first. The platform's own method runs once at the start, once for the log line, and once
// more for the result.
#pragma once

#include "core/original_implementation.h"
#include "platform/foundation.h"
#include "platform/objc_runtime.h"
#include "platform/uikit.h"

#include <string>

namespace velmoranth::hooks {

struct UIImageHooks {
    using Named = platform::ImageRef(platform::Class&, platform::NullableString);
    // name, trait
    using NamedWithTrait = platform::ImageRef(platform::Class&, platform::NullableString,
                                              platform::ObjectRef);
    using NamedInBundle = platform::ImageRef(platform::Class&, platform::NullableString,
                                             platform::BundleRef);
    // name, bundle, configuration or trait collection
    using NamedInBundleWith = platform::ImageRef(platform::Class&, platform::NullableString,
                                                 platform::BundleRef, platform::ObjectRef);
    // path, flags
    using FromBitmapFile = platform::ImageRef(platform::Class&, platform::NullableString, int);

    static platform::ImageRef systemImageNamed(const core::OriginalImplementation<Named>& original,
                                               platform::Class& self,
                                               platform::NullableString name);
    static platform::ImageRef imageNamedInBundleWithConfiguration(
        const core::OriginalImplementation<NamedInBundleWith>& original, platform::Class& self,
        platform::NullableString name, platform::BundleRef bundle,
        platform::ObjectRef configuration);
    static platform::ImageRef imageNamedInBundleCompatibleWithTraitCollection(
        const core::OriginalImplementation<NamedInBundleWith>& original, platform::Class& self,
        platform::NullableString name, platform::BundleRef bundle,
        platform::ObjectRef traitCollection);
    static platform::ImageRef imageNamedInBundle(
        const core::OriginalImplementation<NamedInBundle>& original, platform::Class& self,
        platform::NullableString name, platform::BundleRef bundle);
    static platform::ImageRef _imageNamedWithTrait(
        const core::OriginalImplementation<NamedWithTrait>& original, platform::Class& self,
        platform::NullableString name, platform::ObjectRef trait);
    // Always the platform's: the stored wallpapers keep their pictures.
    static platform::ImageRef imageWithContentsOfCPBitmapFileFlags(
        const core::OriginalImplementation<FromBitmapFile>& original, platform::Class& self,
        platform::NullableString path, int flags);
    static platform::ImageRef kitImageNamed(const core::OriginalImplementation<Named>& original,
                                            platform::Class& self, platform::NullableString name);
    static platform::ImageRef _kitImageNamedWithTrait(
        const core::OriginalImplementation<NamedWithTrait>& original, platform::Class& self,
        platform::NullableString name, platform::ObjectRef trait);
};

}  // namespace velmoranth::hooks
