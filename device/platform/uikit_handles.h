// Handles of UIKit's objects; those of images and fonts have a header of their own.
#pragma once

#include "platform/uikit.h"

#include "device/platform/handle.h"
#include "device/platform/uikit_image_handles.h"
#include "device/platform/uikit_messages.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace velmoranth::device {

// CALayer.
class LayerHandle final : public Handle<platform::Layer> {
  public:
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

template <>
struct HandleFor<platform::Layer> {
    using Type = LayerHandle;
};

// UIView and what derives from it.
template <class Interface>
class ViewHandle : public Handle<Interface> {
  public:
    using Handle<Interface>::Handle;
    using Handle<Interface>::object;

    [[nodiscard]] int tag() const override { return ViewMessages::tag(object()); }

    void setTag(int tag) override { ViewMessages::setTag(object(), tag); }

    [[nodiscard]] platform::Rect frame() const override { return ViewMessages::frame(object()); }

    void setFrame(const platform::Rect& frame) override { ViewMessages::setFrame(object(), frame); }

    [[nodiscard]] platform::Rect bounds() const override { return ViewMessages::bounds(object()); }

    [[nodiscard]] std::vector<platform::ViewRef> subviews() const override {
        return ViewMessages::subviews(object());
    }

    void addSubview(const platform::ViewRef& view) override {
        ViewMessages::addSubview(object(), nativeOf(view));
    }

    void insertSubviewAtIndex(const platform::ViewRef& view, std::size_t index) override {
        ViewMessages::insertSubviewAtIndex(object(), nativeOf(view), index);
    }

    void removeFromSuperview() override { ViewMessages::removeFromSuperview(object()); }

    [[nodiscard]] platform::ViewRef viewWithTag(int tag) override {
        return ViewMessages::viewWithTag(object(), tag);
    }

    void setBackgroundColor(const platform::Color& color) override {
        ViewMessages::setBackgroundColor(object(), color);
    }

    void setClipsToBounds(bool clips) override { ViewMessages::setClipsToBounds(object(), clips); }

    void setAlpha(double alpha) override { ViewMessages::setAlpha(object(), alpha); }

    void setHidden(bool hidden) override { ViewMessages::setHidden(object(), hidden); }

    void addGestureRecognizer(const platform::GestureRecognizerRef& recognizer) override {
        ViewMessages::addGestureRecognizer(object(), nativeOf(recognizer));
    }

    [[nodiscard]] platform::LayerRef layer() override { return ViewMessages::layer(object()); }
};

// A view whose interface adds no message.
template <std::derived_from<platform::View> Interface>
struct HandleFor<Interface> {
    using Type = ViewHandle<Interface>;
};

// UIImageView.
class ImageViewHandle final : public ViewHandle<platform::ImageView> {
  public:
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::ImageRef image() const override;
    void setImage(const platform::ImageRef& image) override;
};

template <>
struct HandleFor<platform::ImageView> {
    using Type = ImageViewHandle;
};

// UILabel.
class LabelHandle final : public ViewHandle<platform::Label> {
  public:
    using ViewHandle::ViewHandle;

    void setFont(const platform::FontRef& font) override;
    void setTextAlignment(platform::TextAlignment alignment) override;
    void setText(const platform::NullableString& text) override;
    void setTextColor(const platform::Color& color) override;
    void setShadowColor(const platform::Color& color) override;
    void setShadowOffset(platform::Size offset) override;
};

template <>
struct HandleFor<platform::Label> {
    using Type = LabelHandle;
};

// UIWindow.
class WindowHandle final : public ViewHandle<platform::Window> {
  public:
    using ViewHandle::ViewHandle;

    [[nodiscard]] platform::ViewControllerRef rootViewController() const override;
};

template <>
struct HandleFor<platform::Window> {
    using Type = WindowHandle;
};

// UIViewController and what derives from it.
template <class Interface>
class ViewControllerHandle : public Handle<Interface> {
  public:
    using Handle<Interface>::Handle;
    using Handle<Interface>::object;

    [[nodiscard]] platform::ViewRef view() override {
        return ViewControllerMessages::view(object());
    }

    void presentViewControllerAnimated(const platform::ViewControllerRef& controller,
                                       bool animated) override {
        ViewControllerMessages::presentAnimated(object(), nativeOf(controller), animated);
    }
};

template <>
struct HandleFor<platform::ViewController> {
    using Type = ViewControllerHandle<platform::ViewController>;
};

// UIAlertController.
class AlertControllerHandle final : public ViewControllerHandle<platform::AlertController> {
  public:
    using ViewControllerHandle::ViewControllerHandle;

    void addAction(const platform::AlertActionRef& action) override;
};

template <>
struct HandleFor<platform::AlertController> {
    using Type = AlertControllerHandle;
};

// _UIFeedback.
class UIFeedbackHandle final : public Handle<platform::UIFeedback> {
  public:
    using Handle::Handle;

    [[nodiscard]] std::uint32_t _effectiveSystemSoundID() override;
};

template <>
struct HandleFor<platform::UIFeedback> {
    using Type = UIFeedbackHandle;
};

}  // namespace velmoranth::device
