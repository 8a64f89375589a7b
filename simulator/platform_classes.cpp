#include "simulator/platform_classes.h"

#include "platform/springboard.h"

#include <array>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::simulator {
namespace {

using desktop::Runtime;
using platform::ImageRef;
using platform::NullableString;
using platform::SBIconRef;

enum class Systems { both, only12, only13 };

struct ClassRow {
    std::string_view name;
    std::string_view superclass;  // "" for a root
    Systems systems = Systems::both;
};

// In an order in which every superclass is known already. Names and relations after public header
// lists of iOS 10.2, 12.1 and 13.
constexpr std::array kClasses{
    ClassRow{"NSObject", ""},
    ClassRow{"UIImage", "NSObject"},
    ClassRow{"UIView", "NSObject"},
    ClassRow{"UIWindow", "UIView"},
    ClassRow{"UIImageView", "UIView"},
    ClassRow{"UILabel", "UIView"},
    ClassRow{"UIControl", "UIView"},
    ClassRow{"UIPageControl", "UIControl"},
    ClassRow{"UIStatusBar_Modern", "UIView"},
    ClassRow{"_UILegibilityView", "UIView"},
    ClassRow{"SBFStaticWallpaperView", "UIView"},
    ClassRow{"SBWallpaperEffectView", "UIView", Systems::only12},
    ClassRow{"MTMaterialView", "UIView", Systems::only13},
    ClassRow{"SBIcon", "NSObject"},
    ClassRow{"SBLeafIcon", "SBIcon"},
    ClassRow{"SBApplicationIcon", "SBLeafIcon"},
    ClassRow{"SBCalendarApplicationIcon", "SBApplicationIcon"},
    ClassRow{"SBClockApplicationIcon", "SBApplicationIcon"},
    ClassRow{"SBHIconImageCache", "NSObject", Systems::only13},
    ClassRow{"SBIconView", "UIView"},
    ClassRow{"SBIconImageView", "UIView"},
    ClassRow{"SBIconLegibilityLabelView", "_UILegibilityView"},
    ClassRow{"SBIconListPageControl", "UIPageControl"},
    ClassRow{"SBIconListView", "UIView"},
    ClassRow{"SBRootIconListView", "SBIconListView"},
    ClassRow{"SBDockIconListView", "SBRootIconListView", Systems::only12},
    ClassRow{"SBDockIconListView", "SBIconListView", Systems::only13},
    ClassRow{"SBDockView", "UIView"},
    ClassRow{"SBFloatingDockView", "UIView"},
    ClassRow{"SBFloatingDockPlatterView", "UIView"},
};

bool isIn(Systems systems, const SystemVersion& system) {
    return systems == Systems::both || (systems == Systems::only12) == (system.major < 13);
}

// Sides of the platform's icon formats: settings, search, notifications.
struct FormatRow {
    int format;
    double side;  // points
};

constexpr std::array kFormats{FormatRow{0, 29}, FormatRow{1, 40}, FormatRow{5, 20}};

void addViewMethods(const PlatformObjects& objects) {
    Runtime& runtime = objects.runtime;
    runtime.addInstanceMethod("UIView", "layoutSubviews",
                              std::function<void(platform::View&)>([](platform::View&) {}));
    runtime.addInstanceMethod(
        "SBIconView", "layoutSubviews",
        std::function<void(IconView&)>([](IconView& view) { view.placeSubviews(); }));
    runtime.addInstanceMethod("SBIconImageView", "layoutSubviews",
                              std::function<void(IconImageView&)>([&runtime](IconImageView& view) {
                                  view.setContents(runtime.send<ImageRef>(view, "contentsImage"));
                              }));
}

void addImageMethods(const PlatformObjects& objects) {
    objects.runtime.addClassMethod(
        "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:",
        std::function<ImageRef(platform::Class&, NullableString, int, double)>(
            [objects](platform::Class&, const NullableString& bundleIdentifier, int format,
                      double scale) -> ImageRef {
                if (!bundleIdentifier) {
                    return nullptr;
                }
                return objects.stockImages.icon(
                    *bundleIdentifier, iconSideOfFormat(format, objects.iconSide),
                    scale == 0 ? objects.screenScale : scale, IconMasking::masked);
            }));
}

// Icons make their images themselves, from what the toolkit has of the app.
void addIconMethodsOf12(const PlatformObjects& objects) {
    Runtime& runtime = objects.runtime;
    runtime.addInstanceMethod("SBApplicationIcon", "getUnmaskedIconImage:",
                              std::function<ImageRef(platform::SBApplicationIcon&, int)>(
                                  [objects](platform::SBApplicationIcon& icon, int format) {
                                      return objects.stockImages.icon(
                                          icon.leafIdentifier().value_or(""),
                                          iconSideOfFormat(format, objects.iconSide),
                                          objects.screenScale, IconMasking::unmasked);
                                  }));
    runtime.addInstanceMethod(
        "SBApplicationIcon", "generateIconImage:",
        std::function<ImageRef(platform::SBApplicationIcon&, int)>(
            [objects](platform::SBApplicationIcon& icon, int format) {
                return objects.runtime.sendToClass<ImageRef, NullableString, int, double>(
                    "UIImage",
                    "_applicationIconImageForBundleIdentifier:format:scale:", icon.leafIdentifier(),
                    format, objects.screenScale);
            }));
    runtime.addInstanceMethod("SBIcon", "getIconImage:",
                              std::function<ImageRef(platform::SBIcon&, int)>(
                                  [&runtime](platform::SBIcon& icon, int format) {
                                      return runtime.send<ImageRef, int>(
                                          icon, "generateIconImage:", format);
                                  }));
    runtime.addInstanceMethod(
        "SBIconImageView", "contentsImage",
        std::function<ImageRef(platform::SBIconImageView&)>(
            [&runtime](platform::SBIconImageView& view) -> ImageRef {
                const SBIconRef icon = view.icon();
                return icon == nullptr ? nullptr
                                       : runtime.send<ImageRef, int>(
                                             *icon, "getIconImage:", kHomeScreenIconFormat);
            }));
}

// The home screen has one cache that every view asks.
void addIconMethodsOf13(const PlatformObjects& objects) {
    Runtime& runtime = objects.runtime;
    const auto cached = [&objects](IconMasking masking) {
        return std::function<ImageRef(platform::SBHIconImageCache&, SBIconRef)>(
            [objects, masking](platform::SBHIconImageCache&, const SBIconRef& icon) -> ImageRef {
                if (icon == nullptr) {
                    return nullptr;
                }
                return objects.stockImages.icon(icon->nodeIdentifier().value_or(""),
                                                objects.iconSide, objects.screenScale, masking);
            });
    };
    runtime.addInstanceMethod("SBHIconImageCache", "imageForIcon:", cached(IconMasking::masked));
    runtime.addInstanceMethod("SBHIconImageCache",
                              "unmaskedImageForIcon:", cached(IconMasking::unmasked));
    runtime.addInstanceMethod("SBIconImageView", "contentsImage",
                              std::function<ImageRef(platform::SBIconImageView&)>(
                                  [objects](platform::SBIconImageView& view) {
                                      return objects.runtime.send<ImageRef, SBIconRef>(
                                          *objects.iconImageCache, "imageForIcon:", view.icon());
                                  }));
}

}  // namespace

void registerPlatformClasses(const SystemVersion& system, const PlatformObjects& objects) {
    for (const ClassRow& row : kClasses) {
        if (isIn(row.systems, system)) {
            objects.runtime.addClass(std::string(row.name), std::string(row.superclass));
        }
    }
    addViewMethods(objects);
    addImageMethods(objects);
    if (system.major < 13) {
        addIconMethodsOf12(objects);
    } else {
        addIconMethodsOf13(objects);
    }
}

double iconSideOfFormat(int format, double homeScreenIconSide) {
    for (const FormatRow& row : kFormats) {
        if (row.format == format) {
            return row.side;
        }
    }
    return homeScreenIconSide;
}

}  // namespace velmoranth::simulator
