#include "simulator/home_screen/open_folder.h"

#include "desktop/views/animation.h"
#include "simulator/home_screen/backdrop.h"
#include "simulator/home_screen/folder_icon_views.h"

#include <algorithm>
#include <utility>

namespace velmoranth::simulator {

using desktop::DesktopBitmapImage;
using desktop::TimingCurve;
using desktop::ViewNode;
using platform::ObjectRef;
using platform::ViewRef;

namespace {

constexpr TimingCurve kOpening{{0.37, 0.13}, {0, 1}};
constexpr TimingCurve kClosing{{0.25, 0.10}, {0.54, 0.89}};
// How long the folder's icon and the panel take to become each other.
constexpr double kCrossfade = 0.15;
constexpr double kPageScale = 0.9;

// Points; within what screenshots of open folders show. While the blur fades in it also grows, as
// a lens that loses focus.
constexpr double kLeastBlur = 8;
constexpr double kScreenBlur = 30;
constexpr double kPanelBlur = 12;

// Where a view of that frame is shown.
platform::Rect transformed(const platform::Rect& frame, const desktop::ViewTransform& transform) {
    const platform::Size size{frame.size.width * transform.scaleX,
                              frame.size.height * transform.scaleY};
    return {{frame.origin.x + transform.translation.x + (frame.size.width - size.width) / 2,
             frame.origin.y + transform.translation.y + (frame.size.height - size.height) / 2},
            size};
}

}  // namespace

std::shared_ptr<OpenFolder> OpenFolder::create(const ScreenContext& context, ViewRef page,
                                               std::shared_ptr<IconView> icon,
                                               const std::vector<ViewRef>& front) {
    std::shared_ptr<OpenFolder> open(new OpenFolder(context, std::move(page), std::move(icon)));
    open->background_ = FolderControllerBackgroundView::create(context, context.bounds());
    open->view_ = FloatyFolderView::create(context, open->folder());
    if (open->background_ == nullptr || open->view_ == nullptr) {
        return nullptr;
    }
    open->window_->addSubview(open->background_);
    open->window_->addSubview(open->view_);
    for (const ViewRef& view : front) {
        open->window_->addSubview(view);
    }
    open->showClosed();
    return open;
}

void OpenFolder::setAlpha(const ViewRef& view, double alpha) const {
    context_.runtime.send<void, double>(*view, "setAlpha:", alpha);
}

void OpenFolder::setIconAnimating(bool isAnimating) const {
    const ViewRef& image = icon_->imageView();
    if (const auto folder = std::dynamic_pointer_cast<FolderIconImageView>(image)) {
        folder->setAnimating(isAnimating);
        context_.runtime.send<void>(*folder, "layoutSubviews");
    }
}

// The panel as large as the icon, and in its place.
desktop::ViewTransform OpenFolder::atIcon() const {
    const platform::Rect& panel = view_->folderLayout().panel;
    const platform::Rect icon{icon_->frame().origin,
                              {context_.metrics.iconSide, context_.metrics.iconSide}};
    const auto middle = [](double start, double length) { return start + length / 2; };
    return {
        .scaleX = icon.size.width / panel.size.width,
        .scaleY = icon.size.height / panel.size.height,
        .translation = {
            middle(icon.origin.x, icon.size.width) - middle(panel.origin.x, panel.size.width),
            middle(icon.origin.y, icon.size.height) - middle(panel.origin.y, panel.size.height)}};
}

// The values of the screen with the folder open, and with it closed. Set within a block of the
// clock they are moved to.
void OpenFolder::showOpen() const {
    setAlpha(background_->blurView(), 1);
    setAlpha(background_->tintView(), 1);
    view_->scalingView()->setTransform({});
    ViewNode::of(page_)->setTransform(
        {.scaleX = kPageScale, .scaleY = kPageScale, .translation = {}});
}

void OpenFolder::showClosed() const {
    setAlpha(background_->blurView(), 0);
    setAlpha(background_->tintView(), 0);
    setAlpha(view_->scalingView(), 0);
    setAlpha(view_->contentView(), 0);
    view_->scalingView()->setTransform(atIcon());
}

void OpenFolder::open(Animated animated) {
    if (state_ != State::closed) {
        return;
    }
    state_ = State::open;
    const ViewRef& icon = icon_->imageView();
    if (animated == Animated::no) {
        showOpen();
        setAlpha(view_->scalingView(), 1);
        setAlpha(view_->contentView(), 1);
        setAlpha(icon, 0);
        return;
    }
    setIconAnimating(true);
    desktop::AnimationClock& clock = context_.views.clock();
    clock.animate(
        kFolderDuration, kOpening, [this] { showOpen(); },
        [self = weak_from_this()](bool /*finished*/) {
            const auto folder = self.lock();
            if (folder != nullptr && folder->state_ == State::open) {
                folder->setIconAnimating(false);
            }
        });
    clock.animate(
        kFolderContentDuration, desktop::kEaseInOut, [this] { setAlpha(view_->contentView(), 1); },
        nullptr);
    clock.animate(
        kCrossfade, desktop::kLinear,
        [&] {
            setAlpha(view_->scalingView(), 1);
            setAlpha(icon, 0);
        },
        nullptr);
}

void OpenFolder::close(Animated animated, const FolderCompletion& completion) {
    if (state_ == State::gone) {
        return;
    }
    if (completion != nullptr) {
        completions_.push_back(completion);
    }
    if (animated == Animated::no) {
        finishClosing();
        return;
    }
    if (state_ == State::closing) {
        return;
    }
    state_ = State::closing;
    setIconAnimating(true);
    desktop::AnimationClock& clock = context_.views.clock();
    clock.animate(
        kFolderDuration, kClosing,
        [this] {
            // Goes with everything that others have put into it.
            setAlpha(background_, 0);
            view_->scalingView()->setTransform(atIcon());
            ViewNode::of(page_)->setTransform({});
        },
        [self = weak_from_this()](bool /*finished*/) {
            if (const auto folder = self.lock()) {
                folder->finishClosing();
            }
        });
    clock.animate(
        kFolderContentDuration, desktop::kEaseInOut, [this] { setAlpha(view_->contentView(), 0); },
        nullptr);
    clock.animate(
        kCrossfade, desktop::kLinear,
        [this] {
            setAlpha(view_->scalingView(), 0);
            setAlpha(icon_->imageView(), 1);
        },
        nullptr, kFolderDuration - kCrossfade);
}

void OpenFolder::finishClosing() {
    if (state_ == State::gone) {
        return;
    }
    state_ = State::gone;
    ViewNode::of(page_)->setTransform({});
    setAlpha(icon_->imageView(), 1);
    view_->removeFromSuperview();
    background_->removeFromSuperview();
    setIconAnimating(false);
    for (const FolderCompletion& completion : std::exchange(completions_, {})) {
        completion();
    }
}

void OpenFolder::tap(const platform::Point& point) {
    if (state_ != State::open) {
        return;
    }
    const auto kept = shared_from_this();
    desktop::Runtime& runtime = context_.runtime;
    if (runtime.send<bool, platform::GestureRecognizerRef, ObjectRef>(
            *view_, "_tapToCloseGestureRecognizer:shouldReceiveTouch:", view_->tapToClose(),
            std::make_shared<Touch>(point))) {
        if (const auto controller = runtime.sendToClass<platform::SBIconControllerRef>(
                "SBIconController", "sharedInstance")) {
            runtime.send<void, ObjectRef, bool, FolderCompletion>(
                *controller, "_closeFolderController:animated:withCompletion:", view_, true,
                nullptr);
        }
    }
    // A copy: what a recognizer sets off may add another.
    const std::vector<platform::GestureRecognizerRef> recognizers = view_->recognizers();
    for (const platform::GestureRecognizerRef& recognizer : recognizers) {
        const auto tap = std::dynamic_pointer_cast<desktop::TapGestureRecognizer>(recognizer);
        const ObjectRef target = tap == nullptr ? nullptr : tap->target();
        if (target != nullptr) {
            runtime.send<void>(*target, tap->action());
        }
    }
}

// What the screen shows behind `front`, a view of the window.
std::shared_ptr<DesktopBitmapImage> OpenFolder::drawBehind(const ViewRef& front,
                                                           desktop::PixelSize size) const {
    const std::vector<ViewRef> views = window_->subviews();
    std::vector<ViewRef> hidden;
    for (auto view = std::find(views.begin(), views.end(), front); view != views.end(); ++view) {
        if (!ViewNode::of(*view)->isHidden()) {
            hidden.push_back(*view);
            (*view)->setHidden(true);
        }
    }
    auto drawn = desktop::renderTree(window_, size, context_.scale());
    for (const ViewRef& view : hidden) {
        view->setHidden(false);
    }
    return drawn;
}

void OpenFolder::drawMaterials(desktop::PixelSize size) const {
    const double scale = context_.scale();
    const auto fill = [&](const ViewRef& blur, const ViewRef& front, const platform::Rect& frame,
                          const BackdropStyle& style) {
        if (ViewNode::of(blur)->shownAlpha() <= 0) {
            return;
        }
        if (const auto behind = drawBehind(front, size)) {
            ViewNode::of(blur)->setContents(context_.images.makeImage(
                makeBackdrop(behind->pixels(), frame, scale, style), scale));
        }
    };
    const ViewRef& screenBlur = background_->blurView();
    const double share = ViewNode::of(screenBlur)->shownAlpha() * background_->shownAlpha();
    fill(screenBlur, background_, context_.bounds(),
         {.blurRadius = desktop::mixed(kLeastBlur, kScreenBlur, share), .tint = {0, 0, 0, 0}});
    const FolderLayout& layout = view_->folderLayout();
    const desktop::ViewTransform moved = view_->scalingView()->shownTransform();
    fill(view_->backgroundView()->blurView(), view_, transformed(layout.panel, moved),
         {.blurRadius = kPanelBlur,
          .tint = {0, 0, 0, 0},
          .cornerRadius = layout.panelRadius * moved.scaleX});
}

ShownFolder OpenFolder::shown() const {
    const double scale = context_.scale();
    const FolderLayout& layout = view_->folderLayout();
    ShownFolder shown{.identifier = std::string(folder().identifier),
                      .name = std::string(folder().name),
                      .page = view_->page(),
                      .pageCount = static_cast<int>(layout.pages.size()),
                      .x = layout.panel.origin.x * scale,
                      .y = layout.panel.origin.y * scale,
                      .width = layout.panel.size.width * scale,
                      .height = layout.panel.size.height * scale,
                      .icons = {}};
    for (const IconSlot& slot : layout.pages[static_cast<std::size_t>(shown.page - 1)]) {
        const std::string identifier = identifierOf(slot.item);
        shown.icons.push_back({.bundleIdentifier = identifier,
                               .label = nameOf(slot.item),
                               .x = shown.x + slot.icon.origin.x * scale,
                               .y = shown.y + slot.icon.origin.y * scale,
                               .side = slot.icon.size.width * scale,
                               .stockImageRequests = context_.stockImages.requests(identifier)});
    }
    return shown;
}

}  // namespace velmoranth::simulator
