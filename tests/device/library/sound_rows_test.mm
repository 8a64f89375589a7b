// The replacements at the two moments when the system is about to play a sound.
#include "device/library/rows_support.h"
#include "device/standins/av_foundation.h"

#include <limits>

namespace velmoranth::standins::sound_rows_test {
namespace {

constexpr const char* kPlay = "-[_UIFeedback play]";
constexpr const char* kSoundID = "-[_UIFeedback _effectiveSystemSoundID]";
constexpr const char* kSound = "+[SBUISound soundWithFeedbackEventType:]";
constexpr const char* kLock = "/Library/Themes/A/UISounds/lock.caf";

std::string soundCall(const std::string& type) {
    return sentToClass(kSound, {type});
}

class SystemSounds : public ReplacedMethods {
  protected:
    SystemSounds() { file(kLock, "caff"); }

    // Of a player for that path, which plays when there is a sound.
    static Lines plays(const std::string& path, bool isThere) {
        Lines lines{
            "+[AVAudioSession sharedInstance]",
            "-[AVAudioSession setCategory:error:] AVAudioSession \"AVAudioSessionCategoryAmbient\"",
            "-[AVAudioSession setActive:error:] AVAudioSession YES",
            "-[AVAudioPlayer initWithContentsOfURL:error:] " + path};
        if (isThere) {
            lines.push_back("-[AVAudioPlayer prepareToPlay] AVAudioPlayer");
            lines.push_back("-[AVAudioPlayer play] AVAudioPlayer");
        }
        return lines;
    }

    static void setSoundID(double number) { setAnswer(kSoundID, number); }

    _UIFeedback* feedback = named([[_UIFeedback alloc] init], "feedback");
    SBUISound* first = named([[SBUISound alloc] init], "first");
    SBUISound* second = named([[SBUISound alloc] init], "second");
    SBUISound* third = named([[SBUISound alloc] init], "third");
    Call play = [this] { [feedback play]; };
    Call ask = [] { [SBUISound soundWithFeedbackEventType:1002]; };
};

using FeedbackRow = SystemSounds;
using SoundRow = SystemSounds;

TEST_F(FeedbackRow, OffPlaysThePlatformsAlone) {
    settings({"A"}, {});
    setSoundID(1002);
    play();
    EXPECT_EQ(taken(), Lines{sentTo("feedback", kPlay)});
    settings({"A"}, {"enableLogging"});
    play();
    EXPECT_EQ(taken(), (Lines{sentTo("feedback", kSoundID), sentTo("feedback", kPlay)}));
    EXPECT_EQ(logLines(),
              Lines{"VELMORANTH UIDevice _playSystemSound:_effectiveSystemSoundID : 1002"});
}

TEST_F(FeedbackRow, OnPlaysTheThemesSoundBeforeThePlatforms) {
    settings({"A"}, {"enable", "enableLogging"});
    setAnswers(kSoundID, {1100, 1002});
    play();
    EXPECT_EQ(taken(), joined({{sentTo("feedback", kSoundID), sentTo("feedback", kSoundID)},
                               plays(kLock, true),
                               {sentTo("feedback", kPlay)}}));
    EXPECT_EQ(logLines(),
              Lines{"VELMORANTH UIDevice _playSystemSound:_effectiveSystemSoundID : 1100"});
    EXPECT_EQ(playingPlayers().size(), 1U);
    EXPECT_EQ(living("AVAudioPlayer"), 1);
}

TEST_F(FeedbackRow, NumbersHave32BitsWithoutASign) {
    settings({"A"}, {"enable", "enableLogging"});
    for (const auto& [number, line] :
         {std::pair<double, std::string>{0, "0"}, {4294967295.0, "4294967295"}}) {
        setSoundID(number);
        clearLog();
        clearJournal();
        play();
        EXPECT_EQ(taken(), joined({{sentTo("feedback", kSoundID), sentTo("feedback", kSoundID)},
                                   plays("/Library/Themes/A/UISounds", false),
                                   {sentTo("feedback", kPlay)}}));
        EXPECT_EQ(logLines(), Lines{"VELMORANTH UIDevice _playSystemSound:_effectiveSystemSoundID "
                                    ": " +
                                    line});
    }
}

TEST_F(FeedbackRow, WithoutTheThemesFolderThePlatformsIsPlayedStill) {
    settings({"B"}, {"enable"});
    setSoundID(1002);
    play();
    EXPECT_EQ(taken(), (Lines{sentTo("feedback", kSoundID), sentTo("feedback", kPlay)}));
}

TEST_F(FeedbackRow, LeavesNothingBehindAndPassesExceptionsOn) {
    setSoundID(1002);
    for (const char* const enable : {"enableLogging", "enable"}) {
        settings({"A"}, {enable});
        expectNothingLeft(play);
        expectExceptionsToPass(kPlay, play);
        expectExceptionsToPass(kSoundID, play);
    }
    expectExceptionsToPass("-[AVAudioPlayer play]", play);
    EXPECT_EQ(living("AVAudioPlayer"), 1);  // the newest
    EXPECT_EQ([feedback retainCount], 1U);
}

TEST_F(FeedbackRow, MissingAudioHarmsNothing) {
    hideClass("AVAudioSession");
    hideClass("AVAudioPlayer");
    settings({"A"}, {"enable"});
    setSoundID(1002);
    play();
    EXPECT_EQ(taken(), (Lines{sentTo("feedback", kSoundID), sentTo("feedback", kPlay)}));
}

TEST_F(SoundRow, OffIsThePlatformsSecond) {
    settings({"A"}, {});
    for (const id answer :
         {static_cast<id>(second), static_cast<id>(nil), static_cast<id>(@"no sound")}) {
        setAnswers(kSound, {first, answer, third});
        EXPECT_EQ(address([SBUISound soundWithFeedbackEventType:1002]), address(answer));
        EXPECT_EQ(taken(), (Lines{soundCall("1002"), soundCall("1002")}));
    }
}

TEST_F(SoundRow, OffAndLoggedIsThePlatformsThird) {
    settings({"A"}, {"enableLogging"});
    for (const id answer : {static_cast<id>(second), static_cast<id>(nil)}) {
        setAnswers(kSound, {first, answer, third, first});
        clearLog();
        EXPECT_EQ(address([SBUISound soundWithFeedbackEventType:1002]), address(third));
        EXPECT_EQ(taken(), (Lines{soundCall("1002"), soundCall("1002"), soundCall("1002")}));
        EXPECT_EQ(logLines(), Lines{"VELMORANTH SBUISounds soundWithFeedbackEventType:1002  " +
                                    describe(answer)});
    }
}

TEST_F(SoundRow, OnIsNilAndTheThemesIsPlayed) {
    settings({"A"}, {"enable"});
    setAnswer(kSound, first);
    EXPECT_EQ(address([SBUISound soundWithFeedbackEventType:1002]), nullptr);
    EXPECT_EQ(taken(), joined({{soundCall("1002")}, plays(kLock, true)}));
    EXPECT_EQ(address([SBUISound soundWithFeedbackEventType:1003]), nullptr);
    EXPECT_EQ(taken(), joined({{soundCall("1003")},
                               plays("/Library/Themes/A/UISounds/Anticipate.caf", false)}));
}

TEST_F(SoundRow, EventTypesHave64Bits) {
    for (const char* const enable : {"enableLogging", "enable"}) {
        settings({"A"}, {enable});
        for (const auto& [type, line] :
             {std::pair<unsigned long long, std::string>{
                  std::numeric_limits<unsigned long long>::max(), "18446744073709551615"},
              {(1ULL << 32U) + 1002, "4294968298"}}) {
            clearJournal();
            [SBUISound soundWithFeedbackEventType:type];
            for (const std::string& call : journalOf("+[SBUISound")) {
                EXPECT_EQ(call, soundCall(line));
            }
            EXPECT_EQ(living("AVAudioPlayer"), 0);
        }
    }
}

TEST_F(SoundRow, SubclassIsTheReceiver) {
    settings({"A"}, {});
    const Class heir =
        classWithMethodOf("SBHeirSound", [SBUISound class], "dealloc", [SBUISound class]);
    setAnswer(kSound, first);
    clearJournal();
    EXPECT_EQ(address([heir soundWithFeedbackEventType:7]), address(first));
    EXPECT_EQ(taken(), (Lines{"+[SBUISound soundWithFeedbackEventType:] SBHeirSound 7",
                              "+[SBUISound soundWithFeedbackEventType:] SBHeirSound 7"}));
}

TEST_F(SoundRow, LeavesNothingBehindAndPassesExceptionsOn) {
    setAnswer(kSound, first);
    for (const auto& switches :
         {std::initializer_list<const char*>{}, {"enableLogging"}, {"enable"}}) {
        settings({"A"}, switches);
        expectNothingLeft(ask);
        expectExceptionsToPass(kSound, ask);
        EXPECT_EQ([first retainCount], 2U);  // the pool's and the answer's
    }
    expectExceptionsToPass("-[AVAudioPlayer play]", ask);
}

}  // namespace
}  // namespace velmoranth::standins::sound_rows_test
