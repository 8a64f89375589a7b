#include "audio_fixture.h"

#include <cmath>

// Every kind of file that is played: its duration, frequency and level against the tone that it was
// made from.
namespace velmoranth::desktop::sound_kinds_test {
namespace {

using tests::frequencyOf;
using tests::levelOf;
using tests::soundFile;
using tests::Tone;

struct Kind {
    std::string muxer;
    std::string encoder;
    std::string container;
    std::string codec;
    double levelError;
    double paddingSeconds;  // what the encoder puts around the sound, at most
    int sampleRate = 44100;
    int channels = 2;
};

std::string nameOf(const Kind& kind) {
    return kind.muxer + "_" + kind.encoder + "_" + std::to_string(kind.sampleRate) + "_" +
           std::to_string(kind.channels);
}

std::string caseName(const testing::TestParamInfo<Kind>& info) {
    return nameOf(info.param);
}

// How a failed case calls it.
void PrintTo(const Kind& kind, std::ostream* out) {
    *out << nameOf(kind);
}

class SoundKinds : public testing::TestWithParam<Kind> {};

TEST_P(SoundKinds, SoundsAsItWasMade) {
    const Kind& kind = GetParam();
    const Tone tone{.frequency = 440,
                    .level = 0.5,
                    .seconds = 0.5,
                    .sampleRate = kind.sampleRate,
                    .channels = kind.channels};
    const auto decoder = decoderOf(soundFile(kind.muxer, kind.encoder, tone));
    ASSERT_TRUE(decoder) << toLine(decoder.error());
    EXPECT_EQ((*decoder)->format().container, kind.container);
    EXPECT_EQ((*decoder)->format().codec, kind.codec);
    EXPECT_EQ((*decoder)->format().channels, kind.channels);
    EXPECT_EQ((*decoder)->format().sampleRate, kind.sampleRate);
    if (kind.container != "aac") {  // which has no place for it
        EXPECT_NEAR((*decoder)->format().seconds.value_or(0), 0.5, kind.paddingSeconds + 1e-3);
    }
    const std::vector<float> frames = framesOf(**decoder);
    const double seconds = static_cast<double>(frames.size() / 2) / 44100;
    EXPECT_GE(seconds, 0.5 - 1e-4);
    EXPECT_LE(seconds, 0.5 + kind.paddingSeconds + 1e-3);
    EXPECT_FALSE((*decoder)->problem());
    const auto middle = std::span(frames).subspan(2 * 8820, 2 * 8820);  // 88 whole waves
    for (const std::size_t side : {0U, 1U}) {
        EXPECT_NEAR(frequencyOf(middle, 44100, side), 440, 0.5);
        EXPECT_NEAR(levelOf(middle, 440, 44100, side), 0.5, kind.levelError);
        EXPECT_LT(levelOf(middle, 880, 44100, side), 0.02);
    }
}

constexpr double kExact = 1e-4;
constexpr double kEightBits = 6e-3;
constexpr double kLossy = 0.02;
constexpr double kPacket = 0.12;

INSTANTIATE_TEST_SUITE_P(
    Files, SoundKinds,
    testing::Values(Kind{"caf", "pcm_s16le", "caf", "pcm_s16le", kExact, 0},
                    Kind{"caf", "pcm_s16be", "caf", "pcm_s16be", kExact, 0},
                    Kind{"caf", "pcm_s24le", "caf", "pcm_s24le", kExact, 0},
                    Kind{"caf", "pcm_s24be", "caf", "pcm_s24be", kExact, 0},
                    Kind{"caf", "pcm_s32le", "caf", "pcm_s32le", kExact, 0},
                    Kind{"caf", "pcm_f32be", "caf", "pcm_f32be", kExact, 0},
                    Kind{"caf", "pcm_f32le", "caf", "pcm_f32le", kExact, 0},
                    Kind{"caf", "pcm_f64be", "caf", "pcm_f64be", kExact, 0},
                    Kind{"caf", "pcm_s8", "caf", "pcm_s8", kEightBits, 0},
                    Kind{"caf", "pcm_mulaw", "caf", "pcm_mulaw", kLossy, 0},
                    Kind{"caf", "pcm_alaw", "caf", "pcm_alaw", kLossy, 0},
                    Kind{"caf", "adpcm_ima_qt", "caf", "adpcm_ima_qt", kLossy, kPacket},
                    Kind{"caf", "adpcm_ima_qt", "caf", "adpcm_ima_qt", kLossy, kPacket, 22050, 1},
                    Kind{"caf", "aac", "caf", "aac", kLossy, kPacket},
                    Kind{"caf", "aac", "caf", "aac", kLossy, kPacket, 44100, 1},
                    Kind{"caf", "alac", "caf", "alac", kExact, kPacket},
                    Kind{"caf", "pcm_s16le", "caf", "pcm_s16le", kExact, 1e-3, 48000, 2},
                    Kind{"caf", "pcm_s16le", "caf", "pcm_s16le", kExact, 1e-3, 22050, 1},
                    Kind{"caf", "pcm_s16le", "caf", "pcm_s16le", 1e-3, 1e-2, 8000, 1},
                    Kind{"caf", "pcm_s16le", "caf", "pcm_s16le", 1e-3, 1e-3, 96000, 2},
                    Kind{"aiff", "pcm_s16be", "aiff", "pcm_s16be", kExact, 0},
                    Kind{"aiff", "pcm_s24be", "aiff", "pcm_s24be", kExact, 0},
                    Kind{"aiff", "pcm_s16le", "aiff", "pcm_s16le", kExact, 0},  // AIFF-C, "sowt"
                    Kind{"aiff", "pcm_f32be", "aiff", "pcm_f32be", kExact, 0},  // AIFF-C, "fl32"
                    Kind{"aiff", "pcm_mulaw", "aiff", "pcm_mulaw", kLossy, 0},  // AIFF-C, "ulaw"
                    Kind{"wav", "pcm_s16le", "wav", "pcm_s16le", kExact, 1e-3},
                    Kind{"wav", "pcm_u8", "wav", "pcm_u8", kEightBits, 1e-3},
                    Kind{"wav", "adpcm_ima_wav", "wav", "adpcm_ima_wav", kLossy, kPacket},
                    Kind{"ipod", "aac", "mov", "aac", kLossy, kPacket},
                    Kind{"ipod", "alac", "mov", "alac", kExact, kPacket},
                    Kind{"mp3", "libmp3lame", "mp3", "mp3", 0.03, kPacket},
                    Kind{"adts", "aac", "aac", "aac", kLossy, kPacket}),
    caseName);

TEST(SoundDecoder, LinearSamplesComeOutAsTheyAre) {
    std::vector<float> samples;
    for (int i = -32768; i < 32768; i += 7) {
        samples.push_back(static_cast<float>(i) / 32768);
    }
    samples.resize(samples.size() / 2 * 2);
    for (const auto& [muxer, encoder] : {std::pair{"caf", "pcm_s16le"},
                                         {"caf", "pcm_s16be"},
                                         {"caf", "pcm_f32le"},
                                         {"aiff", "pcm_s16be"},
                                         {"aiff", "pcm_s16le"},
                                         {"wav", "pcm_s16le"},
                                         {"caf", "alac"}}) {
        const auto decoder = decoderOf(soundFile(muxer, encoder, samples, 44100, 2));
        ASSERT_TRUE(decoder) << muxer << encoder;
        std::vector<float> frames = framesOf(**decoder);
        ASSERT_GE(frames.size(), samples.size()) << muxer << encoder;
        frames.resize(samples.size());  // ALAC ends with a whole packet
        EXPECT_EQ(frames, samples) << muxer << encoder;
    }
}

TEST(SoundDecoder, MonoIsAsLoudOnBothSides) {
    const std::vector<float> samples{0, 0.5F, -0.5F, 1.0F / 32768, -1};
    const auto decoder = decoderOf(soundFile("caf", "pcm_s16le", samples, 44100, 1));
    ASSERT_TRUE(decoder);
    EXPECT_EQ(framesOf(**decoder), (std::vector<float>{0, 0, 0.5F, 0.5F, -0.5F, -0.5F, 1.0F / 32768,
                                                       1.0F / 32768, -1, -1}));
}

TEST(SoundDecoder, EightChannelsAreMixedDownWithoutClipping) {
    const auto decoder =
        decoderOf(soundFile("caf", "pcm_s16le", Tone{.level = 0.99, .channels = 8}));
    ASSERT_TRUE(decoder) << toLine(decoder.error());
    const std::vector<float> frames = framesOf(**decoder);
    EXPECT_EQ(frames.size() / 2, 22050U);
    EXPECT_GT(tests::peakOf(frames), 0.5F);
    EXPECT_LE(tests::peakOf(frames), 1.0F);
}

TEST(SoundDecoder, ComesAtTheRateAskedFor) {
    const std::string file = tests::cafFile({.frequency = 1000, .sampleRate = 44100});
    for (const int rate : {8000, 22050, 48000, 96000}) {
        const auto decoder = decoderOf(file, rate);
        ASSERT_TRUE(decoder);
        const std::vector<float> frames = framesOf(**decoder);
        EXPECT_NEAR(static_cast<double>(frames.size() / 2) / rate, 0.5, 2e-3) << rate;
        EXPECT_NEAR(frequencyOf(frames, rate), 1000, 1) << rate;
    }
}

// What is before and after the sound in the packets of a file that says so.
TEST(SoundDecoder, PrimingAndRemainderAreNotPlayed) {
    const std::vector<float> samples = tests::samplesOf({.seconds = 1});
    const auto whole = decoderOf(tests::aacCaf(samples, 44100, 2));
    ASSERT_TRUE(whole);
    const std::vector<float> all = framesOf(**whole);
    const auto trimmed = decoderOf(
        tests::aacCaf(samples, 44100, 2, {.valid = 20000, .priming = 2112, .remainder = 99}));
    ASSERT_TRUE(trimmed);
    EXPECT_NEAR((*trimmed)->format().seconds.value_or(0), 20000 / 44100.0, 1e-9);
    const std::vector<float> part = framesOf(**trimmed);
    ASSERT_EQ(part.size(), 40000U);
    EXPECT_TRUE(std::equal(part.begin(), part.end(), all.begin() + 2 * 2112));
}

TEST(SoundDecoder, ReadsInPartsOfAnySize) {
    const std::string file = tests::cafFile({.seconds = 0.1, .sampleRate = 32000});
    const auto whole = decoderOf(file);
    const std::vector<float> all = framesOf(**whole);
    const auto parts = decoderOf(file);
    std::vector<float> frames;
    for (std::size_t size = 1;; size = size * 3 % 1021) {
        const std::size_t before = frames.size();
        frames.resize(before + size * 2);
        const std::size_t got = (*parts)->read(std::span(frames).subspan(before));
        frames.resize(before + got * 2);
        if (got < size) {
            break;
        }
    }
    EXPECT_EQ(frames, all);
    std::vector<float> more(2);
    EXPECT_EQ((*parts)->read(more), 0U);
}

}  // namespace
}  // namespace velmoranth::desktop::sound_kinds_test
