#include "desktop/views/animation.h"

#include "desktop/views/views.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace velmoranth::desktop::animation_test {

namespace {

using platform::Rect;
using Log = std::vector<std::string>;

constexpr double kEndless = std::numeric_limits<double>::infinity();

std::shared_ptr<DesktopView> view(const Rect& frame = {}) {
    return std::make_shared<DesktopView>(frame);
}

AnimationClock::Completion note(Log& log, const std::string& name) {
    return [&log, name](bool finished) { log.push_back(name + (finished ? " yes" : " no")); };
}

// Where the curve is at a time, found by walking along it in small steps.
double walked(const TimingCurve& curve, double time) {
    constexpr int kSteps = 2'000'000;
    for (int i = 0; i <= kSteps; ++i) {
        const double t = static_cast<double>(i) / kSteps;
        const double a = 3 * (1 - t) * (1 - t) * t;
        const double b = 3 * (1 - t) * t * t;
        if (a * curve.first.x + b * curve.second.x + t * t * t >= time) {
            return a * curve.first.y + b * curve.second.y + t * t * t;
        }
    }
    return 1;
}

std::array<std::uint8_t, 4> shownPixel(const platform::ViewRef& some, std::size_t x) {
    const auto picture = renderTree(some, {x + 1, 1}, 1);
    const std::uint8_t* const at = picture->pixels().row(0) + x * 4;
    return {at[0], at[1], at[2], at[3]};
}

}  // namespace

TEST(TimingCurve, GoesThroughTheBezierOfItsControlPoints) {
    const TimingCurve opening{{0.37, 0.13}, {0, 1}};
    const TimingCurve closing{{0.25, 0.10}, {0.54, 0.89}};
    const TimingCurve over{{0.3, -0.5}, {0.6, 1.7}};
    for (const TimingCurve& curve : {kEaseInOut, opening, closing, over}) {
        for (const double time : {0.05, 0.3, 0.5, 0.8, 0.97}) {
            EXPECT_NEAR(curve.at(time), walked(curve, time), 2e-5) << time;
        }
    }
    EXPECT_DOUBLE_EQ(kEaseInOut.at(0.5), 0.5);
    EXPECT_DOUBLE_EQ(kLinear.at(0.3), 0.3);
}

TEST(TimingCurve, IsAtItsEndsOutsideOfItsTime) {
    for (const double time : {0.0, -1.0, static_cast<double>(NAN), -kEndless}) {
        EXPECT_EQ(kEaseInOut.at(time), 0);
    }
    EXPECT_EQ(kEaseInOut.at(1), 1);
    EXPECT_EQ(kEaseInOut.at(kEndless), 1);
    // First coordinates that would run back in time are brought to 0..1.
    const TimingCurve odd{{-3, 0}, {9, 1}};
    const TimingCurve brought{{0, 0}, {1, 1}};
    EXPECT_DOUBLE_EQ(odd.at(0.4), brought.at(0.4));
}

TEST(Animation, ModelIsAtTheEndAndTheScreenOnItsWay) {
    AnimationClock clock;
    const auto some = view({{0, 0}, {10, 20}});
    clock.animate(
        2, kEaseInOut,
        [&] {
            some->setAlpha(0);
            some->setFrame({{100, 50}, {30, 20}});
            some->setTransform({.scaleX = 3, .scaleY = 2, .translation = {8, 4}});
        },
        nullptr);
    EXPECT_EQ(some->alpha(), 0);
    EXPECT_EQ(some->frame(), (Rect{{100, 50}, {30, 20}}));
    EXPECT_EQ(some->bounds(), (Rect{{0, 0}, {30, 20}}));
    EXPECT_EQ(some->shownAlpha(), 1);
    EXPECT_EQ(some->shownFrame(), (Rect{{0, 0}, {10, 20}}));
    clock.advance(0.5);
    const double share = walked(kEaseInOut, 0.25);
    EXPECT_NEAR(some->shownAlpha(), 1 - share, 1e-5);
    EXPECT_NEAR(some->shownFrame().origin.x, 100 * share, 1e-3);
    EXPECT_NEAR(some->shownFrame().origin.y, 50 * share, 1e-3);
    EXPECT_NEAR(some->shownFrame().size.width, 10 + 20 * share, 1e-3);
    EXPECT_EQ(some->shownFrame().size.height, 20);
    EXPECT_NEAR(some->shownTransform().scaleX, 1 + 2 * share, 1e-4);
    EXPECT_NEAR(some->shownTransform().scaleY, 1 + share, 1e-4);
    EXPECT_NEAR(some->shownTransform().translation.x, 8 * share, 1e-4);
    EXPECT_NEAR(some->shownTransform().translation.y, 4 * share, 1e-4);
    clock.advance(1.5);
    EXPECT_EQ(some->shownAlpha(), 0);
    EXPECT_EQ(some->shownFrame(), some->frame());
    EXPECT_EQ(some->shownTransform(), some->transform());
    EXPECT_FALSE(clock.isRunning());
}

TEST(Animation, TheLayersOpacityIsTheAlpha) {
    AnimationClock clock;
    const auto some = view();
    clock.animate(1, kLinear, [&] { some->layer()->setOpacity(0.5F); }, nullptr);
    clock.advance(0.5);
    EXPECT_EQ(some->alpha(), 0.5);
    EXPECT_EQ(some->shownAlpha(), 0.75);
}

TEST(Animation, TheScreenShowsNowAndALayersRenderingTheEnd) {
    AnimationClock clock;
    const auto window = view({{0, 0}, {8, 1}});
    const auto some = view({{0, 0}, {2, 1}});
    some->setBackgroundColor({1, 0, 0, 1});
    window->addSubview(some);
    clock.animate(1, kLinear, [&] { some->setFrame({{4, 0}, {2, 1}}); }, nullptr);
    clock.advance(0.5);
    const std::array<std::uint8_t, 4> red{0, 0, 255, 255};
    const std::array<std::uint8_t, 4> clear{};
    EXPECT_EQ(shownPixel(window, 1), clear);
    EXPECT_EQ(shownPixel(window, 2), red);
    EXPECT_EQ(shownPixel(window, 4), clear);
    const auto context = DesktopGraphicsContext::create({.size = {8, 1}});
    window->layer()->renderInContext(context);
    EXPECT_EQ(context->pixels().row(0)[2 * 4 + 3], 0);
    EXPECT_EQ(context->pixels().row(0)[4 * 4 + 3], 255);
    clock.animate(1, kLinear, [&] { some->setAlpha(0); }, nullptr);
    clock.advance(0.5);
    EXPECT_EQ(shownPixel(window, 4), (std::array<std::uint8_t, 4>{0, 0, 128, 128}));
    const auto end = DesktopGraphicsContext::create({.size = {8, 1}});
    window->layer()->renderInContext(end);
    EXPECT_EQ(end->pixels().row(0)[4 * 4 + 3], 0);
}

TEST(Animation, WithoutABlockSettersActAtOnce) {
    AnimationClock clock;
    const auto some = view();
    some->setAlpha(0.25);
    EXPECT_EQ(some->shownAlpha(), 0.25);
    clock.animate(1, kLinear, nullptr, nullptr);
    some->setAlpha(0.5);
    EXPECT_EQ(some->shownAlpha(), 0.5);
}

TEST(Animation, WithoutTimeValuesAreShownAtOnceAndTheCompletionComesLater) {
    for (const double duration : {0.0, -1.0, static_cast<double>(NAN), -kEndless}) {
        AnimationClock clock;
        Log log;
        const auto some = view();
        clock.animate(duration, kEaseInOut, [&] { some->setAlpha(0.5); }, note(log, "a"));
        EXPECT_EQ(some->shownAlpha(), 0.5);
        EXPECT_EQ(log, Log());
        EXPECT_TRUE(clock.isRunning());
        EXPECT_EQ(clock.remaining(), 0);
        clock.advance(0);
        EXPECT_EQ(log, Log{"a yes"});
        EXPECT_FALSE(clock.isRunning());
    }
}

TEST(Animation, ADelayComesFirst) {
    AnimationClock clock;
    Log log;
    const auto some = view();
    clock.animate(1, kLinear, [&] { some->setAlpha(0); }, note(log, "a"), 2);
    EXPECT_EQ(clock.remaining(), 3);
    clock.advance(2);
    EXPECT_EQ(some->shownAlpha(), 1);
    clock.advance(0.25);
    EXPECT_EQ(some->shownAlpha(), 0.75);
    EXPECT_EQ(clock.remaining(), 0.75);
    clock.advance(0.75);
    EXPECT_EQ(log, Log{"a yes"});
    EXPECT_EQ(clock.now(), 3);
}

TEST(Animation, CompletionsComeInTheOrderOfTheirEnds) {
    AnimationClock clock;
    Log log;
    const auto views = std::vector{view(), view(), view(), view()};
    clock.animate(3, kLinear, [&] { views[0]->setAlpha(0); }, note(log, "long"));
    clock.animate(1, kLinear, [&] { views[1]->setAlpha(0); }, note(log, "short"));
    clock.animate(1, kLinear, [&] { views[2]->setAlpha(0); }, note(log, "short again"));
    clock.animate(0.5, kLinear, [&] { views[3]->setAlpha(0); }, note(log, "delayed"), 1);
    clock.advance(0.99);
    EXPECT_EQ(log, Log());
    clock.advance(5);
    EXPECT_EQ(log, (Log{"short yes", "short again yes", "delayed yes", "long yes"}));
}

TEST(Animation, ABlockThatMovesNothingIsOverAtOnce) {
    AnimationClock clock;
    Log log;
    const auto some = view();
    clock.animate(5, kLinear, [&] { some->setAlpha(1); }, note(log, "same"));
    clock.animate(5, kLinear, nullptr, note(log, "empty"));
    EXPECT_EQ(log, Log());
    clock.advance(0);
    EXPECT_EQ(log, (Log{"same yes", "empty yes"}));
}

TEST(Animation, ANewOneStartsWhereTheScreenIsAndTheOldOneIsNotFinished) {
    AnimationClock clock;
    Log log;
    const auto some = view();
    clock.animate(1, kLinear, [&] { some->setAlpha(0); }, note(log, "out"));
    clock.advance(0.25);
    clock.animate(1, kLinear, [&] { some->setAlpha(1); }, note(log, "in"));
    EXPECT_EQ(some->shownAlpha(), 0.75);
    EXPECT_EQ(log, Log());
    clock.advance(0.5);
    EXPECT_EQ(log, Log{"out no"});
    EXPECT_EQ(some->shownAlpha(), 0.875);
    clock.advance(0.5);
    EXPECT_EQ(log, (Log{"out no", "in yes"}));
    EXPECT_EQ(some->shownAlpha(), 1);
}

TEST(Animation, ASetterOutsideOfBlocksEndsIt) {
    AnimationClock clock;
    Log log;
    const auto some = view();
    clock.animate(1, kLinear, [&] { some->setAlpha(0); }, note(log, "out"));
    clock.advance(0.5);
    some->setAlpha(0.9);
    EXPECT_EQ(some->shownAlpha(), 0.9);
    EXPECT_EQ(log, Log());
    clock.advance(0);
    EXPECT_EQ(log, Log{"out no"});
}

TEST(Animation, PartlyReplacedItRunsOnAndIsNotFinished) {
    AnimationClock clock;
    Log log;
    const auto some = view();
    const auto other = view();
    clock.animate(
        1, kLinear,
        [&] {
            some->setAlpha(0);
            other->setAlpha(0);
        },
        note(log, "both"));
    clock.advance(0.25);
    some->setAlpha(1);
    clock.advance(0.5);
    EXPECT_EQ(log, Log());
    EXPECT_EQ(other->shownAlpha(), 0.25);
    clock.advance(0.25);
    EXPECT_EQ(log, Log{"both no"});
}

TEST(Animation, SettingTwiceInABlockGoesToTheLastValue) {
    AnimationClock clock;
    Log log;
    const auto some = view();
    clock.animate(
        1, kLinear,
        [&] {
            some->setAlpha(0.1);
            some->setAlpha(0.5);
        },
        note(log, "a"));
    clock.advance(0.5);
    EXPECT_EQ(some->shownAlpha(), 0.75);
    clock.advance(0.5);
    EXPECT_EQ(log, Log{"a yes"});
}

TEST(Animation, BlocksNest) {
    AnimationClock clock;
    Log log;
    const auto outer = view();
    const auto inner = view();
    const auto last = view();
    clock.animate(
        4, kLinear,
        [&] {
            outer->setAlpha(0);
            clock.animate(1, kLinear, [&] { inner->setAlpha(0); }, note(log, "inner"));
            clock.animate(0, kLinear, [&] { inner->setFrame({{1, 1}, {1, 1}}); }, nullptr);
            last->setAlpha(0);
        },
        note(log, "outer"));
    EXPECT_EQ(inner->shownFrame(), (Rect{{1, 1}, {1, 1}}));
    clock.advance(1);
    EXPECT_EQ(outer->shownAlpha(), 0.75);
    EXPECT_EQ(last->shownAlpha(), 0.75);
    EXPECT_EQ(inner->shownAlpha(), 0);
    clock.advance(3);
    EXPECT_EQ(log, (Log{"inner yes", "outer yes"}));
}

TEST(Animation, AnInnerBlockTakesOverWhatTheOuterOneMoved) {
    AnimationClock clock;
    Log log;
    const auto some = view();
    const auto other = view();
    clock.animate(
        2, kLinear,
        [&] {
            some->setAlpha(0);
            clock.animate(1, kLinear, [&] { some->setAlpha(0.5); }, note(log, "inner"));
            other->setAlpha(0);
        },
        note(log, "outer"));
    clock.advance(1);
    EXPECT_EQ(log, Log{"inner yes"});
    EXPECT_EQ(some->shownAlpha(), 0.5);
    EXPECT_EQ(other->shownAlpha(), 0.5);
    clock.advance(1);
    EXPECT_EQ(log, (Log{"inner yes", "outer no"}));
}

TEST(Animation, ACompletionStartsTheNextOneAtTheExactEnd) {
    AnimationClock clock;
    Log log;
    const auto some = view();
    clock.animate(
        1, kLinear, [&] { some->setAlpha(0); },
        [&](bool /*finished*/) {
            EXPECT_EQ(clock.now(), 1);
            clock.animate(2, kLinear, [&] { some->setAlpha(1); }, note(log, "back"));
        });
    clock.advance(2);
    EXPECT_EQ(some->shownAlpha(), 0.5);
    clock.advance(5);
    EXPECT_EQ(log, Log{"back yes"});
    EXPECT_EQ(clock.now(), 7);
}

TEST(Animation, ACompletionMayRemoveViewsAndSetsItsValuesAtOnce) {
    AnimationClock clock;
    const auto parent = view();
    auto child = view();
    parent->addSubview(child);
    clock.animate(
        1, kLinear, [&] { child->setAlpha(0); },
        [&](bool /*finished*/) {
            child->removeFromSuperview();
            child.reset();
            parent->setAlpha(0.5);
            clock.advance(9);  // does nothing here
            EXPECT_EQ(clock.now(), 1);
        });
    clock.advance(1);
    EXPECT_TRUE(parent->subviews().empty());
    EXPECT_EQ(parent->shownAlpha(), 0.5);
    EXPECT_EQ(clock.now(), 1);
}

TEST(Animation, ACompletionIsInNoBlockEvenWhenABlockMovesTheClock) {
    AnimationClock clock;
    const auto some = view();
    clock.animate(0, kLinear, nullptr, [&](bool /*finished*/) { some->setAlpha(0); });
    clock.animate(1, kLinear, [&] { clock.advance(0); }, nullptr);
    EXPECT_EQ(some->shownAlpha(), 0);
}

TEST(Animation, CompletionsThatStartTheirLikeEndTheStep) {
    AnimationClock clock;
    const auto some = view();
    int calls = 0;
    AnimationClock::Completion again = [&](bool /*finished*/) {
        ++calls;
        clock.animate(0, kLinear, nullptr, again);
    };
    clock.animate(0, kLinear, nullptr, again);
    clock.advance(1);
    EXPECT_EQ(calls, 1);
    clock.advance(0);
    EXPECT_EQ(calls, 2);
    // Each interrupts the one before, without time passing.
    AnimationClock other;
    int interrupted = 0;
    AnimationClock::Completion restart = [&](bool finished) {
        interrupted += finished ? 0 : 1;
        other.animate(1, kLinear, [&] { some->setAlpha(0.5); }, restart);
        other.animate(1, kLinear, [&] { some->setAlpha(0.25); }, restart);
    };
    restart(true);
    other.advance(0);
    // The two that were there; those of this step wait.
    EXPECT_EQ(interrupted, 2);
}

TEST(Animation, AViewThatIsGoneDoesNoHarm) {
    AnimationClock clock;
    Log log;
    auto some = view();
    clock.animate(1, kLinear, [&] { some->setAlpha(0); }, note(log, "a"));
    clock.advance(0.5);
    some.reset();
    clock.advance(0.4);
    EXPECT_EQ(log, Log());
    clock.advance(0.5);
    EXPECT_EQ(log, Log{"a yes"});
}

TEST(Animation, AClockThatIsGoneLeavesViewsAtTheEnd) {
    Log log;
    const auto some = view();
    {
        AnimationClock clock;
        clock.animate(1, kLinear, [&] { some->setAlpha(0); }, note(log, "a"));
        clock.advance(0.5);
    }
    EXPECT_EQ(some->shownAlpha(), 0);
    some->setAlpha(1);
    EXPECT_EQ(some->shownAlpha(), 1);
    EXPECT_EQ(log, Log());
}

TEST(Animation, AbsurdTimesAreBounded) {
    AnimationClock clock;
    Log log;
    const auto some = view();
    clock.animate(kEndless, kLinear, [&] { some->setAlpha(0); }, note(log, "a"), kEndless);
    EXPECT_EQ(clock.remaining(), 2 * kLongestAnimation);
    clock.advance(NAN);
    clock.advance(-5);
    EXPECT_EQ(clock.now(), 0);
    clock.advance(kEndless);
    EXPECT_EQ(clock.now(), kLongestAnimation);
    clock.advance(kEndless);
    EXPECT_EQ(log, Log{"a yes"});
}

TEST(Animation, ThousandsOfBlocksLeaveNothingBehind) {
    AnimationClock clock;
    const auto some = view();
    const auto held = std::make_shared<int>(0);
    for (int i = 0; i < 2000; ++i) {
        clock.animate(
            0.5, kEaseInOut, [&] { some->setAlpha(i % 2); }, [held](bool /*finished*/) {});
        clock.advance(0.1);
    }
    EXPECT_LE(held.use_count(), 2);
    clock.advance(1);
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_FALSE(clock.isRunning());
}

TEST(Animation, TheServiceAnimatesOnItsClock) {
    DesktopViews views;
    Log log;
    const auto some = view();
    views.animateWithDurationAnimationsCompletion(0.3, [&] { some->setAlpha(0); }, note(log, "a"));
    EXPECT_EQ(some->shownAlpha(), 1);
    views.clock().advance(0.06);
    EXPECT_NEAR(some->shownAlpha(), 1 - walked(kEaseInOut, 0.2), 1e-5);
    views.clock().advance(views.clock().remaining());
    EXPECT_EQ(log, Log{"a yes"});
}

}  // namespace velmoranth::desktop::animation_test
