// The replacements on icon labels: their images and their views.
#include "device/library/rows_support.h"

namespace velmoranth::standins::label_rows_test {
namespace {

constexpr const char* kInit =
    "-[SBIconLabelImage _initWithCGImage:scale:orientation:parameters:maxSizeOffset:]";
constexpr double kExact = 16777217.25;  // more than a float holds

class LabelImage : public ReplacedMethods {
  protected:
    [[nodiscard]] id initialise(SBIconLabelImage* made, NSInteger orientation = 0) const {
        return [made _initWithCGImage:[image CGImage]
                                scale:3
                          orientation:orientation
                           parameters:parameters
                        maxSizeOffset:{kExact, -0.1}];
    }

    [[nodiscard]] static std::string call(const std::string& orientation) {
        return sentToClass(kInit, {"9×6 pixels", "3", orientation, "parameters",
                                   exactly(CGPoint{kExact, -0.1}).text});
    }

    UIImage* image = namedImage("image", 9, 6);
    id parameters = named([[NSMutableString alloc] init], "parameters");
    Call start = [this] {
        SBIconLabelImage* const made = [SBIconLabelImage alloc];
        @try {
            [initialise(made) release];
        } @catch (id) {
            [made release];
            @throw;
        }
    };
};

TEST_F(LabelImage, IsThePlatformsSecondUnlessLabelsAreRemoved) {
    for (const auto& switches : {std::initializer_list<const char*>{"enable"}, {"removeLabels"}}) {
        settings({"A"}, switches);
        SBIconLabelImage* const made = [SBIconLabelImage alloc];
        SBIconLabelImage* result = nil;
        @autoreleasepool {
            result = initialise(made);
        }
        EXPECT_EQ(address(result), address(made));
        EXPECT_EQ([result retainCount], 1U);
        EXPECT_EQ(static_cast<void*>(result->bitmap_), static_cast<void*>([image CGImage]));
        EXPECT_EQ(taken(), (Lines{call("0"), call("0")}));
        [result release];
        EXPECT_EQ(living("SBIconLabelImage"), 0);
    }
}

TEST_F(LabelImage, ResultIsThatOfTheSecondRun) {
    settings({"A"}, {"enable"});
    SBIconLabelImage* const other = [SBIconLabelImage alloc];
    for (const id answer : {static_cast<id>(other), static_cast<id>(nil)}) {
        setAnswers(kInit, {image, answer});
        id result = nil;
        @autoreleasepool {
            result = initialise([SBIconLabelImage alloc]);
        }
        EXPECT_EQ(address(result), address(answer));
        EXPECT_EQ(living("SBIconLabelImage"), 1);
        [result release];
    }
    clearAnswer(kInit);
    EXPECT_EQ([other retainCount], 1U);
    EXPECT_EQ([image retainCount], 1U);
    [other release];
}

TEST_F(LabelImage, IsNilWithLabelsRemoved) {
    settings({"A"}, {"enable", "removeLabels"});
    @autoreleasepool {
        EXPECT_EQ(address(initialise([SBIconLabelImage alloc])), nullptr);
    }
    EXPECT_EQ(taken(), Lines{call("0")});
    EXPECT_EQ(living("SBIconLabelImage"), 0);
    EXPECT_EQ([parameters retainCount], 1U);
}

TEST_F(LabelImage, ArgumentsReachThePlatform) {
    setAnswer(kInit, image);
    for (const char* const more : {"enableLogging", "removeLabels"}) {
        settings({"A"}, {"enable", more});
        [initialise([SBIconLabelImage alloc], 5'000'000'000) release];
        for (const std::string& line : journal()) {
            EXPECT_EQ(line, call("5000000000"));
        }
        clearJournal();
        [[[SBIconLabelImage alloc] _initWithCGImage:nullptr
                                              scale:0.1
                                        orientation:-1
                                         parameters:nil
                                      maxSizeOffset:{-kExact, 1e-9}] release];
        ASSERT_FALSE(journal().empty());
        for (const std::string& line : taken()) {
            EXPECT_EQ(line, sentToClass(kInit, {"nil", wordsOf(0.1), "-1", "nil",
                                                exactly(CGPoint{-kExact, 1e-9}).text}));
        }
    }
}

TEST_F(LabelImage, LeavesNothingBehindAndPassesExceptionsOn) {
    setAnswer(kInit, image);
    for (const auto& switches :
         {std::initializer_list<const char*>{}, {"enable"}, {"enable", "removeLabels"}}) {
        settings({"A"}, switches);
        expectNothingLeft(start);
        expectExceptionsToPass(kInit, start);
        EXPECT_EQ([image retainCount], 2U);  // the pool's and the answer's
        EXPECT_EQ([parameters retainCount], 1U);
    }
}

class LabelView : public ReplacedMethods {
  protected:
    // What the platform does is asked of the stand-in, which inherits these methods.
    SBIconLegibilityLabelView* label = named([[SBIconLegibilityLabelView alloc] init], "label");
};

constexpr const char* kSetHidden = "-[SBIconLegibilityLabelView setHidden:]";
constexpr const char* kIsHidden = "-[SBIconLegibilityLabelView isHidden]";
constexpr const char* kAlpha = "-[SBIconLegibilityLabelView alpha]";
constexpr const char* kSetAlpha = "-[SBIconLegibilityLabelView setAlpha:]";

std::string hides(bool hidden) {
    return sentTo("label", kSetHidden, {hidden ? "YES" : "NO"});
}

std::string fades(double alpha) {
    return sentTo("label", kSetAlpha, {wordsOf(alpha)});
}

TEST_F(LabelView, IsHiddenAsIsAskedUnlessLabelsAreRemoved) {
    for (const char* const only : {"enable", "removeLabels"}) {
        settings({"A"}, {only});
        for (const bool hidden : {true, false}) {
            [label setHidden:hidden];
            EXPECT_EQ(taken(), (Lines{hides(hidden), hides(hidden)}));
            EXPECT_EQ(label->_hidden, hidden);
            EXPECT_EQ([label isHidden], hidden);
            EXPECT_EQ(taken(), (Lines{sentTo("label", kIsHidden), sentTo("label", kIsHidden)}));
        }
    }
}

TEST_F(LabelView, IsHiddenWithLabelsRemoved) {
    settings({"A"}, {"enable", "removeLabels"});
    for (const bool hidden : {true, false}) {
        [label setHidden:hidden];
        EXPECT_EQ(taken(), (Lines{hides(hidden), hides(true)}));
        EXPECT_TRUE(label->_hidden);
        label->_hidden = hidden;
        EXPECT_EQ([label isHidden], YES);
        EXPECT_EQ(taken(), Lines{sentTo("label", kIsHidden)});
    }
}

TEST_F(LabelView, IsAsOpaqueAsIsAskedUnlessLabelsAreRemoved) {
    for (const char* const only : {"enable", "removeLabels"}) {
        settings({"A"}, {only});
        for (const double alpha : {0.0, 0.1, 1.0, -kExact, kExact}) {
            [label setAlpha:alpha];
            EXPECT_EQ(taken(), (Lines{fades(alpha), fades(alpha)}));
            setAnswers(kAlpha, {kExact, alpha, kExact});
            EXPECT_EQ([label alpha], alpha);
            EXPECT_EQ(taken(), (Lines{sentTo("label", kAlpha), sentTo("label", kAlpha)}));
        }
    }
}

TEST_F(LabelView, IsInvisibleWithLabelsRemoved) {
    settings({"A"}, {"enable", "removeLabels"});
    [label setAlpha:0.75];
    EXPECT_EQ(taken(), (Lines{fades(0.75), fades(0)}));
    label->_layer->_opacity = 1;
    EXPECT_EQ([label alpha], 0);
    EXPECT_EQ(taken(), Lines{sentTo("label", kAlpha)});
}

TEST_F(LabelView, ParentIsNoLabel) {
    settings({"A"}, {"enable", "removeLabels"});
    UIView* const view = named([[UIView alloc] init], "view");
    clearJournal();
    [view setHidden:NO];
    [view setAlpha:0.5];
    EXPECT_EQ([view isHidden], NO);
    EXPECT_EQ([view alpha], 0.5);
    EXPECT_EQ(taken(), (Lines{"-[UIView setHidden:] view NO", "-[UIView setAlpha:] view 0.5",
                              "-[UIView isHidden] view", "-[UIView alpha] view"}));
}

TEST_F(LabelView, LeavesNothingBehindAndPassesExceptionsOn) {
    const std::pair<const char*, Call> kCalls[] = {{kSetHidden, [this] { [label setHidden:NO]; }},
                                                   {kIsHidden, [this] { [label isHidden]; }},
                                                   {kAlpha, [this] { [label alpha]; }},
                                                   {kSetAlpha, [this] { [label setAlpha:1]; }}};
    for (const auto& switches : {std::initializer_list<const char*>{"enable"},
                                 {"enable", "removeLabels"},
                                 {"removeLabels"}}) {
        settings({"A"}, switches);
        for (const auto& [method, call] : kCalls) {
            SCOPED_TRACE(method);
            expectNothingLeft(call);
            expectExceptionsToPass(method, call);
        }
    }
}

}  // namespace
}  // namespace velmoranth::standins::label_rows_test
