// Brings decoded frames to the mixer's: interleaved stereo floats at its sample rate. Mono goes to
// both sides at its own level.
#pragma once

#include "desktop/audio/sound_stream.h"

#include <memory>
#include <vector>

struct AVFrame;

namespace velmoranth::desktop {

class FrameConverter {
  public:
    explicit FrameConverter(int sampleRate);
    ~FrameConverter();

    // Gets ready for what is like `frame`, of which it says how many channels at which rate;
    // appends to `samples` what is left of frames unlike it. False when it cannot be converted.
    [[nodiscard]] bool prepare(const AVFrame& frame, std::vector<float>& samples);
    // Appends `count` frames of the one that it is prepared for, from the one at `start` on.
    void convert(const AVFrame& frame, int start, int count, std::vector<float>& samples);
    // Appends what is held back for frames to come, when there are none.
    void drain(std::vector<float>& samples);

    // Of the frames that come in; 0 before the first.
    [[nodiscard]] int channels() const;
    [[nodiscard]] int inputRate() const;

  private:
    struct State;

    const int sampleRate_;
    std::unique_ptr<State> state_;
};

}  // namespace velmoranth::desktop
