// A recording that comes with a journal of the voices.
#pragma once

#include "desktop/audio/recording_output.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmoranth::desktop {

class JournaledOutput final : public RecordingOutput, private MixerObserver {
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
    explicit JournaledOutput(Mixer& mixer)
        : RecordingOutput(mixer), mixer_(mixer), begin_(mixer.position()) {
        mixer_.setObserver(this);
    }

    ~JournaledOutput() override { mixer_.setObserver(nullptr); }

    // The voices in the order in which they began.
    [[nodiscard]] const std::vector<Entry>& journal() const { return journal_; }

  private:
    void voiceStarted(const Start& start) override {
        numbers_.push_back(start.number);
        journal_.push_back({.name = start.name,
                            .volume = start.volume,
                            .start = secondsAt(start.frame),
                            .over = start.over});
    }

    void voiceEnded(std::uint64_t number, std::uint64_t frame, VoiceEnding ending) override {
        // One that began before this output is in no entry.
        const auto found = std::find(numbers_.begin(), numbers_.end(), number);
        if (found != numbers_.end()) {
            Entry& entry = journal_[static_cast<std::size_t>(found - numbers_.begin())];
            entry.end = secondsAt(frame);
            entry.ending = ending;
        }
    }

    [[nodiscard]] double secondsAt(std::uint64_t frame) const {
        return static_cast<double>(frame - begin_) / mixer_.sampleRate();
    }

    Mixer& mixer_;
    const std::uint64_t begin_;           // frame of the mixer
    std::vector<std::uint64_t> numbers_;  // of the journal's entries
    std::vector<Entry> journal_;
};

}  // namespace velmoranth::desktop
