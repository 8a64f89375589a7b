#include "simulator/home_screen/dock_views.h"

namespace velmoranth::simulator {

using platform::Rect;
using platform::ViewRef;

namespace {

// Of the platter's height: an estimate.
constexpr double kDividerShare = 0.6;

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
    const auto highlight = std::make_shared<NamedView>("UIView", Rect{});
    highlight->setContents(
        context.picture(drawDockHighlight(backgroundFrame.size.width, context.scale())));
    dock->highlight_ = highlight;
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
    const ScreenContext& context, platform::Size size, const platform::ImageRef& background) {
    const std::shared_ptr<FloatingDockPlatterView> platter(new FloatingDockPlatterView);
    platter->background_ =
        std::make_shared<NamedImageView>(materialClass(context), Rect{}, background);
    const auto shadow = std::make_shared<NamedView>("UIView", Rect{});
    shadow->setContents(context.picture(
        drawPlatterShadow(size.width, size.height, context.metrics.dockRadius, context.scale())));
    platter->shadow_ = shadow;
    platter->addSubview(platter->shadow_);
    platter->addSubview(platter->background_);
    return platter;
}

void FloatingDockPlatterView::placeSubviews() {
    const Rect bounds = this->bounds();
    background_->setFrame(bounds);
    shadow_->setFrame({{-kPlatterShadowReach, -kPlatterShadowReach},
                       {bounds.size.width + 2 * kPlatterShadowReach,
                        bounds.size.height + 2 * kPlatterShadowReach}});
}

std::shared_ptr<FloatingDockView> FloatingDockView::create(const ScreenContext& context,
                                                           const Rect& platterFrame,
                                                           const std::optional<double>& dividerX,
                                                           const platform::ImageRef& background) {
    const std::shared_ptr<FloatingDockView> dock(new FloatingDockView(context));
    const double height = platterFrame.size.height;
    dock->setFrame({{0, platterFrame.origin.y}, {context.device.screen.width, height}});
    dock->platterFrame_ = {{platterFrame.origin.x, 0}, platterFrame.size};
    const platform::ImageRef line = context.picture(
        drawDockDivider(MaterialTone::dark, height * kDividerShare, context.scale()));
    const platform::Size lineSize = platform::sizeOf(line);
    dock->dividerFrame_ = {{dividerX.value_or(0) - lineSize.width / 2,
                            snapToPixels((height - lineSize.height) / 2, context.scale())},
                           lineSize};
    dock->platter_ = FloatingDockPlatterView::create(context, platterFrame.size, background);
    const auto divider = std::make_shared<NamedView>("UIView", Rect{});
    divider->setContents(line);
    divider->setHidden(!dividerX);
    dock->divider_ = divider;
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
