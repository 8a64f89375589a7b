#include "desktop/views/view_controllers.h"

#include "record/operations.h"
#include "record/recorder.h"

namespace velmoranth::desktop {

void DesktopViewController::presentViewControllerAnimated(
    const platform::ViewControllerRef& controller, bool animated) {
    record::tell(*this, record::messageOf("ViewController", "presentViewControllerAnimated"),
                 controller, animated);
    if (presented_ == nullptr) {
        presented_ = controller;
    }
}

void DesktopAlertAction::choose() const {
    if (handler_) {
        handler_();
    }
}

void DesktopAlertController::addAction(const platform::AlertActionRef& action) {
    record::tell(*this, record::messageOf("AlertController", "addAction"), action);
    if (auto own = std::dynamic_pointer_cast<DesktopAlertAction>(action)) {
        actions_.push_back(std::move(own));
    }
}

platform::AlertControllerRef DesktopAlerts::alertControllerWithTitleMessagePreferredStyle(
    const platform::NullableString& title, const platform::NullableString& message,
    platform::AlertControllerStyle style) {
    return std::make_shared<DesktopAlertController>(title, message, style);
}

platform::AlertActionRef DesktopAlerts::actionWithTitleStyleHandler(
    const platform::NullableString& title, platform::AlertActionStyle style,
    const std::function<void()>& handler) {
    return std::make_shared<DesktopAlertAction>(title, style, handler);
}

}  // namespace velmoranth::desktop
