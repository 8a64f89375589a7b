#include "desktop/audio/audio_session.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmoranth::desktop {
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

}  // namespace
}  // namespace velmoranth::desktop
