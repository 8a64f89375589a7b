// Keeps what would be heard: pulls the mixer on a clock that its user moves, and keeps the samples.
// Nothing sounds and nothing waits.
#pragma once

#include "desktop/audio/mixer.h"
#include "desktop/audio/sound_output.h"
#include "platform/foundation.h"

#include <cstddef>
#include <span>
#include <vector>

namespace velmoranth::desktop {

class RecordingOutput : public SoundOutput {
  public:
    explicit RecordingOutput(Mixer& mixer) : mixer_(mixer) {}

    void open() override {}

    // Pulls as many frames as bring the clock forward by that; parts of a frame add up.
    void advance(double seconds);
    void advanceFrames(std::size_t frames);
    // Pulls until no voice plays (other audio does not count) or `longest` seconds have passed.
    void advanceToEnd(double longest);

    // The clock: seconds since the output was made.
    [[nodiscard]] double seconds() const;

    // All frames so far, interleaved.
    [[nodiscard]] const std::vector<float>& samples() const { return samples_; }

  private:
    Mixer& mixer_;
    double clock_ = 0;  // seconds asked for
    std::vector<float> samples_;
};

// A WAV file of stereo frames, 16 bits a sample; louder than full level is limited.
[[nodiscard]] platform::Data writeWav(std::span<const float> stereo,
                                      int sampleRate = Mixer::kDefaultSampleRate);

}  // namespace velmoranth::desktop
