// A library that replaces the icon images of both systems with plain red squares, and with blue
// ones after the notification "test.blue". Each asks the platform twice. After "test.end" it asks
// for two files and ends its process with a signal.
#include "platform/platform.h"

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

namespace velmoranth::platform {
namespace {

Implementation originalCacheImage;
Implementation originalImage;
bool blue = false;

ImageRef square() {
    ImageContexts& contexts = platform().imageContexts;
    contexts.beginImageContextWithOptions({60, 60}, false, 0);
    const GraphicsContextRef context = contexts.getCurrentContext();
    const double part = blue ? 0 : 1;
    const GradientRef gradient = platform().coreGraphics.gradientCreateWithColorComponents(
        ColorSpace::deviceRGB, {part, 0, 1 - part, 1, part, 0, 1 - part, 1}, std::nullopt);
    context->drawLinearGradient(gradient, {0, 0}, {0, 60},
                                kGradientDrawsBeforeStartLocation | kGradientDrawsAfterEndLocation);
    const ImageRef image = contexts.getImageFromCurrentImageContext();
    contexts.endImageContext();
    return image;
}

[[gnu::constructor]] void load() {
    const Platform& services = platform();
    services.log.write("painting " + std::to_string(services.coreFoundation.versionNumber()));
    // What icon views reach on iOS 13, and on iOS 12.
    services.substrate.hookMessageEx(
        services.objc.getClass("SBHIconImageCache"), "imageForIcon:",
        makeImplementation(std::function<ImageRef(SBHIconImageCache&, SBIconRef)>(
            [](SBHIconImageCache& self, const SBIconRef& icon) {
                const auto& original = *originalCacheImage.as<ImageRef(Object&, SBIconRef)>();
                original(self, icon);
                original(self, icon);
                return square();
            })),
        &originalCacheImage);
    services.substrate.hookMessageEx(
        services.objc.getMetaclass(services.objc.getClass("UIImage")),
        "_applicationIconImageForBundleIdentifier:format:scale:",
        makeImplementation(std::function<ImageRef(Class&, NullableString, int, double)>(
            [](Class& self, const NullableString& identifier, int format, double scale) {
                const auto& original =
                    *originalImage.as<ImageRef(Object&, NullableString, int, double)>();
                original(self, identifier, format, scale);
                original(self, identifier, format, scale);
                return square();
            })),
        &originalImage);
    services.darwinNotifications.addObserver(
        nullptr,
        [](DarwinNotificationCenter&, void*, const std::string& name, const void*,
           const Dictionary*) {
            blue = true;
            platform().log.write("heard " + name);
        },
        "test.blue", nullptr, SuspensionBehavior::coalesce);
    services.darwinNotifications.addObserver(
        nullptr,
        [](DarwinNotificationCenter&, void*, const std::string&, const void*, const Dictionary*) {
            FileManager& files = platform().fileManager;
            static_cast<void>(files.fileExistsAtPath("/long/" + std::string(70000, 'x')));
            static_cast<void>(files.fileExistsAtPath("/asked/last"));
            std::abort();
        },
        "test.end", nullptr, SuspensionBehavior::coalesce);
}

}  // namespace
}  // namespace velmoranth::platform
