// UIView, UIImageView and UILabel on Linux, the service that makes image views, and a whole tree as
// a picture.
#pragma once

#include "desktop/imaging/bitmap_image.h"
#include "desktop/text/fonts.h"
#include "desktop/text/text.h"
#include "desktop/views/animation.h"
#include "desktop/views/view_node.h"
#include "platform/uikit.h"

#include <functional>
#include <memory>
#include <string>

namespace velmoranth::desktop {

class DesktopView : public ViewImplementation<platform::View> {
  public:
    DesktopView() = default;

    explicit DesktopView(const platform::Rect& frame) { setNodeFrame(frame); }

    [[nodiscard]] std::string className() const override { return "UIView"; }
};

class DesktopImageView : public ViewImplementation<platform::ImageView> {
  public:
    DesktopImageView() = default;

    explicit DesktopImageView(const platform::Rect& frame) { setNodeFrame(frame); }

    explicit DesktopImageView(const platform::ImageRef& image);

    [[nodiscard]] std::string className() const override { return "UIImageView"; }

    [[nodiscard]] platform::ImageRef image() const override { return contents(); }

    void setImage(const platform::ImageRef& image) override {
        record::tell(*this, record::messageOf("ImageView", "setImage"), image);
        setContents(image);
    }
};

// One line of text, centred vertically in its bounds by the height of its face, ending in "…" when
// it does not fit. One with a frame is a UILabel: it draws into a backing store of its bounds,
// which cut off text and shadow. One with a style may draw beside its bounds, for a soft shadow.
class DesktopLabel : public ViewImplementation<platform::Label> {
  public:
    DesktopLabel() = default;

    explicit DesktopLabel(const platform::Rect& frame)
        : style_{.alignment = TextAlignment::natural}, cutOff_(true) {
        setNodeFrame(frame);
    }

    DesktopLabel(std::string text, TextStyle style)
        : text_(std::move(text)), style_(std::move(style)) {}

    [[nodiscard]] std::string className() const override { return "UILabel"; }

    [[nodiscard]] const std::string& text() const { return text_; }

    void setText(const platform::NullableString& text) override {
        record::tell(*this, record::messageOf("Label", "setText"), text);
        text_ = text.value_or("");
    }

    // A font of another make counts as nil.
    void setFont(const platform::FontRef& font) override;
    void setTextAlignment(platform::TextAlignment alignment) override;

    void setTextColor(const platform::Color& color) override {
        record::tell(*this, record::messageOf("Label", "setTextColor"), color);
        style_.color = color;
    }

    void setShadowColor(const platform::Color& color) override;
    // Lengths that are not finite count as 0.
    void setShadowOffset(platform::Size offset) override;

    [[nodiscard]] const TextStyle& style() const { return style_; }

  protected:
    void drawContent(DesktopGraphicsContext& context, const platform::Rect& bounds,
                     double opacity) override;
    [[nodiscard]] platform::Rect contentExtent(const platform::Rect& bounds) const override;

  private:
    [[nodiscard]] platform::Rect inkExtent(const platform::Rect& bounds) const;

    std::string text_;
    TextStyle style_;
    platform::Point shadowOffset_{0, -1};
    bool cutOff_ = false;
};

class DesktopViews final : public platform::Views {
  public:
    [[nodiscard]] platform::ViewRef viewWithFrame(const platform::Rect& frame) override;
    [[nodiscard]] platform::LabelRef labelWithFrame(const platform::Rect& frame) override;
    [[nodiscard]] platform::ImageViewRef imageView() override;
    [[nodiscard]] platform::ImageViewRef imageViewWithImage(
        const platform::ImageRef& image) override;
    [[nodiscard]] platform::ImageViewRef imageViewWithFrame(const platform::Rect& frame) override;
    [[nodiscard]] platform::GestureRecognizerRef tapGestureRecognizer(
        platform::Object& target, const platform::Selector& action) override;
    void animateWithDurationAnimationsCompletion(
        double duration, const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override;
    void
    animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
        double duration, double delay, double damping, double initialVelocity, unsigned options,
        const std::function<void()>& animations,
        const std::function<void(bool finished)>& completion) override;

    // The clock of the animations. When nobody moves it they stay at their beginnings.
    [[nodiscard]] AnimationClock& clock() { return clock_; }

  private:
    AnimationClock clock_;
};

// The tree as the screen shows it, from the view's own origin, at `scale` pixels per point; what
// the view does not cover is transparent. Nil when the view is nil or of another make, or the size
// is over what a bitmap may need.
[[nodiscard]] std::shared_ptr<DesktopBitmapImage> renderTree(const platform::ViewRef& view,
                                                             PixelSize size, double scale);

}  // namespace velmoranth::desktop
