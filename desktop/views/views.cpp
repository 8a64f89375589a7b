#include "desktop/views/views.h"

#include "desktop/views/tap_gesture_recognizer.h"

#include <cmath>

namespace velmoranth::desktop {

using platform::ImageViewRef;
using platform::Rect;

namespace {

// How far a label's shadow may reach beyond its bounds, points.
constexpr double kLabelMargin = 8;

}  // namespace

DesktopImageView::DesktopImageView(const platform::ImageRef& image) {
    setContents(image);
    setNodeFrame({{0, 0}, platform::sizeOf(image)});
}

void DesktopLabel::drawContent(DesktopGraphicsContext& context, const Rect& bounds,
                               double opacity) {
    const platform::Size size = bounds.size;
    // Pixels that text is made of; those of the screen, unless it is scaled unevenly.
    const double scale =
        std::max(std::abs(context.transform().scaleX), std::abs(context.transform().scaleY));
    const Rect area{{-kLabelMargin, -kLabelMargin},
                    {size.width + 2 * kLabelMargin, size.height + 2 * kLabelMargin}};
    const double width = std::ceil(area.size.width * scale - 1e-6);
    const double height = std::ceil(area.size.height * scale - 1e-6);
    constexpr auto kGreatest = static_cast<double>(kMaxBitmapSide);
    if (text_.empty() ||
        !(width >= 1 && height >= 1 && width <= kGreatest && height <= kGreatest)) {
        return;
    }
    const PixelSize pixels{static_cast<std::size_t>(width), static_cast<std::size_t>(height)};
    if (!bitmapBytes(pixels, 4, 0)) {
        return;
    }
    std::vector<std::uint8_t> memory(pixels.width * pixels.height * 4);
    const MutablePixels target{memory.data(), pixels.width, pixels.height, pixels.width * 4};
    drawText(target, text_, style_, {{kLabelMargin, kLabelMargin}, size}, scale);
    // At whole pixels' size, so that text is copied, not stretched.
    context.drawPixels(target.view(), {area.origin, {width / scale, height / scale}}, opacity);
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
