// The image that grows and goes after a success.
#include "success_view_fixture.h"

namespace velmoranth::filemanager::success_view_test {
namespace {

using platform::Rect;
using SuccessView = SuccessImages;

const std::string kPicture = "/User/Library/VelMoranth/done.png";

void show(const platform::NullableString& path = "Applied Fonts") {
    VelmoranthFileManager::ShowSuccesView(path);
}

TEST_F(SuccessView, GrowsAndIsAddedAfterTheAnimationHasBegun) {
    device.png(kPicture, tests::pattern(4, 4));
    show(kPicture);
    EXPECT_EQ(device.journal.lines(), showLines(1, kPicture, true));
    const auto view = views.made.at(0);
    EXPECT_EQ(tests::drawnPixels(view->image()), tests::pattern(4, 4));
    EXPECT_EQ(rootView->subviews(), (std::vector<platform::ViewRef>{view}));
    EXPECT_EQ(view->frame(), (Rect{{147.5, 366}, {200, 200}}));
    EXPECT_FALSE(view->isHidden());
    // What shows it is on its way there.
    EXPECT_EQ(view->shownFrame(), (Rect{{147.5, 366}, {0, 0}}));
}

TEST_F(SuccessView, GoesAfterSixTenthsOfASecond) {
    show();
    ASSERT_EQ(device.libSystem.mainQueue.size(), 1U);
    EXPECT_EQ(device.libSystem.mainQueue[0].first, 600'000'000);
    EXPECT_EQ(views.made[0]->superview(), rootView);
    device.journal.clear();
    runMainQueue();
    EXPECT_EQ(device.journal.lines(), timedFinishLines(1));
    const auto view = views.made.at(0);
    EXPECT_EQ(view->frame(), (Rect{{147.5, 366}, {0, 0}}));
    EXPECT_TRUE(view->isHidden());
    EXPECT_EQ(view->superview(), nullptr);
    EXPECT_TRUE(rootView->subviews().empty());
    EXPECT_TRUE(device.libSystem.mainQueue.empty());
}

TEST_F(SuccessView, TheEndsOfTheMovementsDoNothing) {
    show();
    device.journal.clear();
    device.clock().advance(0.6);
    EXPECT_EQ(takeLines(), Lines{"called " + kAnimate + " YES"});
    runMainQueue();
    device.journal.clear();
    device.clock().advance(0.6);
    EXPECT_EQ(takeLines(), Lines{"called " + kAnimate + " YES"});
}

TEST_F(SuccessView, StandsLeftOfAndAboveTheMiddleOfAnyView) {
    struct Case {
        Rect frame;
        double x;
        double y;
    };

    for (const Case& each : std::vector<Case>{{{{0, 0}, {320, 568}}, 120, 244},
                                              {{{0, 0}, {414, 736}}, 167, 328},
                                              // The view's own place does not count.
                                              {{{10, 20}, {1024, 1366}}, 472, 643},
                                              {{{0, 0}, {812, 375}}, 366, 147.5},
                                              {{{0, 0}, {80, 80}}, 0, 0},
                                              {{{0, 0}, {0, 0}}, -40, -40},
                                              {{{0, 0}, {7, 1}}, -36.5, -39.5}}) {
        views.made.clear();
        showRoot("root", each.frame);
        device.journal.clear();
        show();
        EXPECT_EQ(takeLines(), showLines(1, "Applied Fonts", false, each.x, each.y));
        EXPECT_EQ(views.made[0]->frame(), (Rect{{each.x, each.y}, {200, 200}}));
        runMainQueue();
        EXPECT_EQ(takeLines(), timedFinishLines(1, each.x, each.y));
    }
}

TEST_F(SuccessView, FractionsOfPointsStay) {
    const double width = 375.3;
    const double height = 811.7;
    showRoot("root", {{0, 0}, {width, height}});
    show();
    EXPECT_EQ(views.made[0]->frame(), (Rect{{width * 0.5 - 40, height * 0.5 - 40}, {200, 200}}));
}

TEST_F(SuccessView, APathOfNoImageShowsAnEmptyView) {
    device.file(kPicture, "no picture");
    for (const platform::NullableString& path :
         {platform::NullableString(kPicture), platform::NullableString("/nowhere.png"),
          platform::NullableString("Applied Fonts"), platform::NullableString("")}) {
        views.made.clear();
        device.journal.clear();
        show(path);
        EXPECT_EQ(takeLines(), showLines(1, *path, false));
        EXPECT_EQ(views.made[0]->image(), nullptr);
    }
    views.made.clear();
    show(std::nullopt);
    EXPECT_EQ(takeLines(), showLines(1, "", false));
}

TEST_F(SuccessView, TheFrameOfTheViewAtThatTimeCounts) {
    show();
    rootView->setFrame({{0, 0}, {812, 375}});
    device.journal.clear();
    runMainQueue();
    EXPECT_EQ(device.journal.lines(), timedFinishLines(1, 366, 147.5));
    device.journal.clear();
    show();
    EXPECT_EQ(device.journal.lines(), showLines(2, "Applied Fonts", false, 366, 147.5));
}

// Both timers then take the second one away; the first one stays where it is.
TEST_F(SuccessView, ASecondOneTakesTheFirstOnesPlace) {
    show("/first.png");
    show("/second.png");
    EXPECT_EQ(takeLines(),
              joined({showLines(1, "/first.png", false), showLines(2, "/second.png", false)}));
    EXPECT_EQ(rootView->subviews(), (std::vector<platform::ViewRef>{views.made[0], views.made[1]}));
    runMainQueue();
    EXPECT_EQ(takeLines(), timedFinishLines(2));
    runMainQueue();
    EXPECT_EQ(takeLines(), timedFinishLines(2));
    EXPECT_EQ(rootView->subviews(), (std::vector<platform::ViewRef>{views.made[0]}));
    EXPECT_FALSE(views.made[0]->isHidden());
    EXPECT_EQ(views.made[0]->frame(), (Rect{{147.5, 366}, {200, 200}}));
}

TEST_F(SuccessView, OneAfterTheOtherIsANewViewEachTime) {
    for (int i = 1; i <= 3; ++i) {
        device.journal.clear();
        show();
        runMainQueue();
        EXPECT_EQ(device.journal.lines(),
                  joined({showLines(i, "Applied Fonts", false), timedFinishLines(i)}));
        EXPECT_TRUE(rootView->subviews().empty());
    }
}

TEST_F(SuccessView, TheKeyWindowIsAskedForEachTime) {
    show();
    const auto other = showRoot("other", {{0, 0}, {320, 568}});
    device.journal.clear();
    // The one that shows it is kept until the next one.
    runMainQueue();
    EXPECT_EQ(takeLines(), timedFinishLines(1));
    show();
    EXPECT_EQ(takeLines(), showLines(2, "Applied Fonts", false, 120, 244, "other"));
    EXPECT_EQ(other->subviews().size(), 1U);
    EXPECT_TRUE(rootView->subviews().empty());
    runMainQueue();
    EXPECT_EQ(takeLines(), timedFinishLines(2, 120, 244, "other"));
}

// An alert fetches the controller too.
TEST_F(SuccessView, AnAlertInBetweenChangesWhoseViewIsMeasured) {
    show();
    showRoot("other", {{0, 0}, {320, 568}});
    EXPECT_FALSE(VelmoranthFileManager::deleteFileFromDeviceFromDir("/none", ""));
    device.journal.clear();
    runMainQueue();
    EXPECT_EQ(takeLines(), timedFinishLines(1, 120, 244, "other"));
    // It is taken from where it is.
    EXPECT_TRUE(rootView->subviews().empty());
}

TEST_F(SuccessView, TheControllerIsHeldUntilTheNextOne) {
    show();
    const std::weak_ptr<tests::TestViewController> held = root;
    device.application.root.reset();
    showRoot("other", {{0, 0}, {320, 568}});
    EXPECT_FALSE(held.expired());
    show();
    EXPECT_TRUE(held.expired());
}

TEST_F(SuccessView, WithoutAKeyWindowNothingIsAdded) {
    const auto empty = std::make_shared<desktop::DesktopWindow>(Rect{{0, 0}, {375, 812}});
    for (const auto& window : {std::shared_ptr<desktop::DesktopWindow>(), empty}) {
        views.made.clear();
        device.application.window = window;
        device.journal.clear();
        show();
        EXPECT_EQ(
            takeLines(),
            joined({{"-[UIApplication keyWindow]", "-[UIImageView initWithFrame:] (-40, -40) 0×0",
                     "+[UIImage imageWithContentsOfFile:] Applied Fonts",
                     "-[UIImageView setImage:] image view 1 nil"},
                    kSpring,
                    tests::calledBack(kAnimate, {setFrameLine(1, -40, -40, 200)}),
                    {"dispatch_after 600000000"}}));
        runMainQueue();
        EXPECT_EQ(
            takeLines(),
            tests::calledBack("dispatch_after",
                              joined({kSpring,
                                      tests::calledBack(kAnimate, {setFrameLine(1, -40, -40, 0)}),
                                      {"-[UIView setHidden:] image view 1 YES",
                                       "-[UIView removeFromSuperview] image view 1"}})));
    }
    EXPECT_TRUE(rootView->subviews().empty());
}

TEST_F(SuccessView, AControllerWithoutAViewAddsNothing) {
    device.application.showRoot("viewless", nullptr);
    show();
    EXPECT_EQ(device.journal.count("-[UIView addSubview:] "), 0U);
    EXPECT_EQ(device.journal.linesWith("-[UIImageView initWithFrame:] "),
              (Lines{"-[UIImageView initWithFrame:] (-40, -40) 0×0"}));
    runMainQueue();
    EXPECT_TRUE(views.made[0]->isHidden());
}

TEST_F(SuccessView, FinishingBeforeAnyWasShownMovesNothing) {
    VelmoranthFileManager::finshedSelfAlert();
    EXPECT_EQ(device.journal.lines(), joined({kSpring, {"called " + kAnimate}}));
}

TEST_F(SuccessView, FinishingByHandTakesItAwayEarly) {
    show();
    device.journal.clear();
    VelmoranthFileManager::finshedSelfAlert();
    EXPECT_EQ(device.journal.lines(), finishLines(1));
    EXPECT_TRUE(rootView->subviews().empty());
    device.journal.clear();
    runMainQueue();
    EXPECT_EQ(device.journal.lines(), timedFinishLines(1));
}

}  // namespace
}  // namespace velmoranth::filemanager::success_view_test
