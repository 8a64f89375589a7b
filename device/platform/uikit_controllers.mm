// View controllers, alerts and the app.
#include "device/platform/private_messages.h"
#include "device/platform/services.h"
#include "device/platform/signed_pointers.h"
#include "device/platform/uikit_handles.h"
#import <UIKit/UIKit.h>

#include <functional>

namespace velmoranth::device {
namespace {

class UIAlerts final : public platform::Alerts {
  public:
    platform::AlertControllerRef alertControllerWithTitleMessagePreferredStyle(
        const platform::NullableString& title, const platform::NullableString& message,
        platform::AlertControllerStyle style) override {
        return wrap<platform::AlertController>([classNamed("UIAlertController")
            alertControllerWithTitle:stringOf(title)
                             message:stringOf(message)
                      preferredStyle:static_cast<NSInteger>(style)]);
    }

    platform::AlertActionRef actionWithTitleStyleHandler(
        const platform::NullableString& title, platform::AlertActionStyle style,
        const std::function<void()>& handler) override {
        // For the block to keep: of a reference it would keep no more than the address.
        const std::function<void()> choose = handler;
        return wrap<platform::AlertAction>([classNamed("UIAlertAction")
            actionWithTitle:stringOf(title)
                      style:static_cast<NSInteger>(style)
                    handler:signedBlock(^(UIAlertAction* /*action*/) {
                      choose();
                    })]);
    }
};

class PhoneApplication final : public platform::Application {
  public:
    platform::WindowRef keyWindow() override {
        return wrap<platform::Window>([[classNamed("UIApplication") sharedApplication] keyWindow]);
    }
};

}  // namespace

platform::ViewRef ViewControllerMessages::view(UIViewController* controller) {
    return viewOf([controller view]);
}

void ViewControllerMessages::presentAnimated(UIViewController* controller,
                                             UIViewController* presented, bool animated) {
    if (presented != nil) {
        [controller presentViewController:presented animated:animated completion:nil];
    }
}

void HandleFor<platform::AlertController>::addAction(const platform::AlertActionRef& action) {
    if (action != nullptr) {
        [object() addAction:nativeOf(action)];
    }
}

std::uint32_t HandleFor<platform::UIFeedback>::_effectiveSystemSoundID() {
    return [ifUnderstood(object(), @selector(_effectiveSystemSoundID)) _effectiveSystemSoundID];
}

platform::Alerts& alerts() {
    return theOne<UIAlerts>();
}

platform::Application& application() {
    return theOne<PhoneApplication>();
}

}  // namespace velmoranth::device
