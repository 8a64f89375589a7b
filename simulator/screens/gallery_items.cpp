#include "simulator/screens/gallery_items.h"

#include "desktop/imaging/bitmap_image.h"
#include "platform/platform.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/home_screen/backdrop.h"
#include "simulator/home_screen/dock_views.h"
#include "simulator/home_screen/folder_icon_views.h"
#include "simulator/home_screen/live_icons.h"
#include "simulator/home_screen/open_folder_views.h"
#include "simulator/home_screen/page_control.h"
#include "simulator/home_screen/platform_classes.h"
#include "simulator/screen.h"
#include "simulator/screens/icon_places.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/switch_view.h"
#include "simulator/toolkit/toolkit_objects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace velmoranth::simulator {
namespace {

using platform::ImageRef;
using platform::NullableString;
using platform::ObjectRef;
using platform::Rect;
using platform::Size;
using platform::ViewRef;

// Whose icon is asked for beside the home screen.
constexpr const char* kAppElsewhere = "com.apple.Maps";

// Stands for the blurred wallpaper behind a dock and behind a folder's miniatures.
constexpr platform::Color kMaterial{1, 1, 1, 0.35};
// About what three suggested icons need less than a pad's screen is wide.
constexpr double kPlatterShare = 0.8;

// PKIconImageCache.
using SettingsIcons = Named<"PKIconImageCache", platform::PKIconImageCache>;

// What a theme's file for a part of the home screen is called.
struct FurnitureFile {
    std::string_view name;
    std::string_view onPhones;
    std::string_view onPads;  // "" where it is the same
};

constexpr std::array kFurnitureFiles{
    FurnitureFile{"Search Dot", "Bundles/com.apple.springboard/Spotlight_Pages.png", ""},
    FurnitureFile{"Current Page Dot", "Bundles/com.apple.springboard/SBPageDotCurrent.png", ""},
    FurnitureFile{"Page Dot", "Bundles/com.apple.springboard/SBPageDot.png", ""},
    FurnitureFile{"Badge", "Bundles/com.apple.springboard/SBBadgeBG.png", ""},
    FurnitureFile{"Pressed Icon", "Bundles/com.apple.mobileicons.framework/AppIconMask.png", ""},
    FurnitureFile{"Folder Icon", "Velmoranth/Folder.png", "Velmoranth/ipadFolder.png"},
    FurnitureFile{"Behind Open Folder", "Bundles/com.apple.springboard/ANEMFolderBackground.png",
                  ""},
    FurnitureFile{"Dock", "Velmoranth/SBDockBGiphone.png", "Velmoranth/SBDockBGipad.png"}};

std::string furnitureFile(std::string_view name, DeviceKind kind) {
    const auto* const row = std::ranges::find(kFurnitureFiles, name, &FurnitureFile::name);
    return row == kFurnitureFiles.end()
               ? ""
               : std::string(kind == DeviceKind::pad && !row->onPads.empty() ? row->onPads
                                                                             : row->onPhones);
}

Size square(double side) {
    return {side, side};
}

std::string_view groupOf(const BundleCatalog& catalog) {
    struct GroupRow {
        std::string_view bundle, group;
    };

    constexpr std::array kRows{GroupRow{kToolkitBundle, "Toolkit"},
                               GroupRow{kGlyphsBundle, "Glyphs"},
                               GroupRow{kAppBundle, "App Bundle"}};
    const auto* const found = std::ranges::find(kRows, catalog.identifier, &GroupRow::bundle);
    return found == kRows.end() ? "Home Screen Bundle" : found->group;
}

}  // namespace

GalleryItems::GalleryItems(const ScreenContext& context)
    : context_(context), ask_(context.runtime, context.toolkit) {
    addAppIcons();
    addLiveIcons();
    addMiniatures();
    addPlacesOfIcons();
    addFurniture();
    addSettings();
    addWeather();
    addControls();
    addCatalogs();
}

ImageRef GalleryItems::stockIcon(const App& app, double side) const {
    return context_.stockImages.icon(std::string(app.bundleIdentifier), side, context_.scale(),
                                     IconMasking::masked);
}

bool GalleryItems::isLive(const App& app) const {
    return app.iconClass == "SBCalendarApplicationIcon" ||
           (app.iconClass == "SBClockApplicationIcon" && context_.device.system.major >= 13);
}

// As its view on the home screen asks: the icon on iOS 12, the cache of images on 13.
void GalleryItems::addIcon(std::string_view group, const App& app) {
    items_.push_back(
        {group, std::string(app.name), std::string(app.bundleIdentifier), GalleryPlate::light,
         [this, &app] { return stockIcon(app, context_.metrics.iconSide); },
         [this, &app] {
             return context_.runtime.send<ImageRef>(
                 *makeIconImageView(makeApplicationIcon(app), app, context_.device.system),
                 "contentsImage");
         },
         square(context_.metrics.iconSide)});
}

void GalleryItems::addAppIcons() {
    for (const App* const app : homeScreenApps()) {
        if (!isLive(*app)) {
            addIcon("Home Screen Icons", *app);
        }
    }
    std::vector<const App*> dock;
    for (const App& app : dockApps()) {
        dock.push_back(&app);
    }
    if (context_.metrics.dockStyle == DockStyle::floating) {
        for (const App& app : suggestedApps()) {
            dock.push_back(&app);
        }
    }
    for (const App* const app : dock) {
        const auto isSame = [app](const GalleryItem& item) {
            return item.bundle == app->bundleIdentifier;
        };
        if (!isLive(*app) && std::ranges::none_of(items_, isSame)) {
            addIcon("Dock Icons", *app);
        }
    }
}

ImageRef GalleryItems::clockFace() const {
    return processedIconImage(context_.toolkit.stockImage(kClockFace, std::string(kClockBundle)),
                              iconImageInfo(context_.metrics.iconSide, context_.scale()), true,
                              context_.images);
}

void GalleryItems::addLiveIcons() {
    for (const App* const app : homeScreenApps()) {
        if (!isLive(*app)) {
            continue;
        }
        addIcon("Live Icons", *app);
        GalleryItem& item = items_.back();
        if (app->iconClass == "SBCalendarApplicationIcon") {
            item.before = [this] {
                return drawCalendarIcon(
                    context_.stockImages.calendarBase(context_.metrics.iconSide, context_.scale()),
                    context_.scale(), context_.dates, context_.images);
            };
        } else {
            // Its face; the hands lie over it.
            item.name = kClockFace;
            item.bundle = kClockBundle;
            item.before = [this] { return clockFace(); };
        }
    }
}

void GalleryItems::addMiniatures() {
    for (const HomeScreenItem& place : homeScreenItems()) {
        if (place.folder == nullptr) {
            continue;
        }
        for (const App& app : place.folder->apps) {
            const double side = context_.metrics.iconSide * kGridCellShare;
            items_.push_back({"Folder Miniatures", std::string(app.name),
                              std::string(app.bundleIdentifier), GalleryPlate::light,
                              [this, &app, side] { return stockIcon(app, side); },
                              [this, &app] {
                                  return context_.runtime.send<ImageRef, platform::SBIconRef>(
                                      *context_.folderIconImageCache,
                                      "gridCellImageForIcon:", makeApplicationIcon(app));
                              },
                              square(side)});
        }
    }
}

// One app's in each place: every other is asked for in the same way.
void GalleryItems::addPlacesOfIcons() {
    const auto add = [this](const char* name, double side, std::function<ImageRef()> after) {
        items_.push_back({"Icons in Other Places", name, kAppElsewhere, GalleryPlate::light,
                          [this, side] {
                              return context_.stockImages.icon(
                                  kAppElsewhere, side, context_.scale(), IconMasking::masked);
                          },
                          std::move(after), square(side)});
    };
    add("Widget", kWidgetSide, [this] {
        // The home screen has asked for the icon before a widget does, and a replacement may keep
        // what it gave there.
        for (const GalleryItem& item : items_) {
            if (item.bundle == kAppElsewhere) {
                static_cast<void>(item.after());
                break;
            }
        }
        return widgetIcon(kAppElsewhere, context_);
    });
    add("Suggestion", kSuggestionSide, [this] { return suggestedIcon(kAppElsewhere, context_); });
    add("Switcher", kBannerSide, [this] { return switcherIcon(kAppElsewhere, context_); });
    if (context_.device.system.major >= 13) {
        add("Notification", kNotificationSide,
            [this] { return notificationIcon(kAppElsewhere, context_); });
    }
}

ImageRef GalleryItems::drawn(const ViewRef& view, Size size) const {
    const auto pixels = [this](double points) {
        return static_cast<std::size_t>(std::lround(points * context_.scale()));
    };
    return context_.images.makeImage(
        desktop::renderTree(view, {pixels(size.width), pixels(size.height)}, context_.scale()),
        context_.scale());
}

void GalleryItems::addFurniture(const char* name, std::function<ImageRef()> before,
                                std::function<ImageRef()> after, Size place) {
    items_.push_back({"Home Screen", name, furnitureFile(name, context_.device.kind),
                      GalleryPlate::wallpaper, std::move(before), std::move(after), place});
}

void GalleryItems::addFurniture() {
    addPageDots();
    addFurniture(
        "Badge",
        [this] {
            const Size size = IconBadgeView::create(context_, "1")->bounds().size;
            return context_.picture(drawBadgeBackground(size.width, context_.scale(), size.height));
        },
        [this]() -> ImageRef {
            const auto badge = IconBadgeView::create(context_, "1");
            layoutTree(context_.runtime, badge);
            return badge->alpha() > 0 ? badge->backgroundView()->image() : nullptr;
        },
        IconBadgeView::create(context_, "1")->bounds().size);
    addFurniture(
        "Pressed Icon",
        [this] {
            return context_.picture(
                drawPressedOverlay(context_.metrics.iconSide, context_.scale()));
        },
        [this] {
            const App& app = dockApps().front();
            return context_.runtime.send<ImageRef>(
                *makeIconImageView(makeApplicationIcon(app), app, context_.device.system),
                "darkeningOverlayImage");
        },
        square(context_.metrics.iconSide));
    addFolderPictures();
    addDock();
}

void GalleryItems::addPageDots() {
    using enum PageIndicatorState;
    const auto add = [this](const char* name, const char* selector, auto draw,
                            PageIndicatorState state) {
        addFurniture(
            name,
            [this, draw, state] {
                return context_.picture(
                    draw(state, context_.metrics.pageDotSide, context_.scale()));
            },
            [this, selector, state] {
                const auto control =
                    std::make_shared<PageControl>(context_, platform::Point{}, 2, true);
                ImageRef image =
                    context_.runtime.send<ImageRef, bool>(*control, selector, state == current);
                // One without dots says whether they show, and asks for none of their pictures.
                const auto none =
                    std::make_shared<PageControl>(context_, platform::Point{}, 0, false);
                context_.runtime.send<void>(*none, "layoutSubviews");
                return none->isHidden() ? nullptr : image;
            });
    };
    add("Search Dot", "_searchIndicatorImage:", drawSearchDot, other);
    add("Current Page Dot", "_iconListIndicatorImage:", drawPageDot, current);
    add("Page Dot", "_iconListIndicatorImage:", drawPageDot, other);
}

void GalleryItems::addFolderPictures() {
    const double side = context_.metrics.iconSide;
    const auto plate = [this, side] {
        return context_.images.makeImage(
            makePlate({side, side}, context_.scale(), kMaterial, side * kIconCornerRadiusShare),
            context_.scale());
    };
    addFurniture("Folder Icon", plate, [this, side, plate] {
        // Empty, so that nothing but its plate shows.
        const auto icon = std::make_shared<FolderIcon>(Folder{"folder.empty", "", {}});
        const ViewRef view = FolderIconImageView::create(context_, icon, {{0, 0}, {side, side}});
        if (const auto folder = std::dynamic_pointer_cast<FolderIconImageView>(view)) {
            folder->setPlateImage(plate());
        }
        layoutTree(context_.runtime, view);
        return drawn(view, {side, side});
    });
    // The platform shows a blur there and no picture. The view that a replacement adds fades in.
    addFurniture(
        "Behind Open Folder", [] { return nullptr; },
        [this]() -> ImageRef {
            const ViewRef view =
                FolderControllerBackgroundView::create(context_, context_.bounds());
            if (view == nullptr) {
                return nullptr;
            }
            for (const ViewRef& subview : view->subviews()) {
                if (const auto image = std::dynamic_pointer_cast<platform::ImageView>(subview)) {
                    return image->image();
                }
            }
            return nullptr;
        },
        context_.bounds().size);
}

// As its views show it, without icons.
void GalleryItems::addDock() {
    const HomeScreenMetrics& metrics = context_.metrics;
    const double width = context_.device.screen.width;
    const Size size{width, metrics.dockHeight};
    const auto material = [this, radius = metrics.dockRadius](Size of) {
        return context_.images.makeImage(makePlate(of, context_.scale(), kMaterial, radius),
                                         context_.scale());
    };
    addFurniture("Dock", {}, {});
    GalleryItem& item = items_.back();
    if (metrics.dockStyle == DockStyle::floating) {
        const double left = snapToPixels(width * (1 - kPlatterShare) / 2, context_.scale());
        const Rect platter{{left, 0}, {width - 2 * left, metrics.dockHeight}};
        item.before = [this, size, platter, material] {
            const auto dock = std::make_shared<NamedView>("UIView", Rect{{0, 0}, size});
            const auto view =
                FloatingDockPlatterView::create(context_, platter.size, material(platter.size));
            view->setFrame(platter);
            view->placeSubviews();
            dock->addSubview(view);
            return drawn(dock, size);
        };
        // The divider belongs to the icons and lies outside.
        item.after = [this, size, width, platter, material] {
            if (floatingDock_ == nullptr) {
                floatingDock_ =
                    FloatingDockView::create(context_, platter, -width, material(platter.size));
            }
            // Twice, as on the home screen: the platter has its size in the second.
            layoutTree(context_.runtime, floatingDock_);
            layoutTree(context_.runtime, floatingDock_);
            return drawn(floatingDock_, size);
        };
    } else {
        const Rect background{{metrics.dockInset, 0},
                              {width - 2 * metrics.dockInset, metrics.dockHeight}};
        const auto make = [this, size, background, material] {
            return DockView::create(context_, {{0, 0}, size}, background,
                                    material(background.size));
        };
        item.before = [this, size, make] {
            const auto dock = make();
            dock->placeSubviews();
            return drawn(dock, size);
        };
        item.after = [this, size, make] {
            const auto dock = make();
            layoutTree(context_.runtime, dock);
            return drawn(dock, size);
        };
    }
}

void GalleryItems::addSettings() {
    const auto cache = std::make_shared<SettingsIcons>();
    for (const std::string_view key : settingsIconNames()) {
        const std::string name(key);
        items_.push_back({"Settings", name, std::string(kPreferencesBundle), GalleryPlate::light,
                          [this, name] {
                              return context_.toolkit.stockImage(name,
                                                                 std::string(kPreferencesBundle));
                          },
                          [this, name, cache] {
                              return context_.runtime.send<ImageRef, NullableString>(
                                  *cache, "imageForKey:", name);
                          },
                          square(kSettingsIconSide)});
    }
}

void GalleryItems::addWeather() {
    const ObjectRef traits = std::make_shared<TraitCollection>(context_.device);
    const bool hasLoader = context_.device.system.major >= 13;
    for (const std::string_view condition : weatherConditionNames()) {
        const std::string name(condition);
        items_.push_back(
            {"Weather", name, std::string(kWeatherBundle), GalleryPlate::sky,
             [this, name] {
                 return context_.toolkit.stockImage(name, std::string(kWeatherBundle));
             },
             [this, name, traits, hasLoader] {
                 return hasLoader
                            ? context_.runtime.sendToClass<ImageRef, NullableString, long long>(
                                  "WeatherImageLoader", "conditionImageNamed:style:", name,
                                  static_cast<long long>(WeatherStyle::onColor))
                            : ask_.imageNamedInBundleCompatibleWithTraitCollection(
                                  name, kWeatherBundle, traits);
             }});
    }
}

void GalleryItems::addControls() {
    items_.push_back({"Controls", "UISwitchKnob.png", "", GalleryPlate::light,
                      [this] { return context_.toolkit.switchKnob(); },
                      [this] {
                          SwitchVisualElement element(true, nullptr);
                          return context_.runtime.send<ImageRef>(element, "_effectiveThumbImage");
                      }});
}

// Of bundles whose images are asked for by name alone.
void GalleryItems::addCatalogs() {
    for (const BundleCatalog& catalog : bundleCatalogs()) {
        if (!isIn(catalog.systems, context_.device.system) ||
            catalog.identifier == kPreferencesBundle || catalog.identifier == kWeatherBundle ||
            catalog.identifier == kClockBundle) {
            continue;
        }
        for (const std::string_view listed : catalog.names()) {
            const std::string name(listed);
            const std::string bundle(catalog.identifier);
            items_.push_back(
                {groupOf(catalog), name, bundle, GalleryPlate::light,
                 [this, name, bundle] { return context_.toolkit.stockImage(name, bundle); },
                 [this, name, bundle] {
                     return bundle == kGlyphsBundle    ? ask_.systemImageNamed(name)
                            : bundle == kToolkitBundle ? ask_.kitImageNamed(name)
                                                       : ask_.imageNamedInBundle(name, bundle);
                 }});
        }
    }
}

bool samePixels(const ImageRef& a, const ImageRef& b) {
    const auto first = desktop::DesktopBitmapImage::of(platform::bitmapOf(a));
    const auto second = desktop::DesktopBitmapImage::of(platform::bitmapOf(b));
    if (first == nullptr || second == nullptr || first->size() != second->size()) {
        return first == second;
    }
    const desktop::PixelView left = first->pixels();
    const desktop::PixelView right = second->pixels();
    for (std::size_t y = 0; y < left.height; ++y) {
        if (!std::equal(left.row(y), left.row(y) + left.width * 4, right.row(y))) {
            return false;
        }
    }
    return true;
}

}  // namespace velmoranth::simulator
