#import "device/standins/layers.h"

#include "device/platform/exceptions.h"
#include "device/platform/handles.h"
#include "device/platform/services.h"
#import "device/standins/core_graphics.h"
#import "device/standins/views.h"
#include <gtest/gtest.h>

#include <memory>

// What a gesture is sent to.
@interface TapTarget : StandIn {
  @public
    int _taps;
}
- (void)handleTap;
@end

@implementation TapTarget

- (void)handleTap {
    ++_taps;
}

@end

namespace velmoranth::device::layers_test {
namespace {

using standins::clearJournal;
using standins::journal;

TEST(Layers, SendEveryMessageAsItIsNamed) {
    @autoreleasepool {
        const platform::ViewRef view = views().viewWithFrame({{5, 5}, {30, 40}});
        const platform::LayerRef layer = view->layer();
        clearJournal();
        EXPECT_EQ(layer->bounds(), (platform::Rect{{0, 0}, {30, 40}}));
        layer->setOpacity(0.5F);
        layer->setMasksToBounds(true);
        layer->setShadowColor(platform::kGrayColor);
        layer->setShadowColor({1, 0.5, 0.25, 0.125});
        layer->setShadowOpacity(0.75F);
        layer->setShadowOffset({2, -4});
        layer->setShadowRadius(1.5);
        layer->setShadowPathRect({{0, 1}, {2, 3}});
        EXPECT_EQ(journal(),
                  (Strings{"-[CALayer bounds] UIView", "-[CALayer setOpacity:] UIView 0.5",
                           "-[CALayer setMasksToBounds:] UIView YES", "+[UIColor grayColor]",
                           "-[CALayer setShadowColor:] UIView #808080",
                           "+[UIColor colorWithRed:green:blue:alpha:] 1 0.5 0.25 0.125",
                           "-[CALayer setShadowColor:] UIView #FF804020",
                           "-[CALayer setShadowOpacity:] UIView 0.75",
                           "-[CALayer setShadowOffset:] UIView 2×-4",
                           "-[CALayer setShadowRadius:] UIView 1.5",
                           "+[UIBezierPath bezierPathWithRect:] (0, 1) 2×3",
                           "-[CALayer setShadowPath:] UIView (0, 1) 2×3"}));
        const auto* const native = static_cast<CALayer*>(nativeOf(layer));
        EXPECT_EQ(standins::exactly(native->_shadowColor).text, "(1, 0.5, 0.25, 0.125)");
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

// A colour of the same components is no named one.
TEST(Colors, AreSentByTheirNamesOrMadeOfTheirComponents) {
    @autoreleasepool {
        clearJournal();
        for (const platform::Color& named : {platform::kClearColor, platform::kBlackColor,
                                             platform::kWhiteColor, platform::kGrayColor}) {
            EXPECT_NE(toNative(named), nil);
            const platform::Color made{named.red, named.green, named.blue, named.alpha};
            EXPECT_EQ(made, named);
            EXPECT_NE(toNative(made), nil);
        }
        EXPECT_EQ(
            journal(),
            (Strings{"+[UIColor clearColor]", "+[UIColor colorWithRed:green:blue:alpha:] 0 0 0 0",
                     "+[UIColor blackColor]", "+[UIColor colorWithRed:green:blue:alpha:] 0 0 0 1",
                     "+[UIColor whiteColor]", "+[UIColor colorWithRed:green:blue:alpha:] 1 1 1 1",
                     "+[UIColor grayColor]",
                     "+[UIColor colorWithRed:green:blue:alpha:] 0.5 0.5 0.5 1"}));
    }
}

const struct CGContext* rendered = nullptr;

TEST(Layers, RenderIntoTheContextAndNotIntoNone) {
    @autoreleasepool {
        const CGContextRef native = standins::createFlippedContext({4, 4}, false, 1);
        const auto context = wrap<platform::GraphicsContext>(native, Hold::adopt);
        standins::setLayerRenderer([](CALayer*, struct CGContext* given) { rendered = given; });
        const platform::LayerRef layer = views().viewWithFrame({})->layer();
        clearJournal();
        layer->renderInContext(nullptr);
        EXPECT_EQ(journal(), Strings{});
        layer->renderInContext(context);
        EXPECT_EQ(journal(), (Strings{"-[CALayer renderInContext:] CALayer __NSCFType"}));
        EXPECT_EQ(rendered, native);
    }
}

TEST(Layers, OutliveTheirViews) {
    @autoreleasepool {
        platform::LayerRef layer;
        @autoreleasepool {
            layer = views().viewWithFrame({})->layer();
        }
        EXPECT_EQ(standins::living("UIView"), 0);
        layer->setOpacity(0);
        EXPECT_EQ(standins::living("CALayer"), 1);
        layer.reset();
        EXPECT_EQ(standins::living("CALayer"), 0);
    }
}

TEST(Layers, PassOnWhatTheirMessagesRaise) {
    @autoreleasepool {
        const platform::LayerRef layer = views().viewWithFrame({})->layer();
        const Operation operations[] = {
            {"-[CALayer bounds]", [&] { static_cast<void>(layer->bounds()); }},
            {"-[CALayer setOpacity:]", [&] { layer->setOpacity(1); }},
            {"-[CALayer setMasksToBounds:]", [&] { layer->setMasksToBounds(true); }},
            {"-[CALayer setShadowColor:]", [&] { layer->setShadowColor({}); }},
            {"-[CALayer setShadowOpacity:]", [&] { layer->setShadowOpacity(1); }},
            {"-[CALayer setShadowOffset:]", [&] { layer->setShadowOffset({}); }},
            {"-[CALayer setShadowRadius:]", [&] { layer->setShadowRadius(1); }},
            {"-[CALayer setShadowPath:]", [&] { layer->setShadowPathRect({}); }},
        };
        for (const Operation& operation : operations) {
            standins::raiseFrom(operation.method, "Refused");
            EXPECT_EQ(raisedBy(operation.run), "Refused") << operation.method;
        }
    }
}

TEST(TapGestureRecognizers, SendTheirActionToTheTargetWithoutHoldingIt) {
    @autoreleasepool {
        TapTarget* const target = [[[TapTarget alloc] init] autorelease];
        const platform::ObjectRef object = wrapAny(target);
        const platform::ViewRef view = views().viewWithFrame({});
        const NSUInteger references = [target retainCount];
        clearJournal();
        platform::GestureRecognizerRef tap = views().tapGestureRecognizer(*object, "handleTap");
        EXPECT_EQ([target retainCount], references);
        view->addGestureRecognizer(tap);
        EXPECT_EQ(journal(),
                  (Strings{"-[UITapGestureRecognizer initWithTarget:action:] TapTarget handleTap",
                           "-[UIView addGestureRecognizer:] UIView UITapGestureRecognizer"}));
        tap.reset();
        NSArray* const recognizers = static_cast<UIView*>(nativeOf(view))->_gestureRecognizers;
        ASSERT_EQ([recognizers count], 1U);
        standins::fire(static_cast<UIGestureRecognizer*>([recognizers objectAtIndex:0]));
        EXPECT_EQ(target->_taps, 1);
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(Animations, RunAtOnceAndCompleteLater) {
    @autoreleasepool {
        int animated = 0;
        std::vector<bool> completed;
        clearJournal();
        views().animateWithDurationAnimationsCompletion(
            0.25, [&] { ++animated; }, [&](bool finished) { completed.push_back(finished); });
        EXPECT_EQ(animated, 1);
        EXPECT_TRUE(completed.empty());
        standins::finishAnimations(true);
        standins::finishAnimations(true);
        EXPECT_EQ(animated, 1);
        EXPECT_EQ(completed, std::vector<bool>{true});
        views().animateWithDurationAnimationsCompletion(
            0, [&] { ++animated; }, [&](bool finished) { completed.push_back(finished); });
        standins::finishAnimations(false);
        EXPECT_EQ(completed, (std::vector<bool>{true, false}));
        EXPECT_EQ(journal(),
                  (Strings{"+[UIView animateWithDuration:animations:completion:] 0.25 set set",
                           "+[UIView animateWithDuration:animations:completion:] 0 set set"}));
    }
}

TEST(Animations, OfASpringSendAllNumbers) {
    @autoreleasepool {
        int animated = 0;
        int completed = 0;
        clearJournal();
        views()
            .animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
                0.5, 0.25, 0.75, 2, platform::kViewAnimationOptionCurveEaseIn, [&] { ++animated; },
                [&](bool) { ++completed; });
        EXPECT_EQ(animated, 1);
        EXPECT_EQ(completed, 0);
        standins::finishAnimations(true);
        EXPECT_EQ(animated, 1);
        EXPECT_EQ(completed, 1);
        EXPECT_EQ(journal(),
                  (Strings{"+[UIView "
                           "animateWithDuration:delay:usingSpringWithDamping:initialSpringVelocity:"
                           "options:animations:completion:] 0.5 0.25 0.75 2 65536 set set"}));
    }
}

// The caller's functions are gone when the completion runs.
TEST(Animations, KeepTheirFunctionsAsLongAsThePlatformKeepsTheBlocks) {
    @autoreleasepool {
        auto kept = std::make_shared<int>(0);
        const std::weak_ptr<int> watch = kept;
        {
            std::function<void()> animations = [kept] { ++*kept; };
            std::function<void(bool)> completion = [kept](bool) { *kept += 10; };
            views().animateWithDurationAnimationsCompletion(1, animations, completion);
            animations = [] {};
            completion = [](bool) {};
        }
        int* const value = kept.get();
        kept.reset();
        ASSERT_FALSE(watch.expired());
        EXPECT_EQ(*value, 1);
        EXPECT_EQ(standins::pendingAnimations(), 1U);
        auto again = watch.lock();
        standins::finishAnimations(true);
        EXPECT_EQ(*again, 11);
        again.reset();
        EXPECT_TRUE(watch.expired());
    }
}

TEST(Animations, PassOnWhatTheirMessageRaisesAndKeepNothing) {
    @autoreleasepool {
        auto kept = std::make_shared<int>(0);
        const std::weak_ptr<int> watch = kept;
        standins::raiseFrom("+[UIView animateWithDuration:animations:completion:]", "Refused");
        EXPECT_EQ(raisedBy([&] {
                      views().animateWithDurationAnimationsCompletion(
                          1, [kept] {}, [kept](bool) {});
                  }),
                  "Refused");
        kept.reset();
        EXPECT_TRUE(watch.expired());
    }
}

TEST(Animations, PassOnWhatTheirAnimationsRaise) {
    @autoreleasepool {
        EXPECT_EQ(raisedBy([] {
                      views().animateWithDurationAnimationsCompletion(
                          1, [] { [NSException raise:@"Inside" format:@"x"]; }, [](bool) {});
                  }),
                  "Inside");
    }
}

}  // namespace
}  // namespace velmoranth::device::layers_test
