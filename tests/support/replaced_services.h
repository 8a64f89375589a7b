// Puts services of a test's own in the place of those of the process's platform.
#pragma once

#include "platform/platform.h"

namespace velmoranth::tests {

// Null leaves the service that is there.
struct ReplacedServices {
    platform::CoreFoundation* coreFoundation = nullptr;
    platform::PropertyLists* propertyLists = nullptr;
    platform::FileManager* fileManager = nullptr;
    platform::SystemLog* log = nullptr;
    platform::LibSystem* libSystem = nullptr;
    platform::CoreGraphics* coreGraphics = nullptr;
    platform::Images* images = nullptr;
    platform::ImageContexts* imageContexts = nullptr;
    platform::Fonts* fonts = nullptr;
    platform::Views* views = nullptr;
    platform::Device* device = nullptr;
    platform::Audio* audio = nullptr;
};

// All of them, with those in their places.
[[nodiscard]] platform::Platform withServices(const platform::Platform& now,
                                              const ReplacedServices& replaced);

void replaceServices(const ReplacedServices& replaced);

}  // namespace velmoranth::tests
