#include "simulator/home_screen/platform_classes.h"

#include "desktop/views/view_node.h"
#include "platform/springboard.h"
#include "simulator/home_screen/dock_views.h"
#include "simulator/home_screen/folder_icon_views.h"
#include "simulator/home_screen/icon_views.h"
#include "simulator/home_screen/live_icons.h"
#include "simulator/home_screen/page_control.h"
#include "simulator/toolkit/base_classes.h"
#include "simulator/toolkit/class_rows.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {
namespace {

using desktop::Runtime;
using platform::ImageRef;
using platform::NullableString;
using platform::SBIconRef;
using platform::ViewRef;

// In an order in which every superclass is known already. Names and relations after public header
// lists of iOS 10.2, 12.1 and 13.
constexpr std::array kClasses{
    ClassRow{"_UILegibilityView", "UIView"},
    ClassRow{"SBFStaticWallpaperView", "UIView"},
    ClassRow{"SBWallpaperEffectView", "UIView", Systems::only12},
    ClassRow{"MTMaterialView", "UIView", Systems::only13},
    ClassRow{"SBIcon", "NSObject"},
    ClassRow{"SBLeafIcon", "SBIcon"},
    ClassRow{"SBApplicationIcon", "SBLeafIcon"},
    ClassRow{"SBCalendarApplicationIcon", "SBApplicationIcon"},
    ClassRow{"SBClockApplicationIcon", "SBApplicationIcon"},
    ClassRow{"SBFolderIcon", "SBIcon"},
    ClassRow{"SBHIconImageCache", "NSObject"},
    ClassRow{"SBFolderIconImageCache", "NSObject"},
    ClassRow{"SBIconLabelImage", "UIImage"},
    ClassRow{"SBIconView", "UIView"},
    ClassRow{"SBIconImageView", "UIView"},
    ClassRow{"SBFolderIconImageView", "SBIconImageView"},
    ClassRow{"SBLiveIconImageView", "SBIconImageView"},
    ClassRow{"SBHClockApplicationIconImageView", "SBLiveIconImageView", Systems::only13},
    ClassRow{"SBFolderIconBackgroundView", "UIView", Systems::only12},
    ClassRow{"SBIconBadgeView", "UIView"},
    ClassRow{"SBDarkeningImageView", "UIImageView"},
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

// Where a class's layoutSubviews is what its view does in placeSubviews.
template <class ViewType>
void addLayout(Runtime& runtime, const char* className) {
    runtime.addInstanceMethod(
        className, "layoutSubviews",
        std::function<void(ViewType&)>([](ViewType& view) { view.placeSubviews(); }));
}

void addIconViewMethods(const PlatformObjects& objects) {
    Runtime& runtime = objects.runtime;
    addLayout<IconView>(runtime, "SBIconView");
    runtime.addInstanceMethod("SBIconImageView", "layoutSubviews",
                              std::function<void(IconImageView&)>([&runtime](IconImageView& view) {
                                  view.setContents(runtime.send<ImageRef>(view, "contentsImage"));
                              }));
    runtime.addInstanceMethod(
        "SBIconImageView", "darkeningOverlayImage",
        std::function<ImageRef(platform::SBIconImageView&)>([objects](platform::SBIconImageView&) {
            return objects.stockImages.darkeningOverlay(objects.iconSide, objects.screenScale);
        }));
    runtime.addInstanceMethod(
        "SBIconLabelImage", "_initWithCGImage:scale:orientation:parameters:maxSizeOffset:",
        std::function<ImageRef(IconLabelImage&, platform::BitmapImageRef, double, std::int64_t,
                               platform::ObjectRef, platform::Point)>(
            [](IconLabelImage& image, platform::BitmapImageRef bitmap, double scale, std::int64_t,
               const platform::ObjectRef&,
               platform::Point) { return image.init(std::move(bitmap), scale); }));
    addLayout<IconBadgeView>(runtime, "SBIconBadgeView");
    runtime.addInstanceVariable("SBIconBadgeView", "_backgroundView",
                                std::function<platform::ObjectRef(IconBadgeView&)>(
                                    [](IconBadgeView& view) { return view.backgroundView(); }));
    // About as wide as an icon, which a badge is not to outgrow.
    runtime.addClassMethod("SBIconBadgeView", "_maxTextWidth",
                           std::function<double(platform::Class&)>(
                               [objects](platform::Class&) { return objects.iconSide * 0.8; }));
}

void addFolderIconMethods(const PlatformObjects& objects) {
    Runtime& runtime = objects.runtime;
    addLayout<FolderIconImageView>(runtime, "SBFolderIconImageView");
    runtime.addInstanceMethod("SBFolderIconImageView", "initWithFrame:",
                              std::function<ViewRef(FolderIconImageView&, platform::Rect)>(
                                  [](FolderIconImageView& view, const platform::Rect& frame) {
                                      return view.init(frame);
                                  }));
    runtime.addInstanceVariable(
        "SBFolderIconImageView", "_backgroundView",
        std::function<platform::ObjectRef(FolderIconImageView&)>(
            [](FolderIconImageView& view) { return view.backgroundView(); }));
    runtime.addInstanceMethod(
        "SBFolderIconImageCache", "gridCellImageForIcon:",
        std::function<ImageRef(platform::SBFolderIconImageCache&, SBIconRef)>(
            [objects](platform::SBFolderIconImageCache&, const SBIconRef& icon) -> ImageRef {
                if (icon == nullptr) {
                    return nullptr;
                }
                return objects.stockImages.icon(icon->nodeIdentifier().value_or(""),
                                                objects.iconSide * kGridCellShare,
                                                objects.screenScale, IconMasking::masked);
            }));
}

void addDockMethods(const PlatformObjects& objects) {
    Runtime& runtime = objects.runtime;
    using platform::ObjectRef;
    addLayout<DockView>(runtime, "SBDockView");
    runtime.addInstanceVariable(
        "SBDockView", "_backgroundView",
        std::function<ObjectRef(DockView&)>([](DockView& dock) { return dock.backgroundView(); }));
    runtime.addInstanceVariable(
        "SBDockView", "_highlightView",
        std::function<ObjectRef(DockView&)>([](DockView& dock) { return dock.highlightView(); }));
    runtime.addInstanceVariable(
        "SBDockView", "_iconListView",
        std::function<ObjectRef(DockView&)>([](DockView& dock) { return dock.iconListView(); }));
    addLayout<FloatingDockView>(runtime, "SBFloatingDockView");
    runtime.addInstanceMethod("SBFloatingDockView", "userIconListView",
                              std::function<platform::SBIconListViewRef(FloatingDockView&)>(
                                  [](FloatingDockView& dock) { return dock.userList(); }));
    runtime.addInstanceMethod("SBFloatingDockView", "dividerView",
                              std::function<ViewRef(FloatingDockView&)>(
                                  [](FloatingDockView& dock) { return dock.divider(); }));
    addLayout<FloatingDockPlatterView>(runtime, "SBFloatingDockPlatterView");
    runtime.addInstanceVariable(
        "SBFloatingDockPlatterView", "_backgroundView",
        std::function<ObjectRef(FloatingDockPlatterView&)>(
            [](FloatingDockPlatterView& platter) { return platter.backgroundView(); }));
    runtime.addInstanceVariable(
        "SBFloatingDockPlatterView", "_shadowView",
        std::function<ObjectRef(FloatingDockPlatterView&)>(
            [](FloatingDockPlatterView& platter) { return platter.shadowView(); }));
}

void addPageControlMethods(const PlatformObjects& objects) {
    Runtime& runtime = objects.runtime;
    addLayout<PageControl>(runtime, "SBIconListPageControl");
    runtime.addInstanceMethod("SBIconListPageControl", "_iconListIndicatorImage:",
                              std::function<ImageRef(platform::SBIconListPageControl&, bool)>(
                                  [objects](platform::SBIconListPageControl&, bool isCurrent) {
                                      return objects.stockImages.pageDot(
                                          objects.pageDotSide, objects.screenScale, isCurrent);
                                  }));
    runtime.addInstanceMethod("SBIconListPageControl", "_searchIndicatorImage:",
                              std::function<ImageRef(platform::SBIconListPageControl&, bool)>(
                                  [objects](platform::SBIconListPageControl&, bool isCurrent) {
                                      return objects.stockImages.searchDot(
                                          objects.pageDotSide, objects.screenScale, isCurrent);
                                  }));
}

// What the home screen's cache of icon images has of an app.
std::function<ImageRef(platform::SBHIconImageCache&, SBIconRef)> stockIconOf(
    const PlatformObjects& objects, IconMasking masking) {
    return [objects, masking](platform::SBHIconImageCache&, const SBIconRef& icon) -> ImageRef {
        return icon == nullptr
                   ? nullptr
                   : objects.stockImages.icon(icon->nodeIdentifier().value_or(""), objects.iconSide,
                                              objects.screenScale, masking);
    };
}

// Icons make their images themselves, from what the toolkit has of the app.
void addIconMethodsOf12(const PlatformObjects& objects) {
    Runtime& runtime = objects.runtime;
    runtime.addInstanceMethod("SBHIconImageCache",
                              "imageForIcon:", stockIconOf(objects, IconMasking::masked));
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

// There views ask the home screen's cache, which has every icon make its image.
void addIconMethodsOf13(const PlatformObjects& objects) {
    Runtime& runtime = objects.runtime;
    runtime.addInstanceMethod(
        "SBHIconImageCache", "imageForIcon:",
        std::function<ImageRef(platform::SBHIconImageCache&, SBIconRef)>(
            [objects](platform::SBHIconImageCache&, const SBIconRef& icon) -> ImageRef {
                return icon == nullptr ? nullptr
                                       : objects.runtime.send<ImageRef, platform::SBIconImageInfo>(
                                             *icon, "generateIconImageWithInfo:",
                                             iconImageInfo(objects.iconSide, objects.screenScale));
            }));
    runtime.addInstanceMethod(
        "SBIcon", "generateIconImageWithInfo:",
        std::function<ImageRef(platform::SBIcon&, platform::SBIconImageInfo)>(
            [objects](platform::SBIcon& icon, const platform::SBIconImageInfo& info) {
                return objects.stockImages.icon(icon.nodeIdentifier().value_or(""), info.size.width,
                                                info.scale, IconMasking::masked);
            }));
    runtime.addInstanceMethod("SBIconImageView", "contentsImage",
                              std::function<ImageRef(platform::SBIconImageView&)>(
                                  [objects](platform::SBIconImageView& view) {
                                      return objects.runtime.send<ImageRef, SBIconRef>(
                                          *objects.iconImageCache, "imageForIcon:", view.icon());
                                  }));
}

}  // namespace

void registerPlatformClasses(const SystemVersion& system, const PlatformObjects& objects) {
    addClasses(kClasses, system, objects.runtime);
    for (const auto& add :
         {addIconViewMethods, addFolderIconMethods, addDockMethods, addPageControlMethods}) {
        add(objects);
    }
    objects.runtime.addInstanceMethod(
        "SBHIconImageCache", "unmaskedImageForIcon:", stockIconOf(objects, IconMasking::unmasked));
    if (system.major < 13) {
        addIconMethodsOf12(objects);
    } else {
        addIconMethodsOf13(objects);
    }
    addLiveIconMethods(system, objects);
}

}  // namespace velmoranth::simulator
