#include "simulator/home_screen.h"

#include "simulator/artwork/artwork.h"
#include "simulator/folder_icon_views.h"
#include "simulator/named_views.h"
#include "simulator/status_bar.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmoranth::simulator {

using platform::Rect;
using platform::ViewRef;

namespace {

// White over the blurred wallpaper: a real screenshot's plate, measured by pixel.
constexpr platform::Color kPlateTint{1, 1, 1, 0.35};
constexpr double kPlateBlur = 12;  // points

std::size_t toPixels(double points, double scale) {
    return static_cast<std::size_t>(std::max(1.0, std::round(points * scale)));
}

void layoutTree(desktop::Runtime& runtime, const ViewRef& view) {
    runtime.send<void>(*view, "layoutSubviews");
    for (const ViewRef& subview : view->subviews()) {
        layoutTree(runtime, subview);
    }
}

}  // namespace

HomeScreen::HomeScreen(DeviceConfiguration device, const Services& services)
    : device_(std::move(device)),
      context_{.device = device_,
               .metrics = homeScreenMetrics(device_.kind, device_.screen),
               .runtime = services.runtime,
               .images = services.images,
               .stockImages = services.stockImages,
               .folderIconImageCache = std::make_shared<FolderIconImageCache>(),
               .views = services.views},
      layout_(layoutHomeScreen(context_.metrics, device_.screen)),
      window_(std::make_shared<NamedView>("UIWindow", context_.bounds())) {
    makeWallpaper();
    if (wallpaper_ == nullptr) {
        return;  // a screen too large to draw
    }
    window_->addSubview(
        std::make_shared<NamedImageView>("SBFStaticWallpaperView", context_.bounds(),
                                         context_.images.makeImage(wallpaper_, context_.scale())));
    if (context_.metrics.dockStyle == DockStyle::floating) {
        addFloatingDock();
    } else {
        addPhoneDock();
    }
    window_->addSubview(makeStatusBar(device_, context_.metrics));
    showPage(1);
}

desktop::PixelSize HomeScreen::pixelSize() const {
    return {toPixels(device_.screen.width, context_.scale()),
            toPixels(device_.screen.height, context_.scale())};
}

void HomeScreen::makeWallpaper() {
    const desktop::PixelSize size = pixelSize();
    wallpaper_ = desktop::DesktopBitmapImage::createPremultiplied(
        std::make_shared<const platform::Data>(
            drawWallpaper(static_cast<int>(size.width), static_cast<int>(size.height))),
        size, size.width * 4, true);
}

platform::ImageRef HomeScreen::material(const Rect& frame, const BackdropStyle& style) const {
    return context_.images.makeImage(
        makeBackdrop(wallpaper_->pixels(), frame, context_.scale(), style), context_.scale());
}

void HomeScreen::addPhoneDock() {
    // Down to the screen's bottom, whatever the background leaves free there.
    const Rect& background = layout_.dockFrame;
    const Rect frame{{0, background.origin.y},
                     {device_.screen.width, device_.screen.height - background.origin.y}};
    const auto dock =
        DockView::create(context_, frame, {{background.origin.x, 0}, background.size},
                         material(background, {.cornerRadius = context_.metrics.dockRadius}));
    const bool withLabels = context_.metrics.dockStyle == DockStyle::classic;
    for (const IconSlot& slot : layout_.dock) {
        dockIcons_.push_back(
            {slot, withLabels, addIcon(*dock->iconListView(), slot, frame.origin, withLabels)});
    }
    window_->addSubview(dock);
}

void HomeScreen::addFloatingDock() {
    const Rect& platter = layout_.dockFrame;
    const auto dock =
        FloatingDockView::create(context_, platter, layout_.dividerX,
                                 material(platter, {.cornerRadius = context_.metrics.dockRadius}));
    const platform::Point origin{0, platter.origin.y};
    for (const IconSlot& slot : layout_.dock) {
        dockIcons_.push_back({slot, false, addIcon(*dock->userList(), slot, origin, false)});
    }
    for (const IconSlot& slot : layout_.suggested) {
        dockIcons_.push_back({slot, false, addIcon(*dock->recentList(), slot, origin, false)});
    }
    window_->addSubview(dock);
    // The platform's first layout comes when a view enters the window, before its subviews have
    // their sizes.
    context_.runtime.send<void>(*dock, "layoutSubviews");
}

std::shared_ptr<IconView> HomeScreen::addIcon(IconListView& list, const IconSlot& slot,
                                              const platform::Point& origin, bool withLabel) {
    auto view =
        IconView::create(context_, slot.item,
                         {slot.icon.origin.x - origin.x, slot.icon.origin.y - origin.y}, withLabel);
    if (const auto folder = std::dynamic_pointer_cast<FolderIconImageView>(view->imageView())) {
        folder->setPlateImage(
            material(slot.icon, {.blurRadius = kPlateBlur,
                                 .tint = kPlateTint,
                                 .cornerRadius = slot.icon.size.width * kIconCornerRadiusShare}));
    }
    list.addIconView(view);
    return view;
}

void HomeScreen::showPage(int page) {
    const int nearest = std::clamp(page, 1, pageCount());
    if (nearest == page_) {
        return;
    }
    page_ = nearest;
    if (pageList_ != nullptr) {
        pageList_->removeFromSuperview();
    }
    pageList_ = std::make_shared<IconListView>("SBRootIconListView", context_.bounds());
    pageIcons_.clear();
    for (const IconSlot& slot : layout_.pages[static_cast<std::size_t>(page_ - 1)]) {
        pageIcons_.push_back({slot, true, addIcon(*pageList_, slot, {0, 0}, true)});
    }
    window_->addSubview(pageList_);
    if (pageControl_ == nullptr) {
        pageControl_ = std::make_shared<PageControl>(
            context_, platform::Point{device_.screen.width / 2, context_.metrics.pageDotsY},
            pageCount(), true);
    }
    pageControl_->setCurrentPage(page_);
    window_->addSubview(pageControl_);
}

void HomeScreen::layoutViews() {
    layoutTree(context_.runtime, window_);
}

std::shared_ptr<desktop::DesktopBitmapImage> HomeScreen::draw() const {
    return desktop::renderTree(window_, pixelSize(), context_.scale());
}

std::vector<ShownIcon> HomeScreen::shownIcons() const {
    std::vector<ShownIcon> icons;
    const double scale = context_.scale();
    for (const std::vector<Placed>* const placed : {&pageIcons_, &dockIcons_}) {
        for (const Placed& icon : *placed) {
            const std::string identifier = identifierOf(icon.slot.item);
            icons.push_back({.bundleIdentifier = identifier,
                             .label = icon.hasLabel ? nameOf(icon.slot.item) : std::string(),
                             .x = icon.slot.icon.origin.x * scale,
                             .y = icon.slot.icon.origin.y * scale,
                             .side = icon.slot.icon.size.width * scale,
                             .stockImageRequests = context_.stockImages.requests(identifier)});
        }
    }
    return icons;
}

std::shared_ptr<IconView> HomeScreen::iconView(const std::string& identifier) const {
    for (const std::vector<Placed>* const placed : {&pageIcons_, &dockIcons_}) {
        for (const Placed& icon : *placed) {
            if (identifierOf(icon.slot.item) == identifier) {
                return icon.view;
            }
        }
    }
    return nullptr;
}

}  // namespace velmoranth::simulator
