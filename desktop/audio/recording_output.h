// Keeps what would be heard: pulls the mixer on a clock that its user moves, keeps the samples and
// a journal of the voices. Nothing sounds and nothing waits.
#pragma once

#include "desktop/audio/mixer.h"
#include "desktop/audio/sound_output.h"
#include "platform/foundation.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::desktop {

class RecordingOutput final : public SoundOutput, private MixerObserver {
  public:
    struct Entry {
        std::string name;
        float volume = 1;                        // when it began
        double start = 0;                        // seconds
        double end = 0;                          // seconds; meaningful when it ended
        std::optional<VoiceEnding> ending = {};  // none while it plays
        std::vector<std::string> over = {};      // what played when it began
    };

    // Observes the mixer for its life.
    explicit RecordingOutput(Mixer& mixer);
    ~RecordingOutput() override;

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

    // The voices in the order in which they began.
    [[nodiscard]] const std::vector<Entry>& journal() const { return journal_; }

  private:
    void voiceStarted(const Start& start) override;
    void voiceEnded(std::uint64_t number, std::uint64_t frame, VoiceEnding ending) override;

    [[nodiscard]] double secondsAt(std::uint64_t frame) const;

    Mixer& mixer_;
    const std::uint64_t begin_;  // frame of the mixer
    double clock_ = 0;           // seconds asked for
    std::vector<float> samples_;
    std::vector<std::uint64_t> numbers_;  // of the journal's entries
    std::vector<Entry> journal_;
};

// A WAV file of stereo frames, 16 bits a sample; louder than full level is limited.
[[nodiscard]] platform::Data writeWav(std::span<const float> stereo,
                                      int sampleRate = Mixer::kDefaultSampleRate);

}  // namespace velmoranth::desktop
