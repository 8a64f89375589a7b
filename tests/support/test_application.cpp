#include "tests/support/test_application.h"

#include "record/operations.h"
#include "record/recorder.h"

namespace velmoranth::tests {

namespace {

constexpr platform::Rect kFrame{{0, 0}, {375, 812}};

}  // namespace

platform::ViewRef TestViewController::view() {
    record::tell(*this, record::messageOf("ViewController", "view"));
    return view_;
}

void TestViewController::presentViewControllerAnimated(
    const platform::ViewControllerRef& controller, bool animated) {
    record::tell(*this, record::messageOf("ViewController", "presentViewControllerAnimated"),
                 controller, animated);
    presented_.push_back(controller);
}

TestApplication::TestApplication()
    : window(std::make_shared<desktop::DesktopWindow>(kFrame)),
      rootView(std::make_shared<desktop::DesktopView>(kFrame)) {
    root = showRoot("root", rootView);
}

std::shared_ptr<TestViewController> TestApplication::showRoot(const std::string& name,
                                                              const platform::ViewRef& view) {
    auto controller = std::make_shared<TestViewController>(name, view);
    window->setRootViewController(controller);
    return controller;
}

}  // namespace velmoranth::tests
