// View controllers, alerts and the app.
#include "device/platform/private_messages.h"
#include "device/platform/services.h"
#include "device/platform/uikit_handles.h"
#import <UIKit/UIAlertController.h>
#import <UIKit/UIApplication.h>
#import <UIKit/UIFeedback.h>
#import <UIKit/UIViewController.h>
#include <objc/runtime.h>

#include <functional>

namespace velmoranth::device {
namespace {

class UIAlerts final : public platform::Alerts {
  public:
    platform::AlertControllerRef alertControllerWithTitleMessagePreferredStyle(
        const platform::NullableString& title, const platform::NullableString& message,
        platform::AlertControllerStyle style) override {
        const Class alerts = static_cast<Class>(objc_getClass("UIAlertController"));
        return wrap<platform::AlertController>([alerts
            alertControllerWithTitle:stringOf(title)
                             message:stringOf(message)
                      preferredStyle:static_cast<NSInteger>(style)]);
    }

    platform::AlertActionRef actionWithTitleStyleHandler(
        const platform::NullableString& title, platform::AlertActionStyle style,
        const std::function<void()>& handler) override {
        const Class actions = static_cast<Class>(objc_getClass("UIAlertAction"));
        // For the block to keep: of a reference it would keep no more than the address.
        const std::function<void()> choose = handler;
        return wrap<platform::AlertAction>([actions actionWithTitle:stringOf(title)
                                                              style:static_cast<NSInteger>(style)
                                                            handler:^(UIAlertAction* /*action*/) {
                                                              choose();
                                                            }]);
    }
};

class PhoneApplication final : public platform::Application {
  public:
    platform::WindowRef keyWindow() override {
        const Class applications = static_cast<Class>(objc_getClass("UIApplication"));
        return wrap<platform::Window>([[applications sharedApplication] keyWindow]);
    }
};

}  // namespace

platform::ViewRef ViewControllerMessages::view(id controller) {
    return viewOf([static_cast<UIViewController*>(controller) view]);
}

void ViewControllerMessages::presentAnimated(id controller, id presented, bool animated) {
    if (presented != nil) {
        [static_cast<UIViewController*>(controller)
            presentViewController:static_cast<UIViewController*>(presented)
                         animated:animated
                       completion:nil];
    }
}

void AlertControllerHandle::addAction(const platform::AlertActionRef& action) {
    if (action != nullptr) {
        [static_cast<UIAlertController*>(object())
            addAction:static_cast<UIAlertAction*>(nativeOf(action))];
    }
}

std::uint32_t UIFeedbackHandle::_effectiveSystemSoundID() {
    return [ifUnderstood(static_cast<_UIFeedback*>(object()), @selector(_effectiveSystemSoundID))
        _effectiveSystemSoundID];
}

platform::Alerts& alerts() {
    static UIAlerts instance;
    return instance;
}

platform::Application& application() {
    static PhoneApplication instance;
    return instance;
}

}  // namespace velmoranth::device
