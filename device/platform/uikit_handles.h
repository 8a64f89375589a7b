// Handles of UIKit's objects, and its colours.
#pragma once

#include "platform/uikit.h"

#include "device/platform/handle.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

@class CALayer;
@class UIAlertController;
@class UIColor;
@class UIGestureRecognizer;
@class UIImage;
@class UIImageView;
@class UILabel;
@class UIView;
@class UIViewController;
@class UIWindow;
@class _UIFeedback;
@class _UIImageContent;

namespace velmoranth::device {

// Autoreleased; by its own message where the colour has a name, whatever its components.
[[nodiscard]] UIColor* toNative(const platform::Color& color);

// A handle that fits the object's class. Nil for nil and for what is no view.
[[nodiscard]] platform::ViewRef viewOf(id object);

// Handles of an array's members that have the interface, in their order. Nothing for nil and for
// what is no array.
template <class Interface>
[[nodiscard]] std::vector<std::shared_ptr<Interface>> membersOf(id array) {
    std::vector<std::shared_ptr<Interface>> members;
    forEach(array, [&members](id element) {
        if (auto fitting = std::dynamic_pointer_cast<Interface>(wrapAny(element))) {
            members.push_back(std::move(fitting));
        }
    });
    return members;
}

// UIImage, as which interface it is known.
template <std::derived_from<platform::Image> Interface>
struct HandleFor<Interface> final : Handle<Interface, UIImage> {
    using Handle<Interface, UIImage>::Handle;
    using Handle<Interface, UIImage>::object;

    [[nodiscard]] platform::Size size() const override;
    [[nodiscard]] double scale() const override;
    [[nodiscard]] platform::BitmapImageRef bitmap() const override;
    [[nodiscard]] bool hasCIImage() const override;
};

// _UIImageContent.
template <>
struct HandleFor<platform::UIImageContent> final
    : Handle<platform::UIImageContent, _UIImageContent> {
    using Handle::Handle;

    [[nodiscard]] platform::CUINamedVectorGlyphRef vectorGlyph() const override;
};

// CALayer.
template <>
struct HandleFor<platform::Layer> final : Handle<platform::Layer, CALayer> {
    using Handle::Handle;

    [[nodiscard]] platform::Rect bounds() const override;
    void renderInContext(const platform::GraphicsContextRef& context) override;
    void setOpacity(float opacity) override;
    void setMasksToBounds(bool masks) override;
    void setShadowColor(const platform::Color& color) override;
    void setShadowOpacity(float opacity) override;
    void setShadowOffset(platform::Size offset) override;
    void setShadowRadius(double radius) override;
    void setShadowPathRect(const platform::Rect& rect) override;
};

// The messages behind the handles of views, on plain objects, so that the handles of many
// interfaces share one body each.
struct ViewMessages {
    [[nodiscard]] static int tag(UIView* view);
    static void setTag(UIView* view, int tag);
    [[nodiscard]] static platform::Rect frame(UIView* view);
    static void setFrame(UIView* view, const platform::Rect& frame);
    [[nodiscard]] static platform::Rect bounds(UIView* view);
    [[nodiscard]] static std::vector<platform::ViewRef> subviews(UIView* view);
    static void addSubview(UIView* view, UIView* subview);
    static void insertSubviewAtIndex(UIView* view, UIView* subview, std::size_t index);
    static void removeFromSuperview(UIView* view);
    [[nodiscard]] static platform::ViewRef viewWithTag(UIView* view, int tag);
    static void setBackgroundColor(UIView* view, const platform::Color& color);
    static void setClipsToBounds(UIView* view, bool clips);
    static void setAlpha(UIView* view, double alpha);
    static void setHidden(UIView* view, bool hidden);
    static void addGestureRecognizer(UIView* view, UIGestureRecognizer* recognizer);
    [[nodiscard]] static platform::LayerRef layer(UIView* view);
};

// UIView and what derives from it.
template <class Interface, class Native = UIView>
class ViewHandle : public Handle<Interface, Native> {
  public:
    using Handle<Interface, Native>::Handle;

    [[nodiscard]] int tag() const override { return ViewMessages::tag(receiver()); }

    void setTag(int tag) override { ViewMessages::setTag(receiver(), tag); }

    [[nodiscard]] platform::Rect frame() const override { return ViewMessages::frame(receiver()); }

    void setFrame(const platform::Rect& frame) override {
        ViewMessages::setFrame(receiver(), frame);
    }

    [[nodiscard]] platform::Rect bounds() const override {
        return ViewMessages::bounds(receiver());
    }

    [[nodiscard]] std::vector<platform::ViewRef> subviews() const override {
        return ViewMessages::subviews(receiver());
    }

    void addSubview(const platform::ViewRef& view) override {
        ViewMessages::addSubview(receiver(), nativeOf(view));
    }

    void insertSubviewAtIndex(const platform::ViewRef& view, std::size_t index) override {
        ViewMessages::insertSubviewAtIndex(receiver(), nativeOf(view), index);
    }

    void removeFromSuperview() override { ViewMessages::removeFromSuperview(receiver()); }

    [[nodiscard]] platform::ViewRef viewWithTag(int tag) override {
        return ViewMessages::viewWithTag(receiver(), tag);
    }

    void setBackgroundColor(const platform::Color& color) override {
        ViewMessages::setBackgroundColor(receiver(), color);
    }

    void setClipsToBounds(bool clips) override {
        ViewMessages::setClipsToBounds(receiver(), clips);
    }

    void setAlpha(double alpha) override { ViewMessages::setAlpha(receiver(), alpha); }

    void setHidden(bool hidden) override { ViewMessages::setHidden(receiver(), hidden); }

    void addGestureRecognizer(const platform::GestureRecognizerRef& recognizer) override {
        ViewMessages::addGestureRecognizer(receiver(), nativeOf(recognizer));
    }

    [[nodiscard]] platform::LayerRef layer() override { return ViewMessages::layer(receiver()); }

  private:
    [[nodiscard]] UIView* receiver() const { return static_cast<UIView*>(this->native()); }
};

// A view whose interface adds no message.
template <std::derived_from<platform::View> Interface>
struct HandleFor<Interface> final : ViewHandle<Interface> {
    using ViewHandle<Interface>::ViewHandle;
};

// UIImageView.
template <>
struct HandleFor<platform::ImageView> final : ViewHandle<platform::ImageView, UIImageView> {
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::ImageRef image() const override;
    void setImage(const platform::ImageRef& image) override;
};

// UILabel.
template <>
struct HandleFor<platform::Label> final : ViewHandle<platform::Label, UILabel> {
    using ViewHandle::ViewHandle;

    void setFont(const platform::FontRef& font) override;
    void setTextAlignment(platform::TextAlignment alignment) override;
    void setText(const platform::NullableString& text) override;
    void setTextColor(const platform::Color& color) override;
    void setShadowColor(const platform::Color& color) override;
    void setShadowOffset(platform::Size offset) override;
};

// UIWindow.
template <>
struct HandleFor<platform::Window> final : ViewHandle<platform::Window, UIWindow> {
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::ViewControllerRef rootViewController() const override;
};

struct ViewControllerMessages {
    [[nodiscard]] static platform::ViewRef view(UIViewController* controller);
    static void presentAnimated(UIViewController* controller, UIViewController* presented,
                                bool animated);
};

// UIViewController and what derives from it.
template <class Interface, class Native = UIViewController>
class ViewControllerHandle : public Handle<Interface, Native> {
  public:
    using Handle<Interface, Native>::Handle;

    [[nodiscard]] platform::ViewRef view() override {
        return ViewControllerMessages::view(receiver());
    }

    void presentViewControllerAnimated(const platform::ViewControllerRef& presented,
                                       bool animated) override {
        ViewControllerMessages::presentAnimated(receiver(), nativeOf(presented), animated);
    }

  private:
    [[nodiscard]] UIViewController* receiver() const {
        return static_cast<UIViewController*>(this->native());
    }
};

template <>
struct HandleFor<platform::ViewController> final : ViewControllerHandle<platform::ViewController> {
    using ViewControllerHandle::ViewControllerHandle;
};

// UIAlertController.
template <>
struct HandleFor<platform::AlertController> final
    : ViewControllerHandle<platform::AlertController, UIAlertController> {
    using ViewControllerHandle::ViewControllerHandle;

    void addAction(const platform::AlertActionRef& action) override;
};

// _UIFeedback.
template <>
struct HandleFor<platform::UIFeedback> final : Handle<platform::UIFeedback, _UIFeedback> {
    using Handle::Handle;

    [[nodiscard]] std::uint32_t _effectiveSystemSoundID() override;
};

}  // namespace velmoranth::device
