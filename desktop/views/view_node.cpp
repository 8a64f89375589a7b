#include "desktop/views/view_node.h"

#include <algorithm>
#include <cmath>

namespace velmoranth::desktop {

using platform::Rect;
using platform::ViewRef;

namespace {

bool isFinite(const Rect& rect) {
    return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y) &&
           std::isfinite(rect.size.width) && std::isfinite(rect.size.height);
}

// A length that is negative goes the other way from its start.
void makePositive(double& start, double& length) {
    if (length < 0) {
        start += length;
        length = -length;
    }
}

}  // namespace

ViewNode::ViewNode() : layer_(std::make_shared<DesktopLayer>(this)) {}

ViewNode::~ViewNode() {
    for (const ViewRef& subview : subviews_) {
        of(subview)->superview_ = nullptr;
    }
    layer_->owner_ = nullptr;
}

ViewNode* ViewNode::of(const ViewRef& view) {
    return dynamic_cast<ViewNode*>(view.get());
}

void ViewNode::setNodeFrame(const Rect& frame) {
    if (!isFinite(frame)) {
        return;
    }
    Rect positive = frame;
    makePositive(positive.origin.x, positive.size.width);
    makePositive(positive.origin.y, positive.size.height);
    frameTransition_.set(frame_, positive);
    layer_->bounds_ = {{0, 0}, frame_.size};
}

ViewRef ViewNode::selfAsView() {
    const std::shared_ptr<ViewNode> self = weak_from_this().lock();
    return self ? ViewRef(self, asView()) : nullptr;
}

ViewRef ViewNode::superview() const {
    return superview_ ? superview_->selfAsView() : nullptr;
}

bool ViewNode::isInside(const ViewNode& node) const {
    for (const ViewNode* at = this; at != nullptr; at = at->superview_) {
        if (at == &node) {
            return true;
        }
    }
    return false;
}

void ViewNode::insertNode(const ViewRef& view, std::size_t index) {
    ViewNode* const node = of(view);
    if (node == nullptr || isInside(*node)) {
        return;
    }
    // Leaving its superview may let go of the last other reference.
    const ViewRef kept = view;  // NOLINT(performance-unnecessary-copy-initialization)
    node->removeNodeFromSuperview();
    const std::size_t place = std::min(index, subviews_.size());
    subviews_.insert(subviews_.begin() + static_cast<std::ptrdiff_t>(place), kept);
    node->superview_ = this;
}

void ViewNode::removeNodeFromSuperview() {
    if (superview_ == nullptr) {
        return;
    }
    std::vector<ViewRef>& siblings = superview_->subviews_;
    superview_ = nullptr;
    const auto place = std::find_if(siblings.begin(), siblings.end(),
                                    [this](const ViewRef& view) { return of(view) == this; });
    if (place != siblings.end()) {
        // This view may go with the vector's reference.
        const ViewRef kept = *place;  // NOLINT(performance-unnecessary-copy-initialization)
        siblings.erase(place);
    }
}

ViewRef ViewNode::nodeWithTag(int tag) {
    if (tag_ == tag) {
        return selfAsView();
    }
    for (const ViewRef& subview : subviews_) {
        if (ViewRef found = subview->viewWithTag(tag)) {
            return found;
        }
    }
    return nullptr;
}

void ViewNode::setNodeAlpha(double alpha) {
    layer_->changeOpacity(alpha);
}

void ViewNode::addRecognizer(const platform::GestureRecognizerRef& recognizer) {
    if (recognizer != nullptr &&
        std::find(recognizers_.begin(), recognizers_.end(), recognizer) == recognizers_.end()) {
        recognizers_.push_back(recognizer);
    }
}

void ViewNode::setTransform(const ViewTransform& transform) {
    if (std::isfinite(transform.scaleX) && std::isfinite(transform.scaleY) &&
        std::isfinite(transform.translation.x) && std::isfinite(transform.translation.y)) {
        transformTransition_.set(transform_, transform);
    }
}

void ViewNode::drawContent(DesktopGraphicsContext& /*context*/, const Rect& /*bounds*/,
                           double /*opacity*/) {}

void ViewNode::render(DesktopGraphicsContext& context, OpacityRule rule, double opacity) {
    const DesktopLayer::Appearance& appearance = layer_->appearance;
    const double wanted =
        rule == OpacityRule::wholeTree ? layer_->shownOpacity() : appearance.opacity;
    const double own = std::clamp(wanted, 0.0, 1.0);
    if (appearance.hidden || !(own > 0)) {
        return;
    }
    const bool together = rule == OpacityRule::wholeTree && own < 1;
    if (!together && !(appearance.shadow.opacity > 0)) {
        renderContent(context, rule, opacity * own);
        return;
    }
    context.beginTransparencyLayer(together ? own : 1, appearance.shadow);
    renderContent(context, rule, together ? opacity : opacity * own);
    context.endTransparencyLayer();
}

void ViewNode::renderContent(DesktopGraphicsContext& context, OpacityRule rule, double opacity) {
    const DesktopLayer::Appearance& appearance = layer_->appearance;
    const Rect bounds =
        rule == OpacityRule::wholeTree ? Rect{{0, 0}, shownFrame().size} : layer_->bounds_;
    context.saveState();
    if (appearance.masksToBounds) {
        context.clipToRect(bounds, appearance.cornerRadius);
    }
    platform::Color background = appearance.backgroundColor;
    background.alpha *= opacity;
    context.fillRect(bounds, background, appearance.cornerRadius);
    if (contents_ != nullptr) {
        context.drawImage(contents_->bitmap(), bounds, opacity);
    }
    drawContent(context, bounds, opacity);
    for (const ViewRef& subview : subviews_) {
        of(subview)->renderSubview(context, rule, opacity);
    }
    context.restoreState();
}

void ViewNode::renderSubview(DesktopGraphicsContext& context, OpacityRule rule, double opacity) {
    const bool now = rule == OpacityRule::wholeTree;
    const Rect frame = now ? shownFrame() : frame_;
    const ViewTransform transform = now ? shownTransform() : transform_;
    context.saveState();
    context.translateCTM(frame.origin.x, frame.origin.y);
    if (transform != ViewTransform{}) {
        const platform::Point center{frame.size.width / 2, frame.size.height / 2};
        context.translateCTM(center.x + transform.translation.x,
                             center.y + transform.translation.y);
        context.scaleCTM(transform.scaleX, transform.scaleY);
        context.translateCTM(-center.x, -center.y);
    }
    render(context, rule, opacity);
    context.restoreState();
}

}  // namespace velmoranth::desktop
