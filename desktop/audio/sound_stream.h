// Sound as it is played: frames of two channels, one after another, until they end.
#pragma once

#include <cstddef>
#include <span>

namespace velmoranth::desktop {

// A frame is two samples of 32-bit float, left and right, -1 to 1 at full level.
inline constexpr std::size_t kChannels = 2;

class SoundStream {
  public:
    SoundStream() = default;
    SoundStream(const SoundStream&) = delete;
    SoundStream& operator=(const SoundStream&) = delete;
    virtual ~SoundStream() = default;

    // Fills `stereo` (whole frames, interleaved) from its start. The number of frames written;
    // fewer than fit once, and only once, the sound is over.
    [[nodiscard]] virtual std::size_t read(std::span<float> stereo) = 0;
};

}  // namespace velmoranth::desktop
