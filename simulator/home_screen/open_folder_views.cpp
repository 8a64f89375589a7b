#include "simulator/home_screen/open_folder_views.h"

#include "desktop/imaging/graphics_context.h"
#include "simulator/home_screen/backdrop.h"

#include <algorithm>

namespace velmoranth::simulator {

using platform::ObjectRef;
using platform::Rect;
using platform::ViewRef;

namespace {

// Over the blurred screen: within what screenshots of open folders show.
constexpr platform::Color kScreenTint{0, 0, 0, 0.15};
// Over the panel's blur: a public re-creation of the screen.
constexpr platform::Color kPanelTint{0.8, 0.8, 0.8, 0.4};

const char* blurClass(const ScreenContext& context) {
    return context.device.system.major < 13 ? "UIVisualEffectView" : "MTMaterialView";
}

}  // namespace

std::shared_ptr<FolderControllerBackgroundView> FolderControllerBackgroundView::create(
    const ScreenContext& context, const Rect& frame) {
    const std::shared_ptr<FolderControllerBackgroundView> view(
        new FolderControllerBackgroundView(context));
    return std::dynamic_pointer_cast<FolderControllerBackgroundView>(
        context.runtime.send<ViewRef, Rect>(*view, "initWithFrame:", frame));
}

ViewRef FolderControllerBackgroundView::init(const Rect& frame) {
    for (const ViewRef& view : {blur_, tint_}) {
        if (view != nullptr) {
            view->removeFromSuperview();
        }
    }
    setFrame(frame);
    const Rect bounds{{0, 0}, frame.size};
    blur_ = std::make_shared<NamedView>(blurClass(context_), bounds);
    tint_ = std::make_shared<NamedView>("UIView", bounds);
    tint_->setBackgroundColor(kScreenTint);
    addSubview(blur_);
    addSubview(tint_);
    return ViewRef(shared_from_this(), this);
}

std::shared_ptr<FolderBackgroundView> FolderBackgroundView::create(const ScreenContext& context,
                                                                   const Rect& frame,
                                                                   double cornerRadius) {
    const std::shared_ptr<FolderBackgroundView> view(new FolderBackgroundView);
    view->setFrame(frame);
    const Rect bounds{{0, 0}, frame.size};
    view->blur_ = std::make_shared<NamedView>(blurClass(context), bounds);
    const auto tint = std::make_shared<NamedView>("UIView", bounds);
    tint->setContents(context.images.makeImage(
        makePlate(frame.size, context.scale(), kPanelTint, cornerRadius), context.scale()));
    view->tint_ = tint;
    view->addSubview(view->blur_);
    view->addSubview(view->tint_);
    return view;
}

void FolderBackgroundView::placeSubviews() {
    blur_->setFrame(bounds());
    tint_->setFrame(bounds());
}

std::shared_ptr<FloatyFolderView> FloatyFolderView::create(const ScreenContext& context,
                                                           const Folder& folder) {
    const std::shared_ptr<FloatyFolderView> view(new FloatyFolderView(context));
    return std::dynamic_pointer_cast<FloatyFolderView>(
        context.runtime.send<ViewRef, ObjectRef, std::int64_t, ObjectRef, ObjectRef>(
            *view,
            "initWithFolder:orientation:viewMap:context:", std::make_shared<FolderObject>(folder),
            static_cast<std::int64_t>(context.device.orientation), nullptr, nullptr));
}

ViewRef FloatyFolderView::init(const ObjectRef& folder) {
    const auto object = std::dynamic_pointer_cast<FolderObject>(folder);
    if (object == nullptr) {
        return nullptr;
    }
    if (scaling_ != nullptr) {
        scaling_->removeFromSuperview();
    }
    if (tapToClose_ == nullptr) {
        tapToClose_ = std::make_shared<desktop::TapGestureRecognizer>(*this, "_tapToClose");
    }
    setFrame(context_.bounds());
    layout_ = layoutFolder(context_.metrics, context_.device.screen, object->value());
    const Rect bounds{{0, 0}, layout_.panel.size};
    scaling_ = std::make_shared<NamedView>("UIView", layout_.panel);
    panel_ = FolderBackgroundView::create(context_, bounds, layout_.panelRadius);
    content_ = std::make_shared<NamedView>("UIView", bounds);
    title_ = std::make_shared<desktop::DesktopLabel>(
        std::string(object->value().name),
        desktop::TextStyle{.weight = desktop::FontWeight::light,
                           .size = layout_.titleSize,
                           .color = {1, 1, 1, 1},
                           .alignment = desktop::TextAlignment::center});
    title_->setFrame(layout_.title);
    pageControl_ = nullptr;
    if (layout_.pages.size() > 1) {
        pageControl_ = std::make_shared<PageControl>(context_, layout_.pageDots,
                                                     static_cast<int>(layout_.pages.size()), false);
        content_->addSubview(pageControl_);
    }
    content_->addSubview(title_);
    scaling_->addSubview(panel_);
    scaling_->addSubview(content_);
    addSubview(scaling_);
    list_ = nullptr;
    page_ = 0;
    showPage(1);
    return ViewRef(shared_from_this(), this);
}

void FloatyFolderView::showPage(int page) {
    const int nearest = std::clamp(page, 1, static_cast<int>(layout_.pages.size()));
    if (nearest == page_) {
        return;
    }
    page_ = nearest;
    if (list_ != nullptr) {
        list_->removeFromSuperview();
    }
    list_ =
        std::make_shared<IconListView>("SBFolderIconListView", Rect{{0, 0}, layout_.panel.size});
    for (const IconSlot& slot : layout_.pages[static_cast<std::size_t>(page_ - 1)]) {
        list_->addIconView(IconView::create(context_, slot.item, slot.icon.origin, true));
    }
    content_->insertSubviewAtIndex(list_, 0);
    if (pageControl_ != nullptr) {
        pageControl_->setCurrentPage(page_);
    }
}

void FloatyFolderView::placeSubviews() {
    const Rect bounds{{0, 0}, layout_.panel.size};
    scaling_->setFrame(layout_.panel);
    for (const ViewRef& view : {ViewRef(panel_), ViewRef(content_), ViewRef(list_)}) {
        view->setFrame(bounds);
    }
    title_->setHidden(!context_.runtime.send<bool>(*this, "_showsTitle"));
}

bool FloatyFolderView::isOutside(const ObjectRef& touch) const {
    const auto at = std::dynamic_pointer_cast<Touch>(touch);
    const Rect& panel = layout_.panel;
    return at == nullptr || at->value().x < panel.origin.x || at->value().y < panel.origin.y ||
           at->value().x >= panel.origin.x + panel.size.width ||
           at->value().y >= panel.origin.y + panel.size.height;
}

}  // namespace velmoranth::simulator
