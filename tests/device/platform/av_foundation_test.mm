#import "device/standins/av_foundation.h"

#include "device/platform/counterparts.h"
#include "device/platform/exceptions.h"
#include "device/platform/handles.h"
#include "device/platform/services.h"
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

namespace velmoranth::device::av_foundation_test {
namespace {

using standins::clearJournal;
using standins::journal;

const platform::Data kSound{'c', 'a', 'f', 'f', 0, 1};

AVAudioPlayer* native(const platform::AudioPlayerRef& player) {
    return static_cast<AVAudioPlayer*>(nativeOf(player));
}

// An object of the engine.
class Delegate final : public platform::Object {
  public:
    [[nodiscard]] std::string className() const override { return "Sounds"; }
};

TEST(AudioSessions, AreAskedWithoutAnErrorPointer) {
    @autoreleasepool {
        const platform::AudioSessionRef session = audio().sharedInstance();
        ASSERT_NE(session, nullptr);
        EXPECT_EQ(nativeOf(session), nativeOf(audio().sharedInstance()));
        clearJournal();
        EXPECT_TRUE(session->setCategory(platform::kAudioSessionCategoryAmbient));
        EXPECT_TRUE(session->setActive(true));
        EXPECT_TRUE(session->setActive(false));
        standins::setAnswer("-[AVAudioSession setCategory:error:]", 0);
        standins::setAnswer("-[AVAudioSession setActive:error:]", 0);
        EXPECT_FALSE(session->setCategory("Wrong"));
        EXPECT_FALSE(session->setActive(true));
        EXPECT_EQ(journal(),
                  (Strings{"-[AVAudioSession setCategory:error:] AVAudioSession "
                           "\"AVAudioSessionCategoryAmbient\"",
                           "-[AVAudioSession setActive:error:] AVAudioSession YES",
                           "-[AVAudioSession setActive:error:] AVAudioSession NO",
                           "-[AVAudioSession setCategory:error:] AVAudioSession \"Wrong\"",
                           "-[AVAudioSession setActive:error:] AVAudioSession YES"}));
    }
}

TEST(AudioSessions, AreNeverNil) {
    @autoreleasepool {
        standins::setAnswer("+[AVAudioSession sharedInstance]", nil);
        const platform::AudioSessionRef session = audio().sharedInstance();
        ASSERT_NE(session, nullptr);
        EXPECT_EQ(session, audio().sharedInstance());
        EXPECT_FALSE(session->setCategory(platform::kAudioSessionCategoryAmbient));
        EXPECT_FALSE(session->setActive(true));
    }
}

TEST(AudioPlayers, ReadDataAndPlayWhileTheyAreHeld) {
    @autoreleasepool {
        clearJournal();
        platform::AudioPlayerRef player = audio().audioPlayerWithData(kSound);
        ASSERT_NE(player, nullptr);
        player->setVolume(0.5F);
        EXPECT_TRUE(player->prepareToPlay());
        EXPECT_TRUE(player->play());
        EXPECT_EQ(journal(), (Strings{"-[AVAudioPlayer initWithData:error:] 6 bytes",
                                      "-[AVAudioPlayer setVolume:] AVAudioPlayer 0.5",
                                      "-[AVAudioPlayer prepareToPlay] AVAudioPlayer",
                                      "-[AVAudioPlayer play] AVAudioPlayer"}));
        EXPECT_EQ([native(player)->_data length], 6U);
        EXPECT_EQ(standins::playingPlayers().size(), 1U);
        player.reset();
        EXPECT_EQ(standins::living("AVAudioPlayer"), 0);
        EXPECT_TRUE(standins::playingPlayers().empty());
    }
}

TEST(AudioPlayers, SayThatTheyCouldNot) {
    @autoreleasepool {
        const platform::AudioPlayerRef player = audio().audioPlayerWithData(kSound);
        standins::setAnswer("-[AVAudioPlayer prepareToPlay]", 0);
        standins::setAnswer("-[AVAudioPlayer play]", 0);
        EXPECT_FALSE(player->prepareToPlay());
        EXPECT_FALSE(player->play());
    }
}

TEST(AudioPlayers, AreNilForWhatIsNoSound) {
    @autoreleasepool {
        clearJournal();
        EXPECT_EQ(audio().audioPlayerWithData(std::nullopt), nullptr);
        EXPECT_EQ(journal(), Strings{});
        EXPECT_EQ(audio().audioPlayerWithData(platform::Data{}), nullptr);
        EXPECT_EQ(audio().audioPlayerWithData(platform::Data{'n', 'o', 'n', 'e'}), nullptr);
        EXPECT_EQ(audio().audioPlayerWithContentsOfURL("/no/such/file"), nullptr);
        EXPECT_EQ(audio().audioPlayerWithContentsOfURL("/"), nullptr);
        EXPECT_EQ(standins::living("AVAudioPlayer"), 0);
    }
}

TEST(AudioPlayers, ReadTheFileAtAPath) {
    @autoreleasepool {
        std::string path = std::filesystem::temp_directory_path() / "ä sound.XXXXXX";
        const int file = mkstemp(path.data());
        ASSERT_GE(file, 0);
        ASSERT_EQ(write(file, kSound.data(), kSound.size()), static_cast<ssize_t>(kSound.size()));
        close(file);
        clearJournal();
        const platform::AudioPlayerRef player = audio().audioPlayerWithContentsOfURL(path);
        unlink(path.c_str());
        ASSERT_NE(player, nullptr);
        EXPECT_EQ(journal(), (Strings{"-[AVAudioPlayer initWithContentsOfURL:error:] " + path}));
        EXPECT_TRUE([native(player)->_url isFileURL]);
    }
}

TEST(AudioPlayers, AreGivenTheCounterpartOfTheirDelegate) {
    @autoreleasepool {
        Delegate delegate;
        StandIn* const counterpart = [[[StandIn alloc] init] autorelease];
        const platform::AudioPlayerRef player = audio().audioPlayerWithData(kSound);
        addCounterpart(delegate, counterpart);
        const NSUInteger references = [counterpart retainCount];
        clearJournal();
        player->setDelegate(delegate);
        EXPECT_EQ(native(player)->_delegate, counterpart);
        EXPECT_EQ([counterpart retainCount], references);
        removeCounterpart(delegate);
        player->setDelegate(delegate);
        EXPECT_EQ(journal(), (Strings{"-[AVAudioPlayer setDelegate:] AVAudioPlayer StandIn",
                                      "-[AVAudioPlayer setDelegate:] AVAudioPlayer nil"}));
    }
}

TEST(AudioPlayers, PassOnWhatTheirMessagesRaise) {
    @autoreleasepool {
        const platform::AudioSessionRef session = audio().sharedInstance();
        const platform::AudioPlayerRef player = audio().audioPlayerWithData(kSound);
        Delegate delegate;
        const Operation operations[] = {
            {"-[AVAudioSession setCategory:error:]", [&] { session->setCategory("x"); }},
            {"-[AVAudioSession setActive:error:]", [&] { session->setActive(true); }},
            {"+[AVAudioSession sharedInstance]",
             [] { static_cast<void>(audio().sharedInstance()); }},
            {"-[AVAudioPlayer initWithData:error:]",
             [] { static_cast<void>(audio().audioPlayerWithData(kSound)); }},
            {"-[AVAudioPlayer initWithContentsOfURL:error:]",
             [] { static_cast<void>(audio().audioPlayerWithContentsOfURL("/x")); }},
            {"-[AVAudioPlayer setVolume:]", [&] { player->setVolume(1); }},
            {"-[AVAudioPlayer setDelegate:]", [&] { player->setDelegate(delegate); }},
            {"-[AVAudioPlayer prepareToPlay]", [&] { player->prepareToPlay(); }},
            {"-[AVAudioPlayer play]", [&] { player->play(); }},
        };
        for (const Operation& operation : operations) {
            standins::raiseFrom(operation.method, "Refused");
            EXPECT_EQ(raisedBy(operation.run), "Refused") << operation.method;
        }
    }
}

}  // namespace
}  // namespace velmoranth::device::av_foundation_test
