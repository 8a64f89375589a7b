// A device root with sounds, and everything that plays them but a sound card.
#pragma once

#include "desktop/audio/audio.h"
#include "desktop/audio/mixer.h"
#include "desktop/audio/sound_decoder.h"
#include "desktop/audio/sound_file.h"
#include "desktop/files/create_device_root.h"
#include "desktop/files/device_root.h"
#include "tests/support/sounds/sounds.h"
#include "tests/support/temporary_folder.h"

#include "journaled_output.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoranth::desktop {

inline platform::Data bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

inline SoundFile fileOf(std::string_view text) {
    return SoundFile::ofData(bytesOf(text), "sound");
}

inline Result<std::unique_ptr<SoundDecoder>> decoderOf(std::string_view text,
                                                       int sampleRate = 44100) {
    return SoundDecoder::open(fileOf(text), sampleRate);
}

// All frames, interleaved, at most so many.
inline std::vector<float> framesOf(SoundStream& sound, std::size_t mostFrames = 10'000'000) {
    constexpr std::size_t kBlock = 1000;
    std::vector<float> frames;
    while (frames.size() / kChannels < mostFrames) {
        const std::size_t before = frames.size();
        frames.resize(before + kBlock * kChannels);
        const std::size_t got = sound.read(std::span(frames).subspan(before));
        frames.resize(before + got * kChannels);
        if (got < kBlock) {
            break;
        }
    }
    return frames;
}

// Stereo frames of one value.
class ConstantSound final : public SoundStream {
  public:
    ConstantSound(std::size_t frames, float value) : frames_(frames), value_(value) {}

    std::size_t read(std::span<float> stereo) override {
        const std::size_t count = std::min(frames_, stereo.size() / kChannels);
        std::fill_n(stereo.begin(), count * kChannels, value_);
        frames_ -= count;
        return count;
    }

  private:
    std::size_t frames_;
    float value_;
};

class AudioTest : public testing::Test {
  protected:
    AudioTest()
        : root_(createDeviceRoot(folder_ / "device").value()), audio_(root_, mixer_, output_) {}

    void file(const std::string& path, const std::string& contents) const {
        folder_.file("device" + path, contents);
    }

    [[nodiscard]] platform::AudioPlayerRef player(const std::string& contents) {
        return audio_.audioPlayerWithData(bytesOf(contents));
    }

    // Samples from a frame to another, interleaved.
    [[nodiscard]] std::span<const float> heard(std::size_t from, std::size_t to) const {
        return std::span(output_.samples()).subspan(from * kChannels, (to - from) * kChannels);
    }

    const tests::TemporaryFolder folder_;
    std::shared_ptr<DeviceRoot> root_;
    Mixer mixer_;
    JournaledOutput output_{mixer_};
    DesktopAudio audio_;
};

}  // namespace velmoranth::desktop
