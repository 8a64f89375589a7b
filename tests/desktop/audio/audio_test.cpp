#include "desktop/audio/audio.h"

#include "audio_fixture.h"
#include "record/recorder.h"

#include <cstddef>
#include <limits>

namespace velmoranth::desktop::audio_test {
namespace {

using tests::cafFile;
using tests::frequencyOf;
using tests::Tone;

class SilentDelegate final : public platform::Object {
  public:
    [[nodiscard]] std::string className() const override { return "NSObject"; }
};

std::vector<float> stereo(const Tone& tone) {
    const auto decoder = decoderOf(cafFile(tone));
    return framesOf(**decoder);
}

std::vector<float> scaled(std::vector<float> samples, float volume) {
    for (float& sample : samples) {
        sample *= volume;
    }
    return samples;
}

TEST_F(AudioTest, PlaysAFileOfTheDevice) {
    file("/Library/Themes/T.theme/UISounds/lock.caf", cafFile({.frequency = 700}));
    const auto player =
        audio_.audioPlayerWithContentsOfURL("/Library/Themes/T.theme/UISounds/lock.caf");
    ASSERT_NE(player, nullptr);
    EXPECT_EQ(player->className(), "AVAudioPlayer");
    EXPECT_TRUE(player->prepareToPlay());
    output_.advance(0.1);
    EXPECT_TRUE(output_.journal().empty());
    EXPECT_TRUE(player->play());
    EXPECT_TRUE(player->play());  // once is enough
    output_.advance(1);
    EXPECT_EQ(tests::peakOf(heard(0, 4410)), 0);
    const std::vector<float> tone = stereo({.frequency = 700});
    EXPECT_TRUE(std::equal(tone.begin(), tone.end(), heard(4410, 4410 + 22050).begin()));
    EXPECT_EQ(tests::peakOf(heard(4410 + 22050, 44100)), 0);
    ASSERT_EQ(output_.journal().size(), 1U);
    EXPECT_EQ(output_.journal()[0].name, "/Library/Themes/T.theme/UISounds/lock.caf");
    EXPECT_EQ(output_.journal()[0].volume, 1);
    EXPECT_EQ(output_.journal()[0].ending, VoiceEnding::finished);
    EXPECT_DOUBLE_EQ(output_.journal()[0].end - output_.journal()[0].start, 0.5);
    EXPECT_FALSE(audio_.lastProblem());
}

TEST_F(AudioTest, PathsStandAsTheyAre) {
    for (const std::string path :
         {"/Library/Themes/100% pure.theme/a%20b.caf", "/Library/Themes/Ünï/キー.caf",
          "/Library/Themes/a?b#c.caf", "/User/Library/x.caf"}) {
        file(path, cafFile({.seconds = 0.01}));
        EXPECT_NE(audio_.audioPlayerWithContentsOfURL(path), nullptr) << path;
    }
    file("/Library/Themes/a b.caf", cafFile({.seconds = 0.01}));
    EXPECT_EQ(audio_.audioPlayerWithContentsOfURL("/Library/Themes/a%20b.caf"), nullptr);
    EXPECT_EQ(toLine(*audio_.lastProblem()),
              "/Library/Themes/a%20b.caf: no such file or directory");
}

TEST_F(AudioTest, PlaysData) {
    const std::string bytes = cafFile({});
    const auto player = audio_.audioPlayerWithData(bytesOf(bytes));
    ASSERT_NE(player, nullptr);
    player->setVolume(0.05F);
    SilentDelegate delegate;
    player->setDelegate(delegate);
    EXPECT_TRUE(player->play());
    output_.advanceFrames(22050);
    const std::vector<float> expected = scaled(stereo({}), 0.05F);
    EXPECT_EQ(output_.samples(), expected);
    EXPECT_EQ(output_.journal().at(0).name, "data of " + std::to_string(bytes.size()) + " bytes");
    EXPECT_EQ(output_.journal().at(0).volume, 0.05F);
}

TEST_F(AudioTest, VolumeIsKeptWithinItsRange) {
    const std::string bytes = cafFile({});
    const auto atVolume = [&](float volume) {
        const auto player = audio_.audioPlayerWithData(bytesOf(bytes));
        player->setVolume(volume);
        player->play();
        return output_.journal().back().volume;
    };
    EXPECT_EQ(atVolume(0), 0);
    EXPECT_EQ(atVolume(-1), 0);
    EXPECT_EQ(atVolume(7), 1);
    EXPECT_EQ(atVolume(0.8F), 0.8F);
    EXPECT_EQ(atVolume(std::numeric_limits<float>::infinity()), 1);
    EXPECT_EQ(atVolume(std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST_F(AudioTest, VolumeChangesWhileItPlays) {
    const auto player = audio_.audioPlayerWithData(bytesOf(cafFile({})));
    player->play();
    output_.advanceFrames(100);
    player->setVolume(0.5F);
    output_.advanceFrames(100);
    std::vector<float> expected = stereo({});
    EXPECT_TRUE(std::equal(expected.begin(), expected.begin() + 200, heard(0, 100).begin()));
    expected = scaled(expected, 0.5F);
    EXPECT_TRUE(
        std::equal(expected.begin() + 200, expected.begin() + 400, heard(100, 200).begin()));
}

TEST_F(AudioTest, TwoPlayersAreHeardTogether) {
    const auto one = player(cafFile({.frequency = 300, .level = 0.25}));
    const auto two = player(cafFile({.frequency = 700, .level = 0.25}));
    one->play();
    two->play();
    output_.advanceFrames(22050);
    const std::vector<float> first = stereo({.frequency = 300, .level = 0.25});
    const std::vector<float> second = stereo({.frequency = 700, .level = 0.25});
    for (std::size_t i = 0; i < first.size(); ++i) {
        ASSERT_EQ(output_.samples()[i], first[i] + second[i]) << i;
    }
    EXPECT_EQ(output_.journal().at(1).over, std::vector<std::string>{output_.journal().at(0).name});
}

TEST_F(AudioTest, ReplacedPlayerStopsAtThatSample) {
    auto current = player(cafFile({.frequency = 300}));
    current->play();
    output_.advanceFrames(1000);
    current = player(cafFile({.frequency = 700}));
    current->play();
    output_.advanceFrames(1000);
    const std::vector<float> first = stereo({.frequency = 300});
    const std::vector<float> second = stereo({.frequency = 700});
    EXPECT_TRUE(std::equal(first.begin(), first.begin() + 2000, heard(0, 1000).begin()));
    EXPECT_TRUE(std::equal(second.begin(), second.begin() + 2000, heard(1000, 2000).begin()));
    EXPECT_EQ(output_.journal().at(0).ending, VoiceEnding::stopped);
    EXPECT_DOUBLE_EQ(output_.journal().at(0).end, 1000 / 44100.0);
    EXPECT_TRUE(output_.journal().at(1).over.empty());
}

TEST_F(AudioTest, PlaysAgainFromTheStart) {
    const auto again = player(cafFile({.seconds = 0.1}));
    again->play();
    output_.advanceFrames(5000);
    EXPECT_TRUE(again->play());
    output_.advanceFrames(5000);
    const std::vector<float> tone = stereo({.seconds = 0.1});
    EXPECT_TRUE(std::equal(tone.begin(), tone.end(), heard(0, 4410).begin()));
    EXPECT_EQ(tests::peakOf(heard(4410, 5000)), 0);
    EXPECT_TRUE(std::equal(tone.begin(), tone.end(), heard(5000, 9410).begin()));
}

// The player has its file open, as the phone's has.
TEST_F(AudioTest, PlaysAFileThatIsRemovedMeanwhile) {
    file("/sound.caf", cafFile({}));
    const auto removed = audio_.audioPlayerWithContentsOfURL("/sound.caf");
    ASSERT_NE(removed, nullptr);
    std::filesystem::remove(folder_ / "device/sound.caf");
    EXPECT_TRUE(removed->play());
    output_.advance(1);
    EXPECT_NEAR(frequencyOf(heard(0, 22050), 44100), 440, 0.1);
    EXPECT_TRUE(removed->play());
}

TEST_F(AudioTest, MusicGoesOnUnderAmbientSounds) {
    mixer_.startOtherAudio(std::make_unique<ConstantSound>(100000, 0.25F), "music");
    const auto session = audio_.sharedInstance();
    EXPECT_EQ(session, audio_.sharedInstance());
    EXPECT_TRUE(session->setCategory("AVAudioSessionCategoryAmbient"));
    EXPECT_TRUE(session->setActive(true));
    const auto click = player(cafFile({.level = 0.5}));
    click->play();
    output_.advanceFrames(22050);
    EXPECT_TRUE(mixer_.isOtherAudioPlaying());
    const std::vector<float> tone = stereo({.level = 0.5});
    for (std::size_t i = 0; i < tone.size(); ++i) {
        ASSERT_EQ(output_.samples()[i], std::min(tone[i] + 0.25F, 1.0F)) << i;
    }
    EXPECT_EQ(output_.journal().at(1).over, std::vector<std::string>{"music"});
}

TEST_F(AudioTest, OtherCategoriesInterruptMusic) {
    for (const std::string category :
         {"", "AVAudioSessionCategorySoloAmbient", "AVAudioSessionCategoryPlayback",
          "AVAudioSessionCategoryPlayAndRecord", "AVAudioSessionCategoryMultiRoute"}) {
        Mixer mixer;
        JournaledOutput output(mixer);
        DesktopAudio audio(root_, mixer, output);
        mixer.startOtherAudio(std::make_unique<ConstantSound>(100000, 0.25F), "music");
        if (!category.empty()) {  // else the default
            EXPECT_TRUE(audio.sharedInstance()->setCategory(category));
        }
        const auto click = audio.audioPlayerWithData(bytesOf(cafFile({})));
        click->prepareToPlay();
        EXPECT_TRUE(mixer.isOtherAudioPlaying()) << category;
        EXPECT_FALSE(audio.session()->isActive());
        click->play();
        EXPECT_FALSE(mixer.isOtherAudioPlaying()) << category;
        EXPECT_TRUE(audio.session()->isActive());
        output.advanceFrames(22050);
        EXPECT_EQ(output.samples(), stereo({})) << category;
        EXPECT_EQ(output.journal().at(0).ending, VoiceEnding::interrupted);
        EXPECT_TRUE(output.journal().at(1).over.empty());
    }
}

TEST_F(AudioTest, SessionInterruptsWhenItIsActiveAndDoesNotMix) {
    mixer_.startOtherAudio(std::make_unique<ConstantSound>(100000, 0.25F), "music");
    const auto session = audio_.sharedInstance();
    session->setCategory("AVAudioSessionCategoryAmbient");
    session->setActive(true);
    EXPECT_TRUE(mixer_.isOtherAudioPlaying());
    session->setCategory("AVAudioSessionCategoryNone");  // refused
    EXPECT_TRUE(mixer_.isOtherAudioPlaying());
    session->setCategory("AVAudioSessionCategoryPlayback");
    EXPECT_FALSE(mixer_.isOtherAudioPlaying());
}

TEST_F(AudioTest, SessionStaysActiveWhileASoundPlays) {
    auto click = player(cafFile({.seconds = 0.1}));
    click->play();
    EXPECT_FALSE(audio_.sharedInstance()->setActive(false));
    EXPECT_TRUE(audio_.session()->isActive());
    output_.advance(0.2);
    EXPECT_TRUE(audio_.sharedInstance()->setActive(false));
    EXPECT_FALSE(audio_.session()->isActive());
}

// An output that counts how often it is opened.
class CountingOutput final : public SoundOutput {
  public:
    void open() override { ++opened; }

    int opened = 0;
};

TEST_F(AudioTest, OutputIsOpenedByPlayingAlone) {
    CountingOutput output;
    DesktopAudio audio(root_, mixer_, output);
    audio.sharedInstance()->setActive(true);
    EXPECT_EQ(audio.audioPlayerWithData(std::nullopt), nullptr);
    const auto click = audio.audioPlayerWithData(bytesOf(cafFile({})));
    click->prepareToPlay();
    EXPECT_EQ(output.opened, 0);
    click->play();
    EXPECT_EQ(output.opened, 1);
}

// What a session and a player are told, the engine being at work or the platform.
std::string toldWhen(record::EntryKind worker, DesktopAudio& audio) {
    record::Recorder recorder;
    record::Recorder::setCurrent(&recorder);
    {
        const record::Frame frame({.kind = worker, .message = "-[A b]"});
        SilentDelegate delegate;
        const platform::AudioSessionRef session = audio.sharedInstance();
        session->setCategory("AVAudioSessionCategoryAmbient");
        session->setCategory("none");
        session->setActive(true);
        const auto click = audio.audioPlayerWithData(bytesOf(cafFile({.seconds = 0.1})));
        click->setDelegate(delegate);
        click->setVolume(0.5F);
        EXPECT_TRUE(click->prepareToPlay());
        EXPECT_TRUE(click->play());
        EXPECT_TRUE(click->play());
        session->setActive(false);
    }
    return record::textOf(recorder.take());
}

TEST_F(AudioTest, WhatTheEngineTellsIsRecorded) {
    EXPECT_EQ(toldWhen(record::EntryKind::entered, audio_),
              "entered    -[A b]\n"
              "  message    -[AVAudioSession setCategory:error:] AVAudioSession "
              "\"AVAudioSessionCategoryAmbient\" = YES\n"
              "  message    -[AVAudioSession setCategory:error:] AVAudioSession \"none\" = NO\n"
              "  message    -[AVAudioSession setActive:error:] AVAudioSession YES = YES\n"
              "  message    -[AVAudioPlayer setDelegate:] AVAudioPlayer NSObject\n"
              "  message    -[AVAudioPlayer setVolume:] AVAudioPlayer 0.5\n"
              "  message    -[AVAudioPlayer prepareToPlay] AVAudioPlayer = YES\n"
              "  message    -[AVAudioPlayer play] AVAudioPlayer = YES\n"
              "  message    -[AVAudioPlayer play] AVAudioPlayer = YES\n"
              "  message    -[AVAudioSession setActive:error:] AVAudioSession NO = NO\n")
        << "that a player makes the session active is its own affair";
    EXPECT_EQ(toldWhen(record::EntryKind::original, audio_), "platform   -[A b]\n");
}

}  // namespace
}  // namespace velmoranth::desktop::audio_test
