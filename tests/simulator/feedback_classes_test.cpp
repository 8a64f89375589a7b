#include "simulator/toolkit/feedback_classes.h"

#include "desktop/runtime/runtime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velmoranth::simulator::feedback_classes_test {
namespace {

using platform::SBUISoundRef;

struct FeedbackClasses : testing::Test {
    std::vector<std::string> warnings;
    desktop::Runtime runtime{[this](const std::string& line) { warnings.push_back(line); }};
    std::vector<std::uint64_t> played;
    PlaysSystemSound plays = [this](std::uint64_t number) { played.push_back(number); };
};

constexpr std::uint64_t kLarge = 0xFFFF'FFFF'FFFF'FFFE;

}  // namespace

TEST_F(FeedbackClasses, AFeedbackPlaysTheSoundOfItsNumber) {
    registerFeedbackClasses(runtime, plays);
    const auto click = makeFeedback(runtime, 1104);
    const auto other = makeFeedback(runtime, 0xFFFF'FFFF);
    EXPECT_EQ(click->_effectiveSystemSoundID(), 1104U);
    EXPECT_EQ(runtime.send<std::uint32_t>(*click, "_effectiveSystemSoundID"), 1104U);
    EXPECT_EQ(played, std::vector<std::uint64_t>{});
    runtime.send<void>(*click, "play");
    runtime.send<void>(*other, "play");
    EXPECT_EQ(played, (std::vector<std::uint64_t>{1104, 0xFFFF'FFFF}));
    EXPECT_EQ(warnings, std::vector<std::string>{});
    EXPECT_TRUE(runtime.isKindOf(runtime.getClass("_UIFeedback"), "NSObject"));
}

TEST_F(FeedbackClasses, AReplacedPlayDecidesWhetherThePlatformsOwnIsHeard) {
    registerFeedbackClasses(runtime, plays);
    platform::Implementation original;
    int replaced = 0;
    runtime.hookMessageEx(runtime.getClass("_UIFeedback"), "play",
                          platform::makeImplementation(std::function<void(platform::UIFeedback&)>(
                              [&](platform::UIFeedback& self) {
                                  ++replaced;
                                  if (self._effectiveSystemSoundID() != 7) {
                                      (*original.as<void(platform::Object&)>())(self);
                                  }
                              })),
                          &original);
    runtime.send<void>(*makeFeedback(runtime, 7), "play");
    EXPECT_EQ(played, std::vector<std::uint64_t>{});
    runtime.send<void>(*makeFeedback(runtime, 8), "play");
    EXPECT_EQ(played, std::vector<std::uint64_t>{8});
    EXPECT_EQ(replaced, 2);
    EXPECT_EQ(warnings, std::vector<std::string>{});
}

TEST_F(FeedbackClasses, AReplacedNumberIsTheOneThatIsPlayed) {
    registerFeedbackClasses(runtime, plays);
    runtime.hookMessageEx(
        runtime.getClass("_UIFeedback"), "_effectiveSystemSoundID",
        platform::makeImplementation(std::function<std::uint32_t(platform::UIFeedback&)>(
            [](platform::UIFeedback&) -> std::uint32_t { return 42; })),
        nullptr);
    runtime.send<void>(*makeFeedback(runtime, 7), "play");
    EXPECT_EQ(played, std::vector<std::uint64_t>{42});
}

TEST_F(FeedbackClasses, TheHomeScreenPlaysTheSoundThatItIsGiven) {
    registerFeedbackClasses(runtime, plays);
    const auto sound = runtime.sendToClass<SBUISoundRef, std::uint64_t>(
        "SBUISound", "soundWithFeedbackEventType:", kLarge);
    ASSERT_NE(sound, nullptr);
    EXPECT_EQ(sound->className(), "SBUISound");
    EXPECT_EQ(static_cast<const SystemSound&>(*sound).value(), kLarge);
    EXPECT_EQ(played, std::vector<std::uint64_t>{});
    EXPECT_TRUE(playFeedbackEvent(runtime, kLarge, plays));
    EXPECT_EQ(played, std::vector<std::uint64_t>{kLarge});
    runtime.hookMessageEx(
        runtime.getMetaclass(runtime.getClass("SBUISound")), "soundWithFeedbackEventType:",
        platform::makeImplementation(std::function<SBUISoundRef(platform::Class&, std::uint64_t)>(
            [](platform::Class&, std::uint64_t) -> SBUISoundRef { return nullptr; })),
        nullptr);
    EXPECT_FALSE(playFeedbackEvent(runtime, 3, plays));
    EXPECT_EQ(played, std::vector<std::uint64_t>{kLarge});
    EXPECT_EQ(warnings, std::vector<std::string>{});
}

TEST_F(FeedbackClasses, OtherProcessesHaveFeedbackAlone) {
    runtime.addClass("NSObject");
    registerFeedbackClasses(runtime, nullptr, FeedbackProcess::other);
    EXPECT_EQ(runtime.getClass("SBUISound"), nullptr);
    EXPECT_FALSE(playFeedbackEvent(runtime, 3, plays));
    runtime.send<void>(*makeFeedback(runtime, 7), "play");
    EXPECT_EQ(played, std::vector<std::uint64_t>{});
    EXPECT_EQ(warnings, std::vector<std::string>{});
}

}  // namespace velmoranth::simulator::feedback_classes_test
