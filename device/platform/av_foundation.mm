// The shared audio session and players of sounds. Most processes have no AVFoundation, and the
// library brings it into none of them before they are to play a sound.
#include "device/platform/av_foundation_handles.h"
#include "device/platform/services.h"
#import <AVFoundation/AVFoundation.h>

#include <memory>
#include <mutex>
#include <string_view>

namespace velmoranth::device {
namespace {

constexpr const char* kPlayers = "AVAudioPlayer";

void loadFramework() {
    @autoreleasepool {
        [[NSBundle bundleWithPath:@"/System/Library/Frameworks/AVFoundation.framework"] load];
    }
}

// A system's own sound that a theme replaces is not played, so the theme's has to be, in a process
// that plays no other sound too. Nil where the framework cannot be loaded.
Class audioClass(const char* name) {
    const Class present = classNamed(name);
    if (present != Nil) {
        return present;
    }
    static std::once_flag loading;
    std::call_once(loading, loadFramework);
    return classNamed(name);
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
        NSURL* const url = [classNamed("NSURL") fileURLWithPath:stringOf(std::string_view(path))];
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
bool HandleFor<platform::AudioSession>::setCategory(const std::string& category) {
    return [object() setCategory:stringOf(std::string_view(category)) error:nullptr] != 0;
}

bool HandleFor<platform::AudioSession>::setActive(bool active) {
    return [object() setActive:active error:nullptr] != 0;
}

void HandleFor<platform::AudioPlayer>::setVolume(float volume) {
    [object() setVolume:volume];
}

void HandleFor<platform::AudioPlayer>::setDelegate(platform::Object& delegate) {
    [object() setDelegate:nativeOf(delegate)];
}

bool HandleFor<platform::AudioPlayer>::prepareToPlay() {
    return [object() prepareToPlay] != 0;
}

bool HandleFor<platform::AudioPlayer>::play() {
    return [object() play] != 0;
}

platform::Audio& audio() {
    return theOne<PhoneAudio>();
}

}  // namespace velmoranth::device
