#include "simulator/home_screen/home_screen.h"

#include "simulator/artwork/artwork.h"
#include "simulator/home_screen/folder_icon_views.h"
#include "simulator/home_screen/wallpaper.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/status_bar.h"

#include <algorithm>
#include <cmath>

namespace velmoranth::simulator {

using platform::Rect;

namespace {

// White over the blurred wallpaper: a real screenshot's plate, measured by pixel.
constexpr platform::Color kPlateTint{1, 1, 1, 0.35};
constexpr double kPlateBlur = 12;  // points

}  // namespace

HomeScreen::HomeScreen(const ScreenContext& context)
    : context_(context),
      layout_(layoutHomeScreen(context.metrics, context.device.screen, context.apps)),
      wallpaper_(wallpaperOf(context)),
      window_(std::make_shared<NamedView>("UIWindow", context_.bounds())) {
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
    front_.push_back(makeStatusBar(context_.device));
    window_->addSubview(front_.back());
    showPage(1);
    context_.iconController->setCloseFolder([this](const platform::ObjectRef& folderController,
                                                   bool animated,
                                                   const FolderCompletion& completion) {
        closeFolder(folderController, animated ? Animated::yes : Animated::no, completion);
    });
}

HomeScreen::~HomeScreen() {
    context_.iconController->setCloseFolder(nullptr);
}

platform::ImageRef HomeScreen::material(const Rect& frame, const BackdropStyle& style) const {
    return context_.images.makeImage(
        makeBackdrop(wallpaper_->pixels(), frame, context_.scale(), style), context_.scale());
}

void HomeScreen::addPhoneDock() {
    // Down to the screen's bottom, whatever the background leaves free there.
    const Rect& background = layout_.dockFrame;
    const Rect frame{
        {0, background.origin.y},
        {context_.device.screen.width, context_.device.screen.height - background.origin.y}};
    const auto dock =
        DockView::create(context_, frame, {{background.origin.x, 0}, background.size},
                         material(background, {.cornerRadius = context_.metrics.dockRadius}));
    const bool withLabels = context_.metrics.dockStyle == DockStyle::classic;
    for (const IconSlot& slot : layout_.dock) {
        dockIcons_.push_back(
            {slot, withLabels, addIcon(*dock->iconListView(), slot, frame.origin, withLabels)});
    }
    dock_ = dock;
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
    dock_ = dock;
    window_->addSubview(dock);
    front_.push_back(dock);
    // The platform's first layout comes when a view enters the window, before its subviews have
    // their sizes; these follow in theirs.
    context_.runtime.send<void>(*dock, "layoutSubviews");
    context_.runtime.send<void>(*dock->platter(), "layoutSubviews");
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
    if (const auto open = folder()) {
        open->close(Animated::no, nullptr);
    }
    if (pressed_ != nullptr) {
        // It may be in the dock, which stays.
        pressed_->setHighlighted(false);
        pressed_ = nullptr;
    }
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
            context_, platform::Point{context_.device.screen.width / 2, context_.metrics.pageDotsY},
            pageCount(), true);
    }
    pageControl_->setCurrentPage(page_);
    window_->addSubview(pageControl_);
}

void HomeScreen::layoutViews() {
    layoutTree(context_.runtime, window_, dockNeedsLayout_ ? nullptr : dock_);
    dockNeedsLayout_ = false;
}

int HomeScreen::pageWith(const std::string& identifier) const {
    for (std::size_t i = 0; i < layout_.pages.size(); ++i) {
        for (const IconSlot& slot : layout_.pages[i]) {
            if (identifierOf(slot.item) == identifier) {
                return static_cast<int>(i) + 1;
            }
        }
    }
    return page_;
}

const HomeScreen::Placed* HomeScreen::firstFolder() const {
    const auto found = std::find_if(pageIcons_.begin(), pageIcons_.end(), [](const Placed& icon) {
        return icon.slot.item.folder != nullptr;
    });
    return found == pageIcons_.end() ? nullptr : &*found;
}

const HomeScreen::Placed* HomeScreen::middleApp() const {
    const Placed* middle = nullptr;
    double nearest = 0;
    for (const Placed& icon : pageIcons_) {
        const platform::Rect& frame = icon.slot.icon;
        const double distance =
            std::hypot(frame.origin.x + frame.size.width / 2 - context_.device.screen.width / 2,
                       frame.origin.y + frame.size.height / 2 - context_.device.screen.height / 2);
        if (icon.slot.item.app != nullptr && (middle == nullptr || distance < nearest)) {
            middle = &icon;
            nearest = distance;
        }
    }
    return middle;
}

const HomeScreen::Placed* HomeScreen::placed(const std::string& identifier) const {
    for (const std::vector<Placed>* const icons : {&pageIcons_, &dockIcons_}) {
        for (const Placed& icon : *icons) {
            if (identifierOf(icon.slot.item) == identifier) {
                return &icon;
            }
        }
    }
    return nullptr;
}

desktop::Result<void> HomeScreen::openFolder(const std::string& identifier, Animated animated) {
    if (!identifier.empty()) {
        showPage(pageWith(identifier));
    }
    if (const auto open = folder()) {
        open->close(Animated::no, nullptr);
    }
    const Placed* const icon = identifier.empty() ? firstFolder() : placed(identifier);
    if (icon == nullptr || icon->slot.item.folder == nullptr) {
        return tl::unexpected(desktop::Problem{
            identifier.empty() ? "there is no folder on page " + std::to_string(page_)
                               : "there is no folder \"" + identifier + "\""});
    }
    folder_ = OpenFolder::create(context_, pageList_, icon->view, front_);
    if (folder_ == nullptr) {
        return tl::unexpected(desktop::Problem{"the folder came without a view"});
    }
    folder_->open(animated);
    return {};
}

std::shared_ptr<OpenFolder> HomeScreen::folder() const {
    return folder_ == nullptr || folder_->isGone() ? nullptr : folder_;
}

void HomeScreen::closeFolder(const platform::ObjectRef& folderController, Animated animated,
                             const FolderCompletion& completion) {
    const auto open = folder();
    if (open != nullptr && open->view() == folderController) {
        open->close(animated, completion);
    }
}

desktop::Result<void> HomeScreen::pressIcon(const std::string& identifier) {
    if (!identifier.empty() && placed(identifier) == nullptr) {
        showPage(pageWith(identifier));
    }
    const Placed* const icon = identifier.empty() ? middleApp() : placed(identifier);
    if (icon == nullptr) {
        return tl::unexpected(
            desktop::Problem{identifier.empty() ? "there is no app on page " + std::to_string(page_)
                                                : "there is no icon \"" + identifier + "\""});
    }
    if (pressed_ != nullptr) {
        pressed_->setHighlighted(false);
    }
    pressed_ = icon->view;
    pressed_->setHighlighted(true);
    return {};
}

void HomeScreen::tap(const platform::Point& point) {
    if (const auto open = folder()) {
        open->tap(point);
    }
}

void HomeScreen::advance(double seconds) {
    context_.views.clock().advance(seconds);
}

void HomeScreen::settle() {
    // What a completion starts needs its own time; what starts itself again for ever is left.
    constexpr int kMostRounds = 16;
    desktop::AnimationClock& clock = context_.views.clock();
    for (int round = 0; round < kMostRounds && clock.isRunning(); ++round) {
        clock.advance(clock.remaining());
    }
}

std::shared_ptr<desktop::DesktopBitmapImage> HomeScreen::draw() const {
    if (const auto open = folder()) {
        open->drawMaterials(pixelSizeOf(context_.device.screen));
    }
    return desktop::renderTree(window_, pixelSizeOf(context_.device.screen), context_.scale());
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

std::optional<ShownFolder> HomeScreen::shownFolder() const {
    const auto open = folder();
    return open == nullptr ? std::nullopt : std::optional(open->shown());
}

std::shared_ptr<IconView> HomeScreen::iconView(const std::string& identifier) const {
    const Placed* const icon = placed(identifier);
    return icon == nullptr ? nullptr : icon->view;
}

}  // namespace velmoranth::simulator
