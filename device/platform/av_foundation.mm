// The shared audio session and players of sounds. Most processes have no AVFoundation, and the
// library brings it into none of them before they are to play a sound.
#include "device/platform/av_foundation_handles.h"
#include "device/platform/services.h"
#import <AVFoundation/AVFoundation.h>
#include <objc/runtime.h>

#include <memory>
#include <mutex>
#include <string_view>

namespace velmoranth::device {
namespace {

constexpr const char* kPlayers = "AVAudioPlayer";

AVAudioSession* sessionOf(const AudioSessionHandle& handle) {
    return static_cast<AVAudioSession*>(handle.object());
}

AVAudioPlayer* playerOf(const AudioPlayerHandle& handle) {
    return static_cast<AVAudioPlayer*>(handle.object());
}

void loadFramework() {
    @autoreleasepool {
        [[NSBundle bundleWithPath:@"/System/Library/Frameworks/AVFoundation.framework"] load];
    }
}

// A system's own sound that a theme replaces is not played, so the theme's has to be, in a process
// that plays no other sound too. Nil where the framework cannot be loaded.
Class audioClass(const char* name) {
    const Class present = static_cast<Class>(objc_getClass(name));
    if (present != Nil) {
        return present;
    }
    static std::once_flag loading;
    std::call_once(loading, loadFramework);
    return static_cast<Class>(objc_getClass(name));
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
        AVAudioSession* const session = [audioClass("AVAudioSession") sharedInstance];
        if (session == nil) {
            static const auto kMissing = std::make_shared<MissingAudioSession>();
            return kMissing;
        }
        return wrap<platform::AudioSession>(session);
    }

    platform::AudioPlayerRef audioPlayerWithContentsOfURL(const std::string& path) override {
        const Class players = audioClass(kPlayers);
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
        const Class players = data ? audioClass(kPlayers) : Nil;
        if (players == Nil) {
            return nullptr;
        }
        NSData* const bytes = [NSData dataWithBytes:data->data() length:data->size()];
        return wrap<platform::AudioPlayer>([[players alloc] initWithData:bytes error:nullptr],
                                           Hold::adopt);
    }
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
