#include "desktop/audio/audio_session.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmoranth::desktop::audio_session_test {
namespace {

TEST(RecordedAudioSession, KeepsItsCategory) {
    RecordedAudioSession session;
    EXPECT_EQ(session.category(), "AVAudioSessionCategorySoloAmbient");
    EXPECT_TRUE(session.setCategory("AVAudioSessionCategoryAmbient"));
    EXPECT_FALSE(session.setCategory("Ambient"));
    EXPECT_EQ(session.category(), "AVAudioSessionCategoryAmbient");
    EXPECT_EQ(session.requests(),
              (std::vector<std::string>{"AVAudioSessionCategoryAmbient", "Ambient"}));
}

TEST(RecordedAudioSession, TellsTheDevice) {
    int interruptions = 0;
    bool playing = false;
    RecordedAudioSession session(
        {.interruptOthers = [&] { ++interruptions; }, .isPlaying = [&] { return playing; }});
    EXPECT_TRUE(session.setCategory("AVAudioSessionCategoryPlayback"));
    EXPECT_TRUE(session.setActive(false));
    EXPECT_EQ(interruptions, 0);
    EXPECT_TRUE(session.setActive(true));
    EXPECT_EQ(interruptions, 1);
    EXPECT_TRUE(session.setCategory("AVAudioSessionCategoryAmbient"));
    EXPECT_EQ(interruptions, 1);
    playing = true;
    EXPECT_FALSE(session.setActive(false));
    EXPECT_TRUE(session.isActive());
    playing = false;
    EXPECT_TRUE(session.setActive(false));
    EXPECT_FALSE(session.isActive());
}

}  // namespace
}  // namespace velmoranth::desktop::audio_session_test
