#include "desktop/audio/mixer.h"

#include "audio_fixture.h"

#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

namespace velmoranth::desktop::mixer_test {
namespace {

std::unique_ptr<SoundStream> constant(std::size_t frames, float value) {
    return std::make_unique<ConstantSound>(frames, value);
}

std::vector<float> rendered(Mixer& mixer, std::size_t frames) {
    std::vector<float> samples(frames * kChannels, 9);
    mixer.render(samples);
    return samples;
}

std::vector<float> flat(std::size_t frames, float value) {
    return std::vector<float>(frames * kChannels, value);
}

TEST(Mixer, IsSilentWithoutVoices) {
    Mixer mixer;
    EXPECT_EQ(rendered(mixer, 3), flat(3, 0));
    EXPECT_EQ(mixer.position(), 3U);
    EXPECT_FALSE(mixer.isPlaying());
    EXPECT_EQ(mixer.sampleRate(), 44100);
}

TEST(Mixer, AddsVoicesAtTheirVolumes) {
    Mixer mixer;
    const auto quiet = mixer.start(constant(4, 0.5F), "quiet", 0.05F);
    const auto loud = mixer.start(constant(2, 0.25F), "loud");
    EXPECT_TRUE(mixer.isPlaying());
    EXPECT_EQ(rendered(mixer, 6),
              (std::vector<float>{0.5F * 0.05F + 0.25F, 0.5F * 0.05F + 0.25F, 0.5F * 0.05F + 0.25F,
                                  0.5F * 0.05F + 0.25F, 0.5F * 0.05F, 0.5F * 0.05F, 0.5F * 0.05F,
                                  0.5F * 0.05F, 0, 0, 0, 0}));
    EXPECT_FALSE(quiet->isPlaying());
    EXPECT_FALSE(loud->isPlaying());
    EXPECT_FALSE(mixer.isPlaying());
}

TEST(Mixer, LimitsWhatIsTooLoud) {
    Mixer mixer;
    const auto one = mixer.start(constant(1, 0.75F), "one");
    const auto two = mixer.start(constant(1, 0.75F), "two");
    EXPECT_EQ(rendered(mixer, 1), flat(1, 1));
    const auto three = mixer.start(constant(1, -0.75F), "three");
    const auto four = mixer.start(constant(1, -0.75F), "four");
    EXPECT_EQ(rendered(mixer, 1), flat(1, -1));
}

TEST(Mixer, StopsWithItsHolder) {
    Mixer mixer;
    auto voice = mixer.start(constant(100, 0.5F), "voice");
    EXPECT_EQ(rendered(mixer, 3), flat(3, 0.5F));
    voice.reset();
    EXPECT_FALSE(mixer.isPlaying());
    EXPECT_EQ(rendered(mixer, 3), flat(3, 0));
}

TEST(Mixer, VolumeHoldsFromTheNextFrame) {
    Mixer mixer;
    const auto voice = mixer.start(constant(100, 0.5F), "voice");
    EXPECT_EQ(rendered(mixer, 1), flat(1, 0.5F));
    voice->setVolume(0.5F);
    EXPECT_EQ(rendered(mixer, 1), flat(1, 0.25F));
    EXPECT_EQ(voice->volume(), 0.5F);
}

TEST(Mixer, OtherAudioPlaysUntilItIsInterrupted) {
    Mixer mixer;
    EXPECT_FALSE(mixer.isOtherAudioPlaying());
    mixer.startOtherAudio(constant(100, 0.5F), "music", 0.5F);
    EXPECT_TRUE(mixer.isOtherAudioPlaying());
    EXPECT_FALSE(mixer.isPlaying());  // not one of the process
    EXPECT_EQ(rendered(mixer, 2), flat(2, 0.25F));
    const auto voice = mixer.start(constant(100, 0.125F), "voice");
    mixer.interruptOtherAudio();
    EXPECT_FALSE(mixer.isOtherAudioPlaying());
    EXPECT_EQ(rendered(mixer, 2), flat(2, 0.125F));
}

TEST(Mixer, OtherAudioEnds) {
    Mixer mixer;
    mixer.startOtherAudio(constant(2, 0.5F), "music");
    EXPECT_EQ(rendered(mixer, 3), (std::vector<float>{0.5F, 0.5F, 0.5F, 0.5F, 0, 0}));
    EXPECT_FALSE(mixer.isOtherAudioPlaying());
}

TEST(JournaledOutput, KeepsAJournalOfVoices) {
    Mixer mixer(1000);
    JournaledOutput output(mixer);
    mixer.startOtherAudio(constant(1000, 0), "music");
    output.advance(0.1);
    const auto first = mixer.start(constant(200, 0), "first", 0.5F);
    output.advance(0.05);
    auto second = mixer.start(constant(500, 0), "second");
    output.advance(0.25);
    second.reset();
    mixer.interruptOtherAudio();
    output.advance(0.0004);  // less than half a frame
    EXPECT_EQ(output.samples().size(), 2 * 400U);
    output.advance(0.0004);
    EXPECT_EQ(output.samples().size(), 2 * 401U);

    const auto& journal = output.journal();
    ASSERT_EQ(journal.size(), 3U);
    EXPECT_EQ(journal[0].name, "music");
    EXPECT_EQ(journal[0].start, 0);
    EXPECT_EQ(journal[0].end, 0.4);
    EXPECT_EQ(journal[0].ending, VoiceEnding::interrupted);
    EXPECT_EQ(journal[0].over, std::vector<std::string>{});
    EXPECT_EQ(journal[1].name, "first");
    EXPECT_EQ(journal[1].volume, 0.5F);
    EXPECT_EQ(journal[1].start, 0.1);
    EXPECT_EQ(journal[1].end, 0.3);
    EXPECT_EQ(journal[1].ending, VoiceEnding::finished);
    EXPECT_EQ(journal[1].over, std::vector<std::string>{"music"});
    EXPECT_EQ(journal[2].name, "second");
    EXPECT_EQ(journal[2].volume, 1.0F);
    EXPECT_EQ(journal[2].start, 0.15);
    EXPECT_EQ(journal[2].end, 0.4);
    EXPECT_EQ(journal[2].ending, VoiceEnding::stopped);
    EXPECT_EQ(journal[2].over, (std::vector<std::string>{"music", "first"}));
}

TEST(RecordingOutput, CountsFromWhereTheMixerIs) {
    Mixer mixer(1000);
    static_cast<void>(rendered(mixer, 500));
    JournaledOutput output(mixer);
    const auto voice = mixer.start(constant(100, 0.5F), "voice");
    output.advanceToEnd(10);
    EXPECT_EQ(output.journal().at(0).start, 0);
    EXPECT_EQ(output.journal().at(0).end, 0.1);
    EXPECT_LE(output.seconds(), 1.1);
    const auto endless = mixer.start(constant(1'000'000, 0.5F), "endless");
    const double before = output.seconds();
    output.advanceToEnd(2.5);
    EXPECT_NEAR(output.seconds() - before, 2.5, 1e-9);
    EXPECT_FALSE(output.journal().at(1).ending);
}

TEST(WriteWav, IsReadAgainAsItWas) {
    std::vector<float> samples;
    for (int i = -32767; i < 32767; i += 6) {
        samples.insert(samples.end(),
                       {static_cast<float>(i) / 32767, -static_cast<float>(i) / 32767});
    }
    const platform::Data wav = writeWav(samples, 22050);
    const auto decoder = SoundDecoder::open(SoundFile::ofData(wav, "wav"), 22050);
    ASSERT_TRUE(decoder) << toLine(decoder.error());
    EXPECT_EQ((*decoder)->format().sampleRate, 22050);
    const std::vector<float> frames = framesOf(**decoder);
    ASSERT_EQ(frames.size(), samples.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        ASSERT_EQ(std::lround(frames[i] * 32768), std::lround(samples[i] * 32767)) << i;
    }
}

TEST(WriteWav, LimitsLoudSamplesAndSilencesNoNumbers) {
    const std::vector<float> samples{2, -2, std::numeric_limits<float>::quiet_NaN(), 0.5F, 0.25F};
    const platform::Data wav = writeWav(samples);  // the odd one out is no frame
    ASSERT_EQ(wav.size(), 44U + 8);
    const std::vector<std::uint8_t> tail(wav.begin() + 44, wav.end());
    EXPECT_EQ(tail, (std::vector<std::uint8_t>{0xFF, 0x7F, 0x01, 0x80, 0, 0, 0, 0x40}));
    EXPECT_EQ(writeWav({}).size(), 44U);
}

// Voices come and go while another thread pulls.
TEST(Mixer, IsPulledByAnotherThread) {
    Mixer mixer;
    std::atomic<bool> stops = false;
    std::thread puller([&] {
        std::vector<float> samples(64 * kChannels);
        while (!stops) {
            mixer.render(samples);
        }
    });
    std::vector<std::shared_ptr<Voice>> voices(8);
    for (std::size_t i = 0; i < 20000; ++i) {
        auto& voice = voices[i % voices.size()];
        voice = mixer.start(constant(i % 300, 0.01F), "voice");
        voice->setVolume(0.5F);
        if (i % 100 == 0) {
            mixer.startOtherAudio(constant(1000, 0.01F), "music");
            mixer.interruptOtherAudio();
        }
    }
    const auto last = mixer.start(constant(1000, 0.01F), "last");
    while (last->isPlaying()) {
        std::this_thread::yield();
    }
    voices.clear();
    stops = true;
    puller.join();
    EXPECT_FALSE(mixer.isPlaying());
}

}  // namespace
}  // namespace velmoranth::desktop::mixer_test
