#include "simulator/dock_views.h"

namespace velmoranth::simulator {

using platform::Rect;
using platform::ViewRef;

namespace {

constexpr double kHighlightAlpha = 0.12;
// Estimates of the floating dock's divider and shadow.
constexpr platform::Color kDividerColor{1, 1, 1, 0.3};
constexpr double kDividerWidth = 1;
constexpr double kDividerShare = 0.6;
constexpr desktop::Shadow kPlatterShadow{0.2, 8, {0, 2}, {0, 0, 0, 1}};

const char* materialClass(const ScreenContext& context) {
    return context.device.system.major < 13 ? "SBWallpaperEffectView" : "MTMaterialView";
}

}  // namespace

std::vector<platform::SBIconRef> IconListView::icons() const {
    std::vector<platform::SBIconRef> icons;
    icons.reserve(iconViews_.size());
    for (const std::shared_ptr<IconView>& view : iconViews_) {
        icons.push_back(view->icon());
    }
    return icons;
}

void IconListView::addIconView(const std::shared_ptr<IconView>& view) {
    iconViews_.push_back(view);
    addSubview(view);
}

std::shared_ptr<DockView> DockView::create(const ScreenContext& context, const Rect& frame,
                                           const Rect& backgroundFrame,
                                           const platform::ImageRef& background) {
    const std::shared_ptr<DockView> dock(new DockView);
    dock->setFrame(frame);
    dock->backgroundFrame_ = backgroundFrame;
    dock->hairline_ = 1 / context.scale();
    dock->background_ =
        std::make_shared<NamedImageView>(materialClass(context), backgroundFrame, background);
    dock->highlight_ = std::make_shared<NamedView>("UIView", Rect{});
    dock->highlight_->setBackgroundColor({1, 1, 1, kHighlightAlpha});
    dock->list_ = std::make_shared<IconListView>("SBDockIconListView", Rect{});
    for (const ViewRef& view : {dock->background_, dock->highlight_, ViewRef(dock->list_)}) {
        dock->addSubview(view);
    }
    return dock;
}

void DockView::setBackgroundView(const ViewRef& view) {
    if (view == background_) {
        return;
    }
    if (background_ != nullptr) {
        background_->removeFromSuperview();
    }
    background_ = view;
    insertSubviewAtIndex(view, 0);
}

void DockView::placeSubviews() {
    if (background_ != nullptr) {
        background_->setFrame(backgroundFrame_);
    }
    // A hairline along the top, where the background is square.
    const bool isInset = backgroundFrame_.origin.x > 0;
    highlight_->setHidden(isInset);
    highlight_->setFrame({backgroundFrame_.origin, {backgroundFrame_.size.width, hairline_}});
    list_->setFrame(bounds());
}

std::shared_ptr<FloatingDockPlatterView> FloatingDockPlatterView::create(
    const ScreenContext& context, const platform::ImageRef& background) {
    const std::shared_ptr<FloatingDockPlatterView> platter(new FloatingDockPlatterView);
    platter->background_ =
        std::make_shared<NamedImageView>(materialClass(context), Rect{}, background);
    const auto shadow = std::make_shared<NamedView>("UIView", Rect{});
    shadow->desktopLayer()->appearance.shadow = kPlatterShadow;
    shadow->desktopLayer()->appearance.cornerRadius = context.metrics.dockRadius;
    platter->shadow_ = shadow;
    platter->addSubview(platter->shadow_);
    platter->addSubview(platter->background_);
    return platter;
}

void FloatingDockPlatterView::placeSubviews() {
    const Rect bounds = this->bounds();
    background_->setFrame(bounds);
    shadow_->setFrame(bounds);
    shadow_->layer()->setShadowPathRect(bounds);
}

std::shared_ptr<FloatingDockView> FloatingDockView::create(const ScreenContext& context,
                                                           const Rect& platterFrame,
                                                           double dividerX,
                                                           const platform::ImageRef& background) {
    const std::shared_ptr<FloatingDockView> dock(new FloatingDockView(context));
    const double height = platterFrame.size.height;
    dock->setFrame({{0, platterFrame.origin.y}, {context.device.screen.width, height}});
    dock->platterFrame_ = {{platterFrame.origin.x, 0}, platterFrame.size};
    dock->dividerFrame_ = {{dividerX - kDividerWidth / 2, height * (1 - kDividerShare) / 2},
                           {kDividerWidth, height * kDividerShare}};
    dock->platter_ = FloatingDockPlatterView::create(context, background);
    dock->divider_ = std::make_shared<NamedView>("UIView", Rect{});
    dock->divider_->setBackgroundColor(kDividerColor);
    dock->userList_ = std::make_shared<IconListView>("SBDockIconListView", dock->bounds());
    dock->recentList_ = std::make_shared<IconListView>("SBDockIconListView", dock->bounds());
    for (const ViewRef& view :
         {ViewRef(dock->platter_), ViewRef(dock->userList_), ViewRef(dock->recentList_)}) {
        dock->addSubview(view);
    }
    return dock;
}

void FloatingDockView::placeSubviews() {
    if (const auto list =
            context_.runtime.send<platform::SBIconListViewRef>(*this, "userIconListView")) {
        list->setFrame(bounds());
    }
    // Asked for before the platter has its size at the first layout.
    if (const auto divider = context_.runtime.send<ViewRef>(*this, "dividerView")) {
        divider->setFrame(dividerFrame_);
        if (desktop::ViewNode::of(divider)->superview() == nullptr) {
            addSubview(divider);
        }
    }
    platter_->setFrame(platterFrame_);
    recentList_->setFrame(bounds());
}

}  // namespace velmoranth::simulator
