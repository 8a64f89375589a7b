#include "tests/support/recording_alerts.h"

#include "record/operations.h"
#include "record/recorder.h"

namespace velmoranth::tests {

namespace {

constexpr platform::Rect kFrame{{0, 0}, {375, 812}};

std::string shown(const platform::NullableString& text) {
    return text.value_or("nil");
}

}  // namespace

void RecordingAlertController::addAction(const platform::AlertActionRef& action) {
    journal_.write("addAction");
    real_.addAction(action);
}

platform::AlertControllerRef RecordingAlerts::alertControllerWithTitleMessagePreferredStyle(
    const platform::NullableString& title, const platform::NullableString& message,
    platform::AlertControllerStyle style) {
    journal_.write("alert " + shown(title) + " | " + shown(message) + " | style " +
                   std::to_string(static_cast<int>(style)));
    return std::make_shared<RecordingAlertController>(journal_, title, message, style);
}

platform::AlertActionRef RecordingAlerts::actionWithTitleStyleHandler(
    const platform::NullableString& title, platform::AlertActionStyle style,
    const std::function<void()>& handler) {
    journal_.write("action " + shown(title) + " | style " +
                   std::to_string(static_cast<int>(style)));
    return std::make_shared<desktop::DesktopAlertAction>(title, style, handler);
}

void RecordingViewController::presentViewControllerAnimated(
    const platform::ViewControllerRef& controller, bool animated) {
    record::tell(*this, record::messageOf("ViewController", "presentViewControllerAnimated"),
                 controller, animated);
    journal_.write(name_ + " presents " +
                   (controller == nullptr ? std::string("nil") : controller->className()) +
                   (animated ? " animated" : " not animated"));
    presented_.push_back(controller);
}

RecordingApplication::RecordingApplication(Journal& journal)
    : window(std::make_shared<desktop::DesktopWindow>(kFrame)),
      rootView(std::make_shared<desktop::DesktopView>(kFrame)),
      journal_(journal) {
    root = showRoot("root", rootView);
}

std::shared_ptr<RecordingViewController> RecordingApplication::showRoot(
    const std::string& name, const platform::ViewRef& view) {
    auto controller = std::make_shared<RecordingViewController>(journal_, name, view);
    window->setRootViewController(controller);
    return controller;
}

}  // namespace velmoranth::tests
