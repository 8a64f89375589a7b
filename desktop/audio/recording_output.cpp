#include "desktop/audio/recording_output.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace velmoranth::desktop {

namespace {

// The most pulled at once; a sound card asks for as little.
constexpr std::size_t kBlockFrames = 1024;

void append(platform::Data& file, std::string_view text) {
    file.insert(file.end(), text.begin(), text.end());
}

void appendLittleEndian(platform::Data& file, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

}  // namespace

void RecordingOutput::advance(double seconds) {
    clock_ += seconds;
    const auto target = static_cast<std::size_t>(std::llround(clock_ * mixer_.sampleRate()));
    const std::size_t frames = samples_.size() / kChannels;
    if (target > frames) {
        const double clock = clock_;
        advanceFrames(target - frames);
        clock_ = clock;  // not rounded to a frame
    }
}

void RecordingOutput::advanceFrames(std::size_t frames) {
    while (frames > 0) {
        const std::size_t block = std::min(frames, kBlockFrames);
        const std::size_t before = samples_.size();
        samples_.resize(before + block * kChannels);
        mixer_.render(std::span(samples_).subspan(before));
        frames -= block;
    }
    clock_ = seconds();
}

void RecordingOutput::advanceToEnd(double longest) {
    const double end = seconds() + longest;
    while (mixer_.isPlaying() && seconds() < end) {
        const auto rest =
            static_cast<std::size_t>(std::ceil((end - seconds()) * mixer_.sampleRate()));
        advanceFrames(std::clamp<std::size_t>(rest, 1, kBlockFrames));
    }
}

double RecordingOutput::seconds() const {
    const std::size_t frames = samples_.size() / kChannels;
    return static_cast<double>(frames) / mixer_.sampleRate();
}

platform::Data writeWav(std::span<const float> stereo, int sampleRate) {
    constexpr std::uint32_t kSampleBytes = 2;
    constexpr std::uint32_t kFrameBytes = kSampleBytes * kChannels;
    constexpr std::uint32_t kHeadBytes = 36;  // of the file after its first eight bytes
    // What the format's 32-bit sizes can say.
    const std::size_t frames =
        std::min<std::size_t>(stereo.size() / kChannels, (UINT32_MAX - kHeadBytes) / kFrameBytes);
    const auto dataBytes = static_cast<std::uint32_t>(frames * kFrameBytes);
    const auto rate = static_cast<std::uint32_t>(sampleRate);

    platform::Data file;
    file.reserve(kHeadBytes + 8 + dataBytes);
    append(file, "RIFF");
    appendLittleEndian(file, kHeadBytes + dataBytes, 4);
    append(file, "WAVEfmt ");
    appendLittleEndian(file, 16, 4);
    appendLittleEndian(file, 1, 2);  // linear PCM
    appendLittleEndian(file, kChannels, 2);
    appendLittleEndian(file, rate, 4);
    appendLittleEndian(file, rate * kFrameBytes, 4);
    appendLittleEndian(file, kFrameBytes, 2);
    appendLittleEndian(file, kSampleBytes * 8, 2);
    append(file, "data");
    appendLittleEndian(file, dataBytes, 4);
    constexpr float kFullScale = 32767;
    for (const float sample : stereo.first(frames * kChannels)) {
        const float limited = std::clamp(sample, -1.0F, 1.0F) * kFullScale;
        // A sample that is no number is silent.
        const auto value = std::isnan(limited) ? 0 : std::lround(limited);
        appendLittleEndian(file, static_cast<std::uint16_t>(value), kSampleBytes);
    }
    return file;
}

}  // namespace velmoranth::desktop
