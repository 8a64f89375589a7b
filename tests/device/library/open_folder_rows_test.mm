// The replacements on open folders: their view, its tap, what lies behind it, and its blur.
#include "device/library/load_library.h"
#include "device/library/rows_support.h"
#include <objc/runtime.h>

@protocol Tappable
- (void)handleTap;
@end

namespace velmoranth::standins::open_folder_rows_test {
namespace {

constexpr const char* kTitle = "-[SBFloatyFolderView _showsTitle]";
constexpr const char* kInit = "-[SBFloatyFolderView initWithFolder:orientation:viewMap:context:]";
constexpr const char* kTouch =
    "-[SBFloatyFolderView _tapToCloseGestureRecognizer:shouldReceiveTouch:]";
constexpr const char* kInitCall =
    "-[SBFloatyFolderView initWithFolder:orientation:viewMap:context:] "
    "SBFloatyFolderView folder 5000000000 map context";
constexpr NSInteger kOrientation = 5'000'000'000;  // more than 32 bits hold

class FolderView : public ReplacedMethods {
  protected:
    [[nodiscard]] id initialise(SBFloatyFolderView* made) const {
        return [made initWithFolder:folder orientation:kOrientation viewMap:map context:context];
    }

    [[nodiscard]] static id exportedTap() { return *static_cast<id*>(exportedSymbol("tap")); }

    id folder = named([[NSObject alloc] init], "folder");
    id map = named([[UIView alloc] init], "map");
    id context = named([[NSMutableString alloc] init], "context");
    SBFloatyFolderView* view = named([[SBFloatyFolderView alloc] initWithFrame:CGRect{}], "view");
    Call start = [this] {
        SBFloatyFolderView* const made = [SBFloatyFolderView alloc];
        @try {
            [initialise(made) release];
        } @catch (id) {
            [made release];
            @throw;
        }
    };
};

using FolderTitle = FolderView;
using FolderInitialiser = FolderView;
using FolderClosing = FolderView;

TEST_F(FolderTitle, IsThePlatformsSecondAnswer) {
    for (const char* const enable : {"removeFolderBG", "enable"}) {
        settings({"A"}, {enable});
        for (const double answer : {0, 1}) {
            setAnswers(kTitle, {1 - answer, answer, 1 - answer});
            EXPECT_EQ([view _showsTitle], answer);
            EXPECT_EQ(taken(), (Lines{sentTo("view", kTitle), sentTo("view", kTitle)}));
        }
        const Call ask = [this] { [view _showsTitle]; };
        expectNothingLeft(ask);
        expectExceptionsToPass(kTitle, ask);
    }
}

TEST_F(FolderInitialiser, RunsThePlatformsTwiceAndNothingElseUnlessBothSwitchesAreOn) {
    for (const auto& switches :
         {std::initializer_list<const char*>{}, {"enable"}, {"removeFolderBG", "enableLogging"}}) {
        settings({"A"}, switches);
        SBFloatyFolderView* const made = [SBFloatyFolderView alloc];
        SBFloatyFolderView* result = nil;
        @autoreleasepool {
            result = initialise(made);
        }
        EXPECT_EQ(address(result), address(made));
        EXPECT_EQ([result retainCount], 1U);
        EXPECT_EQ(taken(), (Lines{kInitCall, kInitCall}));
        [result release];
        EXPECT_EQ(living("SBFloatyFolderView"), 1);  // the fixture's
    }
    EXPECT_EQ(address(exportedTap()), nullptr);
}

TEST_F(FolderInitialiser, AddsATapBetweenTheTwoRuns) {
    settings({"A"}, {"enable", "removeFolderBG"});
    // As a platform's initialiser that does not begin anew.
    SBFloatyFolderView* const other = view;
    setAnswer(kInit, other);
    id result = nil;
    @autoreleasepool {
        result = initialise([SBFloatyFolderView alloc]);
    }
    nameObject(other, "view");
    EXPECT_EQ(address(result), address(other));
    EXPECT_EQ(taken(),
              (Lines{kInitCall, "-[UITapGestureRecognizer initWithTarget:action:] view handleTap",
                     "-[UIView addGestureRecognizer:] view UITapGestureRecognizer", kInitCall}));
    ASSERT_EQ([other->_gestureRecognizers count], 1U);
    UIGestureRecognizer* const recognizer = [other->_gestureRecognizers objectAtIndex:0];
    EXPECT_EQ(address(recognizer->_target), address(other));
    EXPECT_EQ(address(exportedTap()), address(recognizer));
    EXPECT_EQ([recognizer retainCount], 2U);  // the view's and the variable's
    EXPECT_EQ([other retainCount], 3U);       // the pool's, the answer's and the caller's
    [result release];
    // Only the fixture's is there: the one that it was sent to is gone.
    EXPECT_EQ(living("SBFloatyFolderView"), 1);
}

// Where the engine stores it: before the view has it, and in place of the one before, which may be
// gone by then.
TEST_F(FolderInitialiser, VariableIsSetBeforeTheViewHasTheRecognizer) {
    settings({"A"}, {"enable", "removeFolderBG"});
    setAnswer(kInit, view);
    std::vector<const void*> seen;
    whenNoted("-[UIView addGestureRecognizer:] view ", [&] {
        seen.push_back(address(exportedTap()));
        EXPECT_EQ(living("UITapGestureRecognizer"), 1);
    });
    std::vector<const void*> added;
    for (int time = 0; time < 2; ++time) {
        [view->_gestureRecognizers removeAllObjects];
        start();
        added.push_back(address([view->_gestureRecognizers objectAtIndex:0]));
    }
    EXPECT_EQ(seen, added);
    // The variable's own reference.
    [view->_gestureRecognizers removeAllObjects];
    EXPECT_EQ(living("UITapGestureRecognizer"), 1);
    EXPECT_EQ([exportedTap() retainCount], 1U);
}

TEST_F(FolderInitialiser, VariableHoldsTheNewestAlone) {
    settings({"A"}, {"enable", "removeFolderBG"});
    setAnswer(kInit, view);
    start();
    const id older = exportedTap();
    [view->_gestureRecognizers removeAllObjects];
    EXPECT_EQ(living("UITapGestureRecognizer"), 1);
    start();
    EXPECT_NE(address(exportedTap()), nullptr);
    EXPECT_NE(address(exportedTap()), address(older));
    EXPECT_EQ(living("UITapGestureRecognizer"), 1);
    settings({"A"}, {});
    const id newest = exportedTap();
    start();
    EXPECT_EQ(address(exportedTap()), address(newest));
}

TEST_F(FolderInitialiser, ResultIsThatOfTheSecondRun) {
    SBFloatyFolderView* const other =
        named([[SBFloatyFolderView alloc] initWithFrame:CGRect{}], "other");
    for (const char* const more : {"enableLogging", "removeFolderBG"}) {
        settings({"A"}, {"enable", more});
        for (const id answer : {static_cast<id>(other), static_cast<id>(nil)}) {
            setAnswers(kInit, {view, answer});
            id result = nil;
            @autoreleasepool {
                result = initialise([SBFloatyFolderView alloc]);
            }
            EXPECT_EQ(address(result), address(answer));
            EXPECT_EQ(living("SBFloatyFolderView"), 2);
            [result release];
        }
        clearAnswer(kInit);
        EXPECT_EQ([view retainCount], 1U);
        EXPECT_EQ([other retainCount], 1U);
        // Nil the first time: nothing to add a tap to.
        setAnswers(kInit, {nil, other});
        clearJournal();
        id result = nil;
        @autoreleasepool {
            result = initialise([SBFloatyFolderView alloc]);
        }
        EXPECT_EQ(address(result), address(other));
        EXPECT_EQ(taken(), (Lines{kInitCall, kInitCall}));
        [result release];
    }
    EXPECT_EQ([other->_gestureRecognizers count], 0U);
}

TEST_F(FolderInitialiser, NilsReachThePlatform) {
    setAnswer(kInit, view);
    for (const char* const more : {"enableLogging", "removeFolderBG"}) {
        settings({"A"}, {"enable", more});
        [[[SBFloatyFolderView alloc] initWithFolder:nil orientation:-1 viewMap:nil
                                            context:nil] release];
        const std::string call =
            "-[SBFloatyFolderView initWithFolder:orientation:viewMap:context:] "
            "SBFloatyFolderView nil -1 nil nil";
        EXPECT_EQ(journalOf(kInit), (Lines{call, call}));
    }
}

TEST_F(FolderInitialiser, LeavesNothingBehindAndPassesExceptionsOn) {
    settings({"A"}, {"enable"});
    // The view that is initialised twice: what the first run made is the platform's to let go.
    setAnswer(kInit, view);
    expectNothingLeft(start);
    expectExceptionsToPass(kInit, start);
    settings({"A"}, {"enable", "removeFolderBG"});
    const Call tapped = [this] {
        [view->_gestureRecognizers removeAllObjects];
        start();
    };
    expectNothingLeft(tapped);
    EXPECT_EQ([folder retainCount], 1U);
    EXPECT_EQ([map retainCount], 1U);
    EXPECT_EQ([context retainCount], 1U);
    EXPECT_EQ([view retainCount], 2U);  // the pool's and the answer's
    // The new recognizer is where the engine has it, and the old one is let go.
    expectExceptionsToPass(kInit, tapped);
    EXPECT_EQ(living("UITapGestureRecognizer"), 1);
    EXPECT_EQ(address(exportedTap()), address([view->_gestureRecognizers objectAtIndex:0]));
}

TEST_F(FolderInitialiser, RecognizerIsPublishedThoughTheSecondRunRaises) {
    settings({"A"}, {"enable", "removeFolderBG"});
    setAnswer(kInit, view);
    NSException* const exception = [NSException exceptionWithName:@"Ours" reason:@"" userInfo:nil];
    raiseFrom(kInit, exception, 2);
    EXPECT_EQ(address(thrownBy(start)), address(exception));
    ASSERT_EQ([view->_gestureRecognizers count], 1U);
    EXPECT_EQ(address(exportedTap()), address([view->_gestureRecognizers objectAtIndex:0]));
}

TEST_F(FolderInitialiser, MissingGestureClassHarmsNothing) {
    hideClass("UITapGestureRecognizer");
    settings({"A"}, {"enable", "removeFolderBG"});
    setAnswer(kInit, view);
    id result = nil;
    @autoreleasepool {
        result = initialise([SBFloatyFolderView alloc]);
    }
    EXPECT_EQ(address(result), address(view));
    EXPECT_EQ(taken(), (Lines{kInitCall, kInitCall}));
    EXPECT_EQ(address(exportedTap()), nullptr);
    [result release];
}

TEST_F(FolderView, TapClosesTheFolderThatReceivesIt) {
    SBIconController* const controller = named([[SBIconController alloc] init], "controller");
    const id tapped = view;
    for (const char* const enable : {"removeFolderBG", "enable"}) {
        settings({"A"}, {enable});
        setAnswer("+[SBIconController sharedInstance]", controller);
        const Call tap = [tapped] { [tapped handleTap]; };
        tap();
        EXPECT_EQ(taken(),
                  (Lines{"+[SBIconController sharedInstance]",
                         "-[SBIconController _closeFolderController:animated:withCompletion:] "
                         "controller view YES nil"}));
        expectNothingLeft(tap);
        expectExceptionsToPass(
            "-[SBIconController _closeFolderController:animated:withCompletion:]", tap);
        expectExceptionsToPass("+[SBIconController sharedInstance]", tap);
        setAnswer("+[SBIconController sharedInstance]", static_cast<id>(nil));
        clearJournal();
        tap();
        EXPECT_EQ(taken(), Lines{"+[SBIconController sharedInstance]"});
    }
    hideClass("SBIconController");
    [tapped handleTap];
    EXPECT_EQ(taken(), Lines{});
    EXPECT_EQ([view retainCount], 1U);
}

TEST_F(FolderClosing, AnswerIsThePlatformsSecond) {
    const id recognizer = named([[UITapGestureRecognizer alloc] init], "recognizer");
    for (const char* const enable : {"removeFolderBG", "enable"}) {
        settings({"A"}, {enable});
        // Of whatever class they are.
        for (const auto& [first, second] :
             {std::pair<id, id>{recognizer, folder}, {context, context}, {nil, nil}}) {
            const std::string call = sentTo("view", kTouch, {wordsOf(first), wordsOf(second)});
            for (const double answer : {0, 1}) {
                setAnswers(kTouch, {1 - answer, answer, 1 - answer});
                clearJournal();
                EXPECT_EQ([view _tapToCloseGestureRecognizer:first shouldReceiveTouch:second],
                          answer);
                EXPECT_EQ(journalOf("-[SBFloatyFolderView"), (Lines{call, call}));
            }
        }
    }
    EXPECT_EQ([recognizer retainCount], 1U);
}

class Backdrop : public FolderView {
  protected:
    Backdrop() { themePng("A/Bundles/com.apple.springboard/ANEMFolderBackground.png"); }

    static SBFolderControllerBackgroundView* open() {
        return [[[SBFolderControllerBackgroundView alloc] initWithFrame:kFrame] autorelease];
    }

    bool close() { return [view _tapToCloseGestureRecognizer:nil shouldReceiveTouch:nil]; }

    static constexpr CGRect kFrame{{0, 0}, {375, 812}};
    static constexpr const char* kOpen = "-[SBFolderControllerBackgroundView initWithFrame:]";
    const std::string openCall =
        "-[SBFolderControllerBackgroundView initWithFrame:] SBFolderControllerBackgroundView "
        "(0, 0) 375×812";
    const std::string touchCall =
        "-[SBFloatyFolderView _tapToCloseGestureRecognizer:shouldReceiveTouch:] view nil nil";
    const std::string animateCall =
        "+[UIView animateWithDuration:animations:completion:] 0.30000001192092896 set set";
    const Lines fadesIn{"-[UIView setAlpha:] UIImageView 0",
                        "-[UIView addSubview:] SBFolderControllerBackgroundView UIImageView",
                        animateCall, "-[UIView setAlpha:] UIImageView 1"};
    Call openAndEnd = [] {
        SBFolderControllerBackgroundView* const made = [SBFolderControllerBackgroundView alloc];
        @try {
            [[made initWithFrame:kFrame] release];
        } @catch (id) {
            [made release];
            @throw;
        }
        finishAnimations(true);
    };
};

TEST_F(Backdrop, WithThemingOffIsThePlatformsAlone) {
    settings({"A"}, {"removeFolderBG"});
    SBFolderControllerBackgroundView* const made = [SBFolderControllerBackgroundView alloc];
    const id result = [made initWithFrame:kFrame];
    EXPECT_EQ(address(result), address(made));
    EXPECT_EQ([result retainCount], 1U);
    EXPECT_EQ(taken(), Lines{openCall});
    [result release];
    EXPECT_EQ(living("SBFolderControllerBackgroundView"), 0);
}

TEST_F(Backdrop, FadesInAndMovesToTheNextFolder) {
    settings({"A"}, {"enable"});
    SBFolderControllerBackgroundView* const first = open();
    EXPECT_EQ(steps(), joined({{openCall, "-[UIImageView initWithFrame:] (0, 0) 375×812",
                                "-[UIImageView setImage:] UIImageView 6×6 @1x"},
                               fadesIn}));
    ASSERT_EQ([first->_subviews count], 1U);
    UIImageView* const picture = [first->_subviews objectAtIndex:0];
    EXPECT_EQ(pathOf(picture->_image),
              "/Library/Themes/A/Bundles/com.apple.springboard/ANEMFolderBackground.png");
    EXPECT_EQ(wordsOf(picture->_frame), "(0, 0) 375×812");
    SBFolderControllerBackgroundView* const second = open();
    EXPECT_EQ(steps(), joined({{openCall}, fadesIn}));
    EXPECT_EQ([first->_subviews count], 0U);
    ASSERT_EQ([second->_subviews count], 1U);
    EXPECT_EQ(address([second->_subviews objectAtIndex:0]), address(picture));
    finishAnimations(true);
    EXPECT_EQ(steps(), Lines{});
}

TEST_F(Backdrop, ResultIsTheViewThatThePlatformGives) {
    SBFolderControllerBackgroundView* const other = open();
    for (const char* const enable : {"enableLogging", "enable"}) {
        settings({"A"}, {enable});
        setAnswer(kOpen, other);
        id result = nil;
        @autoreleasepool {
            result = [[SBFolderControllerBackgroundView alloc] initWithFrame:kFrame];
        }
        EXPECT_EQ(address(result), address(other));
        EXPECT_EQ([other retainCount], 3U);  // the pool's, the answer's and the caller's
        [result release];
        setAnswer(kOpen, static_cast<id>(nil));
        clearJournal();
        EXPECT_EQ(address([[SBFolderControllerBackgroundView alloc] initWithFrame:kFrame]),
                  nullptr);
        EXPECT_EQ(taken(), Lines{openCall});
        EXPECT_EQ(living("SBFolderControllerBackgroundView"), 1);
    }
    EXPECT_EQ([other->_subviews count], 1U);
}

TEST_F(Backdrop, FadesOutWithTheFolderAndIsDetachedAfterwards) {
    settings({"A"}, {"enable"});
    SBFolderControllerBackgroundView* const background = open();
    finishAnimations(true);
    for (const bool isFinished : {true, false}) {
        setAnswer(kTouch, 1.0);
        clearJournal();
        EXPECT_TRUE(close());
        EXPECT_EQ(taken(),
                  (Lines{touchCall, touchCall, animateCall, "-[UIView setAlpha:] UIImageView 0"}));
        EXPECT_EQ(pendingAnimations(), 1U);
        finishAnimations(isFinished);
        EXPECT_EQ(taken(), Lines{"-[UIView removeFromSuperview] UIImageView"});
        EXPECT_EQ([background->_subviews count], 0U);
    }
    setAnswer(kTouch, 0.0);
    EXPECT_FALSE(close());
    EXPECT_EQ(taken(), (Lines{touchCall, touchCall}));
    settings({"A"}, {});
    setAnswer(kTouch, 1.0);
    EXPECT_TRUE(close());
    EXPECT_EQ(taken(), (Lines{touchCall, touchCall}));
}

TEST_F(Backdrop, WithoutOneNothingIsDoneInTheAnimation) {
    settings({"A"}, {"enable"});
    setAnswer(kTouch, 1.0);
    EXPECT_TRUE(close());
    finishAnimations(true);
    EXPECT_EQ(taken(), (Lines{touchCall, touchCall, animateCall}));
}

TEST_F(Backdrop, LeavesNothingBehindAndPassesExceptionsOn) {
    setAnswer(kTouch, 1.0);
    const Call closeAndEnd = [this] {
        close();
        finishAnimations(true);
    };
    for (const char* const enable : {"enableLogging", "enable"}) {
        settings({"A"}, {enable});
        expectNothingLeft(openAndEnd);
        expectExceptionsToPass(kOpen, openAndEnd);
        expectNothingLeft(closeAndEnd);
        expectExceptionsToPass(kTouch, closeAndEnd);
    }
    expectExceptionsToPass("+[UIView animateWithDuration:animations:completion:]", closeAndEnd);
}

constexpr const char* kBlurLayout = "-[SBFolderBackgroundView layoutSubviews]";

class FolderBlur : public ReplacedMethods {
  protected:
    FolderBlur() { setVariable(panel, "_blurView", blur); }

    UIView* blur = named([[UIView alloc] init], "blur");
    SBFolderBackgroundView* panel = named([[SBFolderBackgroundView alloc] init], "panel");
    Call layout = [this] { [panel layoutSubviews]; };
};

TEST_F(FolderBlur, DisappearsAtEveryLayoutWithThemingOn) {
    settings({"A"}, {"removeFolderBG"});
    layout();
    EXPECT_EQ(taken(), Lines{sentTo("panel", kBlurLayout)});
    settings({"A"}, {"enable"});
    for (int time = 0; time < 2; ++time) {
        layout();
        EXPECT_EQ(taken(), (Lines{sentTo("panel", kBlurLayout), "-[UIView setAlpha:] blur 0"}));
    }
    EXPECT_EQ(blur->_layer->_opacity, 0);
}

TEST_F(FolderBlur, WhatIsNoViewIsLeftAlone) {
    settings({"A"}, {"enable"});
    for (const id other : {static_cast<id>(nil), static_cast<id>(@"blur")}) {
        setVariable(panel, "_blurView", other);
        layout();
        EXPECT_EQ(taken(), Lines{sentTo("panel", kBlurLayout)});
    }
    const Class plain = classWithMethodOf("SBPlainPanel", [UIView class], "layoutSubviews",
                                          [SBFolderBackgroundView class]);
    UIView* const view = [[[plain alloc] init] autorelease];
    clearJournal();
    [view layoutSubviews];
    EXPECT_EQ(taken(), Lines{"-[SBPlainPanel layoutSubviews] SBPlainPanel"});
}

TEST_F(FolderBlur, LeavesNothingBehindAndPassesExceptionsOn) {
    for (const char* const enable : {"enableLogging", "enable"}) {
        settings({"A"}, {enable});
        expectNothingLeft(layout);
        expectExceptionsToPass(kBlurLayout, layout);
    }
    expectExceptionsToPass("-[UIView setAlpha:]", layout);
}

}  // namespace
}  // namespace velmoranth::standins::open_folder_rows_test
