#include "desktop/views/views.h"

#include "desktop/views/tap_gesture_recognizer.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace velmoranth::desktop {

using platform::ImageViewRef;
using platform::Rect;

namespace {

// How far a label's shadow may reach beyond its bounds, points.
constexpr double kLabelMargin = 8;
// Text that would be larger, pixels a side, is drawn smaller and stretched.
constexpr double kMaxTextSide = 4096;
// How far ink may lie beside its line, font sizes.
constexpr double kInkMargin = 1;
// What is a hair beside a pixel's edge is on it.
constexpr double kPixelTolerance = 1e-6;

// How far into its pixel a position lies: 0 to 1.
double phaseOf(double position) {
    const double phase = position - std::floor(position + kPixelTolerance);
    return phase > kPixelTolerance ? phase : 0;
}

// What two rectangles have in common; its size is 0 when that is nothing.
Rect common(const Rect& a, const Rect& b) {
    const double left = std::max(a.origin.x, b.origin.x);
    const double top = std::max(a.origin.y, b.origin.y);
    const double right = std::min(a.origin.x + a.size.width, b.origin.x + b.size.width);
    const double bottom = std::min(a.origin.y + a.size.height, b.origin.y + b.size.height);
    return {{left, top}, {std::max(right - left, 0.0), std::max(bottom - top, 0.0)}};
}

}  // namespace

DesktopImageView::DesktopImageView(const platform::ImageRef& image) {
    setContents(image);
    setNodeFrame({{0, 0}, platform::sizeOf(image)});
}

Rect DesktopLabel::contentExtent(const Rect& bounds) const {
    const double margin = cutOff_ ? 0 : kLabelMargin;
    return {{-margin, -margin}, {bounds.size.width + 2 * margin, bounds.size.height + 2 * margin}};
}

// Where text and shadow may be, whatever the bounds cut off.
Rect DesktopLabel::inkExtent(const Rect& bounds) const {
    const Rect line = placeText(text_, style_, {{0, 0}, bounds.size});
    const platform::Point shadow = style_.shadow ? style_.shadow->offset : platform::Point{};
    const double margin = kInkMargin * style_.size + kLabelMargin;
    return {{line.origin.x + std::min(shadow.x, 0.0) - margin,
             line.origin.y + std::min(shadow.y, 0.0) - margin},
            {line.size.width + std::abs(shadow.x) + 2 * margin,
             line.size.height + std::abs(shadow.y) + 2 * margin}};
}

void DesktopLabel::drawContent(DesktopGraphicsContext& context, const Rect& bounds,
                               double opacity) {
    const UserTransform& transform = context.transform();
    // Pixels that text is made of; those of the screen, unless it is scaled unevenly or absurdly.
    const double wanted = std::max(std::abs(transform.scaleX), std::abs(transform.scaleY));
    Rect area = contentExtent(bounds);
    if (std::max(area.size.width, area.size.height) * wanted > kMaxTextSide) {
        area = common(area, inkExtent(bounds));
    }
    const double scale =
        std::min(wanted, kMaxTextSide / std::max(area.size.width, area.size.height));
    const bool even = transform.scaleX == scale && transform.scaleY == scale;
    // Begun on the screen's whole pixels, text is copied, not stretched.
    const double phaseX = even ? phaseOf(transform.scaleX * area.origin.x + transform.offsetX) : 0;
    const double phaseY = even ? phaseOf(transform.scaleY * area.origin.y + transform.offsetY) : 0;
    const double width = std::ceil(area.size.width * scale + phaseX - kPixelTolerance);
    const double height = std::ceil(area.size.height * scale + phaseY - kPixelTolerance);
    if (text_.empty() || !(width >= 1 && height >= 1)) {
        return;
    }
    const PixelSize pixels{static_cast<std::size_t>(width), static_cast<std::size_t>(height)};
    std::vector<std::uint8_t> memory(pixels.width * pixels.height * 4);
    const MutablePixels target{memory.data(), pixels.width, pixels.height, pixels.width * 4};
    const platform::Point origin{area.origin.x - phaseX / scale, area.origin.y - phaseY / scale};
    drawText(target, text_, style_, {{-origin.x, -origin.y}, bounds.size}, scale);
    context.saveState();
    if (cutOff_) {
        context.clipToRect(bounds);
    }
    context.drawPixels(target.view(), {origin, {width / scale, height / scale}}, opacity);
    context.restoreState();
}

void DesktopLabel::setFont(const platform::FontRef& font) {
    record::tell(*this, record::messageOf("Label", "setFont"), font);
    const auto face = std::dynamic_pointer_cast<DesktopFont>(font);
    const TextStyle standard;
    const TextStyle& style = face ? face->style() : standard;
    style_.family = style.family;
    style_.weight = style.weight;
    style_.italic = style.italic;
    style_.size = style.size;
}

void DesktopLabel::setTextAlignment(platform::TextAlignment alignment) {
    record::tell(*this, record::messageOf("Label", "setTextAlignment"), alignment);
    switch (alignment) {
        case platform::TextAlignment::left:
            style_.alignment = TextAlignment::left;
            return;
        case platform::TextAlignment::center:
            style_.alignment = TextAlignment::center;
            return;
        case platform::TextAlignment::right:
            style_.alignment = TextAlignment::right;
            return;
        case platform::TextAlignment::justified:
            style_.alignment = TextAlignment::justified;
            return;
        case platform::TextAlignment::natural:
            break;
    }
    style_.alignment = TextAlignment::natural;
}

void DesktopLabel::setShadowColor(const platform::Color& color) {
    record::tell(*this, record::messageOf("Label", "setShadowColor"), color);
    style_.shadow = TextShadow{.color = color, .offset = shadowOffset_, .radius = 0};
}

void DesktopLabel::setShadowOffset(platform::Size offset) {
    record::tell(*this, record::messageOf("Label", "setShadowOffset"), offset);
    shadowOffset_ = {std::isfinite(offset.width) ? offset.width : 0,
                     std::isfinite(offset.height) ? offset.height : 0};
    if (style_.shadow) {
        style_.shadow->offset = shadowOffset_;
    }
}

platform::ViewRef DesktopViews::viewWithFrame(const Rect& frame) {
    return std::make_shared<DesktopView>(frame);
}

platform::LabelRef DesktopViews::labelWithFrame(const Rect& frame) {
    return std::make_shared<DesktopLabel>(frame);
}

ImageViewRef DesktopViews::imageView() {
    return std::make_shared<DesktopImageView>();
}

ImageViewRef DesktopViews::imageViewWithImage(const platform::ImageRef& image) {
    return std::make_shared<DesktopImageView>(image);
}

ImageViewRef DesktopViews::imageViewWithFrame(const Rect& frame) {
    return std::make_shared<DesktopImageView>(frame);
}

platform::GestureRecognizerRef DesktopViews::tapGestureRecognizer(
    platform::Object& target, const platform::Selector& action) {
    return std::make_shared<TapGestureRecognizer>(target, action);
}

void DesktopViews::animateWithDurationAnimationsCompletion(
    double duration, const std::function<void()>& animations,
    const std::function<void(bool finished)>& completion) {
    clock_.animate(duration, kEaseInOut, animations, completion);
}

void DesktopViews::
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double duration, double delay, double damping, double initialVelocity, unsigned /*options*/,
        const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) {
    const SpringTiming spring =
        SpringTiming::create(damping, initialVelocity, std::min(duration, kLongestAnimation));
    clock_.animate(duration, spring, animations, completion, delay);
}

std::shared_ptr<DesktopBitmapImage> renderTree(const platform::ViewRef& view, PixelSize size,
                                               double scale) {
    ViewNode* const node = ViewNode::of(view);
    const auto context = DesktopGraphicsContext::create({.size = size, .scale = scale});
    if (node == nullptr || context == nullptr) {
        return nullptr;
    }
    node->render(*context, ViewNode::OpacityRule::wholeTree);
    return std::static_pointer_cast<DesktopBitmapImage>(context->createImage());
}

}  // namespace velmoranth::desktop
