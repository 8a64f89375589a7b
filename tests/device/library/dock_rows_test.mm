// The replacements on the pad's floating dock.
#include "device/library/rows_support.h"

namespace velmoranth::standins::dock_rows_test {
namespace {

constexpr const char* kPlatterLayout = "-[SBFloatingDockPlatterView layoutSubviews]";
constexpr const char* kList = "-[SBFloatingDockView userIconListView]";
constexpr const char* kDivider = "-[SBFloatingDockView dividerView]";

// Switches with which the dock stays.
const std::initializer_list<const char*> kDockStays[] = {
    {"enableLogging", "removeFolderBG"}, {"enable", "enableLogging"}, {"removeDock"}};

class DockPlatter : public ReplacedMethods {
  protected:
    DockPlatter() {
        for (UIView* const view : {background, static_cast<UIView*>(shadow), other}) {
            [platter addSubview:view];
        }
        setVariable(platter, "_backgroundView", background);
        setVariable(platter, "_shadowView", shadow);
    }

    UIView* background = named([[UIView alloc] init], "background");
    UIImageView* shadow = named([[UIImageView alloc] init], "shadow");
    UIView* other = named([[UIView alloc] init], "other");
    SBFloatingDockPlatterView* platter = named([[SBFloatingDockPlatterView alloc] init], "platter");
    Call layout = [this] { [platter layoutSubviews]; };
};

TEST_F(DockPlatter, LosesItsBackgroundAndThenItsShadow) {
    settings({"A"}, {"enable", "removeDock"});
    layout();
    EXPECT_EQ(taken(),
              (Lines{sentTo("platter", kPlatterLayout), "-[UIView removeFromSuperview] background",
                     "-[UIView removeFromSuperview] shadow"}));
    ASSERT_EQ([platter->_subviews count], 1U);
    EXPECT_EQ(address([platter->_subviews objectAtIndex:0]), address(other));
    EXPECT_EQ(logLines(), Lines{});
}

TEST_F(DockPlatter, StaysUnlessBothSwitchesAreOn) {
    for (const auto& switches : kDockStays) {
        settings({"A"}, switches);
        layout();
        EXPECT_EQ(taken(), Lines{sentTo("platter", kPlatterLayout)});
    }
    EXPECT_EQ([platter->_subviews count], 3U);
}

TEST_F(DockPlatter, WhatIsNoViewIsLeftAlone) {
    settings({"A"}, {"enable", "removeDock"});
    setVariable(platter, "_backgroundView", nil);
    layout();
    EXPECT_EQ(taken(),
              (Lines{sentTo("platter", kPlatterLayout), "-[UIView removeFromSuperview] shadow"}));
    setVariable(platter, "_backgroundView", @"background");
    setVariable(platter, "_shadowView", [NSArray array]);
    layout();
    EXPECT_EQ(taken(), Lines{sentTo("platter", kPlatterLayout)});
}

// A key that an object lacks is the platform's own error.
TEST_F(DockPlatter, WithoutTheVariablesRaisesWhatThePlatformRaises) {
    settings({"A"}, {"enable", "removeDock"});
    const Class plain = classWithMethodOf("SBPlainPlatterView", [UIView class], "layoutSubviews",
                                          [SBFloatingDockPlatterView class]);
    UIView* const view = [[[plain alloc] init] autorelease];
    for (const char* const missing : {"_backgroundView", "_backgroundView", "_shadowView"}) {
        if (std::string("_shadowView") == missing) {
            addEmptyKey(plain, "_backgroundView");
        }
        clearJournal();
        NSException* const raised = thrownBy([view] { [view layoutSubviews]; });
        EXPECT_EQ(textOf([raised name]), "NSUnknownKeyException");
        EXPECT_NE(textOf([raised reason]).find(missing), std::string::npos);
        EXPECT_EQ(taken(), Lines{"-[SBPlainPlatterView layoutSubviews] SBPlainPlatterView"});
        EXPECT_EQ(logLines(), Lines{});
    }
    EXPECT_EQ(leftBy([view] { EXPECT_NE(thrownBy([view] { [view layoutSubviews]; }), nil); }),
              Lines{});
    // Others are as before.
    clearJournal();
    layout();
    EXPECT_EQ(taken(),
              (Lines{sentTo("platter", kPlatterLayout), "-[UIView removeFromSuperview] background",
                     "-[UIView removeFromSuperview] shadow"}));
}

TEST_F(DockPlatter, LeavesNothingBehindAndPassesExceptionsOn) {
    for (const char* const enable : {"enableLogging", "enable"}) {
        settings({"A"}, {enable, "removeDock"});
        expectNothingLeft(layout);
        expectExceptionsToPass(kPlatterLayout, layout);
    }
    expectExceptionsToPass("-[UIView removeFromSuperview]", layout);
}

class FloatingDock : public ReplacedMethods {
  protected:
    FloatingDock() {
        setDevice(kPad, 1);
        setScreen({1024, 768}, 2);
        background->_frame = {{40, 50}, {600, 84}};
        setVariable(dock, "_backgroundView", background);
        [dock addSubview:named([[UIView alloc] init], "platter")];
        setVariable(icon, "_uniqueIdentifier", @"com.unique");
    }

    static SBIconListView* list(id icons) {
        SBIconListView* const made = named([[SBIconListView alloc] init], "list");
        setVariable(made, "_icons", icons);
        return made;
    }

    SBIcon* icon = named([[SBIcon alloc] init], "icon");
    UIView* background = named([[UIView alloc] init], "background");
    SBFloatingDockView* dock = named([[SBFloatingDockView alloc] init], "dock");
    SBIconListView* first = list([NSArray arrayWithObject:icon]);
    SBIconListView* second = list([NSArray arrayWithObjects:icon, icon, nil]);
    SBIconListView* third = list(nil);
    Call askList = [this] { [dock userIconListView]; };
    Call askDivider = [this] { [dock dividerView]; };
};

using DockIcons = FloatingDock;
using DockDivider = FloatingDock;

TEST_F(DockIcons, WithThemingOffAreThePlatformsSecondList) {
    settings({"A"}, {"removeDock"});
    for (const id answer :
         {static_cast<id>(second), static_cast<id>(nil), static_cast<id>(@"no list")}) {
        setAnswers(kList, {first, answer, third});
        EXPECT_EQ(address([dock userIconListView]), address(answer));
        EXPECT_EQ(taken(), (Lines{sentTo("dock", kList), sentTo("dock", kList)}));
    }
}

TEST_F(DockIcons, OfTheSecondListAreAskedForAndTheThirdIsReturned) {
    settings({"A"}, {"enable"});
    setAnswers(kList, {first, second, third, first});
    EXPECT_EQ(address([dock userIconListView]), address(third));
    EXPECT_EQ(taken(), (Lines{sentTo("dock", kList), sentTo("dock", kList),
                              "-[SBIconListView icons] list", "-[SBIcon uniqueIdentifier] icon",
                              "-[SBIcon uniqueIdentifier] icon", sentTo("dock", kList)}));
    setAnswers(kList, {first, nil, third, first});
    EXPECT_EQ(address([dock userIconListView]), address(third));
    EXPECT_EQ(taken(),
              (Lines{sentTo("dock", kList), sentTo("dock", kList), sentTo("dock", kList)}));
}

TEST_F(DockIcons, WhatIsNoIconIsPassedOver) {
    settings({"A"}, {"enable"});
    setAnswers(kList, {first, list([NSArray arrayWithObjects:@"no icon", icon, nil]), third});
    EXPECT_EQ(address([dock userIconListView]), address(third));
    EXPECT_EQ(journalOf("-[SBIcon uniqueIdentifier]").size(), 1U);
    setAnswers(kList, {first, list(@"no array"), third});
    EXPECT_EQ(address([dock userIconListView]), address(third));
    EXPECT_EQ(journalOf("-[SBIcon uniqueIdentifier]").size(), 1U);
    setVariable(icon, "_uniqueIdentifier", nil);
    setAnswers(kList, {first, second, third});
    EXPECT_EQ(address([dock userIconListView]), address(third));
}

TEST_F(DockIcons, LeaveNothingBehindAndPassExceptionsOn) {
    setAnswer(kList, second);
    for (const char* const enable : {"removeDock", "enable"}) {
        settings({"A"}, {enable});
        expectNothingLeft(askList);
        expectExceptionsToPass(kList, askList);
    }
    expectExceptionsToPass("-[SBIconListView icons]", askList);
    expectExceptionsToPass("-[SBIcon uniqueIdentifier]", askList);
    EXPECT_EQ([icon retainCount], 4U);  // the test's, and its places in two lists
}

TEST_F(DockDivider, IsThePlatformsSecondAnswerUnlessTheDockIsRemoved) {
    for (const auto& switches : kDockStays) {
        settings({"A"}, switches);
        for (const id answer :
             {static_cast<id>(third), static_cast<id>(nil), static_cast<id>(@"no view")}) {
            setAnswers(kDivider, {first, answer, second});
            EXPECT_EQ(address([dock dividerView]), address(answer));
            EXPECT_EQ(taken(), (Lines{sentTo("dock", kDivider), sentTo("dock", kDivider)}));
        }
    }
    EXPECT_EQ([dock->_subviews count], 1U);
}

TEST_F(DockDivider, IsNilAndTheThemesDockLiesBehindAllElse) {
    themePng("A/Velmoranth/SBDockBGipad.png");
    settings({"A"}, {"enable", "removeDock"});
    setAnswer(kDivider, first);
    EXPECT_EQ(address([dock dividerView]), nullptr);
    EXPECT_EQ(taken(),
              joined({{sentTo("dock", kDivider), "-[SBFloatingDockView backgroundView] dock",
                       "-[UIView frame] background", "+[UIScreen mainScreen]", "-[UIScreen bounds]",
                       "-[UIImageView init]", "-[UIView setFrame:] UIImageView (0, 10) 1024×84"},
                      asksForIdiom(),
                      {readsImage("A/Velmoranth/SBDockBGipad.png"),
                       "-[UIImageView setImage:] UIImageView 6×6 @1x",
                       "-[UIImageView image] UIImageView", "-[UIImageView image] UIImageView",
                       "-[UIView insertSubview:atIndex:] dock UIImageView 0"}}));
    ASSERT_EQ([dock->_subviews count], 2U);
    UIImageView* const picture = [dock->_subviews objectAtIndex:0];
    EXPECT_EQ(pathOf(picture->_image), "/Library/Themes/A/Velmoranth/SBDockBGipad.png");
    // Once for ever, whatever dock asks.
    SBFloatingDockView* const rebuilt = named([[SBFloatingDockView alloc] init], "rebuilt");
    setVariable(rebuilt, "_backgroundView", background);
    clearJournal();
    EXPECT_EQ(address([rebuilt dividerView]), nullptr);
    EXPECT_EQ(taken(), Lines{sentTo("rebuilt", kDivider)});
}

TEST_F(DockDivider, WaitsForABackgroundWithAHeight) {
    settings({"A"}, {"enable", "removeDock"});
    setAnswer(kDivider, first);
    background->_frame.size.height = 0;
    for (const id missing :
         {static_cast<id>(background), static_cast<id>(nil), static_cast<id>(@"no view")}) {
        setVariable(dock, "_backgroundView", missing);
        EXPECT_EQ(address([dock dividerView]), nullptr);
        EXPECT_EQ([dock->_subviews count], 1U);
    }
    background->_frame.size.height = 0.5;
    setVariable(dock, "_backgroundView", background);
    EXPECT_EQ(address([dock dividerView]), nullptr);
    ASSERT_EQ([dock->_subviews count], 2U);
    EXPECT_EQ(wordsOf([[dock->_subviews objectAtIndex:0] frame]), "(0, 10) 1024×0.5");
}

TEST_F(DockDivider, LeavesNothingBehindAndPassesExceptionsOn) {
    setAnswer(kDivider, third);
    settings({"A"}, {"enable"});
    expectNothingLeft(askDivider);
    expectExceptionsToPass(kDivider, askDivider);
    settings({"A"}, {"enable", "removeDock"});
    // Nobody but the dock has the picture.
    setVariable(dock, "_backgroundView", nil);
    expectNothingLeft(askDivider);
    expectExceptionsToPass(kDivider, askDivider);
    expectExceptionsToPass("-[SBFloatingDockView backgroundView]", askDivider);
    setVariable(dock, "_backgroundView", background);
    EXPECT_EQ(leftBy(askDivider),
              (Lines{"CALayer +1", "UIDevice +1", "UIImageView +1", "UIScreen +1"}));
    expectExceptionsToPass(kDivider, askDivider);
}

}  // namespace
}  // namespace velmoranth::standins::dock_rows_test
