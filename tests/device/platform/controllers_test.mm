#import "device/standins/controllers.h"

#include "device/platform/exceptions.h"
#include "device/platform/handles.h"
#include "device/platform/services.h"
#import "device/standins/springboard.h"
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace velmoranth::device::controllers_test {
namespace {

using platform::AlertActionStyle;
using platform::AlertControllerStyle;
using standins::clearJournal;
using standins::journal;

template <class Class>
Class* made() {
    return [[[Class alloc] init] autorelease];
}

TEST(Alerts, AreMadeAndShownByTheMessagesNamed) {
    @autoreleasepool {
        UIViewController* const root = made<UIViewController>();
        const auto controller = wrap<platform::ViewController>(root);
        clearJournal();
        const platform::AlertControllerRef alert =
            alerts().alertControllerWithTitleMessagePreferredStyle("Title", std::nullopt,
                                                                   AlertControllerStyle::alert);
        alert->addAction(
            alerts().actionWithTitleStyleHandler("Yes", AlertActionStyle::destructive, [] {}));
        alert->addAction(
            alerts().actionWithTitleStyleHandler(std::nullopt, AlertActionStyle::cancel, [] {}));
        controller->presentViewControllerAnimated(alert, true);
        EXPECT_EQ(journal(),
                  (Strings{"+[UIAlertController alertControllerWithTitle:message:preferredStyle:] "
                           "\"Title\" nil 1",
                           "+[UIAlertAction actionWithTitle:style:handler:] \"Yes\" 2 set",
                           "-[UIAlertController addAction:] UIAlertController UIAlertAction",
                           "+[UIAlertAction actionWithTitle:style:handler:] nil 1 set",
                           "-[UIAlertController addAction:] UIAlertController UIAlertAction",
                           "-[UIViewController presentViewController:animated:completion:] "
                           "UIViewController UIAlertController YES"}));
        EXPECT_EQ(root->_presentedViewController, nativeOf(alert));
        EXPECT_EQ([static_cast<UIAlertController*>(nativeOf(alert))->_actions count], 2U);
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(Alerts, ActionSheetsAndPlainButtonsHaveThePlatformsNumbers) {
    @autoreleasepool {
        clearJournal();
        static_cast<void>(alerts().alertControllerWithTitleMessagePreferredStyle(
            "", "m", AlertControllerStyle::actionSheet));
        static_cast<void>(
            alerts().actionWithTitleStyleHandler("t", AlertActionStyle::normal, [] {}));
        EXPECT_EQ(journal(),
                  (Strings{"+[UIAlertController alertControllerWithTitle:message:preferredStyle:] "
                           "\"\" \"m\" 0",
                           "+[UIAlertAction actionWithTitle:style:handler:] \"t\" 0 set"}));
    }
}

TEST(Alerts, HandlersLiveAsLongAsTheirButtonsAndRunWhenChosen) {
    auto chosen = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = chosen;
    @autoreleasepool {
        platform::AlertActionRef action;
        {
            std::function<void()> handler = [chosen] { ++*chosen; };
            action = alerts().actionWithTitleStyleHandler("Yes", AlertActionStyle::normal, handler);
            handler = [] {};
        }
        EXPECT_EQ(*chosen, 0);
        standins::choose(static_cast<UIAlertAction*>(nativeOf(action)));
        EXPECT_EQ(*chosen, 1);
        chosen.reset();
        EXPECT_FALSE(watch.expired());
    }
    EXPECT_TRUE(watch.expired());
}

TEST(Alerts, NilIsNeitherAddedNorShown) {
    @autoreleasepool {
        const platform::AlertControllerRef alert =
            alerts().alertControllerWithTitleMessagePreferredStyle("t", "m",
                                                                   AlertControllerStyle::alert);
        clearJournal();
        alert->addAction(nullptr);
        alert->presentViewControllerAnimated(nullptr, false);
        EXPECT_EQ(journal(), Strings{});
    }
}

TEST(Alerts, PassOnWhatTheirMessagesRaise) {
    @autoreleasepool {
        const platform::AlertControllerRef alert =
            alerts().alertControllerWithTitleMessagePreferredStyle("t", "m",
                                                                   AlertControllerStyle::alert);
        const auto action =
            alerts().actionWithTitleStyleHandler("t", AlertActionStyle::normal, [] {});
        const Operation operations[] = {
            {"+[UIAlertController alertControllerWithTitle:message:preferredStyle:]",
             [] {
                 static_cast<void>(alerts().alertControllerWithTitleMessagePreferredStyle(
                     "t", "m", AlertControllerStyle::alert));
             }},
            {"+[UIAlertAction actionWithTitle:style:handler:]",
             [] {
                 static_cast<void>(
                     alerts().actionWithTitleStyleHandler("t", AlertActionStyle::normal, [] {}));
             }},
            {"-[UIAlertController addAction:]", [&] { alert->addAction(action); }},
            {"-[UIViewController presentViewController:animated:completion:]",
             [&] { alert->presentViewControllerAnimated(alert, true); }},
            {"-[UIViewController view]", [&] { static_cast<void>(alert->view()); }},
            {"-[UIApplication keyWindow]", [] { static_cast<void>(application().keyWindow()); }},
        };
        for (const Operation& operation : operations) {
            standins::raiseFrom(operation.method, "Refused");
            EXPECT_EQ(raisedBy(operation.run), "Refused") << operation.method;
        }
    }
}

TEST(ViewControllers, HaveAViewOfItsKindOrNone) {
    @autoreleasepool {
        UIViewController* const native = made<UIViewController>();
        const auto controller = wrap<platform::ViewController>(native);
        EXPECT_EQ(controller->view(), nullptr);
        [native setView:made<UIImageView>()];
        clearJournal();
        const platform::ViewRef view = controller->view();
        EXPECT_EQ(nativeOf(view), static_cast<id>(native->_view));
        EXPECT_NE(std::dynamic_pointer_cast<platform::ImageView>(view), nullptr);
        EXPECT_EQ(journal(), (Strings{"-[UIViewController view] UIViewController"}));
        native->_view = static_cast<UIView*>([@"no view" retain]);
        EXPECT_EQ(controller->view(), nullptr);
    }
}

TEST(ViewControllers, ArePresentedWithOrWithoutMotion) {
    @autoreleasepool {
        const auto controller = wrap<platform::ViewController>(made<UIViewController>());
        const auto presented = wrap<platform::ViewController>(made<UIViewController>());
        clearJournal();
        controller->presentViewControllerAnimated(presented, false);
        EXPECT_EQ(journal(),
                  (Strings{"-[UIViewController presentViewController:animated:completion:] "
                           "UIViewController UIViewController NO"}));
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(Application, HasTheKeyWindowAndItsController) {
    @autoreleasepool {
        standins::setKeyWindow(nil);
        clearJournal();
        EXPECT_EQ(application().keyWindow(), nullptr);
        EXPECT_EQ(journal(),
                  (Strings{"+[UIApplication sharedApplication]", "-[UIApplication keyWindow]"}));
        UIWindow* const window = made<UIWindow>();
        standins::setKeyWindow(window);
        const platform::WindowRef found = application().keyWindow();
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(nativeOf(found), static_cast<id>(window));
        EXPECT_EQ(found->rootViewController(), nullptr);
        UIViewController* const root = made<UIViewController>();
        [window setRootViewController:root];
        EXPECT_EQ(nativeOf(found->rootViewController()), static_cast<id>(root));
        found->setAlpha(0.5);
        EXPECT_EQ(standins::journalOf("-[UIView setAlpha:]"),
                  (Strings{"-[UIView setAlpha:] UIWindow 0.5"}));
    }
    EXPECT_EQ(standins::living("UIViewController"), 1);
    standins::setKeyWindow(nil);
    EXPECT_EQ(standins::allLiving(), (Strings{"UIApplication 1"}));
}

TEST(Feedback, TellsTheNumberOfItsSound) {
    @autoreleasepool {
        const auto feedback = wrap<platform::UIFeedback>(made<_UIFeedback>());
        standins::setAnswer("-[_UIFeedback _effectiveSystemSoundID]", 4294967295.0);
        clearJournal();
        EXPECT_EQ(feedback->_effectiveSystemSoundID(), 4294967295U);
        EXPECT_EQ(journal(), (Strings{"-[_UIFeedback _effectiveSystemSoundID] _UIFeedback"}));
        standins::raiseFrom("-[_UIFeedback _effectiveSystemSoundID]", "Refused");
        EXPECT_EQ(raisedBy([&] { static_cast<void>(feedback->_effectiveSystemSoundID()); }),
                  "Refused");
    }
}

}  // namespace
}  // namespace velmoranth::device::controllers_test
