// Handles of AVFoundation's objects.
#pragma once

#include "platform/av_foundation.h"

#include "device/platform/handle.h"

#include <string>

@class AVAudioPlayer;
@class AVAudioSession;

namespace velmoranth::device {

// AVAudioSession.
template <>
struct HandleFor<platform::AudioSession> final : Handle<platform::AudioSession, AVAudioSession> {
    using Handle::Handle;

    bool setCategory(const std::string& category) override;
    bool setActive(bool active) override;
};

// AVAudioPlayer.
template <>
struct HandleFor<platform::AudioPlayer> final : Handle<platform::AudioPlayer, AVAudioPlayer> {
    using Handle::Handle;

    void setVolume(float volume) override;
    void setDelegate(platform::Object& delegate) override;
    bool prepareToPlay() override;
    bool play() override;
};

}  // namespace velmoranth::device
