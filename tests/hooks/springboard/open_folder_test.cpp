// The replacements on an open folder: the tap that closes it, the theme's picture behind it and
// its blur.
#include "hooks/springboard/exported_variables.h"
#include "hooks/springboard/open_folder_hooks.h"

#include "chrome_fixture.h"

#include <cstdint>

namespace velmoranth::hooks::open_folder_test {
namespace {

using platform::Dictionary;
using platform::GestureRecognizerRef;
using platform::ObjectRef;
using platform::Rect;
using platform::ViewRef;
using tests::drawnPixels;
using tests::HeldRecognizer;
using tests::kBlue;
using tests::kRed;
using tests::Lines;
using tests::solid;

constexpr Rect kFrame{{0, 0}, {375, 812}};
constexpr const char* kInit = "initWithFolder:orientation:viewMap:context:";
constexpr const char* kOrigInit = "orig initWithFolder:orientation:viewMap:context: 3";
constexpr const char* kShouldReceive = "_tapToCloseGestureRecognizer:shouldReceiveTouch:";
constexpr const char* kOrigShouldReceive = "orig _tapToCloseGestureRecognizer:shouldReceiveTouch:";
const std::string kAnimation = "+[UIView animateWithDuration:animations:completion:]";
const std::string kAnimate = kAnimation + " 0.30000001192092896 set set";

const Dictionary kOn{{"enable", true}};
const Dictionary kFolderRemoved{{"enable", true}, {"removeFolderBG", true}};
// Whatever else is on.
const Dictionary kOff{{"removeFolderBG", true}, {"removeDock", true}, {"enableLogging", true}};

using FolderView = tests::NamedViewOf<platform::SBFloatyFolderView>;
using Background = tests::NamedViewOf<platform::SBFolderControllerBackgroundView>;
using Panel = tests::NamedViewOf<platform::SBFolderBackgroundView>;

struct IconController final : platform::SBIconController {
    [[nodiscard]] std::string className() const override { return "SBIconController"; }

    void _closeFolderControllerAnimatedWithCompletion(platform::Object& folderController,
                                                      bool animated) override {
        record::tell(
            *this,
            record::messageOf("SBIconController", "_closeFolderControllerAnimatedWithCompletion"),
            folderController, animated);
        closed.push_back(&folderController);
    }

    std::vector<const platform::Object*> closed;
};

// Something to pass as an argument.
struct Thing final : platform::Object {
    [[nodiscard]] std::string className() const override { return "NSObject"; }
};

class OpenFolder : public tests::ChromeProcess {
  protected:
    OpenFolder() {
        addMethod("SBFloatyFolderView", "_showsTitle",
                  std::function<bool(platform::SBFloatyFolderView&)>(
                      [this](platform::SBFloatyFolderView&) {
                          original("_showsTitle");
                          return nextAnswer();
                      }));
        addMethod("SBFloatyFolderView", kInit,
                  std::function<ViewRef(platform::SBFloatyFolderView&, ObjectRef, std::int64_t,
                                        ObjectRef, ObjectRef)>(
                      [this](platform::SBFloatyFolderView&, const ObjectRef& a,
                             std::int64_t orientation, const ObjectRef& b, const ObjectRef& c) {
                          original(std::string(kInit) + " " + std::to_string(orientation));
                          EXPECT_EQ(a, folder);
                          EXPECT_EQ(b, viewMap);
                          EXPECT_EQ(c, context);
                          return ++initialised % 2 == 0 ? second : first;
                      }));
        addMethod(
            "SBFloatyFolderView", kShouldReceive,
            std::function<bool(platform::SBFloatyFolderView&, GestureRecognizerRef, ObjectRef)>(
                [this](platform::SBFloatyFolderView&, const GestureRecognizerRef& recognizer,
                       const ObjectRef& touch) {
                    original(kShouldReceive);
                    EXPECT_EQ(recognizer, closing);
                    EXPECT_EQ(touch, folder);
                    return nextAnswer();
                }));
        addMethod("SBFolderControllerBackgroundView", "initWithFrame:",
                  std::function<ViewRef(platform::SBFolderControllerBackgroundView&, Rect)>(
                      [this](platform::SBFolderControllerBackgroundView& self, const Rect& frame) {
                          original("initWithFrame: " + record::words(frame));
                          for (const auto& made : backgrounds) {
                              if (made.get() == &self) {
                                  return ViewRef(made);
                              }
                          }
                          return ViewRef();
                      }));
        addLayout<platform::SBFolderBackgroundView>("SBFolderBackgroundView");
        addViewVariable<platform::SBFolderBackgroundView>("SBFolderBackgroundView", "_blurView",
                                                          blur);
        install();
    }

    ViewRef initFolder() {
        initialised = 0;
        return device.runtime.send<ViewRef, ObjectRef, std::int64_t, ObjectRef, ObjectRef>(
            *first, kInit, folder, 3, viewMap, context);
    }

    bool shouldReceiveTouch() {
        return device.runtime.send<bool, GestureRecognizerRef, ObjectRef>(*first, kShouldReceive,
                                                                          closing, folder);
    }

    // A new background of an open folder, of that name in records.
    ViewRef openBackground(const std::string& name, const Rect& frame = kFrame) {
        backgrounds.push_back(
            std::make_shared<Background>("SBFolderControllerBackgroundView", name));
        return device.runtime.send<ViewRef, Rect>(*backgrounds.back(), "initWithFrame:", frame);
    }

    void layoutPanel() { device.runtime.send<void>(*panel, "layoutSubviews"); }

    [[nodiscard]] static double alphaOf(const ViewRef& view) {
        return desktop::ViewNode::of(view)->alpha();
    }

    bool nextAnswer() {
        const bool answer = answers.front();
        if (answers.size() > 1) {
            answers.erase(answers.begin());
        }
        return answer;
    }

    const ObjectRef folder = std::make_shared<Thing>();
    const ObjectRef viewMap = std::make_shared<Thing>();
    const ObjectRef context = std::make_shared<Thing>();
    const GestureRecognizerRef closing =
        std::make_shared<HeldRecognizer>(*folder, "closingGesture");
    // What the platform's initialiser gives at its first and its second run.
    std::shared_ptr<FolderView> first =
        std::make_shared<FolderView>("SBFloatyFolderView", "folder");
    ViewRef second = first;
    int initialised = 0;
    // What the platform's questions are answered with, the last one for ever.
    std::vector<bool> answers{true};
    std::vector<std::shared_ptr<Background>> backgrounds;
    std::shared_ptr<Panel> panel = std::make_shared<Panel>("SBFolderBackgroundView", "panel");
    ViewRef blur = plainView("blur");
};

using OpenFolderTitle = OpenFolder;
using OpenFolderTap = OpenFolder;
using OpenFolderClosing = OpenFolder;
using OpenFolderBackdrop = OpenFolder;
using OpenFolderBlur = OpenFolder;

TEST_F(OpenFolderTitle, IsThePlatformsSecondAnswer) {
    for (const Dictionary& any : {kOff, kOn, kFolderRemoved}) {
        settings({"A"}, any);
        for (const bool answer : {true, false}) {
            answers = {!answer, answer, !answer};
            EXPECT_EQ(device.runtime.send<bool>(*first, "_showsTitle"), answer);
            EXPECT_EQ(taken(), (Lines{"orig _showsTitle", "orig _showsTitle"}));
        }
    }
}

TEST_F(OpenFolderTap, IsNotAddedUnlessBothSwitchesAreOn) {
    for (const Dictionary& stays : {Dictionary{}, kOn, kOff}) {
        settings({"A"}, stays);
        EXPECT_EQ(initFolder(), first);
        EXPECT_EQ(taken(), (Lines{kOrigInit, kOrigInit}));
    }
    EXPECT_EQ(tap, nullptr);
    EXPECT_TRUE(first->recognizers().empty());
}

TEST_F(OpenFolderTap, IsAddedBetweenTheTwoRunsOfTheInitialiser) {
    settings({"A"}, kFolderRemoved);
    EXPECT_EQ(initFolder(), first);
    EXPECT_EQ(taken(),
              (Lines{kOrigInit, "-[UITapGestureRecognizer initWithTarget:action:] folder handleTap",
                     "-[UIView addGestureRecognizer:] folder UITapGestureRecognizer", kOrigInit}));
    const auto added = std::dynamic_pointer_cast<HeldRecognizer>(tap);
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->target, first.get());
    EXPECT_EQ(added->action, "handleTap");
    EXPECT_EQ(first->recognizers(), std::vector<GestureRecognizerRef>{added});
}

TEST_F(OpenFolderTap, ResultIsThatOfTheSecondRun) {
    const auto other = std::make_shared<FolderView>("SBFloatyFolderView", "other");
    for (const ViewRef& given : {ViewRef(other), ViewRef()}) {
        second = given;
        for (const Dictionary& any : {kOff, kFolderRemoved}) {
            settings({}, any);
            EXPECT_EQ(initFolder(), given);
        }
    }
    EXPECT_EQ(first->recognizers().size(), 2U);
    EXPECT_TRUE(other->recognizers().empty());
}

TEST_F(OpenFolderTap, VariableHoldsOnlyTheNewest) {
    settings({}, kFolderRemoved);
    initFolder();
    const std::weak_ptr<platform::GestureRecognizer> older = tap;
    const auto next = std::make_shared<FolderView>("SBFloatyFolderView", "next");
    first = next;
    second = next;
    EXPECT_FALSE(older.expired());  // though its folder view is gone
    initFolder();
    EXPECT_TRUE(older.expired());
    EXPECT_NE(tap, nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<HeldRecognizer>(tap)->target, next.get());
    EXPECT_EQ(next->recognizers(), std::vector<GestureRecognizerRef>{tap});
}

TEST_F(OpenFolderTap, BlurEffectIsNeverSet) {
    EXPECT_EQ(blurEffect, nullptr);
    settings({"A"}, kFolderRemoved);
    initFolder();
    openBackground("background");
    layoutPanel();
    shouldReceiveTouch();
    EXPECT_EQ(blurEffect, nullptr);
    // Nor read: a value changes nothing.
    blurEffect = folder;
    device.journal.clear();
    initFolder();
    EXPECT_EQ(taken().size(), 4U);
    EXPECT_EQ(blurEffect, folder);
}

TEST_F(OpenFolderTap, ClosesTheFolderThatReceivesIt) {
    device.runtime.addClass("SBIconController");
    const auto controller = std::make_shared<IconController>();
    device.springBoard.iconController = controller;
    // Whatever the settings say.
    for (const Dictionary& any : {kOff, kFolderRemoved}) {
        settings({}, any);
        device.runtime.send<void>(*first, "handleTap");
        EXPECT_EQ(taken(),
                  (Lines{"objc_getClass SBIconController",
                         "-[SBIconController _closeFolderController:animated:withCompletion:] "
                         "SBIconController folder YES"}));
    }
    EXPECT_EQ(controller->closed, (std::vector<const platform::Object*>{first.get(), first.get()}));
    ASSERT_EQ(device.springBoard.asked.size(), 2U);
    EXPECT_EQ(device.springBoard.asked.front(), device.runtime.getClass("SBIconController"));
}

TEST_F(OpenFolderTap, WithoutTheControllerHarmsNothing) {
    // No such class.
    const auto controller = std::make_shared<IconController>();
    device.springBoard.iconController = controller;
    device.runtime.send<void>(*first, "handleTap");
    EXPECT_TRUE(controller->closed.empty());
    // A class that has no instance yet.
    device.runtime.addClass("SBIconController");
    device.springBoard.iconController = nullptr;
    device.runtime.send<void>(*first, "handleTap");
    EXPECT_EQ(device.springBoard.asked.size(), 2U);
    EXPECT_EQ(device.journal.count("warning: "), 0U);
}

TEST_F(OpenFolderTap, MethodIsAddedToFolderViewsAlone) {
    const platform::ClassRef cls = device.runtime.getClass("SBFloatyFolderView");
    EXPECT_TRUE(device.runtime.hasOwnMethod(cls, "handleTap"));
    EXPECT_FALSE(device.runtime.hasOwnMethod(device.runtime.getClass("SBFolderBackgroundView"),
                                             "handleTap"));
    EXPECT_EQ(*device.runtime.methodOf(cls, "handleTap").signature(),
              typeid(void(platform::Object&)));
}

TEST_F(OpenFolderClosing, AnswerIsThePlatforms) {
    for (const Dictionary& any : {kOff, kOn, kFolderRemoved}) {
        settings({"A"}, any);
        for (const bool answer : {true, false}) {
            answers = {!answer, answer};
            EXPECT_EQ(shouldReceiveTouch(), answer);
            EXPECT_EQ(takenCalls(), (Lines{kOrigShouldReceive, kOrigShouldReceive}));
        }
    }
}

TEST_F(OpenFolderClosing, BackdropFadesOutAndIsDetachedAfterwards) {
    settings({"A"}, kOn);
    const ViewRef background = openBackground("background");
    const platform::ImageViewRef backdrop = FolderBackgroundImageView();
    backdrop->setAlpha(1);
    views.held.clear();
    device.journal.clear();

    EXPECT_TRUE(shouldReceiveTouch());
    EXPECT_EQ(taken(), (Lines{kOrigShouldReceive, kOrigShouldReceive, kAnimate}));
    ASSERT_EQ(views.held.size(), 1U);
    EXPECT_EQ(alphaOf(backdrop), 1);
    views.held.front().animations();
    EXPECT_EQ(taken(), tests::calledBack(kAnimation, {"-[UIView setAlpha:] picture 0"}));
    EXPECT_EQ(namesOf(background->subviews()), Lines{"picture"});
    views.held.front().completion(true);
    EXPECT_EQ(taken(),
              tests::calledBack(kAnimation + " YES", {"-[UIView removeFromSuperview] picture"}));
    EXPECT_TRUE(background->subviews().empty());
    EXPECT_EQ(FolderBackgroundImageView(), backdrop);  // kept for the next folder
}

TEST_F(OpenFolderClosing, AnimationThatIsCutOffDetachesToo) {
    settings({}, kOn);
    const ViewRef background = openBackground("background");
    views.held.clear();
    shouldReceiveTouch();
    views.held.front().animations();
    views.held.front().completion(false);
    EXPECT_TRUE(background->subviews().empty());
}

TEST_F(OpenFolderClosing, NoFadesNothing) {
    settings({}, kFolderRemoved);
    openBackground("background");
    views.held.clear();
    device.journal.clear();
    answers = {false};
    EXPECT_FALSE(shouldReceiveTouch());
    EXPECT_EQ(taken(), (Lines{kOrigShouldReceive, kOrigShouldReceive}));
    EXPECT_TRUE(views.held.empty());
}

TEST_F(OpenFolderClosing, WithThemingOffNothingFades) {
    settings({}, kOn);
    openBackground("background");
    settings({}, kOff);
    EXPECT_TRUE(shouldReceiveTouch());
    EXPECT_EQ(taken(), (Lines{kOrigShouldReceive, kOrigShouldReceive}));
}

TEST_F(OpenFolderClosing, WithoutABackdropAnimatesNothing) {
    settings({}, kOn);
    EXPECT_TRUE(shouldReceiveTouch());
    EXPECT_EQ(device.journal.count(kAnimate), 1U);
    ASSERT_EQ(views.held.size(), 1U);
    views.held.front().animations();
    views.held.front().completion(true);
    EXPECT_EQ(FolderBackgroundImageView(), nullptr);
}

TEST_F(OpenFolderClosing, EveryTouchFadesAnew) {
    settings({}, kOn);
    openBackground("background");
    views.held.clear();
    shouldReceiveTouch();
    shouldReceiveTouch();
    EXPECT_EQ(views.held.size(), 2U);
}

TEST_F(OpenFolderBackdrop, WithThemingOffBackgroundIsThePlatforms) {
    settings({"A"}, kOff);
    const ViewRef background = openBackground("background");
    EXPECT_EQ(background, backgrounds.front());
    EXPECT_EQ(taken(), Lines{"orig initWithFrame: (0, 0) 375×812"});
    EXPECT_EQ(FolderBackgroundImageView(), nullptr);
}

TEST_F(OpenFolderBackdrop, FadesInBehindTheFirstFolder) {
    settings({"A"}, kOn);  // whether or not the folder's own background is removed
    themePng("A/Bundles/com.apple.springboard/ANEMFolderBackground.png", kBlue);
    const ViewRef background = openBackground("background");
    EXPECT_EQ(background, backgrounds.front());
    EXPECT_EQ(steps(), (Lines{"orig initWithFrame: (0, 0) 375×812",
                              "-[UIImageView initWithFrame:] (0, 0) 375×812",
                              "-[UIView setAlpha:] picture 0",
                              "-[UIView addSubview:] background picture", kAnimate}));
    const platform::ImageViewRef backdrop = FolderBackgroundImageView();
    ASSERT_NE(backdrop, nullptr);
    EXPECT_EQ(backdrop->frame(), kFrame);
    EXPECT_EQ(drawnPixels(backdrop->image()), solid(6, 6, kBlue));
    EXPECT_EQ(background->subviews(), std::vector<ViewRef>{backdrop});
    ASSERT_EQ(views.held.size(), 1U);
    EXPECT_EQ(alphaOf(backdrop), 0);
    views.held.front().animations();
    EXPECT_EQ(taken(), tests::calledBack(kAnimation, {"-[UIView setAlpha:] picture 1"}));
    ASSERT_TRUE(views.held.front().completion);
    views.held.front().completion(true);
    EXPECT_EQ(taken(), Lines{"called " + kAnimation + " YES"});
    EXPECT_EQ(alphaOf(backdrop), 1);
}

TEST_F(OpenFolderBackdrop, LiesOverWhatThePlatformPutThere) {
    settings({}, kFolderRemoved);
    backgrounds.push_back(
        std::make_shared<Background>("SBFolderControllerBackgroundView", "background"));
    backgrounds.back()->addSubview(plainView("dimming"));
    const ViewRef background =
        device.runtime.send<ViewRef, Rect>(*backgrounds.back(), "initWithFrame:", kFrame);
    EXPECT_EQ(namesOf(background->subviews()), (Lines{"dimming", "picture"}));
}

TEST_F(OpenFolderBackdrop, IsSearchedForOnceAsAnImageOfTheHomeScreen) {
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    themePng("A/Bundles/com.apple.springboard/ANEMFolderBackground.png@3x.png", kRed);
    openBackground("background");
    EXPECT_EQ(device.journal.log().front(),
              "VelmoranthImageLoader loadUIImage ANEMFolderBackground.png   fromBundle: "
              "com.apple.springboard     ForOrigImg: (null) ");
    EXPECT_EQ(drawnPixels(FolderBackgroundImageView()->image()), solid(6, 6, kRed));
    device.journal.clear();
    openBackground("next");
    EXPECT_EQ(taken(), (Lines{"orig initWithFrame: (0, 0) 375×812", "-[UIView setAlpha:] picture 0",
                              "-[UIView addSubview:] next picture", kAnimate}));
}

TEST_F(OpenFolderBackdrop, WithoutAnImageIsThereAllTheSame) {
    settings({"A"}, kOn);
    const ViewRef background = openBackground("background");
    ASSERT_NE(FolderBackgroundImageView(), nullptr);
    EXPECT_EQ(FolderBackgroundImageView()->image(), nullptr);
    EXPECT_EQ(background->subviews().size(), 1U);
}

TEST_F(OpenFolderBackdrop, MovesToEachNewFolderAsItIs) {
    settings({"A"}, kOn);
    const ViewRef background = openBackground("background");
    const platform::ImageViewRef backdrop = FolderBackgroundImageView();
    views.held.front().animations();
    themePng("A/Bundles/com.apple.springboard/ANEMFolderBackground.png");
    device.journal.clear();

    const ViewRef next = openBackground("next", {{5, 5}, {100, 100}});
    EXPECT_EQ(FolderBackgroundImageView(), backdrop);
    EXPECT_TRUE(background->subviews().empty());
    EXPECT_EQ(next->subviews(), std::vector<ViewRef>{backdrop});
    EXPECT_EQ(backdrop->frame(), kFrame);   // of the first folder
    EXPECT_EQ(backdrop->image(), nullptr);  // as at the first folder
    EXPECT_EQ(alphaOf(backdrop), 0);
    ASSERT_EQ(views.held.size(), 2U);
    views.held.back().animations();
    EXPECT_EQ(alphaOf(backdrop), 1);
}

TEST_F(OpenFolderBackdrop, IsDetachedFromTheNextFolderWhenTheFadeOfTheLastOneEnds) {
    settings({}, kOn);
    openBackground("background");
    views.held.clear();
    shouldReceiveTouch();
    const ViewRef next = openBackground("next");
    EXPECT_EQ(namesOf(next->subviews()), Lines{"picture"});
    views.held.front().completion(true);
    EXPECT_TRUE(next->subviews().empty());
}

TEST_F(OpenFolderBlur, StaysWithThemingOff) {
    settings({"A"}, kOff);
    layoutPanel();
    EXPECT_EQ(taken(), Lines{"orig layoutSubviews"});
    EXPECT_EQ(alphaOf(blur), 1);
}

TEST_F(OpenFolderBlur, DisappearsAtEveryLayout) {
    settings({"A"}, kOn);
    for (int time = 0; time < 2; ++time) {
        layoutPanel();
        EXPECT_EQ(taken(),
                  (Lines{"orig layoutSubviews", "class_getInstanceVariable panel _blurView",
                         "-[UIView setAlpha:] blur 0"}));
    }
    EXPECT_EQ(alphaOf(blur), 0);
}

TEST_F(OpenFolderBlur, NoneIsLeftAlone) {
    settings({}, kOn);
    const ViewRef kept = std::exchange(blur, nullptr);
    layoutPanel();
    EXPECT_EQ(alphaOf(kept), 1);
}

TEST_F(OpenFolderBlur, ClassWithoutThatVariableIsLeftUnchanged) {
    settings({}, kOn);
    // A class of its own, which takes the layout from the other but not the variable.
    device.runtime.addClass("SBPlainBackgroundView");
    device.runtime.addMethod(
        device.runtime.getClass("SBPlainBackgroundView"), "layoutSubviews",
        device.runtime.methodOf(device.runtime.getClass("SBFolderBackgroundView"),
                                "layoutSubviews"),
        "v@:");
    panel = std::make_shared<Panel>("SBPlainBackgroundView", "panel");
    layoutPanel();
    EXPECT_EQ(taken(), (Lines{"orig layoutSubviews", "class_getInstanceVariable panel _blurView"}));
    EXPECT_EQ(alphaOf(blur), 1);
}

}  // namespace
}  // namespace velmoranth::hooks::open_folder_test
