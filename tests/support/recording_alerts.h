// Alerts and the application with its key window, every message in the journal.
#pragma once

#include "desktop/views/view_controllers.h"
#include "platform/uikit.h"
#include "tests/support/journal.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

// Passes on to a real one, which keeps what it is told.
class RecordingAlertController final : public platform::AlertController {
  public:
    RecordingAlertController(Journal& journal, const platform::NullableString& title,
                             const platform::NullableString& message,
                             platform::AlertControllerStyle style)
        : journal_(journal), real_(title, message, style) {}

    [[nodiscard]] std::string className() const override { return "UIAlertController"; }

    [[nodiscard]] platform::ViewRef view() override { return nullptr; }

    void presentViewControllerAnimated(const platform::ViewControllerRef& /*controller*/,
                                       bool /*animated*/) override {}

    void addAction(const platform::AlertActionRef& action) override;

    [[nodiscard]] const desktop::DesktopAlertController& real() const { return real_; }

  private:
    Journal& journal_;
    desktop::DesktopAlertController real_;
};

class RecordingAlerts final : public platform::Alerts {
  public:
    explicit RecordingAlerts(Journal& journal) : journal_(journal) {}

    [[nodiscard]] platform::AlertControllerRef alertControllerWithTitleMessagePreferredStyle(
        const platform::NullableString& title, const platform::NullableString& message,
        platform::AlertControllerStyle style) override;
    [[nodiscard]] platform::AlertActionRef actionWithTitleStyleHandler(
        const platform::NullableString& title, platform::AlertActionStyle style,
        const std::function<void()>& handler) override;

  private:
    Journal& journal_;
};

class RecordingViewController final : public platform::ViewController {
  public:
    RecordingViewController(Journal& journal, std::string name, platform::ViewRef view)
        : journal_(journal), name_(std::move(name)), view_(std::move(view)) {}

    [[nodiscard]] std::string className() const override { return "UIViewController"; }

    [[nodiscard]] platform::ViewRef view() override {
        journal_.write("view of " + name_);
        return view_;
    }

    void presentViewControllerAnimated(const platform::ViewControllerRef& controller,
                                       bool animated) override;

    // In the order in which they were presented.
    [[nodiscard]] const std::vector<platform::ViewControllerRef>& presented() const {
        return presented_;
    }

  private:
    Journal& journal_;
    std::string name_;
    platform::ViewRef view_;
    std::vector<platform::ViewControllerRef> presented_;
};

// Has a key window with a root view controller, "root", whose view is 375 × 812 points; a test may
// put others in their place, or none.
class RecordingApplication final : public platform::Application {
  public:
    explicit RecordingApplication(Journal& journal);

    [[nodiscard]] platform::WindowRef keyWindow() override {
        journal_.write("keyWindow");
        return window;
    }

    // A new root view controller for the window, over `view`.
    std::shared_ptr<RecordingViewController> showRoot(const std::string& name,
                                                      const platform::ViewRef& view);

    std::shared_ptr<desktop::DesktopWindow> window;
    platform::ViewRef rootView;
    std::shared_ptr<RecordingViewController> root;

  private:
    Journal& journal_;
};

}  // namespace velmoranth::tests
