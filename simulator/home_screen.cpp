#include "simulator/home_screen.h"

#include "desktop/text/text.h"
#include "desktop/views/views.h"
#include "simulator/artwork/artwork.h"
#include "simulator/backdrop.h"
#include "simulator/status_bar.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace velmoranth::simulator {
namespace {

// The icon view of a 60-point icon is 60 × 74; its label reaches beyond it. Frames in log lines of
// the platform.
constexpr double kIconViewExtraHeight = 14;
// White over a soft shadow: estimates of the platform's legibility style.
constexpr desktop::TextShadow kLabelShadow{{0, 0, 0, 0.3}, {0, 0.5}, 1.5};
constexpr double kInactiveDotAlpha = 0.4;

std::size_t toPixels(double points, double scale) {
    return static_cast<std::size_t>(std::max(1.0, std::round(points * scale)));
}

void layoutTree(desktop::Runtime& runtime, const platform::ViewRef& view) {
    runtime.send<void>(*view, "layoutSubviews");
    for (const platform::ViewRef& subview : view->subviews()) {
        layoutTree(runtime, subview);
    }
}

}  // namespace

HomeScreen::HomeScreen(DeviceConfiguration device, const Services& services)
    : device_(std::move(device)),
      services_(services),
      metrics_(homeScreenMetrics(device_.kind, device_.screen)),
      layout_(layoutHomeScreen(metrics_, device_.screen)),
      window_(std::make_shared<NamedView>("UIWindow", screenBounds())) {
    addWallpaperAndDock();
    window_->addSubview(makeStatusBar(device_, metrics_));
    showPage(1);
}

platform::Rect HomeScreen::screenBounds() const {
    return {{0, 0}, {device_.screen.width, device_.screen.height}};
}

void HomeScreen::addWallpaperAndDock() {
    const double scale = device_.screen.scale;
    const desktop::PixelSize size{toPixels(device_.screen.width, scale),
                                  toPixels(device_.screen.height, scale)};
    const auto wallpaper = desktop::DesktopBitmapImage::createPremultiplied(
        std::make_shared<const platform::Data>(
            drawWallpaper(static_cast<int>(size.width), static_cast<int>(size.height))),
        size, size.width * 4, true);
    if (wallpaper == nullptr) {
        return;  // a screen too large to draw
    }
    window_->addSubview(std::make_shared<NamedImageView>(
        "SBFStaticWallpaperView", screenBounds(), services_.images.makeImage(wallpaper, scale)));

    const bool floating = metrics_.dockStyle == DockStyle::floating;
    const platform::Rect& frame = layout_.dockFrame;
    const auto dock =
        std::make_shared<NamedView>(floating ? "SBFloatingDockView" : "SBDockView", frame);
    const platform::Rect bounds{{0, 0}, frame.size};
    platform::ViewRef background = makeDockBackground(*wallpaper, frame);
    if (floating) {
        const auto platter = std::make_shared<NamedView>("SBFloatingDockPlatterView", bounds);
        platter->addSubview(background);
        background = platter;
    }
    dock->addSubview(background);
    const auto list = std::make_shared<NamedView>("SBDockIconListView", bounds);
    for (const IconSlot& slot : layout_.dock) {
        dockIcons_.push_back(
            makeIcon(slot, frame.origin, metrics_.dockStyle == DockStyle::classic));
        list->addSubview(dockIcons_.back().view);
    }
    dock->addSubview(list);
    window_->addSubview(dock);
}

platform::ViewRef HomeScreen::makeDockBackground(const desktop::DesktopBitmapImage& wallpaper,
                                                 const platform::Rect& frame) const {
    const double scale = device_.screen.scale;
    const auto material =
        makeBackdrop(wallpaper.pixels(), frame, scale, {.cornerRadius = metrics_.dockRadius});
    const char* const className =
        device_.system.major < 13 ? "SBWallpaperEffectView" : "MTMaterialView";
    return std::make_shared<NamedImageView>(className, platform::Rect{{0, 0}, frame.size},
                                            services_.images.makeImage(material, scale));
}

HomeScreen::Placed HomeScreen::makeIcon(const IconSlot& slot, const platform::Point& origin,
                                        bool withLabel) const {
    const double side = metrics_.iconSide;
    const IconView::Frames frames{
        .image = {{0, 0}, {side, side}},
        .label = {{snapToPixels((side - layout_.labelWidth) / 2, device_.screen.scale),
                   side + layout_.labelTop},
                  {layout_.labelWidth, layout_.labelHeight}}};
    std::shared_ptr<IconLabelView> label;
    if (withLabel) {
        label = std::make_shared<IconLabelView>(
            std::string(slot.app->name),
            desktop::TextStyle{.size = metrics_.labelSize,
                               .color = {1, 1, 1, 1},
                               .shadow = kLabelShadow,
                               .alignment = desktop::TextAlignment::center});
    }
    const platform::Rect frame{{slot.icon.origin.x - origin.x, slot.icon.origin.y - origin.y},
                               {side, side + kIconViewExtraHeight}};
    return {&slot, IconView::create(frame, frames, std::make_shared<ApplicationIcon>(*slot.app),
                                    std::move(label))};
}

platform::ViewRef HomeScreen::makePageControl() const {
    const double side = metrics_.pageDotSide;
    const double width = (pageCount() - 1) * metrics_.pageDotPitch + side;
    const double scale = device_.screen.scale;
    const platform::Rect frame{{snapToPixels((device_.screen.width - width) / 2, scale),
                                snapToPixels(metrics_.pageDotsY - side / 2, scale)},
                               {width, side}};
    auto control = std::make_shared<NamedView>("SBIconListPageControl", frame);
    for (int i = 0; i < pageCount(); ++i) {
        const auto dot = std::make_shared<desktop::DesktopView>(
            platform::Rect{{i * metrics_.pageDotPitch, 0}, {side, side}});
        dot->setBackgroundColor({1, 1, 1, i + 1 == page_ ? 1 : kInactiveDotAlpha});
        dot->desktopLayer()->appearance.cornerRadius = side / 2;
        control->addSubview(dot);
    }
    return control;
}

void HomeScreen::showPage(int page) {
    const int nearest = std::clamp(page, 1, pageCount());
    if (nearest == page_) {
        return;
    }
    page_ = nearest;
    for (const platform::ViewRef& view : {pageList_, pageControl_}) {
        if (view != nullptr) {
            view->removeFromSuperview();
        }
    }
    pageList_ = std::make_shared<NamedView>("SBRootIconListView", screenBounds());
    pageIcons_.clear();
    for (const IconSlot& slot : layout_.pages[static_cast<std::size_t>(page_ - 1)]) {
        pageIcons_.push_back(makeIcon(slot, {0, 0}, true));
        pageList_->addSubview(pageIcons_.back().view);
    }
    pageControl_ = makePageControl();
    window_->addSubview(pageList_);
    window_->addSubview(pageControl_);
}

void HomeScreen::layoutViews() {
    layoutTree(services_.runtime, window_);
}

std::shared_ptr<desktop::DesktopBitmapImage> HomeScreen::draw() const {
    const double scale = device_.screen.scale;
    return desktop::renderTree(
        window_, {toPixels(device_.screen.width, scale), toPixels(device_.screen.height, scale)},
        scale);
}

std::vector<ShownIcon> HomeScreen::shownIcons() const {
    std::vector<ShownIcon> icons;
    const double scale = device_.screen.scale;
    const bool dockHasLabels = metrics_.dockStyle == DockStyle::classic;
    const auto add = [&](const std::vector<Placed>& placed, bool labels) {
        for (const Placed& icon : placed) {
            const App& app = *icon.slot->app;
            const std::string identifier(app.bundleIdentifier);
            icons.push_back({.bundleIdentifier = identifier,
                             .label = labels ? std::string(app.name) : std::string(),
                             .x = icon.slot->icon.origin.x * scale,
                             .y = icon.slot->icon.origin.y * scale,
                             .side = icon.slot->icon.size.width * scale,
                             .stockImageRequests = services_.stockImages.requests(identifier)});
        }
    };
    add(pageIcons_, true);
    add(dockIcons_, dockHasLabels);
    return icons;
}

}  // namespace velmoranth::simulator
