// The replacements of the classic dock's layout, one for each system.
#include "device/library/rows_support.h"

namespace velmoranth::standins::system_rows_test {
namespace {

constexpr const char* kLayout = "-[SBDockView layoutSubviews]";
constexpr const char* kFrame = "-[SBDockView dockListViewFrame]";

class ClassicDock : public ReplacedMethods {
  protected:
    explicit ClassicDock(const SystemVersion& system) : ReplacedMethods(system) {
        setVariable(dock, "_backgroundView", background);
        setVariable(dock, "_highlightView", highlight);
        setVariable(dock, "_iconListView", list);
        for (UIView* const view : {background, highlight, static_cast<UIView*>(list)}) {
            [dock addSubview:view];
        }
        setAnswer(kFrame, CGRect{{4, 3}, {367, 92}});
        clearJournal();
    }

    void expectStaysUnlessBothSwitchesAreOn(const std::string& logged) {
        for (const auto& switches :
             {std::initializer_list<const char*>{}, {"enable"}, {"removeDock"}}) {
            settings({"A"}, switches);
            [dock layoutSubviews];
            EXPECT_EQ(taken(), Lines{sentTo("dock", kLayout)});
            EXPECT_EQ(logLines(), Lines{logged});
        }
        EXPECT_EQ([dock->_subviews count], 3U);
        expectExceptionsToPass(kLayout, [this] { [dock layoutSubviews]; });
        expectNothingLeft([this] { [dock layoutSubviews]; });
        EXPECT_EQ([dock retainCount], 1U);
    }

    UIView* background = named([[UIView alloc] init], "background");
    UIView* highlight = named([[UIView alloc] init], "highlight");
    SBIconListView* list = named([[SBIconListView alloc] init], "list");
    SBDockView* dock = named([[SBDockView alloc] init], "dock");
};

struct DockOniOS12 : ClassicDock {
    DockOniOS12() : ClassicDock(kiOS12) {}
};

struct DockOniOS13 : ClassicDock {
    DockOniOS13() : ClassicDock(kiOS13) {}
};

struct DockBetween : ClassicDock {
    DockBetween() : ClassicDock(kBetween) {}
};

// The theme's dock, ten points below that frame, before it is put anywhere; theme A has the file.
Lines makesPicture() {
    return joined({{sentTo("dock", kFrame), "-[UIImageView init]",
                    "-[UIView setFrame:] UIImageView (4, 13) 367×92"},
                   asksForIdiom(),
                   {readsImage("A/Velmoranth/SBDockBGiphone.png"),
                    "-[UIImageView setImage:] UIImageView 6×6 @1x",
                    "-[UIImageView image] UIImageView", "-[UIImageView image] UIImageView"}});
}

TEST_F(DockOniOS12, StaysUnlessBothSwitchesAreOn) {
    expectStaysUnlessBothSwitchesAreOn("kCFCoreFoundationVersionNumber Running ios 12 1575.170000");
}

TEST_F(DockOniOS13, StaysUnlessBothSwitchesAreOn) {
    expectStaysUnlessBothSwitchesAreOn("kCFCoreFoundationVersionNumber Running ios 13 1674.102000");
}

TEST_F(DockBetween, LayoutIsThePlatforms) {
    settings({"A"}, {"enable", "removeDock"});
    [dock layoutSubviews];
    EXPECT_EQ(taken(), Lines{sentTo("dock", kLayout)});
    EXPECT_EQ(logLines(), Lines{});
}

TEST_F(DockOniOS12, ThemesDockLiesBehindTheIconsAtEveryLayout) {
    themePng("A/Velmoranth/SBDockBGiphone.png");
    settings({"A"}, {"enable", "removeDock"});
    [dock layoutSubviews];
    EXPECT_EQ(taken(), joined({{sentTo("dock", kLayout), "-[UIView removeFromSuperview] background",
                                "-[UIView removeFromSuperview] highlight"},
                               makesPicture(),
                               {"-[UIView insertSubview:atIndex:] list UIImageView 0"}}));
    ASSERT_EQ([dock->_subviews count], 1U);
    EXPECT_EQ(address([dock->_subviews objectAtIndex:0]), address(list));
    UIImageView* const picture = [list->_subviews objectAtIndex:0];
    EXPECT_EQ(pathOf(picture->_image), "/Library/Themes/A/Velmoranth/SBDockBGiphone.png");
    [dock layoutSubviews];
    EXPECT_EQ([list->_subviews count], 2U);
    EXPECT_EQ(leftBy([this] { [dock layoutSubviews]; }),
              (Lines{"CALayer +1", "UIImage +1", "UIImageView +1"}));
    expectExceptionsToPass("-[UIView removeFromSuperview]", [this] {
        [dock layoutSubviews];
        [list->_subviews removeAllObjects];
    });
}

TEST_F(DockOniOS12, WhatIsNoViewIsLeftAlone) {
    settings({"A"}, {"enable", "removeDock"});
    setVariable(dock, "_highlightView", @"no view");
    setVariable(dock, "_iconListView", nil);
    [dock layoutSubviews];
    EXPECT_EQ(taken(),
              (Lines{sentTo("dock", kLayout), "-[UIView removeFromSuperview] background"}));
    setVariable(dock, "_backgroundView", nil);
    setVariable(dock, "_highlightView", nil);
    [dock layoutSubviews];
    EXPECT_EQ(taken(), Lines{sentTo("dock", kLayout)});
}

// A key that an object lacks is the platform's own error; nothing is logged but the running system,
// as at every layout.
void expectKeysToBeMissed(std::initializer_list<const char*> keys, const std::string& system) {
    const Class plain =
        classWithMethodOf("PlainDock", [UIView class], "layoutSubviews", [SBDockView class]);
    UIView* const view = [[[plain alloc] init] autorelease];
    for (const char* const key : keys) {
        for (int time = 0; time < 2; ++time) {
            clearJournal();
            clearLog();
            NSException* const raised = thrownBy([view] { [view layoutSubviews]; });
            EXPECT_EQ(textOf([raised name]), "NSUnknownKeyException");
            EXPECT_NE(textOf([raised reason]).find("for the key " + std::string(key) + "."),
                      std::string::npos);
            EXPECT_EQ(journal(), Lines{"-[PlainDock layoutSubviews] PlainDock"});
            ASSERT_EQ(logLines().size(), 1U);
            EXPECT_NE(logLines().front().find(system), std::string::npos);
        }
        addEmptyKey(plain, key);
    }
}

TEST_F(DockOniOS12, WithoutTheVariablesRaisesWhatThePlatformRaises) {
    settings({"A"}, {"enable", "removeDock"});
    expectKeysToBeMissed({"_backgroundView", "_highlightView", "_iconListView"}, "Running ios 12");
}

TEST_F(DockOniOS13, WithoutTheVariableRaisesWhatThePlatformRaises) {
    settings({"A"}, {"enable", "removeDock"});
    expectKeysToBeMissed({"_highlightView"}, "Running ios 13");
}

TEST_F(DockOniOS13, ThemesDockBecomesTheBackgroundAtEveryLayout) {
    themePng("A/Velmoranth/SBDockBGiphone.png");
    settings({"A"}, {"enable", "removeDock"});
    [dock layoutSubviews];
    EXPECT_EQ(taken(), joined({{sentTo("dock", kLayout)},
                               makesPicture(),
                               {"-[SBDockView setBackgroundView:] dock UIImageView"}}));
    EXPECT_EQ(address([dock->_subviews objectAtIndex:0]),
              address(variable(dock, "_backgroundView")));
    UIImageView* const picture = variable(dock, "_backgroundView");
    EXPECT_EQ(pathOf(picture->_image), "/Library/Themes/A/Velmoranth/SBDockBGiphone.png");
    EXPECT_EQ([dock->_subviews count], 3U);
    // The one before is let go.
    expectNothingLeft([this] { [dock layoutSubviews]; });
    expectExceptionsToPass(kLayout, [this] { [dock layoutSubviews]; });
    expectExceptionsToPass(kFrame, [this] { [dock layoutSubviews]; });
}

}  // namespace
}  // namespace velmoranth::standins::system_rows_test
