#include "desktop/views/view_controllers.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace velmoranth::desktop::view_controllers_test {

namespace {

using platform::AlertActionStyle;
using platform::AlertControllerStyle;

std::shared_ptr<DesktopAlertController> alertOf(DesktopAlerts& alerts, const std::string& title) {
    return std::dynamic_pointer_cast<DesktopAlertController>(
        alerts.alertControllerWithTitleMessagePreferredStyle(title, std::nullopt,
                                                             AlertControllerStyle::alert));
}

}  // namespace

TEST(DesktopAlerts, AnAlertKeepsItsTextsAndActions) {
    DesktopAlerts alerts;
    int chosen = 0;
    const auto alert = std::dynamic_pointer_cast<DesktopAlertController>(
        alerts.alertControllerWithTitleMessagePreferredStyle("A", "B",
                                                             AlertControllerStyle::actionSheet));
    alert->addAction(alerts.actionWithTitleStyleHandler("One", AlertActionStyle::destructive,
                                                        [&chosen] { ++chosen; }));
    alert->addAction(nullptr);
    alert->addAction(
        alerts.actionWithTitleStyleHandler(std::nullopt, AlertActionStyle::cancel, nullptr));
    EXPECT_EQ(alert->title(), "A");
    EXPECT_EQ(alert->message(), "B");
    EXPECT_EQ(alert->style(), AlertControllerStyle::actionSheet);
    ASSERT_EQ(alert->actions().size(), 2U);
    EXPECT_EQ(alert->actions()[0]->style(), AlertActionStyle::destructive);
    EXPECT_EQ(alert->actions()[1]->title(), std::nullopt);
    alert->actions()[0]->choose();
    alert->actions()[1]->choose();
    EXPECT_EQ(chosen, 1);
}

TEST(DesktopViewController, PresentsOneAtATime) {
    DesktopAlerts alerts;
    DesktopViewController controller(nullptr);
    const auto first = alertOf(alerts, "first");
    controller.presentViewControllerAnimated(nullptr, true);
    EXPECT_EQ(controller.presented(), nullptr);
    controller.presentViewControllerAnimated(first, true);
    controller.presentViewControllerAnimated(alertOf(alerts, "second"), false);
    EXPECT_EQ(controller.presented(), first);
    controller.dismiss();
    EXPECT_EQ(controller.presented(), nullptr);
    controller.presentViewControllerAnimated(first, true);
    EXPECT_EQ(controller.presented(), first);
}

TEST(DesktopApplication, ItsKeyWindowHasTheRootViewController) {
    DesktopApplication application;
    EXPECT_EQ(application.keyWindow(), nullptr);
    const auto window = std::make_shared<DesktopWindow>(platform::Rect{{0, 0}, {320, 480}});
    EXPECT_EQ(window->rootViewController(), nullptr);
    const auto controller = std::make_shared<DesktopViewController>(window);
    window->setRootViewController(controller);
    application.setKeyWindow(window);
    ASSERT_NE(application.keyWindow(), nullptr);
    EXPECT_EQ(application.keyWindow()->rootViewController()->view()->frame().size.height, 480);
    window->setRootViewController(nullptr);
}

}  // namespace velmoranth::desktop::view_controllers_test
