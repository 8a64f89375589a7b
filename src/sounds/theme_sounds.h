// The interface sounds of the first active theme that has any: from the platform's number of a
// sound to a file of the theme's folder UISounds, played beside whatever else is heard. The
// preferences are read and the folders probed for every sound. Nothing is told of a sound that is
// not there.
#pragma once

#include "platform/av_foundation.h"

#include <cstdint>
#include <string>

namespace velmoranth::sounds {

class ThemeSounds {
  public:
    // playUISound: the sound of a system sound id. A number without one still makes the session
    // ambient and active, and stays silent.
    void playUISound(std::int64_t systemSoundID);
    // playsystemSound: the sound of a feedback event type, whose numbers mean other sounds.
    void playsystemSound(std::uint64_t feedbackEventType);

    // The session that was made ambient last, and the player of the last sound, which plays while
    // it is held here; both nil before the first. Replaced without a lock.
    [[nodiscard]] const platform::AudioSessionRef& audiosession() const { return audiosession_; }

    void setAudiosession(const platform::AudioSessionRef& session) { audiosession_ = session; }

    [[nodiscard]] const platform::AudioPlayerRef& soundToPlay() const { return soundToPlay_; }

    void setSoundToPlay(const platform::AudioPlayerRef& player) { soundToPlay_ = player; }

  private:
    void play(const std::string& path);

    platform::AudioSessionRef audiosession_;
    platform::AudioPlayerRef soundToPlay_;
};

}  // namespace velmoranth::sounds
