// Handles of AVFoundation's objects.
#pragma once

#include "platform/av_foundation.h"

#include "device/platform/handle.h"

#include <string>

namespace velmoranth::device {

// AVAudioSession.
class AudioSessionHandle final : public Handle<platform::AudioSession> {
  public:
    using Handle::Handle;

    bool setCategory(const std::string& category) override;
    bool setActive(bool active) override;
};

template <>
struct HandleFor<platform::AudioSession> {
    using Type = AudioSessionHandle;
};

// AVAudioPlayer.
class AudioPlayerHandle final : public Handle<platform::AudioPlayer> {
  public:
    using Handle::Handle;

    void setVolume(float volume) override;
    void setDelegate(platform::Object& delegate) override;
    bool prepareToPlay() override;
    bool play() override;
};

template <>
struct HandleFor<platform::AudioPlayer> {
    using Type = AudioPlayerHandle;
};

}  // namespace velmoranth::device
