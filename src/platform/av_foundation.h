// AVFoundation: the shared audio session.
#pragma once

#include <string>

namespace velmoranth::platform {

class AudioSession {
  public:
    AudioSession() = default;
    AudioSession(const AudioSession&) = delete;
    AudioSession& operator=(const AudioSession&) = delete;
    virtual ~AudioSession() = default;

    // -[AVAudioSession setCategory:error:] on +sharedInstance, with no error pointer. `category` is
    // the platform's constant by name, for example "AVAudioSessionCategoryAmbient".
    virtual bool setCategory(const std::string& category) = 0;
};

}  // namespace velmoranth::platform
