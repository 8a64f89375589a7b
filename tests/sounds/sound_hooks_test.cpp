// The two moments at which the system is about to play a sound, in a process with the hooks in it.
#include "sounds/sound_hooks.h"

#include "sound_process_fixture.h"

#include <limits>

namespace velmoranth::tests::sound_hooks_test {
namespace {

const std::string kFolder = soundFolder("A");
const std::string kLock = kFolder + "/lock.caf";

std::string feedbackLog(const std::string& number) {
    return "log VELMORANTH UIDevice _playSystemSound:_effectiveSystemSoundID : " + number;
}

std::string soundLog(const std::string& eventType, const std::string& sound) {
    return "log VELMORANTH SBUISounds soundWithFeedbackEventType:" + eventType + "  " + sound;
}

using FeedbackHook = SoundProcess;

TEST_F(FeedbackHook, OffPlaysThePlatformsAlone) {
    start({.enable = false, .logging = false});
    feedback.systemSoundID = 1002;
    play();
    EXPECT_EQ(device.journal.lines(), (Lines{"orig play"}));
}

TEST_F(FeedbackHook, OffButLoggingReadsTheNumberForTheLine) {
    start({.enable = false, .logging = true});
    feedback.systemSoundID = 1002;
    play();
    EXPECT_EQ(device.journal.lines(), (Lines{kReadNumber, feedbackLog("1002"), "orig play"}));
}

TEST_F(FeedbackHook, OnPlaysTheThemesSoundBeforeThePlatforms) {
    start({.enable = true, .logging = false});
    feedback.systemSoundID = 1002;
    play();
    EXPECT_EQ(device.journal.lines(),
              joined({{kReadNumber}, searchLines({"A"}), playLines(kLock), {"orig play"}}));
}

TEST_F(FeedbackHook, OnAndLoggingReadsTheNumberTwice) {
    start({.enable = true, .logging = true});
    feedback.systemSoundID = 1002;
    play();
    EXPECT_EQ(device.journal.lines(), joined({{kReadNumber, feedbackLog("1002"), kReadNumber},
                                              searchLines({"A"}),
                                              playLines(kLock),
                                              {"orig play"}}));
}

TEST_F(FeedbackHook, OnAndLoggingPlaysWhatTheSecondReadGave) {
    start({.enable = true, .logging = true});
    feedback.nextIDs = {1100, 1002};
    play();
    EXPECT_EQ(device.journal.log().size(), 1U);
    EXPECT_EQ("log " + device.journal.log().front(), feedbackLog("1100"));
    EXPECT_EQ(device.journal.linesWith("-[AVAudioPlayer play] "),
              (Lines{"-[AVAudioPlayer play] " + kLock}));
}

// Before +initialize nobody answers for the theme.
TEST_F(FeedbackHook, WithoutTheSharedInstanceThePlatformsIsPlayedAndTheSoundKeptAway) {
    installWithoutStart();
    feedback.systemSoundID = 1002;
    play();
    EXPECT_EQ(device.journal.lines(), (Lines{kReadNumber, "orig play"}));
    EXPECT_EQ(sound(1002), nullptr);
    EXPECT_EQ(device.journal.count("-[AVAudioPlayer "), 0U);
}

TEST_F(FeedbackHook, AThemeWithoutTheSoundLeavesThePlatformsToBeHeard) {
    start({});
    feedback.systemSoundID = 1000;
    play();
    EXPECT_EQ(device.journal.lines(), joined({{kReadNumber},
                                              searchLines({"A"}),
                                              askLines(kFolder + "/SentMessage.caf"),
                                              {"orig play"}}));
}

TEST_F(FeedbackHook, TheNumberZeroIsPassedOnToo) {
    start({.enable = true, .logging = true});
    feedback.systemSoundID = 0;
    play();
    EXPECT_EQ(device.journal.lines(), joined({{kReadNumber, feedbackLog("0"), kReadNumber},
                                              searchLines({"A"}),
                                              askLines(kFolder),
                                              {"orig play"}}));
}

TEST_F(FeedbackHook, NumbersOverTwoToThe31StayPositive) {
    start({.enable = true, .logging = true});
    for (const auto& [number, shown] :
         {std::pair<std::uint32_t, std::string>{2147483648U, "2147483648"},
          {4294967295U, "4294967295"},
          {std::uint32_t{0} - 1000U, "4294966296"}}) {
        device.journal.clear();
        feedback.systemSoundID = number;
        play();
        EXPECT_EQ(device.journal.lines(), joined({{kReadNumber, feedbackLog(shown), kReadNumber},
                                                  searchLines({"A"}),
                                                  askLines(kFolder),
                                                  {"orig play"}}));
    }
}

TEST_F(FeedbackHook, WithoutThemesThePlatformsIsPlayedStill) {
    start({});
    device.activeThemes({});
    feedback.systemSoundID = 1002;
    play();
    EXPECT_EQ(device.journal.lines(), (Lines{kReadNumber, kReadPreferences, "orig play"}));
}

TEST_F(FeedbackHook, TheSharedInstanceHoldsTheSound) {
    start({});
    feedback.systemSoundID = 1002;
    play();
    const auto manager = core::VelMoranth::sharedIconManager();
    ASSERT_NE(manager, nullptr);
    EXPECT_NE(manager->soundToPlay(), nullptr);
    EXPECT_EQ(manager->audiosession(), device.audio.session());
    // Not its end: another sound takes its place.
    EXPECT_EQ(device.journal.count("-[AVAudioPlayer dealloc] "), 0U);
    device.journal.clear();
    play();
    EXPECT_EQ(device.journal.lines(),
              joined({{kReadNumber}, searchLines({"A"}), playLines(kLock, kLock), {"orig play"}}));
}

using SoundHook = SoundProcess;

TEST_F(SoundHook, OffGivesThePlatformsSecondSound) {
    start({.enable = false, .logging = false});
    const auto given = sound(1002);
    EXPECT_EQ(device.journal.lines(), (Lines{"orig SBUISound 1002", "orig SBUISound 1002"}));
    ASSERT_NE(given, nullptr);
    EXPECT_EQ(given->description(), "<SBUISound 2>");
}

TEST_F(SoundHook, OffButLoggingWritesTheSecondAndGivesTheThird) {
    start({.enable = false, .logging = true});
    const auto given = sound(1002);
    EXPECT_EQ(device.journal.lines(),
              (Lines{"orig SBUISound 1002", "orig SBUISound 1002",
                     soundLog("1002", "<SBUISound 2>"), "orig SBUISound 1002"}));
    ASSERT_NE(given, nullptr);
    EXPECT_EQ(given->description(), "<SBUISound 3>");
}

TEST_F(SoundHook, OnPlaysTheThemesSoundInPlaceOfThePlatforms) {
    start({.enable = true, .logging = false});
    EXPECT_EQ(sound(1002), nullptr);
    EXPECT_EQ(device.journal.lines(),
              joined({{"orig SBUISound 1002"}, searchLines({"A"}), playLines(kLock)}));
}

TEST_F(SoundHook, OnAndLoggingAsksThePlatformTwice) {
    start({.enable = true, .logging = true});
    EXPECT_EQ(sound(1002), nullptr);
    EXPECT_EQ(
        device.journal.lines(),
        joined({{"orig SBUISound 1002", "orig SBUISound 1002", soundLog("1002", "<SBUISound 2>")},
                searchLines({"A"}),
                playLines(kLock)}));
}

TEST_F(SoundHook, ThePlatformsNilIsWrittenAndGivenBack) {
    start({.enable = false, .logging = true});
    platformHasSounds = false;
    EXPECT_EQ(sound(7), nullptr);
    EXPECT_EQ(device.journal.lines(), (Lines{"orig SBUISound 7", "orig SBUISound 7",
                                             soundLog("7", "(null)"), "orig SBUISound 7"}));
}

TEST_F(SoundHook, OnKeepsTheSystemsSoundAwayWhereTheThemeHasNone) {
    start({});
    EXPECT_EQ(sound(1003), nullptr);  // no such file
    EXPECT_EQ(sound(1005), nullptr);  // no such number
    device.remove(kFolder);
    EXPECT_EQ(sound(1002), nullptr);
    EXPECT_EQ(device.journal.lines(), joined({{"orig SBUISound 1003"},
                                              searchLines({"A"}),
                                              askLines(kFolder + "/Anticipate.caf"),
                                              {"orig SBUISound 1005"},
                                              searchLines({"A"}),
                                              askLines(kFolder),
                                              {"orig SBUISound 1002"},
                                              searchLines({"A"})}));
}

TEST_F(SoundHook, EventTypesHave64Bits) {
    start({.enable = true, .logging = true});
    constexpr std::uint64_t kHalf = std::uint64_t{1} << 63U;
    for (const auto& [eventType, shown] :
         {std::pair<std::uint64_t, std::string>{kHalf + 1002, "9223372036854776810"},
          {std::numeric_limits<std::uint64_t>::max(), "18446744073709551615"},
          // 1002 in the lower half.
          {(std::uint64_t{1} << 32U) + 1002, "4294968298"}}) {
        device.journal.clear();
        soundsAskedFor = 0;
        EXPECT_EQ(sound(eventType), nullptr);
        EXPECT_EQ(device.journal.lines(),
                  joined({{"orig SBUISound " + shown, "orig SBUISound " + shown,
                           soundLog(shown, "<SBUISound 2>")},
                          searchLines({"A"}),
                          askLines(kFolder)}));
    }
}

// The tables differ: each hook uses its own.
TEST_F(SoundHook, TheTwoHooksNumbersMeanOtherSounds) {
    start({});
    device.file(kFolder + "/key_press_click.caf", "click");
    feedback.systemSoundID = 1004;
    play();
    EXPECT_EQ(device.journal.count("-[AVAudioPlayer play] "), 0U);
    EXPECT_EQ(sound(1004), nullptr);
    EXPECT_EQ(device.journal.linesWith("-[AVAudioPlayer play] "),
              (Lines{"-[AVAudioPlayer play] " + kFolder + "/key_press_click.caf"}));
    device.journal.clear();
    EXPECT_EQ(sound(1104), nullptr);
    EXPECT_EQ(device.journal.count("-[AVAudioPlayer play] "), 0U);
    feedback.systemSoundID = 1104;
    play();
    EXPECT_EQ(device.journal.linesWith("-[AVAudioPlayer play] "),
              (Lines{"-[AVAudioPlayer play] " + kFolder + "/key_press_click.caf"}));
}

// A feedback's sound and one of the home screen take the same place.
TEST_F(SoundHook, OneSoundAtATimeWhicheverAskedForIt) {
    start({});
    feedback.systemSoundID = 1002;
    play();
    device.journal.clear();
    EXPECT_EQ(sound(1005), nullptr);
    EXPECT_EQ(device.journal.lines(), joined({{"orig SBUISound 1005"},
                                              searchLines({"A"}),
                                              askLines(kFolder),
                                              {"-[AVAudioPlayer dealloc] " + kLock}}));
}

// The switches are those of the settings as they were read, the themes those of the file now.
TEST_F(SoundHook, TheSwitchesWaitForANoticeTheThemesDoNot) {
    start({.enable = true, .logging = false});
    device.file(soundFolder("B") + "/lock.caf", "other");
    device.activeThemes({"B"}, {{"enable", false}, {"enableLogging", true}});
    EXPECT_EQ(sound(1002), nullptr);
    EXPECT_EQ(device.journal.lines(), joined({{"orig SBUISound 1002"},
                                              searchLines({"B"}),
                                              playLines(soundFolder("B") + "/lock.caf")}));
    device.notifications.post("com.qor.velmoranthprefs.prefs");
    device.journal.clear();
    EXPECT_NE(sound(1002), nullptr);
    EXPECT_EQ(device.journal.count("-[AVAudioPlayer "), 0U);
    EXPECT_EQ(device.journal.log().size(), 1U);
}

TEST_F(SoundHook, ASubclassIsPassedOnAsTheReceiver) {
    start({.enable = false, .logging = false});
    device.runtime.addClass("SBUISoundOfOurs", "SBUISound");
    const auto given = device.runtime.sendToClass<platform::SBUISoundRef, std::uint64_t>(
        "SBUISoundOfOurs", "soundWithFeedbackEventType:", 1002);
    EXPECT_NE(given, nullptr);
    EXPECT_EQ(device.journal.lines(),
              (Lines{"orig SBUISoundOfOurs 1002", "orig SBUISoundOfOurs 1002"}));
}

// Both rows stand in the table on every system.
TEST_F(SoundHook, BothAreInstalledOnIos12Too) {
    device.system.number = 1575.23;
    device.system.major = 12;
    start({});
    feedback.systemSoundID = 1002;
    play();
    EXPECT_EQ(sound(1002), nullptr);
    EXPECT_EQ(device.journal.count("-[AVAudioPlayer play] "), 2U);
}

}  // namespace
}  // namespace velmoranth::tests::sound_hooks_test
