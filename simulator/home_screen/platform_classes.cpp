#include "simulator/home_screen/platform_classes.h"

#include "platform/springboard.h"
#include "simulator/home_screen/dock_views.h"
#include "simulator/home_screen/folder_icon_views.h"
#include "simulator/home_screen/icon_views.h"
#include "simulator/home_screen/live_icons.h"
#include "simulator/home_screen/open_folder_views.h"
#include "simulator/home_screen/page_control.h"
#include "simulator/toolkit/base_classes.h"
#include "simulator/toolkit/class_rows.h"

#include <array>
#include <cstdint>

namespace velmoranth::simulator {
namespace {

using desktop::Runtime;
using platform::ImageRef;
using platform::ObjectRef;
using platform::SBIconRef;

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
    // Around an open folder.
    ClassRow{"UITouch", "NSObject"},
    ClassRow{"UIGestureRecognizer", "NSObject"},
    ClassRow{"UITapGestureRecognizer", "UIGestureRecognizer"},
    ClassRow{"UIViewController", "NSObject"},
    ClassRow{"UIVisualEffectView", "UIView", Systems::only12},
    ClassRow{"SBFolder", "NSObject"},
    ClassRow{"SBFolderView", "UIView"},
    ClassRow{"SBFloatyFolderView", "SBFolderView"},
    ClassRow{"SBFolderControllerBackgroundView", "UIView"},
    ClassRow{"SBFolderBackgroundView", "UIView"},
    ClassRow{"SBFolderIconListView", "SBIconListView"},
    ClassRow{"SBIconController", "UIViewController"},
};

constexpr const char* kLayout = "layoutSubviews";

// Nil for a nil icon.
ImageRef stockIcon(const ScreenContext& context, const SBIconRef& icon, double side,
                   IconMasking masking) {
    return icon == nullptr ? nullptr
                           : context.stockImages.icon(icon->nodeIdentifier().value_or(""), side,
                                                      context.scale(), masking);
}

void addIconViewMethods(const ScreenContext& context) {
    Runtime& runtime = context.runtime;
    ClassMethods(runtime, "SBIconView").add(kLayout, &IconView::placeSubviews);
    ClassMethods(runtime, "SBIconImageView")
        .add(kLayout,
             [&runtime](IconImageView& view) {
                 view.setContents(runtime.send<ImageRef>(view, "contentsImage"));
             })
        .add("darkeningOverlayImage", [&context](platform::SBIconImageView&) {
            return context.picture(drawPressedOverlay(context.metrics.iconSide, context.scale()));
        });
    ClassMethods(runtime, "SBIconLabelImage")
        .add("_initWithCGImage:scale:orientation:parameters:maxSizeOffset:",
             [](IconLabelImage& image, const platform::BitmapImageRef& bitmap, double scale,
                std::int64_t, const ObjectRef&,
                platform::Point) { return image.init(bitmap, scale); });
    ClassMethods(runtime, "SBIconBadgeView")
        .add(kLayout, &IconBadgeView::placeSubviews)
        .addVariable("_backgroundView", &IconBadgeView::backgroundView)
        // About as wide as an icon, which a badge is not to outgrow.
        .addToClass("_maxTextWidth", [&context] { return context.metrics.iconSide * 0.8; });
}

void addFolderIconMethods(const ScreenContext& context) {
    ClassMethods(context.runtime, "SBFolderIconImageView")
        .add(kLayout, &FolderIconImageView::placeSubviews)
        .add("initWithFrame:", &FolderIconImageView::init)
        .addVariable("_backgroundView", &FolderIconImageView::backgroundView);
    ClassMethods(context.runtime, "SBFolderIconImageCache")
        .add("gridCellImageForIcon:",
             [&context](platform::SBFolderIconImageCache&, const SBIconRef& icon) {
                 return stockIcon(context, icon, context.metrics.iconSide * kGridCellShare,
                                  IconMasking::masked);
             });
}

void addDockMethods(const ScreenContext& context) {
    ClassMethods(context.runtime, "SBDockView")
        .add(kLayout, &DockView::placeSubviews)
        .addVariable("_backgroundView", &DockView::backgroundView)
        .addVariable("_highlightView", &DockView::highlightView)
        .addVariable("_iconListView", &DockView::iconListView);
    ClassMethods(context.runtime, "SBFloatingDockView")
        .add(kLayout, &FloatingDockView::placeSubviews)
        .add("userIconListView",
             [](const FloatingDockView& dock) -> platform::SBIconListViewRef {
                 return dock.userList();
             })
        .add("dividerView", &FloatingDockView::divider);
    ClassMethods(context.runtime, "SBFloatingDockPlatterView")
        .add(kLayout, &FloatingDockPlatterView::placeSubviews)
        .addVariable("_backgroundView", &FloatingDockPlatterView::backgroundView)
        .addVariable("_shadowView", &FloatingDockPlatterView::shadowView);
}

void addPageControlMethods(const ScreenContext& context) {
    const auto indicator = [&context](auto draw) {
        return [&context, draw](platform::SBIconListPageControl&, bool isCurrent) {
            return context.picture(
                draw(isCurrent ? PageIndicatorState::current : PageIndicatorState::other,
                     context.metrics.pageDotSide, context.scale()));
        };
    };
    ClassMethods(context.runtime, "SBIconListPageControl")
        .add(kLayout, &PageControl::placeSubviews)
        .add("_iconListIndicatorImage:", indicator(drawPageDot))
        .add("_searchIndicatorImage:", indicator(drawSearchDot));
}

void addOpenFolderMethods(const ScreenContext& context) {
    Runtime& runtime = context.runtime;
    ClassMethods(runtime, "SBFolderControllerBackgroundView")
        .add("initWithFrame:", &FolderControllerBackgroundView::init)
        .addVariable("_blurView", &FolderControllerBackgroundView::blurView)
        .addVariable("_tintView", &FolderControllerBackgroundView::tintView);
    ClassMethods(runtime, "SBFolderBackgroundView")
        .add(kLayout, &FolderBackgroundView::placeSubviews)
        .addVariable("_blurView", &FolderBackgroundView::blurView)
        .addVariable("_tintView", &FolderBackgroundView::tintView);
    ClassMethods(runtime, "SBFloatyFolderView")
        .add("initWithFolder:orientation:viewMap:context:",
             [](FloatyFolderView& view, const ObjectRef& folder, std::int64_t, const ObjectRef&,
                const ObjectRef&) { return view.init(folder); })
        .add(kLayout, &FloatyFolderView::placeSubviews)
        .add("_showsTitle", [](platform::SBFloatyFolderView&) { return true; })
        .add("_tapToCloseGestureRecognizer:shouldReceiveTouch:",
             [](FloatyFolderView& view, const platform::GestureRecognizerRef&,
                const ObjectRef& touch) { return view.isOutside(touch); });
    ClassMethods(runtime, "SBIconController")
        .addToClass(
            "sharedInstance",
            [&context]() -> platform::SBIconControllerRef { return context.iconController; })
        .add("_closeFolderController:animated:withCompletion:", &IconController::closeFolder);
}

// Icons make their images themselves, from what the toolkit has of the app.
void addIconMethodsOf12(const ScreenContext& context) {
    Runtime& runtime = context.runtime;
    ClassMethods(runtime, "SBHIconImageCache")
        .add("imageForIcon:", [&context](platform::SBHIconImageCache&, const SBIconRef& icon) {
            return stockIcon(context, icon, context.metrics.iconSide, IconMasking::masked);
        });
    ClassMethods(runtime, "SBApplicationIcon")
        .add("getUnmaskedIconImage:",
             [&context](platform::SBApplicationIcon& icon, int format) {
                 return context.stockImages.icon(icon.leafIdentifier().value_or(""),
                                                 iconSideOfFormat(format, context.metrics.iconSide),
                                                 context.scale(), IconMasking::unmasked);
             })
        .add("generateIconImage:", [&context](platform::SBApplicationIcon& icon, int format) {
            return askForAppIcon(context, icon.leafIdentifier(), format);
        });
    ClassMethods(runtime, "SBIcon")
        .add("getIconImage:", [&runtime](platform::SBIcon& icon, int format) {
            return runtime.send<ImageRef, int>(icon, "generateIconImage:", format);
        });
    ClassMethods(runtime, "SBIconImageView")
        .add("contentsImage", [&runtime](platform::SBIconImageView& view) -> ImageRef {
            const SBIconRef icon = view.icon();
            return icon == nullptr
                       ? nullptr
                       : runtime.send<ImageRef, int>(*icon, "getIconImage:", kHomeScreenIconFormat);
        });
}

// There views ask the home screen's cache, which has every icon make its image.
void addIconMethodsOf13(const ScreenContext& context) {
    Runtime& runtime = context.runtime;
    ClassMethods(runtime, "SBHIconImageCache")
        .add("imageForIcon:",
             [&context](platform::SBHIconImageCache&, const SBIconRef& icon) -> ImageRef {
                 return icon == nullptr
                            ? nullptr
                            : context.runtime.send<ImageRef, platform::SBIconImageInfo>(
                                  *icon, "generateIconImageWithInfo:",
                                  iconImageInfo(context.metrics.iconSide, context.scale()));
             });
    ClassMethods(runtime, "SBIcon")
        .add("generateIconImageWithInfo:",
             [&context](platform::SBIcon& icon, const platform::SBIconImageInfo& info) {
                 return context.stockImages.icon(icon.nodeIdentifier().value_or(""),
                                                 info.size.width, info.scale, IconMasking::masked);
             });
    ClassMethods(runtime, "SBIconImageView")
        .add("contentsImage", [&context](platform::SBIconImageView& view) {
            return context.runtime.send<ImageRef, SBIconRef>(*context.iconImageCache,
                                                             "imageForIcon:", view.icon());
        });
}

}  // namespace

void registerPlatformClasses(const ScreenContext& context) {
    const bool is12 = context.device.system.major < 13;
    addClasses(kClasses, context.device.system, context.runtime);
    for (const auto& add : {addIconViewMethods, addFolderIconMethods, addDockMethods,
                            addPageControlMethods, addOpenFolderMethods,
                            is12 ? addIconMethodsOf12 : addIconMethodsOf13, addLiveIconMethods}) {
        add(context);
    }
    ClassMethods(context.runtime, "SBHIconImageCache")
        .add("unmaskedImageForIcon:",
             [&context](platform::SBHIconImageCache&, const SBIconRef& icon) {
                 return stockIcon(context, icon, context.metrics.iconSide, IconMasking::unmasked);
             });
}

}  // namespace velmoranth::simulator
