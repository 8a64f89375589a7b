// Mixes the voices that play on a device into one stereo sound, for whoever pulls it: a sound
// card's thread, or a test that moves the clock itself. Time is counted in frames pulled.
#pragma once

#include "desktop/audio/sound_stream.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace velmoranth::desktop {

// A sound that plays as long as somebody holds it, at most to its end.
class Voice {
  public:
    // 0 to 1, from the next frame that is pulled.
    void setVolume(float volume) { volume_ = volume; }

    [[nodiscard]] float volume() const { return volume_; }

    [[nodiscard]] const std::string& name() const { return name_; }

    // False once its sound is over.
    [[nodiscard]] bool isPlaying() const { return !ended_; }

  private:
    friend class Mixer;

    Voice(std::unique_ptr<SoundStream> sound, std::string name, float volume);

    const std::unique_ptr<SoundStream> sound_;  // only the puller reads it
    const std::string name_;
    std::uint64_t number_ = 0;
    std::atomic<float> volume_;
    std::atomic<bool> ended_ = false;
};

enum class VoiceEnding {
    finished,     // its sound is over
    stopped,      // nobody holds it any more
    interrupted,  // other audio, by a session that does not mix
};

// Told of voices, on the thread that starts or pulls them and while the mixer is locked: it must
// not call the mixer.
class MixerObserver {
  public:
    MixerObserver() = default;
    MixerObserver(const MixerObserver&) = delete;
    MixerObserver& operator=(const MixerObserver&) = delete;
    virtual ~MixerObserver() = default;

    struct Start {
        std::uint64_t number = 0;  // of the voice
        std::string name;
        float volume = 1;
        std::uint64_t frame = 0;        // when, frames pulled
        std::vector<std::string> over;  // names of what plays already, other audio included
    };

    virtual void voiceStarted(const Start& start) = 0;
    virtual void voiceEnded(std::uint64_t number, std::uint64_t frame, VoiceEnding ending) = 0;
};

class Mixer {
  public:
    static constexpr int kDefaultSampleRate = 44100;

    explicit Mixer(int sampleRate = kDefaultSampleRate) : sampleRate_(sampleRate) {}

    // Hz.
    [[nodiscard]] int sampleRate() const { return sampleRate_; }

    // Starts a sound, whose frames are at the mixer's rate. It stops with the next frame pulled
    // after the last holder let go of the voice.
    [[nodiscard]] std::shared_ptr<Voice> start(std::unique_ptr<SoundStream> sound, std::string name,
                                               float volume = 1);

    // Other audio of the device, such as the music of another app: plays until it is over or a
    // session interrupts it.
    void startOtherAudio(std::unique_ptr<SoundStream> sound, std::string name, float volume = 1);
    void interruptOtherAudio();
    [[nodiscard]] bool isOtherAudioPlaying() const;

    // Fills `stereo` (whole frames, interleaved) with the sum of all voices, limited to -1 to 1;
    // silence where nothing plays. One thread at a time; voices may be started and let go of
    // meanwhile.
    void render(std::span<float> stereo);

    // Whether any voice plays that is not other audio.
    [[nodiscard]] bool isPlaying() const;
    // Frames pulled so far.
    [[nodiscard]] std::uint64_t position() const;

    // Not owned; null for none. Told from now on.
    void setObserver(MixerObserver* observer);

  private:
    using VoiceRef = std::shared_ptr<Voice>;

    struct Entry {
        std::weak_ptr<Voice> voice;  // gone when its holders are
        VoiceRef otherAudio;         // held here: nobody else does
        std::uint64_t number = 0;
    };

    VoiceRef add(std::unique_ptr<SoundStream> sound, std::string name, float volume);
    void removeStopped();
    void end(std::uint64_t number, std::uint64_t frame, VoiceEnding ending);

    const int sampleRate_;
    mutable std::mutex mutex_;
    std::vector<Entry> entries_;
    std::uint64_t position_ = 0;
    std::uint64_t lastNumber_ = 0;
    MixerObserver* observer_ = nullptr;
    // Of the puller alone.
    std::vector<VoiceRef> playing_;
    std::vector<float> samples_;
};

}  // namespace velmoranth::desktop
