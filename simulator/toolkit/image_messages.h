// What an app sends to get interface images: each function is one message, so a replaced method is
// what answers. Every image may be nil.
#pragma once

#include "desktop/runtime/runtime.h"
#include "platform/uikit.h"
#include "simulator/toolkit/toolkit_images.h"

#include <string>

namespace velmoranth::simulator {

class ImageMessages {
  public:
    // Both outlive this object.
    ImageMessages(desktop::Runtime& runtime, const ToolkitImages& images)
        : runtime_(runtime), images_(images) {}

    // To the class UIImage.
    [[nodiscard]] platform::ImageRef systemImageNamed(const std::string& name) const {
        return named("systemImageNamed:", name);
    }

    [[nodiscard]] platform::ImageRef kitImageNamed(const std::string& name) const {
        return named("kitImageNamed:", name);
    }

    [[nodiscard]] platform::ImageRef imageNamedWithTrait(const std::string& name,
                                                         const platform::ObjectRef& trait) const {
        return runtime_
            .sendToClass<platform::ImageRef, platform::NullableString, platform::ObjectRef>(
                "UIImage", "_imageNamed:withTrait:", name, trait);
    }

    // The bundle is named by its identifier; one that the device does not have is nil.
    [[nodiscard]] platform::ImageRef imageNamedInBundle(const std::string& name,
                                                        std::string_view bundle) const {
        return runtime_
            .sendToClass<platform::ImageRef, platform::NullableString, platform::BundleRef>(
                "UIImage", "imageNamed:inBundle:", name, images_.bundle(bundle));
    }

    [[nodiscard]] platform::ImageRef imageNamedInBundleCompatibleWithTraitCollection(
        const std::string& name, std::string_view bundle, const platform::ObjectRef& traits) const {
        return namedInBundleWith("imageNamed:inBundle:compatibleWithTraitCollection:", name, bundle,
                                 traits);
    }

    [[nodiscard]] platform::ImageRef imageNamedInBundleWithConfiguration(
        const std::string& name, std::string_view bundle,
        const platform::ObjectRef& configuration) const {
        return namedInBundleWith("imageNamed:inBundle:withConfiguration:", name, bundle,
                                 configuration);
    }

  private:
    [[nodiscard]] platform::ImageRef named(const char* selector, const std::string& name) const {
        return runtime_.sendToClass<platform::ImageRef, platform::NullableString>("UIImage",
                                                                                  selector, name);
    }

    [[nodiscard]] platform::ImageRef namedInBundleWith(const char* selector,
                                                       const std::string& name,
                                                       std::string_view bundle,
                                                       const platform::ObjectRef& with) const {
        return runtime_.sendToClass<platform::ImageRef, platform::NullableString,
                                    platform::BundleRef, platform::ObjectRef>(
            "UIImage", selector, name, images_.bundle(bundle), with);
    }

    desktop::Runtime& runtime_;
    const ToolkitImages& images_;
};

}  // namespace velmoranth::simulator
