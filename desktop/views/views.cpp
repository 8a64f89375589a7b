#include "desktop/views/views.h"

#include "desktop/views/tap_gesture_recognizer.h"

#include <algorithm>
#include <cmath>

namespace velmoranth::desktop {

using platform::ImageViewRef;
using platform::Rect;

namespace {

// How far a label's shadow may reach beyond its bounds, points.
constexpr double kLabelMargin = 8;
// Text that would be larger, pixels a side, is drawn smaller and stretched.
constexpr double kMaxTextSide = 4096;
// What is a hair beside a pixel's edge is on it.
constexpr double kPixelTolerance = 1e-6;

// How far into its pixel a position lies: 0 to 1.
double phaseOf(double position) {
    const double phase = position - std::floor(position + kPixelTolerance);
    return phase > kPixelTolerance ? phase : 0;
}

}  // namespace

DesktopImageView::DesktopImageView(const platform::ImageRef& image) {
    setContents(image);
    setNodeFrame({{0, 0}, platform::sizeOf(image)});
}

Rect DesktopLabel::contentExtent(const Rect& bounds) const {
    return {{-kLabelMargin, -kLabelMargin},
            {bounds.size.width + 2 * kLabelMargin, bounds.size.height + 2 * kLabelMargin}};
}

void DesktopLabel::drawContent(DesktopGraphicsContext& context, const Rect& bounds,
                               double opacity) {
    const UserTransform& transform = context.transform();
    const Rect area = contentExtent(bounds);
    // Pixels that text is made of; those of the screen, unless it is scaled unevenly or absurdly.
    const double wanted = std::max(std::abs(transform.scaleX), std::abs(transform.scaleY));
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
    const platform::Point shift{phaseX / scale, phaseY / scale};
    drawText(target, text_, style_, {{kLabelMargin + shift.x, kLabelMargin + shift.y}, bounds.size},
             scale);
    context.drawPixels(
        target.view(),
        {{area.origin.x - shift.x, area.origin.y - shift.y}, {width / scale, height / scale}},
        opacity);
}

void DesktopLabel::setFont(const platform::FontRef& font) {
    const auto face = std::dynamic_pointer_cast<DesktopFont>(font);
    const TextStyle standard;
    style_.family = face ? face->style().family : standard.family;
    style_.weight = face ? face->style().weight : standard.weight;
    style_.size = face ? face->style().size : standard.size;
}

void DesktopLabel::setTextAlignment(platform::TextAlignment alignment) {
    switch (alignment) {
        case platform::TextAlignment::center:
            style_.alignment = TextAlignment::center;
            return;
        case platform::TextAlignment::right:
            style_.alignment = TextAlignment::right;
            return;
        default:
            style_.alignment = TextAlignment::left;
    }
}

void DesktopLabel::setShadowColor(const platform::Color& color) {
    style_.shadow = TextShadow{.color = color, .offset = shadowOffset_, .radius = 0};
}

void DesktopLabel::setShadowOffset(platform::Size offset) {
    shadowOffset_ = {offset.width, offset.height};
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
