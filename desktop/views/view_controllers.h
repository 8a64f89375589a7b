// View controllers, the key window and alerts on Linux: who presents what is kept, and whoever
// draws a screen asks for it.
#pragma once

#include "desktop/views/view_node.h"
#include "desktop/views/views.h"
#include "platform/uikit.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

class DesktopViewController final : public platform::ViewController {
  public:
    explicit DesktopViewController(platform::ViewRef view) : view_(std::move(view)) {}

    [[nodiscard]] std::string className() const override { return "UIViewController"; }

    [[nodiscard]] platform::ViewRef view() override { return view_; }

    // One at a time, as on the platform: while something is presented, a second one is not.
    void presentViewControllerAnimated(const platform::ViewControllerRef& controller,
                                       bool animated) override;

    // Nil when nothing is.
    [[nodiscard]] const platform::ViewControllerRef& presented() const { return presented_; }

    void dismiss() { presented_.reset(); }

  private:
    platform::ViewRef view_;
    platform::ViewControllerRef presented_;
};

class DesktopAlertAction final : public platform::AlertAction {
  public:
    DesktopAlertAction(platform::NullableString title, platform::AlertActionStyle style,
                       std::function<void()> handler)
        : title_(std::move(title)), style_(style), handler_(std::move(handler)) {}

    [[nodiscard]] std::string className() const override { return "UIAlertAction"; }

    [[nodiscard]] const platform::NullableString& title() const { return title_; }

    [[nodiscard]] platform::AlertActionStyle style() const { return style_; }

    // What a touch of the button does.
    void choose() const;

  private:
    platform::NullableString title_;
    platform::AlertActionStyle style_;
    std::function<void()> handler_;
};

class DesktopAlertController final : public platform::AlertController {
  public:
    DesktopAlertController(platform::NullableString title, platform::NullableString message,
                           platform::AlertControllerStyle style)
        : title_(std::move(title)), message_(std::move(message)), style_(style) {}

    [[nodiscard]] std::string className() const override { return "UIAlertController"; }

    [[nodiscard]] platform::ViewRef view() override { return nullptr; }

    void presentViewControllerAnimated(const platform::ViewControllerRef& /*controller*/,
                                       bool /*animated*/) override {}

    void addAction(const platform::AlertActionRef& action) override;

    [[nodiscard]] const platform::NullableString& title() const { return title_; }

    [[nodiscard]] const platform::NullableString& message() const { return message_; }

    [[nodiscard]] platform::AlertControllerStyle style() const { return style_; }

    [[nodiscard]] const std::vector<std::shared_ptr<DesktopAlertAction>>& actions() const {
        return actions_;
    }

  private:
    platform::NullableString title_;
    platform::NullableString message_;
    platform::AlertControllerStyle style_;
    std::vector<std::shared_ptr<DesktopAlertAction>> actions_;
};

class DesktopWindow final : public ViewImplementation<platform::Window> {
  public:
    explicit DesktopWindow(const platform::Rect& frame) { setNodeFrame(frame); }

    [[nodiscard]] std::string className() const override { return "UIWindow"; }

    [[nodiscard]] platform::ViewControllerRef rootViewController() const override {
        return rootViewController_;
    }

    void setRootViewController(platform::ViewControllerRef controller) {
        rootViewController_ = std::move(controller);
    }

  private:
    platform::ViewControllerRef rootViewController_;
};

class DesktopAlerts final : public platform::Alerts {
  public:
    [[nodiscard]] platform::AlertControllerRef alertControllerWithTitleMessagePreferredStyle(
        const platform::NullableString& title, const platform::NullableString& message,
        platform::AlertControllerStyle style) override;
    [[nodiscard]] platform::AlertActionRef actionWithTitleStyleHandler(
        const platform::NullableString& title, platform::AlertActionStyle style,
        const std::function<void()>& handler) override;
};

class DesktopApplication final : public platform::Application {
  public:
    [[nodiscard]] platform::WindowRef keyWindow() override { return keyWindow_; }

    void setKeyWindow(platform::WindowRef window) { keyWindow_ = std::move(window); }

  private:
    platform::WindowRef keyWindow_;
};

}  // namespace velmoranth::desktop
