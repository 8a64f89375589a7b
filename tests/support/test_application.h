// The application with its key window, and view controllers that records call by name.
#pragma once

#include "desktop/views/view_controllers.h"
#include "platform/uikit.h"

#include "record/words.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velmoranth::tests {

class TestViewController final : public platform::ViewController, public record::Named {
  public:
    TestViewController(std::string name, platform::ViewRef view)
        : name_(std::move(name)), view_(std::move(view)) {}

    [[nodiscard]] std::string className() const override { return "UIViewController"; }

    [[nodiscard]] std::string nameInRecords() const override { return name_; }

    [[nodiscard]] platform::ViewRef view() override;

    void presentViewControllerAnimated(const platform::ViewControllerRef& controller,
                                       bool animated) override;

    // In the order in which they were presented.
    [[nodiscard]] const std::vector<platform::ViewControllerRef>& presented() const {
        return presented_;
    }

  private:
    const std::string name_;
    platform::ViewRef view_;
    std::vector<platform::ViewControllerRef> presented_;
};

// Has a key window with a root view controller, "root", whose view is 375 × 812 points; a test may
// put others in their place, or none.
class TestApplication final : public platform::Application {
  public:
    TestApplication();

    [[nodiscard]] platform::WindowRef keyWindow() override { return window; }

    // A new root view controller for the window, over `view`. "" for one without a name.
    std::shared_ptr<TestViewController> showRoot(const std::string& name,
                                                 const platform::ViewRef& view);

    std::shared_ptr<desktop::DesktopWindow> window;
    platform::ViewRef rootView;
    std::shared_ptr<TestViewController> root;
};

}  // namespace velmoranth::tests
