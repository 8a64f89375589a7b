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

// One that is negative is none, in the middle of itself.
void takeAwayNegative(double& start, double& length) {
    if (length < 0) {
        start += length / 2;
        length = 0;
    }
}

Rect united(const Rect& a, const Rect& b) {
    const double left = std::min(a.origin.x, b.origin.x);
    const double top = std::min(a.origin.y, b.origin.y);
    return {{left, top},
            {std::max(a.origin.x + a.size.width, b.origin.x + b.size.width) - left,
             std::max(a.origin.y + a.size.height, b.origin.y + b.size.height) - top}};
}

// Where a shadow of what fills `rect` may be seen. Numbers that are out of bounds are brought into
// them: what is drawn then is far away, or nothing.
Rect shaded(const Rect& rect, const Shadow& shadow) {
    constexpr double kFar = 1e6;
    const auto bounded = [kFar](double value, double low) {
        return std::isnan(value) ? 0 : std::clamp(value, low, kFar);
    };
    double left = bounded(rect.origin.x, -kFar);
    double top = bounded(rect.origin.y, -kFar);
    double width = bounded(rect.size.width, -kFar);
    double height = bounded(rect.size.height, -kFar);
    makePositive(left, width);
    makePositive(top, height);
    const double blur = kShadowDeviations * bounded(shadow.radius, 0);
    // A pixel more: the blur is that of whole ones.
    const double margin = blur + 1;
    return {{left + bounded(shadow.offset.x, -kFar) - margin,
             top + bounded(shadow.offset.y, -kFar) - margin},
            {width + 2 * margin, height + 2 * margin}};
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

Rect ViewNode::shownFrame() const {
    Rect shown = frameTransition_.shown(frame_);
    takeAwayNegative(shown.origin.x, shown.size.width);
    takeAwayNegative(shown.origin.y, shown.size.height);
    return shown;
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

Rect ViewNode::contentExtent(const Rect& bounds) const {
    return bounds;
}

ViewNode::Geometry ViewNode::geometry(OpacityRule rule) const {
    return rule == OpacityRule::wholeTree ? Geometry{shownFrame(), shownTransform()}
                                          : Geometry{frame_, transform_};
}

bool ViewNode::castsShadow(OpacityRule rule) const {
    const DesktopLayer::Appearance& appearance = layer_->appearance;
    // What clips to its bounds clips its shadow away on the screen.
    return appearance.shadow.opacity > 0 &&
           !(rule == OpacityRule::wholeTree && appearance.masksToBounds);
}

Rect ViewNode::extent(OpacityRule rule) const {
    const DesktopLayer::Appearance& appearance = layer_->appearance;
    const Rect bounds{{0, 0}, geometry(rule).frame.size};
    Rect result = appearance.masksToBounds ? bounds : united(bounds, contentExtent(bounds));
    for (const ViewRef& subview : subviews_) {
        const ViewNode& node = *of(subview);
        if (!appearance.masksToBounds && !node.layer_->appearance.hidden) {
            const Rect inner = node.withShadow(node.extent(rule), rule);
            result = united(result, placed(inner, node.geometry(rule)));
        }
    }
    return result;
}

Rect ViewNode::withShadow(const Rect& extent, OpacityRule rule) const {
    const DesktopLayer::Appearance& appearance = layer_->appearance;
    if (!castsShadow(rule)) {
        return extent;
    }
    const bool byPath = rule == OpacityRule::wholeTree && appearance.shadowPath;
    return united(extent, shaded(byPath ? *appearance.shadowPath : extent, appearance.shadow));
}

void ViewNode::render(DesktopGraphicsContext& context, OpacityRule rule, double opacity) {
    const DesktopLayer::Appearance& appearance = layer_->appearance;
    const bool screen = rule == OpacityRule::wholeTree;
    const double own = std::clamp(screen ? layer_->shownOpacity() : appearance.opacity, 0.0, 1.0);
    if (appearance.hidden || !(own > 0)) {
        return;
    }
    const bool together = screen && own < 1;
    const bool casts = castsShadow(rule);
    const bool byPath = casts && screen && appearance.shadowPath;
    const bool layered = together || (casts && !byPath);
    if (layered) {
        const Rect content = extent(rule);
        context.beginTransparencyLayer(together ? own : 1,
                                       casts && !byPath ? appearance.shadow : Shadow{},
                                       byPath ? withShadow(content, rule) : content);
    }
    if (byPath) {
        context.drawShadowOfRect(*appearance.shadowPath, appearance.shadow);
    }
    renderContent(context, rule, together ? opacity : opacity * own);
    if (layered) {
        context.endTransparencyLayer();
    }
}

void ViewNode::renderContent(DesktopGraphicsContext& context, OpacityRule rule, double opacity) {
    const DesktopLayer::Appearance& appearance = layer_->appearance;
    const Rect bounds{{0, 0}, geometry(rule).frame.size};
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

// A rectangle in a view's coordinates in those of its superview.
Rect ViewNode::placed(const Rect& rect, const Geometry& geometry) {
    const auto& [frame, transform] = geometry;
    const double centerX = frame.size.width / 2;
    const double centerY = frame.size.height / 2;
    Rect result{{frame.origin.x + centerX + transform.translation.x +
                     transform.scaleX * (rect.origin.x - centerX),
                 frame.origin.y + centerY + transform.translation.y +
                     transform.scaleY * (rect.origin.y - centerY)},
                {transform.scaleX * rect.size.width, transform.scaleY * rect.size.height}};
    makePositive(result.origin.x, result.size.width);
    makePositive(result.origin.y, result.size.height);
    return result;
}

void ViewNode::renderSubview(DesktopGraphicsContext& context, OpacityRule rule, double opacity) {
    const auto [frame, transform] = geometry(rule);
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
