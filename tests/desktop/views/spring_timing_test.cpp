#include "desktop/views/spring_timing.h"

#include "desktop/views/views.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

namespace velmoranth::desktop::spring_timing_test {

namespace {

using platform::Rect;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kEndless = std::numeric_limits<double>::infinity();
constexpr int kSteps = 50'000;

double timeOf(int step) {
    return static_cast<double>(step) / kSteps;
}

// Times and places where the body turns round.
struct Turn {
    double time;
    double share;
};

std::vector<Turn> turnsOf(const SpringTiming& spring) {
    std::vector<Turn> turns;
    for (int i = 1; i < kSteps - 1; ++i) {
        const double before = spring.at(timeOf(i - 1));
        const double here = spring.at(timeOf(i));
        const double after = spring.at(timeOf(i + 1));
        if ((here > before && here > after) || (here < before && here < after)) {
            turns.push_back({timeOf(i), here});
        }
    }
    return turns;
}

// By how much a body that starts at rest overshoots.
double overshootOf(double damping) {
    return std::exp(-damping * std::numbers::pi / std::sqrt(1 - damping * damping));
}

struct Spring : testing::Test {
    void animate(double duration, double delay, double damping, double velocity) {
        views
            .animateWithDurationDelayUsingSpringWithDampingInitialSpringVelocityOptionsAnimationsCompletion(
                duration, delay, damping, velocity, platform::kViewAnimationOptionCurveEaseIn,
                [this] { view->setFrame(end); },
                [this](bool finished) { log.emplace_back(finished ? "yes" : "no"); });
    }

    DesktopViews views;
    std::shared_ptr<DesktopView> view = std::make_shared<DesktopView>(Rect{{10, 20}, {0, 0}});
    Rect end{{10, 20}, {200, 100}};
    std::vector<std::string> log;
};

}  // namespace

TEST(SpringTiming, OvershootsByItsDamping) {
    EXPECT_NEAR(overshootOf(0.5), 0.163, 0.0005);
    for (const double damping : {0.02, 0.2, 0.5, 0.8}) {
        const std::vector<Turn> turns = turnsOf(SpringTiming::create(damping, 0, 0.3));
        ASSERT_GE(turns.size(), 1U) << damping;
        EXPECT_NEAR(turns[0].share, 1 + overshootOf(damping), 1e-4) << damping;
    }
    // The turns follow each other evenly, the first as long after the start.
    const std::vector<Turn> turns = turnsOf(SpringTiming::create(0.2, 0, 0.3));
    ASSERT_GE(turns.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        const double number = static_cast<double>(i) + 1;
        EXPECT_NEAR(turns[i].time, number * turns[0].time, 1e-4);
        EXPECT_NEAR(std::abs(turns[i].share - 1), std::pow(overshootOf(0.2), number), 1e-6);
    }
}

TEST(SpringTiming, FromCriticalDampingOnItDoesNot) {
    for (const double damping : {1.0, 1.5, 1e9, kEndless, kNaN}) {
        const SpringTiming spring = SpringTiming::create(damping, 0, 0.3);
        double before = 0;
        for (int i = 1; i <= kSteps; ++i) {
            const double here = spring.at(timeOf(i));
            ASSERT_GE(here, before) << damping << " at " << timeOf(i);
            ASSERT_LE(here, 1) << damping;
            before = here;
        }
    }
    // A hair below, it is the same body.
    const SpringTiming critical = SpringTiming::create(1, 0.5, 1);
    const SpringTiming nearly = SpringTiming::create(1 - 1e-12, 0.5, 1);
    for (const double time : {0.1, 0.3, 0.9}) {
        EXPECT_NEAR(critical.at(time), nearly.at(time), 1e-6);
    }
}

TEST(SpringTiming, IsABodyOnADampedSpring) {
    // For every time: acceleration = -2 · damping · frequency · velocity - frequency² · way left.
    // Its turns give the frequency.
    const double damping = 0.4;
    const SpringTiming spring = SpringTiming::create(damping, 3, 0.5);
    const std::vector<Turn> turns = turnsOf(spring);
    ASSERT_GE(turns.size(), 2U);
    const double swing = std::numbers::pi / (turns[1].time - turns[0].time);
    const double frequency = swing / std::sqrt(1 - damping * damping);
    constexpr double kStep = 1e-4;
    for (const double time : {0.05, 0.15, 0.3, 0.6}) {
        const double before = spring.at(time - kStep);
        const double here = spring.at(time);
        const double after = spring.at(time + kStep);
        const double velocity = (after - before) / (2 * kStep);
        const double acceleration = (after - 2 * here + before) / (kStep * kStep);
        const double left = here - 1;
        EXPECT_NEAR(acceleration,
                    -2 * damping * frequency * velocity - frequency * frequency * left,
                    0.005 * frequency * frequency)
            << time;
    }
}

TEST(SpringTiming, StartsWithItsVelocity) {
    for (const double velocity : {-4.0, 0.0, 0.5, 20.0}) {
        const SpringTiming spring = SpringTiming::create(0.5, velocity, 0.3);
        constexpr double kStep = 1e-7;
        // Whole ways a second, and a duration of 0.3 seconds.
        EXPECT_NEAR(spring.at(kStep) / kStep / 0.3, velocity, 1e-3);
    }
}

TEST(SpringTiming, IsAtRestAtTheDurationAndNotLongBefore) {
    for (const double damping : {0.01, 0.2, 0.5, 0.99, 1.0}) {
        for (const double velocity : {-5.0, 0.0, 0.5, 50.0, 1e9}) {
            const SpringTiming spring = SpringTiming::create(damping, velocity, 0.3);
            EXPECT_LE(spring.envelope(1), 0.001) << damping << " " << velocity;
            EXPECT_GT(spring.envelope(1), 0.00099) << damping << " " << velocity;
            for (int i = 0; i < kSteps; i += 7) {
                ASSERT_LE(std::abs(spring.at(timeOf(i)) - 1), spring.envelope(timeOf(i)) + 1e-12)
                    << damping << " " << velocity << " at " << timeOf(i);
            }
        }
    }
}

TEST(SpringTiming, IsAtItsEndsOutsideOfItsTime) {
    const SpringTiming spring = SpringTiming::create(0.5, 0.5, 0.3);
    for (const double time : {0.0, -1.0, -kEndless, kNaN}) {
        EXPECT_EQ(spring.at(time), 0);
    }
    EXPECT_EQ(spring.at(1), 1);
    EXPECT_EQ(spring.at(kEndless), 1);
}

TEST(SpringTiming, AnyNumbersGiveAMovement) {
    const std::array numbers{0.0,   -1.0,   -0.0,     1e-300,    1e9,
                             1e300, -1e300, kEndless, -kEndless, kNaN};
    for (const double damping : numbers) {
        for (const double velocity : numbers) {
            for (const double duration : numbers) {
                const SpringTiming spring = SpringTiming::create(damping, velocity, duration);
                for (const double time : {1e-12, 0.01, 0.5, 0.999}) {
                    EXPECT_LT(std::abs(spring.at(time)), 1000)
                        << damping << " " << velocity << " " << duration << " at " << time;
                }
            }
        }
    }
}

TEST_F(Spring, TheModelIsAtTheEndAndTheScreenOvershoots) {
    animate(0.3, 0, 0.5, 0);
    EXPECT_EQ(view->frame(), end);
    EXPECT_EQ(view->shownFrame(), (Rect{{10, 20}, {0, 0}}));
    double widest = 0;
    for (int i = 1; i < 300; ++i) {
        views.clock().advance(0.001);
        widest = std::max(widest, view->shownFrame().size.width);
    }
    EXPECT_NEAR(widest, 200 * (1 + overshootOf(0.5)), 0.1);
    EXPECT_EQ(log, std::vector<std::string>{});
    views.clock().advance(0.0011);
    EXPECT_EQ(view->shownFrame(), end);
    EXPECT_EQ(log, std::vector<std::string>{"yes"});
}

TEST_F(Spring, ADelayComesFirst) {
    animate(0.3, 0.5, 0.5, 0.5);
    views.clock().advance(0.5);
    EXPECT_EQ(view->shownFrame().size.width, 0);
    views.clock().advance(0.1);
    EXPECT_NEAR(view->shownFrame().size.width,
                200 * SpringTiming::create(0.5, 0.5, 0.3).at(1.0 / 3), 1e-6);
    EXPECT_DOUBLE_EQ(views.clock().remaining(), 0.2);
}

TEST_F(Spring, WithoutTimeItIsThereAtOnce) {
    for (const double duration : {0.0, -3.0, kNaN, -kEndless}) {
        view->setFrame({});
        log.clear();
        animate(duration, -kEndless, kNaN, kNaN);
        EXPECT_EQ(view->shownFrame(), end);
        EXPECT_EQ(log, std::vector<std::string>{});
        views.clock().advance(0);
        EXPECT_EQ(log, std::vector<std::string>{"yes"});
    }
}

TEST_F(Spring, AbsurdTimesAreBounded) {
    animate(kEndless, kEndless, 0, kEndless);
    EXPECT_EQ(views.clock().remaining(), 2 * kLongestAnimation);
    views.clock().advance(1.5 * kLongestAnimation);
    EXPECT_TRUE(std::isfinite(view->shownFrame().size.width));
}

TEST_F(Spring, ASideBelowNothingIsNothing) {
    // Back to nothing: on its way it goes beyond.
    const auto window = std::make_shared<DesktopView>(Rect{{0, 0}, {8, 8}});
    window->addSubview(view);
    view->setBackgroundColor({1, 0, 0, 1});
    view->setClipsToBounds(true);
    view->setFrame({{2, 2}, {4, 4}});
    end = {{2, 2}, {0, 4}};
    animate(1, 0, 0.2, 0);
    const double firstTurn = turnsOf(SpringTiming::create(0.2, 0, 1))[0].time;
    views.clock().advance(firstTurn);
    const Rect shown = view->shownFrame();
    EXPECT_EQ(shown.size.width, 0);
    // In the middle of a width of -4 times the overshoot.
    EXPECT_NEAR(shown.origin.x, 2 - 2 * overshootOf(0.2), 1e-3);
    EXPECT_NEAR(shown.size.height, 4, 1e-9);
    const auto picture = renderTree(window, {8, 8}, 1);
    for (std::size_t y = 0; y < 8; ++y) {
        for (std::size_t x = 0; x < 8; ++x) {
            EXPECT_EQ(picture->pixels().row(y)[x * 4 + 3], 0) << x << " " << y;
        }
    }
}

}  // namespace velmoranth::desktop::spring_timing_test
