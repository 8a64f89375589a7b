// The shared audio session and players of sounds, in processes that have AVFoundation: the library
// does not bring it into the others.
#include "device/platform/av_foundation_handles.h"
#include "device/platform/services.h"
#import <AVFoundation/AVFoundation.h>
#include <objc/runtime.h>

#include <memory>
#include <string_view>

namespace velmoranth::device {
namespace {

AVAudioSession* sessionOf(const AudioSessionHandle& handle) {
    return static_cast<AVAudioSession*>(handle.object());
}

AVAudioPlayer* playerOf(const AudioPlayerHandle& handle) {
    return static_cast<AVAudioPlayer*>(handle.object());
}

// The session of a process without AVFoundation.
class MissingAudioSession final : public platform::AudioSession {
  public:
    [[nodiscard]] std::string className() const override { return "AVAudioSession"; }

    bool setCategory(const std::string& /*category*/) override { return false; }

    bool setActive(bool /*active*/) override { return false; }
};

class PhoneAudio final : public platform::Audio {
  public:
    platform::AudioSessionRef sharedInstance() override {
        AVAudioSession* const session =
            [static_cast<Class>(objc_getClass("AVAudioSession")) sharedInstance];
        if (session == nil) {
            static const auto kMissing = std::make_shared<MissingAudioSession>();
            return kMissing;
        }
        return wrap<platform::AudioSession>(session);
    }

    platform::AudioPlayerRef audioPlayerWithContentsOfURL(const std::string& path) override {
        const Class players = playerClass();
        if (players == Nil) {
            return nullptr;
        }
        // By name, which takes no knowing which of the phone's libraries has the class.
        const Class urls = static_cast<Class>(objc_getClass("NSURL"));
        NSURL* const url = [urls fileURLWithPath:stringOf(std::string_view(path))];
        return wrap<platform::AudioPlayer>(
            [[players alloc] initWithContentsOfURL:url error:nullptr], Hold::adopt);
    }

    platform::AudioPlayerRef audioPlayerWithData(
        const std::optional<platform::Data>& data) override {
        const Class players = playerClass();
        if (players == Nil || !data) {
            return nullptr;
        }
        NSData* const bytes = [NSData dataWithBytes:data->data() length:data->size()];
        return wrap<platform::AudioPlayer>([[players alloc] initWithData:bytes error:nullptr],
                                           Hold::adopt);
    }

  private:
    static Class playerClass() { return static_cast<Class>(objc_getClass("AVAudioPlayer")); }
};

}  // namespace

// The platform's constants have their names as values.
bool AudioSessionHandle::setCategory(const std::string& category) {
    return [sessionOf(*this) setCategory:stringOf(std::string_view(category)) error:nullptr] != 0;
}

bool AudioSessionHandle::setActive(bool active) {
    return [sessionOf(*this) setActive:active error:nullptr] != 0;
}

void AudioPlayerHandle::setVolume(float volume) {
    [playerOf(*this) setVolume:volume];
}

void AudioPlayerHandle::setDelegate(platform::Object& delegate) {
    [playerOf(*this) setDelegate:nativeOf(delegate)];
}

bool AudioPlayerHandle::prepareToPlay() {
    return [playerOf(*this) prepareToPlay] != 0;
}

bool AudioPlayerHandle::play() {
    return [playerOf(*this) play] != 0;
}

platform::Audio& audio() {
    static PhoneAudio instance;
    return instance;
}

}  // namespace velmoranth::device
