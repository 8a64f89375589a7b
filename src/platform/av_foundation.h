// AVFoundation: the shared audio session and players of sounds.
#pragma once

#include "platform/foundation.h"
#include "platform/objc_runtime.h"

#include <memory>
#include <optional>
#include <string>

namespace velmoranth::platform {

// --- Values
// -------------------------------------------------------------------------------------------

// AVAudioSessionCategoryAmbient: mixes with what other apps play.
inline constexpr const char* kAudioSessionCategoryAmbient = "AVAudioSessionCategoryAmbient";

// --- Handles
// ------------------------------------------------------------------------------------------

// AVAudioSession. What it answers is whether the session did as asked; the errors are not asked
// for.
class AudioSession : public Object {
  public:
    // setCategory:error: with no error pointer. `category` is the platform's constant by name, for
    // example "AVAudioSessionCategoryAmbient".
    virtual bool setCategory(const std::string& category) = 0;
    // setActive:error: with no error pointer.
    virtual bool setActive(bool active) = 0;
};

using AudioSessionRef = std::shared_ptr<AudioSession>;

// AVAudioPlayer. Plays its sound once, and is silent as soon as nobody holds it any more.
class AudioPlayer : public Object {
  public:
    // 0 to 1; 1 until set.
    virtual void setVolume(float volume) = 0;
    // The player does not hold its delegate, which may end before it.
    virtual void setDelegate(Object& delegate) = 0;
    // False when it could not.
    virtual bool prepareToPlay() = 0;
    // Begins to play and comes back at once. False when it could not.
    virtual bool play() = 0;
};

using AudioPlayerRef = std::shared_ptr<AudioPlayer>;

// --- Services
// -----------------------------------------------------------------------------------------

class Audio {
  public:
    Audio() = default;
    Audio(const Audio&) = delete;
    Audio& operator=(const Audio&) = delete;
    virtual ~Audio() = default;

    // +[AVAudioSession sharedInstance]: the same one on every call; never nil.
    [[nodiscard]] virtual AudioSessionRef sharedInstance() = 0;
    // -[AVAudioPlayer initWithContentsOfURL:error:] with the file URL of `path` and no error
    // pointer; nil when there is no such file, when it is a folder, and when it is no sound.
    [[nodiscard]] virtual AudioPlayerRef audioPlayerWithContentsOfURL(const std::string& path) = 0;
    // -[AVAudioPlayer initWithData:error:] with no error pointer; nil for nil and for what is no
    // sound.
    [[nodiscard]] virtual AudioPlayerRef audioPlayerWithData(const std::optional<Data>& data) = 0;
};

}  // namespace velmoranth::platform
